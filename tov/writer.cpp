#include "tov/writer_p.h"

#include <sys/mman.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <list>
#include <new>

#include "tov/command_walk_p.h"
#include "tov/document_lists_p.h"
#include "tov/file_headers_p.h"

namespace kiri::tov::impl_detail {

namespace {

// The lines of one list, in blocks that stay as they are: a text that grows needs its old copy beside it.
class Lines {
public:
    // A command without a text has no line.
    void append(CommandKind const& kind, TovCmd& cmd, TOV& document) {
        if (blocks_.empty() || blocks_.back().size() > full_) addBlock();
        std::string& block = blocks_.back();
        std::size_t const before = block.size();
        kind.append(block, cmd, document);
        if (block.size() > before) block += '\n';
    }

    std::size_t size() const { return blocks_.empty() ? 0 : closed_ + blocks_.back().size(); }

    void moveTo(std::string& text) {
        for (; !blocks_.empty(); blocks_.pop_front()) text += blocks_.front();
    }

private:
    // The unused rest of a block is a sixteenth of the text at most, apart from small texts.
    void addBlock() {
        constexpr std::size_t smallest = 4096;
        constexpr std::size_t largest = 8 * smallest;
        constexpr std::size_t usualLine = 200;
        if (!blocks_.empty()) {
            std::string& last = blocks_.back();
            closed_ += last.size();
            if (last.size() > full_ + usualLine) last.shrink_to_fit();  // a long line made it grow
        }
        std::size_t const size = std::clamp(closed_ / 16, smallest, largest);
        blocks_.emplace_back().reserve(size);
        full_ = size - usualLine;
    }

    std::list<std::string> blocks_;
    std::size_t closed_ = 0;  // size of the blocks before the last one
    std::size_t full_ = 0;    // beyond that size the last block has no room for a usual line
};

class LinesOfLists {
public:
    Lines& of(CommandKind const& kind) { return lines_.at(static_cast<std::size_t>(kind.list) - 1); }

    std::size_t size() const {
        std::size_t size = 0;
        for (Lines const& lines : lines_) size += lines.size();
        return size;
    }

private:
    std::array<Lines, std::size(commandKinds)> lines_;
};

// Returns false at a command of a caller's class, which may observe in which order the lines are made. `lines` is not
// complete then.
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

void appendList(std::string& text, CommandKind const& kind, TOV& document) {
    for (TovCmd* cmd : DocumentLists::of(document)[kind]) {
        if (cmd == nullptr) continue;
        std::size_t const before = text.size();
        kind.append(text, *cmd, document);
        if (text.size() > before) text += '\n';
    }
}

// Estimates the size of a list's lines from its first ones. Asks no command of a caller's class twice.
std::size_t usualSizeOf(CommandKind const& kind, TOV& document) {
    constexpr std::size_t enough = 16;
    constexpr std::size_t longest = 1000;  // a few longer lines do not predict the others
    std::list<TovCmd*> const& list = DocumentLists::of(document)[kind];
    std::string lines;
    std::size_t count = 0;
    for (TovCmd* cmd : list) {
        if (count == enough) break;
        if (cmd == nullptr || !isLibraryCommand(kind, *cmd)) continue;
        kind.append(lines, *cmd, document);
        ++count;
    }
    if (count == 0) return 0;
    std::size_t const size = list.size() * std::min(lines.size() / count + 2, longest);
    return size + size / 16;
}

// Requests large pages for a large text, where the system has them: page faults for each 4 KiB cost time, see
// docs/performance.md. A large size is a guess: if there is no room for it, there may be for the text.
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

// Puts the text together. appendLines(text, kind) appends the lines of a list; `lines` is about the size of all.
template <class AppendLines>
std::string textOf(TOV& document, std::size_t lines, AppendLines appendLines) {
    std::string text;
    reserve(text, sdcHeader.size() + attributeHeader.size() + 3 + lines + document.sdcCommentText.size() +
                      document.attributeCommentText.size());
    text.append(sdcHeader).append("\n");
    for (CommandKind const& kind : commandKinds) {
        if (kind.list == TOVCMD_ATTRIBUTE) {
            text += document.sdcCommentText;
            text.append("\n").append(attributeHeader).append("\n");
        }
        appendLines(text, kind);
    }
    text += document.attributeCommentText;
    if (text.capacity() / 2 > text.size()) text.shrink_to_fit();  // a bad guess
    return text;
}

}  // namespace

std::string fileTextOf(TOV& document) {
    if (!liesListByList(document)) {
        LinesOfLists lines;
        if (appendInMemoryOrder(lines, document)) {
            return textOf(document, lines.size(),
                          [&](std::string& text, CommandKind const& kind) { lines.of(kind).moveTo(text); });
        }
    }
    std::size_t size = 0;
    for (CommandKind const& kind : commandKinds) size += usualSizeOf(kind, document);
    return textOf(document, size,
                  [&](std::string& text, CommandKind const& kind) { appendList(text, kind, document); });
}

}  // namespace kiri::tov::impl_detail
