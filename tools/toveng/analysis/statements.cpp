#include "analysis/statements.h"

#include <algorithm>

#include "analysis/keywords.h"
#include "analysis/words.h"

namespace tool {

namespace {

constexpr std::string_view blockWords[] = {"if",    "else", "elseif", "for",   "foreach",  "foreach_in_collection",
                                           "while", "proc", "switch", "catch", "namespace"};

constexpr std::uint64_t noQuestion = ~std::uint64_t{0};
constexpr std::size_t never = ~std::size_t{0};

bool beginsBlock(std::string_view text) {
    std::string_view const word = firstWord(text);
    return startsWith(text, "}") ||
           std::find(std::begin(blockWords), std::end(blockWords), word) != std::end(blockWords);
}

// A brace, optionally followed by a ";" and a comment.
bool closesBlock(std::string_view text) {
    if (!startsWith(text, "}")) return false;
    std::string_view rest = trim(text.substr(1));
    bool const isEnded = startsWith(rest, ";");
    if (isEnded) rest = trimFront(rest.substr(1));
    return rest.empty() || (isEnded && startsWith(rest, "#"));
}

}  // namespace

Statement StatementScanner::at(std::size_t line) {
    if (line >= known_) answers_.clear();
    std::string_view raw;
    lines_.get(line, raw);
    CommandText const first(raw);
    Statement statement{line, 1, Statement::Kind::other};
    if (!first.keyword.empty()) {
        statement.kind = first.isDisabled ? Statement::Kind::disabled : Statement::Kind::command;
    } else if (first.text.empty() || first.text.front() == '#') {
        statement.kind = Statement::Kind::comment;
        return statement;
    } else if (closesBlock(first.text)) {
        statement.kind = Statement::Kind::closing;
    }

    bool const mayBeginBlock = !statement.isCommand() && beginsBlock(first.text);
    bool const endsBlock = startsWith(first.text, "}");
    std::size_t last = line;
    nesting_.clear();
    nesting_.read(first.text);
    for (;;) {
        while (nesting_.endsInBackslash()) {
            nesting_.endLine();
            if (!lines_.get(last + 1, raw)) {
                statement.isOpen = true;
                break;
            }
            nesting_.read(raw);
            ++last;
        }
        if (nesting_.depth() == 0 || statement.isOpen) break;
        if (mayBeginBlock && nesting_.endsInOpenBrace()) {
            if (endsBlock) statement.kind = Statement::Kind::closing;
            break;
        }
        statement.isOpen = !lookAhead(last);
        if (statement.isOpen) break;
    }
    statement.count = last + 1 - line;
    return statement;
}

// Looks for the line that closes everything that is open after the line `last`, reads it and makes it the last one. If
// a line with a keyword or the end comes first, returns false and leaves `last` as it was.
bool StatementScanner::lookAhead(std::size_t& last) {
    asked_.assign(nesting_.depth(), noQuestion);
    std::string_view raw;
    for (Place place{last + 1, 0};; place = {place.line + 1, 0}) {
        nesting_.endLine();
        known_ = std::max(known_, place.line + 1);
        if (!lines_.get(place.line, raw) || !keywordOf(trimFront(raw)).empty()) return false;
        if (Answer const* const answer = ask(place.line)) {
            if (answer->place.line == never) return false;
            place = answer->place;
            lines_.get(place.line, raw);
            nesting_.close();
            closeAt(place);
        }
        while (nesting_.depth() > 0) {
            std::size_t const column = nesting_.readToClose(raw, place.column);
            if (column == Nesting::npos) break;
            place.column = column;
            closeAt(place);
        }
        if (nesting_.depth() > 0) continue;
        nesting_.read(raw, place.column);
        last = place.line;
        return true;
    }
}

// Asks where the innermost open frame at the beginning of a line is closed. Returns the answer if it is known;
// otherwise records the question.
StatementScanner::Answer const* StatementScanner::ask(std::size_t line) {
    asked_.resize(nesting_.depth(), noQuestion);
    Nesting::Frame const frame = nesting_.top();
    bool const isComment = frame == Nesting::Frame::bracket && nesting_.commandBegins();
    std::uint64_t const question = std::uint64_t{line} * 4 + (isComment ? 3 : static_cast<std::uint64_t>(frame));
    auto const [answer, isNew] = answers_.try_emplace(question, Answer{{never, 0}, asked_.back()});
    if (!isNew) return &answer->second;
    asked_.back() = question;
    return nullptr;
}

// The innermost frame has closed: answers the questions about it.
void StatementScanner::closeAt(Place place) {
    std::size_t const frame = nesting_.depth();
    if (asked_.size() <= frame) return;
    for (std::uint64_t question = asked_[frame]; question != noQuestion;) {
        Answer& answer = answers_.find(question)->second;
        answer.place = place;
        question = answer.next;
    }
    asked_.resize(frame);
}

std::size_t firstTouched(std::vector<Statement> const& statements, std::size_t line) {
    auto const after = std::upper_bound(statements.begin(), statements.end(), line,
                                        [](std::size_t at, Statement const& s) { return at < s.first; });
    if (after == statements.begin()) return 0;
    auto at = after - 1;
    auto touched = at;
    // A search for what closes an open brace ended at the next keyword, which may have been on the changed line.
    for (bool isChanged = at->first == line;; isChanged = false) {
        if (at->isOpen) touched = at;
        if (at == statements.begin() || (!isChanged && at->kind == Statement::Kind::command)) break;
        --at;
    }
    return static_cast<std::size_t>(touched - statements.begin());
}

}  // namespace tool
