#include <memory>

#include "tov/cmd/commands.h"
#include "tov/cmd_list.h"
#include "tov/text.h"
#include "tov/tov.h"

namespace kiri::tov {

namespace {

template <class Cmd, class Record>
Cmd& add(TOV& document, TOVCMD_TYPE list, Record* record) {
    auto cmd = std::make_unique<Cmd>(record);
    Cmd& added = *cmd;
    append(*document.getTovCmdList(list), std::move(cmd));
    return added;
}

void addDelay(TOV& document, taDciSynIo* record, bool enabled) {
    if (record->direction == 0) {
        add<TovCmdInputDelay>(document, TOVCMD_INPUTDELAY, record).enabled = enabled;
    } else if (record->direction == 1) {
        add<TovCmdOutputDelay>(document, TOVCMD_OUTPUTDELAY, record).enabled = enabled;
    }
}

// Calls `take` for each record of a list; null entries are skipped.
template <class Record, class Take>
void forEach(ppStlList<Record*> const& records, Take take) {
    for (Record* record : records) {
        if (record != nullptr) take(record);
    }
}

}  // namespace

// The order of the database's lists is the import's own; only input and output delays heed `ioEnabled`.
void TOV::loadTaObjects(taDci* db, bool ioEnabled) {
    forEach(db->clocks, [this](taDciSynClk* record) {
        if (record->master != 0) {
            add<TovCmdClockDef>(*this, TOVCMD_CLOCK, record);
        } else {
            add<TovCmdGenClockDef>(*this, TOVCMD_GENCLOCK, record);
        }
    });
    forEach(db->clockGroups,
            [this](taDciSynClkGroup* record) { add<TovCmdClockGroupDef>(*this, TOVCMD_CLOCKGROUP, record); });
    forEach(db->ios, [this, ioEnabled](taDciSynIo* record) { addDelay(*this, record, ioEnabled); });
    forEach(db->maxs, [this](taDciSynMax* record) {
        if (hasText(record->minMarker)) {
            add<TovCmdMinDelay>(*this, TOVCMD_MINDELAY, record);
        } else {
            add<TovCmdMaxDelay>(*this, TOVCMD_MAXDELAY, record);
        }
    });
    forEach(db->mcycs, [this](taDciSynMcyc* record) { add<TovCmdMultiPath>(*this, TOVCMD_MULTICYCLE, record); });
    forEach(db->falses, [this](taDciSynFalse* record) {
        if (record->flag != 0) add<TovCmdFalsePath>(*this, TOVCMD_FALSEPATH, record);
    });
}

}  // namespace kiri::tov
