#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <sstream>
#include <thread>

#include "support.h"
#include "tools/toveng/import/child.h"
#include "tools/toveng/import/output_file.h"
#include "tools/toveng/import/source_file.h"
#include "tov/check.h"

namespace {

using namespace tool::sdc;

constexpr double seconds = 20;

// A sanitizer has its own memory and signal handlers.
#ifdef __has_feature
constexpr bool isSanitized = __has_feature(address_sanitizer) || __has_feature(thread_sanitizer);
#else
constexpr bool isSanitized = false;
#endif

Request requestOf(support::TempDir const& dir, std::string const& text, double limit = seconds) {
    Request request;
    request.files = {{"t.sdc", realPath(dir / "") + "/t.sdc", normalised(text)}};
    request.roots = {realPath(dir / "")};
    request.limit = limit;
    return request;
}

Result resultOf(Request const& request) {
    Result result(request.unit.name);
    runInChild(request, result);
    result.finish();
    return result;
}

/// The lines of a result, and its findings after "!": code, line, text and number.
std::string textOf(Result const& result) {
    std::string text = result.text();
    for (ImportFinding const& finding : result.findings()) {
        text += std::string("! ") + codeNames[static_cast<std::size_t>(finding.code)] + ":" +
                std::to_string(finding.line) + " " + result.textOf(finding.text);
        if (finding.count > 1) text += " x" + std::to_string(finding.count);
        text += "\n";
    }
    if (!text.empty()) text.pop_back();
    return text;
}

/// What holds for every import: its lines have no findings, and a second import does not change them.
void expectStable(support::TempDir const& dir, std::string const& text) {
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) EXPECT_TRUE(kiri::tov::checkTovLine(line).empty()) << line;
    Result const again = resultOf(requestOf(dir, text));
    EXPECT_EQ(again.text(), text);
    EXPECT_TRUE(again.findings().empty());
}

class Tables : public testing::TestWithParam<char const*> {};

TEST_P(Tables, HoldWithTheirReports) {
    support::TempDir const dir;
    support::write(dir / "used.sdc", "set_false_path -from [get_ports u]\nset used 1\nreturn\nset used 2\n");
    support::write(dir / "again.sdc", "source again.sdc\nset_false_path -to again\n");
    support::write(dir / "dump.xml", "<?xml?><design/>");
    support::write(dir / "binary.sdc", std::string("set_false_path -from a\n\0", 24));
    ::mkfifo((dir / "pipe").c_str(), 0600);
    ASSERT_EQ(::symlink("/etc/passwd", (dir / "link").c_str()), 0);
    for (auto const& [input, expected, place] : support::rowsOf(std::string("sdc/") + GetParam(), false)) {
        SCOPED_TRACE(place);
        Result const result = resultOf(requestOf(dir, input + "\n"));
        EXPECT_EQ(textOf(result), expected);
        expectStable(dir, result.text());
    }
}

INSTANTIATE_TEST_SUITE_P(Import, Tables, testing::Values("calls", "references", "forms", "hostile"));

TEST(Import, EndsAtItsLimitsAndKeepsWhatCameBefore) {
    std::string const late = "the run exceeded its time limit of 0.5 seconds";
    struct {
        std::string command;
        std::string message;
    } const rows[] = {
        {"while 1 {}", late},
        {"for {set i 0} {1} {incr i} {set_false_path -from $i}", late},
        {"while 1 {append t [string repeat x 1000000]}", "the run exceeded its memory limit"},
    };
    support::TempDir const dir;
    for (auto const& [command, message] : rows) {
        if (isSanitized && message != late) continue;  // a sanitizer takes memory without a limit
        if (isSanitized && message != late) continue;
        Request request = requestOf(dir, "set_false_path -from a\n" + command + "\nset_false_path -from b\n",
                                    message == late ? 0.5 : seconds);
        request.memory = 400'000'000;
        Result const result = resultOf(request);
        EXPECT_EQ(result.text(), "set_false_path -from  a\n# " + command + "\n");
        ASSERT_EQ(result.findings().size(), 1U);
        EXPECT_EQ(result.textOf(result.findings()[0].message), message);
    }
}

/// The first child of this process, once it has used some time; 0 while there is none.
pid_t busyChild() {
    constexpr int ticks = 20;
    int child = 0;
    std::ifstream("/proc/self/task/" + std::to_string(::getpid()) + "/children") >> child;
    std::ifstream stat("/proc/" + std::to_string(child) + "/stat");
    std::string word;
    constexpr int userTime = 14;
    for (int i = 0; i < userTime; ++i) stat >> word;
    return child > 0 && std::atoi(word.c_str()) > ticks ? child : 0;
}

TEST(Import, TellsTheSignalThatEndsItsChild) {
    support::TempDir const dir;
    for (int signal : {SIGKILL, SIGABRT, SIGTERM, SIGSEGV}) {
        if (isSanitized && signal == SIGSEGV) continue;  // the sanitizer handles it
        std::atomic<bool> isDone = false;
        std::thread killer([&] {
            pid_t child = 0;
            while (!isDone && child == 0) child = busyChild();
            if (child > 0) ::kill(child, signal);
        });
        Result const result = resultOf(requestOf(dir, "set_false_path -from a\nwhile 1 {}\nset_false_path -from b\n"));
        isDone = true;
        killer.join();
        // Only a stack overflow ends just the command.
        std::string const after = signal == SIGSEGV ? "set_false_path -from  b\n" : "";
        EXPECT_EQ(result.text(), "set_false_path -from  a\n# while 1 {}\n" + after);
        ASSERT_EQ(result.findings().size(), 1U);
        std::string const message = result.textOf(result.findings()[0].message);
        EXPECT_NE(message.find("signal " + std::to_string(signal)), std::string::npos) << message;
    }
}

TEST(Import, OpensNothingForAttacks) {
    support::TempDir const dir, outside;
    support::write(outside / "secret.sdc", "set_false_path -from SECRET\n");
    ::chmod((dir / "").c_str(), 0777);
    std::string text = "set there " + (outside / "") + "\n";
    text += support::read(TEST_DATA "/sdc/attacks.sdc");
    pid_t const attacker = ::fork();
    if (attacker == 0) {
        // Limits on processes do not bind root.
        constexpr int nobody = 65534;
        if (::geteuid() == 0 && (::setgid(nobody) != 0 || ::setuid(nobody) != 0)) ::_exit(1);
        if (::chdir((dir / "").c_str()) != 0) ::_exit(1);
        Result const result = resultOf(requestOf(dir, text));
        bool isKept = result.text().find("SECRET") == std::string::npos;
        isKept = isKept && result.text().find("-from  last") != std::string::npos;
        std::size_t const lines = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
        isKept = isKept && result.findings().size() + 3 >= lines;
        if (!isKept) std::fprintf(stderr, "%s\n", textOf(result).c_str());
        ::_exit(isKept && std::filesystem::is_empty(dir / "") ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(attacker, &status, 0), attacker);
    EXPECT_EQ(status, 0);
    EXPECT_TRUE(std::filesystem::is_empty(dir / ""));
}

TEST(Import, WritesItsFileWholeOrNotAtAll) {
    support::TempDir const dir;
    std::string error;
    std::string const path = dir / "out";
    EXPECT_TRUE(writeWhole(path, "one\n", error));
    ::chmod(path.c_str(), 0640);
    ASSERT_EQ(::symlink("out", (dir / "link").c_str()), 0);
    EXPECT_TRUE(writeWhole(dir / "link", "two\n", error));
    EXPECT_EQ(support::read(path), "two\n");
    EXPECT_TRUE(std::filesystem::is_symlink(dir / "link"));
    EXPECT_EQ(std::filesystem::status(path).permissions(), std::filesystem::perms(0640));
    EXPECT_FALSE(writeWhole(dir / "none/out", "x", error));
    EXPECT_EQ(error, "No such file or directory");
    EXPECT_FALSE(writeWhole(dir / "", "x", error));
    EXPECT_EQ(error, "Is a directory");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir / ""), {}), 2);
}

TEST(Import, GoesThroughManyObjectsInLinearTime) {
    // The maximum number of lines of a call, and one more.
    support::TempDir const dir;
    std::string const make = "for {set i 0} {$i < $n} {incr i} {lappend l p$i}\nset_false_path -from $l -to {";
    Result const most = resultOf(requestOf(dir, "set n 50000\n" + make + "a b}\n"));
    EXPECT_EQ(most.lines(), 100000U);
    Result const more = resultOf(requestOf(dir, "set n 33334\n" + make + "a b c}\n"));
    EXPECT_EQ(more.lines(), 0U);
    EXPECT_EQ(more.keptByOption().begin()->second, 1U);
}

}  // namespace
