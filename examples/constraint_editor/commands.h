#pragma once

#include <QString>
#include <memory>

#include "tov/cmd/commands.h"
#include "tov/tov.h"

/// A kind of command: its title, and the line of a new command.
struct Kind {
    char const* title;
    char const* newLine;
};

/// The kinds in the order of their lists: that of kinds[0] is TOVCMD_CLOCK.
constexpr int kindCount = kiri::tov::TOVCMD_ATTRIBUTE;
extern Kind const kinds[kindCount];

/// Reads a line as a load does. Null if a load makes no command of that kind of it.
std::unique_ptr<kiri::tov::TovCmd> readCommand(int kind, QString const& line);

/// What a save would not keep of a line, in words; empty if it keeps all.
QString findingsIn(QString const& line);

// The bytes of a file are shown as Latin-1, as design names are, so that showing them changes none.
inline QString toText(std::string const& bytes) {
    return QString::fromLatin1(QByteArray::fromStdString(bytes));
}
inline std::string toBytes(QString const& text) {
    return text.toLatin1().toStdString();
}
