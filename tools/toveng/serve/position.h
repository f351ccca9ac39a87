#pragma once

#include <cstddef>
#include <string_view>

namespace tool::lsp {

/// How a client counts the characters of a line.
enum class Encoding { utf16, utf8 };

/// Returns the length of a UTF-8 text in the client's units.
std::size_t unitsIn(std::string_view text, Encoding encoding);

/// Returns how many bytes of the line precede the client's character; all of them if the line is shorter. A position
/// inside a character counts as its first byte.
std::size_t byteAt(std::string_view line, std::size_t character, Encoding encoding);

}  // namespace tool::lsp
