#pragma once

#include <cstddef>
#include <cstdio>
#include <string>
#include <string_view>

// The words of constraint lines, as the file format defines them.

namespace tool {

/// Blank, tab, LF, CR, VT and FF are white space.
inline constexpr std::string_view whiteSpace = " \t\n\r\v\f";

/// What separates the words of a command, however they are nested: white space, brackets, braces and quotes.
inline constexpr std::string_view separators = " \t\n\r\v\f[]{}\"";

inline bool isSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
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

/// Returns the first word of a text that does not begin with white space.
inline std::string_view firstWord(std::string_view text) {
    return text.substr(0, text.find_first_of(whiteSpace));
}

/// Appends a word to a text, with a blank between them.
inline void addWord(std::string& text, std::string_view word) {
    if (!text.empty()) text += ' ';
    text += word;
}

/// Returns a number as a message shows it.
inline std::string number(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%g", value);
    return text;
}

}  // namespace tool
