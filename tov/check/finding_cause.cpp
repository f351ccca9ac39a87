// Finds out why a save does not keep the words of a finding: checks and reads the line once more, word by word.

#include "tov/check/finding_cause_p.h"

#include <algorithm>
#include <functional>
#include <utility>

#include "tov/base/text_p.h"
#include "tov/check/line_checker_p.h"
#include "tov/check/line_words_p.h"
#include "tov/cmd/number_p.h"
#include "tov/cmd/obj_list_p.h"
#include "tov/constraint_line_p.h"

namespace kiri::tov::impl_detail {

namespace {

using Use = LineWord::Use;

/// An option of other tools, and why this format does not have it.
struct ForeignOption {
    TOVCMD_TYPE list;  // TOVCMD_NONE: of any command
    std::string_view begin;
    Cause cause;
};

constexpr ForeignOption foreignOptions[] = {
    {TOVCMD_NONE, "-comment", Cause::noComment},
    {TOVCMD_MULTICYCLE, "-setup", Cause::noSetupOrHold},
    {TOVCMD_MULTICYCLE, "-hold", Cause::noSetupOrHold},
    {TOVCMD_FALSEPATH, "-setup", Cause::noSetupOrHold},
    {TOVCMD_FALSEPATH, "-hold", Cause::noSetupOrHold},
    {TOVCMD_MULTICYCLE, "-start", Cause::noCycleOwner},
    {TOVCMD_MULTICYCLE, "-end", Cause::noCycleOwner},
    {TOVCMD_CLOCKGROUP, "-name", Cause::noGroupName},
    {TOVCMD_CLOCKGROUP, "-logically_exclusive", Cause::exclusiveByName},
    {TOVCMD_CLOCKGROUP, "-physically_exclusive", Cause::exclusiveByName},
    {TOVCMD_CLOCKGROUP, "-exclusive", Cause::asynchronousToo},
    {TOVCMD_NONE, "-through", Cause::throughElsewhere},
    {TOVCMD_NONE, "-rise_", Cause::noEdgePoints},
    {TOVCMD_NONE, "-fall_", Cause::noEdgePoints},
    {TOVCMD_NONE, "-rise", Cause::noEdges},
    {TOVCMD_NONE, "-fall", Cause::noEdges},
};

/// A cause, and the words that its text mentions.
struct Reason {
    Cause cause;
    std::string about;
};

bool holds(std::string_view text, std::string_view part) {
    constexpr std::less_equal<char const*> notAfter;
    return notAfter(text.data(), part.data()) && notAfter(part.data() + part.size(), text.data() + text.size());
}

bool has(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

std::size_t count(std::string_view text, char c) {
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), c));
}

/// A line as its command reads it and as a save writes it.
class ReadLine {
public:
    explicit ReadLine(std::string_view line) : line_(line) {
        std::vector<TovFinding> findings;
        checker_.check(line, findings);
        if (checker_.command() == nullptr) return;
        ConstraintLine const parts(line);
        keyword_ = parts.kind->keyword;
        firstWord_ = parts.command.substr(0, parts.command.find_first_of(whiteSpace));
        words_ = lineWordsOf(list(), parts.command);
    }

    bool makesCommand() const { return checker_.command() != nullptr; }
    std::string const& saved() const { return checker_.saved(); }
    WordComparison const& comparison() const { return checker_.words(); }

    Reason whyLost(std::string_view word) const;
    Reason whyChanged(std::string_view word) const;
    Reason whyAdded(std::string_view word) const;
    Reason whyMistaken(std::string_view word) const;
    Reason whyUnstable() const;

private:
    TOVCMD_TYPE list() const { return checker_.list(); }
    bool isLongKeyword() const { return firstWord_ != keyword_; }
    Reason longKeyword() const {
        if (firstWord_.substr(keyword_.size()) == "\\") return {Cause::lineEnd, ""};
        return {list() == TOVCMD_ATTRIBUTE ? Cause::longAttribute : Cause::longKeyword, std::string(keyword_)};
    }
    LineWord const* wordAround(std::string_view part) const;
    Reason whyLost(LineWord const& word, std::string_view part) const;
    Reason whyValueLost(LineWord const& word) const;
    Reason whyObjectLost(LineWord const& word) const;
    Reason whyReplaced(LineWord const& word) const;
    Reason whyIgnored(LineWord const& word) const;
    Reason whyNoNumber(std::string_view word) const;
    Reason foreignOption(std::string_view option) const;

    std::string_view line_;
    std::string_view keyword_;
    std::string_view firstWord_;
    LineChecker checker_;
    std::vector<LineWord> words_;
};

LineWord const* ReadLine::wordAround(std::string_view part) const {
    auto const word =
        std::find_if(words_.begin(), words_.end(), [part](LineWord const& w) { return holds(w.text, part); });
    return word == words_.end() ? nullptr : &*word;
}

Reason ReadLine::whyLost(std::string_view word) const {
    std::size_t const end = line_.find('\0');
    if (end != std::string_view::npos && word.data() > line_.data() + end) return {Cause::afterNul, ""};
    if (isLongKeyword()) return longKeyword();
    if (list() == TOVCMD_ATTRIBUTE) return {Cause::afterTexts, ""};
    LineWord const* const around = wordAround(word);
    if (word == "\\") {
        bool const isLast = around == nullptr || (around == &words_.back() && around->text.back() == '\\');
        return {isLast ? Cause::lineEnd : Cause::strayBackslash, ""};
    }
    return around == nullptr ? Reason{Cause::other, ""} : whyLost(*around, word);
}

Reason ReadLine::whyLost(LineWord const& word, std::string_view part) const {
    auto const* const next = &word + 1;
    switch (word.use) {
        case Use::unknownOption:
            return foreignOption(word.text);
        case Use::unknownValue:
            return foreignOption((&word - 1)->text);
        case Use::option:
            if (word.takes == Takes::nothing) return {Cause::repeatedFlag, std::string(word.text)};
            if (&word == &words_.back()) return {Cause::withoutValue, std::string(word.text)};
            return whyValueLost(*next);
        case Use::value:
            if (word.takes == Takes::edges) return whyNoNumber(part);
            return whyValueLost(word);
        case Use::other:
            break;
    }
    if (word.takes == Takes::objects) return word.counts ? whyObjectLost(word) : whyReplaced(word);
    if (word.takes == Takes::nothing) return whyIgnored(word);
    return {word.counts ? Cause::other : Cause::laterNumber, ""};
}

Reason ReadLine::whyValueLost(LineWord const& word) const {
    std::string const option(word.option);
    switch (word.takes) {
        case Takes::number:
        case Takes::wholeNumber:
            return isNumber(word.text) ? Reason{Cause::repeatedValue, option} : whyNoNumber(word.text);
        case Takes::objects:
            return word.counts ? whyObjectLost(word) : Reason{Cause::repeatedObjects, option};
        case Takes::group:
            return {has(word.text.substr(0, word.text.find('g')), "[") && has(word.text, "get_clocks")
                        ? Cause::outsideGroups
                        : Cause::groupMember,
                    ""};
        default:
            return {Cause::repeatedValue, option};
    }
}

Reason ReadLine::whyObjectLost(LineWord const& word) const {
    std::string const option(word.option);
    if (list() == TOVCMD_FALSEPATH && option == "-through" && !has(saved(), " -through ")) {
        return {Cause::throughBesideOthers, ""};
    }
    OwnedObjList objs;
    readObjs(objs.list, word.text, false);
    if (objs.list.empty()) return {Cause::withoutObjects, option};
    std::string_view const first = orEmpty(objs.list.front()->name);
    std::string_view const reserved = reservedExpression(objs.list.front()->name);
    if (!reserved.empty()) return {Cause::reservedKey, std::string(reserved)};
    if (looksLikeOption(first)) return {Cause::queryOption, std::string(first)};
    if (startsWith(first, "get_")) return {Cause::queryInQuery, ""};
    bool const isClock = list() == TOVCMD_CLOCK || list() == TOVCMD_GENCLOCK;
    if (isClock && option.empty()) return {Cause::firstTarget, ""};
    return isClock ? Reason{Cause::firstOfOption, option} : Reason{Cause::firstObject, ""};
}

// A later word replaces this one.
Reason ReadLine::whyReplaced(LineWord const& word) const {
    if (startsWith(word.text, "$") || startsWith(word.text, "[expr")) return whyNoNumber(word.text);
    bool const isClock = list() == TOVCMD_CLOCK || list() == TOVCMD_GENCLOCK;
    for (LineWord const& other : words_) {
        if (!other.counts || other.takes != Takes::objects || !other.option.empty()) continue;
        if (other.use == Use::unknownOption || other.text == "\\") return {Cause::laterOption, std::string(other.text)};
        if (startsWith(other.text, "}")) return {Cause::severalIndexes, ""};
        if (other.use == Use::unknownValue) return {Cause::laterOption, std::string((&other - 1)->text)};
    }
    return {isClock ? Cause::laterTarget : Cause::laterObjects, ""};
}

Reason ReadLine::whyIgnored(LineWord const& word) const {
    if (list() == TOVCMD_CLOCKGROUP) return {Cause::outsideGroups, ""};
    if (list() == TOVCMD_FALSEPATH && isNumber(word.text)) return {Cause::numberOfFalsePath, ""};
    if (startsWith(word.text, "$") || startsWith(word.text, "[expr")) return whyNoNumber(word.text);
    bool const hasNumber =
        list() == TOVCMD_FALSEPATH || std::any_of(words_.begin(), words_.end(), [](LineWord const& w) {
            return w.counts && (w.takes == Takes::number || w.takes == Takes::wholeNumber);
        });
    if (!hasNumber && word.text.front() != '[' && word.text.front() != '{') return whyNoNumber(word.text);
    return {Cause::outsideOptions, ""};
}

Reason ReadLine::whyNoNumber(std::string_view word) const {
    if (has(word, "$")) return {Cause::variable, ""};
    if (startsWith(word, "[") || word == "expr") return {Cause::expression, ""};
    if (startsWith(word, "{")) return {Cause::enclosedNumber, ""};
    return {Cause::notNumber, ""};
}

Reason ReadLine::foreignOption(std::string_view option) const {
    for (ForeignOption const& foreign : foreignOptions) {
        bool const isOfList = foreign.list == TOVCMD_NONE || foreign.list == list();
        if (isOfList && startsWith(option, foreign.begin)) return {foreign.cause, ""};
    }
    std::string_view const full = optionInFull(list(), option);
    if (!full.empty()) return {Cause::shortOption, std::string(full)};
    return {Cause::unknownOption, ""};
}

Reason ReadLine::whyChanged(std::string_view word) const {
    if (isLongKeyword()) return longKeyword();
    LineWord const* const around = wordAround(word);
    if (around == nullptr) return {Cause::other, ""};
    bool const isEdge = around->takes == Takes::edges;
    if (!isEdge && !isNumber(around->text)) return whyNoNumber(around->text);
    if (around->takes == Takes::wholeNumber) return {Cause::fraction, ""};
    if (!isEdge && around->takes != Takes::number) return whyAdded(word);
    return {has(saved(), "inf") ? Cause::largeNumber : Cause::roundedNumber, ""};
}

Reason ReadLine::whyAdded(std::string_view word) const {
    if (isLongKeyword()) return longKeyword();
    if (list() == TOVCMD_CLOCKGROUP) return {word == "-exclusive" ? Cause::noRelation : Cause::groupMember, ""};
    if (startsWith(word, "all_")) return {Cause::reservedKey, "[" + std::string(word) + "]"};
    if (list() == TOVCMD_CLOCK) {
        auto const isPeriod = [](LineWord const& w) { return w.use == Use::option && w.text == "-period"; };
        auto const period = std::find_if(words_.begin(), words_.end(), isPeriod);
        if (period == words_.end()) return {Cause::noPeriod, ""};
        return &*period == &words_.back() ? Reason{Cause::withoutValue, "-period"} : whyNoNumber((&*period + 1)->text);
    }
    for (LineWord const& w : words_) {
        bool const isComputed = startsWith(w.text, "$") || startsWith(w.text, "[expr");
        if (w.use == Use::other && !w.counts && isComputed) return whyNoNumber(w.text);
    }
    return {Cause::noNumber, ""};
}

Reason ReadLine::whyMistaken(std::string_view word) const {
    if (word == "\\") return {Cause::lineEnd, ""};
    if (startsWith(word, "}")) return {Cause::severalIndexes, ""};
    auto const around = std::find_if(words_.begin(), words_.end(), [word](LineWord const& w) {
        return (w.use == Use::value || w.counts) && has(w.text, word);
    });
    if (around == words_.end()) return {Cause::other, ""};
    if (looksLikeOption(word)) {
        if (around->text != word) return {Cause::queryOption, std::string(word)};
        if (around->use == Use::value) return {Cause::optionAsValue, std::string(around->option)};
        return foreignOption(word);
    }
    std::string_view const text = around->text;
    bool const isUnclosed = count(word, '[') == count(word, ']') + 1 && startsWith(text, "[");
    if (!isUnclosed) return {Cause::unbalanced, ""};
    if (count(word, '[') > 1) return {Cause::indexOfIndex, std::string(word) + "]"};
    if (count(text, '[') > 2) return {Cause::severalIndexes, ""};
    return {Cause::unbracedIndex, "{" + std::string(word) + "]}"};
}

Reason ReadLine::whyUnstable() const {
    if (has(saved(), "\n")) return {Cause::lineFeed, ""};
    if (list() == TOVCMD_ATTRIBUTE) return {Cause::attributeText, ""};
    if (list() == TOVCMD_CLOCKGROUP) return {Cause::groupMember, ""};
    if (has(saved(), "inf ") || has(saved(), " inf")) return {Cause::largeNumber, ""};
    for (LineWord const& word : words_) {
        bool const isPlain =
            !looksLikeOption(word.text) && word.text.find_first_of(" \t\v\f\r\"[{") == std::string_view::npos;
        if (word.takes == Takes::name && word.counts && !isPlain) return {Cause::clockName, ""};
    }
    return {Cause::objectName, ""};
}

/// Calls `visit` with each word of a text, separated by white space.
template <class Visit>
void forEachWord(std::string_view text, Visit visit) {
    for (text = trim(text); !text.empty(); text = trimFront(text)) {
        std::string_view const word = text.substr(0, text.find_first_of(whiteSpace));
        visit(word);
        text.remove_prefix(word.size());
    }
}

/// Adds words to those with the same cause.
class Collector {
public:
    /// Whether a message would not show any more words: it has three causes, and a hundred words fill each.
    bool isFull() const { return count_ == 300; }

    void add(Reason reason, std::string_view word, bool isAdded = false) {
        ++count_;
        // A word without a cause of its own belongs to the words beside it.
        if (reason.cause == Cause::other && !causes.empty()) reason = {causes.back().cause, causes.back().about};
        if (causes.size() == 1 && causes.front().cause == Cause::other) {
            causes.front().cause = reason.cause;
            causes.front().about = reason.about;
        }
        for (CausedWords& known : causes) {
            if (known.cause != reason.cause || known.about != reason.about || known.areAdded != isAdded) continue;
            known.words.append(" ").append(word);
            return;
        }
        causes.push_back({reason.cause, std::move(reason.about), std::string(word), isAdded});
    }

    std::vector<CausedWords> causes;

private:
    int count_ = 0;
};

}  // namespace

FindingCauses causesOf(TovFinding const& finding, std::string_view text) {
    ReadLine const line(text);
    Collector found;
    WordComparison::Words words;
    WordComparison const& comparison = line.comparison();
    std::size_t const end = text.find('\0');
    switch (finding.kind) {
        case TOVFINDING_LOST_WORD:
            words = comparison.lost();
            if (end != std::string_view::npos) WordComparison::appendWords(words, text.substr(end));
            for (auto const& word : words) {
                if (!found.isFull()) found.add(line.whyLost(word.text), word.text);
            }
            break;
        case TOVFINDING_CHANGED_VALUE:
            for (auto const& word : comparison.changed()) {
                if (!found.isFull()) found.add(line.whyChanged(word.text), word.text);
            }
            for (auto const& word : comparison.added()) {
                if (!found.isFull()) found.add(line.whyAdded(word.text), word.text, true);
            }
            break;
        case TOVFINDING_MISTAKEN_WORD:
            forEachWord(finding.text, [&](std::string_view word) {
                if (!found.isFull()) found.add(line.whyMistaken(word), word);
            });
            break;
        case TOVFINDING_UNSTABLE_LINE:
            if (line.makesCommand()) found.add(line.whyUnstable(), "");
            break;
        default:
            break;
    }
    return {std::move(found.causes), line.saved()};
}

}  // namespace kiri::tov::impl_detail
