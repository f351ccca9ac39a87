// The words of a command's object references. A query such as "[get_pins {a b}]" is an object reference for each of its
// names. Any other expression is kept as it was written, once for each of its words:
//
//   expression = { word | separator | command }
//   command    = "[" expression "]"
//   separator  = white space | "{" | "}" | '"'
//
// The words of a query follow its name, up to the next query or to the end of its command. A command inside a query is
// another query, or "list", whose words belong to the outer query; the words of any other command are not names.

#include "tov/cmd/object_words_p.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "tov/base/text_p.h"
#include "tov/cmd/obj_list_p.h"

namespace kiri::tov::impl_detail {

namespace {

struct QueryName {
    std::string_view word;
    taDciObjTyp type;
};

constexpr QueryName queryNames[] = {
    {"get_ports", taDciObjPort}, {"get_pins", taDciObjPin},       {"get_nets", taDciObjNet},
    {"get_cells", taDciObjCell}, {"get_registers", taDciObjCell}, {"get_clocks", taDciObjClock},
};

/// What the options of a query mean for its words.
struct QueryOption {
    std::string_view word;
    bool hasOtherObjects;  // the query finds objects that its words do not name
    bool hasValue;         // followed by a word that is not a name; the value of -filter is among the words
};

// "-hsc" is followed by another separator of levels.
constexpr QueryOption otherMeanings[] = {
    {"-of_objects", true, false}, {"-filter", true, false}, {"-regexp", false, false},
    {"-nocase", false, false},    {"-hsc", false, true},
};

constexpr std::string_view listCommand = "list";

// Types whose words are names.
constexpr taDciObjTyp judgedTypes[] = {taDciObjPort, taDciObjSourcePort, taDciObjPin,   taDciObjPin2, taDciObjNet,
                                       taDciObjCell, taDciObjSourceNet,  taDciObjClock, taDciObjName};

template <class Table, class Value>
bool contains(Table const& table, Value const& value) {
    return std::find(std::begin(table), std::end(table), value) != std::end(table);
}

// Options may be abbreviated to one letter or more.
bool isOption(std::string_view word, std::string_view option) {
    return word.size() >= 2 && startsWith(option, word);
}

bool isSeparator(char c) {
    return isSpace(c) || c == '{' || c == '}' || c == '"';
}

/// Collects the words of one list of references.
class WordGatherer {
public:
    void gather(ppStlList<taDciObj*> const& list);
    std::vector<ObjectWord> takeWords();

private:
    using QueryIndex = std::size_t;
    static constexpr QueryIndex noQuery = 0;

    struct Query {
        taDciObjTyp type;  // none: its words are not names
        bool isJudged;
        QueryIndex outer;  // the enclosing query
        bool isHierarchical = false;
        bool hasOtherObjects = false;
        bool isValueNext = false;  // the next word is the value of an option
    };
    QueryIndex begin(taDciObjTyp type, bool isJudged, QueryIndex outer = noQuery) {
        queries_.push_back({type, isJudged, outer});
        return queries_.size() - 1;
    }

    void add(std::string_view word, QueryIndex& query);
    void addName(std::string_view word, QueryIndex query);
    void readPlain(std::string_view text);
    void readExpression(std::string_view text, QueryIndex query);

    std::vector<Query> queries_ = {{taDciObjNone, false, noQuery}};
    std::vector<ObjectWord> words_;
};

/// Splits an expression into words and finds where its commands begin and end.
class ExpressionCursor {
public:
    enum Token { end, word, opening, closing };

    explicit ExpressionCursor(std::string_view text) : text_(text), lastClosing_(text.rfind(']')) {}

    /// `depth` commands are open. Stores a word in `text`; skips one that depends on the result of a command.
    Token next(std::string_view& text, std::size_t depth) {
        for (;;) {
            while (at_ < text_.size() && isSeparator(text_[at_])) ++at_;
            if (at_ == text_.size()) return end;
            if (text_[at_] == '[') return ++at_, opening;
            if (text_[at_] == ']' && depth > 0) {
                ++at_;
                takeWord(depth - 1);  // text that directly follows a command in brackets is not a word
                return closing;
            }
            text = takeWord(depth);
            bool const isGlued = at_ < text_.size() && text_[at_] == '[';
            if (!isGlued) return word;
        }
    }

private:
    std::string_view takeWord(std::size_t depth) {
        std::size_t const first = at_;
        while (at_ < text_.size() && !isSeparator(text_[at_])) {
            char const c = text_[at_];
            if (c == ']' && depth > 0) break;
            if (c == '[') {
                std::size_t const index = endOfIndex();
                if (index == at_) break;
                at_ = index;
            } else if (c == '$' && at_ + 1 < text_.size() && text_[at_ + 1] == '{') {
                at_ = std::min(text_.find('}', at_), text_.size() - 1) + 1;
            } else {
                at_ += isEscape(at_) ? 2 : 1;
            }
        }
        return text_.substr(first, at_ - first);
    }

    bool isEscape(std::size_t at) const {
        return text_[at] == '\\' && at + 1 < text_.size() && !isSpace(text_[at + 1]);
    }

    // The end of the brackets that open here within a word: "[0]", or an open one that nothing closes. Stays here for a
    // command within a word, which holds white space.
    std::size_t endOfIndex() {
        if (at_ < commandsUntil_) return at_;
        std::size_t open = 0;
        std::size_t at = at_;
        for (; at < text_.size() && !isSeparator(text_[at]); at += isEscape(at) ? 2 : 1) {
            if (text_[at] == '[') ++open;
            if (text_[at] == ']' && --open == 0) return at + 1;
        }
        if (lastClosing_ == std::string_view::npos || lastClosing_ < at) return at_ + 1;
        commandsUntil_ = at;
        return at_;
    }

    std::string_view text_;
    std::size_t at_ = 0;
    std::size_t lastClosing_;
    std::size_t commandsUntil_ = 0;  // brackets before this are known to open commands
};

void WordGatherer::add(std::string_view word, QueryIndex& query) {
    auto const* const name = std::find_if(std::begin(queryNames), std::end(queryNames),
                                          [word](QueryName const& known) { return known.word == word; });
    if (name != std::end(queryNames)) {
        query = begin(name->type, true, query);
        return;
    }
    Query& current = queries_[query];
    bool const mayBeOption = current.type != taDciObjName;  // a plain expression has none
    auto const* const other = std::find_if(std::begin(otherMeanings), std::end(otherMeanings),
                                           [word](QueryOption const& known) { return isOption(word, known.word); });
    if (mayBeOption && isOption(word, "-hierarchical")) {
        current.isHierarchical = true;
    } else if (mayBeOption && other != std::end(otherMeanings)) {
        current.isJudged = false;
        current.hasOtherObjects = current.hasOtherObjects || other->hasOtherObjects;
        current.isValueNext = other->hasValue;
    } else {
        addName(word, query);
    }
}

void WordGatherer::addName(std::string_view word, QueryIndex query) {
    bool const isValue = std::exchange(queries_[query].isValueNext, false);
    bool const isName = !isValue && !word.empty() && word[0] != '-';
    words_.push_back({word, taDciObjNone, false, false, isName, query});
}

void WordGatherer::readExpression(std::string_view text, QueryIndex query) {
    ExpressionCursor cursor(text);
    std::vector<QueryIndex> outer;
    bool isFirst = false;  // of a command
    for (std::string_view word;;) {
        switch (cursor.next(word, outer.size())) {
            case ExpressionCursor::end:
                return;
            case ExpressionCursor::opening:
                outer.push_back(query);
                query = begin(taDciObjNone, false, query);
                isFirst = true;
                break;
            case ExpressionCursor::closing:
                query = outer.back();
                outer.pop_back();
                isFirst = false;
                break;
            case ExpressionCursor::word:
                if (isFirst && word == listCommand) {
                    query = outer.back();
                } else {
                    add(word, query);
                }
                isFirst = false;
                break;
        }
    }
}

void WordGatherer::readPlain(std::string_view text) {
    bool const isExpression = startsWith(trimFront(text), "[");
    readExpression(text, begin(taDciObjName, !isExpression));
}

bool isPlain(taDciObj const* object) {
    return object != nullptr && object->type == taDciObjName;
}

// Returns whether reading `expression`, the name of the first plain object reference, yields this list.
bool isOneExpression(ppStlList<taDciObj*> const& list, char const* expression) {
    if (std::all_of(list.begin(), list.end(), isPlain)) return false;
    OwnedObjList read;
    readObjs(read.list, expression, false);
    // Many references to one long expression share its text.
    auto const isSame = [expression](taDciObj const* object, taDciObj const* other) {
        if (isPlain(object) != isPlain(other)) return false;
        return object != nullptr && (object->name == expression || orEmpty(object->name) == orEmpty(other->name));
    };
    return list.size() == read.list.size() && std::equal(list.begin(), list.end(), read.list.begin(), isSame);
}

void WordGatherer::gather(ppStlList<taDciObj*> const& list) {
    auto const plain = std::find_if(list.begin(), list.end(), isPlain);
    if (plain != list.end() && hasText((*plain)->name) && isOneExpression(list, (*plain)->name)) {
        readPlain((*plain)->name);
        return;
    }
    taDciObjTyp type = taDciObjNone;
    QueryIndex query = noQuery;
    std::string_view previous;
    for (taDciObj const* object : list) {
        if (object == nullptr || !contains(judgedTypes, object->type)) continue;
        std::string_view const name = orEmpty(object->name);
        if (isPlain(object)) {
            if (name.data() != previous.data() && name != previous) readPlain(name);
            previous = name;
        } else {
            // Adjacent references of one type come from one query: an option among them applies to all.
            bool const isFirst = object->type != type;
            if (isFirst) query = begin(object->type, true);
            if (startsWith(name, "[")) {
                readExpression(name, query);
            } else if (!isFirst || name != listCommand || list.size() == 1) {
                add(name, query);
            }
        }
        type = object->type;
    }
}

std::vector<ObjectWord> WordGatherer::takeWords() {
    for (Query& query : queries_) query.hasOtherObjects |= queries_[query.outer].hasOtherObjects;
    for (ObjectWord& word : words_) {
        Query const& query = queries_[word.query];
        word.type = query.type;
        word.isHierarchical = query.isHierarchical;
        word.isJudged = query.isJudged;
        word.isTarget = word.isTarget && query.type != taDciObjNone && !query.hasOtherObjects;
    }
    return std::move(words_);
}

}  // namespace

std::vector<ObjectWord> objectWords(ppStlList<taDciObj*> const& list) {
    WordGatherer gatherer;
    gatherer.gather(list);
    return gatherer.takeWords();
}

}  // namespace kiri::tov::impl_detail
