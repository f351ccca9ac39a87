#include "commands.h"

#include <QStringList>
#include <stdexcept>

#include "tov/check.h"
#include "tov/make_command.h"

using namespace kiri::tov;

Kind const kinds[kindCount] = {
    {"Clocks", "create_clock -period 10 -name clock"},
    {"Generated clocks", "create_generated_clock -divide_by 2 -name clock"},
    {"Clock groups", "set_clock_groups -asynchronous"},
    {"Input delays", "set_input_delay 0"},
    {"Output delays", "set_output_delay 0"},
    {"Maximum delays", "set_max_delay 0"},
    {"Minimum delays", "set_min_delay 0"},
    {"Multicycle paths", "set_multicycle_path 2"},
    {"False paths", "set_false_path"},
    {"Attributes", "#attribute port name attribute value type"},
};

std::unique_ptr<TovCmd> readCommand(int kind, QString const& line) {
    if (toText(toBytes(line)) != line) return nullptr;
    try {
        TOVCMD_TYPE list = TOVCMD_NONE;
        std::unique_ptr<TovCmd> cmd = makeCommand(toBytes(line), &list);
        return list == kind + TOVCMD_CLOCK ? std::move(cmd) : nullptr;
    } catch (std::out_of_range const&) {
        return nullptr;  // no load would get beyond this line
    }
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
