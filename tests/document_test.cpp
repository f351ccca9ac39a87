#include "tov/tov.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <clocale>
#include <stdexcept>
#include <thread>

#include "support.h"

namespace {

using namespace kiri::tov;
using support::TempDir;

std::string joined(std::vector<std::string> const& lines) {
    std::string text;
    for (std::string const& line : lines) text += line + "\n";
    return text;
}

// What a file gives: the saved lines, then "S" and the comments of the command section, "A" and those of the
// other.
std::string contentOf(std::string const& text) {
    TOV document;
    support::load(document, text);
    return joined(support::savedLines(document)) + "S" + document.sdcCommentText + "A" + document.attributeCommentText;
}

TEST(Document, ClassifiesLines) {
    std::string const falsePath = "set_false_path\n";
    std::string const attribute = "#attribute\ta\tb\tc\td\te\n";
    struct {
        std::string text;
        std::string content;
    } const rows[] = {
        {"", "SA"},
        {"\n \t\r\n\v\f\n", "SA"},
        {"  create_clock -period 10 [get_ports clk]  ", "create_clock -period 10.000000 [ get_ports { clk } ]\nSA"},
        {"set_false_path\r\nset_false_path\rx\r\n", falsePath + falsePath + "SA"},
        {std::string("set_false_path\0 -to x\nset_multicycle_path 1", 43),
         "set_multicycle_path 1\n" + falsePath + "SA"},
        {"a\n\n  b  c \n\tx", "Sa\nb  c\nx\nA"},
        {"#disable set_false_path\n#disable \t set_false_path\n",
         "#disable " + falsePath + "#disable " + falsePath + "SA"},
        {"#disableset_false_path\n#disable\tset_false_path\n#disable\n#disable  foo",
         "S#disableset_false_path\n#disable\tset_false_path\n#disable\n#disable  foo\nA"},
        {"Create_clock -period 1\nx create_clock", "SCreate_clock -period 1\nx create_clock\nA"},
        // A longer word is the command all the same; its class then finds nothing of its own in the line.
        {"create_clockX -period 3\nset_false_pathy -to x", "create_clock -period 0.000000\n" + falsePath + "SA"},
        {"#attribute a b c d e", attribute + "SA"},
        {"#attributes a b c d e", attribute + "SA"},
        {"#attribute \"a\" b\tc d e -Disable", attribute + "SA"},
        {"#attribute a b c d e -disable", "#attribute\ta\tb\tc\td\te\t-disable\nSA"},
        {"#attribute a b c d\n#attribute a b c d e -disable g\n#attribute", "SA"},
        {"#disable #attribute a b c d e\n# attribute a b c d e",
         "S#disable #attribute a b c d e\n# attribute a b c d e\nA"},
        // A comment belongs to the section in which it stands.
        {"c1\nset_false_path\nc2\n#attribute a b c d e\na1\n#attribute a b c d e\na2\nset_false_path\nc3\n"
         "#attribute a b c d e\na3",
         falsePath + falsePath + attribute + attribute + attribute + "Sc1\nc2\nc3\nAa1\na2\na3\n"},
        {"c1\n#attribute bad\nc2\nset_false_path\nc3", falsePath + "Sc1\nc2\nc3\nA"},
        {"#attribute a b c d e\na1\nset_false_path\nc1\nset_false_path",
         falsePath + falsePath + attribute + "Sc1\nAa1\n"},
        {"\xc4\xff\x80 x", "S\xc4\xff\x80 x\nA"},
    };
    for (auto const& row : rows) EXPECT_EQ(contentOf(row.text), row.content) << row.text;
}

TEST(Document, ListsAreInFileOrderAndTheCallersToEdit) {
    TOV document;
    support::load(document,
                  "set_max_delay 1\nset_min_delay 3\nset_max_delay 2\nset_output_delay 4\nset_input_delay 5\n");
    EXPECT_EQ(joined(support::savedLines(document)),
              "set_input_delay 5.000000 \nset_output_delay 4.000000 \nset_max_delay 1.000000\n"
              "set_max_delay 2.000000\nset_min_delay 3.000000\n");
    std::list<TovCmd*>& list = *document.getTovCmdList(TOVCMD_MAXDELAY);
    TovCmd* const taken = list.front();
    list.pop_front();
    document.getTovCmdList(TOVCMD_MINDELAY)->push_front(taken);
    document.getTovCmdList(TOVCMD_CLOCK)->push_back(nullptr);
    EXPECT_NE(document.toSaveString().find("set_max_delay 2.000000\nset_max_delay 1.000000\nset_min_delay 3.000000\n"),
              std::string::npos);
    for (int type : {-1, 0, 11, 99}) EXPECT_EQ(document.getTovCmdList(static_cast<TOVCMD_TYPE>(type)), nullptr);
    document.sdcCommentText = "kept\n";
    EXPECT_EQ(document.getErrorList(), nullptr);
    document.dci = new taDci();
    document.dci->errors.push_back(taDciText("error"));
    EXPECT_EQ(document.getErrorList(), &document.dci->errors);
    document.reset();
    EXPECT_EQ(document.getErrorList(), nullptr);
    EXPECT_TRUE(document.getTovCmdList(TOVCMD_MINDELAY)->empty());
    EXPECT_EQ(document.sdcCommentText, "kept\n");
}

TEST(Document, ParsingAddsCommandsAndReplacesTheRest) {
    TempDir const dir;
    std::string const path = support::write(dir / "in", "c\nset_false_path\n#attribute a b c d e\n");
    TOV document;
    EXPECT_TRUE(document.parseTovFile(path.c_str()));
    EXPECT_TRUE(document.parseTovFile(path.c_str()));
    EXPECT_EQ(document.getTovCmdList(TOVCMD_FALSEPATH)->size(), 2U);
    EXPECT_EQ(document.getTovCmdList(TOVCMD_ATTRIBUTE)->size(), 1U);
    EXPECT_EQ(document.sdcCommentText, "c\n");
    // Nothing there: nothing changes. There but not to be opened: load resets, parsing drops the attributes.
    std::string const before = document.toSaveString();
    for (char const* missing : {"", "/no/such/file", static_cast<char const*>(nullptr)}) {
        EXPECT_FALSE(document.load(missing));
        EXPECT_FALSE(document.parseTovFile(missing));
    }
    EXPECT_EQ(document.toSaveString(), before);
    EXPECT_FALSE(document.parseTovFile((dir / "").c_str()));
    EXPECT_EQ(joined(support::savedLines(document)), "set_false_path\nset_false_path\n");
    EXPECT_TRUE(document.load((dir / "").c_str()));
    EXPECT_TRUE(support::savedLines(document).empty());
    EXPECT_EQ(document.sdcCommentText, "c\n");
}

TEST(Document, TrailingWaveformPassesThroughLoad) {
    TOV document;
    std::string const text = document.sdcComments() + "c\nset_false_path\nd\ncreate_clock [get_ports a] -waveform\nx";
    EXPECT_THROW(support::load(document, text), std::out_of_range);
    EXPECT_EQ(joined(support::savedLines(document)) + document.sdcCommentText, "set_false_path\nc\nd\n");
    support::load(document, "set_max_delay 1");
    EXPECT_EQ(joined(support::savedLines(document)) + document.sdcCommentText, "set_max_delay 1.000000\n");
}

TEST(Document, SavesBothSections) {
    TOV document;
    std::string const rule(48, '#');
    EXPECT_EQ(document.toSaveString(), document.sdcComments() + "\n\n" + document.attributeComments() + "\n");
    EXPECT_EQ(document.sdcComments().substr(0, 49), rule + "\n");
    support::load(document, "c\nset_false_path\n#attribute a b c d e\nd");
    std::string const text = document.sdcComments() + "\nset_false_path\nc\n\n" + document.attributeComments() +
                             "\n#attribute\ta\tb\tc\td\te\nd\n";
    EXPECT_EQ(document.toSaveString(), text);
    TempDir const dir;
    std::string const path = support::write(dir / "out", std::string(100000, 'x'));
    EXPECT_TRUE(document.save(path.c_str()));
    EXPECT_EQ(support::read(path), text);
    EXPECT_FALSE(document.save((dir / "no/such/folder").c_str()));
    EXPECT_FALSE(document.save(nullptr));
    EXPECT_FALSE(document.save((dir / "").c_str()));
}

// Only the first copy of a header goes.
TEST(Document, RemovesItsHeaders) {
    TOV document;
    std::string const headers = document.sdcComments() + document.attributeComments();
    support::load(document, headers + "x\n" + headers + "#attribute a b c d e\n" + headers + "y\n");
    EXPECT_EQ(document.sdcCommentText, "x\n" + headers);
    EXPECT_EQ(document.attributeCommentText, "y\n");
}

// A first save drops what the format has no place for; from then on a text stays as it is.
TEST(Document, IsStableFromTheSecondSaveOn) {
    std::string const texts[] = {
        "",
        "c\r\nset_false_path -from [get_ports {a b}]\nx\n#attribute a \"b c\" d e \"\"\ny\n#attribute a b c "
        "d e -disable\n",
        "set_clock_groups -asynchronous -group {a} -group [get_ports b] -group [get_clocks {c d}]\n# no "
        "attributes\n",
        "create_clock -period 1e400 -name \"a b\" {x {y} {z}}\nset_input_delay 1e400\nset_output_delay nan "
        "x\n",
        "set_max_delay 1e39 -from {a {b} {c}} -to \"[x\"\n#disable set_min_delay -to ]]] -from [[[\n",
    };
    TempDir const dir;
    std::string const path = dir / "saved";
    for (std::string const& text : texts) {
        TOV document;
        support::load(document, text);
        std::string saved[3];
        for (std::string& save : saved) {
            ASSERT_TRUE(document.save(path.c_str()));
            save = support::read(path);
            ASSERT_TRUE(document.load(path.c_str()));
        }
        EXPECT_EQ(saved[1], saved[2]);
    }
}

// Lines around the sizes in which a file is read, and files that a reader meets in pieces.
TEST(Document, ReadsLinesOfAnyLength) {
    for (std::size_t size : {262143U, 262144U, 262145U, 3000000U}) {
        std::string const name(size, 'n');
        std::string const text = "set_false_path -to " + name + "\nset_false_path -from b\n" + name + "\n";
        TOV document;
        support::load(document, text);
        EXPECT_EQ(joined(support::savedLines(document)), "set_false_path -to  " + name + "\nset_false_path -from  b\n");
        EXPECT_EQ(document.sdcCommentText, name + "\n");
    }
    TempDir const dir;
    std::string const fifo = dir / "fifo";
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    std::string const name(700000, 'n');
    std::thread writer([&] { support::write(fifo, "a\nset_false_path -to " + name + "\nlast"); });
    TOV document;
    EXPECT_TRUE(document.load(fifo.c_str()));
    writer.join();
    EXPECT_EQ(joined(support::savedLines(document)), "set_false_path -to  " + name + "\n");
    EXPECT_EQ(document.sdcCommentText, "a\nlast\n");
}

}  // namespace
