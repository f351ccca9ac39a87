#ifndef TOVENG_TOV_TEXT_H
#define TOVENG_TOV_TEXT_H

#include <cstddef>
#include <string_view>

namespace kiri::tov {

/// Prefix of a disabled command line.
inline constexpr std::string_view disablePrefix = "#disable ";
/// Last word of a disabled attribute line.
inline constexpr std::string_view disableOption = "-disable";

inline constexpr std::string_view whiteSpace = " \t\n\r\v\f";

inline bool isSpace(char c) {
    return c <= ' ' && (c == ' ' || (c >= '\t' && c <= '\r'));
}

/// The text of a C text; empty for null.
inline std::string_view orEmpty(char const* text) {
    return text == nullptr ? std::string_view() : text;
}

/// Whether a C text is there and not empty.
inline bool hasText(char const* text) {
    return text != nullptr && *text != '\0';
}

inline bool startsWith(std::string_view text, std::string_view prefix) {
    return text.substr(0, prefix.size()) == prefix;
}

inline std::string_view trimFront(std::string_view text) {
    std::size_t first = 0;
    while (first < text.size() && isSpace(text[first])) ++first;
    return text.substr(first);
}

inline std::string_view trim(std::string_view text) {
    while (!text.empty() && isSpace(text.back())) text.remove_suffix(1);
    return trimFront(text);
}

}  // namespace kiri::tov

#endif
