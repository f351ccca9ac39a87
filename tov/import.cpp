#include <memory>

#include "tov/base/text_p.h"
#include "tov/cmd/commands.h"
#include "tov/edit.h"
#include "tov/tov.h"

namespace kiri::tov {

using namespace impl_detail;

namespace {

template <class Cmd, class Record>
TovCmd& append(TOV& document, TOVCMD_TYPE list, Record* record) {
    return addCommand(document, list, std::make_unique<Cmd>(record));
}

}  // namespace

// Walks the lists in an order of its own and skips null entries. Only input and output delays heed `ioEnabled`.
void TOV::loadTaObjects(taDci* db, bool ioEnabled) {
    for (taDciSynClk* record : db->clocks) {
        if (record == nullptr) continue;
        if (record->master != 0) {
            append<TovCmdClockDef>(*this, TOVCMD_CLOCK, record);
        } else {
            append<TovCmdGenClockDef>(*this, TOVCMD_GENCLOCK, record);
        }
    }
    for (taDciSynClkGroup* record : db->clockGroups) {
        if (record != nullptr) append<TovCmdClockGroupDef>(*this, TOVCMD_CLOCKGROUP, record);
    }
    for (taDciSynIo* record : db->ios) {
        if (record == nullptr) continue;
        if (record->direction == 0) append<TovCmdInputDelay>(*this, TOVCMD_INPUTDELAY, record).enabled = ioEnabled;
        if (record->direction == 1) append<TovCmdOutputDelay>(*this, TOVCMD_OUTPUTDELAY, record).enabled = ioEnabled;
    }
    for (taDciSynMax* record : db->maxs) {
        if (record == nullptr) continue;
        if (hasText(record->minMarker)) {
            append<TovCmdMinDelay>(*this, TOVCMD_MINDELAY, record);
        } else {
            append<TovCmdMaxDelay>(*this, TOVCMD_MAXDELAY, record);
        }
    }
    for (taDciSynMcyc* record : db->mcycs) {
        if (record != nullptr) append<TovCmdMultiPath>(*this, TOVCMD_MULTICYCLE, record);
    }
    for (taDciSynFalse* record : db->falses) {
        if (record != nullptr && record->flag != 0) append<TovCmdFalsePath>(*this, TOVCMD_FALSEPATH, record);
    }
}

}  // namespace kiri::tov
