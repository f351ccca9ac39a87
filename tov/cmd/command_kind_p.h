#pragma once

#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <typeinfo>
#include <vector>

#include "tov/base/result_p.h"
#include "tov/base/tokenizer_p.h"
#include "tov/cmd/cmd.h"
#include "tov/cmd/cmd_type.h"
#include "tov/cmd/references.h"

namespace kiri::tov::impl_detail {

/// A kind of command. The source of each class defines its kind, see kindOf(); the loader, the writer, the check, the
/// names, and the tests, fuzz targets and benchmarks of all kinds use it.
struct CommandKind {
    TOVCMD_TYPE list;
    std::string_view keyword;  ///< a literal: a NUL byte follows it
    std::string_view sample;   ///< a line with each option and each object list
    std::type_info const* type;
    /// Makes the command of the words after a keyword; null if they make none.
    Result (*make)(CommandKind const& kind, WordCursor words, std::unique_ptr<TovCmd>& cmd);
    /// Appends the line that a save writes for a command.
    void (*append)(std::string& line, TovCmd& cmd, TOV& document);
    /// Appends the object lists of a command, see referencesOf(). Returns false for a command of other classes.
    bool (*appendLists)(TovCmd& cmd, std::vector<TovReferences>& lists);
};

extern CommandKind const clockKind;
extern CommandKind const genClockKind;
extern CommandKind const clockGroupKind;
extern CommandKind const inputDelayKind;
extern CommandKind const outputDelayKind;
extern CommandKind const maxDelayKind;
extern CommandKind const minDelayKind;
extern CommandKind const multiPathKind;
extern CommandKind const falsePathKind;
extern CommandKind const attributeKind;

struct CommandKindEntry {
    CommandKind const& kind;

    constexpr operator CommandKind const&() const { return kind; }
};

/// All kinds, in the order of writing, which is that of the lists. No keyword is a prefix of another one, so each line
/// has at most one kind.
inline constexpr CommandKindEntry commandKinds[] = {
    {clockKind},    {genClockKind}, {clockGroupKind}, {inputDelayKind}, {outputDelayKind},
    {maxDelayKind}, {minDelayKind}, {multiPathKind},  {falsePathKind},  {attributeKind},
};

static_assert(std::size(commandKinds) == TOVCMD_ATTRIBUTE, "each list has its kind");

}  // namespace kiri::tov::impl_detail
