#pragma once

#include <QtTest>
#include <fstream>

#include "editor_window.h"

/// A folder of a test's own, in which the settings are, too.
struct TestFolder {
    TestFolder() { QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, folder.path()); }
    QString path(QString const& name) const { return folder.filePath(name); }
    QString write(QString const& name, std::string const& bytes) const {
        std::ofstream(path(name).toStdString(), std::ios::binary) << bytes;
        return path(name);
    }
    std::string read(QString const& name) const {
        std::ifstream file(path(name).toStdString(), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    QTemporaryDir folder;
};

/// A design of a few objects of each kind.
constexpr char const* smallDump =
    "\xef\xbb\xbf <top name='t' library='work' arch='rtl' entry='t'>\n"
    "<clocks><clockitem name='clk' type='port'/></clocks>\n"
    "<library name='work'><unit name='t'><pins>"
    "<pitem name='clk' direction='in'/><pitem name='d[0]' direction='in'/><pitem name='d[1]' direction='in'/>"
    "</pins><nets><nitem name='n'/></nets>"
    "<instance name='t.u.a' library='work' arch='' type='reg'><pins><pitem name='D' direction='in'/>"
    "<pitem name='Q' direction='out'/></pins></instance>"
    "<instance name='t.u.b' library='work' arch='' type='comb'><pins><pitem name='D' direction='in'/></pins></instance>"
    "</unit></library></top>\n";

/// The lines of all kinds as the window has them.
inline QStringList linesOf(Document const& document) {
    QStringList lines;
    for (int kind = 0; kind < kindCount; ++kind) {
        for (int row = 0; row < document.count(kind); ++row) lines << document.text({kind, row});
    }
    return lines;
}
