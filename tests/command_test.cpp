// Commands: the lines that they read and write, and the ways to create one.

#include "tov/cmd/commands.h"

#include <gtest/gtest.h>

#include <QByteArray>
#include <cstddef>
#include <memory>
#include <stdexcept>
#include <type_traits>

#include "support.h"
#include "tov/cmd/command_kind_p.h"
#include "tov/cmd/missing_value.h"
#include "tov/edit.h"
#include "tov/make_command.h"

namespace {

using namespace kiri::tov;
using namespace kiri::tov::impl_detail;
using support::bodyOf;

TEST(Commands, ReadAndWriteLines) {
    support::forEachRow("commands", [](auto const& line, auto const& saved) {
        EXPECT_EQ(bodyOf(line), saved + "\n~\n");
        EXPECT_EQ(bodyOf("#disable " + line), "#disable " + saved + "\n~\n");
    });
    try {
        TovCmdClockDef("create_clock a -waveform");
        FAIL();
    } catch (TovMissingValue const& refusal) {
        EXPECT_STREQ(static_cast<std::out_of_range const&>(refusal).what(), "vector::_M_range_check");
    }
    // A class also accepts the keyword of its sibling.
    EXPECT_FALSE(TovCmdInputDelay("set_output_delay").enabled);
    EXPECT_FALSE(TovCmdMinDelay("set_max_delay").enabled);
    EXPECT_TRUE(TovCmdAttr("#attribute a b c d e -disable f").enabled);
}

// A kind's sample makes its command, with each option and object list in it.
TEST(Commands, AreOfTheKindsThatTheirSourcesState) {
    for (CommandKind const& kind : commandKinds) {
        std::string const sample(kind.sample);
        TOVCMD_TYPE list = TOVCMD_NONE;
        std::unique_ptr<TovCmd> const cmd = makeCommand(sample, &list);
        ASSERT_NE(cmd, nullptr) << sample;
        EXPECT_EQ(list, kind.list);
        TovCmd const& made = *cmd;
        EXPECT_EQ(typeid(made), *kind.type) << sample;
        EXPECT_EQ(cmd->toSaveString(nullptr).find(keywordOf(list)), 0U);
        for (auto const& [role, objects] : referencesOf(*cmd)) {
            EXPECT_FALSE(objects->empty()) << sample;
            EXPECT_NE(sample.find(role), sample.npos) << role;
        }
    }
}

// A command is made from any kind of text, and saves the line unless a derived class saves another one.
template <class Cmd>
void checkClass(CommandKind const& kind) {
    std::string const line(kind.sample);
    Cmd command(line);
    std::string const saved = command.toSaveString(nullptr);
    EXPECT_EQ(saved.find("#disable "), kind.list == TOVCMD_ATTRIBUTE ? saved.npos : 0U) << line;
    command.enabled = true;
    EXPECT_EQ(command.toSaveString(nullptr), makeCommand(line)->toSaveString(nullptr));
    std::string text = "before ";
    command.appendSaveString(text);
    EXPECT_EQ(text, "before " + command.toSaveString(nullptr));
    EXPECT_EQ(Cmd(line.c_str()).toSaveString(nullptr), saved);
    EXPECT_EQ(Cmd(QByteArray(line.c_str())).toSaveString(nullptr), saved);
    EXPECT_EQ(Cmd(line + std::string("\0 -to x", 7)).toSaveString(nullptr), saved);
    Cmd empty(static_cast<char const*>(nullptr));
    EXPECT_TRUE(empty.enabled);
    if (kind.list != TOVCMD_ATTRIBUTE) {
        EXPECT_EQ(Cmd("x" + line).toSaveString(nullptr), empty.toSaveString(nullptr));
    }
    struct Derived : Cmd {
        using Cmd::Cmd;
        std::string toSaveString(TOV*) override { return "derived"; }
    };
    TOV document;
    document.getTovCmdList(kind.list)->push_back(new Derived(line));
    EXPECT_NE(bodyOf(document).find("derived\n"), std::string::npos);
}

TEST(Commands, AreMadeFromLines) {
    checkClass<TovCmdClockDef>(clockKind);
    checkClass<TovCmdGenClockDef>(genClockKind);
    checkClass<TovCmdClockGroupDef>(clockGroupKind);
    checkClass<TovCmdInputDelay>(inputDelayKind);
    checkClass<TovCmdOutputDelay>(outputDelayKind);
    checkClass<TovCmdMaxDelay>(maxDelayKind);
    checkClass<TovCmdMinDelay>(minDelayKind);
    checkClass<TovCmdMultiPath>(multiPathKind);
    checkClass<TovCmdFalsePath>(falsePathKind);
    checkClass<TovCmdAttr>(attributeKind);
}

// A relation is a bool; values that convert to bool must be a line, a record or rejected.
template <class From>
constexpr bool makesGroups = std::is_constructible_v<TovCmdClockGroupDef, From>;
static_assert(makesGroups<bool> && makesGroups<char const*> && makesGroups<taDciSynClkGroup*>);
static_assert(!makesGroups<int> && !makesGroups<void*> && !makesGroups<taDciSynClkGroup const*>);
static_assert(!makesGroups<wchar_t const*> && !makesGroups<char16_t const*>);
static_assert(!makesGroups<unsigned char const*> && !makesGroups<std::nullptr_t>);

TEST(Commands, AreMadeFromValues) {
    char note[] = "note";
    std::pair<std::unique_ptr<TovCmd>, char const*> const rows[] = {
        {std::make_unique<TovCmdClockDef>(2.5F, nullptr, note), "create_clock -period 2.500000"},
        {std::make_unique<TovCmdGenClockDef>("g", note), "create_generated_clock -name g"},
        {std::make_unique<TovCmdOutputDelay>(1.0F, "label", note), "set_output_delay 1.000000 "},
        {std::make_unique<TovCmdMaxDelay>(1.0F, note), "set_max_delay 1.000000"},
        {std::make_unique<TovCmdMultiPath>(-2, note), "set_multicycle_path -2"},
        {std::make_unique<TovCmdFalsePath>(&note[0]), "set_false_path"},
    };
    for (auto const& [command, saved] : rows) {
        EXPECT_EQ(command->toSaveString(nullptr), saved);
        EXPECT_EQ(command->note, "note") << saved;
    }
    EXPECT_EQ(TovCmdInputDelay(1.0F, "label", nullptr).label, "label");
    EXPECT_EQ(TovCmdFalsePath(nullptr).note, "");
    TovCmdAttr attribute("a", "b c", "d\"e f", "", "tab\there");
    EXPECT_EQ(attribute.toSaveString(nullptr), "#attribute\ta\t\"b c\"\td\"e f\t\t\"tab\there\"");
}

TEST(Commands, WriteNoNullGroups) {
    TovCmdClockGroupDef groups(false);
    groups.groups = {
        nullptr,
        new ppStlList<taDciObj*>(TovCmd::fromTclString("get_ports {a}", true)),
        new ppStlList<taDciObj*>(TovCmd::fromTclString("get_nets {n o}", true)),
    };
    groups.groups.back()->push_front(nullptr);
    EXPECT_EQ(groups.toSaveString(nullptr),
              "set_clock_groups -asynchronous -group [ get_clocks a  ] -group [ get_clocks { n o } ]");
    groups.reset();
    EXPECT_EQ(groups.toSaveString(nullptr), "set_clock_groups -asynchronous");
}

}  // namespace
