#pragma once

#include <QJsonObject>
#include <QString>
#include <cstddef>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <string_view>

namespace tool {

/// Ends a command with status 2; has a sentence for standard error, whose bytes are printed unchanged.
struct Trouble : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Ends a command with status 2 because standard output could not be written.
struct OutputTrouble : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Returns bytes as text: valid UTF-8 unchanged, anything else converted from Latin-1.
QString toText(std::string_view bytes);

/// The same in UTF-8 for a terminal: each control character becomes '?'.
std::string printable(std::string_view bytes);

/// Returns a text with blanks for the tabs of an attribute; truncates it to `most` bytes and appends "..." if it is
/// longer.
std::string shown(std::string_view text, std::size_t most = std::string_view::npos);

// Write to standard output; OutputTrouble if that fails.
void print(std::string_view text);
void print(std::FILE* out, std::string_view text);  // any stream; ignores write errors on standard error
void printLine(std::string_view title, QString const& line);
void print(QJsonObject const& object);  // on one line, with control characters escaped
void flushOutput();                     // call it last

/// Writes one line to standard error, for a terminal.
void complain(std::string_view line);

}  // namespace tool
