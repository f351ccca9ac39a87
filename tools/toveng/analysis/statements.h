#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

#include "analysis/lines.h"
#include "analysis/nesting.h"

namespace tool {

/// The lines that Tcl reads as one command.
struct Statement {
    enum class Kind : std::uint8_t {
        comment,   ///< blank, a comment or an attribute
        command,   ///< begins with a keyword of the file format
        disabled,  ///< the same after "#disable "
        other,     ///< begins with any other word
        closing,   ///< "}", which ends a block and may open the next one
    };

    std::size_t first;  ///< its first line
    std::size_t count;  ///< of its lines
    Kind kind;
    /// Whether a brace, bracket or quote is never closed, or a "\" ends the last line.
    bool isOpen = false;

    std::size_t end() const { return first + count; }
    bool goesOn() const { return count > 1 || isOpen; }
    bool isCommand() const { return kind == Kind::command || kind == Kind::disabled; }
};

/// Finds which lines continue on the next one. A statement does not depend on the lines before it: a scan may begin at
/// any statement.
///
/// A line continues if it ends in "\", or leaves a brace, bracket or quote open which a later line closes before the
/// next line that begins with a keyword. A line that ends in the open brace of a block does not.
class StatementScanner {
public:
    explicit StatementScanner(Lines& lines) : lines_(lines) {}

    /// Returns the statement that begins at a line, which must exist. Reads no lines before it.
    Statement at(std::size_t line);

    /// Forgets the lines after the last statement. Call this when lines have changed.
    void reset() { answers_.clear(); }

private:
    struct Place {
        std::size_t line;
        std::size_t column;
    };
    /// Where a frame that is open at the beginning of a line is closed.
    struct Answer {
        Place place;
        std::uint64_t next;  // question with the same answer
    };

    bool lookAhead(std::size_t& last);
    Answer const* ask(std::size_t line);
    void closeAt(Place place);

    Lines& lines_;
    Nesting nesting_;
    // Answers to earlier questions, so that lines after many unclosed ones are read once, not once for each of those.
    // An answer is valid up to the line that stopped the search.
    std::unordered_map<std::uint64_t, Answer> answers_;
    std::vector<std::uint64_t> asked_;  // by open frame: the last question whose answer is where the frame closes
    std::size_t known_ = 0;             // the answers are about lines before this one
};

/// Returns the index, among statements in the order of their lines, at which a scan must begin again if `line` or lines
/// after it change. The statements before it do not change. 0 if there are no statements.
std::size_t firstTouched(std::vector<Statement> const& statements, std::size_t line);

}  // namespace tool
