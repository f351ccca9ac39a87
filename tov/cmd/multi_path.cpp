#include "tov/cmd/multi_path.h"

#include "platform/ut.h"
#include "tov/cmd/read_p.h"
#include "tov/cmd/write_p.h"

namespace kiri::tov {

using namespace impl_detail;

namespace {

void readMultiplier(TovCmdMultiPath& cmd, std::string_view word) {
    float number = 0;
    if (parseFloatValue(word, number)) cmd.multiplier = truncateToInt(number);
}

//   set_multicycle_path { -from objects | -to objects | number | ignored word }
constexpr Option<TovCmdMultiPath> options[] = {
    objects<&TovCmdMultiPath::from>("-from"),
    objects<&TovCmdMultiPath::to>("-to"),
    {anyOtherWord, OptionValue::none, readMultiplier},
};

}  // namespace

CommandKind const impl_detail::multiPathKind = kindOf<TovCmdMultiPath, options>(
    TOVCMD_MULTICYCLE, "set_multicycle_path", "set_multicycle_path 2 -from [get_cells {u_a/q}] -to [get_clocks {clk}]");

TovCmdMultiPath::TovCmdMultiPath(int multiplier_, char* note_) : TovCmd(note_), multiplier(multiplier_) {}

TovCmdMultiPath::TovCmdMultiPath(taDciSynMcyc* record)
    : TovCmdMultiPath(truncateToInt(record->multiplier), record->note) {
    deepCopyDciObjList(record->from, from);
    deepCopyDciObjList(record->to, to);
}

TovCmdMultiPath::TovCmdMultiPath(char const* line) : TovCmdMultiPath(0, nullptr) {
    readLine<options>(*this, line, {&multiPathKind});
}

TovCmdMultiPath::~TovCmdMultiPath() {
    freeDciObjList(from);
    freeDciObjList(to);
}

std::string TovCmdMultiPath::toSaveString(TOV*) {
    return saveString(*this);
}

void TovCmdMultiPath::appendSaveString(std::string& line) const {
    beginSaveLine(line, *this);
    appendPiece(line, neoform("set_multicycle_path %d", multiplier));
    appendFirst(line, fromOption, from);
    appendFirst(line, toOption, to);
}

}  // namespace kiri::tov
