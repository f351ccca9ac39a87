#include "tov/cmd/references.h"

#include "tov/cmd/commands.h"

namespace kiri::tov {

namespace {

std::vector<TovReferences> groupsOf(TovCmdClockGroupDef& cmd) {
    std::vector<TovReferences> groups;
    for (ppStlList<taDciObj*>* group : cmd.groups) {
        if (group != nullptr) groups.push_back({"-group", group});
    }
    return groups;
}

}  // namespace

std::vector<TovReferences> referencesOf(TovCmd& cmd) {
    if (auto* c = dynamic_cast<TovCmdIODelay*>(&cmd)) return {{"-clock", &c->clock}, {"", &c->objects}};
    if (auto* c = dynamic_cast<TovCmdFalsePath*>(&cmd)) {
        return {{"-from", &c->from}, {"-to", &c->to}, {"-through", &c->through}};
    }
    if (auto* c = dynamic_cast<TovCmdMultiPath*>(&cmd)) return {{"-from", &c->from}, {"-to", &c->to}};
    if (auto* c = dynamic_cast<TovCmdTimingDelay*>(&cmd)) return {{"-from", &c->from}, {"-to", &c->to}};
    if (auto* c = dynamic_cast<TovCmdClockDef*>(&cmd)) return {{"", &c->targets}};
    if (auto* c = dynamic_cast<TovCmdGenClockDef*>(&cmd)) {
        return {{"-source", &c->sources}, {"-master_clock", &c->masterClock}, {"", &c->targets}};
    }
    if (auto* c = dynamic_cast<TovCmdClockGroupDef*>(&cmd)) return groupsOf(*c);
    return {};
}

}  // namespace kiri::tov
