// Documents: how lines are classified, where they are saved, and what a caller may do with the lists.

#include "tov/tov.h"

#include <gtest/gtest.h>

#include <random>
#include <utility>

#include "support.h"
#include "tov/edit.h"

namespace {

using namespace kiri::tov;
using support::bodyOf;

TEST(Document, ClassifiesLines) {
    support::forEachRow("documents",
                        [](auto const& text, auto const& saved) { EXPECT_EQ(bodyOf(text), saved + "\n"); });
}

// The first save drops what the format does not hold; from then on a text is stable.
TEST(Document, IsStableFromTheSecondSaveOn) {
    support::forEachRow("second_saves", [](auto const& text, auto const& saved) {
        TOV document;
        support::load(document, text);
        for (int saves = 1; saves < 4; ++saves) {
            support::load(document, document.toSaveString());
            EXPECT_EQ(bodyOf(document), saved + "\n");
        }
    });
}

TEST(Document, SavesBothHeadersAndRemovesTheirFirstCopy) {
    TOV document;
    EXPECT_EQ(document.toSaveString(), support::read(TEST_DATA "/empty"));
    std::string const command = document.sdcComments();
    std::string const attribute = document.attributeComments();
    EXPECT_EQ(document.toSaveString(), command + "\n\n" + attribute + "\n");
    support::load(document, command + attribute + "1\n" + attribute + command + "#attribute a b c d e\n" + attribute +
                                "a\n" + command);
    EXPECT_EQ(document.sdcCommentText, "1\n" + attribute + command);
    EXPECT_EQ(document.attributeCommentText, "a\n");
}

TEST(Document, ListsAreTheCallersToEdit) {
    for (int type : {-1, 0, static_cast<int>(support::allLists().size()) + 1, 99}) {
        EXPECT_EQ(TOV().getTovCmdList(static_cast<TOVCMD_TYPE>(type)), nullptr);
    }
    // An empty line is not written, and null entries are skipped.
    struct Silent : TovCmdMaxDelay {
        using TovCmdMaxDelay::TovCmdMaxDelay;
        std::string toSaveString(TOV*) override { return {}; }
    };
    TOV document;
    auto& list = *document.getTovCmdList(TOVCMD_MAXDELAY);
    for (int const many : {1, 1, 2000}) {
        document.reset();
        std::string expected = "set_max_delay 1.000000\n";
        list.push_back(new TovCmdMaxDelay(1, nullptr));
        list.push_back(nullptr);
        list.push_back(new Silent(1, nullptr));
        for (int i = 0; i < many; ++i) {
            list.push_back(new TovCmdMaxDelay(2, nullptr));
            if (i == 1000) list.push_back(new Silent(1, nullptr));
            expected += "set_max_delay 2.000000\n";
        }
        EXPECT_EQ(bodyOf(document), expected + "~\n");
    }
}

std::vector<TOVCMD_TYPE> const allLists = support::allLists();

// The nodes of a list may be in any order of addresses, and a command may be in any list.
TEST(Document, SavesListsThatACallerMixed) {
    std::minstd_rand random;
    for (int round = 0; round < 50; ++round) {
        TOV document;
        for (unsigned i = 0; i < 5 * static_cast<unsigned>(round); ++i) {
            std::list<TovCmd*>& list = *document.getTovCmdList(allLists[random() % std::size(allLists)]);
            auto const place = std::next(list.begin(), static_cast<long>(random() % (list.size() + 1)));
            TovCmd* cmd = nullptr;
            if (i % 3 == 1) cmd = new TovCmdMaxDelay(static_cast<float>(i), nullptr);
            if (i % 3 == 2) cmd = new TovCmdMinDelay(static_cast<float>(i), nullptr);
            list.insert(place, cmd);
            if (i % 7 == 0) list.reverse();
        }
        std::string lines, attributes = "~\n";
        forEachCommand(document, [&](TOVCMD_TYPE list, TovCmd& cmd) {
            (list == TOVCMD_ATTRIBUTE ? attributes : lines) += cmd.toSaveString(&document) + '\n';
        });
        EXPECT_EQ(bodyOf(document), lines + attributes);
    }
}

// A command of a caller's class that reads its document while it is saved and deleted.
struct Witness : TovCmdFalsePath {
    Witness(TOV& owner, TOVCMD_TYPE in, std::string& report)
        : TovCmdFalsePath(nullptr), document(owner), list(in), told(report) {}
    ~Witness() override { told += "deleted " + rest(); }
    std::string toSaveString(TOV*) override { return told += "saved ", "witness"; }

    // The lines of the later lists, and the comments.
    std::string rest() {
        std::string text = keywordOf(list) + std::string("\n");
        forEachCommand(document, [&](TOVCMD_TYPE in, TovCmd& cmd) {
            if (in > list) text += cmd.toSaveString(&document) + '\n';
        });
        return text + document.sdcCommentText + document.attributeCommentText;
    }

    TOV& document;
    TOVCMD_TYPE list;
    std::string& told;
};

TEST(Document, CommandsOfACallersClassFindTheLaterListsAndTheCommentsWhole) {
    support::TempDir const dir;
    std::string const file =
        support::write(dir / "in", "# c\n#attribute a b c d e\n# a\nset_max_delay 1\ncreate_clock");
    struct {
        char const* name;
        std::function<void(std::unique_ptr<TOV>&)> work;
    } const ends[] = {
        {"~TOV", [](auto& document) { document.reset(); }},
        {"reset", [](auto& document) { document->reset(); }},
        {"load", [&](auto& document) { document->load(file.c_str()); }},
        {"read", [&](auto& document) { document->read(file.c_str()); }},
    };
    for (auto const& end : ends) {
        for (TOVCMD_TYPE list : {TOVCMD_CLOCK, TOVCMD_MINDELAY, TOVCMD_ATTRIBUTE}) {
            for (bool pushed : {false, true}) {
                SCOPED_TRACE(end.name + std::string(": ") + keywordOf(list) + (pushed ? " pushed" : " added"));
                std::string told;
                auto document = std::make_unique<TOV>();
                document->load(file.c_str());
                auto witness = std::make_unique<Witness>(*document, list, told);
                std::string const expected = "deleted " + witness->rest();
                if (pushed) {
                    document->getTovCmdList(list)->push_front(witness.release());
                } else {
                    addCommand(*document, list, std::move(witness));
                }
                end.work(document);
                EXPECT_EQ(told, expected);
            }
        }
    }
}

TEST(Document, CommandsOfACallersClassGoListByList) {
    std::string told;
    TOV document;
    for (int round = 0; round < 2; ++round) {
        for (TOVCMD_TYPE list : {TOVCMD_ATTRIBUTE, TOVCMD_FALSEPATH, TOVCMD_CLOCK}) {
            addCommand(document, list, std::make_unique<Witness>(document, list, told));
            addCommand(document, list, std::make_unique<TovCmdAttr>("#attribute a b c d e"));
        }
    }
    document.toSaveString();
    EXPECT_EQ(std::exchange(told, {}), "saved saved saved saved saved saved ");
    document.reset();
    std::string lists;
    for (auto at = told.find("deleted "); at != told.npos; at = told.find("deleted ", at + 1)) lists += told[at + 8];
    EXPECT_EQ(lists, "ccss##");
    forEachCommand(document, [](TOVCMD_TYPE, TovCmd&) { FAIL(); });
}

TEST(Document, ParsingAddsCommandsAndResetKeepsTheCommentsAlone) {
    support::TempDir const dir;
    std::string const path = support::write(dir / "in", "c\nset_false_path\n#attribute a b c d e\nd");
    std::string const rest = "set_false_path\nc\n~\n#attribute\ta\tb\tc\td\te\nd\n";
    TOV document;
    EXPECT_EQ(document.getErrorList(), nullptr);
    EXPECT_TRUE(document.parseTovFile(path.c_str()));
    EXPECT_TRUE(document.parseTovFile(path.c_str()));
    EXPECT_EQ(bodyOf(document), "set_false_path\n" + rest);
    EXPECT_TRUE(document.load(path.c_str()));
    EXPECT_EQ(bodyOf(document), rest);
    document.dci = new taDci();
    EXPECT_EQ(document.getErrorList(), &document.dci->errors);
    document.reset();
    EXPECT_EQ(document.getErrorList(), nullptr);
    EXPECT_EQ(bodyOf(document), "c\n~\nd\n");
}

TEST(Document, KeepsWhatComesBeforeALineThatEndsALoad) {
    support::TempDir const dir;
    std::string const path =
        support::write(dir / "in", "create_clock -name a\n# c\ncreate_clock -waveform\nset_false_path");
    std::string const line = "create_clock -period 0.000000 -name a\n";
    TOV document;
    EXPECT_THROW(document.load(path.c_str()), std::out_of_range);
    EXPECT_EQ(support::bodyOf(document), line + "# c\n~\n");
    EXPECT_THROW(document.parseTovFile(path.c_str()), std::out_of_range);
    EXPECT_EQ(support::bodyOf(document), line + line + "# c\n~\n");
}

// A caller's class may observe the order in which the commands are saved.
template <class Cmd>
struct Observed : Cmd {
    Observed(char const* line, std::string& log_) : Cmd(line), log(log_) {}
    std::string toSaveString(TOV* document) override {
        log += Cmd::toSaveString(document) + ";";
        return Cmd::toSaveString(document);
    }
    std::string& log;
};

TEST(Document, AsksCallersCommandsInTheOrderOfWriting) {
    std::string log;
    TOV document;
    addCommand(document, TOVCMD_FALSEPATH, std::make_unique<Observed<TovCmdFalsePath>>("set_false_path", log));
    addCommand(document, TOVCMD_MAXDELAY, std::make_unique<TovCmdMaxDelay>("set_max_delay 1"));
    addCommand(document, TOVCMD_CLOCK, std::make_unique<Observed<TovCmdClockDef>>("create_clock", log));
    document.toSaveString();
    EXPECT_EQ(log, "#disable create_clock -period 0.000000;#disable set_false_path;");
}

}  // namespace
