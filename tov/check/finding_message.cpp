#include <algorithm>
#include <iterator>
#include <set>
#include <string>
#include <string_view>

#include "tov/base/text_p.h"
#include "tov/base/tokenizer_p.h"
#include "tov/check.h"
#include "tov/check/finding_cause_p.h"
#include "tov/io/error_text_p.h"

namespace kiri::tov {

using namespace impl_detail;

namespace {

/// The texts of a kind for users.
struct KindText {
    char const* code;
    char const* title;      // what titleOf returns
    std::string_view said;  // about the words of a cause, which replace "{}"
};

constexpr KindText kindTexts[] = {
    {"dropped-line", "dropped line", ""},
    {"unknown-command", "unknown command", ""},
    {"lost-word", "lost word", "a save drops {}"},
    {"changed-value", "changed value", "a save changes {}"},
    {"mistaken-word", "mistaken word", "{} is read as a name"},
    {"ends-load", "ends load", ""},
    {"unstable-line", "unstable line", "a save writes {}, which is read back as something else"},
    {"missing-name", "missing name", ""},
};

static_assert(std::size(kindTexts) == TOVFINDING_MISSING_NAME, "each kind has its texts");

struct CauseText {
    Cause cause;
    std::string_view text;  // CausedWords::about replaces "{}"
};

// Why, and what to write instead.
constexpr CauseText causeTexts[] = {
    {Cause::other, "write each option once, followed by its value"},
    {Cause::unknownOption,
     "the format does not have this option; remove it, or make the line a comment, as `toveng import` does"},
    {Cause::shortOption, "options cannot be abbreviated; write {}"},
    {Cause::noSetupOrHold,
     "the format does not distinguish setup from hold, and the saved line applies to both; remove it if that is meant, "
     "else make the line a comment, as `toveng import` does"},
    {Cause::noCycleOwner,
     "the format does not say which clock's cycles count; remove it, or make the line a comment, as `toveng import` "
     "does"},
    {Cause::noEdges,
     "the format does not distinguish edges, and the saved line applies to both; remove it if that is meant, else make "
     "the line a comment, as `toveng import` does"},
    {Cause::noEdgePoints,
     "the format does not distinguish edges; write -from, -to or -through if both are meant, else make the line a "
     "comment, as `toveng import` does"},
    {Cause::noComment, "a command cannot have a comment; write it on a line of its own that begins with #"},
    {Cause::noGroupName, "groups have no name; write it on a line of its own that begins with #"},
    {Cause::exclusiveByName, "the format has only -exclusive and -asynchronous; write the one that is meant"},
    {Cause::asynchronousToo, "if a line has both, -asynchronous counts; write only the one that is meant"},
    {Cause::throughElsewhere, "only set_false_path has it; make the line a comment, as `toveng import` does"},
    {Cause::throughBesideOthers,
     "a save writes -through only without -from and -to, and without it more paths are false; remove it if they are "
     "meant, else make the line a comment, as `toveng import` does"},
    {Cause::repeatedFlag, "the line has it twice; write it once"},
    {Cause::repeatedValue, "only the last {} of a line counts; remove the other"},
    {Cause::repeatedObjects, "only the last {} of a line counts; write a line for each"},
    {Cause::withoutValue, "{} is the last word of the line; write its value after it"},
    {Cause::withoutObjects, "{} has no object here; write one after it"},
    {Cause::laterNumber, "only the last number of the line counts; remove the other"},
    {Cause::laterObjects, "only the last objects of the line count; write a line for each"},
    {Cause::laterTarget, "only the last object of the line counts; write a clock for each, with its own -name"},
    {Cause::laterOption, "{} follows it and is read as the object; remove {}"},
    {Cause::firstObject, "only the first object of a list is kept; write a line for each"},
    {Cause::firstTarget, "only the first object of a list is kept; write a clock for each, with its own -name"},
    {Cause::firstOfOption, "only the first object of {} is kept; write the one that is meant"},
    {Cause::queryOption,
     "queries of this format have no options; name the objects in braces, or make the line a comment, as `toveng "
     "import` does"},
    {Cause::queryInQuery, "a query inside a query is read as names; name the objects themselves"},
    {Cause::outsideOptions, "objects must follow -from or -to; write the option before them"},
    {Cause::numberOfFalsePath, "a false path has no value; remove it"},
    {Cause::outsideGroups, "a word outside a group means nothing; write each group as -group [get_clocks {a b}]"},
    {Cause::afterTexts, "an attribute is five texts, and only -disable may follow them; remove it"},
    {Cause::afterNul, "a line ends at a NUL byte; remove the byte"},
    {Cause::noPeriod, "a clock always has a period, 0 if the line has none; write -period and a number"},
    {Cause::noNumber, "the command always has a number, 0 if the line has none; write it"},
    {Cause::notNumber, "a number begins with a digit, or with a minus sign and a digit; write one"},
    {Cause::variable, "the format has no variables; write the value, or run the Tcl with `toveng import`"},
    {Cause::expression,
     "the format does not evaluate expressions; write the result, or run the Tcl with `toveng import`"},
    {Cause::enclosedNumber, "a number in braces is not read; write it without braces"},
    {Cause::roundedNumber, "numbers have 32 bits and six decimals; write one that fits"},
    {Cause::largeNumber, "the number is too large for 32 bits; write a smaller one"},
    {Cause::fraction, "the value must be a 32-bit integer; write one"},
    {Cause::noRelation, "groups are exclusive unless the line has -asynchronous; write the one that is meant"},
    {Cause::reservedKey, "the word is a reserved name for {}; write that"},
    {Cause::groupMember, "a group must be a query of clocks; write each group as -group [get_clocks {a b}]"},
    {Cause::longKeyword,
     "the first word is longer than {}, and nothing after it is read; write a blank after {}, or make the line a "
     "comment"},
    {Cause::longAttribute, "the line is read as {}; write that"},
    {Cause::lineEnd, "a command ends with its line; write it on one line, or let `toveng import` join the lines"},
    {Cause::strayBackslash, "a backslash means nothing between the words of a line; remove it"},
    {Cause::optionAsValue, "it follows {}; write the value of {} first"},
    {Cause::unbracedIndex, "in a query, a name with an index must be in braces; write {}"},
    {Cause::severalIndexes, "a query ends after its first two indexes; write a line for each name"},
    {Cause::indexOfIndex, "in a query, a name can have only one index; write {} without the query"},
    {Cause::unbalanced, "the brackets and braces of a name must be balanced; add the missing ones"},
    {Cause::lineFeed, "the saved text would be several lines; remove the line feed"},
    {Cause::attributeText, "none of the five texts may be empty or contain both blanks and quotes; write another text"},
    {Cause::clockName, "a save writes the name without quotes; write one without blanks, quotes and brackets"},
    {Cause::objectName,
     "a save writes names without quotes; write them without blanks and quotes, each in a query such as [get_ports "
     "{a}]"},
};

KindText const& textsOf(TovFindingKind kind) {
    static constexpr KindText nothing{"", "", ""};
    auto const index = static_cast<std::size_t>(kind) - 1;
    return index < std::size(kindTexts) ? kindTexts[index] : nothing;
}

std::string fill(std::string_view text, std::string const& words) {
    std::string filled(text);
    for (std::size_t at = filled.find("{}"); at != std::string::npos; at = filled.find("{}", at + words.size())) {
        filled.replace(at, 2, words);
    }
    return filled;
}

std::string textOf(CausedWords const& words) {
    auto const* const text = std::find_if(std::begin(causeTexts), std::end(causeTexts),
                                          [&words](CauseText const& t) { return t.cause == words.cause; });
    return fill(text->text, quoted(words.about));
}

// One sentence for each cause.
std::string explain(TovFinding const& finding, std::string const& line) {
    constexpr std::size_t mostCauses = 3;
    auto [causes, saved] = causesOf(finding, line);
    if (causes.empty()) causes.push_back({Cause::other, "", finding.text, false});
    if (finding.kind == TOVFINDING_UNSTABLE_LINE) causes.front().words = finding.text;
    std::string message;
    std::set<std::string> told;
    for (CausedWords const& words : causes) {
        std::string const text = textOf(words);
        if (told.size() == mostCauses || !told.insert(text).second) continue;
        std::string said = fill(words.areAdded ? "a save adds {}" : textsOf(finding.kind).said, quoted(words.words));
        if (!message.empty()) {
            message += ". ";
            if (said[0] == 'a') said[0] = 'A';
        } else if (finding.kind == TOVFINDING_CHANGED_VALUE) {
            said += " and writes " + quoted(saved);
        }
        message += said;
        message += ": ";
        message += text;
    }
    return message;
}

// An attribute line that a save drops.
std::string explainAttribute(std::string const& text) {
    std::size_t const words = tokenizeTclString(text).size();
    return "a save drops " + quoted(text) + ": an attribute is five texts, and this line has " +
           std::to_string(words - 1) +
           "; write #attribute KIND OBJECT NAME VALUE TYPE, and put texts with blanks in double quotes";
}

constexpr std::string_view tclWords[] = {
    "if",    "else",   "elseif", "for",       "foreach", "foreach_in_collection",
    "while", "switch", "proc",   "return",    "set",     "append",
    "expr",  "source", "puts",   "namespace", "global",  "catch",
    "}",     "{",
};

std::string explainUnknown(std::string_view text) {
    std::string_view const word = text.substr(0, text.find_first_of(whiteSpace));
    bool const isTcl = std::find(std::begin(tclWords), std::end(tclWords), word) != std::end(tclWords);
    return quoted(word) + " is not a command of this format: a save keeps the line as a comment; " +
           (isTcl ? "run the Tcl of the file with `toveng import`" : "begin it with # if it is one");
}

std::string messageOf(TovFinding const& finding, std::string const& line) {
    switch (finding.kind) {
        case TOVFINDING_DROPPED_LINE:
            return explainAttribute(finding.text);
        case TOVFINDING_UNKNOWN_COMMAND:
            return explainUnknown(finding.text);
        case TOVFINDING_ENDS_LOAD:
            return "the line ends in -waveform, which ends the load: neither it nor any line after it is read; write "
                   "the edges, as in -waveform {0 5}";
        case TOVFINDING_MISSING_NAME:
            return utf8Of(finding.text);
        default:
            return findingCode(finding.kind)[0] == '\0' ? std::string() : explain(finding, line);
    }
}

}  // namespace

char const* findingCode(TovFindingKind kind) {
    return textsOf(kind).code;
}

// Programs linked with release 1.2.0 call it; no header declares it any more.
TOVENG_API char const* titleOf(TovFindingKind kind) {
    return textsOf(kind).title;
}

std::string findingMessage(TovFinding const& finding, std::string const& line) {
    return errorText(messageOf(finding, line));
}

}  // namespace kiri::tov
