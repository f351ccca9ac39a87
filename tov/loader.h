#pragma once

#include <exception>
#include <memory>
#include <string>
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
struct ReadOutcome {
    std::string problem;         // why it was not read to its end, in one line; empty if it was
    bool stopped = false;        // `progress` asked for it
    std::exception_ptr refusal;  // the exception of the line that ended the reading

    void rethrow() const {
        if (refusal != nullptr) std::rethrow_exception(refusal);
    }
};

/// Reads a file into a document, see TOV::parseTovFile. When `progress` stops it, the document is left as after its
/// construction, and an exception of `progress` goes on.
ReadOutcome readTovFile(TOV& document, char const* path, TovProgress const& progress);

/// Leaves a document as after its construction.
void emptyDocument(TOV& document);

}  // namespace kiri::tov
