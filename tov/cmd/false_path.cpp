#include "tov/cmd/false_path.h"

#include "platform/ut.h"
#include "tov/cmd/read_p.h"
#include "tov/cmd/write_p.h"

namespace kiri::tov {

using namespace impl_detail;

namespace {

//   set_false_path { -from objects | -to objects | -through objects | ignored word }
constexpr std::string_view keywords[] = {"set_false_path"};

constexpr Option<TovCmdFalsePath> options[] = {
    {"-from", OptionValue::ignoredAtEnd, readInto<&TovCmdFalsePath::from, false>},
    {"-to", OptionValue::ignoredAtEnd, readInto<&TovCmdFalsePath::to, false>},
    {"-through", OptionValue::ignoredAtEnd, readInto<&TovCmdFalsePath::through, false>},
};

}  // namespace

TovCmdFalsePath::TovCmdFalsePath(char* note_) : TovCmd(note_) {}

TovCmdFalsePath::TovCmdFalsePath(std::nullptr_t) : TovCmdFalsePath(static_cast<char*>(nullptr)) {}

TovCmdFalsePath::TovCmdFalsePath(taDciSynFalse* record) : TovCmdFalsePath(record->note) {
    deepCopyDciObjList(record->from, from);
    deepCopyDciObjList(record->to, to);
    deepCopyDciObjList(record->through, through);
}

void impl_detail::readWords(TovCmdFalsePath& cmd, WordCursor words) {
    readOptions(cmd, words, options, ignoreWord);
}

TovCmdFalsePath::TovCmdFalsePath(char const* line) : TovCmdFalsePath(nullptr) {
    readLine(*this, line, keywords);
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
