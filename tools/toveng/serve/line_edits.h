#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tool::lsp {

// What a line of a constraint file may be rewritten as. Each returns nothing where that does not apply.

/// The command switched off where it is on, and the reverse. `isOn` becomes what it is then.
std::optional<std::string> withOtherState(std::string_view line, bool& isOn);

/// The line as a save writes it, if a save keeps all of it and it differs.
std::optional<std::string> asSaved(std::string_view line);

/// A line for each of the objects that the command names, if that keeps all of it.
std::optional<std::string> oneForEachObject(std::string_view line);

/// The lines of a command that goes on as one line: a blank in the place of each line end, and of the '\' before it.
std::string joinedLines(std::vector<std::string_view> const& lines);

}  // namespace tool::lsp
