#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "platform/export.h"

namespace kiri::tov {

/// What a load and a save do to a line.
enum TovFindingKind : int {
    TOVFINDING_DROPPED_LINE = 1,     ///< an attribute line without six or seven words: a save omits it
    TOVFINDING_UNKNOWN_COMMAND = 2,  ///< no command, no attribute and no comment: kept as a comment
    TOVFINDING_LOST_WORD = 3,        ///< a word that a save does not write, or what follows a NUL byte
    TOVFINDING_CHANGED_VALUE = 4,    ///< a number that a save writes as another one, or a word that a save adds
    /// An option, or a "\" at the end of the line, taken as an object or a name; or the name of an object or a clock
    /// with unequal numbers of "[" and "]", or of "{" and "}".
    TOVFINDING_MISTAKEN_WORD = 5,
    TOVFINDING_ENDS_LOAD = 6,  ///< the load ends here by an exception
    /// The saved line is read back, as a file, as something else: as no command, as several lines, or as a command that
    /// saves another line.
    TOVFINDING_UNSTABLE_LINE = 7,
    TOVFINDING_MISSING_NAME = 8  ///< names an object that is not in the design; only checks with names find it
};

/// Returns the code of a kind, such as "lost-word", by which users know it; "" for any other value. The text lives as
/// long as the library.
TOVENG_API char const* findingCode(TovFindingKind kind);

/// Something that loading and saving a line would not keep. A line has at most one finding of each kind.
struct TovFinding {
    std::size_t line;     ///< counted from 1
    TovFindingKind kind;  ///< the findings of a line are in the order of their kinds
    /// The words concerned, as the file writes them, a blank between them; words that a save adds come last. A name
    /// that is mistaken is in it as the command keeps it. The whole line for a dropped line, an unknown command and the
    /// end of a load; for an unstable line the line that a save writes, its first 1,000 bytes at most.
    std::string text;
};

/// Returns what is wrong with a line, what a save does with it, and what to write instead; for a missing name the words
/// alone. `line` is the line of the finding, from the file. One line of UTF-8, at most 1,000 bytes: a text that is not
/// UTF-8 is read as Latin-1, control characters become "?". For another value of `kind` it is empty.
TOVENG_API std::string findingMessage(TovFinding const& finding, std::string const& line);

/// Replaces `findings` by what loading and saving the file would not keep, in the order of the lines. A line that ends
/// the load has no other finding and is the last one.
///
/// A line is compared with the line its command saves, word by word; "#disable " is left out of both. Words end at
/// white space and at every bracket, brace and double quote; these and the order of the words do not count. Numbers are
/// compared by their 32-bit values. A saved line that differs from the line of the file is read again and compared with
/// what that command saves. Comments and blank lines have no findings, except for what follows a NUL byte.
///
/// Returns false if `path` is null or the file cannot be opened or read to its end; `findings` then covers what was
/// read. std::bad_alloc leaves `findings` as it was. Any number of threads may check at once.
TOVENG_API bool checkTovFile(char const* path, std::vector<TovFinding>& findings);

/// Checks one line; its findings have line number 1. A line feed in it is white space.
TOVENG_API std::vector<TovFinding> checkTovLine(std::string const& line);

}  // namespace kiri::tov
