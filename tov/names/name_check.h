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

// A check of a file with the names of a design, a message for each finding:
//
//     TovCheckOptions options;
//     options.names = &names;
//     std::string error;
//     checkTovFile(path, options, [&](auto const& finding, auto const& line, auto const& missing) {
//         for (TovNameUse const& use : missing) report(finding.line, missingMessage(use, names));
//         if (missing.empty()) report(finding.line, findingMessage(finding, line));
//         return true;
//     }, &error);

/// What a check also does. Later releases may add fields at the end: make a TovCheckOptions and set the fields that
/// matter.
struct TovCheckOptions {
    TovDesignNames const* names = nullptr;  ///< where names are looked up; null for a check without names
    TovNameMatch match = TOVMATCH_LEVELS;   ///< how words are matched that are in no hierarchical query
    TovProgress progress;                   ///< called as in a load; may be empty
};

/// Takes a finding, its line as it is in the file, without its line feed or carriage return and line feed, and for
/// TOVFINDING_MISSING_NAME the uses that are missing. All of them, and the commands of the uses, live until it returns.
/// Returns false to stop the check.
using TovFindingVisitor =
    std::function<bool(TovFinding const& finding, std::string const& line, std::vector<TovNameUse> const& missing)>;

/// Calls `visit` with each finding of a file, in the order of the lines, and keeps none of them. The findings are those
/// of checkTovFile(path, findings), and with `options.names` also the names that neither the design nor, for clocks,
/// the file has: TOVFINDING_MISSING_NAME, the last finding of its line, holds the words with a blank between them.
/// TovDocumentNames::missing says which words are judged; a disabled command has no such finding. A clock may be
/// defined after its use, by an enabled command before a line that ends the load.
///
/// With names the file is read twice, first for its clocks; `options.progress` reports the second time. Memory holds
/// what cannot be read twice, such as a pipe.
///
/// Returns false if the file cannot be opened or read to its end, or if `options.progress` or `visit` stopped the
/// check; `error`, unless null, says why in one line of UTF-8: the system's words, "The caller stopped the load" for
/// `progress`, "The caller stopped the check" for `visit`. True empties `error`. Throws std::bad_alloc and what
/// `progress` and `visit` throw; `error` is as it was then. Any number of threads may check at once, with one index or
/// several.
TOVENG_API bool checkTovFile(char const* path, TovCheckOptions const& options, TovFindingVisitor const& visit,
                             std::string* error = nullptr);

/// The same, and replaces `findings` by what was found, also where it returns false. What it throws leaves `findings`
/// as it was.
TOVENG_API bool checkTovFile(char const* path, TovCheckOptions const& options, std::vector<TovFinding>& findings,
                             std::string* error = nullptr);

/// Returns the message for a name that is missing, "no such port: `a`; did you mean `b`?", with the nearest name of the
/// design if there is one. One line of UTF-8, at most 1,000 bytes, as findingMessage. The search for the nearest name
/// goes through all names of the design; a use is of a check or of TovDocumentNames::missing.
TOVENG_API std::string missingMessage(TovNameUse const& missing, TovDesignNames const& names);

/// The same without a search: "no such port: `a`".
TOVENG_API std::string missingMessage(TovNameUse const& missing);

}  // namespace kiri::tov
