#include "tov/edit.h"

#include <cstddef>
#include <stdexcept>

#include "tov/cmd/command_kind_p.h"
#include "tov/command_walk_p.h"
#include "tov/document_lists_p.h"

namespace kiri::tov {

using namespace impl_detail;

namespace {

CommandKind const* kindOfList(TOVCMD_TYPE list) {
    for (CommandKind const& kind : commandKinds) {
        if (kind.list == list) return &kind;
    }
    return nullptr;
}

}  // namespace

char const* keywordOf(TOVCMD_TYPE list) {
    CommandKind const* const kind = kindOfList(list);
    return kind == nullptr ? "" : kind->keyword.data();
}

void forEachCommand(TOV& document, std::function<void(TOVCMD_TYPE list, TovCmd& cmd)> const& visit) {
    for (CommandKind const& kind : commandKinds) {
        std::list<TovCmd*>& list = DocumentLists::of(document)[kind];
        auto at = list.begin();
        for (std::size_t left = list.size(); left > 0; --left) {
            // Advance first: `visit` may remove the command from the list.
            TovCmd* const cmd = *at++;
            if (cmd != nullptr) visit(kind.list, *cmd);
        }
    }
}

TovCmd& addCommand(TOV& document, TOVCMD_TYPE list, std::unique_ptr<TovCmd> cmd) {
    CommandKind const* const kind = kindOfList(list);
    if (kind == nullptr || cmd == nullptr) throw std::invalid_argument("addCommand: no such list, or no command");
    DocumentLists& lists = DocumentLists::of(document);
    if (!isLibraryCommand(*kind, *cmd)) lists.foreign = true;
    return lists.append(*kind, std::move(cmd));
}

}  // namespace kiri::tov
