#include "tov/cmd/clock_def.h"

#include "platform/ut.h"
#include "tov/cmd/read_p.h"
#include "tov/cmd/write_p.h"

namespace kiri::tov {

using namespace impl_detail;

namespace {

void addEdge(TovCmdClockDef& cmd, std::string_view text) {
    float edge = 0;
    if (parseFloatValue(text, edge)) cmd.waveform.push_back(edge);
}

// A second "-waveform" adds its edges to those of the first.
void readWaveform(TovCmdClockDef& cmd, std::string_view group) {
    WordCursor edges(group);
    for (std::string_view edge; edges.next(edge);) addEdge(cmd, edge);
}

//   create_clock { -period number | -name word | -waveform { number ... } | objects }
constexpr Option<TovCmdClockDef> options[] = {
    {"-period", OptionValue::ignoredAtEnd, [](auto& cmd, auto value) { parseFloatValue(value, cmd.period); }},
    {"-name", OptionValue::ignoredAtEnd, [](auto& cmd, auto value) { cmd.clockName = value; }},
    // The one option that is an error without its value.
    {"-waveform", OptionValue::requiredAtEnd, readWaveform},
    objects<&TovCmdClockDef::targets, true>(anyOtherWord),
};

}  // namespace

CommandKind const impl_detail::clockKind = kindOf<TovCmdClockDef, options>(
    TOVCMD_CLOCK, "create_clock", "create_clock -period 10 -waveform {0 5} -name clk [get_ports {clk}]");

TovCmdClockDef::TovCmdClockDef(char const* line) : TovCmdClockDef(0, nullptr, nullptr) {
    readLine<options>(*this, line, {&clockKind});
}

TovCmdClockDef::TovCmdClockDef(taDciSynClk* record)
    : TovCmdClockDef(fromThousandths(record->period), record->name, record->text) {
    for (char const* edge : record->waveform) {
        if (edge != nullptr) addEdge(*this, edge);
    }
    deepCopyDciObjList(record->targets, targets);
}

TovCmdClockDef::TovCmdClockDef(float period_, char const* name, char const* text)
    : TovCmd(text), period(period_), clockName(orEmpty(name)) {}

TovCmdClockDef::~TovCmdClockDef() {
    freeDciObjList(targets);
}

std::string TovCmdClockDef::toSaveString(TOV*) {
    return saveString(*this);
}

void TovCmdClockDef::appendSaveString(std::string& line) const {
    beginSaveLine(line, *this);
    appendPiece(line, neoform("create_clock -period %f", static_cast<double>(period)));
    if (!waveform.empty()) {
        line += " -waveform { ";
        for (float edge : waveform) appendPiece(line, neoform("%f ", static_cast<double>(edge)));
        line += '}';
    }
    if (!clockName.empty()) line.append(" -name ").append(clockName);
    appendFirst(line, " ", targets);
}

}  // namespace kiri::tov
