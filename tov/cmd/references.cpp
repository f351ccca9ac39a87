#include "tov/cmd/references.h"

#include <algorithm>

#include <string_view>

#include "tov/base/text_p.h"
#include "tov/base/tokenizer_p.h"
#include "tov/cmd/command_kind_p.h"
#include "tov/cmd/commands.h"
#include "tov/cmd/obj_list_p.h"

namespace kiri::tov {

using namespace impl_detail;

namespace {

// The first word of a plain name without its braces, or the first name of a query that is kept as a plain name.
std::string_view firstName(std::string_view expression) {
    bool const isQuery = startsWith(expression, "[");
    WordCursor words(expression);
    std::string_view word;
    if (!words.next(word) || !isQuery) return word;
    if (!startsWith(word, "get_")) return {};
    while (words.next(word)) {
        if (startsWith(word, "-")) continue;
        WordCursor names(word);
        if (names.next(word)) return word;
    }
    return {};
}

// What a group or a quoted word holds.
std::string_view withoutBraces(std::string_view word) {
    constexpr std::string_view left = "{\" ";
    constexpr std::string_view right = "}\" ";
    word.remove_prefix(std::min(word.find_first_not_of(left), word.size()));
    word.remove_suffix(word.size() - (word.find_last_not_of(right) + 1));
    return word;
}

std::string clockOf(std::string const& name, ppStlList<taDciObj*> const& targets) {
    if (!name.empty()) return std::string(withoutBraces(name));
    if (targets.empty() || targets.front() == nullptr) return {};
    taDciObj const& target = *targets.front();
    std::string_view const word = orEmpty(target.name);
    return std::string(target.type == taDciObjName ? firstName(word) : word);
}

}  // namespace

std::vector<TovReferences> referencesOf(TovCmd& cmd) {
    std::vector<TovReferences> lists;
    for (CommandKind const& kind : commandKinds) {
        if (typeid(cmd) != *kind.type) continue;
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
