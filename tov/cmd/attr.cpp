#include "tov/cmd/attr.h"

#include <iterator>
#include <string_view>
#include <utility>

#include "tov/cmd/read_p.h"
#include "tov/cmd/write_p.h"

namespace kiri::tov {

using namespace impl_detail;

namespace {

/// The words of a line after the keyword:
///
///   #attribute text text text text text [ -disable | ignored word ]
struct AttributeWords {
    explicit AttributeWords(WordCursor line) {
        while (count < std::size(word) && line.next(word[count])) ++count;
    }

    bool sayDisabled() const { return count == 6 && word[5] == disableOption; }

    std::string_view word[7];  // those beyond the sixth are ignored
    std::size_t count = 0;
};

// An attribute without five or six words makes no command.
Result makeAttribute(CommandKind const&, WordCursor line, std::unique_ptr<TovCmd>& cmd) {
    AttributeWords const words(line);
    if (words.count != 5 && words.count != 6) return {};
    auto const text = [&](int index) { return std::string(words.word[index]); };
    cmd = std::make_unique<TovCmdAttr>(text(0), text(1), text(2), text(3), text(4));
    cmd->enabled = !words.sayDisabled();
    return {};
}

bool appendNoLists(TovCmd& cmd, std::vector<TovReferences>&) {
    return dynamic_cast<TovCmdAttr*>(&cmd) != nullptr;
}

}  // namespace

CommandKind const impl_detail::attributeKind = {
    TOVCMD_ATTRIBUTE,    "#attribute",  "#attribute net u_a/q syn_keep 1 boolean",
    &typeid(TovCmdAttr), makeAttribute, appendCommand<TovCmdAttr>,
    appendNoLists};

TovCmdAttr::TovCmdAttr(std::string text1_, std::string text2_, std::string text3_, std::string text4_,
                       std::string text5_)
    : text1(std::move(text1_)),
      text2(std::move(text2_)),
      text3(std::move(text3_)),
      text4(std::move(text4_)),
      text5(std::move(text5_)) {}

TovCmdAttr::TovCmdAttr(char const* line) {
    WordCursor cursor(orEmpty(line));
    std::string_view keyword;
    cursor.next(keyword);
    AttributeWords const words(cursor);
    std::size_t index = 0;
    for (std::string* text : {&text1, &text2, &text3, &text4, &text5}) *text = words.word[index++];
    enabled = !words.sayDisabled();
}

std::string TovCmdAttr::toSaveString(TOV*) {
    return saveString(*this);
}

void TovCmdAttr::appendSaveString(std::string& line) const {
    line += "#attribute";
    for (std::string const* text : {&text1, &text2, &text3, &text4, &text5}) {
        line.append("\t").append(encloseDoubleQuotes(*text));
    }
    if (!enabled) line.append("\t").append(disableOption);
}

}  // namespace kiri::tov
