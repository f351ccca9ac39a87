#include <algorithm>

#include "references.h"

namespace tool::sdc {

std::string toBytes(std::string_view text) {
    if (std::all_of(text.begin(), text.end(), [](char c) { return c > 0; })) return std::string(text);
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        auto const c = static_cast<unsigned char>(text[i]);
        // U+0080 to U+00FF, and the two bytes that Tcl keeps a NUL in
        bool const isByte = (c == 0xc2 || c == 0xc3 || c == 0xc0) && i + 1 < text.size();
        if (isByte) {
            ++i;
            bytes += static_cast<char>((c & 3U) << 6U | (static_cast<unsigned char>(text[i]) & 0x3fU));
        } else {
            bytes += text[i];
        }
    }
    return bytes;
}

std::string fromBytes(std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size());
    for (char const byte : bytes) {
        auto const c = static_cast<unsigned char>(byte);
        if (c == 0 || c >= 0x80) {
            text += static_cast<char>(0xc0U | c >> 6U);
            text += static_cast<char>(0x80U | (c & 0x3fU));
        } else {
            text += byte;
        }
    }
    return text;
}

}  // namespace tool::sdc
