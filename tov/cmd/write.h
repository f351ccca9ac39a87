#pragma once

#include <string>
#include <string_view>

#include "tov/cmd/cmd.h"
#include "tov/cmd/obj_list.h"
#include "tov/text.h"

namespace kiri::tov {

/// The line of a command as a text of its own.
template <class Cmd>
std::string saveString(Cmd const& cmd) {
    std::string line;
    line.reserve(120);
    cmd.appendSaveString(line);
    return line;
}

/// Begins a command's line: the prefix of a disabled command, or nothing.
inline void beginSaveLine(std::string& line, TovCmd const& cmd) {
    if (!cmd.enabled) line += disablePrefix;
}

// Two blanks stand between these options and their value.
inline constexpr std::string_view fromOption = " -from  ";
inline constexpr std::string_view toOption = " -to  ";

/// Appends a formatted piece; null appends nothing.
inline void appendPiece(std::string& line, char const* piece) {
    if (piece != nullptr) line += piece;
}

/// Appends `option` and the first reference of a list, if there is one. A file holds only the first reference of a
/// list; the others are not written.
inline void appendFirst(std::string& line, std::string_view option, ppStlList<taDciObj*> const& list) {
    if (list.empty()) return;
    line += option;
    appendTclString(line, list.front());
}

}  // namespace kiri::tov
