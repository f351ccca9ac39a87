#include "tov/edit.h"

#include "support.h"
#include "tov/check.h"
#include "tov/cmd/references.h"
#include "tov/make_command.h"

namespace {

using namespace kiri::tov;

TEST(Edit, WalksAndAppends) {
    TOV document;
    support::load(document, "#attribute a b c d e\nset_max_delay 1\nset_max_delay 2\ncreate_clock");
    document.getTovCmdList(TOVCMD_MINDELAY)->push_back(nullptr);
    std::string visited;
    forEachCommand(document, [&](TOVCMD_TYPE list, TovCmd& cmd) {
        visited += keywordOf(list) + std::string(" ");
        if (list != TOVCMD_MAXDELAY) return;
        EXPECT_EQ(document.getTovCmdList(list)->front(), &cmd);
        document.getTovCmdList(list)->pop_front();
        delete &cmd;
        // An appended command is visited only if it is in a later list.
        for (TOVCMD_TYPE other : {list, TOVCMD_FALSEPATH}) addCommand(document, other, makeCommand("set_false_path"));
    });
    EXPECT_EQ(visited, "create_clock set_max_delay set_max_delay set_false_path set_false_path #attribute ");
    EXPECT_STREQ(keywordOf(TOVCMD_NONE), "");
    EXPECT_STREQ(keywordOf(static_cast<TOVCMD_TYPE>(support::allLists().back() + 1)), "");
    auto cmd = std::make_unique<TovCmdMaxDelay>(3.0F, nullptr);
    TovCmd* const added = cmd.get();
    EXPECT_EQ(&addCommand(document, TOVCMD_MAXDELAY, std::move(cmd)), added);
    EXPECT_EQ(document.getTovCmdList(TOVCMD_MAXDELAY)->back(), added);
    EXPECT_THROW(addCommand(document, TOVCMD_MAXDELAY, nullptr), std::invalid_argument);
    EXPECT_THROW(addCommand(document, TOVCMD_NONE, makeCommand("set_max_delay")), std::invalid_argument);
}

TEST(Edit, ReplacesReferences) {
    TovCmdFalsePath path("set_false_path -from a");
    replaceReferences(path.from, "[get_ports {b c}]", true);
    EXPECT_EQ(support::textOf(path.from), "b:15 c:15");
    replaceReferences(path.from, "", false);
    EXPECT_TRUE(path.from.empty());
}

TEST(Edit, MakesCommandsAsALoadDoes) {
    support::forEachRow("made", [](std::string const& line, std::string const& expected) {
        TOVCMD_TYPE list = TOVCMD_MINDELAY;
        std::unique_ptr<TovCmd> const cmd = makeCommand(line, &list);
        EXPECT_EQ(makeCommand(line) == nullptr, cmd == nullptr);
        EXPECT_EQ(std::to_string(list) + (cmd == nullptr ? "" : " " + cmd->toSaveString(nullptr)), expected);
    });
    EXPECT_THROW(makeCommand("create_clock -waveform"), std::out_of_range);
}

// Short names are copied differently from long ones.
TEST(Edit, KeepsNamesOfAnyLength) {
    ppStlList<taDciObj*> list;
    for (std::size_t size = 40; size < 260; ++size) {
        std::string const name(size, 'n');
        replaceReferences(list, "[get_ports {" + name + " b}]", false);
        EXPECT_EQ(support::textOf(list), name + ":5 b:5");
    }
    freeDciObjList(list);
}

TEST(Edit, NamesClocks) {
    support::expectRows("clock_names", [](std::string const& line) { return definedClock(*makeCommand(line)); });
}

}  // namespace
