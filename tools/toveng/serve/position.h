#pragma once

#include <cstddef>
#include <string_view>

namespace tool::lsp {

/// How a client counts the characters of a line.
enum class Encoding { utf16, utf8 };

/// Returns the number of the client's units in a text, which is UTF-8.
std::size_t unitsIn(std::string_view text, Encoding encoding);

/// Returns how many bytes of the line precede the client's character; the whole line if it ends before. A place within
/// a character is the character's first byte.
std::size_t byteAt(std::string_view line, std::size_t character, Encoding encoding);

}  // namespace tool::lsp
