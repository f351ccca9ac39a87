#include <algorithm>
#include <iterator>
#include <string_view>

#include "findings.h"
#include "text.h"
#include "tov/make_command.h"

using namespace kiri::tov;

namespace tool {

namespace {

struct Advice {
    std::string_view keyword;  // empty: of any command
    std::string_view word;     // with a '*' at its end: what begins so
    char const* text;
};

constexpr char const* oneLineEach = "a command ends with its line; write it in one line";

// What is lost with a word, in the order in which the rows are tried.
constexpr Advice lostWords[] = {
    {"set_multicycle_path", "-setup", "this file format has no setup or hold; the command stays a multicycle of both"},
    {"set_multicycle_path", "-hold", "this file format has no setup or hold; the command stays a multicycle of both"},
    {"set_multicycle_path", "-start", "this file format does not say whose cycles are counted"},
    {"set_multicycle_path", "-end", "this file format does not say whose cycles are counted"},
    {"set_false_path", "-setup", "this file format has no setup or hold; the path is false for both"},
    {"set_false_path", "-hold", "this file format has no setup or hold; the path is false for both"},
    {"set_false_path", "-through",
     "through points are saved only without -from and -to, so the command reaches more paths; write it without these"},
    {"", "-through", "this command has no through points, so it reaches more paths; write -from and -to"},
    {"", "-rise*", "this file format does not tell edges apart; write -from, -to or -through, which mean both"},
    {"", "-fall*", "this file format does not tell edges apart; write -from, -to or -through, which mean both"},
    {"set_clock_groups", "-name", "groups have no names; write the name in a comment"},
    {"set_clock_groups", "-*exclusive", "groups are exclusive unless -asynchronous is there; leave the option out"},
    {"set_clock_groups", "*", "write each group as -group [get_clocks {a b}]"},
    {"", "-comment", "commands have no comments; write the comment in a line of its own that begins with #"},
    {"", "\\", oneLineEach},
    {"", "$*", "variables are not replaced; write the value"},
    {"", "@*", "a save writes the query that the word stands for, which means the same"},
    {"", "-*", "this file format has no such option; leave it out, or keep the line as a comment"},
    {"", "*", "only the first object of a list and the last value of an option are saved; write a line for each"},
};

// '*' stands for any text, at the end or after a '-'.
bool fits(std::string_view word, std::string_view pattern) {
    std::size_t const star = pattern.find('*');
    if (star == std::string_view::npos) return word == pattern;
    std::string_view const rest = pattern.substr(star + 1);
    return word.size() + 1 >= pattern.size() && word.substr(0, star) == pattern.substr(0, star) &&
           word.substr(word.size() - rest.size()) == rest;
}

char const* adviceOn(std::string_view keyword, std::string_view word) {
    return std::find_if(std::begin(lostWords), std::end(lostWords) - 1,
                        [=](Advice const& advice) {
                            return (advice.keyword.empty() || advice.keyword == keyword) && fits(word, advice.word);
                        })
        ->text;
}

template <class Visit>
void forEachWord(std::string_view text, Visit visit) {
    constexpr std::string_view space = " \t\r\n\v\f";
    for (std::size_t at = text.find_first_not_of(space); at < text.size();) {
        std::size_t const end = std::min(text.find_first_of(space, at), text.size());
        visit(text.substr(at, end - at));
        at = text.find_first_not_of(space, end);
    }
}

std::string_view firstWord(std::string_view text) {
    std::string_view first;
    forEachWord(text, [&](std::string_view word) {
        if (first.empty()) first = word;
    });
    return first;
}

std::string_view keywordIn(std::string_view line) {
    std::string_view const first = firstWord(line);
    constexpr std::string_view disable = "#disable";
    return first == disable ? firstWord(line.substr(line.find(disable) + disable.size())) : first;
}

// Messages are UTF-8, whatever the file is.
std::string cut(std::string_view words) {
    constexpr std::size_t most = 200;
    return shown(toText(words).toStdString(), most);
}

std::string quoted(std::string_view words) {
    return "`" + cut(words) + "`";
}

// The advice on the first option that is lost, since its values are lost with it, or else on the first word.
std::string lostMessage(std::string_view text, std::string_view keyword) {
    std::string_view decisive = firstWord(text);
    forEachWord(text, [&](std::string_view word) {
        if (decisive.front() != '-' && word.front() == '-') decisive = word;
    });
    return "saved without " + cut(text) + ": " + adviceOn(keyword, decisive);
}

std::string changedMessage(std::string_view text, std::string_view keyword, std::string const& line) {
    std::unique_ptr<TovCmd> const cmd = makeCommand(line);
    std::string const saved = cmd == nullptr ? std::string() : cmd->toSaveString(nullptr);
    char const* advice = "values are 32-bit numbers with six decimals; write one that these hold";
    bool const addsPeriod = text.find("-period") != std::string_view::npos;
    if (line.find('$') != std::string::npos)
        advice = "variables are not replaced; write the value";
    else if (addsPeriod)
        advice = "a clock without a period gets the period 0; write -period";
    else if (keyword == "set_clock_groups")
        advice = "groups are exclusive unless -asynchronous is there";
    else if (keyword == "set_multicycle_path")
        advice = "cycles are whole numbers";
    else if (keyword == "create_generated_clock")
        advice = "factors are whole numbers";
    else if (keywordIn(saved) != keyword)
        advice = "the keyword is another one; write a blank after it";
    else if (text.find('@') != std::string_view::npos)
        advice = "this is the query that the word stands for";
    else if (text == "0.000000")
        advice = "a command without a value gets 0; write the value";
    return "saved with " + cut(text) + " changed, as " + quoted(saved) + ": " + advice;
}

std::string mistakenMessage(std::string_view text) {
    std::string_view const first = firstWord(text);
    char const* advice = "a name has brackets and braces in pairs; put it in braces, as in {d[0]}";
    if (first.front() == '-') advice = "this file format has no such option; leave it out";
    if (first == "\\") advice = oneLineEach;
    return "taken as a name: " + cut(text) + "; " + advice;
}

std::string unstableMessage(std::string_view text, std::string_view keyword) {
    char const* advice = "put each name in a query of its own, such as [get_ports {a}]";
    if (keyword == "set_clock_groups") advice = "write each group as -group [get_clocks {a b}]";
    if (keyword.substr(0, 7) == "create_") advice = "a clock's name is one word, without blanks and brackets";
    if (keyword.substr(0, 1) == "#") advice = "none of the five texts may be empty, or have both blanks and quotes";
    return "saved as " + quoted(text) + ", which the next load reads as something else: " + advice;
}

struct TypeTitle {
    taDciObjTyp type;
    char const* title;
};

constexpr TypeTitle typeTitles[] = {
    {taDciObjPort, "port"}, {taDciObjSourcePort, "port"}, {taDciObjPin, "pin"},   {taDciObjPin2, "pin"},
    {taDciObjNet, "net"},   {taDciObjSourceNet, "net"},   {taDciObjCell, "cell"}, {taDciObjClock, "clock"},
};

}  // namespace

std::string messageOf(TovFinding const& finding, std::string const& line) {
    std::string_view const keyword = keywordIn(line);
    switch (finding.kind) {
        case TOVFINDING_DROPPED_LINE:
            return "a save drops " + quoted(finding.text) +
                   ": an attribute is five texts, and may end in -disable; write #attribute KIND OBJECT NAME VALUE "
                   "TYPE";
        case TOVFINDING_UNKNOWN_COMMAND:
            return quoted(keyword) +
                   " is no command of this file format: a save keeps the line as a comment; begin it "
                   "with # if it is one";
        case TOVFINDING_LOST_WORD:
            return lostMessage(finding.text, keyword);
        case TOVFINDING_CHANGED_VALUE:
            return changedMessage(finding.text, keyword, line);
        case TOVFINDING_MISTAKEN_WORD:
            return mistakenMessage(finding.text);
        case TOVFINDING_ENDS_LOAD:
            return "-waveform without its edges ends the load: neither this line nor any after it is read; write the "
                   "edges, as in -waveform {0 5}";
        case TOVFINDING_UNSTABLE_LINE:
            return unstableMessage(finding.text, keyword);
        case TOVFINDING_MISSING_NAME:
            break;
    }
    return cut(finding.text);
}

std::string missingMessage(taDciObjTyp type, std::string const& word, TovDesignNames const& names, int& suggestions) {
    std::string const message = "no such " + std::string(titleOf(type)) + ": " + quoted(word);
    if (suggestions == 0) return message;
    --suggestions;
    std::string const nearest = names.nearest(type, word);
    return nearest.empty() ? message : message + "; did you mean " + quoted(nearest) + "?";
}

char const* titleOf(taDciObjTyp type) {
    auto const* const row = std::find_if(std::begin(typeTitles), std::end(typeTitles),
                                         [type](TypeTitle const& title) { return title.type == type; });
    return row == std::end(typeTitles) ? "object" : row->title;
}

}  // namespace tool
