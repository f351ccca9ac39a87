#pragma once

#include <string>
#include <string_view>

#include "tov/base/text_p.h"
#include "tov/cmd/cmd.h"
#include "tov/cmd/obj_list_p.h"

namespace kiri::tov::impl_detail {

/// Returns the line of a command as a text of its own.
template <class Cmd>
std::string saveString(Cmd const& cmd) {
    std::string line;
    line.reserve(120);
    cmd.appendSaveString(line);
    return line;
}

/// Begins a command's line: writes the prefix if the command is disabled.
inline void beginSaveLine(std::string& line, TovCmd const& cmd) {
    if (!cmd.enabled) line += disablePrefix;
}

// Two blanks separate these options from their value.
inline constexpr std::string_view fromOption = " -from  ";
inline constexpr std::string_view toOption = " -to  ";

/// Appends a formatted piece; null appends nothing.
inline void appendPiece(std::string& line, char const* piece) {
    if (piece != nullptr) line += piece;
}

/// Appends `option` and the first object reference of a list, if there is one. Only the first object reference of a
/// list is written.
inline void appendFirst(std::string& line, std::string_view option, ppStlList<taDciObj*> const& list) {
    if (list.empty()) return;
    line += option;
    appendTclString(line, list.front());
}

}  // namespace kiri::tov::impl_detail
