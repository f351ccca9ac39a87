#include <QByteArray>
#include <QList>
#include <algorithm>
#include <string_view>
#include <utility>

#include "findings.h"
#include "text.h"
#include "tov/make_command.h"

using namespace kiri::tov;

namespace tool {

namespace {

struct Advice {
    TovFindingKind kind;
    std::string_view keyword;  // empty: any command
    std::string_view words;    // in the finding; a '*' at the end of one matches any end
    char const* text;
};

constexpr TovFindingKind dropped = TOVFINDING_DROPPED_LINE, unknown = TOVFINDING_UNKNOWN_COMMAND,
                         lost = TOVFINDING_LOST_WORD, changed = TOVFINDING_CHANGED_VALUE,
                         mistaken = TOVFINDING_MISTAKEN_WORD, ends = TOVFINDING_ENDS_LOAD,
                         unstable = TOVFINDING_UNSTABLE_LINE;

// What the loss means, and what to write instead: the first row that fits any word.
constexpr Advice advices[] = {
    {dropped, "", "*",
     "an attribute is five texts and may end in -disable; write #attribute KIND OBJECT NAME VALUE TYPE"},
    {unknown, "", "*", "a save keeps the line as a comment; begin it with # if it is one"},
    {lost, "set_multicycle_path", "-setup -hold",
     "this file format has no setup or hold; the command stays a multicycle of both"},
    {lost, "set_multicycle_path", "-start -end", "this file format does not say whose cycles count; leave it out"},
    {lost, "set_false_path", "-setup -hold", "this file format has no setup or hold; the path is false for both"},
    {lost, "set_false_path", "-through", "a save writes it only without -from and -to; leave these or it out"},
    {lost, "", "-through", "this command has no through points; write -from and -to"},
    {lost, "", "-rise* -fall*", "this file format has no edges; write -from, -to or -through, which mean both"},
    {lost, "set_clock_groups", "-name", "groups have no names; write the name in a comment"},
    {lost, "set_clock_groups", "-logically* -physically*", "groups are exclusive unless -asynchronous is there"},
    {lost, "", "-comment", "commands have no comments; write a line of its own that begins with #"},
    {lost, "", "\\", "a command ends with its line; write it in one line"},
    {lost, "", "-from -to -period", "a save writes the last one; write a line for each"},
    {lost, "", "-*", "this file format has no such option; leave it out, or make the line a comment"},
    {lost, "", "$*", "variables are not replaced; write the value"},
    {lost, "", "@*", "a save writes the query that it stands for, which means the same"},
    {lost, "set_clock_groups", "*", "write each group as -group [get_clocks {a b}]"},
    {lost, "", "*", "a save writes the first object of a list and the last value of an option; write a line for each"},
    {changed, "", "-period", "a clock has a period; write -period"},
    {changed, "set_clock_groups", "*", "groups are exclusive unless -asynchronous is there"},
    {changed, "set_multicycle_path", "*", "cycles are whole numbers; write one"},
    {changed, "create_generated_clock", "*", "factors are whole numbers; write one"},
    {changed, "", "all_*", "this is the query that the word stands for"},
    {changed, "", "0.000000", "a value that is no number, or not there, is 0; write the number"},
    {changed, "", "*", "values are 32-bit numbers with six decimals; write one that these hold"},
    {mistaken, "", "\\", "a command ends with its line; write it in one line"},
    {mistaken, "", "-*", "this file format has no such option; leave it out, or make the line a comment"},
    {mistaken, "", "*", "a name has brackets and braces in pairs; put it in braces, as in {d[0]}"},
    {ends, "", "*", "neither this line nor any after it is read; write the edges, as in -waveform {0 5}"},
    {unstable, "set_clock_groups", "*", "write each group as -group [get_clocks {a b}]"},
    {unstable, "#attribute", "*", "none of the five texts may be empty, or have both blanks and quotes"},
    {unstable, "", "*", "write names without blanks and quotes, each in a query such as [get_ports {a}]"},
};

QList<QByteArray> wordsIn(std::string_view text) {
    return QByteArray(text.data(), static_cast<int>(text.size())).simplified().split(' ');
}

bool fits(QByteArray const& word, QByteArray const& pattern) {
    return pattern.endsWith('*') ? word.startsWith(pattern.chopped(1)) : word == pattern;
}

char const* adviceOn(TovFinding const& finding, std::string_view keyword) {
    QList<QByteArray> const words = wordsIn(finding.text);
    for (Advice const& advice : advices) {
        if (advice.kind != finding.kind || (!advice.keyword.empty() && advice.keyword != keyword)) continue;
        for (QByteArray const& pattern : wordsIn(advice.words)) {
            bool const isFitting =
                std::any_of(words.begin(), words.end(), [&](QByteArray const& word) { return fits(word, pattern); });
            if (isFitting) return advice.text;
        }
    }
    return "";
}

std::string keywordIn(std::string_view line) {
    QList<QByteArray> const words = wordsIn(line);
    return words.value(words.front() == "#disable" ? 1 : 0).toStdString();
}

// Messages are UTF-8, whatever the file is.
std::string cut(std::string_view words) {
    constexpr std::size_t most = 200;
    return shown(toText(words).toStdString(), most);
}

std::string quoted(std::string_view words) {
    return "`" + cut(words) + "`";
}

constexpr std::pair<taDciObjTyp, char const*> typeTitles[] = {
    {taDciObjPort, "port"}, {taDciObjSourcePort, "port"}, {taDciObjPin, "pin"},   {taDciObjPin2, "pin"},
    {taDciObjNet, "net"},   {taDciObjSourceNet, "net"},   {taDciObjCell, "cell"}, {taDciObjClock, "clock"},
};

}  // namespace

std::string messageOf(TovFinding const& finding, std::string const& line) {
    std::string const keyword = keywordIn(line);
    std::string const advice = std::string(": ") + adviceOn(finding, keyword);
    switch (finding.kind) {
        case dropped:
            return "a save drops " + quoted(finding.text) + advice;
        case unknown:
            return quoted(keyword) + " is no command of this file format" + advice;
        case lost:
            return "saved without " + cut(finding.text) + advice;
        case changed:
            return "saved with " + cut(finding.text) + ", as " + quoted(makeCommand(line)->toSaveString(nullptr)) +
                   advice;
        case mistaken:
            return "taken as a name, " + cut(finding.text) + advice;
        case ends:
            return "-waveform without its edges ends the load" + advice;
        case unstable:
            return "saved as " + quoted(finding.text) + ", which the next load reads as something else" + advice;
        default:
            return cut(finding.text);
    }
}

std::string missingMessage(taDciObjTyp type, std::string const& word, TovDesignNames const& names, int& suggestions) {
    std::string message = "no such " + std::string(titleOf(type)) + ": " + quoted(word);
    if (suggestions == 0) return message;
    --suggestions;
    std::string const nearest = names.nearest(type, word);
    return nearest.empty() ? message : message + "; did you mean " + quoted(nearest) + "?";
}

char const* titleOf(taDciObjTyp type) {
    for (auto const& [known, title] : typeTitles) {
        if (known == type) return title;
    }
    return "object";
}

}  // namespace tool
