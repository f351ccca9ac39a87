#pragma once

#include <string>
#include <string_view>

namespace tool::sdc {

/// Returns each line of a text after "# ", with a line feed.
std::string commented(std::string_view text);

/// Returns the comments between two commands of a script in a form that a constraint file can hold, each line with a
/// line feed. The first may begin after a ";".
std::string commentsIn(std::string_view text, bool startsInLine);

}  // namespace tool::sdc
