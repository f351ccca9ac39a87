#include "analysis/keywords.h"

namespace tool {

std::string_view keywordOf(std::string_view text) {
    // Most lines that are not commands differ from all keywords here.
    bool const mayBeOne = startsWith(text, "set_") || startsWith(text, "create_");
    for (std::string_view keyword : keywords) {
        if (mayBeOne && startsWith(text, keyword)) return keyword;
    }
    return {};
}

CommandText::CommandText(std::string_view line) : text(trimFront(line)) {
    isDisabled = startsWith(text, disablePrefix);
    std::string_view const command = isDisabled ? trimFront(text.substr(disablePrefix.size())) : text;
    keyword = keywordOf(command);
    isDisabled = isDisabled && !keyword.empty();
    if (isDisabled) text = command;
}

}  // namespace tool
