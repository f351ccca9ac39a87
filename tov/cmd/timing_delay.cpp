#include "tov/cmd/timing_delay.h"

#include "platform/ut.h"
#include "tov/cmd/read_p.h"
#include "tov/cmd/write_p.h"

namespace kiri::tov {

using namespace impl_detail;

namespace {

void readDelay(TovCmdTimingDelay& cmd, std::string_view word) {
    parseFloatValue(word, cmd.delay);
}

//   ( set_max_delay | set_min_delay ) { -from objects | -to objects | number | ignored word }
constexpr Option<TovCmdTimingDelay> options[] = {
    objects<&TovCmdTimingDelay::from>("-from"),
    objects<&TovCmdTimingDelay::to>("-to"),
    {anyOtherWord, OptionValue::none, readDelay},
};

void appendLine(std::string& line, TovCmdTimingDelay const& cmd, char const* format) {
    beginSaveLine(line, cmd);
    appendPiece(line, neoform(format, static_cast<double>(cmd.delay)));
    appendFirst(line, fromOption, cmd.from);
    appendFirst(line, toOption, cmd.to);
}

}  // namespace

CommandKind const impl_detail::maxDelayKind = kindOf<TovCmdMaxDelay, options>(
    TOVCMD_MAXDELAY, "set_max_delay", "set_max_delay 2.5 -from [get_pins {u_a/q/Q}] -to [get_pins {u_b/q/D}]");

CommandKind const impl_detail::minDelayKind = kindOf<TovCmdMinDelay, options>(
    TOVCMD_MINDELAY, "set_min_delay", "set_min_delay 0.4 -from [get_ports {a}] -to [get_nets {n}]");

TovCmdTimingDelay::TovCmdTimingDelay(float delay_, char* note_) : TovCmd(note_), delay(delay_) {}

TovCmdTimingDelay::TovCmdTimingDelay(taDciSynMax* record)
    : TovCmdTimingDelay(fromThousandths(record->delay), record->note) {
    deepCopyDciObjList(record->from, from);
    deepCopyDciObjList(record->to, to);
}

TovCmdTimingDelay::TovCmdTimingDelay(char const* line) : TovCmdTimingDelay(0, nullptr) {
    readLine<options>(*this, line, {&maxDelayKind, &minDelayKind});
}

TovCmdTimingDelay::~TovCmdTimingDelay() {
    freeDciObjList(from);
    freeDciObjList(to);
}

std::string TovCmdMaxDelay::toSaveString(TOV*) {
    return saveString(*this);
}

void TovCmdMaxDelay::appendSaveString(std::string& line) const {
    appendLine(line, *this, "set_max_delay %f");
}

std::string TovCmdMinDelay::toSaveString(TOV*) {
    return saveString(*this);
}

void TovCmdMinDelay::appendSaveString(std::string& line) const {
    appendLine(line, *this, "set_min_delay %f");
}

}  // namespace kiri::tov
