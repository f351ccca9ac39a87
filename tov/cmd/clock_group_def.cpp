#include "tov/cmd/clock_group_def.h"

#include "platform/ut.h"
#include "tov/cmd/read_p.h"
#include "tov/cmd/write_p.h"

namespace kiri::tov {

using namespace impl_detail;

namespace {

// Appends an empty group.
ppStlList<taDciObj*>& addGroup(TovCmdClockGroupDef& cmd) {
    cmd.groups.push_back(nullptr);
    cmd.groups.back() = new ppStlList<taDciObj*>();
    return *cmd.groups.back();
}

void appendGroups(TovCmdClockGroupDef& cmd, char const* role, std::vector<TovReferences>& lists) {
    for (ppStlList<taDciObj*>* group : cmd.groups) {
        if (group != nullptr) lists.push_back({role, group});
    }
}

//   set_clock_groups { -asynchronous | -group objects | ignored word }
//
// "-exclusive" is an ignored word: a line is asynchronous if it has "-asynchronous", and exclusive otherwise.
constexpr Option<TovCmdClockGroupDef> options[] = {
    {"-asynchronous", OptionValue::none, [](auto& cmd, auto) { cmd.exclusive = false; }},
    {"-group", OptionValue::ignoredAtEnd, [](auto& cmd, auto value) { readObjs(addGroup(cmd), value, false); },
     appendGroups},
};

bool isClock(taDciObjTyp type) {
    return type == taDciObjClock || type == taDciObjSourcePort || type == taDciObjSourceNet;
}

// The size of the names of a group. References to one long expression share its text, which is measured once.
std::size_t sizeOfNames(ppStlList<taDciObj*> const& group) {
    std::size_t size = 0;
    std::string_view name;
    for (taDciObj const* obj : group) {
        if (obj == nullptr) continue;
        if (obj->name != name.data()) name = orEmpty(obj->name);
        size += name.size() + 1;
    }
    return size;
}

// Writes the clocks of a group as one query after its other members. A member that is neither a clock nor a reserved
// key is glued to the text before it: the file format has no blank there.
void appendGroup(std::string& line, ppStlList<taDciObj*> const& group) {
    // Fail here if the line does not fit in memory, instead of filling the memory first.
    line.reserve(line.size() + sizeOfNames(group));
    line += " -group";
    std::string clocks;
    int count = 0;
    for (taDciObj const* obj : group) {
        if (obj == nullptr) continue;
        std::string_view const name = orEmpty(obj->name);
        std::string_view const reserved = reservedExpression(obj->name);
        if (!reserved.empty()) {
            line.append(" ").append(reserved);
        } else if (isClock(obj->type)) {
            clocks.append(name).append(" ");
            ++count;
        } else {
            line += name;
        }
    }
    if (count == 0) return;
    line += count == 1 ? " [ get_clocks " : " [ get_clocks { ";
    line += clocks;
    line += count == 1 ? " ]" : "} ]";
}

}  // namespace

CommandKind const impl_detail::clockGroupKind = kindOf<TovCmdClockGroupDef, options>(
    TOVCMD_CLOCKGROUP, "set_clock_groups",
    "set_clock_groups -asynchronous -group [get_clocks {clk}] -group [get_clocks {clk_2 clk_3}]");

TovCmdClockGroupDef::TovCmdClockGroupDef(char const* line) : TovCmdClockGroupDef(true) {
    readLine<options>(*this, line, {&clockGroupKind});
}

TovCmdClockGroupDef::TovCmdClockGroupDef(taDciSynClkGroup* record)
    : TovCmdClockGroupDef((record->asynchronous ^ 1) != 0) {
    note = orEmpty(record->text);
    for (ppStlList<taDciSynClkGroupMember*> const* members : record->groups) {
        if (members == nullptr) continue;
        ppStlList<taDciObj*>& clocks = addGroup(*this);
        for (taDciSynClkGroupMember const* member : *members) {
            if (member != nullptr && member->clock != nullptr) addObj(clocks, member->clock->name, taDciObjClock);
        }
    }
}

TovCmdClockGroupDef::~TovCmdClockGroupDef() {
    reset();
}

void TovCmdClockGroupDef::reset() {
    for (ppStlList<taDciObj*>* group : groups) {
        if (group != nullptr) freeDciObjList(*group);
        delete group;
    }
    groups.clear();
}

std::string TovCmdClockGroupDef::toSaveString(TOV*) {
    return saveString(*this);
}

void TovCmdClockGroupDef::appendSaveString(std::string& line) const {
    beginSaveLine(line, *this);
    line += "set_clock_groups";
    line += exclusive ? " -exclusive" : " -asynchronous";
    for (ppStlList<taDciObj*> const* group : groups) {
        if (group != nullptr) appendGroup(line, *group);
    }
}

}  // namespace kiri::tov
