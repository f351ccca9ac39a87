#include "tov/check.h"

#include <cstring>
#include <iterator>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "tov/cmd/number.h"
#include "tov/cmd/references.h"
#include "tov/constraint_line.h"
#include "tov/io/file.h"
#include "tov/io/line_reader.h"
#include "tov/text.h"
#include "tov/word_comparison.h"

namespace kiri::tov {

namespace {

void addWord(std::string& text, std::string_view word) {
    if (!text.empty()) text += ' ';
    text += word;
}

void addWords(std::string& text, WordComparison::Words const& words) {
    for (WordComparison::Word const& word : words) addWord(text, word.text);
}

/// What is wrong with the words of a line, by kind.
struct Texts {
    std::string lost;
    std::string changed;
    std::string mistaken;
};

bool isOption(std::string_view name) {
    float value = 0;
    return startsWith(name, "-") && !parseFloatValue(name, value);
}

// Whether the last word is a backslash: the line was meant to go on.
bool endsInContinuation(std::string_view text) {
    return !text.empty() && text.back() == '\\' &&
           (text.size() == 1 || WordComparison::endsWord(text[text.size() - 2]));
}

void findMistaken(Texts& texts, TovCmd& cmd, ConstraintLine const& line) {
    bool continued = endsInContinuation(line.command);
    auto const judge = [&](std::string_view name) {
        if (isOption(name)) addWord(texts.mistaken, name);
        if (!continued || !endsInContinuation(name)) return;
        addWord(texts.mistaken, "\\");
        continued = false;
    };
    if (line.kind->list == TOVCMD_CLOCK) judge(static_cast<TovCmdClockDef&>(cmd).clockName);
    if (line.kind->list == TOVCMD_GENCLOCK) judge(static_cast<TovCmdGenClockDef&>(cmd).clockName);
    for (TovReferences const& references : referencesOf(cmd)) {
        char const* previous = nullptr;
        for (taDciObj const* obj : *references.list) {
            // Many references of one long expression share its text.
            if (obj->name != previous) judge(orEmpty(obj->name));
            previous = obj->name;
        }
    }
}

// Each unknown word of a group stands for the whole expression, and a save writes it as often: n words are n * n. What
// goes beyond some size repeats the words that stand there, and is left out here.
void limitGroups(TovCmd& cmd) {
    constexpr std::size_t enough = std::size_t{64} * 1024;
    std::size_t size = 0;
    for (TovReferences const& group : referencesOf(cmd)) {
        int copies = 0;
        for (auto obj = group.list->begin(); obj != group.list->end();) {
            bool const isCopy = (*obj)->type == taDciObjName;
            if (isCopy && copies >= 2 && size > enough) {
                delete *obj;
                obj = group.list->erase(obj);
                continue;
            }
            if (isCopy) {
                ++copies;
                size += std::strlen((*obj)->name);
            }
            ++obj;
        }
    }
}

/// Checks the lines of a file one after the other.
class Checker {
public:
    /// False if the line ends the load. A NUL byte stands after it.
    bool check(std::string_view rawLine) {
        ++number_;
        ConstraintLine const line(rawLine);
        Texts texts;
        if (!checkText(line, texts)) return false;
        for (std::size_t end = rawLine.find('\0'); end < rawLine.size(); end = rawLine.find('\0', end + 1)) {
            WordComparison::Words words;
            WordComparison::appendWords(words, rawLine.data() + end + 1);
            addWords(texts.lost, words);
        }
        add(TOVFINDING_LOST_WORD, std::move(texts.lost));
        add(TOVFINDING_CHANGED_VALUE, std::move(texts.changed));
        add(TOVFINDING_MISTAKEN_WORD, std::move(texts.mistaken));
        return true;
    }

    std::vector<TovFinding> findings;

private:
    bool checkText(ConstraintLine const& line, Texts& texts) {
        if (line.kind == nullptr) {
            if (!startsWith(line.text, "#")) add(TOVFINDING_UNKNOWN_COMMAND, std::string(line.text));
            return true;
        }
        std::unique_ptr<TovCmd> cmd;
        try {
            cmd = line.makeCommand();
        } catch (std::out_of_range const&) {
            add(TOVFINDING_ENDS_LOAD, std::string(line.text));
            return false;
        }
        if (cmd == nullptr) {
            add(TOVFINDING_DROPPED_LINE, std::string(line.text));
            return true;
        }
        if (line.kind->list == TOVCMD_CLOCKGROUP) limitGroups(*cmd);
        saved_.clear();
        line.kind->append(saved_, *cmd, document_);
        bool const prefixed = startsWith(saved_, disablePrefix);
        words_.compare(line.command.data(), saved_.data() + (prefixed ? disablePrefix.size() : 0));
        addWords(texts.lost, words_.lost());
        addWords(texts.changed, words_.changed());
        addWords(texts.changed, words_.added());
        findMistaken(texts, *cmd, line);
        return true;
    }

    void add(TovFindingKind kind, std::string text) {
        if (!text.empty()) findings.push_back({number_, kind, std::move(text)});
    }

    std::size_t number_ = 0;
    WordComparison words_;
    std::string saved_;
    TOV document_;  // commands are saved for a document
};

}  // namespace

char const* titleOf(TovFindingKind kind) {
    constexpr char const* titles[] = {"dropped line",  "unknown command", "lost word",     "changed value",
                                      "mistaken word", "ends load",       "unstable line", "missing name"};
    auto const index = static_cast<std::size_t>(kind) - 1;
    return index < std::size(titles) ? titles[index] : "";
}

bool checkTovFile(char const* path, std::vector<TovFinding>& findings) {
    Checker checker;
    File const file = openForReading(path);
    LineReader lines(file);
    if (file.isOpen()) {
        for (std::string_view line; lines.next(line) && checker.check(line);) {
        }
    }
    findings.swap(checker.findings);
    return file.isOpen() && lines.error() == 0;
}

std::vector<TovFinding> checkTovLine(std::string const& line) {
    Checker checker;
    checker.check(line);
    return std::move(checker.findings);
}

}  // namespace kiri::tov
