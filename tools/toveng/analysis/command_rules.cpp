#include "analysis/command_rules.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "analysis/edit_distance.h"
#include "analysis/words.h"
#include "tov/cmd/commands.h"
#include "tov/cmd/references.h"
#include "tov/names/design_names.h"

using namespace kiri::tov;

namespace tool {

namespace {

constexpr std::string_view queries[] = {"get_ports",     "get_pins",   "get_nets",    "get_cells",  "get_clocks",
                                        "get_registers", "all_inputs", "all_outputs", "all_clocks", "all_registers"};

// Resembles a query, but is another command.
constexpr std::string_view otherQueries[] = {"get_libs"};

std::string_view nameOf(taDciObj const* object) {
    return object == nullptr || object->name == nullptr ? std::string_view() : object->name;
}

// Calls `visit` with each object reference of a command, but only once for equal neighbours: the plain names of a list
// are copies of one expression.
template <class Visit>
void forEachObject(Command const& command, Visit visit) {
    for (TovReferences const& references : command.references) {
        std::string_view last;
        for (taDciObj const* object : *references.list) {
            std::string_view const name = nameOf(object);
            if (!name.empty() && name != last) visit(*object, name);
            last = name;
        }
    }
}

template <class Table>
bool contains(Table const& table, std::string_view word) {
    return std::find(std::begin(table), std::end(table), word) != std::end(table);
}

// Returns a message about the words that follow a "[" in a plain name and resemble a query: "`get_port` is not a query;
// ...".
std::string misspeltIn(std::string_view name) {
    std::string message;
    for (std::size_t open = name.find('['); open != std::string_view::npos; open = name.find('[', open + 1)) {
        std::string_view word = trimFront(name.substr(open + 1));
        word = word.substr(0, word.find_first_of(separators));
        if (word.empty() || contains(queries, word) || contains(otherQueries, word)) continue;
        Nearest nearest(word, 2);
        for (std::string_view query : queries) nearest.add(query);
        if (!nearest.found()) continue;
        if (!message.empty()) message += "; ";
        message += "`" + std::string(word) + "` is not a query; did you mean `" + nearest.word() + "`?";
    }
    return message;
}

bool isVariable(std::string_view word) {
    if (word.size() < 2 || word[0] != '$') return false;
    char const c = word[1];
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == ':' || c == '{';
}

// Returns the end of the word that begins at `at`. Brackets within a word are an index, braces after a "$" enclose a
// name.
std::size_t wordEnd(std::string_view text, std::size_t at) {
    auto const after = [text](char c, std::size_t from) { return std::min(text.find(c, from), text.size() - 1) + 1; };
    while (at < text.size() && !isSpace(text[at]) &&
           std::string_view("{}\"]").find(text[at]) == std::string_view::npos) {
        bool const isBraced = text[at] == '$' && at + 1 < text.size() && text[at + 1] == '{';
        at = text[at] == '[' ? after(']', at) : isBraced ? after('}', at) : at + 1;
    }
    return at;
}

// Calls `visit` with each word of a name that begins with a variable. A word of an expression is not a name.
template <class Visit>
void forEachVariable(std::string_view name, Visit visit) {
    std::size_t at = 0;
    while ((at = name.find_first_not_of(separators, at)) != std::string_view::npos) {
        std::size_t const end = wordEnd(name, at);
        std::string_view const word = name.substr(at, end - at);
        if (word == "expr") return;
        if (isVariable(word)) visit(word);
        at = end;
    }
}

void addReason(std::string& reasons, std::string const& reason) {
    if (!reasons.empty()) reasons += "; ";
    reasons += reason;
}

// A name that is known only when the Tcl runs.
bool isUnknownName(std::string const& name) {
    auto const count = [&name](char c) { return std::count(name.begin(), name.end(), c); };
    return name.find('$') != std::string::npos || !TovDesignNames::isName(name) || count('[') != count(']') ||
           count('{') != count('}');
}

std::string nameOrEmpty(TovCmd& cmd, std::string const& clockName) {
    bool const isBlank = clockName.find_first_not_of("{}\" \t") == std::string::npos;
    return isBlank ? std::string() : definedClock(cmd);
}

void judgeWaveform(TovCmdClockDef const& clock, std::string& reasons) {
    auto const& edges = clock.waveform;
    if (edges.empty()) return;
    if (edges.size() % 2 != 0)
        addReason(reasons, "the waveform has " + std::to_string(edges.size()) + " edge times, which must be in pairs");
    auto const notRising = std::adjacent_find(edges.begin(), edges.end(), [](float a, float b) { return !(a < b); });
    if (notRising != edges.end()) {
        addReason(reasons, "the edge " + number(notRising[1]) + " is not after the edge " + number(notRising[0]));
    }
    double const last = edges.back();
    double const period = clock.period;
    double const end = edges.front() + period;
    if (last - end > 1e-6 * std::max(period, last)) {
        addReason(reasons, "the last edge, " + number(last) + ", is more than a period after the first, " +
                               number(edges.front()));
    }
}

std::string reasonsOf(TovCmdClockDef& clock) {
    std::string reasons;
    if (!(clock.period > 0)) return "the period " + number(clock.period) + " is not above 0";
    if (clock.targets.empty() && nameOrEmpty(clock, clock.clockName).empty()) {
        reasons = "the clock has neither a name nor an object";
    }
    judgeWaveform(clock, reasons);
    return reasons;
}

std::string reasonsOf(TovCmdGenClockDef const& clock) {
    std::string reasons;
    if (clock.sources.empty()) reasons = "the clock has no -source";
    for (std::string const* factor : {&clock.divideBy, &clock.multiplyBy}) {
        if (factor->empty() || std::strtol(factor->c_str(), nullptr, 10) >= 1) continue;
        addReason(reasons, "the factor " + *factor + " is below 1");
    }
    if (!clock.divideBy.empty() && !clock.multiplyBy.empty()) {
        addReason(reasons, "the clock has both -divide_by and -multiply_by");
    }
    double const duty = std::strtod(clock.dutyCycle.c_str(), nullptr);
    if (!clock.dutyCycle.empty() && !(duty > 0 && duty < 100)) {
        addReason(reasons, "the duty cycle " + number(duty) + " is not between 0 and 100");
    }
    return reasons;
}

}  // namespace

void judgeObjects(Command const& command, std::vector<Remark>& remarks) {
    bool const isDelay = command.list == TOVCMD_INPUTDELAY || command.list == TOVCMD_OUTPUTDELAY;
    bool const isPath = command.list == TOVCMD_FALSEPATH || command.list == TOVCMD_MULTICYCLE ||
                        command.list == TOVCMD_MAXDELAY || command.list == TOVCMD_MINDELAY;
    if (!isDelay && !isPath) return;
    std::vector<TovReferences> const& lists = command.references;
    bool const isEmpty = std::all_of(lists.begin(), lists.end(), [isDelay](TovReferences const& references) {
        return references.list->empty() || (isDelay && *references.role != '\0');
    });
    if (!isEmpty) return;
    remarks.push_back({"", isDelay
                               ? "the delay has no object; name the ports after it"
                               : "the command has no start, end or through point; write -from or -to and an object"});
}

void judgeDelayClock(Command const& command, std::vector<Remark>& remarks) {
    if (command.list != TOVCMD_INPUTDELAY && command.list != TOVCMD_OUTPUTDELAY) return;
    if (!static_cast<TovCmdIODelay&>(command.cmd).clock.empty()) return;
    remarks.push_back({"", "the delay has no reference clock; write -clock and its name"});
}

void judgeClock(Command const& command, std::vector<Remark>& remarks) {
    std::string reasons;
    if (command.list == TOVCMD_CLOCK) reasons = reasonsOf(static_cast<TovCmdClockDef&>(command.cmd));
    if (command.list == TOVCMD_GENCLOCK) reasons = reasonsOf(static_cast<TovCmdGenClockDef&>(command.cmd));
    if (!reasons.empty()) remarks.push_back({"", std::move(reasons)});
}

void judgeCycles(Command const& command, std::vector<Remark>& remarks) {
    if (command.list != TOVCMD_MULTICYCLE) return;
    int const cycles = static_cast<TovCmdMultiPath&>(command.cmd).multiplier;
    if (cycles < 1)
        remarks.push_back(
            {"", "the number of cycles, " + std::to_string(cycles) + ", is below 1, which is the default"});
}

void judgeQueries(Command const& command, std::vector<Remark>& remarks) {
    Remark remark;
    forEachObject(command, [&](taDciObj const& object, std::string_view name) {
        if (object.type != taDciObjName || name.find('[') == std::string_view::npos) return;
        std::string const message = misspeltIn(name);
        if (message.empty()) return;
        addWord(remark.text, name);
        addReason(remark.message, message);
    });
    if (!remark.text.empty()) remarks.push_back(std::move(remark));
}

void judgeVariables(Command const& command, std::vector<Remark>& remarks) {
    if (!command.mayHoldVariables) return;
    auto const add = [&](std::string_view name) {
        std::string text(name);
        if (startsWith(text, "${") && text.find('}') == std::string::npos) text += '}';
        auto const isSame = [&](Remark const& remark) { return remark.text == text; };
        if (std::any_of(remarks.begin(), remarks.end(), isSame)) return;
        remarks.push_back({text, "`" + text +
                                     "` is kept as a name: this format has no variables; write the name, or let "
                                     "`toveng import` run the Tcl"});
    };
    if (command.list == TOVCMD_CLOCK) forEachVariable(static_cast<TovCmdClockDef&>(command.cmd).clockName, add);
    if (command.list == TOVCMD_GENCLOCK) forEachVariable(static_cast<TovCmdGenClockDef&>(command.cmd).clockName, add);
    forEachObject(command, [&](taDciObj const&, std::string_view name) { forEachVariable(name, add); });
}

bool definesUnknownClock(Command const& command) {
    bool const isClock = command.list == TOVCMD_CLOCK || command.list == TOVCMD_GENCLOCK;
    if (!isClock) return false;
    auto const& targets = command.list == TOVCMD_CLOCK ? static_cast<TovCmdClockDef&>(command.cmd).targets
                                                       : static_cast<TovCmdGenClockDef&>(command.cmd).targets;
    bool const isMisspelt = std::any_of(targets.begin(), targets.end(), [](taDciObj const* target) {
        return target->type == taDciObjName && !misspeltIn(nameOf(target)).empty();
    });
    std::string const name = definedClock(command.cmd);
    return isMisspelt || (name.empty() ? !targets.empty() : isUnknownName(name));
}

}  // namespace tool
