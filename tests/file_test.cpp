// Files that are read and written: sizes, pipes, failures, descriptors, and progress.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdint>
#include <stdexcept>
#include <thread>

#include "support.h"

namespace {

using namespace kiri::tov;
using support::bodyOf;
using support::TempDir;

// The open descriptors of the process, or those alone that another program would inherit.
std::size_t descriptors(bool inheritedAlone = false) {
    std::size_t count = 0;
    for (int fd = 0; fd < 1000; ++fd) {
        int const flags = ::fcntl(fd, F_GETFD);
        count += flags >= 0 && !(inheritedAlone && (flags & FD_CLOEXEC) != 0);
    }
    return count;
}

// Lines around the sizes in which a file is read, with the last line complete or not.
TEST(Files, MayHaveLinesOfAnyLength) {
    for (std::size_t size : {32748U, 32749U, 65516U, 65517U, 65518U, 3000000U}) {
        std::string const name(size, 'n');
        std::string const text = "set_false_path -to " + name + "\nset_false_path -to b\n" + name;
        std::string const body = "set_false_path -to  " + name + "\nset_false_path -to  b\n" + name;
        EXPECT_EQ(bodyOf(text), body + "\n~\n");
        EXPECT_EQ(bodyOf(text + "\n"), body + "\n~\n");
    }
}

TEST(Files, MayBePipesAndAreNotInherited) {
    TempDir const dir;
    std::string const fifo = dir / "p\xefpe";
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    std::string const name(700000, 'n');
    TOV document;
    std::thread writer([&] { support::write(fifo, "a\nset_false_path -to " + name + "\nlast"); });
    // The size of a pipe is known at its end alone.
    auto const isPipe = [](auto at, auto size) { return size == 0 || size == at; };
    EXPECT_TRUE(document.load(fifo.c_str(), isPipe));
    writer.join();
    EXPECT_EQ(bodyOf(document), "set_false_path -to  " + name + "\na\nlast\n~\n");
    std::size_t const inherited = descriptors(true);
    // A save waits for a reader of the pipe, and for room in it.
    std::thread reader([&] {
        int const fd = ::open(fifo.c_str(), O_RDONLY | O_CLOEXEC);
        std::string text(1, ' ');
        EXPECT_EQ(::read(fd, text.data(), 1), 1);
        EXPECT_EQ(descriptors(true), inherited);
        EXPECT_EQ(text + support::read(fifo), document.toSaveString());
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
    EXPECT_TRUE(document.save("/dev/full"));
    // What is there and cannot be opened keeps the comments, what cannot be read does not.
    EXPECT_FALSE(document.parseTovFile(folder.c_str()));
    EXPECT_EQ(bodyOf(document), "set_false_path\nc\n~\n");
    EXPECT_TRUE(document.load(folder.c_str()));
    EXPECT_EQ(bodyOf(document), "c\n~\n");
    EXPECT_FALSE(document.parseTovFile("/proc/self/mem"));
    EXPECT_TRUE(document.load("/proc/self/mem"));
    EXPECT_EQ(bodyOf(document), "~\n");
    EXPECT_EQ(descriptors(), open);
}

// Counts the calls of a load, and stops it at one of them.
struct Calls {
    int stop = -1;
    bool throws = false;
    int count = 0;
    std::uint64_t read = 0;
    std::uint64_t size = 0;

    bool operator()(std::uint64_t readNow, std::uint64_t sizeNow) {
        EXPECT_TRUE(readNow >= read && count != stop);
        read = readNow;
        size = sizeNow;
        if (++count == stop && throws) throw std::runtime_error("stop");
        return count != stop;
    }
};

// Wherever a block of the file ends, it ends in a line of which the beginning would end the load.
std::string content(int lines) {
    std::string text = "c\nset_false_path\n#attribute a b c d e\nd\n";
    while (--lines >= 0) text += "create_clock -waveform" + std::string(40000, ' ') + "5\n";
    return text;
}

TEST(Progress, ComesBetweenTwentyAndAThousandTimes) {
    TempDir const dir;
    for (auto const& text :
         {content(0), content(2), content(25), content(1000), std::string(3000000, 'x')}) {
        std::string const path = support::write(dir / "in", text);
        Calls calls;
        EXPECT_TRUE(TOV().load(path.c_str(), std::ref(calls)));
        EXPECT_EQ(calls.read, std::filesystem::file_size(path));
        EXPECT_EQ(calls.size, calls.read);
        EXPECT_TRUE(calls.count <= 1000 && calls.count >= (text.size() < 1000000 ? 1 : 20))
            << calls.count;
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
        Calls calls;
        EXPECT_TRUE(TOV().load(path.c_str(), [&](auto read, auto size) {
            EXPECT_LE(read, size);
            if (calls.count == 0) std::ofstream(path, change) << text.substr(9999);
            return calls(read, size);
        }));
        EXPECT_EQ(calls.read, std::filesystem::file_size(path));
        EXPECT_EQ(calls.size, calls.read);
    }
}

TEST(Progress, StopsALoad) {
    TempDir const dir;
    std::string const path = support::write(dir / "in", content(25));
    Calls whole;
    TOV document;
    EXPECT_TRUE(document.load(path.c_str(), std::ref(whole)));
    for (int stop : {1, 2, whole.count / 2, whole.count}) {
        for (bool throws : {false, true}) {
            support::load(document, content(0));
            document.dci = new taDci();
            bool thrown = false;
            try {
                EXPECT_FALSE(document.load(path.c_str(), Calls{stop, throws}));
            } catch (std::runtime_error const&) {
                thrown = true;
            }
            EXPECT_EQ(thrown, throws);
            EXPECT_EQ(bodyOf(document), "~\n");
            EXPECT_EQ(document.getErrorList(), nullptr);
        }
    }
}

}  // namespace
