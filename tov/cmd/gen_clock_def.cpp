#include "tov/cmd/gen_clock_def.h"

#include "platform/ut.h"
#include "tov/cmd/read_p.h"
#include "tov/cmd/write_p.h"

namespace kiri::tov {

using namespace impl_detail;

namespace {

void readInteger(std::string& out, std::string_view value) {
    float number = 0;
    if (!parseFloatValue(value, number)) return;
    out.clear();
    appendPiece(out, neoform("%d", truncateToInt(number)));
}

void readDutyCycle(TovCmdGenClockDef& cmd, std::string_view value) {
    float number = 0;
    if (!parseFloatValue(value, number)) return;
    cmd.dutyCycle.clear();
    appendPiece(cmd.dutyCycle, neoform("%f", static_cast<double>(number)));
}

//   create_generated_clock { -divide_by number | -multiply_by number | -name word | -duty_cycle number
//                          | -source objects | -master_clock objects | objects }
constexpr Option<TovCmdGenClockDef> options[] = {
    {"-divide_by", OptionValue::ignoredAtEnd, [](auto& cmd, auto value) { readInteger(cmd.divideBy, value); }},
    {"-multiply_by", OptionValue::ignoredAtEnd, [](auto& cmd, auto value) { readInteger(cmd.multiplyBy, value); }},
    {"-name", OptionValue::ignoredAtEnd, [](auto& cmd, auto value) { cmd.clockName = value; }},
    {"-duty_cycle", OptionValue::ignoredAtEnd, readDutyCycle},
    objects<&TovCmdGenClockDef::sources, true>("-source"),
    objects<&TovCmdGenClockDef::masterClock, true>("-master_clock"),
    objects<&TovCmdGenClockDef::targets, true>(anyOtherWord),
};

void appendInteger(std::string& line, char const* format, std::string const& text) {
    float number = 0;
    if (parseFloatValue(text, number)) appendPiece(line, neoform(format, truncateToInt(number)));
}

}  // namespace

CommandKind const impl_detail::genClockKind = kindOf<TovCmdGenClockDef, options>(
    TOVCMD_GENCLOCK, "create_generated_clock",
    "create_generated_clock -divide_by 2 -multiply_by 3 -duty_cycle 50 -source [get_pins {u_pll/CLKI}] "
    "-master_clock [get_clocks {clk}] -name clk_2 [get_pins {u_pll/CLKOP}]");

TovCmdGenClockDef::TovCmdGenClockDef(char const* line) : TovCmdGenClockDef(nullptr, nullptr) {
    readLine<options>(*this, line, {&genClockKind});
}

TovCmdGenClockDef::TovCmdGenClockDef(taDciSynClk* record) : TovCmdGenClockDef(record->name, record->text) {
    divideBy = orEmpty(record->divideBy);
    multiplyBy = orEmpty(record->multiplyBy);
    dutyCycle = orEmpty(record->dutyCycle);
    deepCopyDciObjList(record->source, sources);
    if (record->masterClock != nullptr) setClock(masterClock, record->masterClock->name);
    deepCopyDciObjList(record->targets, targets);
}

TovCmdGenClockDef::TovCmdGenClockDef(char const* name, char const* text) : TovCmd(text), clockName(orEmpty(name)) {}

TovCmdGenClockDef::~TovCmdGenClockDef() {
    freeDciObjList(sources);
    freeDciObjList(masterClock);
    freeDciObjList(targets);
}

std::string TovCmdGenClockDef::toSaveString(TOV*) {
    return saveString(*this);
}

void TovCmdGenClockDef::appendSaveString(std::string& line) const {
    beginSaveLine(line, *this);
    line += "create_generated_clock";
    appendInteger(line, " -divide_by %d", divideBy);
    appendInteger(line, " -multiply_by %d", multiplyBy);
    float duty = 0;
    if (parseFloatValue(dutyCycle, duty)) {
        appendPiece(line, neoform(" -duty_cycle %f", static_cast<double>(duty)));
    }
    appendFirst(line, " -source ", sources);
    appendFirst(line, " -master_clock ", masterClock);
    if (!clockName.empty()) line.append(" -name ").append(clockName);
    appendFirst(line, " ", targets);
}

}  // namespace kiri::tov
