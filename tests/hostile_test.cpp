// Content, files and surroundings that nobody wishes for.

#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QTimer>
#include <clocale>
#include <thread>

#include "support.h"
#include "tov/design/design.h"

namespace {

using namespace kiri::tov;

// The comments and the first command of a file after it was saved and loaded once more, or "throw".
std::string savedTwice(std::string const& path) try {
    TOV doc, again;
    EXPECT_TRUE(doc.load(path.c_str()) && doc.save((path + "2").c_str()) && again.load((path + "2").c_str()));
    auto const lines = support::savedLines(again);
    return again.sdcCommentText + (lines.empty() ? "" : lines.front());
} catch (std::out_of_range const&) {
    return "throw";
}

// The names of a dump's nets, "false" if it does not load.
std::string netsOf(std::string const& path) {
    TovDesign design;
    std::list<TovNetNode*> nets;
    std::string text = design.load(path.c_str()) ? "" : "false";
    design.getNets(nets);
    for (auto* node : nets) text += node->name() + ";";
    return text;
}

std::string const from = "set_false_path -from  ", net = "<top><library><unit><nets><nitem name=\"";
std::string const many(99999, 'x'), blanks(99999, '\n'), quotes(99999, '"'), brackets(99999, '[');

// Elements that nobody knows, a million deep.
std::string nested() {
    std::string text;
    for (char const* tag : {"<z>", "</z>"}) {
        for (int depth = 0; depth < 1'000'000; ++depth) text += tag;
    }
    return text;
}

// In a folder of its own, so that several threads may do it at once.
void checkContent() {
    support::TempDir const dir;
    std::pair<std::string, std::string> const files[] = {
        {"create_clock -name \"x -waveform\"", "throw"},
        {"create_clock -period 2.5", "create_clock -period 2.500000"},
        {"set_max_delay -1e999", "set_max_delay 0.000000"},
        {from + brackets, "set_false_path"},
        {from + "\"" + many + " x\"" + quotes, from + many},
        {many + blanks + "\xff\x80", many + "\n\xff\x80\n"},
    };
    for (auto& [text, expected] : files) EXPECT_EQ(savedTwice(support::write(dir / "c", text)), expected);
    std::pair<std::string, std::string> const dumps[] = {
        {std::string("<top>\0</top>", 12), ""},
        {net + many + "\"/>", many + ";"},
        {net + "a\">" + nested() + "</nitem>" + nested() + "<nitem/>", "a;;"},
        {net + "a\" name=\"b\"/>", ""},
        {net + "n[99999999999]\"/>", "n[99999999999];n[0:0];"},
        {"<!DOCTYPE top [<!ENTITY a \"" + many + "\">]>" + net + "&a;&a;\"/>", ""},
    };
    for (auto& [text, expected] : dumps) EXPECT_EQ(netsOf(support::write(dir / "d", text)), expected);
}

TEST(Hostile, ContentOnThreadsWithSmallStacks) {
    pthread_attr_t attributes;
    pthread_getattr_default_np(&attributes);
    pthread_attr_setstacksize(&attributes, 64 * 1024);
    pthread_setattr_default_np(&attributes);
    std::thread threads[] = {std::thread(checkContent), std::thread(checkContent), std::thread(checkContent)};
    for (std::thread& thread : threads) thread.join();
}

TEST(Hostile, DecimalCommaUnderAnEventLoop) {
    support::TempDir const dir;
    ::setenv("LOCPATH", (dir / "").c_str(), 1);
    ::setenv("LC_ALL", "comma", 1);
    std::string const make = "localedef -i de_DE -f UTF-8 " + (dir / "comma") + " >" + (dir / "log") + " 2>&1";
    if (std::system(make.c_str()) != 0 || std::setlocale(LC_ALL, "") == nullptr) GTEST_SKIP();
    int count = 0;
    QCoreApplication application(count, nullptr);  // takes the locale of the environment
    EXPECT_STREQ(std::localeconv()->decimal_point, ",");
    QTimer::singleShot(0, [] {
        checkContent();
        QCoreApplication::quit();
    });
    QCoreApplication::exec();
    std::setlocale(LC_ALL, "C");
}

TEST(Hostile, Files) {
    support::TempDir const dir;
    std::string const line = from + "x", dump = net + "a\"/>", folder = dir / "f", inFolder = dir / "f/x";
    TOV document;
    support::load(document, line + blanks + many);
    EXPECT_TRUE(document.save("/dev/full"));
    // A full file system, and one that is read only.
    std::filesystem::create_directory(folder);
    bool const mounted = ::mount("none", folder.c_str(), "tmpfs", 0, "size=4k") == 0;
    if (mounted) {
        EXPECT_TRUE(document.save(inFolder.c_str()));
        EXPECT_EQ(support::read(inFolder), document.toSaveString().substr(0, 4096));
        ::mount("none", folder.c_str(), "tmpfs", MS_REMOUNT | MS_RDONLY, "");
    }
    ::chmod(folder.c_str(), 0555);
    EXPECT_EQ(document.save(inFolder.c_str()), !mounted && ::geteuid() == 0);
    if (mounted) ::umount(folder.c_str());
    // The longest path that the system takes, of bytes beyond ASCII.
    std::string path = dir / "";
    while (path.size() < 3880) std::filesystem::create_directory(path += std::string(200, '\xfe') + "/");
    path += std::string(4095 - path.size(), '\xe9');
    EXPECT_EQ(savedTwice(support::write(path.substr(0, 4094), line)), line);
    EXPECT_EQ(netsOf(support::write(path, dump)), "a;");
    EXPECT_FALSE(document.load((path + "x").c_str()));
    // A file that shrinks and grows while it is read.
    std::string const moving = support::write(dir / "moving", line);
    std::thread mover([&] {
        for (unsigned i = 0; i < 300; ++i) support::write(moving, (i % 2 ? line : dump) + blanks.substr(i * 300));
    });
    for (int i = 0; i < 100; ++i) EXPECT_TRUE(document.load(moving.c_str())), netsOf(moving);
    mover.join();
}

}  // namespace
