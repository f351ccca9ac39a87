#include "tov/writer_p.h"

#include <sys/mman.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <list>
#include <new>
#include <string_view>

#include "tov/command_walk_p.h"
#include "tov/document_lists_p.h"
#include "tov/file_headers_p.h"

namespace kiri::tov::impl_detail {

namespace {

// The lines of one list, in blocks that do not move: a text that grows needs room for its old copy, too.
class Lines {
public:
    // A command without a text has no line. Returns the size of the line.
    std::size_t append(CommandKind const& kind, TovCmd& cmd, TOV& document) {
        if (blocks_.empty() || blocks_.back().size() > full_) addBlock();
        std::string& block = blocks_.back();
        std::size_t const before = block.size();
        kind.append(block, cmd, document);
        if (block.size() > before) block += '\n';
        return block.size() - before;
    }

    void append(std::string_view part) {
        if (part.empty()) return;
        close();
        blocks_.emplace_back(part);
        full_ = 0;
    }

    std::size_t size() const { return blocks_.empty() ? 0 : closed_ + blocks_.back().size(); }

    void moveTo(std::string& text) {
        for (; !blocks_.empty(); blocks_.pop_front()) text += blocks_.front();
        closed_ = 0;
    }

private:
    // The unused rest of a block is at most a sixteenth of the text, except for small texts.
    void addBlock() {
        constexpr std::size_t smallest = 4096;
        constexpr std::size_t largest = 8 * smallest;
        close();
        std::size_t const size = std::clamp(closed_ / 16, smallest, largest);
        blocks_.emplace_back().reserve(size);
        full_ = size - usualLine;
    }

    void close() {
        if (blocks_.empty()) return;
        std::string& last = blocks_.back();
        closed_ += last.size();
        if (last.size() > full_ + usualLine) last.shrink_to_fit();  // a long line made it grow
    }

    static constexpr std::size_t usualLine = 200;
    std::list<std::string> blocks_;
    std::size_t closed_ = 0;  // size of the blocks before the last one
    std::size_t full_ = 0;    // beyond this size the last block has no room for a usual line
};

class LinesOfLists {
public:
    Lines& of(CommandKind const& kind) { return lines_.at(indexOf(kind)); }

    std::size_t size() const {
        std::size_t size = 0;
        for (Lines const& lines : lines_) size += lines.size();
        return size;
    }

private:
    std::array<Lines, std::size(commandKinds)> lines_;
};

// Returns false at a command of a caller's class, which may observe the order in which the lines are made; `lines` is
// then incomplete.
bool appendInMemoryOrder(LinesOfLists& lines, TOV& document) {
    return visitInMemoryOrder(document, [&](CommandKind const& kind, std::list<TovCmd*>::iterator place) {
        if (!isLibraryCommand(kind, **place)) return false;
        lines.of(kind).append(kind, **place, document);
        return true;
    });
}

// Returns whether a walk list by list crosses the heap only once.
bool liesListByList(TOV& document) {
    std::list<TovCmd*>* before = nullptr;
    for (CommandKind const& kind : commandKinds) {
        std::list<TovCmd*>& list = DocumentLists::of(document)[kind];
        if (list.empty()) continue;
        if (before != nullptr && ListPlace{list.begin()} < ListPlace{std::prev(before->end())}) return false;
        before = &list;
    }
    return true;
}

// Returns the median size of sixteen lines. Calls no command of a caller's class twice.
template <class Iterator>
std::size_t usualLineFrom(Iterator at, CommandKind const& kind, TOV& document) {
    std::array<std::size_t, 16> sizes{};
    std::string line;
    for (std::size_t& size : sizes) {
        TovCmd* const cmd = *at++;
        if (cmd == nullptr || !isLibraryCommand(kind, *cmd)) continue;
        line.clear();
        kind.append(line, *cmd, document);
        size = line.size() + 1;
    }
    std::nth_element(sizes.begin(), sizes.begin() + 8, sizes.end());
    return sizes[8];
}

// Returns the size of a usual line in the rest of a list. `soFar` is the average size of the lines written so far, 0 if
// there are none. Returns 0 if the lines at the two ends of the rest differ much: then there is no usual line.
std::size_t usualLineOf(CommandKind const& kind, TOV& document, std::size_t soFar) {
    std::list<TovCmd*> const& list = DocumentLists::of(document)[kind];
    constexpr std::size_t few = 64;
    if (list.size() < few) return 100;
    std::size_t const first = soFar != 0 ? soFar : usualLineFrom(list.begin(), kind, document);
    std::size_t const last = usualLineFrom(list.rbegin(), kind, document);
    return std::max(first, last) * 4 > std::min(first, last) * 5 ? 0 : (first + last) / 2;
}

// Requests large pages for a large text, if the system has them: a page fault for each 4 KiB costs time, see
// docs/performance.md. A large size is a guess: if there is no room for it, there may still be room for the text.
void reserve(std::string& text, std::size_t size) {
    constexpr std::uintptr_t page = 4096;
    constexpr std::size_t large = std::size_t{4} << 20;
    if (size < large) return text.reserve(size);
    try {
        text.reserve(size);
    } catch (std::bad_alloc const&) {
        return;
    }
    std::uintptr_t const offset = reinterpret_cast<std::uintptr_t>(text.data()) % page;
    ::madvise(text.data() - offset, size, MADV_HUGEPAGE);
}

// The text of a file, built from start to end: in blocks that are joined at the end or, once the size of the rest can
// be guessed, in one text of that size, as long as the guess proves right. Apart from single lines of more than some
// hundred bytes, it takes at most 2.1 times its size, and the capacity of the result is at most 1.1 times its size.
class FileText {
public:
    void append(std::string_view part) {
        if (guessed_) {
            // As much as fits: a large part leaves no room unused.
            std::size_t const fitting = std::min(part.size(), room());
            text_ += part.substr(0, fitting);
            part.remove_prefix(fitting);
            if (part.empty()) return;
            guessed_ = false;
        }
        blocks_.append(part);
    }

    // A command without a text has no line. Returns the size of the line; `usual` is the guess for it.
    std::size_t appendLine(CommandKind const& kind, TovCmd& cmd, TOV& document, std::size_t usual) {
        constexpr std::size_t longLine = 4096;
        if (room() < longLine) guessed_ = false;
        if (!guessed_) return blocks_.append(kind, cmd, document);
        std::size_t const before = text_.size();
        kind.append(text_, cmd, document);
        if (text_.size() > before) text_ += '\n';
        std::size_t const size = text_.size() - before;
        missing_ += static_cast<std::ptrdiff_t>(usual) - static_cast<std::ptrdiff_t>(size);
        if (missing_ > allowed_) giveBack();
        return size;
    }

    // `lines` is the guess for the remaining lines, `rest` the size of everything else that remains.
    void expect(std::size_t lines, std::size_t rest) {
        std::size_t const whole = blocks_.size() + rest + lines;
        std::size_t const size = whole + lines / 20;
        allowed_ = static_cast<std::ptrdiff_t>(whole) - static_cast<std::ptrdiff_t>(size / 11 * 10);
        reserve(text_, size);
        guessed_ = text_.capacity() >= size;
        if (guessed_) blocks_.moveTo(text_);
    }

    std::string take() {
        if (guessed_) return std::move(text_);
        std::string whole;
        reserve(whole, text_.size() + blocks_.size());
        whole += text_;
        std::string().swap(text_);
        blocks_.moveTo(whole);
        return whole;
    }

private:
    std::size_t room() const { return text_.capacity() - text_.size(); }

    // The text is too large for the lines.
    void giveBack() {
        guessed_ = false;
        blocks_.append(text_);
        std::string().swap(text_);
    }

    Lines blocks_;
    std::string text_;  // comes before the blocks
    bool guessed_ = false;
    std::ptrdiff_t missing_ = 0;  // by how much the lines so far were shorter than the guess
    std::ptrdiff_t allowed_ = 0;  // beyond this, the text would be more than a tenth too large
};

// Calls append(part) for everything but the lines, and appendLines(kind) for the lines of each list.
template <class Append, class AppendLines>
void layOut(TOV& document, Append append, AppendLines appendLines) {
    append(sdcHeader);
    append("\n");
    for (CommandKind const& kind : commandKinds) {
        if (kind.list == TOVCMD_ATTRIBUTE) {
            append(document.sdcCommentText);
            append("\n");
            append(attributeHeader);
            append("\n");
        }
        appendLines(kind);
    }
    append(document.attributeCommentText);
}

// The size of what follows the lines of a kind, not counting lines.
std::size_t sizeBesideLinesFrom(CommandKind const& kind, TOV& document) {
    std::size_t const attributes = document.attributeCommentText.size();
    if (kind.list == TOVCMD_ATTRIBUTE) return attributes;
    return document.sdcCommentText.size() + attributeHeader.size() + 2 + attributes;
}

std::string textOf(TOV& document, LinesOfLists& lines) {
    std::string text;
    reserve(text, sdcHeader.size() + 1 + sizeBesideLinesFrom(commandKinds[0], document) + lines.size());
    layOut(
        document, [&](std::string_view part) { text += part; },
        [&](CommandKind const& kind) { lines.of(kind).moveTo(text); });
    return text;
}

class ListByList {
public:
    explicit ListByList(TOV& document) : document_(document), lists_(DocumentLists::of(document)) {
        std::size_t commands = 0;
        for (std::list<TovCmd*> const& list : lists_.lists) commands += list.size();
        untilGuess_ = commands < 1000 ? 0 : commands / 16;
    }

    std::string text() {
        layOut(
            document_, [this](std::string_view part) { text_.append(part); },
            [this](CommandKind const& kind) { append(kind); });
        return text_.take();
    }

private:
    void append(CommandKind const& kind) {
        std::size_t count = 0;
        std::size_t size = 0;
        for (TovCmd* cmd : lists_[kind]) {
            ++count;
            if (cmd != nullptr) size += text_.appendLine(kind, *cmd, document_, usual_[indexOf(kind)]);
            if (untilGuess_ != 0 && --untilGuess_ == 0) guess(kind, count, size);
        }
    }

    // Guesses the size of what follows the first `count` lines of a list, which have the given size.
    void guess(CommandKind const& kind, std::size_t count, std::size_t size) {
        std::size_t lines = 0;
        for (std::size_t i = indexOf(kind); i < std::size(commandKinds); ++i) {
            bool const current = i == indexOf(kind);
            usual_[i] = usualLineOf(commandKinds[i], document_, current ? size / count : 0);
            if (usual_[i] == 0) return;
            lines += usual_[i] * (lists_.lists[i].size() - (current ? count : 0));
        }
        text_.expect(lines, sizeBesideLinesFrom(kind, document_));
    }

    TOV& document_;
    DocumentLists& lists_;
    FileText text_;
    std::size_t untilGuess_ = 0;  // number of commands; 0: the guess was made or is not needed
    std::array<std::size_t, std::size(commandKinds)> usual_{};
};

}  // namespace

std::string fileTextOf(TOV& document) {
    if (!liesListByList(document)) {
        LinesOfLists lines;
        if (appendInMemoryOrder(lines, document)) return textOf(document, lines);
    }
    return ListByList(document).text();
}

}  // namespace kiri::tov::impl_detail
