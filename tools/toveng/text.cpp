#include "text.h"

#include <QJsonDocument>
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

namespace tool {

namespace {

bool isPlain(char c) {
    return c >= ' ' && c <= '~';
}

void check(bool written) {
    if (!written) throw OutputTrouble(std::string("standard output: ") + std::strerror(errno));
}

}  // namespace

QString toText(std::string_view bytes) {
    // Invalid UTF-8 changes in a round trip. Qt would drop a byte order mark at the start.
    QByteArray const padded = 'x' + QByteArray(bytes.data(), static_cast<int>(bytes.size()));
    QString const text = QString::fromUtf8(padded);
    return (text.toUtf8() == padded ? text : QString::fromLatin1(padded)).mid(1);
}

std::string printable(std::string_view bytes) {
    if (std::all_of(bytes.begin(), bytes.end(), isPlain)) return std::string(bytes);
    QString text = toText(bytes);
    for (QChar& c : text) {
        if (c.category() == QChar::Other_Control) c = '?';
    }
    return text.toStdString();
}

std::string shown(std::string_view text, std::size_t most) {
    std::string start(text);
    if (text.size() > most) {
        // Do not cut a character.
        while ((static_cast<unsigned char>(text[most]) & 0xc0U) == 0x80 && most > 0) --most;
        start.replace(most, std::string::npos, "...");
    }
    // Tabs separate the fields of an attribute.
    if (text.substr(0, 10) == "#attribute") std::replace(start.begin(), start.end(), '\t', ' ');
    return start;
}

void print(std::FILE* out, std::string_view text) {
    bool const isWritten = std::fwrite(text.data(), 1, text.size(), out) == text.size();
    check(isWritten || out == stderr);
}

void print(std::string_view text) {
    print(stdout, text);
}

void printLine(std::string_view title, QString const& line) {
    print(std::string(title) + " " + printable(shown(line.toStdString())) + "\n");
}

void print(QJsonObject const& object) {
    QByteArray const utf8 = QJsonDocument(object).toJson(QJsonDocument::Compact);
    if (std::all_of(utf8.begin(), utf8.end(), isPlain))
        return print(std::string_view(utf8.data(), static_cast<std::size_t>(utf8.size())));
    QString json = QString::fromUtf8(utf8);
    // Qt does not escape the control characters from 0x7f on.
    for (ushort c = 0x7f; c < 0xa0; ++c) json.replace(QChar(c), QString("\\u%1").arg(c, 4, 16, QChar('0')));
    print(json.toStdString());
}

void flushOutput() {
    check(std::fflush(stdout) == 0 && std::ferror(stdout) == 0);
}

void complain(std::string_view line) {
    std::fflush(stdout);
    std::fprintf(stderr, "%s\n", printable(line).c_str());
}

}  // namespace tool
