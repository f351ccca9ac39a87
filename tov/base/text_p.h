#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace kiri::tov::impl_detail {

/// Prefix of a disabled command line.
inline constexpr std::string_view disablePrefix = "#disable ";
/// Last word of a disabled attribute line.
inline constexpr std::string_view disableOption = "-disable";

inline constexpr std::string_view whiteSpace = " \t\n\r\v\f";

namespace chars {

enum Class : unsigned char { plain, space, opening };

/// The class of each character: white space, or a character that opens a group or a quoted word.
inline constexpr auto classes = [] {
    std::array<Class, 256> table{};
    for (char const c : whiteSpace) table[static_cast<unsigned char>(c)] = space;
    for (char const c : {'"', '[', '{'}) table[static_cast<unsigned char>(c)] = opening;
    return table;
}();

}  // namespace chars

inline bool isSpace(char c) {
    return chars::classes[static_cast<unsigned char>(c)] == chars::space;
}

/// Whether `c` opens a group or a quoted word.
inline bool opensGroupOrQuote(char c) {
    return chars::classes[static_cast<unsigned char>(c)] == chars::opening;
}

/// Returns the position of the first white space in a text, or its end. Compares eight characters at a time, see
/// docs/performance.md.
inline char const* findSpace(char const* at, char const* end) {
    constexpr std::uint64_t ones = 0x0101010101010101;
    while (end - at >= 8) {
        std::uint64_t chars = 0;
        std::memcpy(&chars, at, sizeof chars);
        // The high bit of each character up to a blank, exact up to the first one.
        std::uint64_t const found = (chars - ones * (' ' + 1)) & ~chars & (ones * 0x80);
        at += found == 0 ? 8 : __builtin_ctzll(found) / 8;
        if (found == 0) continue;
        if (isSpace(*at)) return at;
        ++at;  // a control character
    }
    while (at != end && !isSpace(*at)) ++at;
    return at;
}

/// Returns a C text as a view; an empty one for null.
inline std::string_view orEmpty(char const* text) {
    return text == nullptr ? std::string_view() : text;
}

/// Whether a C text is neither null nor empty.
inline bool hasText(char const* text) {
    return text != nullptr && *text != '\0';
}

inline bool startsWith(std::string_view text, std::string_view prefix) {
    // Compare the last character first: it differs in most keywords.
    return text.size() >= prefix.size() && text[prefix.size() - 1] == prefix.back() &&
           text.substr(0, prefix.size()) == prefix;
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

}  // namespace kiri::tov::impl_detail
