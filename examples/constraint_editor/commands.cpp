#include "commands.h"

#include <QStringList>

#include "tov/check.h"

using namespace kiri::tov;

template <class Cmd>
static std::unique_ptr<TovCmd> read(std::string const& line) {
    return std::make_unique<Cmd>(line);
}

Kind const kinds[kindCount] = {
    {"Clocks", "create_clock -period 10 -name clock", read<TovCmdClockDef>},
    {"Generated clocks", "create_generated_clock -divide_by 2 -name clock", read<TovCmdGenClockDef>},
    {"Clock groups", "set_clock_groups -asynchronous", read<TovCmdClockGroupDef>},
    {"Input delays", "set_input_delay 0", read<TovCmdInputDelay>},
    {"Output delays", "set_output_delay 0", read<TovCmdOutputDelay>},
    {"Maximum delays", "set_max_delay 0", read<TovCmdMaxDelay>},
    {"Minimum delays", "set_min_delay 0", read<TovCmdMinDelay>},
    {"Multicycle paths", "set_multicycle_path 2", read<TovCmdMultiPath>},
    {"False paths", "set_false_path", read<TovCmdFalsePath>},
    {"Attributes", "#attribute port name attribute value type", read<TovCmdAttr>},
};

std::unique_ptr<TovCmd> readCommand(int kind, QString line) {
    if (toText(toBytes(line)) != line) return nullptr;
    for (TovFinding const& finding : checkTovLine(toBytes(line))) {
        if (finding.kind == TOVFINDING_DROPPED_LINE || finding.kind == TOVFINDING_ENDS_LOAD) return nullptr;
    }
    bool const attribute = kind + TOVCMD_CLOCK == TOVCMD_ATTRIBUTE;  // which tells itself whether it is enabled
    line = line.trimmed();
    bool const disabled = !attribute && line.startsWith("#disable ");
    if (disabled) line = line.section(' ', 1).trimmed();
    if (!line.startsWith(QString(kinds[kind].newLine).section(' ', 0, 0))) return nullptr;
    std::unique_ptr<TovCmd> cmd = kinds[kind].read(toBytes(line));
    if (!attribute) cmd->enabled = !disabled;
    return cmd;
}

QString findingsIn(QString const& line) {
    static char const* const meanings[] = {"",
                                           "an attribute has six or seven words",
                                           "no command",
                                           "not kept",
                                           "saved with another value",
                                           "taken as an object",
                                           "no load gets beyond"};
    QStringList sentences;
    if (toText(toBytes(line)) != line) sentences << "has characters beyond Latin-1";
    for (TovFinding const& finding : checkTovLine(toBytes(line))) {
        sentences << QString("%1: %2").arg(meanings[finding.kind], toText(finding.text));
    }
    return sentences.join("; ");
}
