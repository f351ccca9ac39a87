// What operations take: what they keep, and their peak beyond it.

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

// The bytes that an operation keeps, and those that it takes beyond them.
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

// What a load needs beyond what it keeps: the longest line with room to grow, and comments while their text grows.
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

// Beyond its tree, a dump costs the base names of its buses while it is read.
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

// The lines of lists that alternate are there twice while they are joined.
TEST(Memory, ASaveTakesTwiceItsText) {
    support::TempDir const dir;
    for (std::size_t length : {1U, 60U, 150U, 900U}) {
        for (std::size_t others : {3U, 1'000'000U}) {
            std::string text;
            for (std::size_t i = 1; i < 1'000'000 / (length + 20); ++i) {
                text += (i % others == 0 ? "set_max_delay 1" : "set_false_path") +
                        (" -from " + std::string(length, 'x') + "\n");
            }
            TOV document;
            document.load(support::write(dir / "in", text).c_str());
            std::string saved;
            auto const [kept, beyond] = bytesOf([&] { saved = document.toSaveString(); });
            EXPECT_LT(kept, saved.size() / 8 * 9);
            EXPECT_LT(kept + beyond, saved.size() / 50 * 101 + 64 * 1024) << length;
        }
    }
}

// The first lines of a list may be longer than the others: the room for more such lines is neither kept nor needed.
TEST(Memory, ASaveMayGuessItsSizeWrong) {
    std::string text;
    for (int i = 0; i < 20'000; ++i) text += "set_false_path -from " + std::string(i < 16 ? 1000 : 1, 'x') + '\n';
    TOV document;
    support::load(document, text);
    for (std::size_t const limit : {SIZE_MAX, std::size_t{8} << 20}) {
        std::string saved;
        largest = limit;
        std::size_t const kept = bytesOf([&] { saved = document.toSaveString(); }).first;
        largest = SIZE_MAX;
        EXPECT_LT(kept, saved.size() * 2 + 64);
    }
}

}  // namespace
