#include <memory>

#include "tov/base/text_p.h"
#include "tov/cmd/commands.h"
#include "tov/document_lists_p.h"
#include "tov/tov.h"

namespace kiri::tov {

using namespace impl_detail;

namespace {

template <class Cmd, class Record>
TovCmd& append(TOV& document, CommandKind const& kind, Record* record) {
    return DocumentLists::of(document).append(kind, std::make_unique<Cmd>(record));
}

}  // namespace

// Imports the lists in a fixed order and skips null entries. `ioEnabled` applies only to input and output delays.
void TOV::loadTaObjects(taDci* db, bool ioEnabled) {
    for (taDciSynClk* record : db->clocks) {
        if (record == nullptr) continue;
        if (record->master != 0) {
            append<TovCmdClockDef>(*this, clockKind, record);
        } else {
            append<TovCmdGenClockDef>(*this, genClockKind, record);
        }
    }
    for (taDciSynClkGroup* record : db->clockGroups) {
        if (record != nullptr) append<TovCmdClockGroupDef>(*this, clockGroupKind, record);
    }
    for (taDciSynIo* record : db->ios) {
        if (record == nullptr) continue;
        if (record->direction == 0) append<TovCmdInputDelay>(*this, inputDelayKind, record).enabled = ioEnabled;
        if (record->direction == 1) append<TovCmdOutputDelay>(*this, outputDelayKind, record).enabled = ioEnabled;
    }
    for (taDciSynMax* record : db->maxs) {
        if (record == nullptr) continue;
        if (hasText(record->minMarker)) {
            append<TovCmdMinDelay>(*this, minDelayKind, record);
        } else {
            append<TovCmdMaxDelay>(*this, maxDelayKind, record);
        }
    }
    for (taDciSynMcyc* record : db->mcycs) {
        if (record != nullptr) append<TovCmdMultiPath>(*this, multiPathKind, record);
    }
    for (taDciSynFalse* record : db->falses) {
        if (record != nullptr && record->flag != 0) append<TovCmdFalsePath>(*this, falsePathKind, record);
    }
}

}  // namespace kiri::tov
