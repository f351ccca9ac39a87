#include "tov/line_checker.h"

#include <cstring>
#include <stdexcept>
#include <utility>

#include "tov/cmd/number.h"
#include "tov/cmd/references.h"
#include "tov/constraint_line.h"
#include "tov/text.h"

namespace kiri::tov {

namespace {

void addWord(std::string& text, std::string_view word) {
    if (!text.empty()) text += ' ';
    text += word;
}

void addWords(std::string& text, WordComparison::Words const& words) {
    for (WordComparison::Word const& word : words) addWord(text, word.text);
}

bool isOption(std::string_view name) {
    float value = 0;
    return startsWith(name, "-") && !parseFloatValue(name, value);
}

// Whether the last word is a backslash: the line was meant to go on.
bool endsInContinuation(std::string_view text) {
    return !text.empty() && text.back() == '\\' &&
           (text.size() == 1 || WordComparison::endsWord(text[text.size() - 2]));
}

void findMistaken(std::string& mistaken, TovCmd& cmd, ConstraintLine const& line) {
    bool continued = endsInContinuation(line.command);
    auto const judge = [&](std::string_view name) {
        if (isOption(name)) addWord(mistaken, name);
        if (!continued || !endsInContinuation(name)) return;
        addWord(mistaken, "\\");
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

}  // namespace

/// What is wrong with the line, by kind.
struct LineChecker::Texts {
    std::string text[TOVFINDING_MISSING_NAME];

    std::string& operator[](TovFindingKind kind) { return text[kind - 1]; }
};

bool LineChecker::check(std::string_view line, std::vector<TovFinding>& findings) {
    ++number_;
    Texts texts;
    bool const goesOn = checkText(line, texts);
    for (std::size_t end = line.find('\0'); goesOn && end < line.size(); end = line.find('\0', end + 1)) {
        WordComparison::Words words;
        WordComparison::appendWords(words, line.data() + end + 1);
        addWords(texts[TOVFINDING_LOST_WORD], words);
    }
    for (int kind = TOVFINDING_DROPPED_LINE; kind <= TOVFINDING_MISSING_NAME; ++kind) {
        std::string& text = texts[static_cast<TovFindingKind>(kind)];
        if (!text.empty()) findings.push_back({number_, static_cast<TovFindingKind>(kind), std::move(text)});
    }
    return goesOn;
}

bool LineChecker::checkText(std::string_view rawLine, Texts& texts) {
    ConstraintLine const line(rawLine);
    cmd_.reset();
    list_ = TOVCMD_NONE;
    if (line.kind == nullptr) {
        if (!startsWith(line.text, "#")) texts[TOVFINDING_UNKNOWN_COMMAND] = line.text;
        return true;
    }
    try {
        cmd_ = line.makeCommand();
    } catch (std::out_of_range const&) {
        texts[TOVFINDING_ENDS_LOAD] = line.text;
        return false;
    }
    if (cmd_ == nullptr) {
        texts[TOVFINDING_DROPPED_LINE] = line.text;
        return true;
    }
    list_ = line.kind->list;
    if (list_ == TOVCMD_CLOCKGROUP) limitGroups(*cmd_);
    saved_.clear();
    line.kind->append(saved_, *cmd_, document_);
    bool const prefixed = startsWith(saved_, disablePrefix);
    words_.compare(line.command.data(), saved_.data() + (prefixed ? disablePrefix.size() : 0));
    addWords(texts[TOVFINDING_LOST_WORD], words_.lost());
    addWords(texts[TOVFINDING_CHANGED_VALUE], words_.changed());
    addWords(texts[TOVFINDING_CHANGED_VALUE], words_.added());
    findMistaken(texts[TOVFINDING_MISTAKEN_WORD], *cmd_, line);
    return true;
}

}  // namespace kiri::tov
