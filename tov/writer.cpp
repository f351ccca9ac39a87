#include "tov/writer.h"

#include <algorithm>
#include <array>
#include <list>

#include "tov/command_kind.h"
#include "tov/file_headers.h"

namespace kiri::tov {

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

// False where a command is of a caller's class, which may see in which order the commands are asked for their lines.
// `lines` is not complete then.
bool appendInMemoryOrder(LinesOfLists& lines, TOV& document) {
    return visitInMemoryOrder(document, [&](CommandKind const& kind, std::list<TovCmd*>::iterator place) {
        if (!isLibraryCommand(kind, **place)) return false;
        lines.of(kind).append(kind, **place, document);
        return true;
    });
}

void appendListByList(LinesOfLists& lines, TOV& document) {
    for (CommandKind const& kind : commandKinds) {
        for (TovCmd* cmd : *document.getTovCmdList(kind.list)) {
            if (cmd != nullptr) lines.of(kind).append(kind, *cmd, document);
        }
    }
}

LinesOfLists linesOf(TOV& document) {
    LinesOfLists lines;
    if (appendInMemoryOrder(lines, document)) return lines;
    lines = {};
    appendListByList(lines, document);
    return lines;
}

}  // namespace

std::string fileTextOf(TOV& document) {
    LinesOfLists lines = linesOf(document);
    std::string text;
    text.reserve(sdcHeader.size() + attributeHeader.size() + 3 + lines.size() + document.sdcCommentText.size() +
                 document.attributeCommentText.size());
    text.append(sdcHeader).append("\n");
    for (CommandKind const& kind : commandKinds) {
        if (kind.list == TOVCMD_ATTRIBUTE) {
            text += document.sdcCommentText;
            text.append("\n").append(attributeHeader).append("\n");
        }
        lines.of(kind).moveTo(text);
    }
    text += document.attributeCommentText;
    return text;
}

}  // namespace kiri::tov
