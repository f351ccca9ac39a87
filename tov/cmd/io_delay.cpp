#include "tov/cmd/io_delay.h"

#include "platform/ut.h"
#include "tov/cmd/read_p.h"
#include "tov/cmd/write_p.h"

namespace kiri::tov {

using namespace impl_detail;

namespace {

void readDelayOrObjects(TovCmdIODelay& cmd, std::string_view word) {
    if (!parseFloatValue(word, cmd.delay)) readObjs(cmd.objects, word, false);
}

//   ( set_input_delay | set_output_delay ) { -max | -min | -clock objects | number | objects }
constexpr Option<TovCmdIODelay> options[] = {
    {"-max", OptionValue::none, [](auto& cmd, auto) { cmd.max = true; }},
    {"-min", OptionValue::none, [](auto& cmd, auto) { cmd.min = true; }},
    objects<&TovCmdIODelay::clock>("-clock"),
    {anyOtherWord, OptionValue::none, readDelayOrObjects, appendList<&TovCmdIODelay::objects>},
};

// The blank after the clock is always written, even at the end of a line without objects.
void appendDelay(std::string& line, TovCmdIODelay const& cmd) {
    if (cmd.max) line += " -max";
    if (cmd.min) line += " -min";
    appendPiece(line, neoform(" %f", static_cast<double>(cmd.delay)));
    appendFirst(line, " -clock ", cmd.clock);
    line += ' ';
    appendFirst(line, " ", cmd.objects);
}

}  // namespace

CommandKind const impl_detail::inputDelayKind = kindOf<TovCmdInputDelay, options>(
    TOVCMD_INPUTDELAY, "set_input_delay", "set_input_delay -max -min 2.5 -clock [get_clocks {clk}] [get_ports {d[0]}]");

CommandKind const impl_detail::outputDelayKind =
    kindOf<TovCmdOutputDelay, options>(TOVCMD_OUTPUTDELAY, "set_output_delay",
                                       "set_output_delay -max -min 2.5 -clock [get_clocks {clk}] [get_ports {q[0]}]");

TovCmdIODelay::TovCmdIODelay(float delay_, char const* label_, char* note_)
    : TovCmd(note_), delay(delay_), label(orEmpty(label_)) {}

TovCmdIODelay::TovCmdIODelay(taDciSynIo* record)
    : TovCmdIODelay(fromThousandths(record->delay), record->label, record->note) {
    max = hasText(record->maxMarker);
    min = hasText(record->minMarker);
    if (record->clock != nullptr) setClock(clock, record->clock->name);
    deepCopyDciObjList(record->objects, objects);
}

TovCmdIODelay::TovCmdIODelay(char const* line) : TovCmdIODelay(0, nullptr, nullptr) {
    readLine<options>(*this, line, {&inputDelayKind, &outputDelayKind});
}

TovCmdIODelay::~TovCmdIODelay() {
    freeDciObjList(objects);
    freeDciObjList(clock);
}

std::string TovCmdInputDelay::toSaveString(TOV*) {
    return saveString(*this);
}

void TovCmdInputDelay::appendSaveString(std::string& line) const {
    beginSaveLine(line, *this);
    line += "set_input_delay";
    appendDelay(line, *this);
}

std::string TovCmdOutputDelay::toSaveString(TOV*) {
    return saveString(*this);
}

void TovCmdOutputDelay::appendSaveString(std::string& line) const {
    beginSaveLine(line, *this);
    // The formatter writes this keyword; if it returns null, the keyword is left out.
    appendPiece(line, neoform("set_output_delay", static_cast<double>(delay)));
    appendDelay(line, *this);
}

}  // namespace kiri::tov
