#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "serve/position.h"

namespace tool::lsp {

/// A place in a document: a line of the text, which ends at a line feed, and a byte in it.
struct Place {
    std::size_t line = 0;
    std::size_t byte = 0;
};

/// A position in the client's units.
struct Position {
    std::size_t line;
    std::size_t character;
};

inline bool operator<(Place a, Place b) {
    return a.line != b.line ? a.line < b.line : a.byte < b.byte;
}

/// Lines that an edit replaced.
struct Splice {
    std::size_t first;    ///< the first line that changed
    std::size_t removed;  ///< number of removed lines
    std::size_t added;    ///< number of lines that replace them
};

/// A text, stored as lines. Its lines end at line feeds, like those of a constraint file. For the client, a carriage
/// return without a line feed also ends a line, and positions are converted accordingly.
class Text {
public:
    Text() { replaceAll({}); }

    std::size_t lineCount() const { return lines_.size(); }
    /// Returns a line without its line feed, and without the carriage return before that.
    std::string_view line(std::size_t index) const;
    /// Returns the place of a client's position: the end of the line if that is shorter; nothing beyond the last line.
    std::optional<Place> placeAt(std::size_t line, std::size_t character, Encoding encoding) const;
    /// Returns a place as a client's position.
    Position positionOf(Place place, Encoding encoding) const;
    QJsonObject range(Place start, Place end, Encoding encoding) const;
    /// The range of a line, or of its text without white space at the ends.
    QJsonObject lineRange(std::size_t index, Encoding encoding) const;

    /// Replaces the text between two places; `start` must not be after `end`.
    Splice replace(Place start, Place end, std::string_view text);
    Splice replaceAll(std::string_view text);
    std::string text() const;

private:
    struct Line {
        std::string text;         // with the carriage return of its end
        std::size_t returns = 0;  // lone carriage returns: each ends a client's line
    };

    bool isLast(std::size_t index) const { return index + 1 == lines_.size(); }
    std::size_t countReturns(std::size_t index) const;
    std::size_t clientLine(Place place) const;

    std::vector<std::unique_ptr<Line>> lines_;  // at least one
    std::size_t returns_ = 0;
    // A line and the number of carriage returns before it, from which those of later lines are counted.
    mutable struct {
        std::size_t line = 0;
        std::size_t returns = 0;
    } counted_;
};

}  // namespace tool::lsp
