// What a load and a save would lose.

#include "tov/check.h"

#include <gtest/gtest.h>

#include "support.h"

namespace {

using namespace kiri::tov;

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
    EXPECT_FALSE(checkTovFile("/proc/self/mem", findings));  // can be opened, but not read
    support::write(path, "");
    EXPECT_TRUE(checkTovFile(path.c_str(), findings));
}

// No state of a line remains when the next one is checked.
TEST(Check, FindsInAFileWhatItFindsInItsLines) {
    std::string text;
    std::string expected;
    std::size_t number = 0;
    for (auto const& row : support::rowsOf("findings")) {
        bool const isOneLine = row.input.find('\n') == row.input.npos;
        if (!isOneLine || row.expected.find("1:6") != row.expected.npos) continue;
        text += row.input + "\n";
        std::vector<TovFinding> findings = checkTovLine(row.input);
        ++number;
        for (TovFinding& finding : findings) finding.line = number;
        if (!findings.empty()) expected += textOf(findings) + "; ";
    }
    support::TempDir const dir;
    std::vector<TovFinding> findings;
    EXPECT_TRUE(checkTovFile(support::write(dir / "in", text).c_str(), findings));
    EXPECT_EQ(textOf(findings) + "; ", expected);
}

// However long a group is, none of its clocks is a repetition.
TEST(Check, CountsEachClockOfAGroup) {
    std::string clocks;
    for (int i = 0; i < 20'000; ++i) clocks += " clock_" + std::to_string(i);
    EXPECT_EQ(textOf(checkTovLine("set_clock_groups -exclusive -group [get_clocks {" + clocks + "}]")), "");
}

// A save of the groups would take more than 500 MB; the words that they share are found all the same.
TEST(Check, LooksAtGroupsOfManyWordsOnce) {
    std::string many;
    for (int i = 0; i < 30'000; ++i) many += " a";
    std::string const line = "set_clock_groups -asynchronous -group {b" + many + "} -group {c" + many + "} d";
    std::vector<TovFinding> const findings = checkTovLine(line);
    ASSERT_EQ(findings.size(), 3U);
    EXPECT_EQ(findings[0].text, "d");
    EXPECT_EQ(findings[1].kind, TOVFINDING_CHANGED_VALUE);
    EXPECT_EQ(findings[2].kind, TOVFINDING_UNSTABLE_LINE);
    EXPECT_EQ(findings[2].text.size(), 1000U);
}

// Repetitions beyond 64 KB of a group are dropped, the first two are not.
TEST(Check, CountsRepetitionsOfAGroup) {
    auto const repetitionsOf = [](std::size_t words, std::string const& last) {
        std::string group;
        for (std::size_t i = 1; i < words; ++i) group += "a ";
        std::string const line = "set_clock_groups -asynchronous -group {" + group + last + "}";
        std::vector<TovFinding> const findings = checkTovLine(line);
        EXPECT_EQ(findings.front().kind, TOVFINDING_CHANGED_VALUE);
        std::string const& added = findings.front().text;
        return (static_cast<std::size_t>(std::count(added.begin(), added.end(), ' ')) + 1) / words;
    };
    EXPECT_EQ(repetitionsOf(16'384, "a"), 1U);   // twice 32,769 bytes
    EXPECT_EQ(repetitionsOf(16'383, "aa"), 2U);  // twice 32,768 bytes, and one more
    EXPECT_EQ(repetitionsOf(40'000, "a"), 1U);
}

// The messages of all findings of a line, a line for each.
std::string messagesFor(std::string const& line) {
    std::string text;
    for (TovFinding const& finding : checkTovLine(line)) {
        text += (text.empty() ? "" : "\n") + findingMessage(finding, line);
    }
    return text;
}

TEST(Check, SaysWhatIsWrongAndWhatToWrite) {
    support::expectRows("messages", messagesFor);
}

TEST(Check, CutsMessages) {
    std::string many;
    for (int i = 0; i < 5000; ++i) many += " n\xe4" + std::to_string(i);
    std::vector<std::string> const begins = {"set_false_path -from a", "set_clock_groups -group",
                                             "set_multicycle_path 2 -end"};
    for (std::string const& begin : begins) {
        for (std::string const& line : {begin + many, begin + " {" + many + " }"}) {
            std::string const messages = messagesFor(line);
            ASSERT_FALSE(messages.empty());
            EXPECT_LE(messages.size(), 3000U);
            EXPECT_EQ(messages.find("n\xe4"), messages.npos) << "not UTF-8";
        }
    }
}

TEST(Check, CutsWordsInMessages) {
    std::string const euro = "\xe2\x82\xac";
    for (auto const& [word, shown] : std::vector<std::pair<std::string, std::string>>{
             {std::string(199, 'x') + "y", std::string(199, 'x') + "y"},
             {std::string(200, 'x') + "y", std::string(200, 'x') + "..."},
             {std::string(198, 'x') + euro, std::string(198, 'x') + "..."},
             {std::string(197, 'x') + euro + "y", std::string(197, 'x') + euro + "..."},
         }) {
        EXPECT_EQ(messagesFor(word).find("`" + shown + "` is not"), 0U) << messagesFor(word);
    }
    // An incomplete list of words ends in dots.
    std::string words;
    for (std::size_t count = 1; count <= 400; ++count) {
        words += count == 1 ? "a" : " a";
        std::string const message = messagesFor("set_false_path " + words + " -from b");
        std::string const shown = count <= 100 ? words : words.substr(0, 200) + "...";
        EXPECT_EQ(message.find("a save drops `" + shown + "`"), 0U) << message;
    }
}

// A caller may pass any line.
TEST(Check, ExplainsAFindingOfAnotherLine) {
    for (std::string const line : {"", "# c", "create_clock -waveform", "set_false_path", "create_clock -name \\"}) {
        for (int kind = -1; kind < 10; ++kind) {
            TovFinding const finding{1, static_cast<TovFindingKind>(kind), "\ta\xe4 {} -b"};
            std::string const message = findingMessage(finding, line);
            EXPECT_EQ(message.empty(), kind < TOVFINDING_DROPPED_LINE || kind > TOVFINDING_MISSING_NAME) << message;
            EXPECT_EQ(message.find('\t'), message.npos);
        }
    }
    EXPECT_EQ(findingMessage({1, TOVFINDING_MISSING_NAME, "a \xe4\x1b"}, ""), "a \u00e4?");
}

TEST(Check, NamesKinds) {
    EXPECT_STREQ(findingCode(TOVFINDING_DROPPED_LINE), "dropped-line");
    EXPECT_STREQ(findingCode(TOVFINDING_MISSING_NAME), "missing-name");
    EXPECT_STREQ(findingCode(static_cast<TovFindingKind>(0)), "");
    EXPECT_STREQ(findingCode(static_cast<TovFindingKind>(9)), "");
}

}  // namespace
