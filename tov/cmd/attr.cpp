#include "tov/cmd/attr.h"

#include <utility>

#include "tov/text.h"

namespace kiri::tov {

TovCmdAttr::TovCmdAttr(std::string text1_, std::string text2_, std::string text3_, std::string text4_,
                       std::string text5_)
    : text1(std::move(text1_)),
      text2(std::move(text2_)),
      text3(std::move(text3_)),
      text4(std::move(text4_)),
      text5(std::move(text5_)) {}

TovCmdAttr::~TovCmdAttr() = default;

std::string TovCmdAttr::toSaveString(TOV*) {
    std::string line = "#attribute";
    for (std::string const* text : {&text1, &text2, &text3, &text4, &text5}) {
        line.append("\t").append(encloseDoubleQuotes(*text));
    }
    if (!enabled) line.append("\t").append(disableOption);
    return line;
}

}  // namespace kiri::tov
