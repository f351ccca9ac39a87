#include "tov/cmd/timing_delay.h"

#include "platform/ut.h"
#include "tov/cmd/read_p.h"
#include "tov/cmd/write_p.h"

namespace kiri::tov {

using namespace impl_detail;

namespace {

//   ( set_max_delay | set_min_delay ) { -from objects | -to objects | number | ignored word }
constexpr std::string_view keywords[] = {"set_max_delay", "set_min_delay"};

constexpr Option<TovCmdTimingDelay> options[] = {
    {"-from", OptionValue::ignoredAtEnd, readInto<&TovCmdTimingDelay::from, false>},
    {"-to", OptionValue::ignoredAtEnd, readInto<&TovCmdTimingDelay::to, false>},
};

void readDelay(TovCmdTimingDelay& cmd, std::string_view word) {
    parseFloatValue(word, cmd.delay);
}

void appendLine(std::string& line, TovCmdTimingDelay const& cmd, char const* format) {
    beginSaveLine(line, cmd);
    appendPiece(line, neoform(format, static_cast<double>(cmd.delay)));
    appendFirst(line, fromOption, cmd.from);
    appendFirst(line, toOption, cmd.to);
}

}  // namespace

TovCmdTimingDelay::TovCmdTimingDelay(float delay_, char* note_) : TovCmd(note_), delay(delay_) {}

TovCmdTimingDelay::TovCmdTimingDelay(taDciSynMax* record)
    : TovCmdTimingDelay(fromThousandths(record->delay), record->note) {
    deepCopyDciObjList(record->from, from);
    deepCopyDciObjList(record->to, to);
}

void impl_detail::readWords(TovCmdTimingDelay& cmd, WordCursor words) {
    readOptions(cmd, words, options, readDelay);
}

TovCmdTimingDelay::TovCmdTimingDelay(char const* line) : TovCmdTimingDelay(0, nullptr) {
    readLine(*this, line, keywords);
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
