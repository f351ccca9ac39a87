// Files that are read and written: sizes, pipes, failures, descriptors, and progress.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <stdexcept>
#include <thread>

#include "support.h"

namespace {

using namespace kiri::tov;
using support::bodyOf;
using support::Calls;
using support::descriptors;
using support::TempDir;

// Lines around the block sizes in which a file is read, with the last line complete or not.
TEST(Files, MayHaveLinesOfAnyLength) {
    EXPECT_EQ(bodyOf("\n" + std::string(20'000, 'n')), std::string(20'000, 'n') + "\n~\n");
    std::vector<std::size_t> sizes = {3'000'000};
    for (std::size_t const chunks : {1U, 2U, 4U}) {
        for (std::size_t beside = 0; beside < 5; ++beside) sizes.push_back(chunks * 16'384 + beside - 2);
    }
    for (std::size_t const size : sizes) {
        std::string const begin = "set_false_path -to ";
        std::string const name(size - begin.size(), 'n');
        std::string const body = begin + " " + name + "\n" + begin + " b\n" + name + "\n~\n";
        for (std::string const end : {"\n", "\r\n"}) {
            std::string const text = begin + name + end + begin + "b" + end + name;
            EXPECT_TRUE(bodyOf(text) == body) << size;
            EXPECT_TRUE(bodyOf(text + end) == body) << size;
        }
    }
}

TEST(Files, MayBePipesAndAreNotInherited) {
    TempDir const dir;
    std::string const fifo = dir / "p\xefpe";
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    std::string const name(700000, 'n');
    TOV document;
    std::thread writer([&] { support::write(fifo, "a\nset_false_path -to " + name + "\nlast"); });
    // The size of a pipe is known only at its end.
    std::uint64_t last = 0;
    auto const isPipe = [&](auto at, auto size) { return std::exchange(last, size) == 0 && (size == 0 || size == at); };
    EXPECT_TRUE(document.load(fifo.c_str(), isPipe));
    EXPECT_EQ(last, name.size() + 26);
    writer.join();
    EXPECT_TRUE(bodyOf(document) == "set_false_path -to  " + name + "\na\nlast\n~\n");
    std::size_t const inherited = descriptors(true);
    // A save waits for a reader of the pipe, and for room in it.
    std::thread reader([&] {
        int const fd = ::open(fifo.c_str(), O_RDONLY | O_CLOEXEC);
        std::string text(1, ' ');
        EXPECT_EQ(::read(fd, text.data(), 1), 1);
        EXPECT_EQ(descriptors(true), inherited);
        EXPECT_TRUE(text + support::read(fifo) == document.toSaveString());
        ::close(fd);
    });
    EXPECT_TRUE(document.save(fifo.c_str()));
    reader.join();
    std::string const path = support::write(dir / "in", name);
    auto const looks = [inherited](auto, auto) { return descriptors(true) == inherited; };
    EXPECT_TRUE(document.load(path.c_str(), looks));
}

TEST(Files, MayNotBeThereOrFail) {
    TempDir const dir;
    std::string const inFolder = dir / "no/such/folder";
    std::string const folder = dir / "";
    std::size_t const open = descriptors();
    TOV document;
    support::load(document, "c\nset_false_path\n#attribute a b c d e");
    for (char const* missing : {"", inFolder.c_str(), static_cast<char const*>(nullptr)}) {
        EXPECT_FALSE(document.load(missing));
        EXPECT_FALSE(document.parseTovFile(missing));
        EXPECT_FALSE(document.save(missing));
    }
    EXPECT_EQ(bodyOf(document), "set_false_path\nc\n~\n#attribute\ta\tb\tc\td\te\n");
    EXPECT_FALSE(document.save(folder.c_str()));
    std::string const full = support::makeFullDevice(dir);
    EXPECT_TRUE(full.empty() || document.save(full.c_str()));
    // A file that exists but cannot be opened keeps the comments; one that cannot be read does not.
    EXPECT_FALSE(document.parseTovFile(folder.c_str()));
    EXPECT_EQ(bodyOf(document), "set_false_path\nc\n~\n");
    EXPECT_TRUE(document.load(folder.c_str()));
    EXPECT_EQ(bodyOf(document), "c\n~\n");
    EXPECT_FALSE(document.parseTovFile("/proc/self/mem"));
    EXPECT_TRUE(document.load("/proc/self/mem"));
    EXPECT_EQ(bodyOf(document), "~\n");
    EXPECT_EQ(descriptors(), open);
}

// Each block of the file ends in a line whose beginning alone would end the load.
std::string content(int lines) {
    std::string text = "c\nset_false_path\n#attribute a b c d e\nd\n";
    while (--lines >= 0) text += "create_clock -waveform" + std::string(40000, ' ') + "5\n";
    return text;
}

TEST(Progress, ComesBetweenTwentyAndAThousandTimes) {
    TempDir const dir;
    std::string shortLines;
    for (int i = 0; i < 3000; ++i) shortLines += std::string(999, 'x') + "\n";
    for (auto const& text :
         {shortLines, content(0), content(2), content(25), content(1000), std::string(3000000, 'x')}) {
        std::string const path = support::write(dir / "in", text);
        support::expectProgress(path, [&](auto progress) { return TOV().load(path.c_str(), progress); });
        EXPECT_TRUE(TOV().load(path.c_str(), nullptr));
    }
    std::string const path = support::write(dir / "in", content(0) + "create_clock -waveform\nx");
    TOV document;
    EXPECT_THROW(document.load(path.c_str(), Calls()), std::out_of_range);
    EXPECT_EQ(bodyOf(document), "set_false_path\nc\n~\n#attribute\ta\tb\tc\td\te\nd\n");
}

TEST(Progress, FollowsAFileThatChanges) {
    TempDir const dir;
    std::string const text(1000000, '\n');
    for (auto change : {std::ios::app, std::ios::trunc}) {
        std::string const path = support::write(dir / "in", text);
        bool changed = false;
        support::expectProgress(path, [&](auto progress) {
            return TOV().load(path.c_str(), [&](auto read, auto size) {
                if (!changed) std::ofstream(path, change) << text.substr(9999);
                changed = true;
                return progress(read, size);
            });
        });
    }
}

TEST(Progress, StopsALoad) {
    TempDir const dir;
    std::string const path = support::write(dir / "in", content(25));
    TOV document;
    auto const load = [&](auto progress) {
        support::load(document, content(0));
        document.dci = new taDci();
        return document.load(path.c_str(), progress);
    };
    support::expectStops(support::expectProgress(path, load), load, [&](bool) {
        EXPECT_EQ(bodyOf(document), "~\n");
        EXPECT_EQ(document.getErrorList(), nullptr);
    });
}

}  // namespace
