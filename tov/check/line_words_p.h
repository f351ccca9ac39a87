#pragma once

#include <string_view>
#include <vector>

#include "tov/tov.h"

namespace kiri::tov::impl_detail {

/// What a command takes from a word.
enum class Takes {
    nothing,
    number,
    wholeNumber,
    edges,  ///< the numbers of a list, after those of an earlier option
    name,
    objects,
    group,  ///< objects, after those of an earlier option
};

/// A word of a line as the command reads it.
struct LineWord {
    enum class Use {
        option,         ///< an option of the command
        unknownOption,  ///< begins with "-", and the command has no such option
        value,          ///< follows an option of the command
        unknownValue,   ///< follows an unknown option that takes a value elsewhere
        other
    };

    std::string_view text;  ///< a view into the line
    Use use;
    std::string_view option;  ///< the option that it is or follows; empty for `other`
    Takes takes;              ///< for an option: from its value
    bool counts = false;      ///< the command keeps it: no later word replaces it
};

/// Returns whether a word begins as an option does, with "-" and no number.
bool looksLikeOption(std::string_view word);

/// Returns the words after the keyword of a command's line.
std::vector<LineWord> lineWordsOf(TOVCMD_TYPE list, std::string_view command);

/// Returns the only option of a list's commands that begins with `word`, of at least two characters; an empty text if
/// there is none or more than one.
std::string_view optionInFull(TOVCMD_TYPE list, std::string_view word);

}  // namespace kiri::tov::impl_detail
