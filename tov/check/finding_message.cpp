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

/// What users read of a kind.
struct KindText {
    char const* code;
    char const* title;      // the answer of titleOf
    std::string_view said;  // of a cause's words, which take the place of "{}"
};

constexpr KindText kindTexts[] = {
    {"dropped-line", "dropped line", ""},
    {"unknown-command", "unknown command", ""},
    {"lost-word", "lost word", "a save leaves out {}"},
    {"changed-value", "changed value", "a save changes {}"},
    {"mistaken-word", "mistaken word", "{} is read as a name"},
    {"ends-load", "ends load", ""},
    {"unstable-line", "unstable line", "a save writes {}, which is read back as something else"},
    {"missing-name", "missing name", ""},
};

static_assert(std::size(kindTexts) == TOVFINDING_MISSING_NAME, "each kind has its texts");

struct CauseText {
    Cause cause;
    std::string_view text;  // "{}" stands for what the cause is about
};

// Why, and what to write instead.
constexpr CauseText causeTexts[] = {
    {Cause::other, "write each option once, and its value after it"},
    {Cause::unknownOption,
     "the format does not have this option; leave it out, or make the line a comment: `toveng import` keeps the call "
     "as "
     "one"},
    {Cause::shortOption, "the names of options are not shortened; write {}"},
    {Cause::noSetupOrHold,
     "the format does not tell setup from hold, and the saved line means both; leave it out where that is meant, else "
     "make the line a comment: `toveng import` keeps the call as one"},
    {Cause::noCycleOwner,
     "the format does not say whose cycles count; leave it out, or make the line a comment: `toveng import` keeps the "
     "call as one"},
    {Cause::noEdges,
     "the format does not tell edges apart, and the saved line means both; leave it out where that is meant, else make "
     "the line a comment: `toveng import` keeps the call as one"},
    {Cause::noEdgePoints,
     "the format does not tell edges apart; write -from, -to or -through where both are meant, else make the line a "
     "comment: `toveng import` keeps the call as one"},
    {Cause::noComment, "a command has no comment; write one in a line of its own that begins with #"},
    {Cause::noGroupName, "groups have no name; write it in a line of its own that begins with #"},
    {Cause::exclusiveByName, "the format has -exclusive and -asynchronous; write the one that is meant"},
    {Cause::asynchronousToo, "-asynchronous counts where the line has both; write the one that is meant"},
    {Cause::throughElsewhere,
     "set_false_path alone has it; make the line a comment: `toveng import` keeps the call as one"},
    {Cause::throughBesideOthers,
     "a save writes -through where there is neither -from nor -to, and more paths are false without it; leave it out "
     "where they are meant, else make the line a comment: `toveng import` keeps the call as one"},
    {Cause::repeatedFlag, "the line has it twice; write it once"},
    {Cause::repeatedValue, "the last {} of a line counts; leave the other out"},
    {Cause::repeatedObjects, "the last {} of a line counts; write a line for each"},
    {Cause::withoutValue, "{} is the last word of the line; write its value after it"},
    {Cause::withoutObjects, "{} names no object here; write one after it"},
    {Cause::laterNumber, "the last number of the line counts; leave the other out"},
    {Cause::laterObjects, "the last objects of the line count; write a line for each"},
    {Cause::laterTarget, "the last object of the line counts; write a clock for each, with a -name of its own"},
    {Cause::laterOption, "{} comes after it and is read as the object; leave {} out"},
    {Cause::firstObject, "the first object of a list counts; write a line for each"},
    {Cause::firstTarget, "the first object of a list counts; write a clock for each, with a -name of its own"},
    {Cause::firstOfOption, "the first object of {} counts; write the one that is meant"},
    {Cause::queryOption,
     "the format has no options in queries; name the objects in braces: `toveng import` keeps the call as a comment"},
    {Cause::queryInQuery, "the words of a query in a query are read as names; name the objects themselves"},
    {Cause::outsideOptions, "objects follow -from or -to; write the option before them"},
    {Cause::numberOfFalsePath, "a false path has no number; leave it out"},
    {Cause::outsideGroups, "a word of its own means nothing here; write each group as -group [get_clocks {a b}]"},
    {Cause::afterTexts, "an attribute is five texts, and -disable alone may follow them; leave it out"},
    {Cause::afterNul, "a line ends at a NUL byte; leave the byte out"},
    {Cause::noPeriod, "a clock has a period, 0 where the line gives none; write -period and a number"},
    {Cause::noNumber, "the command has a number, 0 where the line gives none; write it"},
    {Cause::notNumber, "a number begins with a digit, or with a minus sign and a digit; write one"},
    {Cause::variable, "the format has no variables; write the value, or run the Tcl with `toveng import`"},
    {Cause::expression, "the format computes nothing; write the result, or run the Tcl with `toveng import`"},
    {Cause::enclosedNumber, "a number in braces is not read; write it without them"},
    {Cause::roundedNumber, "a number has 32 bits and six decimals; write one that these hold"},
    {Cause::largeNumber, "the number is too large for 32 bits; write a smaller one"},
    {Cause::fraction, "the value is a whole number of 32 bits; write one"},
    {Cause::noRelation, "groups are exclusive where the line does not have -asynchronous; write the one that is meant"},
    {Cause::reservedKey, "the word stands for {}, which means the same; write that"},
    {Cause::groupMember, "a group holds a query of clocks; write each group as -group [get_clocks {a b}]"},
    {Cause::longKeyword,
     "the first word is longer than {}, and nothing after it is read; write a blank after {}, or make the line a "
     "comment"},
    {Cause::longAttribute, "the line is read as {}; write that"},
    {Cause::lineEnd, "a command ends with its line; write it in one line, or have the lines joined by `toveng import`"},
    {Cause::strayBackslash, "a backslash means nothing between the words of a line; leave it out"},
    {Cause::optionAsValue, "it is the word after {}; write the value of {} before it"},
    {Cause::unbracedIndex, "a query takes a name with an index in braces alone; write {}"},
    {Cause::severalIndexes, "a query ends after its first two indexes; write a line for each name"},
    {Cause::indexOfIndex, "a query takes one index in a name; write {} without the query"},
    {Cause::unbalanced, "a name has brackets and braces in pairs; write the ones that are missing"},
    {Cause::lineFeed, "the saved text is several lines; leave the line feed out"},
    {Cause::attributeText, "none of the five texts may be empty, or hold both blanks and quotes; write another text"},
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
           "; write #attribute KIND OBJECT NAME VALUE TYPE, a text with blanks in double quotes";
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

// Programs that were linked with release 1.2.0 call it; no header declares it any more.
TOVENG_API char const* titleOf(TovFindingKind kind) {
    return textsOf(kind).title;
}

std::string findingMessage(TovFinding const& finding, std::string const& line) {
    return errorText(messageOf(finding, line));
}

}  // namespace kiri::tov
