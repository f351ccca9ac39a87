#include "serve/line_words.h"

#include <algorithm>

#include "analysis/keywords.h"

namespace tool::lsp {

namespace {

bool isNumber(std::string_view word) {
    if (!word.empty() && word.front() == '-') word.remove_prefix(1);
    return !word.empty() && word.front() >= '0' && word.front() <= '9';
}

// Whether an option of a query means that its words are not just names.
bool selectsByOther(std::string_view option) {
    constexpr std::string_view known[] = {"-of_objects", "-filter", "-regexp", "-nocase"};
    return option.size() > 1 && std::any_of(std::begin(known), std::end(known), [&](std::string_view name) {
               return name.substr(0, option.size()) == option;
           });
}

/// Walks over a line once, with a stack of the open groups.
class Scanner {
public:
    explicit Scanner(std::string_view line) : line_(line) {}

    LineWords run() {
        skipSpace();
        if (line_.substr(at_, 1) == "#" && !startComment()) {
            result_.end.isComment = true;
            result_.end.begin = at_;
            result_.end.isFirstWord = line_.find_first_of(whiteSpace, at_) == std::string_view::npos;
            return std::move(result_);
        }
        skipSpace();
        result_.end.isFirstWord = true;
        while (at_ < line_.size()) step();
        finish();
        return std::move(result_);
    }

private:
    struct Group {
        char close;
        bool isQuery;
        QueryInfo const* query = nullptr;
        bool hasWord = false;  // the query's keyword was read
        bool isLocal = false;
        bool isJudged = true;
        bool skipsNext = false;  // the next word is the operand of one of its options
        bool isSkipped = false;  // is such an operand
        std::size_t firstWord = 0;
    };

    void skipSpace() { at_ = std::min(line_.find_first_not_of(whiteSpace, at_), line_.size()); }

    // Returns false for a comment.
    bool startComment() {
        std::size_t const end = std::min(line_.find_first_of(whiteSpace, at_), line_.size());
        std::string_view const word = line_.substr(at_, end - at_);
        CommandInfo const* const command = findCommand(word);
        if (command == nullptr) return false;
        bool const isDisabled = word == trim(disablePrefix);
        if (isDisabled && end < line_.size() && line_[end] != disablePrefix.back()) return false;
        result_.isDisabled = isDisabled;
        addWord(at_, end, WordKind::keyword);
        at_ = end;
        if (!result_.isDisabled) result_.command = command;
        return true;
    }

    void step() {
        char const c = line_[at_];
        if (isSpace(c)) {
            ++at_;
            if (groups_.empty()) endOperand();
            return;
        }
        if (c == '[' || c == '{' || (c == '"' && !isIn('"'))) return open(c);
        if (!groups_.empty() && c == groups_.back().close) return close();
        if (c == ']' || c == '}' || c == '"') {
            ++at_;  // does not close anything
            return;
        }
        readWord();
    }

    bool isIn(char close) const { return !groups_.empty() && groups_.back().close == close; }

    void open(char c) {
        inOperand_ = inOperand_ || groups_.empty();
        Group group{c == '[' ? ']' : c == '{' ? '}' : '"', c == '['};
        group.firstWord = result_.words.size();
        if (!group.isQuery && !groups_.empty()) {
            Group const& outer = groups_.back();
            group.query = outer.query;
            group.hasWord = true;
            group.isLocal = outer.isLocal;
            group.isJudged = outer.isJudged;
            group.isSkipped = outer.skipsNext || outer.isSkipped;
        }
        groups_.push_back(group);
        ++at_;
    }

    void close() {
        Group const closed = groups_.back();
        groups_.pop_back();
        if (!closed.isQuery && !groups_.empty()) groups_.back().skipsNext = false;
        // An option of a query also applies to the words before it.
        if (closed.isQuery) {
            for (std::size_t i = closed.firstWord; i < result_.words.size(); ++i) {
                Word& word = result_.words[i];
                word.isLocal = word.isLocal || closed.isLocal;
                word.isJudged = word.isJudged && closed.isJudged;
            }
        }
        ++at_;
    }

    // Returns the end of a word. A bracket in the word opens a part of the word.
    std::size_t wordEnd() const {
        std::size_t end = at_;
        int brackets = 0;
        for (; end < line_.size(); ++end) {
            char const c = line_[end];
            if (isSpace(c) || c == '{' || c == '}' || c == '"') break;
            if (c == '[') ++brackets;
            if (c == ']' && brackets-- == 0) break;
        }
        return end;
    }

    void readWord() {
        std::size_t const begin = at_;
        at_ = wordEnd();
        std::string_view const text = line_.substr(begin, at_ - begin);
        if (groups_.empty()) return readTopWord(begin, text);
        Group& group = groups_.back();
        if (group.isQuery && !group.hasWord) {
            group.hasWord = true;
            group.query = findQuery(text);
            return addWord(begin, at_, WordKind::query);
        }
        if (group.query != nullptr && text.front() == '-' && group.isQuery) {
            group.isLocal =
                group.isLocal || (text.size() > 1 && std::string_view("-hierarchical").substr(0, text.size()) == text);
            if (selectsByOther(text)) group.isJudged = false;
            group.skipsNext = selectsByOther(text) || text == "-hsc";
            return addWord(begin, at_, WordKind::option);
        }
        if (group.skipsNext || group.isSkipped) {
            group.skipsNext = false;
            return addWord(begin, at_, WordKind::other);
        }
        addOperand(begin, text, group.query == nullptr ? nullptr : &group);
    }

    void readTopWord(std::size_t begin, std::string_view text) {
        if (result_.command == nullptr && !hasOtherCommand_) {
            result_.command = findCommand(text);
            hasOtherCommand_ = result_.command == nullptr;
            return addWord(begin, at_, hasOtherCommand_ ? WordKind::other : WordKind::keyword);
        }
        if (text.front() == '-' && role_ == nullptr && !isNumber(text)) {
            OptionInfo const* const option = result_.command == nullptr ? nullptr : findOption(*result_.command, text);
            addWord(begin, at_, WordKind::option);
            role_ = option != nullptr && option->operand != Operand::none ? option : nullptr;
            inOperand_ = false;
            return;
        }
        inOperand_ = true;
        addOperand(begin, text, nullptr);
    }

    // Adds a word of an operand: `query` is the group with the query that it is in.
    void addOperand(std::size_t begin, std::string_view text, Group const* query) {
        if (query != nullptr) {
            bool const takesNames = query->query->type != taDciObjNone;
            addWord(begin, begin + text.size(), takesNames ? WordKind::name : WordKind::other, query->query->type);
            return;
        }
        bool const isInQuery =
            std::any_of(groups_.begin(), groups_.end(), [](Group const& group) { return group.isQuery; });
        Operand const operand = role_ == nullptr ? Operand::objects : role_->operand;
        bool const isAttribute = result_.command != nullptr && result_.command->keyword == "#attribute";
        if (isInQuery || result_.command == nullptr || isAttribute)
            return addWord(begin, begin + text.size(), WordKind::other);
        if (operand == Operand::name) return addWord(begin, begin + text.size(), WordKind::clockName, taDciObjClock);
        bool const isValue =
            operand == Operand::number || operand == Operand::edges || (role_ == nullptr && isNumber(text));
        if (isValue) return addWord(begin, begin + text.size(), WordKind::value);
        addWord(begin, begin + text.size(), WordKind::name, operand == Operand::clocks ? taDciObjClock : taDciObjName);
    }

    void addWord(std::size_t begin, std::size_t end, WordKind kind, taDciObjTyp type = taDciObjNone) {
        Word word{begin, end, kind, line_.substr(begin, end - begin), type, role_};
        if (!groups_.empty()) {
            word.isLocal = groups_.back().isLocal;
            word.isJudged = groups_.back().isJudged;
            word.isBraced = groups_.back().close != ']';
        }
        result_.words.push_back(word);
    }

    void endOperand() {
        if (inOperand_) role_ = nullptr;
        inOperand_ = false;
    }

    // Describes the place after the last character.
    void finish() {
        OpenEnd& end = result_.end;
        bool const isInWord = !result_.words.empty() && result_.words.back().end == line_.size();
        end.begin = isInWord ? result_.words.back().begin : line_.size();
        std::size_t const before = result_.words.size() - (isInWord ? 1 : 0);
        end.isFirstWord = groups_.empty() && before == (result_.isDisabled ? 1U : 0U);
        end.role = role_;
        if (groups_.empty()) return;
        Group const& group = groups_.back();
        end.query = group.query;
        end.isBraced = group.close != ']';
        end.isQueryWord =
            group.isQuery && (!group.hasWord || (isInWord && result_.words.back().kind == WordKind::query));
    }

    std::string_view line_;
    std::size_t at_ = 0;
    LineWords result_;
    std::vector<Group> groups_;
    OptionInfo const* role_ = nullptr;
    bool inOperand_ = false;        // the operand of `role_` has begun
    bool hasOtherCommand_ = false;  // the first word is not a command of the file
};

}  // namespace

Word const* LineWords::at(std::size_t byte) const {
    Word const* found = nullptr;
    for (Word const& word : words) {
        if (word.begin > byte) break;
        if (byte <= word.end) found = &word;
        if (byte < word.end) break;
    }
    return found;
}

LineWords wordsOf(std::string_view line) {
    return Scanner(line).run();
}

}  // namespace tool::lsp
