#include "tov/import.h"

#include <memory>

#include "tov/cmd/commands.h"
#include "tov/edit.h"
#include "tov/text.h"

namespace kiri::tov {

namespace {

template <class Cmd, class Record>
TovCmd& add(TOV& document, TOVCMD_TYPE list, Record* record) {
    return addCommand(document, list, std::make_unique<Cmd>(record));
}

}  // namespace

// The order of the database's lists is the import's own. Only input and output delays heed `ioEnabled`. Null entries
// are skipped.
void importRecords(TOV& document, taDci const& db, bool ioEnabled) {
    for (taDciSynClk* record : db.clocks) {
        if (record == nullptr) continue;
        if (record->master != 0) {
            add<TovCmdClockDef>(document, TOVCMD_CLOCK, record);
        } else {
            add<TovCmdGenClockDef>(document, TOVCMD_GENCLOCK, record);
        }
    }
    for (taDciSynClkGroup* record : db.clockGroups) {
        if (record != nullptr) add<TovCmdClockGroupDef>(document, TOVCMD_CLOCKGROUP, record);
    }
    for (taDciSynIo* record : db.ios) {
        if (record == nullptr) continue;
        if (record->direction == 0) add<TovCmdInputDelay>(document, TOVCMD_INPUTDELAY, record).enabled = ioEnabled;
        if (record->direction == 1) add<TovCmdOutputDelay>(document, TOVCMD_OUTPUTDELAY, record).enabled = ioEnabled;
    }
    for (taDciSynMax* record : db.maxs) {
        if (record == nullptr) continue;
        if (hasText(record->minMarker)) {
            add<TovCmdMinDelay>(document, TOVCMD_MINDELAY, record);
        } else {
            add<TovCmdMaxDelay>(document, TOVCMD_MAXDELAY, record);
        }
    }
    for (taDciSynMcyc* record : db.mcycs) {
        if (record != nullptr) add<TovCmdMultiPath>(document, TOVCMD_MULTICYCLE, record);
    }
    for (taDciSynFalse* record : db.falses) {
        if (record != nullptr && record->flag != 0) add<TovCmdFalsePath>(document, TOVCMD_FALSEPATH, record);
    }
}

}  // namespace kiri::tov
