#include "serve/position.h"

#include <algorithm>

namespace tool::lsp {

namespace {

bool continues(char byte) {
    return (static_cast<unsigned char>(byte) & 0xc0U) == 0x80;
}

// The number of UTF-16 units that a UTF-8 byte adds: a character of four bytes is two units.
std::size_t unitsOf(char byte) {
    if (continues(byte)) return 0;
    return static_cast<unsigned char>(byte) >= 0xf0 ? 2 : 1;
}

}  // namespace

std::size_t unitsIn(std::string_view text, Encoding encoding) {
    if (encoding == Encoding::utf8) return text.size();
    std::size_t units = 0;
    for (char byte : text) units += unitsOf(byte);
    return units;
}

std::size_t byteAt(std::string_view line, std::size_t character, Encoding encoding) {
    std::size_t at = 0;
    if (encoding == Encoding::utf8) {
        at = std::min(character, line.size());
    } else {
        for (std::size_t units = 0; at < line.size(); ++at) {
            units += unitsOf(line[at]);
            if (units > character) break;
        }
    }
    while (at > 0 && at < line.size() && continues(line[at])) --at;
    return at;
}

}  // namespace tool::lsp
