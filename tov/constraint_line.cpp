#include "tov/constraint_line_p.h"

#include "tov/base/text_p.h"
#include "tov/make_command.h"

namespace kiri::tov {

using namespace impl_detail;

namespace {

// Returns the kind whose keyword the line begins with, whatever follows the keyword.
CommandKind const* findKind(std::string_view text) {
    for (CommandKind const& kind : commandKinds) {
        if (startsWith(text, kind.keyword)) return &kind;
    }
    return nullptr;
}

}  // namespace

ConstraintLine::ConstraintLine(std::string_view line) : text(trim(line.substr(0, line.find('\0')))) {
    disabled = startsWith(text, disablePrefix);
    std::string_view const keywordOn = disabled ? trimFront(text.substr(disablePrefix.size())) : text;
    kind = findKind(keywordOn);
    // An attribute is disabled by its last word: "#disable " before it makes it a comment.
    if (disabled && kind != nullptr && kind->list == TOVCMD_ATTRIBUTE) kind = nullptr;
    if (kind != nullptr) command = keywordOn;
}

std::unique_ptr<TovCmd> ConstraintLine::makeCommand() const {
    if (kind == nullptr) return nullptr;
    std::unique_ptr<TovCmd> cmd = kind->make(*kind, command);
    if (disabled) cmd->enabled = false;
    return cmd;
}

std::unique_ptr<TovCmd> makeCommand(std::string const& line, TOVCMD_TYPE* list) {
    ConstraintLine const parts(line);
    std::unique_ptr<TovCmd> cmd = parts.makeCommand();
    if (list != nullptr) *list = cmd == nullptr ? TOVCMD_NONE : parts.kind->list;
    return cmd;
}

}  // namespace kiri::tov
