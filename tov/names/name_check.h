#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/export.h"
#include "tov/base/progress.h"
#include "tov/check.h"
#include "tov/names/design_names.h"
#include "tov/names/document_names.h"

namespace kiri::tov {

// Checks a file, with the names of a design, and reports a message for each finding:
//
//     TovCheckOptions options;
//     options.names = &names;
//     std::string error;
//     checkTovFile(path, options, [&](auto const& finding, auto const& line, auto const& missing) {
//         for (TovNameUse const& use : missing) report(finding.line, missingMessage(use, names));
//         if (missing.empty()) report(finding.line, findingMessage(finding, line));
//         return true;
//     }, &error);

/// Options of a check. Later releases may add fields at the end: create a TovCheckOptions and set the fields that you
/// need.
struct TovCheckOptions {
    TovDesignNames const* names = nullptr;  ///< the index for names; null for a check without names
    TovNameMatch match = TOVMATCH_LEVELS;   ///< how words outside hierarchical queries match
    TovProgress progress;                   ///< called as in a load; may be empty
};

/// Receives a finding, its line as in the file, without the LF or CR LF, and for TOVFINDING_MISSING_NAME the missing
/// uses. All of them, and the commands of the uses, are valid until it returns. Returns false to stop the check.
using TovFindingVisitor =
    std::function<bool(TovFinding const& finding, std::string const& line, std::vector<TovNameUse> const& missing)>;

/// Calls `visit` with each finding of a file, in the order of the lines, and stores none of them. The findings are
/// those of checkTovFile(path, findings) and, with `options.names`, the names that neither the design nor, for clocks,
/// the file has: TOVFINDING_MISSING_NAME, the last finding of its line, has the words separated by blanks.
/// TovDocumentNames::usesIn says which words are judged; a disabled command has no such finding. A clock may be defined
/// after its use, by an enabled command before a line that ends the load.
///
/// With names the file is read twice, first for its clocks; `options.progress` reports the second pass. A file that
/// cannot be read twice, such as a pipe, is held in memory.
///
/// Returns false if the file cannot be opened or read to its end, or if `options.progress` or `visit` stopped the
/// check; `error`, unless null, says why in one line of UTF-8: the system's message, "The caller stopped the load" for
/// `progress`, or "The caller stopped the check" for `visit`. If the result is true, `error` is empty. Throws
/// std::bad_alloc and what `progress` and `visit` throw; `error` is then unchanged. Any number of threads may check at
/// once, with one index or several.
TOVENG_API bool checkTovFile(char const* path, TovCheckOptions const& options, TovFindingVisitor const& visit,
                             std::string* error = nullptr);

/// The same, but replaces `findings` with the findings, even if it returns false. An exception leaves `findings`
/// unchanged.
TOVENG_API bool checkTovFile(char const* path, TovCheckOptions const& options, std::vector<TovFinding>& findings,
                             std::string* error = nullptr);

/// Returns the message for a name that is missing, "no such port: `a`; did you mean `b`?", with the nearest name of the
/// design if there is another one. One line of UTF-8, at most 1,000 bytes, like findingMessage. The search for the
/// nearest name scans all names of the design. A use comes from a check or from TovDocumentNames::missing.
TOVENG_API std::string missingMessage(TovNameUse const& missing, TovDesignNames const& names);

/// The same without a search: "no such port: `a`".
TOVENG_API std::string missingMessage(TovNameUse const& missing);

}  // namespace kiri::tov
