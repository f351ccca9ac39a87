#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

#include "analysis/lines.h"
#include "analysis/nesting.h"

namespace tool {

/// Lines that are one command to Tcl.
struct Statement {
    enum class Kind : std::uint8_t {
        comment,   ///< nothing, a comment or an attribute
        command,   ///< begins with a keyword of the file format
        disabled,  ///< the same after "#disable "
        other,     ///< begins with any other word
        closing,   ///< "}", which ends a block, and perhaps opens the next one
    };

    std::size_t first;  ///< its first line
    std::size_t count;  ///< of its lines
    Kind kind;
    /// Leaves a brace, bracket or quote open that nothing closes, or ends in a "\" that no line follows.
    bool isOpen = false;

    std::size_t end() const { return first + count; }
    bool goesOn() const { return count > 1 || isOpen; }
    bool isCommand() const { return kind == Kind::command || kind == Kind::disabled; }
};

/// Finds which lines continue on the next one. A statement depends on the lines from its first one on, and on nothing
/// before: a scan may begin at any statement.
///
/// A line continues if it ends in "\", or leaves a brace, bracket or quote open which a later line closes before the
/// next line that begins with a keyword. What ends in the open brace of a block does not.
class StatementScanner {
public:
    explicit StatementScanner(Lines& lines) : lines_(lines) {}

    /// Returns the statement that begins at a line, which must exist. Asks for no line before it.
    Statement at(std::size_t line);

    /// Forgets what it knows of lines after the last statement. Call it when lines have changed.
    void reset() { answers_.clear(); }

private:
    struct Place {
        std::size_t line;
        std::size_t column;
    };
    /// Where what is open at the beginning of a line is closed.
    struct Answer {
        Place place;
        std::uint64_t next;  // question with the same answer
    };

    bool lookAhead(std::size_t& last);
    Answer const* ask(std::size_t line);
    void closeAt(Place place);

    Lines& lines_;
    Nesting nesting_;
    // Answers to what was asked before, so that many lines that leave something open are read once, not once for each
    // of them. An answer holds until the line that stopped the search.
    std::unordered_map<std::uint64_t, Answer> answers_;
    std::vector<std::uint64_t> asked_;  // by open frame: the last question whose answer is where the frame closes
    std::size_t known_ = 0;             // the answers are about lines before this one
};

/// Returns the place, among statements in the order of their lines, at which a scan must begin again when `line` or
/// lines after it change: the statements before that place stay as they are. 0 where there are none.
std::size_t firstTouched(std::vector<Statement> const& statements, std::size_t line);

}  // namespace tool
