#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <limits>
#include <memory>

#include "support.h"

namespace {

using namespace kiri::tov;

ppStlList<taDciObj*> refs(std::initializer_list<char const*> names, taDciObjTyp type) {
    ppStlList<taDciObj*> list;
    for (char const* name : names) list.push_back(new taDciObj(name, nullptr, type, taDciObjNone));
    return list;
}

// Records in the order of their fields.
std::unique_ptr<taDci> makeDatabase() {
    auto db = std::make_unique<taDci>();
    auto const text = taDciText;
    ppStlList<taDciObj*> const none;
    // clang-format off
    auto* const clock = new taDciSynClk{0, 3333, text("c1"), text("a note"), refs({"p", "q"}, taDciObjSourcePort), 0, 0x80,
                                        nullptr, nullptr, nullptr, {text("0"), text("no"), nullptr, text("1.5")}, none};
    auto* const generated = new taDciSynClk{0, 5, text("g1"), text("a note"), refs({"t"}, taDciObjSourceNet), 0, 0,
                                            text("4"), text("x2"), text("50"), {}, refs({"s"}, taDciObjPin), clock};
    // clang-format on
    db->clocks = {clock, nullptr, generated, new taDciSynClk(), new taDciSynClk()};
    db->clocks.back()->master = 1;
    for (bool asynchronous : {false, true}) {
        auto* const members = new ppStlList<taDciSynClkGroupMember*>{nullptr};
        for (taDciSynClk* member : db->clocks) members->push_back(new taDciSynClkGroupMember{{}, member});
        db->clockGroups.push_back(new taDciSynClkGroup{
            0, asynchronous, {nullptr, new ppStlList<taDciSynClkGroupMember*>(), members}, text("groups")});
    }
    for (int direction : {0, 1, 2, -1, 0}) {
        db->ios.push_back(new taDciSynIo{nullptr, -1500, text("label"), nullptr, text(""), text("max"),
                                         direction == 0 ? nullptr : clock, refs({"d"}, taDciObjPort), direction});
    }
    for (char const* marker : {"", "min", static_cast<char const*>(nullptr)}) {
        db->maxs.push_back(new taDciSynMax{0, std::numeric_limits<int>::min(), refs({"f"}, taDciObjCell),
                                           refs({"t"}, taDciObjPin2), nullptr, text(marker)});
    }
    for (float multiplier : {2.9F, -1.5F, 1e30F}) {
        db->mcycs.push_back(new taDciSynMcyc{0, multiplier, none, refs({"@PO"}, taDciObjPort), text("path")});
    }
    for (std::uint8_t const flag : std::initializer_list<std::uint8_t>{0, 1, 255}) {
        db->falses.push_back(new taDciSynFalse{nullptr, flag == 1 ? refs({"f"}, taDciObjClock) : none, none,
                                               refs({"n"}, taDciObjNet), nullptr, flag});
    }
    return db;
}

TEST(Import, MakesACommandOfEachRecord) {
    TOV document;
    for (bool ioEnabled : {false, true}) document.loadTaObjects(makeDatabase().get(), ioEnabled);
    std::string text;
    for (std::string const& line : support::savedLines(document)) text += line + "\n";
    auto const twice = [](std::string const& lines) { return lines + lines; };
    std::string const groups = " -group -group [ get_clocks { c1 g1   } ]\n";
    std::string const delay = " -max -1.500000";
    std::string const path = " -2147483.750000 -from  [ get_cells { f } ] -to  [ get_pins { t } ]\n";
    EXPECT_EQ(text,
              twice("create_clock -period 3.333000 -waveform { 0.000000 1.500000 } -name c1 [ get_ports { p } ]\n"
                    "create_clock -period 0.000000\n") +
                  twice("create_generated_clock -divide_by 4 -duty_cycle 50.000000 -source [ get_pins { s } ] "
                        "-master_clock [ get_clocks { c1 } ] -name g1 [ get_nets { t } ]\ncreate_generated_clock\n") +
                  twice("set_clock_groups -exclusive" + groups + "set_clock_groups -asynchronous" + groups) +
                  twice("#disable set_input_delay" + delay + "  [ get_ports { d } ]\n") +
                  twice("set_input_delay" + delay + "  [ get_ports { d } ]\n") + "#disable set_output_delay" + delay +
                  " -clock [ get_clocks { c1 } ]  [ get_ports { d } ]\n" + "set_output_delay" + delay +
                  " -clock [ get_clocks { c1 } ]  [ get_ports { d } ]\n" +
                  twice("set_max_delay" + path + "set_max_delay" + path) + twice("set_min_delay" + path) +
                  twice("set_multicycle_path 2 -to  [all_outputs]\nset_multicycle_path -1 -to  [all_outputs]\n"
                        "set_multicycle_path 2147483647 -to  [all_outputs]\n") +
                  twice("set_false_path -from  [ get_clocks { f } ]\nset_false_path -through  [ get_nets { n } ]\n"));
}

// The database is gone here: what the commands hold is theirs, references that no file holds included.
TEST(Import, CopiesAllThatItTakes) {
    TOV document;
    document.loadTaObjects(makeDatabase().get(), true);
    auto const first = [&document](TOVCMD_TYPE type) { return document.getTovCmdList(type)->front(); };
    auto const& clock = dynamic_cast<TovCmdClockDef&>(*first(TOVCMD_CLOCK));
    auto const& generated = dynamic_cast<TovCmdGenClockDef&>(*first(TOVCMD_GENCLOCK));
    auto const& input = dynamic_cast<TovCmdInputDelay&>(*first(TOVCMD_INPUTDELAY));
    auto const& path = dynamic_cast<TovCmdFalsePath&>(*first(TOVCMD_FALSEPATH));
    EXPECT_EQ(support::textOf(clock.targets), "p:15 q:15");
    EXPECT_EQ(clock.note + "/" + generated.multiplyBy + "/" + input.label, "a note/x2/label");
    EXPECT_EQ(support::textOf(generated.masterClock), "c1:14");
    EXPECT_EQ(support::textOf(path.through), "n:2");
    EXPECT_EQ(first(TOVCMD_CLOCKGROUP)->note + first(TOVCMD_MULTICYCLE)->note, "groupspath");
}

}  // namespace
