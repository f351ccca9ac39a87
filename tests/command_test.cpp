// Commands: the lines they read and write, and the ways to make one.

#include "tov/cmd/commands.h"

#include <gtest/gtest.h>

#include <QByteArray>
#include <cstddef>
#include <memory>
#include <stdexcept>
#include <type_traits>

#include "support.h"

namespace {

using namespace kiri::tov;
using support::bodyOf;

TEST(Commands, ReadAndWriteLines) {
    support::forEachRow("commands", [](auto const& line, auto const& saved) {
        EXPECT_EQ(bodyOf(line), saved + "\n~\n");
        EXPECT_EQ(bodyOf("#disable " + line), "#disable " + saved + "\n~\n");
    });
    EXPECT_THROW(TovCmdClockDef("create_clock a -waveform"), std::out_of_range);
    // A class takes the keyword of its sibling as its own.
    EXPECT_FALSE(TovCmdInputDelay("set_output_delay").enabled);
    EXPECT_FALSE(TovCmdMinDelay("set_max_delay").enabled);
    EXPECT_TRUE(TovCmdAttr("#attribute a b c d e -disable f").enabled);
}

// A command is made from any kind of text, and saves the line unless a class derived from its own has another one.
template <class Cmd>
void checkClass(TOVCMD_TYPE list, std::string const& line, std::string const& prefix = "#disable ") {
    Cmd command(line);
    std::string const saved = command.toSaveString(nullptr);
    EXPECT_EQ(saved, prefix + line);
    std::string text = "before ";
    command.appendSaveString(text);
    EXPECT_EQ(text, "before " + saved);
    EXPECT_EQ(Cmd(line.c_str()).toSaveString(nullptr), saved);
    EXPECT_EQ(Cmd(QByteArray(line.c_str())).toSaveString(nullptr), saved);
    EXPECT_EQ(Cmd(line + std::string("\0 -to x", 7)).toSaveString(nullptr), saved);
    Cmd empty(static_cast<char const*>(nullptr));
    EXPECT_TRUE(empty.enabled);
    if (list != TOVCMD_ATTRIBUTE) {
        EXPECT_EQ(Cmd("x" + line).toSaveString(nullptr), empty.toSaveString(nullptr));
    }
    struct Derived : Cmd {
        using Cmd::Cmd;
        std::string toSaveString(TOV*) override { return "derived"; }
    };
    TOV document;
    document.getTovCmdList(list)->push_back(new Derived(line));
    EXPECT_NE(bodyOf(document).find("derived\n"), std::string::npos);
}

TEST(Commands, AreMadeFromLines) {
    checkClass<TovCmdClockDef>(TOVCMD_CLOCK, "create_clock -period 1.000000");
    checkClass<TovCmdGenClockDef>(TOVCMD_GENCLOCK, "create_generated_clock -name a");
    checkClass<TovCmdClockGroupDef>(TOVCMD_CLOCKGROUP, "set_clock_groups -asynchronous");
    checkClass<TovCmdInputDelay>(TOVCMD_INPUTDELAY, "set_input_delay 1.000000 ");
    checkClass<TovCmdOutputDelay>(TOVCMD_OUTPUTDELAY, "set_output_delay 1.000000 ");
    checkClass<TovCmdMaxDelay>(TOVCMD_MAXDELAY, "set_max_delay 1.000000");
    checkClass<TovCmdMinDelay>(TOVCMD_MINDELAY, "set_min_delay 1.000000");
    checkClass<TovCmdMultiPath>(TOVCMD_MULTICYCLE, "set_multicycle_path 1");
    checkClass<TovCmdFalsePath>(TOVCMD_FALSEPATH, "set_false_path -to  a");
    checkClass<TovCmdAttr>(TOVCMD_ATTRIBUTE, "#attribute\ta\tb\tc\td\te\t-disable", "");
}

// A relation is a bool; what a bool could be made from is a line, a record or nothing.
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
