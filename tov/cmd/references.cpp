#include "tov/cmd/references.h"

#include <algorithm>
#include <string_view>

#include "tov/cmd/command_kind_p.h"
#include "tov/cmd/commands.h"
#include "tov/cmd/obj_list_p.h"
#include "tov/cmd/object_words_p.h"

namespace kiri::tov {

using namespace impl_detail;

namespace {

// The content of a group or a quoted word.
std::string_view withoutBraces(std::string_view word) {
    constexpr std::string_view left = "{\" ";
    constexpr std::string_view right = "}\" ";
    word.remove_prefix(std::min(word.find_first_not_of(left), word.size()));
    word.remove_suffix(word.size() - (word.find_last_not_of(right) + 1));
    return word;
}

std::string clockOf(std::string const& name, ppStlList<taDciObj*> const& targets) {
    std::string_view const own = withoutBraces(name);
    if (!own.empty()) return std::string(own);
    for (ObjectWord const& word : objectWords(targets)) {
        if (word.isTarget) return std::string(word.text);
    }
    return {};
}

}  // namespace

std::vector<TovReferences> referencesOf(TovCmd& cmd) {
    std::vector<TovReferences> lists;
    for (CommandKind const& kind : commandKinds) {
        if (&typeid(cmd) != kind.type) continue;
        kind.appendLists(cmd, lists);
        return lists;
    }
    // A class derived from one of the library's has its lists.
    for (CommandKind const& kind : commandKinds) {
        if (kind.appendLists(cmd, lists)) break;
    }
    return lists;
}

void replaceReferences(ppStlList<taDciObj*>& list, std::string const& expression, bool source) {
    OwnedObjList objs;
    readObjs(objs.list, expression, source);
    list.swap(objs.list);
}

std::string definedClock(TovCmd& cmd) {
    if (auto const* clock = dynamic_cast<TovCmdClockDef*>(&cmd)) return clockOf(clock->clockName, clock->targets);
    if (auto const* clock = dynamic_cast<TovCmdGenClockDef*>(&cmd)) return clockOf(clock->clockName, clock->targets);
    return {};
}

}  // namespace kiri::tov
