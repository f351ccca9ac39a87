#include "tov/writer.h"

#include <list>

#include "tov/command_kind.h"
#include "tov/file_headers.h"

namespace kiri::tov {

namespace {

// Appends the lines of a list's commands. A command that gives no text gives no line.
void appendLines(std::string& text, CommandKind const& kind, TOV& document) {
    for (TovCmd* cmd : *document.getTovCmdList(kind.list)) {
        if (cmd == nullptr) continue;
        std::size_t const before = text.size();
        kind.append(text, *cmd, document);
        if (text.size() > before) text += '\n';
    }
}

// Saves the text from growing in steps, which is 8 % of the instructions of a save.
std::size_t usualSizeOf(TOV& document) {
    constexpr std::size_t headers = 1000;
    constexpr std::size_t line = 100;
    std::size_t lines = 0;
    for (CommandKind const& kind : commandKinds) lines += document.getTovCmdList(kind.list)->size();
    return headers + lines * line + document.sdcCommentText.size() + document.attributeCommentText.size();
}

}  // namespace

std::string fileTextOf(TOV& document) {
    std::string text;
    text.reserve(usualSizeOf(document));
    text.append(sdcHeader).append("\n");
    for (CommandKind const& kind : commandKinds) {
        if (kind.list == TOVCMD_ATTRIBUTE) {
            text += document.sdcCommentText;
            text.append("\n").append(attributeHeader).append("\n");
        }
        appendLines(text, kind, document);
    }
    text += document.attributeCommentText;
    return text;
}

}  // namespace kiri::tov
