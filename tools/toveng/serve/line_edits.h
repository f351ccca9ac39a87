#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tool::lsp {

// Ways to rewrite a line of a constraint file. Each returns nothing if it does not apply.

/// Disables an enabled command and enables a disabled one. `isOn` becomes the new state.
std::optional<std::string> withOtherState(std::string_view line, bool& isOn);

/// The line as a save writes it, if a save keeps all of it and it differs.
std::optional<std::string> asSaved(std::string_view line);

/// A line for each object of the command, if that loses nothing.
std::optional<std::string> oneForEachObject(std::string_view line);

/// The lines of a continued command as one line, with a blank in place of each line end and the '\' before it.
std::string joinedLines(std::vector<std::string_view> const& lines);

}  // namespace tool::lsp
