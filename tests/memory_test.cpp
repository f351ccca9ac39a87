// The memory of operations: what they keep, and their peak beyond that.

#include <gtest/gtest.h>

#include <functional>
#include <utility>

#include "allocations.h"
#include "support.h"
#include "tov/cmd/references.h"
#include "tov/design/design.h"

namespace {

using namespace kiri::tov;
using allocations::largest;
using allocations::liveBytes;
using allocations::peakBytes;

// The bytes that an operation keeps, and its peak beyond those.
std::pair<std::size_t, std::size_t> bytesOf(std::function<void()> const& operation) {
    std::size_t const before = peakBytes = liveBytes;
    operation();
    return {liveBytes - before, peakBytes - liveBytes};
}

TEST(Memory, CopiesOfALongTextShareIt) {
    constexpr std::size_t words = 1000;
    std::string text;
    for (std::size_t i = 0; i < words; ++i) text += "the_name_of_an_unknown_object ";
    taDci db;
    db.mcycs.push_back(new taDciSynMcyc());
    ppStlList<taDciObj*>& list = db.mcycs.front()->from;
    TOV document;
    EXPECT_LT(bytesOf([&] { list = TovCmd::fromTclString(text, false); }).first, words * 200);
    EXPECT_LT(bytesOf([&] { document.loadTaObjects(&db, true); }).first, words * 200);
    delete list.front();
    list.pop_front();
    EXPECT_EQ(list.size(), words - 1);
    EXPECT_TRUE(list.front()->name == text);
}

// What a load needs beyond what it keeps: the longest line with room to grow, and the comments while their text grows.
TEST(Memory, AFileCostsItsLongestLine) {
    support::TempDir const dir;
    std::size_t const longest = 3'000'000;
    std::string const longWord(longest, 'x');
    std::string manyWords;
    while (manyWords.size() < longest) manyWords += " word";
    std::string commands, comments, sections;
    for (int i = 0; i < 60'000; ++i) commands += "set_false_path" + std::string(200, ' ') + "x\n";
    for (int i = 0; i < 400'000; ++i) comments += "# a comment\n";
    for (int i = 0; i < 40; ++i) sections += std::string(99'999, 'x') + "\n#attribute 1 2 3 4 5\ny\nset_false_path\n";
    std::size_t const line = longest / 8 * 9;
    struct {
        std::string text;
        std::size_t beyond;
    } const files[] = {
        {"#attribute" + longWord + "\n" + commands, 0},  // the commands are kept where the line was
        {"#attribute" + manyWords, line},
        {"#attribute 1 2 3 4 " + longWord, line},
        {"# " + longWord, line},
        {"set_load" + manyWords, line},
        {"set_false_path -x " + longWord + " -to a", line},
        {comments, comments.size()},
        {sections, sections.size()},
    };
    for (auto const& file : files) {
        std::string const path = support::write(dir / "in", file.text);
        TOV document;
        std::size_t const beyond = bytesOf([&] { document.read(path.c_str()); }).second;
        EXPECT_LT(beyond, file.beyond + 64 * 1024) << file.text.substr(0, 30);
    }
}

// Wherever the line length changes, and whether or not the lists are one after the other in memory.
TEST(Memory, ASaveTakesTwiceItsText) {
    constexpr std::size_t count = 30'000;
    struct {
        char const* name;
        std::function<std::size_t(std::size_t)> length;  // of the name in a line
        std::size_t comments = 0;                        // their size
    } const texts[] = {
        {"even", [](std::size_t) { return 30; }},
        {"large", [](std::size_t) { return 160; }},
        {"growing", [](std::size_t i) { return i / 300; }},
        {"shrinking", [](std::size_t i) { return (count - i) / 300; }},
        {"short until the middle", [](std::size_t i) { return i < count / 2 ? 1 : 120; }},
        {"long until the middle", [](std::size_t i) { return i < count / 2 ? 120 : 1; }},
        {"short at both ends", [](std::size_t i) { return i < 100 || i > count - 100 ? 1 : 120; }},
        {"a few long ones", [](std::size_t i) { return i % 1000 == 0 ? 3000 : 10; }},
        {"a few long ones at first", [](std::size_t i) { return i < 40 ? 2000 : 10; }},
        {"long at both ends", [](std::size_t i) { return i < 100 || i > count - 100 ? 900 : 10; }},
        {"before comments", [](std::size_t i) { return i < count / 8 || i > count - 100 ? 100 : 120; }, 300'000},
        {"before large ones", [](std::size_t i) { return i < count / 8 || i > count - 100 ? 100 : 120; }, 1'000'000},
    };
    for (auto const& text : texts) {
        for (char const* between : {"", "create_clock\n"}) {
            TOV document;
            std::string lines;
            for (std::size_t i = 0; i < count; ++i) {
                lines += "set_false_path -from " + std::string(text.length(i) + 1, 'n') + '\n';
                if (i % 10 == 0) lines += between;
            }
            support::load(document, lines);
            document.attributeCommentText.assign(text.comments, '#');
            std::string saved;
            for (bool const hasRoomForGuess : {true, false}) {
                // A large guess is a little larger than the text.
                if (!hasRoomForGuess) largest = std::max(saved.size() / 100 * 102, std::size_t{4} << 20);
                saved = {};
                std::size_t const before = peakBytes = liveBytes;
                saved = document.toSaveString();
                largest = SIZE_MAX;
                EXPECT_LE(peakBytes - before, saved.size() * 21 / 10) << text.name << between;
                EXPECT_LE(saved.capacity(), saved.size() * 13 / 10) << text.name << between;
            }
        }
    }
}

// Beyond its tree, reading a dump takes memory for the base names of its buses.
TEST(Memory, ADumpCostsTheNamesOfItsBuses) {
    support::TempDir const dir;
    constexpr std::size_t buses = 20'000;
    for (bool distinct : {false, true}) {
        std::string text = "<top><library><unit><nets>";
        for (std::size_t i = 0; i < buses; ++i)
            text += "<nitem name='" + (distinct ? "net" + std::to_string(i) : "net") + "[0]'/>";
        std::string const path = support::write(dir / "dump", text + "</nets></unit></library></top>");
        TovDesign design;
        auto const [kept, beyond] = bytesOf([&] { design.load(path.c_str()); });
        EXPECT_LT(beyond, 64 * 1024 + (distinct ? buses * 100 : 0));
        EXPECT_GT(kept, buses * 50);
    }
}

}  // namespace
