#pragma once

#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <typeinfo>

#include "tov/cmd/commands.h"
#include "tov/cmd/read.h"
#include "tov/tov.h"

namespace kiri::tov {

/// A kind of command: its list, and the text with which its lines begin.
struct CommandKind {
    TOVCMD_TYPE list;
    std::string_view keyword;
    /// Makes the command of a line that begins with the keyword; null if the line makes none.
    std::unique_ptr<TovCmd> (*make)(CommandKind const& kind, std::string_view line);
    /// Appends the line that a save writes for a command.
    void (*append)(std::string& text, TovCmd& cmd, TOV& document);
};

/// A line whose first word goes on after the keyword makes an empty command.
template <class Cmd>
std::unique_ptr<TovCmd> makeCommand(CommandKind const& kind, std::string_view line) {
    auto cmd = std::make_unique<Cmd>(static_cast<char const*>(nullptr));
    WordCursor words(line);
    if (words.skipKeyword(kind.keyword.size())) readWords(*cmd, words);
    return cmd;
}

/// An attribute line without six or seven words makes no command.
template <>
inline std::unique_ptr<TovCmd> makeCommand<TovCmdAttr>(CommandKind const&, std::string_view line) {
    return makeAttribute(WordCursor(line));
}

/// A class derived from `Cmd` may save another one.
template <class Cmd>
void appendCommand(std::string& text, TovCmd& cmd, TOV& document) {
    if (typeid(cmd) == typeid(Cmd)) {
        static_cast<Cmd&>(cmd).appendSaveString(text);
    } else {
        text += cmd.toSaveString(&document);
    }
}

template <class Cmd>
constexpr CommandKind kindOf(TOVCMD_TYPE list, std::string_view keyword) {
    return {list, keyword, makeCommand<Cmd>, appendCommand<Cmd>};
}

/// All kinds, in the order of writing, which is that of the lists. No keyword begins with another one, so each line is
/// of one kind at most.
inline constexpr CommandKind commandKinds[] = {
    kindOf<TovCmdClockDef>(TOVCMD_CLOCK, "create_clock"),
    kindOf<TovCmdGenClockDef>(TOVCMD_GENCLOCK, "create_generated_clock"),
    kindOf<TovCmdClockGroupDef>(TOVCMD_CLOCKGROUP, "set_clock_groups"),
    kindOf<TovCmdInputDelay>(TOVCMD_INPUTDELAY, "set_input_delay"),
    kindOf<TovCmdOutputDelay>(TOVCMD_OUTPUTDELAY, "set_output_delay"),
    kindOf<TovCmdMaxDelay>(TOVCMD_MAXDELAY, "set_max_delay"),
    kindOf<TovCmdMinDelay>(TOVCMD_MINDELAY, "set_min_delay"),
    kindOf<TovCmdMultiPath>(TOVCMD_MULTICYCLE, "set_multicycle_path"),
    kindOf<TovCmdFalsePath>(TOVCMD_FALSEPATH, "set_false_path"),
    kindOf<TovCmdAttr>(TOVCMD_ATTRIBUTE, "#attribute"),
};

static_assert(std::size(commandKinds) == TOVCMD_ATTRIBUTE, "each list has its kind");

}  // namespace kiri::tov
