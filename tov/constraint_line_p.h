#pragma once

#include <memory>
#include <string_view>

#include "tov/cmd/command_kind_p.h"

namespace kiri::tov::impl_detail {

/// A line of a constraint file, split into its parts.
struct ConstraintLine {
    /// Splits a line, up to its first NUL byte. The parts are views into the line.
    explicit ConstraintLine(std::string_view line);

    /// Makes the command of the line, enabled or disabled. `cmd` must be null, and stays null if the line makes none.
    Result makeCommand(std::unique_ptr<TovCmd>& cmd) const;

    std::string_view text;              ///< the line without white space at its ends
    bool disabled = false;              ///< the command follows "#disable "
    CommandKind const* kind = nullptr;  ///< null: a comment or a blank line
    std::string_view command;           ///< from the keyword on; empty without a kind
    WordCursor words;                   ///< those after the first one
};

}  // namespace kiri::tov::impl_detail
