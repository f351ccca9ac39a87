// Reading and writing while system calls are interrupted, fail or transfer little, and the errors reported.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <thread>

#include "support.h"
#include "system_calls.h"
#include "tov/design/design.h"
#include "tov/io/error_text_p.h"
#include "tov/io/progress_meter_p.h"
#include "tov/names/name_check.h"

namespace {

using namespace kiri::tov;
using support::bodyOf;
using support::TempDir;

constexpr char emptyDump[] = "<top/>";

// Returns the errors of TOV::read and TovDesign::load for a path while system calls fail; "" for a whole file.
std::string errorOf(std::string const& path, bool asDump, std::map<std::string, calls::Plan> plans = {}) {
    std::string error = "old error";
    TovDesign design;
    TOV document;
    support::load(document, "c\nset_false_path");
    calls::start(std::move(plans));
    bool const whole = asDump ? design.load(path.c_str(), {}, &error) : document.read(path.c_str(), {}, &error);
    calls::plans.clear();
    if (!asDump) {
        EXPECT_EQ(whole, error.empty());
        EXPECT_TRUE(whole || bodyOf(document) == "~\n");
    }
    return error;
}

class Io : public testing::Test {
protected:
    ~Io() override { calls::start(); }

    TempDir const dir;
};

TEST_F(Io, IsNotDisturbedByInterruptions) {
    std::string const name(100'000, 'n');
    std::string const path = support::write(dir / "in", "set_false_path -to " + name);
    auto const everySecond = [](std::string const& call) {
        return std::pair<std::string const, calls::Plan>(call, [n = 0]() mutable { return ++n % 2 == 1 ? EINTR : 0; });
    };
    calls::start({everySecond("open"), everySecond("read"), everySecond("write")});
    calls::longestWrite = 30'000;
    TOV document;
    EXPECT_TRUE(document.read(path.c_str()));
    EXPECT_TRUE(document.save((dir / "out").c_str()));
    calls::longestWrite = SIZE_MAX;
    EXPECT_TRUE(support::read(dir / "out") == document.toSaveString());
    EXPECT_EQ(bodyOf(document), "set_false_path -to  " + name + "\n~\n");
    for (bool asDump : {false, true}) EXPECT_EQ(errorOf(dir / "", asDump, {everySecond("open")}), "Is a directory");
}

TEST_F(Io, ClosesOnce) {
    std::string const path = support::write(dir / "in", emptyDump);
    for (bool asDump : {false, true}) {
        EXPECT_EQ(errorOf(path, asDump, {{"close", calls::failing(0, EINTR)}}), "");
        std::size_t const closed = calls::made.find("close");
        EXPECT_TRUE(closed != std::string::npos && calls::made.find("close", closed + 1) == std::string::npos);
    }
}

// The arguments of each call: a file is read in chunks, and no other program inherits it.
TEST_F(Io, OpensFiles) {
    std::string const path = support::write(dir / "in", std::string(20'000, '\n'));
    TOV document;
    calls::start();
    EXPECT_TRUE(document.read(path.c_str()));
    EXPECT_EQ(calls::lines, "open in CLOEXEC\nread in 16384\nread in 16384\nread in 16384\nclose in\n");
    calls::start();
    EXPECT_TRUE(document.save((dir / "out").c_str()));
    std::string const size = std::to_string(document.toSaveString().size());
    EXPECT_EQ(calls::lines, "open out WRONLY|CREAT|TRUNC|CLOEXEC 0666\nwrite out " + size + "\nclose out\n");
    support::write(path, emptyDump);
    calls::start();
    EXPECT_TRUE(TovDesign().load(path.c_str()));
    EXPECT_EQ(calls::lines, "open in CLOEXEC\nclose in\n");
}

TEST_F(Io, SaysWhatFailed) {
    std::string const path = support::write(dir / "in", "set_false_path\n" + std::string(50'000, 'x') + "\ny");
    EXPECT_EQ(errorOf(path, false, {{"read", calls::failing(3, EIO)}}), "Input/output error");
    TOV document;
    calls::start({{"read", calls::failing(3, EIO)}});
    EXPECT_FALSE(document.parseTovFile(path.c_str()));
    EXPECT_EQ(bodyOf(document), "set_false_path\n~\n");
    calls::start();
    support::write(path, "c\n\n#disable create_clock -waveform\nx");
    EXPECT_EQ(errorOf(path, false), "Line 3: create_clock ends in -waveform");
    for (bool asDump : {false, true}) {
        EXPECT_EQ(errorOf(dir / "none", asDump), "No such file or directory");
        EXPECT_EQ(errorOf(path + "/x", asDump), "Not a directory");
    }
    std::string error;
    EXPECT_FALSE(document.read(nullptr, {}, &error));
    EXPECT_EQ(error, "No such file or directory");
    EXPECT_FALSE(document.read(
        path.c_str(), [](auto, auto) { return false; }, nullptr));

    // A check with names reads a pipe only once, before it checks the lines.
    int ends[2];
    ASSERT_EQ(::pipe2(ends, O_CLOEXEC), 0);
    ASSERT_EQ(::write(ends[1], "set_load 1\n", 11), 11);
    TovDesignNames const names{TovDesign()};
    TovCheckOptions options;
    options.names = &names;
    std::vector<TovFinding> findings;
    calls::start({{"read", calls::failing(2, EIO)}});
    std::string const pipe = "/proc/self/fd/" + std::to_string(ends[0]);
    EXPECT_FALSE(checkTovFile(pipe.c_str(), options, findings, &error));
    EXPECT_EQ(error, "Input/output error");
    EXPECT_EQ(findings.size(), 1U);
    for (int end : ends) ::close(end);
}

TEST_F(Io, TellsErrorsInAShortLine) {
    std::string const tag = std::string(3000, 'x') + "\xc3\xa9y";
    std::string const refused = errorOf(support::write(dir / "long", "<" + tag + "/>"), true);
    EXPECT_EQ(refused.size(), 999U);
    EXPECT_EQ(refused.find("Line 1 Column 3005: Tag xxx"), 0U);
    std::string const end = "x\xc3\xa9y is not valid tag";
    EXPECT_EQ(refused.substr(refused.size() - end.size()), end);
}

TEST_F(Io, ShowsUtf8WithoutControlCharacters) {
    support::expectRows("error_texts", impl_detail::errorText);
}

// A load of any size makes at most a thousand calls; what was read never equals the size before the end.
TEST_F(Io, ReportsFilesOfAnySize) {
    constexpr std::uint64_t chunk = 16'384;
    for (std::uint64_t const size : {std::uint64_t{0}, 50 * chunk, std::uint64_t{1} << 36U}) {
        int count = 0;
        TovProgress const progress = [&](std::uint64_t read, std::uint64_t whole) {
            EXPECT_TRUE(size == 0 ? whole == 0 : whole > read) << read;
            ++count;
            return true;
        };
        impl_detail::ProgressMeter meter(progress, size);
        // The file may have grown.
        for (std::uint64_t read = 0; read < size + 100 * chunk; read += chunk) EXPECT_TRUE(meter.add(chunk));
        EXPECT_TRUE(count >= 20 && count < 1000) << count;
    }
}

// The middle of a text of more than 1,000 bytes is left out, and no character is cut.
TEST_F(Io, CutsErrorsBetweenCharacters) {
    for (std::size_t size = 955; size < 970; ++size) {
        std::string const tag(size, 'x');
        std::string const message = "Line 1 Column " + std::to_string(size + 3) + ": Tag " + tag + " is not valid tag";
        std::string const error = errorOf(support::write(dir / "x", "<" + tag + "/>"), true);
        std::string const cut = message.substr(0, 498) + "..." + message.substr(message.size() - 498);
        EXPECT_EQ(error, message.size() <= 1000 ? message : cut);
    }
    for (std::size_t before = 0; before < 4; ++before) {
        std::string tag = std::string(before, 'x');
        for (int i = 0; i < 600; ++i) tag += "\xe4\xb8\xad";
        std::string const error = errorOf(support::write(dir / "wide", "<" + tag + "/>"), true);
        EXPECT_EQ(error.find('?'), error.npos) << "a character is cut";
        EXPECT_TRUE(error.size() > 994 && error.size() <= 1000) << error.size();
        std::size_t const middle = error.find("...");
        EXPECT_EQ((middle - error.find("\xe4")) % 3, 0U);
        EXPECT_EQ((error.rfind("\xad") - middle) % 3, 2U);
    }
}

TEST_F(Io, UsesAnyDescriptor) {
    std::string const path = support::write(dir / "in", emptyDump);
    int const input = ::dup(0);
    for (bool asDump : {false, true}) {
        ::close(0);
        EXPECT_EQ(errorOf(path, asDump), "");
        EXPECT_EQ(::fcntl(0, F_GETFD), -1);
    }
    TOV document;
    EXPECT_TRUE(document.save((dir / "out").c_str()) && document.saveAtomically((dir / "out").c_str()));
    EXPECT_EQ(::fcntl(0, F_GETFD), -1);
    if (input >= 0) ::dup2(input, 0);
    ::close(input);
}

TEST_F(Io, MakesFilesAsTheMaskSays) {
    TOV document;
    for (mode_t mask : {0U, 022U, 077U}) {
        mode_t const before = ::umask(mask);
        std::string const path = dir / std::to_string(mask);
        EXPECT_TRUE(document.save(path.c_str()));
        ::umask(before);
        EXPECT_EQ(std::filesystem::status(path).permissions(), std::filesystem::perms(0666U & ~mask));
    }
}

// The call that reports the whole file comes only after all of it has been used.
TEST_F(Io, TellsTheEndOnce) {
    std::string const comments(24'576, '\n');
    std::string const path = support::write(dir / "in", comments.substr(4) + "last");
    TOV document;
    int ends = 0, all = 0;
    auto const count = [&](std::uint64_t read, std::uint64_t size) {
        ++all;
        ends += read == size;
        EXPECT_TRUE(read != size || bodyOf(document) == "last\n~\n");
        return true;
    };
    EXPECT_TRUE(document.read(path.c_str(), count));
    EXPECT_EQ(ends, 1);
    EXPECT_EQ(all, 1);
    // A dump that is truncated where a call would come, and one that is complete before it.
    std::string const dump = "<top>" + comments.substr(5);
    TovDesign design;
    EXPECT_TRUE(design.load(support::write(path, dump).c_str(), count));
    EXPECT_EQ(ends, 1);
    all = 0;
    EXPECT_TRUE(design.load(support::write(path, dump.substr(7) + "<top/>").c_str(), count));
    EXPECT_TRUE(ends == 2 && all == 1);
    // A line that ends the load.
    EXPECT_FALSE(document.read(support::write(path, "create_clock -waveform").c_str(), count));
    EXPECT_EQ(all, 1);
}

// Stopping does not wait for a pipe that has no data yet.
TEST_F(Io, StopsAtAPipeThatWaits) {
    std::string const fifo = dir / "pipe";
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    std::string const text = "<top>" + std::string(40'000, '\n');
    TOV document;
    TovDesign design;
    for (bool asDump : {false, true}) {
        int writer = -1;
        std::thread opener([&] {
            writer = ::open(fifo.c_str(), O_WRONLY | O_CLOEXEC, 0);
            EXPECT_EQ(::write(writer, text.data(), text.size()), static_cast<ssize_t>(text.size()));
        });
        auto const stop = [](std::uint64_t read, std::uint64_t size) {
            EXPECT_TRUE(read > 0 && size == 0);
            return false;
        };
        std::string error;
        EXPECT_FALSE(asDump ? design.load(fifo.c_str(), stop, &error) : document.read(fifo.c_str(), stop, &error));
        EXPECT_EQ(error, "The caller stopped the load");
        opener.join();
        ::close(writer);
    }
}

}  // namespace
