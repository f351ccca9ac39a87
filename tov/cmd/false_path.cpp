#include "tov/cmd/false_path.h"

#include "platform/ut.h"
#include "tov/cmd/read_p.h"
#include "tov/cmd/write_p.h"

namespace kiri::tov {

using namespace impl_detail;

namespace {

//   set_false_path { -from objects | -to objects | -through objects | ignored word }
constexpr Option<TovCmdFalsePath> options[] = {
    objects<&TovCmdFalsePath::from>("-from"),
    objects<&TovCmdFalsePath::to>("-to"),
    objects<&TovCmdFalsePath::through>("-through"),
};

}  // namespace

CommandKind const impl_detail::falsePathKind = kindOf<TovCmdFalsePath, options>(
    TOVCMD_FALSEPATH, "set_false_path",
    "set_false_path -from [get_clocks {clk}] -to [get_cells {u_a/q}] -through [get_nets {n}]");

TovCmdFalsePath::TovCmdFalsePath(char* note_) : TovCmd(note_) {}

TovCmdFalsePath::TovCmdFalsePath(std::nullptr_t) : TovCmdFalsePath(static_cast<char*>(nullptr)) {}

TovCmdFalsePath::TovCmdFalsePath(taDciSynFalse* record) : TovCmdFalsePath(record->note) {
    deepCopyDciObjList(record->from, from);
    deepCopyDciObjList(record->to, to);
    deepCopyDciObjList(record->through, through);
}

TovCmdFalsePath::TovCmdFalsePath(char const* line) : TovCmdFalsePath(nullptr) {
    readLine<options>(*this, line, {&falsePathKind});
}

TovCmdFalsePath::~TovCmdFalsePath() {
    freeDciObjList(from);
    freeDciObjList(to);
    freeDciObjList(through);
}

std::string TovCmdFalsePath::toSaveString(TOV*) {
    return saveString(*this);
}

void TovCmdFalsePath::appendSaveString(std::string& line) const {
    beginSaveLine(line, *this);
    line += "set_false_path";
    appendFirst(line, fromOption, from);
    appendFirst(line, toOption, to);
    // Through points are not written beside a start or end point.
    if (from.empty() && to.empty()) appendFirst(line, " -through  ", through);
}

}  // namespace kiri::tov
