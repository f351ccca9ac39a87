#include "analysis/judge.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "analysis/command_key.h"
#include "analysis/command_rules.h"
#include "analysis/edit_distance.h"
#include "analysis/kept_line.h"
#include "analysis/keywords.h"
#include "analysis/known_clocks.h"
#include "analysis/words.h"
#include "tov/cmd/cmd.h"
#include "tov/cmd/references.h"
#include "tov/make_command.h"

using namespace kiri::tov;

namespace tool {

namespace {

// The first word of a line, without a "\" that ends the line.
std::string_view commandWord(std::string_view text) {
    text = trim(text);
    std::string_view word = firstWord(text);
    if (word.size() == text.size() && !word.empty() && word.back() == '\\') word.remove_suffix(1);
    return word;
}

// Returns the keyword that a first word resembles; empty if it is a keyword or resembles none.
std::string nearKeyword(std::string_view word) {
    Nearest nearest(word, 2, Exchange::ofNeighbours);
    for (std::string_view keyword : keywords) {
        if (word == keyword) return {};
        nearest.add(keyword);
    }
    return nearest.word();
}

// Whether the text contains a Tcl command of that name.
bool callsCommand(std::string_view text, std::string_view name) {
    for (std::size_t at = text.find(name); at != std::string_view::npos; at = text.find(name, at + 1)) {
        std::size_t const end = at + name.size();
        std::string_view const before = trim(text.substr(0, at));
        bool const begins = before.empty() || std::string_view(";{[").find(before.back()) != std::string_view::npos;
        if (begins && (end == text.size() || isSpace(text[end]))) return true;
    }
    return false;
}

// Whether Tcl commands in a text may define clocks.
bool hidesClocks(std::string_view text) {
    return callsCommand(text, "source") || callsCommand(text, "create_clock") ||
           callsCommand(text, "create_generated_clock");
}

// Words as the check of lines splits them: at white space, brackets, braces and quotes.
template <class Visit>
bool anyWord(std::string_view text, Visit visit) {
    for (std::size_t at = 0; (at = text.find_first_not_of(separators, at)) != std::string_view::npos;) {
        std::size_t const end = std::min(text.find_first_of(separators, at), text.size());
        if (visit(text.substr(at, end - at))) return true;
        at = end;
    }
    return false;
}

// Whether a value was added because the one in the line is a variable or an expression.
bool isExplained(std::vector<TovFinding> const& findings, TovFinding const& finding, std::string_view line) {
    if (finding.kind != TOVFINDING_CHANGED_VALUE) return false;
    bool const losesVariable = std::any_of(findings.begin(), findings.end(), [](TovFinding const& other) {
        return other.kind == TOVFINDING_LOST_WORD &&
               anyWord(other.text, [](std::string_view word) { return word.front() == '$' || word == "expr"; });
    });
    return losesVariable && !anyWord(finding.text, [line](std::string_view word) {
               return anyWord(line, [word](std::string_view other) { return word == other; });
           });
}

bool isClock(TOVCMD_TYPE list) {
    return list == TOVCMD_CLOCK || list == TOVCMD_GENCLOCK;
}

std::string joinedLines(Statement const& statement, Lines& lines) {
    std::string joined;
    for (std::size_t i = statement.first; i < statement.end(); ++i) {
        std::string_view line;
        lines.get(i, line);
        bool const goesOn = !line.empty() && line.back() == '\\' && statement.goesOn();
        if (i > statement.first) joined += ' ';
        joined += line.substr(0, line.size() - (goesOn ? 1 : 0));
    }
    return joined;
}

std::string continuedMessage(Statement const& statement) {
    std::string const first = std::to_string(statement.first + 1);
    std::string const last = std::to_string(statement.end());
    if (statement.isOpen) {
        std::string const lines = statement.count == 1 ? "line " + first : "lines " + first + " to " + last;
        return lines +
               ": the command continues and never ends: a brace, bracket or quote is never closed, or `\\` ends the "
               "last line";
    }
    return "the command continues to line " + last + " (lines " + first + " to " + last +
           "): in this format a command is one line; write it on one line, or let `toveng import` join the lines";
}

std::string tooLong(std::string_view words) {
    constexpr std::size_t most = 200;
    return words.size() <= most ? std::string(words) : std::string(words.substr(0, most)) + "...";
}

}  // namespace

Judge::Judge(TovDesignNames const* names, TovNameMatch match)
    : hasDesign_(names != nullptr),
      match_(match),
      join_(std::make_unique<TovDocumentNames const>(document_, names == nullptr ? noDesign() : *names, match)) {}

Judge::~Judge() = default;

Judgement Judge::judge(Statement const& statement, Lines& lines, Detail detail) const {
    Judgement out;
    if (statement.goesOn()) {
        judgeContinued(statement, lines, out, detail);
        return out;
    }
    std::string_view text;
    lines.get(statement.first, text);
    if (statement.kind == Statement::Kind::comment) {
        bool const mayHaveFindings =
            startsWith(trimFront(text), "#attribute") || text.find('\0') != std::string_view::npos;
        if (mayHaveFindings) judgeComment(std::string(text), statement.first, out, detail);
        return out;
    }
    std::string const line(text);
    if (findMisspelt(statement, line, out)) return out;
    if (statement.isCommand()) {
        judgeCommand(line, statement.first, out, detail);
    } else {
        judgeOther(statement, line, out, detail);
    }
    return out;
}

void Judge::judgeComment(std::string const& line, std::size_t number, Judgement& out, Detail detail) const {
    for (TovFinding& finding : checkTovLine(line)) {
        std::string message = detail == Detail::messages ? findingMessage(finding, line) : std::string();
        out.findings.push_back({number, codeOf(finding.kind), std::move(finding.text), std::move(message)});
    }
}

void Judge::judgeCommand(std::string const& line, std::size_t number, Judgement& out, Detail detail) const {
    TOVCMD_TYPE list = TOVCMD_NONE;
    std::unique_ptr<TovCmd> cmd;
    try {
        cmd = makeCommand(line, &list);
    } catch (std::out_of_range const&) {
        out.endsLoad = true;
    }
    bool const isEnabled = cmd != nullptr && cmd->enabled;
    std::vector<TovReferences> references;
    if (isEnabled) references = referencesOf(*cmd);
    bool const mayHoldVariables = line.find('$') != std::string::npos;
    bool const isKept = isEnabled && isCertainlyKept(line, {*cmd, list, references, mayHoldVariables});
    if (!isKept) addLosses(line, out, detail);
    if (!isEnabled) {
        out.facts.isCompared = false;
        return setLine(out, number);
    }
    out.facts.isCompared = out.facts.isCompared || isKept;
    judgeEnabled({*cmd, list, std::move(references), mayHoldVariables}, out);
    // A ";" ends the command, and another one may follow.
    bool const hasAnother = line.find(';') != std::string::npos;
    out.facts.hidesClocks = out.facts.hidesClocks || (hasAnother && hidesClocks(std::string_view(line).substr(1)));
    setLine(out, number);
}

// What a load and a save would lose. The rules for commands judge only a line that is kept.
void Judge::addLosses(std::string const& line, Judgement& out, Detail detail) const {
    std::vector<TovFinding> const findings = checkTovLine(line);
    out.facts.isCompared = findings.empty();
    for (TovFinding const& finding : findings) {
        if (isExplained(findings, finding, line)) continue;
        std::string message = detail == Detail::messages ? findingMessage(finding, line) : std::string();
        out.findings.push_back({0, codeOf(finding.kind), finding.text, std::move(message)});
    }
}

void Judge::setLine(Judgement& out, std::size_t number) {
    for (Finding& finding : out.findings) finding.line = number;
}

void Judge::judgeEnabled(Command const& command, Judgement& out) const {
    auto const add = [&](Rule const& rule) {
        std::vector<Remark> remarks;
        rule.judge(command, remarks);
        for (Remark& remark : remarks) {
            std::string text = remark.text.empty() ? command.cmd.toSaveString(nullptr) : std::move(remark.text);
            out.findings.push_back({0, rule.code, std::move(text), std::move(remark.message)});
        }
        return !remarks.empty();
    };
    for (Rule const& rule : rules) {
        if (rule.judge != nullptr && silencesRules(rule.code) && add(rule)) out.facts.isCompared = false;
    }
    if (out.facts.isCompared) {
        for (Rule const& rule : rules) {
            if (rule.judge != nullptr && !silencesRules(rule.code)) add(rule);
        }
    }

    addUses(command, out.facts);
    if (!isClock(command.list)) return;
    std::string name = definedClock(command.cmd);
    if (!name.empty()) out.facts.clocks.push_back(std::move(name));
    out.facts.hidesClocks = definesUnknownClock(command);
}

void Judge::addUses(Command const& command, Facts& facts) const {
    std::vector<WordUse> uses;
    uses.reserve(8);  // the words of most commands
    std::vector<TovNameUse> owned;
    if (!gatherPlainUses(command, match_, uses)) {
        owned = join_->usesIn(command.cmd);
        for (TovNameUse const& use : owned) uses.push_back({use.role, use.type, use.match, use.word});
    }
    if (facts.isCompared) setKey(command, uses, facts);
    if (hasDesign_) {
        for (TovNameUse const& use : join_->missingIn(command.cmd)) {
            addMissing({use.role, use.type, use.match, use.word}, facts);
        }
    } else if (facts.isCompared) {
        for (WordUse const& use : uses) {
            if (meansClock(use)) addMissing(use, facts);
        }
    }
}

// The words of all groups count together.
void Judge::addMissing(WordUse const& use, Facts& facts) const {
    MissingWord const word{use.type, use.match, meansClock(use), std::string(use.word)};
    auto const isSame = [&word](MissingWord const& other) {
        return word.text == other.text && word.type == other.type && word.match == other.match;
    };
    if (std::none_of(facts.missing.begin(), facts.missing.end(), isSame)) facts.missing.push_back(word);
}

// A first word that resembles a keyword is a finding that replaces all others.
bool Judge::findMisspelt(Statement const& statement, std::string const& joined, Judgement& out) const {
    if (statement.kind != Statement::Kind::command && statement.kind != Statement::Kind::other) return false;
    std::string_view const word = commandWord(joined);
    if (word == keywordOf(word)) return false;
    std::string const keyword = nearKeyword(word);
    if (keyword.empty()) return false;
    out.findings.push_back(
        {statement.first, Code::misspeltCommand, std::string(word),
         "`" + tooLong(word) + "` is not a command of this format; did you mean `" + keyword + "`?"});
    addClocks(keyword + std::string(trim(joined).substr(word.size())), out.facts);
    return true;
}

void Judge::judgeOther(Statement const& statement, std::string const& joined, Judgement& out, Detail detail) const {
    if (statement.kind == Statement::Kind::closing) return;
    std::string_view const text = trim(joined);
    std::string const word(firstWord(text));
    std::string message;
    if (detail == Detail::messages) message = findingMessage({1, TOVFINDING_UNKNOWN_COMMAND, joined}, joined);
    out.findings.push_back({statement.first, Code::unknownCommand, word, std::move(message)});
    out.facts.hidesClocks = hidesClocks(text);
}

void Judge::judgeContinued(Statement const& statement, Lines& lines, Judgement& out, Detail detail) const {
    std::string const joined = joinedLines(statement, lines);
    if (!findMisspelt(statement, joined, out)) {
        if (statement.isCommand()) {
            CommandText const first(joined);
            out.findings.push_back(
                {statement.first, Code::continuedLine, std::string(first.keyword), continuedMessage(statement)});
            addClocks(joined, out.facts);
        } else {
            judgeOther(statement, joined, out, detail);
        }
    }
    // The library reads each line by itself.
    for (std::size_t i = statement.first; i < statement.end() && !out.endsLoad; ++i) {
        std::string_view line;
        lines.get(i, line);
        if (CommandText(line).keyword.empty()) continue;
        std::string const text(line);
        try {
            if (i > statement.first) addClocks(text, out.facts);
            makeCommand(text);
        } catch (std::out_of_range const&) {
            TovFinding const finding{1, TOVFINDING_ENDS_LOAD, std::string(trim(line))};
            out.findings.push_back({i, Code::endsLoad, finding.text, findingMessage(finding, text)});
            out.endsLoad = true;
        }
    }
}

// Adds the clock that a line would define if it were written correctly.
void Judge::addClocks(std::string const& line, Facts& facts) const {
    TOVCMD_TYPE list = TOVCMD_NONE;
    std::unique_ptr<TovCmd> cmd;
    try {
        cmd = makeCommand(line, &list);
    } catch (std::out_of_range const&) {
        return;
    }
    if (cmd == nullptr || !cmd->enabled || !isClock(list)) return;
    std::string name = definedClock(*cmd);
    if (!name.empty()) facts.clocks.push_back(std::move(name));
    facts.hidesClocks = facts.hidesClocks || definesUnknownClock({*cmd, list, referencesOf(*cmd)});
}

std::string firstWordOf(Statement const& statement, Lines& lines) {
    std::string_view line;
    lines.get(statement.first, line);
    CommandText const text(line);
    return std::string(text.keyword.empty() ? firstWord(trim(text.text)) : text.keyword);
}

}  // namespace tool
