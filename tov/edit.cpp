#include "tov/edit.h"

#include <cstddef>
#include <stdexcept>

#include "tov/cmd/command_kind_p.h"

namespace kiri::tov {

using namespace impl_detail;

char const* keywordOf(TOVCMD_TYPE list) {
    for (CommandKind const& kind : commandKinds) {
        if (kind.list == list) return kind.keyword.data();
    }
    return "";
}

void forEachCommand(TOV& document, std::function<void(TOVCMD_TYPE list, TovCmd& cmd)> const& visit) {
    for (CommandKind const& kind : commandKinds) {
        std::list<TovCmd*>& list = *document.getTovCmdList(kind.list);
        auto at = list.begin();
        for (std::size_t left = list.size(); left > 0; --left) {
            // Step first: `visit` may take the command out of the list.
            TovCmd* const cmd = *at++;
            if (cmd != nullptr) visit(kind.list, *cmd);
        }
    }
}

TovCmd& addCommand(TOV& document, TOVCMD_TYPE list, std::unique_ptr<TovCmd> cmd) {
    std::list<TovCmd*>* const cmds = document.getTovCmdList(list);
    if (cmds == nullptr || cmd == nullptr) throw std::invalid_argument("addCommand: no such list, or no command");
    cmds->push_back(cmd.get());
    return *cmd.release();
}

}  // namespace kiri::tov
