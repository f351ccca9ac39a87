#pragma once

#include <string>
#include <vector>

#include "platform/export.h"
#include "tov/base/progress.h"
#include "tov/check.h"
#include "tov/names/design_names.h"

namespace kiri::tov {

/// What a check also does. Later releases may add fields at the end: make a TovCheckOptions and set the fields that
/// matter.
struct TovCheckOptions {
    TovDesignNames const* names = nullptr;  ///< where names are looked up; null for a check without names
    TovNameMatch match = TOVMATCH_LEVELS;   ///< how words are matched that are in no hierarchical query
    TovProgress progress;                   ///< called as in a load; may be empty
};

/// Checks a file as checkTovFile(path, findings) does, and with `options.names` also finds the names that neither the
/// design nor, for clocks, the file has: TOVFINDING_MISSING_NAME, the last finding of its line, holds the words with a
/// blank between them. TovDocumentNames::missing says which words are judged; a disabled command has no such finding. A
/// clock may be defined after its use, by an enabled command before a line that ends the load.
///
/// False if the file cannot be opened or read to its end, or if `options.progress` stopped the check. `findings` then
/// has what was found so far, and `error`, unless null, says why in one line of UTF-8: the system's words, or "The
/// caller stopped the load". In a stopped check a clock counts as missing only where no line that was read defines it.
/// True empties `error`. Throws std::bad_alloc and what `progress` throws; both are then as they were. Any number of
/// threads may check at once, with one index or several.
TOVENG_API bool checkTovFile(char const* path, TovCheckOptions const& options, std::vector<TovFinding>& findings,
                             std::string* error = nullptr);

}  // namespace kiri::tov
