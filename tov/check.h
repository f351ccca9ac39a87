#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "platform/export.h"

namespace kiri::tov {

/// What a load and a save do to a line.
enum TovFindingKind : int {
    TOVFINDING_DROPPED_LINE = 1,     ///< an attribute line without six or seven words: a save no longer has it
    TOVFINDING_UNKNOWN_COMMAND = 2,  ///< no command, no attribute and no comment: kept as a comment
    TOVFINDING_LOST_WORD = 3,        ///< a word that a save does not write, or what stands after a NUL byte
    TOVFINDING_CHANGED_VALUE = 4,    ///< a number that a save writes as another one, or a word that a save adds
    TOVFINDING_MISTAKEN_WORD = 5,    ///< an option, or a "\" at the end of the line, taken as an object or a name
    TOVFINDING_ENDS_LOAD = 6,        ///< the load ends here by an exception
    TOVFINDING_UNSTABLE_LINE = 7,    ///< a load reads the saved line as something else
    TOVFINDING_MISSING_NAME = 8      ///< names an object that is not in the design; only checks with names find it
};

/// Returns the title of a kind, "dropped line" or "lost word"; "" for a value that is no kind. The text lives as long
/// as the library.
TOVENG_API char const* titleOf(TovFindingKind kind);

/// Something that a load and a save of a line would not keep. A line has at most one finding of each kind.
struct TovFinding {
    std::size_t line;     ///< counted from 1
    TovFindingKind kind;  ///< the findings of a line are in the order of their kinds
    /// The words concerned, as they stand in the file and in its order, a blank between them; after them those that a
    /// save adds. The whole line for a dropped line, an unknown command and the end of a load.
    std::string text;
};

/// Puts what loading and saving the file would not keep into `findings`, in the order of the lines, in place of what
/// stood there. A line that ends the load has that finding alone and is the last one.
///
/// A line and the line that is saved for its command are compared word by word; "#disable " is left out of both. Words
/// end at white space and at every bracket, brace and double quote; these and the order of the words do not count.
/// Numbers are compared by their 32-bit values. Comments and blank lines have no finding, but for NUL bytes.
///
/// False if `path` is null or the file cannot be opened or read to its end; `findings` then tells of what was read.
/// std::bad_alloc leaves `findings` as it was. Any number of threads may check at once.
TOVENG_API bool checkTovFile(char const* path, std::vector<TovFinding>& findings);

/// The same of one line, as line 1. A line feed in it is white space.
TOVENG_API std::vector<TovFinding> checkTovLine(std::string const& line);

}  // namespace kiri::tov
