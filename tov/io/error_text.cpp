#include "tov/io/error_text_p.h"

#include <locale.h>
#include <string.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <new>
#include <type_traits>

namespace kiri::tov::impl_detail {

namespace {

struct Character {
    char32_t code;
    std::size_t size;  // in bytes
};

constexpr Character invalidByte{0, 1};

// Decodes the first character of a non-empty text.
Character decode(std::string_view text) {
    auto const first = static_cast<unsigned char>(text.front());
    if (first < 0x80) return {first, 1};
    std::size_t const size = first < 0xe0 ? 2 : first < 0xf0 ? 3 : 4;
    if (first < 0xc0 || first > 0xf4 || text.size() < size) return invalidByte;
    char32_t code = first & (0xffU >> (size + 1));
    for (char const c : text.substr(1, size - 1)) {
        auto const byte = static_cast<unsigned char>(c);
        if ((byte & 0xc0U) != 0x80) return invalidByte;
        code = code << 6U | (byte & 0x3fU);
    }
    constexpr char32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
    bool const surrogate = code >= 0xd800 && code <= 0xdfff;
    return code < smallest[size] || code > 0x10ffff || surrogate ? invalidByte : Character{code, size};
}

// Returns whether a text for users may contain the character: not a control character or a line or paragraph separator.
bool isShown(char32_t code) {
    bool const control = code < 0x20 || (code >= 0x7f && code <= 0x9f);
    return !control && code != 0x2028 && code != 0x2029;
}

bool continuesCharacter(char c) {
    return (static_cast<unsigned char>(c) & 0xc0U) == 0x80;
}

bool isUtf8(std::string_view text) {
    while (!text.empty()) {
        Character const character = decode(text);
        if (character.code == invalidByte.code && text.front() != '\0') return false;
        text.remove_prefix(character.size);
    }
    return true;
}

std::string fromLatin1(std::string_view bytes) {
    std::string text;
    for (char const c : bytes) {
        auto const byte = static_cast<unsigned char>(c);
        if (byte < 0x80) {
            text += c;
        } else {
            text += static_cast<char>(0xc0U | byte >> 6U);
            text += static_cast<char>(0x80U | (byte & 0x3fU));
        }
    }
    return text;
}

struct FreeLocale {
    void operator()(locale_t locale) const { ::freelocale(locale); }
};

}  // namespace

std::string systemText(int error) {
    std::unique_ptr<std::remove_pointer_t<locale_t>, FreeLocale> const plain(::newlocale(LC_ALL_MASK, "C", nullptr));
    if (plain == nullptr) throw std::bad_alloc();
    return ::strerror_l(error, plain.get());
}

Result systemFailure(int error) {
    return {error, systemText(error)};
}

Result stoppedLoad() {
    return {failureStopped, "The caller stopped the load"};
}

std::string errorText(std::string_view text) {
    std::string line;
    while (!text.empty()) {
        Character const character = decode(text);
        if (isShown(character.code)) {
            line += text.substr(0, character.size);
        } else {
            line += '?';
        }
        text.remove_prefix(character.size);
    }
    constexpr std::size_t longest = 1000;
    constexpr std::string_view omission = "...";
    if (line.size() <= longest) return line;
    std::size_t begin = (longest - omission.size()) / 2;
    std::size_t end = line.size() - begin;
    while (continuesCharacter(line[begin])) --begin;
    while (continuesCharacter(line[end])) ++end;
    return line.replace(begin, end - begin, omission);
}

std::string utf8Of(std::string_view bytes) {
    return isUtf8(bytes) ? std::string(bytes) : fromLatin1(bytes);
}

std::string quoted(std::string_view words) {
    constexpr std::size_t longest = 200;
    std::string text = utf8Of(words);
    if (text.size() > longest) {
        std::size_t end = longest;
        while (continuesCharacter(text[end])) --end;
        text.replace(end, std::string::npos, "...");
    }
    if (words.substr(0, words.find('\t')) == "#attribute") std::replace(text.begin(), text.end(), '\t', ' ');
    return "`" + text + "`";
}

}  // namespace kiri::tov::impl_detail
