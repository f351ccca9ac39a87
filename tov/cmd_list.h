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

/// Calls `take` for each command of a list. A large document does not fit a cache, so the next command is
/// fetched meanwhile, with what was allocated behind it: most often its references.
template <class Take>
void forEachCommand(std::list<TovCmd*> const& list, Take take) {
    constexpr std::ptrdiff_t cacheLine = 64;
    constexpr std::ptrdiff_t fetchedSize = 6 * cacheLine;
    for (auto at = list.begin(); at != list.end();) {
        TovCmd* const cmd = *at++;
        if (at != list.end()) {
            auto const* next = reinterpret_cast<char const*>(*at);
            for (std::ptrdiff_t offset = 0; offset < fetchedSize; offset += cacheLine) {
                __builtin_prefetch(next + offset);
            }
        }
        take(cmd);
    }
}

}  // namespace kiri::tov

#endif
