#include <gtest/gtest.h>

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

template <class Record>
Record& add(ppStlList<Record*>& list) {
    list.push_back(new Record());
    return *list.back();
}

std::unique_ptr<taDci> makeDatabase() {
    auto db = std::make_unique<taDci>();
    for (char const* name : {"c1", "g1", static_cast<char const*>(nullptr), static_cast<char const*>(nullptr)}) {
        taDciSynClk& clock = add(db->clocks);
        clock.name = taDciText(name);
        clock.text = taDciText("a note");
        clock.master = db->clocks.size() % 2 == 1 ? 0x80 : 0;
    }
    taDciSynClk& clock = *db->clocks.front();
    clock.period = 3333;
    for (char const* edge : {"0", "no", static_cast<char const*>(nullptr), "1.5"}) {
        clock.waveform.push_back(taDciText(edge));
    }
    clock.targets = refs({"p", "q"}, taDciObjSourcePort);
    taDciSynClk& generated = **std::next(db->clocks.begin());
    generated.masterClock = &clock;
    generated.period = 5;
    generated.divideBy = taDciText("4");
    generated.multiplyBy = taDciText("x2");
    generated.dutyCycle = taDciText("50");
    generated.source = refs({"s"}, taDciObjPin);
    generated.targets = refs({"t"}, taDciObjSourceNet);
    for (bool asynchronous : {false, true}) {
        taDciSynClkGroup& relation = add(db->clockGroups);
        relation.asynchronous = asynchronous;
        relation.text = taDciText("groups");
        relation.groups = {nullptr, new ppStlList<taDciSynClkGroupMember*>(),
                           new ppStlList<taDciSynClkGroupMember*>{nullptr}};
        for (taDciSynClk* member : db->clocks) add(*relation.groups.back()).clock = member;
    }
    for (int direction : {0, 1, 2, -1, 0}) {
        taDciSynIo& io = add(db->ios);
        io.direction = direction;
        io.delay = -1500;
        io.label = taDciText("label");
        io.minMarker = taDciText("");
        io.maxMarker = taDciText("max");
        io.clock = direction == 0 ? nullptr : &clock;
        io.objects = refs({"d"}, taDciObjPort);
    }
    for (char const* marker : {"", "min", static_cast<char const*>(nullptr)}) {
        taDciSynMax& max = add(db->maxs);
        max.delay = std::numeric_limits<int>::min();
        max.minMarker = taDciText(marker);
        max.from = refs({"f"}, taDciObjCell);
        max.to = refs({"t"}, taDciObjPin2);
    }
    for (float multiplier : {2.9F, -1.5F, 1e30F}) {
        taDciSynMcyc& path = add(db->mcycs);
        path.multiplier = multiplier;
        path.note = taDciText("path");
        path.to = refs({"@PO"}, taDciObjPort);
    }
    for (int flag : {0, 1, 255}) {
        taDciSynFalse& path = add(db->falses);
        path.flag = static_cast<unsigned char>(flag);
        path.through = refs({"n"}, taDciObjNet);
        if (flag == 1) path.from = refs({"f"}, taDciObjClock);
    }
    db->clocks.push_back(nullptr);
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
