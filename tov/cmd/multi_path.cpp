#include "tov/cmd/multi_path.h"

#include "platform/ut.h"
#include "tov/cmd/read_p.h"
#include "tov/cmd/write_p.h"

namespace kiri::tov {

using namespace impl_detail;

namespace {

//   set_multicycle_path { -from objects | -to objects | number | ignored word }
constexpr std::string_view keywords[] = {"set_multicycle_path"};

constexpr Option<TovCmdMultiPath> options[] = {
    {"-from", OptionValue::ignoredAtEnd, readInto<&TovCmdMultiPath::from, false>},
    {"-to", OptionValue::ignoredAtEnd, readInto<&TovCmdMultiPath::to, false>},
};

void readMultiplier(TovCmdMultiPath& cmd, std::string_view word) {
    float number = 0;
    if (parseFloatValue(word, number)) cmd.multiplier = truncateToInt(number);
}

}  // namespace

TovCmdMultiPath::TovCmdMultiPath(int multiplier_, char* note_) : TovCmd(note_), multiplier(multiplier_) {}

TovCmdMultiPath::TovCmdMultiPath(taDciSynMcyc* record)
    : TovCmdMultiPath(truncateToInt(record->multiplier), record->note) {
    deepCopyDciObjList(record->from, from);
    deepCopyDciObjList(record->to, to);
}

void impl_detail::readWords(TovCmdMultiPath& cmd, WordCursor words) {
    readOptions(cmd, words, options, readMultiplier);
}

TovCmdMultiPath::TovCmdMultiPath(char const* line) : TovCmdMultiPath(0, nullptr) {
    readLine(*this, line, keywords);
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
