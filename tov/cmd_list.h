#ifndef TOVENG_TOV_CMD_LIST_H
#define TOVENG_TOV_CMD_LIST_H

#include <cstddef>
#include <list>
#include <memory>

#include "tov/cmd/cmd.h"

namespace kiri::tov {

/// Appends a command to a list of a document, which then owns it.
void append(std::list<TovCmd*>& list, std::unique_ptr<TovCmd> cmd);

/// Deletes the commands of a list and empties it.
void freeCommands(std::list<TovCmd*>& list);

/// How much to fetch of a command ahead of its use: what was allocated behind it is most often its references.
inline constexpr std::ptrdiff_t fetchedOfCommand = 384;

}  // namespace kiri::tov

#endif
