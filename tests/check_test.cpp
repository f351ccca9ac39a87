// What a load and a save would not keep, and the save that replaces a file.

#include "tov/check.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <set>

#include "support.h"

namespace {

using namespace kiri::tov;
namespace fs = std::filesystem;

// Findings as text: "line:kind text; ...".
std::string textOf(std::vector<TovFinding> const& findings) {
    std::string text;
    for (auto const& [line, kind, words] : findings) {
        text += (text.empty() ? "" : "; ") + std::to_string(line) + ":";
        text += std::to_string(kind) + " " + words;
    }
    return text;
}

TEST(Check, FindsInLines) {
    support::expectRows("findings", [](std::string const& line) { return textOf(checkTovLine(line)); });
}

TEST(Check, FindsInFiles) {
    support::TempDir const dir;
    std::vector<TovFinding> findings = {{7, TOVFINDING_LOST_WORD, "old"}};
    std::string const path = dir / "in";
    support::write(path, "\n# c\nset_load 1\n\ncreate_clock\r\n#attribute\ncreate_clock -waveform\nset_load 2");
    EXPECT_TRUE(checkTovFile(path.c_str(), findings));
    EXPECT_EQ(textOf(findings), "3:2 set_load 1; 5:4 -period 0.000000; 6:1 #attribute; 7:6 create_clock -waveform");
    EXPECT_FALSE(checkTovFile((dir / "none").c_str(), findings));
    EXPECT_EQ(textOf(findings), "");
    EXPECT_FALSE(checkTovFile(nullptr, findings));
    EXPECT_FALSE(checkTovFile((dir / "").c_str(), findings));
    support::write(path, "");
    EXPECT_TRUE(checkTovFile(path.c_str(), findings));
}

// A save of the groups would take 500 MB and more; what they hold in common is found all the same.
TEST(Check, LooksAtGroupsOfManyWordsOnce) {
    std::string many;
    for (int i = 0; i < 30'000; ++i) many += " a";
    std::string const line = "set_clock_groups -asynchronous -group {b" + many + "} -group {c" + many + "} d";
    std::vector<TovFinding> const findings = checkTovLine(line);
    ASSERT_EQ(findings.size(), 2U);
    EXPECT_EQ(findings[0].text, "d");
    EXPECT_EQ(findings[1].kind, TOVFINDING_CHANGED_VALUE);
}

// A folder with one file in it, and a document to save.
class Atomic : public testing::Test {
protected:
    Atomic() {
        support::load(document, "# " + std::string(9000, 'x') + "\ncreate_clock -period 5");
        support::write(path, "old");
    }

    // The names in the folder.
    std::set<std::string> names() const {
        std::set<std::string> result;
        for (auto const& entry : fs::directory_iterator(dir / "")) result.insert(entry.path().filename());
        return result;
    }

    // Saves, and returns the reason why it failed, without the path.
    std::string save(std::string const& to) {
        std::string error = "old error";
        bool const saved = document.saveAtomically(to.c_str(), &error);
        EXPECT_EQ(saved, error.empty());
        if (saved) return "";
        EXPECT_EQ(error.substr(0, to.size() + 2), to + ": ");
        return error.substr(to.size() + 2);
    }

    support::TempDir const dir;
    std::string const path = dir / "file";
    TOV document;
};

TEST_F(Atomic, ReplacesTheFile) {
    ::chmod(path.c_str(), 0604);
    EXPECT_EQ(save(path), "");
    EXPECT_TRUE(support::read(path) == document.toSaveString());
    EXPECT_EQ(fs::status(path).permissions(), fs::perms(0604));
    mode_t const before = ::umask(0027);
    EXPECT_TRUE(document.saveAtomically((dir / "new").c_str()));
    ::umask(before);
    EXPECT_EQ(fs::status(dir / "new").permissions(), fs::perms(0640));
    EXPECT_EQ(names(), (std::set<std::string>{"file", "new"}));
}

TEST_F(Atomic, FollowsLinks) {
    fs::create_directory(dir / "sub");
    fs::create_symlink("../file", dir / "sub/link");
    fs::create_symlink("sub/link", dir / "link");
    fs::create_symlink(dir / "sub/made", dir / "dangling");
    EXPECT_EQ(save(dir / "link"), "");
    EXPECT_TRUE(support::read(path) == document.toSaveString());
    EXPECT_EQ(save(dir / "dangling"), "");
    EXPECT_EQ(support::read(dir / "sub/made"), document.toSaveString());
    EXPECT_EQ(fs::read_symlink(dir / "link"), "sub/link");
    EXPECT_EQ(names(), (std::set<std::string>{"dangling", "file", "link", "sub"}));
}

TEST_F(Atomic, SaysWhyItFailed) {
    fs::create_symlink("loop", dir / "loop");
    fs::create_directory(dir / "sub");
    std::string const device = support::makeFullDevice(dir);
    std::set<std::string> const before = names();
    support::expectRows("save_errors", [this](std::string const& to) { return save(dir / to); });
    if (!device.empty()) {
        EXPECT_EQ(save(device), "not a regular file");
    }
    EXPECT_EQ(save(""), "No such file or directory");
    EXPECT_FALSE(document.saveAtomically(nullptr));
    // As somebody who may not write.
    ::chmod(path.c_str(), 0444);
    ::chmod((dir / "").c_str(), 0755);
    bool const wasRoot = ::geteuid() == 0 && ::seteuid(65534) == 0;
    EXPECT_EQ(save(path), "Permission denied");
    if (wasRoot) {
        EXPECT_EQ(save(dir / "new"), "Permission denied");
        EXPECT_EQ(::seteuid(0), 0);
    }
    EXPECT_EQ(support::read(path), "old");
    EXPECT_EQ(names(), before);
}

TEST_F(Atomic, SurvivesLimits) {
    rlimit before{};
    ::getrlimit(RLIMIT_FSIZE, &before);
    rlimit const small{4096, before.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &small);
    EXPECT_EQ(save(path), "File too large");
    ::setrlimit(RLIMIT_FSIZE, &before);
    sigset_t mask;
    EXPECT_TRUE(::pthread_sigmask(SIG_BLOCK, nullptr, &mask) == 0 && ::sigismember(&mask, SIGXFSZ) == 0);
    EXPECT_EQ(support::read(path), "old");
    EXPECT_EQ(names(), std::set<std::string>{"file"});
    if (::mount("none", (dir / "").c_str(), "tmpfs", 0, "size=4k") != 0) GTEST_SKIP();
    EXPECT_EQ(save(dir / "new"), "No space left on device");
    EXPECT_EQ(names(), std::set<std::string>{});
    ::mount("none", (dir / "").c_str(), "tmpfs", MS_REMOUNT | MS_RDONLY, "");
    EXPECT_EQ(save(dir / "new"), "Read-only file system");
    ::umount((dir / "").c_str());
}

}  // namespace
