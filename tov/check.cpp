#include "tov/check.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <functional>
#include <stdexcept>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "tov/cmd/number.h"
#include "tov/cmd/references.h"
#include "tov/input_file.h"
#include "tov/line_reader.h"
#include "tov/loader.h"
#include "tov/text.h"

namespace kiri::tov {

namespace {

constexpr std::array<bool, 256> makeSeparators() {
    std::array<bool, 256> table{};
    for (char c : std::string_view(" \t\n\r\v\f[]{}\"\0", 12)) table[static_cast<unsigned char>(c)] = true;
    return table;
}

constexpr std::array<bool, 256> separators = makeSeparators();

bool separates(char c) {
    return separators[static_cast<unsigned char>(c)];
}

/// A word of a line, and its value where the commands take it as a number.
struct Word {
    std::string_view text;
    float value = 0;
    bool isNumber;

    explicit Word(std::string_view word) : text(word), isNumber(parseFloatValue(word, value)) {}

    bool operator==(Word const& other) const {
        return text == other.text || (isNumber && other.isNumber && value == other.value);
    }
};

struct HashOfWord {
    std::size_t operator()(Word const& word) const {
        // Zero and minus zero are one value.
        return word.isNumber ? std::hash<float>()(word.value + 0.0F) : std::hash<std::string_view>()(word.text);
    }
};

using Words = std::vector<Word>;

Words wordsOf(std::string_view text) {
    Words words;
    for (char const *at = text.data(), *const end = at + text.size();;) {
        while (at != end && separates(*at)) ++at;
        if (at == end) return words;
        char const* const first = at;
        while (at != end && !separates(*at)) ++at;
        words.emplace_back(std::string_view(first, static_cast<std::size_t>(at - first)));
    }
}

// A save writes an infinite number as a word that is no number to the commands.
bool isWrittenNumber(Word const& word) {
    return word.isNumber || word.text == "inf" || word.text == "-inf";
}

std::size_t countNumbers(Words const& words) {
    return static_cast<std::size_t>(std::count_if(words.begin(), words.end(), isWrittenNumber));
}

// Takes the words out of `line` and `saved` that stand in both. Of equal words the last ones stay, as the last value of
// an option does.
void dropCommonWords(Words& line, Words& saved) {
    std::unordered_map<Word, std::size_t, HashOfWord> surplus;
    for (Word const& word : saved) ++surplus[word];
    auto lost = line.end();
    for (auto word = line.end(); word != line.begin();) {
        auto const found = surplus.find(*--word);
        if (found != surplus.end() && found->second > 0) {
            --found->second;
        } else {
            *--lost = *word;
        }
    }
    line.erase(line.begin(), lost);
    saved.erase(std::remove_if(saved.begin(), saved.end(),
                               [&surplus](Word const& word) {
                                   std::size_t& count = surplus[word];
                                   return count == 0 || count-- == 0;
                               }),
                saved.end());
}

// Takes the last `count` numbers out of `words`.
Words takeLastNumbers(Words& words, std::size_t count) {
    Words taken;
    std::size_t toKeep = countNumbers(words) - count;
    auto const end = std::remove_if(words.begin(), words.end(), [&](Word const& word) {
        if (!isWrittenNumber(word)) return false;
        if (toKeep > 0) return toKeep-- == 0;
        taken.push_back(word);
        return true;
    });
    words.erase(end, words.end());
    return taken;
}

void append(std::string& text, std::string_view word) {
    if (!text.empty()) text += ' ';
    text += word;
}

void append(std::string& text, Words const& words) {
    for (Word const& word : words) append(text, word.text);
}

/// What is wrong with the words of a line, by kind.
struct Texts {
    std::string lost;
    std::string changed;
    std::string mistaken;
};

void compare(Texts& texts, std::string_view line, std::string_view saved) {
    if (startsWith(saved, disablePrefix)) saved.remove_prefix(disablePrefix.size());
    Words lost = wordsOf(line);
    Words added = wordsOf(saved);
    dropCommonWords(lost, added);
    // A number that is gone was written as another one, if there is another one.
    std::size_t const changed = std::min(countNumbers(lost), countNumbers(added));
    append(texts.changed, takeLastNumbers(lost, changed));
    takeLastNumbers(added, changed);
    append(texts.changed, added);
    append(texts.lost, lost);
}

bool isOption(std::string_view name) {
    float value = 0;
    return startsWith(name, "-") && !parseFloatValue(name, value);
}

// Whether the last word is a backslash: the line was meant to go on.
bool endsInContinuation(std::string_view text) {
    return !text.empty() && text.back() == '\\' && (text.size() == 1 || separates(text[text.size() - 2]));
}

void findMistaken(Texts& texts, TovCmd& cmd, std::string_view line) {
    bool continued = endsInContinuation(line);
    auto const judge = [&](std::string_view name) {
        if (isOption(name)) append(texts.mistaken, name);
        if (!continued || !endsInContinuation(name)) return;
        append(texts.mistaken, "\\");
        continued = false;
    };
    if (auto const* clock = dynamic_cast<TovCmdClockDef*>(&cmd)) judge(clock->clockName);
    if (auto const* clock = dynamic_cast<TovCmdGenClockDef*>(&cmd)) judge(clock->clockName);
    for (TovReferences const& references : referencesOf(cmd)) {
        char const* previous = nullptr;
        for (taDciObj const* obj : *references.list) {
            // Many references of one long expression share its text.
            if (obj->name != previous) judge(orEmpty(obj->name));
            previous = obj->name;
        }
    }
}

/// Checks the lines of a file one after the other.
class Checker {
public:
    /// False if the line ends the load. A NUL byte stands after it.
    bool check(std::string_view rawLine) {
        ++number_;
        FileLine const line(rawLine.data());
        Texts texts;
        if (!checkText(line, texts)) return false;
        std::size_t const end = std::strlen(rawLine.data());
        if (end < rawLine.size()) append(texts.lost, wordsOf(rawLine.substr(end)));
        add(TOVFINDING_LOST_WORD, texts.lost);
        add(TOVFINDING_CHANGED_VALUE, texts.changed);
        add(TOVFINDING_MISTAKEN_WORD, texts.mistaken);
        return true;
    }

    std::vector<TovFinding> findings;

private:
    bool checkText(FileLine const& line, Texts& texts) {
        if (line.kind == nullptr) {
            if (!startsWith(line.text, "#")) add(TOVFINDING_UNKNOWN_COMMAND, line.text);
            return true;
        }
        std::unique_ptr<TovCmd> cmd;
        try {
            cmd = line.makeCommand();
        } catch (std::out_of_range const&) {
            add(TOVFINDING_ENDS_LOAD, line.text);
            return false;
        }
        if (cmd == nullptr) {
            add(TOVFINDING_DROPPED_LINE, line.text);
            return true;
        }
        compare(texts, line.command, cmd->toSaveString(nullptr));
        findMistaken(texts, *cmd, line.command);
        return true;
    }

    void add(TovFindingKind kind, std::string_view text) {
        if (!text.empty()) findings.push_back({number_, kind, std::string(text)});
    }

    std::size_t number_ = 0;
};

}  // namespace

bool checkTovFile(char const* path, std::vector<TovFinding>& findings) {
    Checker checker;
    InputFile file(path);
    TovProgress const nobody;
    ProgressMeter meter(nobody, 0);
    LineReader lines(file, meter);
    if (file.isOpen()) {
        for (std::string_view line; lines.next(line) && checker.check(line);) {
        }
    }
    findings.swap(checker.findings);
    return file.isOpen() && !lines.failed();
}

std::vector<TovFinding> checkTovLine(std::string const& line) {
    Checker checker;
    checker.check(line);
    return std::move(checker.findings);
}

}  // namespace kiri::tov
