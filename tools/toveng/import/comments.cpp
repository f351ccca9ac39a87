#include "comments.h"

#include <algorithm>

#include "tov/check.h"
#include "tov/make_command.h"

namespace tool::sdc {

namespace {

/// Drops a "\" at the end, which would make the next line part of the comment.
void dropContinuation(std::string& text) {
    std::size_t const last = text.find_last_not_of('\\');
    std::size_t const count = text.size() - (last == std::string::npos ? 0 : last + 1);
    if (count % 2 != 0) text.pop_back();
}

template <class Visit>
void forEachLine(std::string_view text, Visit const& visit) {
    for (;;) {
        std::size_t const end = text.find('\n');
        visit(text.substr(0, end));
        if (end == std::string_view::npos) return;
        text.remove_prefix(end + 1);
    }
}

/// Returns whether a line is more than a comment: an attribute or a disabled command.
bool isCommand(std::string const& line) {
    try {
        return kiri::tov::makeCommand(line) != nullptr;
    } catch (std::out_of_range const&) {
        return true;
    }
}

std::string heldComment(std::string_view text, bool isAfterCommand) {
    constexpr std::string_view space = " \t\n\v\f\r";
    std::string held(text);
    // Blank lines are not kept.
    for (std::size_t end = held.rfind('\n'); end != std::string::npos; end = held.rfind('\n')) {
        if (held.find_first_not_of(space, end) != std::string::npos) break;
        held.erase(end);
    }
    dropContinuation(held);
    std::string lines;
    forEachLine(held, [&](std::string_view view) {
        std::string const line(view);
        std::size_t const first = line.find_first_not_of(space);
        // A continuation line is not a comment by itself.
        bool const isComment = first != std::string::npos && line[first] == '#';
        bool const isKept = isComment && kiri::tov::checkTovLine(line).empty() && !(isAfterCommand && isCommand(line));
        lines.append(isKept ? "" : "# ").append(line).append("\n");
    });
    return lines;
}

}  // namespace

std::string commented(std::string_view text) {
    std::string comment;
    comment.reserve(text.size() + 3);
    forEachLine(text, [&](std::string_view line) {
        if (!comment.empty()) comment += '\n';
        comment.append("# ").append(line);
    });
    dropContinuation(comment);
    return comment + '\n';
}

std::string commentsIn(std::string_view text, bool startsInLine) {
    std::string comments;
    bool isAfterCommand = startsInLine;
    std::size_t lineStart = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\n' || text[i] == '#') {
            std::size_t end = i;
            if (text[i] == '#') {
                while (end < text.size() && text[end] != '\n') end += text[end] == '\\' ? 2 : 1;
                end = std::min(end, text.size());
                std::size_t const start = isAfterCommand ? i : lineStart;
                comments += heldComment(text.substr(start, end - start), isAfterCommand);
            }
            lineStart = end + 1;
            isAfterCommand = false;
            i = end;
        } else if (text[i] == '\\') {
            lineStart = i + 2;  // of a continuation line, which is blank so far
            ++i;
        }
    }
    return comments;
}

}  // namespace tool::sdc
