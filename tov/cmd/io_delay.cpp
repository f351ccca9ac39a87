#include "tov/cmd/io_delay.h"

#include "platform/ut.h"
#include "tov/cmd/read_p.h"
#include "tov/cmd/write_p.h"

namespace kiri::tov {

using namespace impl_detail;

namespace {

//   ( set_input_delay | set_output_delay ) { -max | -min | -clock objects | number | objects }
constexpr std::string_view keywords[] = {"set_input_delay", "set_output_delay"};

constexpr Option<TovCmdIODelay> options[] = {
    {"-max", OptionValue::none, [](auto& cmd, auto) { cmd.max = true; }},
    {"-min", OptionValue::none, [](auto& cmd, auto) { cmd.min = true; }},
    {"-clock", OptionValue::ignoredAtEnd, readInto<&TovCmdIODelay::clock, false>},
};

void readDelayOrObjects(TovCmdIODelay& cmd, std::string_view word) {
    if (!parseFloatValue(word, cmd.delay)) readObjs(cmd.objects, word, false);
}

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

TovCmdIODelay::TovCmdIODelay(float delay_, char const* label_, char* note_)
    : TovCmd(note_), delay(delay_), label(orEmpty(label_)) {}

TovCmdIODelay::TovCmdIODelay(taDciSynIo* record)
    : TovCmdIODelay(fromThousandths(record->delay), record->label, record->note) {
    max = hasText(record->maxMarker);
    min = hasText(record->minMarker);
    if (record->clock != nullptr) setClock(clock, record->clock->name);
    deepCopyDciObjList(record->objects, objects);
}

void impl_detail::readWords(TovCmdIODelay& cmd, WordCursor words) {
    readOptions(cmd, words, options, readDelayOrObjects);
}

TovCmdIODelay::TovCmdIODelay(char const* line) : TovCmdIODelay(0, nullptr, nullptr) {
    readLine(*this, line, keywords);
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
    // This keyword passes through the formatter, which may leave it out.
    appendPiece(line, neoform("set_output_delay", static_cast<double>(delay)));
    appendDelay(line, *this);
}

}  // namespace kiri::tov
