#ifndef TOVENG_TOV_COMMAND_KIND_H
#define TOVENG_TOV_COMMAND_KIND_H

#include <iterator>
#include <list>
#include <memory>
#include <string_view>

#include "tov/cmd/commands.h"
#include "tov/tov.h"

namespace kiri::tov {

/// A kind of command: its list, and the text with which its lines begin.
struct CommandKind {
    TOVCMD_TYPE list;
    std::string_view keyword;
    std::unique_ptr<TovCmd> (*read)(char const* line);
};

template <class Cmd>
std::unique_ptr<TovCmd> readCommand(char const* line) {
    return std::make_unique<Cmd>(line);
}

/// All kinds, in the order of the lists. No keyword begins with another one, so each line is of one kind at most.
inline constexpr CommandKind commandKinds[] = {
    {TOVCMD_CLOCK, "create_clock", readCommand<TovCmdClockDef>},
    {TOVCMD_GENCLOCK, "create_generated_clock", readCommand<TovCmdGenClockDef>},
    {TOVCMD_CLOCKGROUP, "set_clock_groups", readCommand<TovCmdClockGroupDef>},
    {TOVCMD_INPUTDELAY, "set_input_delay", readCommand<TovCmdInputDelay>},
    {TOVCMD_OUTPUTDELAY, "set_output_delay", readCommand<TovCmdOutputDelay>},
    {TOVCMD_MAXDELAY, "set_max_delay", readCommand<TovCmdMaxDelay>},
    {TOVCMD_MINDELAY, "set_min_delay", readCommand<TovCmdMinDelay>},
    {TOVCMD_MULTICYCLE, "set_multicycle_path", readCommand<TovCmdMultiPath>},
    {TOVCMD_FALSEPATH, "set_false_path", readCommand<TovCmdFalsePath>},
    {TOVCMD_ATTRIBUTE, "#attribute", readCommand<TovCmdAttr>},
};

static_assert(std::size(commandKinds) == TOVCMD_ATTRIBUTE, "each list has its kind");

/// The list of a class.
template <class Cmd>
constexpr TOVCMD_TYPE listOf() {
    TOVCMD_TYPE list = TOVCMD_NONE;
    for (CommandKind const& kind : commandKinds) {
        if (kind.read == readCommand<Cmd>) list = kind.list;
    }
    return list;
}

/// Adds a command to the list of its kind; the document owns it then. Returns the command.
template <class Cmd>
Cmd& addCommand(TOV& document, TOVCMD_TYPE list, std::unique_ptr<Cmd> cmd) {
    document.getTovCmdList(list)->push_back(cmd.get());
    return *cmd.release();
}

}  // namespace kiri::tov

#endif
