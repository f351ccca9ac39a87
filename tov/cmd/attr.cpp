#include "tov/cmd/attr.h"

#include <string_view>
#include <utility>

#include "tov/cmd/write.h"
#include "tov/text.h"
#include "tov/tokenizer.h"

namespace kiri::tov {

TovCmdAttr::TovCmdAttr(std::string text1_, std::string text2_, std::string text3_, std::string text4_,
                       std::string text5_)
    : text1(std::move(text1_)),
      text2(std::move(text2_)),
      text3(std::move(text3_)),
      text4(std::move(text4_)),
      text5(std::move(text5_)) {}

//   #attribute text text text text text [ -disable | ignored word ]
TovCmdAttr::TovCmdAttr(char const* line) {
    WordCursor words(orEmpty(line));
    std::string_view word;
    words.next(word);
    for (std::string* text : {&text1, &text2, &text3, &text4, &text5}) {
        if (words.next(word)) *text = word;
    }
    bool const marked = words.next(word) && word == disableOption;
    enabled = !(marked && !words.next(word));
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
