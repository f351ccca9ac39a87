#include "tov/check/line_checker_p.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

#include "tov/base/text_p.h"
#include "tov/check/line_words_p.h"
#include "tov/cmd/commands.h"
#include "tov/cmd/number_p.h"
#include "tov/cmd/references.h"
#include "tov/constraint_line_p.h"

namespace kiri::tov::impl_detail {

namespace {

constexpr std::size_t shownSize = 1000;

void addWord(std::string& text, std::string_view word) {
    if (!text.empty()) text += ' ';
    text += word;
}

void addWords(std::string& text, WordComparison::Words const& words) {
    for (WordComparison::Word const& word : words) addWord(text, word.text);
}

// Returns whether the last word is a backslash, which other tools read as a continuation.
bool endsInContinuation(std::string_view text) {
    return !text.empty() && text.back() == '\\' &&
           (text.size() == 1 || WordComparison::endsWord(text[text.size() - 2]));
}

// Returns whether opening and closing brackets, and braces, are equal in number, in any order.
bool isBalanced(std::string_view name) {
    auto const count = [name](char c) { return std::count(name.begin(), name.end(), c); };
    return count('[') == count(']') && count('{') == count('}');
}

constexpr auto plainCharacters = [] {
    std::array<bool, 256> table{};
    for (char c : std::string_view("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_/.:*?-")) {
        table[static_cast<unsigned char>(c)] = true;
    }
    return table;
}();

bool isPlainWord(std::string_view name) {
    return std::all_of(name.begin(), name.end(),
                       [](char c) { return plainCharacters[static_cast<unsigned char>(c)]; }) &&
           !name.empty() && name.front() != '-';
}

// A plain word, or a bit of one such as "d[3]".
bool isPlainName(std::string_view name) {
    if (name.empty() || name.back() != ']') return isPlainWord(name);
    std::size_t const open = name.find('[');
    return open != std::string_view::npos && isPlainWord(name.substr(0, open)) &&
           isPlainWord(name.substr(open + 1, name.size() - open - 2));
}

/// Examines the names that a command keeps.
class KeptNames {
public:
    explicit KeptNames(std::string_view line) : continued_(endsInContinuation(line)) {}

    void check(std::string_view name) {
        if (isPlainName(name)) return;
        arePlain_ = false;
        bool const isLast = continued_ && endsInContinuation(name);
        if (isLast) continued_ = false;
        if (looksLikeOption(name) || !isBalanced(name)) {
            addWord(mistaken_, name);
        } else if (isLast) {
            addWord(mistaken_, "\\");
        }
    }

    void check(ppStlList<taDciObj*> const& list) {
        bool hasExpression = false;
        for (taDciObj const* obj : list) {
            bool const isExpression = obj->type == taDciObjName;
            // The plain names of a list are copies of one expression.
            if (!isExpression || !hasExpression) check(orEmpty(obj->name));
            hasExpression = hasExpression || isExpression;
        }
    }

    std::string& mistaken() { return mistaken_; }  ///< options and unbalanced texts kept as names
    bool arePlain() const { return arePlain_; }    ///< whether all names are plain

private:
    bool continued_;
    bool arePlain_ = true;
    std::string mistaken_;
};

bool isClockQuery(ppStlList<taDciObj*> const& group) {
    return !group.empty() && std::all_of(group.begin(), group.end(), [](taDciObj const* obj) {
        return obj->type == taDciObjClock && isPlainWord(orEmpty(obj->name));
    });
}

// Each unknown word of a group becomes a reference to the whole expression, so a save of n words writes n * n. Drops
// the repetitions beyond a size; the first two keep every name.
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

/// The findings of the line, by kind.
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
        WordComparison::appendWords(words, line.substr(end + 1, line.find('\0', end + 1) - end - 1));
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
    if (!line.makeCommand(cmd_).ok()) {
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
    bool const isPlain = checkNames(line.command, texts[TOVFINDING_MISTAKEN_WORD]);
    if (saved_ == line.text) {
        // In a file, a line that contains a line feed is two lines.
        bool const isOneLine = isPlain || saved_.find('\n') == std::string::npos;
        if (!isOneLine) texts[TOVFINDING_UNSTABLE_LINE] = saved_.substr(0, shownSize);
        return true;
    }
    std::size_t const prefix = startsWith(saved_, disablePrefix) ? disablePrefix.size() : 0;
    words_.compare(line.command, std::string_view(saved_).substr(prefix));
    addWords(texts[TOVFINDING_LOST_WORD], words_.lost());
    addWords(texts[TOVFINDING_CHANGED_VALUE], words_.changed());
    addWords(texts[TOVFINDING_CHANGED_VALUE], words_.added());
    if (!isPlain && !isReadBack()) texts[TOVFINDING_UNSTABLE_LINE] = saved_.substr(0, shownSize);
    return true;
}

// Finds mistaken words. Returns true if the saved line is certain to be read back unchanged: only a name that is not
// plain, a group with members other than clocks, or an infinite number can prevent that.
bool LineChecker::checkNames(std::string_view line, std::string& mistaken) {
    KeptNames names(line);
    bool isPlain = list_ != TOVCMD_ATTRIBUTE && saved_.find("inf") == std::string::npos;
    std::string const* clockName = nullptr;
    if (list_ == TOVCMD_CLOCK) clockName = &static_cast<TovCmdClockDef&>(*cmd_).clockName;
    if (list_ == TOVCMD_GENCLOCK) clockName = &static_cast<TovCmdGenClockDef&>(*cmd_).clockName;
    if (clockName != nullptr && !clockName->empty()) names.check(*clockName);
    for (TovReferences const& references : referencesOf(*cmd_)) {
        names.check(*references.list);
        if (list_ == TOVCMD_CLOCKGROUP) isPlain = isPlain && isClockQuery(*references.list);
    }
    mistaken = std::move(names.mistaken());
    return isPlain && names.arePlain();
}

// Returns whether a load makes one command of the saved line, and that command saves the same line.
bool LineChecker::isReadBack() {
    if (saved_.find('\n') != std::string::npos) return false;
    ConstraintLine const line(saved_);
    std::unique_ptr<TovCmd> cmd;
    if (!line.makeCommand(cmd).ok() || cmd == nullptr) return false;
    if (line.kind->list == TOVCMD_CLOCKGROUP) limitGroups(*cmd);
    savedAgain_.clear();
    line.kind->append(savedAgain_, *cmd, document_);
    return savedAgain_ == saved_;
}

}  // namespace kiri::tov::impl_detail
