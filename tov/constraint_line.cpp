#include "tov/constraint_line_p.h"

#include "tov/base/text_p.h"
#include "tov/cmd/missing_value.h"
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
    // The last word of an attribute disables it; "#disable " before an attribute makes it a comment.
    bool const isAttribute = kind != nullptr && kind->list == TOVCMD_ATTRIBUTE;
    if (disabled && isAttribute) kind = nullptr;
    if (kind == nullptr) return;
    command = keywordOn;
    char const* const keywordEnd = command.data() + kind->keyword.size();
    char const* const end = command.data() + command.size();
    if (keywordEnd == end || isSpace(*keywordEnd)) {
        words = WordCursor(keywordEnd, end);
    } else if (isAttribute) {
        words = WordCursor(findSpace(keywordEnd, end), end);
    }
    // A timing command whose first word is longer than the keyword is read as an empty one.
}

Result ConstraintLine::makeCommand(std::unique_ptr<TovCmd>& cmd) const {
    if (kind == nullptr) return {};
    Result result = kind->make(*kind, words, cmd);
    if (disabled && cmd != nullptr) cmd->enabled = false;
    return result;
}

std::unique_ptr<TovCmd> makeCommand(std::string const& line, TOVCMD_TYPE* list) {
    ConstraintLine const parts(line);
    std::unique_ptr<TovCmd> cmd;
    if (!parts.makeCommand(cmd).ok()) throw TovMissingValue();
    if (list != nullptr) *list = cmd == nullptr ? TOVCMD_NONE : parts.kind->list;
    return cmd;
}

}  // namespace kiri::tov
