#pragma once

#include <functional>
#include <memory>

#include "platform/export.h"
#include "tov/cmd/cmd.h"
#include "tov/tov.h"

namespace kiri::tov {

/// Returns the keyword with which the lines of a list begin, such as "create_clock" or "#attribute"; "" for TOVCMD_NONE
/// and any other value that is not a list. The text lives as long as the library.
TOVENG_API char const* keywordOf(TOVCMD_TYPE list);

/// Calls `visit` with each command of the document and its list, in the order in which a save writes them; null entries
/// are skipped. `visit` may change any command, remove the visited one from its list, and append others: those in a
/// later list are visited as well, those in the same list are not. It must not remove other commands from the same
/// list. It may edit the other lists freely: earlier lists are finished, and later ones are walked as they are then.
/// Rethrows what `visit` throws.
TOVENG_API void forEachCommand(TOV& document, std::function<void(TOVCMD_TYPE list, TovCmd& cmd)> const& visit);

/// Appends a command to a list of the document, which then owns it, and returns it. Throws std::invalid_argument for a
/// null command and for a value that is not a list. std::bad_alloc leaves the document as it was.
TOVENG_API TovCmd& addCommand(TOV& document, TOVCMD_TYPE list, std::unique_ptr<TovCmd> cmd);

}  // namespace kiri::tov
