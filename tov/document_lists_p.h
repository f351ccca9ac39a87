#pragma once

#include <cstdint>
#include <list>
#include <memory>

#include "tov/cmd/cmd.h"
#include "tov/cmd/command_kind_p.h"
#include "tov/tov.h"

namespace kiri::tov::impl_detail {

inline std::size_t indexOf(CommandKind const& kind) {
    return static_cast<std::size_t>(kind.list - TOVCMD_CLOCK);
}

/// The command lists of a document, and what the library knows of the commands in them.
struct DocumentLists {
    static DocumentLists& of(TOV& document) { return *document.lists_; }

    std::list<TovCmd*>& operator[](CommandKind const& kind) { return lists[indexOf(kind)]; }

    /// Appends a new command. std::bad_alloc leaves the lists as they were.
    TovCmd& append(CommandKind const& kind, std::unique_ptr<TovCmd> cmd) {
        (*this)[kind].push_back(cmd.get());
        cmd->order_ = ++appended;
        return *cmd.release();
    }

    /// Returns the number of the command among those appended; 0 for null and for a command that a caller put into a
    /// list.
    static std::uint32_t orderOf(TovCmd const* cmd) { return cmd == nullptr ? 0 : cmd->order_; }

    std::list<TovCmd*> lists[std::size(commandKinds)];
    std::uint32_t appended = 0;
    /// Whether a list may hold commands that the library did not make, because a caller has had access to a list.
    bool foreign = false;
};

// Including the header of its heap block, it takes no more than the lists alone.
static_assert(sizeof(DocumentLists) == sizeof(DocumentLists::lists) + 8);

}  // namespace kiri::tov::impl_detail
