#pragma once

#include <string_view>

#include "analysis/words.h"

namespace tool {

/// The keywords of the commands of the file format.
inline constexpr std::string_view keywords[] = {
    "create_clock",   "create_generated_clock", "set_clock_groups", "set_input_delay",     "set_output_delay",
    "set_false_path", "set_max_delay",          "set_min_delay",    "set_multicycle_path",
};

/// The prefix of a disabled command.
inline constexpr std::string_view disablePrefix = "#disable ";

/// Returns the keyword that a text begins with; empty if there is none. No keyword is a prefix of another one.
std::string_view keywordOf(std::string_view text);

/// A line of a constraint file, split into its parts.
struct CommandText {
    explicit CommandText(std::string_view line);

    std::string_view text;     ///< the line from its first word on; without "#disable " before a command
    std::string_view keyword;  ///< that `text` begins with; empty unless the line is a command
    bool isDisabled = false;   ///< "#disable " precedes the command
};

}  // namespace tool
