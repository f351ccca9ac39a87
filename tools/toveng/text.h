#pragma once

#include <QJsonObject>
#include <QString>
#include <cstddef>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <string_view>

namespace tool {

/// Ends a command with status 2: a sentence for standard error, its bytes unchanged.
struct Trouble : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Ends a command with status 2 because standard output does not take all of it.
struct OutputTrouble : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Returns bytes as text: valid UTF-8 as it is, anything else read as Latin-1.
QString toText(std::string_view bytes);

/// The same in UTF-8 for a terminal: a '?' for each control character.
std::string printable(std::string_view bytes);

/// Returns the start of a text, at most `most` bytes and "..." where it is longer, with blanks for the tabs
/// of an attribute.
std::string shown(std::string_view text, std::size_t most = std::string_view::npos);

// Write to standard output; OutputTrouble if that fails.
void print(std::string_view text);
void print(std::FILE* out, std::string_view text);  // any stream; what standard error does not take is lost
void printLine(std::string_view title, QString const& line);
void print(QJsonObject const& object);  // in one line, its control characters escaped
void flushOutput();                     // comes last

/// Writes one line to standard error, for a terminal.
void complain(std::string_view line);

}  // namespace tool
