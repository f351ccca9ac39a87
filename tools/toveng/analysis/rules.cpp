#include "analysis/rules.h"

#include <algorithm>

#include "analysis/command_rules.h"

namespace tool {

std::array<Rule, codeCount> const rules = {{
    {Code::droppedLine, "dropped-line", Severity::warning, "An attribute line without five texts: a save drops it.",
     "Write #attribute and five texts, then -disable if the attribute is disabled. Put texts with blanks in double "
     "quotes."},
    {Code::unknownCommand, "unknown-command", Severity::warning,
     "Not a command of this format: a save keeps the line as a comment.",
     "If other tools also read the file, keep the line and ignore this code; begin the line with # if it is a comment. "
     "toveng import runs the Tcl of a file and writes the resulting constraints."},
    {Code::lostWord, "lost-word", Severity::warning, "A word that a save does not write.",
     "Write a line for each object, and one value for each option. An option that the format does not have cannot be "
     "kept; make the line a comment, as toveng import does."},
    {Code::changedValue, "changed-value", Severity::warning, "A value that a save changes or adds.",
     "Write the number that you mean, with at most six decimals and within the precision of 32 bits."},
    {Code::mistakenWord, "mistaken-word", Severity::warning,
     "A word that is read as something other than what it looks like.",
     "Remove options that the format does not have, and put names with brackets in braces, as in {d[0]}."},
    {Code::endsLoad, "ends-load", Severity::error, "The load ends at this line: nothing after it is read.",
     "Write the edges of the clock after -waveform, as in -waveform {0 5}."},
    {Code::unstableLine, "unstable-line", Severity::warning,
     "A line that a save writes in a form that is read back as something else.",
     "Write each object in a query of its own, such as [get_ports {a}], and clock groups as -group [get_clocks {a "
     "b}]."},
    {Code::missingName, "missing-name", Severity::warning, "A name that matches nothing in the design.",
     "Correct the name, or define the clock. toveng objects lists what a word matches."},
    {Code::noObjects, "no-objects", Severity::warning, "A command without objects.",
     "Name the ports of a delay, and at least one start, end or through point of a path.", judgeObjects},
    {Code::noClock, "no-clock", Severity::warning, "An input or output delay without a clock.",
     "Name the reference clock of the delay with -clock.", judgeDelayClock},
    {Code::badClock, "bad-clock", Severity::warning, "An impossible clock.",
     "Give a clock a period above 0, pairs of edges at increasing times within one period, and a name or an object; "
     "give a generated clock a source and one integer factor above 0.",
     judgeClock},
    {Code::badValue, "bad-value", Severity::warning, "A cycle count below 1.",
     "Write how many cycles the path may take, 2 or more; the default is 1.", judgeCycles},
    {Code::undefinedClock, "undefined-clock", Severity::warning, "A clock that no command of the files defines.",
     "Correct the name, define the clock, or check the file that defines it in the same call."},
    {Code::redefinedClock, "redefined-clock", Severity::warning, "A clock name that an earlier command defines.",
     "Remove one of the two definitions, or rename one of the clocks."},
    {Code::repeated, "repeated", Severity::warning, "A command that repeats an earlier one.", "Remove one of the two."},
    {Code::overridden, "overridden", Severity::warning, "A command that a later one overrides with another value.",
     "Remove this command if the later one is meant, else correct the objects of one of the two."},
    {Code::minOverMax, "min-over-max", Severity::warning,
     "A minimum delay above the maximum delay for the same objects.", "Correct one of the two values."},
    {Code::misspeltQuery, "misspelt-query", Severity::warning, "A word that resembles the name of a query.",
     "Correct the query; as written, it is kept as a name and matches nothing.", judgeQueries},
    {Code::variableName, "variable-name", Severity::warning, "A variable in place of a name.",
     "Write the name: the format has no variables. toveng import runs the Tcl and writes the names.", judgeVariables},
    {Code::continuedLine, "continued-line", Severity::warning, "A command that continues on the next line.",
     "Write the command on one line: in this format a command is one line. toveng import joins the lines."},
    {Code::misspeltCommand, "misspelt-command", Severity::warning, "A word that resembles the name of a command.",
     "Correct the name; as written, the line is kept as a comment or as a command without content."},
}};

Rule const* findRule(std::string_view name) {
    auto const rule =
        std::find_if(rules.begin(), rules.end(), [name](Rule const& known) { return name == known.name; });
    return rule == rules.end() ? nullptr : &*rule;
}

}  // namespace tool
