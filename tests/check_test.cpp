// What stands beside the document: findings, the references of a command, and the save that
// replaces a file.

#include "tov/check.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <set>

#include "support.h"
#include "tov/cmd/references.h"

namespace {

using namespace kiri::tov;

// Findings as text: "line:kind text; ...".
std::string textOf(std::vector<TovFinding> const& findings) {
    std::string text;
    for (TovFinding const& finding : findings) {
        if (!text.empty()) text += "; ";
        text +=
            std::to_string(finding.line) + ":" + std::to_string(finding.kind) + " " + finding.text;
    }
    return text;
}

TEST(Check, FindsInLines) {
    std::pair<std::string, std::string> const rows[] = {
        // Kept: what a save writes in another way, and what says nothing.
        {"", ""},
        {"# a comment", ""},
        {"#disable set_load 5", ""},
        {" #disable  create_clock -name \"c\" -period 10ns {clk}\r", ""},
        {"set_clock_groups -exclusive -group [get_clocks {a b}] -group [get_clocks c]", ""},
        {"set_input_delay -min 0x10 -max [get_ports {a[3]}]", ""},
        {"#attribute a \"b c\" d {e} f -disable", ""},
        {"set_max_delay -0 -to b -from a", ""},
        // Lines of no use.
        {"#attribute a b c d", "1:1 #attribute a b c d"},
        {"\tset_load 5 [get_ports a] ", "1:2 set_load 5 [get_ports a]"},
        {"create_clock -period 2 -waveform", "1:6 create_clock -period 2 -waveform"},
        // Words that are gone.
        {"set_multicycle_path 2 -setup -from a", "1:3 -setup"},
        {"set_false_path 5 -from [get_ports {a b}]", "1:3 5 b"},
        {"set_input_delay 1 [get_ports a] [get_ports b]", "1:3 get_ports a"},
        {"set_false_path -through [get_nets x] -to b", "1:3 -through get_nets x"},
        {"set_multicycle_path 1 2", "1:3 1"},
        {"set_max_delay 1 -from {2 2.0}", ""},
        {"#attribute a b c d e -Disable", "1:3 -Disable"},
        // Numbers that are others, and words that are added.
        {"set_multicycle_path 2.9", "1:4 2.9"},
        {"create_clock -period 16777217", ""},
        {"create_clock -period 1 -waveform {0 1e-9}", "1:4 1e-9"},
        {"set_max_delay 1e999", "1:4 1e999"},
        {"create_clock clk", "1:4 -period 0.000000"},
        {"set_clock_groups -group [get_clocks a]", "1:4 -exclusive"},
        {"set_max_delay inf", "1:3 inf; 1:4 0.000000"},
        {"create_clockX", "1:3 create_clockX; 1:4 create_clock -period 0.000000"},
        {"set_false_path -to [get_ports @PI]", "1:3 get_ports @PI; 1:4 all_inputs"},
        {"set_clock_groups -exclusive -group a", "1:3 -group a; 1:4 -groupa"},
        // Words that are taken for others.
        {"create_clock -period 5 -add", "1:5 -add"},
        {"create_clock -period 5 -name -add clk", "1:5 -add"},
        {"create_clock -period 5 -5", ""},
        {"set_false_path -from -to x", "1:3 x; 1:5 -to"},
        {"set_output_delay 1 \\", "1:5 \\"},
        {"set_max_delay 1 -from [list \\", "1:5 \\"},
        {"set_max_delay 1 -from {\\ a}", ""},
        {"set_max_delay 1 \\", "1:3 \\"},
        {"set_false_path -to [get_cells -hier *]", "1:3 *; 1:5 -hier"},
        // After a NUL byte.
        {std::string("# a\0 b\0{c}", 10), "1:3 b c"},
        {std::string("set_false_path\0 5", 17), "1:3 5"},
        {std::string("x\0y", 3), "1:2 x; 1:3 y"},
        {std::string("#\0 [", 4), ""},
        // A line feed in a line is white space.
        {"set_false_path\n-from x\ny", "1:3 y"},
    };
    for (auto& [line, expected] : rows) EXPECT_EQ(textOf(checkTovLine(line)), expected) << line;
}

TEST(Check, FindsInFiles) {
    support::TempDir const dir;
    std::vector<TovFinding> findings = {{7, TOVFINDING_LOST_WORD, "old"}};
    std::string const path = dir / "in";
    support::write(
        path,
        "\n# c\nset_load 1\n\ncreate_clock\r\n#attribute\ncreate_clock -waveform\nset_load 2");
    EXPECT_TRUE(checkTovFile(path.c_str(), findings));
    EXPECT_EQ(textOf(findings),
              "3:2 set_load 1; 5:4 -period 0.000000; 6:1 #attribute; 7:6 create_clock -waveform");
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
    std::string const line =
        "set_clock_groups -asynchronous -group {b" + many + "} -group {c" + many + "} d";
    std::vector<TovFinding> const findings = checkTovLine(line);
    ASSERT_EQ(findings.size(), 2U);
    EXPECT_EQ(findings[0].text, "d");
    EXPECT_EQ(findings[1].kind, TOVFINDING_CHANGED_VALUE);
}

TEST(References, StandAsTheyAreWritten) {
    std::pair<std::string, std::string> const rows[] = {
        {"create_clock [get_ports {a b}]", "=a:15 b:15"},
        {"create_generated_clock -master_clock m c -source s",
         "-source=s:59|-master_clock=m:59|=c:59"},
        {"set_clock_groups -group a -group {}", "-group=a:59|-group="},
        {"set_input_delay 1 -clock c [get_ports p]", "-clock=c:59|=p:5"},
        {"set_output_delay 1", "-clock=|="},
        {"set_max_delay 1 -to b -from a", "-from=a:59|-to=b:59"},
        {"set_min_delay 1", "-from=|-to="},
        {"set_multicycle_path 1 -from [get_cells u]", "-from=u:7|-to="},
        {"set_false_path -through [get_nets n] -to b", "-from=|-to=b:59|-through=n:2"},
        {"#attribute a b c d e", ""},
    };
    for (auto& [line, expected] : rows) {
        TOV document;
        support::load(document, line);
        std::string text;
        for (int kind = TOVCMD_CLOCK; kind <= TOVCMD_ATTRIBUTE; ++kind) {
            for (TovCmd* cmd : *document.getTovCmdList(static_cast<TOVCMD_TYPE>(kind))) {
                for (auto& [role, list] : referencesOf(*cmd)) {
                    text += (text.empty() ? "" : "|") + (role + ("=" + support::textOf(*list)));
                }
            }
        }
        EXPECT_EQ(text, expected) << line;
    }
    TovCmdClockGroupDef groups(true);
    groups.groups = {nullptr, new ppStlList<taDciObj*>()};
    ASSERT_EQ(referencesOf(groups).size(), 1U);
    EXPECT_EQ(referencesOf(groups)[0].list, groups.groups[1]);
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
        for (auto const& entry : std::filesystem::directory_iterator(dir / ""))
            result.insert(entry.path().filename());
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
    struct stat info {};
    ::chmod(path.c_str(), 0604);
    EXPECT_EQ(save(path), "");
    EXPECT_EQ(support::read(path), document.toSaveString());
    EXPECT_TRUE(::stat(path.c_str(), &info) == 0 && (info.st_mode & 07777U) == 0604);
    mode_t const before = ::umask(0027);
    EXPECT_TRUE(document.saveAtomically((dir / "new").c_str()));
    ::umask(before);
    EXPECT_TRUE(::stat((dir / "new").c_str(), &info) == 0 && (info.st_mode & 07777U) == 0640);
    EXPECT_EQ(names(), (std::set<std::string>{"file", "new"}));
}

TEST_F(Atomic, FollowsLinks) {
    std::filesystem::create_directory(dir / "sub");
    std::filesystem::create_symlink("../file", dir / "sub/link");
    std::filesystem::create_symlink("sub/link", dir / "link");
    std::filesystem::create_symlink(dir / "sub/made", dir / "dangling");
    EXPECT_EQ(save(dir / "link"), "");
    EXPECT_EQ(support::read(path), document.toSaveString());
    EXPECT_EQ(save(dir / "dangling"), "");
    EXPECT_EQ(support::read(dir / "sub/made"), document.toSaveString());
    EXPECT_EQ(std::filesystem::read_symlink(dir / "link"), "sub/link");
    EXPECT_EQ(names(), (std::set<std::string>{"dangling", "file", "link", "sub"}));
}

TEST_F(Atomic, SaysWhyItFailed) {
    std::filesystem::create_symlink("loop", dir / "loop");
    std::filesystem::create_directory(dir / "sub");
    std::set<std::string> const before = names();
    std::pair<std::string, std::string> const rows[] = {
        {dir / "none/file", "No such file or directory"},
        {dir / "new/", "No such file or directory"},
        {dir / "file/x", "Not a directory"},
        {dir / "loop", "Too many levels of symbolic links"},
        {dir / "sub", "not a regular file"},
        {dir / std::string(256, 'n'), "File name too long"},
        {"/dev/full", "not a regular file"},
        {"", "No such file or directory"},
    };
    for (auto& [to, expected] : rows) EXPECT_EQ(save(to), expected);
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
    EXPECT_TRUE(::pthread_sigmask(SIG_BLOCK, nullptr, &mask) == 0 &&
                ::sigismember(&mask, SIGXFSZ) == 0);
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
