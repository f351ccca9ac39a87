#include "tov/import.h"

#include <memory>

#include "tov/command_kind.h"
#include "tov/text.h"

namespace kiri::tov {

namespace {

template <class Cmd, class Record>
Cmd& import(TOV& document, Record* record) {
    return addCommand(document, listOf<Cmd>(), std::make_unique<Cmd>(record));
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
void importRecords(TOV& document, taDci const& db, bool ioEnabled) {
    forEach(db.clocks, [&document](taDciSynClk* record) {
        if (record->master != 0) {
            import <TovCmdClockDef>(document, record);
        } else {
            import <TovCmdGenClockDef>(document, record);
        }
    });
    forEach(db.clockGroups, [&document](taDciSynClkGroup* record) { import <TovCmdClockGroupDef>(document, record); });
    forEach(db.ios, [&document, ioEnabled](taDciSynIo* record) {
        if (record->direction == 0) {
            import <TovCmdInputDelay>(document, record).enabled = ioEnabled;
        } else if (record->direction == 1) {
            import <TovCmdOutputDelay>(document, record).enabled = ioEnabled;
        }
    });
    forEach(db.maxs, [&document](taDciSynMax* record) {
        if (hasText(record->minMarker)) {
            import <TovCmdMinDelay>(document, record);
        } else {
            import <TovCmdMaxDelay>(document, record);
        }
    });
    forEach(db.mcycs, [&document](taDciSynMcyc* record) { import <TovCmdMultiPath>(document, record); });
    forEach(db.falses, [&document](taDciSynFalse* record) {
        if (record->flag != 0) import <TovCmdFalsePath>(document, record);
    });
}

}  // namespace kiri::tov
