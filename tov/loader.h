#pragma once

#include <memory>
#include <string_view>

#include "tov/command_kind.h"
#include "tov/progress.h"
#include "tov/tov.h"

namespace kiri::tov {

/// What a line of a constraint file is.
struct FileLine {
    /// Takes a line apart, up to its first NUL byte. The line outlives the result.
    explicit FileLine(char const* line);

    /// The command of the line, enabled as the line says; null if it makes none.
    std::unique_ptr<TovCmd> makeCommand() const;

    std::string_view text;              ///< the line without white space at its ends
    bool disabled = false;              ///< "#disable " stands before the command
    CommandKind const* kind = nullptr;  ///< null: a comment or a blank line
    std::string_view command;           ///< from the keyword on; empty unless there is a kind
};

/// How a file was read.
enum class ReadResult { failed, whole, stopped };

/// Reads a file into a document, as TOV::parseTovFile tells. When `progress` stops it, the document is left as after
/// its construction, and an exception of `progress` goes on.
ReadResult readTovFile(TOV& document, char const* path, TovProgress const& progress);

}  // namespace kiri::tov
