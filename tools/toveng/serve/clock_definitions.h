#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "serve/workspace.h"

namespace tool::lsp {

/// A command that defines a clock, and the position of its name.
struct ClockDefinition {
    std::string name;
    std::size_t line = 0;
    std::size_t begin = 0;  ///< of the name, or of the target that names the clock
    std::size_t end = 0;
    bool hasName = false;  ///< by "-name"
    bool isEnabled = true;
};

/// Returns the clock that a line defines, if any.
std::optional<ClockDefinition> clockIn(std::string_view line, std::size_t number);

/// The clocks that a document or a file defines, in the order of the lines.
std::vector<ClockDefinition> clocksIn(Text const& text);
std::vector<ClockDefinition> clocksIn(SetFile const& file);

/// Returns the files of the set of a document, without the document itself.
std::vector<SetFile const*> filesBeside(Workspace const& workspace, OpenDocument const& document);

/// Returns whether a word is a pattern.
bool isPattern(std::string_view word);

/// Returns whether a word matches a name: '*' matches any text and '?' any character, '\' makes the next character
/// literal, and '.' and '/' are equal.
bool standsFor(std::string_view word, std::string_view name);

}  // namespace tool::lsp
