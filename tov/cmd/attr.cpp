#include "tov/cmd/attr.h"

#include <iterator>
#include <string_view>
#include <utility>

#include "tov/base/text_p.h"
#include "tov/base/tokenizer_p.h"
#include "tov/cmd/read_p.h"
#include "tov/cmd/write_p.h"

namespace kiri::tov {

using namespace impl_detail;

namespace {

/// The words of a line:
///
///   #attribute text text text text text [ -disable | ignored word ]
struct Words {
    explicit Words(WordCursor line) {
        while (count < std::size(word) && line.next(word[count])) ++count;
    }

    bool sayDisabled() const { return count == 7 && word[6] == disableOption; }

    std::string_view word[8];  // those beyond the seventh are not looked at
    std::size_t count = 0;
};

}  // namespace

TovCmdAttr::TovCmdAttr(std::string text1_, std::string text2_, std::string text3_, std::string text4_,
                       std::string text5_)
    : text1(std::move(text1_)),
      text2(std::move(text2_)),
      text3(std::move(text3_)),
      text4(std::move(text4_)),
      text5(std::move(text5_)) {}

TovCmdAttr::TovCmdAttr(char const* line) {
    Words const words{WordCursor(orEmpty(line))};
    std::size_t index = 0;
    for (std::string* text : {&text1, &text2, &text3, &text4, &text5}) *text = words.word[++index];
    enabled = !words.sayDisabled();
}

std::unique_ptr<TovCmdAttr> impl_detail::makeAttribute(WordCursor line) {
    Words const words(line);
    if (words.count != 6 && words.count != 7) return nullptr;
    auto const text = [&](int index) { return std::string(words.word[index]); };
    auto cmd = std::make_unique<TovCmdAttr>(text(1), text(2), text(3), text(4), text(5));
    cmd->enabled = !words.sayDisabled();
    return cmd;
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
