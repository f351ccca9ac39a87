#include "analysis/rules.h"

#include <algorithm>

#include "analysis/command_rules.h"

namespace tool {

std::array<Rule, codeCount> const rules = {{
    {Code::droppedLine, "dropped-line", Severity::warning, "An attribute line without five texts: a save drops it.",
     "Write #attribute and five texts, then -disable where the attribute is disabled. A text with blanks belongs in "
     "double quotes."},
    {Code::unknownCommand, "unknown-command", Severity::warning,
     "Not a command of this format: a save keeps the line as a comment.",
     "Leave it if other tools read the file too, and ignore this code; begin the line with # if it is a comment. "
     "toveng "
     "import runs the Tcl of a file and writes the constraints that it makes."},
    {Code::lostWord, "lost-word", Severity::warning, "A word that a save does not write.",
     "Write a line for each object, and one value for each option. An option that the format does not have cannot be "
     "kept: "
     "toveng import keeps such a call as a comment."},
    {Code::changedValue, "changed-value", Severity::warning, "A value that a save writes as another one, or adds.",
     "Write the number that you mean, with at most six decimals and as the 32-bit value that it becomes."},
    {Code::mistakenWord, "mistaken-word", Severity::warning, "A word that is read as something else than it is.",
     "Leave out an option that the format does not have, and put names with brackets into braces, as in {d[0]}."},
    {Code::endsLoad, "ends-load", Severity::error, "The load ends at this line: nothing after it is read.",
     "Write the edges of the clock after -waveform, as in -waveform {0 5}."},
    {Code::unstableLine, "unstable-line", Severity::warning,
     "The line that a save writes is read as something else the next time.",
     "Write each object in a query of its own, such as [get_ports {a}], and clock groups as -group [get_clocks {a "
     "b}]."},
    {Code::missingName, "missing-name", Severity::warning, "A name that stands for nothing in the design.",
     "Correct the name, or define the clock. toveng objects lists what a word stands for."},
    {Code::noObjects, "no-objects", Severity::warning, "A command that is about no object.",
     "Name the ports of a delay, and at least one end or through point of a path.", judgeObjects},
    {Code::noClock, "no-clock", Severity::warning, "An input or output delay without a clock.",
     "Name the clock that the delay is measured from with -clock.", judgeDelayClock},
    {Code::badClock, "bad-clock", Severity::warning, "A clock that cannot be.",
     "Give a clock a period above 0, edges in pairs that rise within one period, and a name or an object; a generated "
     "clock a source and one whole factor above 0.",
     judgeClock},
    {Code::badValue, "bad-value", Severity::warning, "A number of cycles below 1.",
     "Write how many cycles the path may take, 2 or more; without the command it is 1.", judgeCycles},
    {Code::undefinedClock, "undefined-clock", Severity::warning, "A clock that no command of the files defines.",
     "Correct the name, define the clock, or check the file that defines it in the same call."},
    {Code::redefinedClock, "redefined-clock", Severity::warning, "A clock name that is defined before.",
     "Remove one of the two definitions, or name the clocks apart."},
    {Code::repeated, "repeated", Severity::warning, "A command that says what an earlier one says.",
     "Remove one of the two."},
    {Code::overridden, "overridden", Severity::warning, "A command that a later one overrides with another value.",
     "Remove this command if the later one is meant, else correct the objects of one of the two."},
    {Code::minOverMax, "min-over-max", Severity::warning, "A minimum delay above the maximum delay of the same path.",
     "Correct one of the two values."},
    {Code::misspeltQuery, "misspelt-query", Severity::warning, "A query whose name is not one, but near one.",
     "Correct the query; as it is, it is kept as a name and finds nothing.", judgeQueries},
    {Code::variableName, "variable-name", Severity::warning, "A variable in place of a name.",
     "Write the name: the format has no variables. toveng import runs the Tcl and writes the names.", judgeVariables},
    {Code::continuedLine, "continued-line", Severity::warning, "A command that continues on the next line.",
     "Write the command in one line: the format has one line for each. toveng import joins such lines."},
    {Code::misspeltCommand, "misspelt-command", Severity::warning, "A command whose name is not one, but near one.",
     "Correct the name; as it is, the line is kept as a comment or as a command without content."},
}};

Rule const* findRule(std::string_view name) {
    auto const rule =
        std::find_if(rules.begin(), rules.end(), [name](Rule const& known) { return name == known.name; });
    return rule == rules.end() ? nullptr : &*rule;
}

}  // namespace tool
