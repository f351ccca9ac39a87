#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "platform/export.h"

namespace kiri::tov {

/// What a load and a save do to a line.
enum TovFindingKind : int {
    TOVFINDING_DROPPED_LINE = 1,     ///< an attribute line without six or seven words: a save omits it
    TOVFINDING_UNKNOWN_COMMAND = 2,  ///< not a command, an attribute or a comment: kept as a comment
    TOVFINDING_LOST_WORD = 3,        ///< a word that a save does not write, or what follows a NUL byte
    TOVFINDING_CHANGED_VALUE = 4,    ///< a number that a save changes, or a word that a save adds
    /// An option, or a "\" at the end of the line, that is read as an object or a name; or the name of an object or a
    /// clock with unequal numbers of "[" and "]", or of "{" and "}".
    TOVFINDING_MISTAKEN_WORD = 5,
    TOVFINDING_ENDS_LOAD = 6,  ///< the load ends here with an exception
    /// The saved line, read as a file, is something else: not a command, several lines, or a command that saves another
    /// line.
    TOVFINDING_UNSTABLE_LINE = 7,
    TOVFINDING_MISSING_NAME = 8  ///< names an object that is not in the design; only checks with names find it
};

/// Returns the code by which users know a kind, such as "lost-word"; "" for any other value. The text lives as long as
/// the library.
TOVENG_API char const* findingCode(TovFindingKind kind);

/// Something that a load and a save of a line would lose. A line has at most one finding of each kind.
struct TovFinding {
    std::size_t line;     ///< counted from 1
    TovFindingKind kind;  ///< the findings of a line are in the order of their kinds
    /// The words concerned, as they are in the file, separated by blanks; words that a save adds come last. A mistaken
    /// name is given as the command keeps it. For a dropped line, an unknown command and the end of a load it is the
    /// whole line; for an unstable line, at most the first 1,000 bytes of the line that a save writes.
    std::string text;
};

/// Returns what is wrong with a line, what a save does with it, and what to write instead; for a missing name only the
/// words. `line` is the line of the file that the finding is about. The result is one line of UTF-8 of at most 1,000
/// bytes: a text that is not UTF-8 is read as Latin-1, and control characters become "?". It is empty for any other
/// value of `kind`.
TOVENG_API std::string findingMessage(TovFinding const& finding, std::string const& line);

/// Replaces `findings` with what a load and a save of the file would lose, in the order of the lines. A line that ends
/// the load has no other findings and is the last one.
///
/// A line is compared with the line its command saves, word by word; "#disable " is left out of both. Words end at
/// white space and at every bracket, brace and double quote; these and the order of the words do not count. Numbers are
/// compared by their 32-bit values. If the saved line differs from the line of the file, it is read again and compared
/// with the line which that command saves. Comments and blank lines have no findings, except for what follows a NUL
/// byte.
///
/// Returns false if `path` is null or the file cannot be opened or read to its end; `findings` then covers what was
/// read. std::bad_alloc leaves `findings` as it was. Any number of threads may check at once.
TOVENG_API bool checkTovFile(char const* path, std::vector<TovFinding>& findings);

/// Checks one line; its findings have line number 1. A line feed in it is white space.
TOVENG_API std::vector<TovFinding> checkTovLine(std::string const& line);

}  // namespace kiri::tov
