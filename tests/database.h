#pragma once

#include <limits>
#include <memory>

#include "support.h"

namespace support {

/// A database of records that differ in the fields that the import reads, in the order of the fields.
inline std::unique_ptr<taDci> makeDatabase() {
    using Members = ppStlList<taDciSynClkGroupMember*>;
    auto const text = taDciText;
    auto const refs = [](char const* expression) { return kiri::tov::TovCmd::fromTclString(expression, true); };
    ppStlList<taDciObj*> const none;
    auto db = std::make_unique<taDci>();
    // clang-format off
    db->errors.push_back(text("an error"));
    auto* const clock = new taDciSynClk{
        0, 3333, text("a_clock_of_a_name_that_no_small_text_could_hold"), nullptr,
        refs("get_ports {p q}"), 0, 0x80, nullptr, nullptr, nullptr,
        {text("0"), text("no"), nullptr, text("1.5")}, none, nullptr};
    auto* const generated = new taDciSynClk{
        0, 5, text("g1"), text("clock"),
        refs("get_nets t"), 0, 0, text("4"), text("x2"), text("50"),
        {}, refs("get_pins s"), clock};
    // clang-format on
    db->clocks = {clock, nullptr, generated, new taDciSynClk(), new taDciSynClk()};
    db->clocks.back()->master = 1;
    for (int const asynchronous : {0, 1, 2}) {  // its lowest bit counts
        auto* const members = new Members{nullptr};
        for (taDciSynClk* member : db->clocks) {
            members->push_back(new taDciSynClkGroupMember{{}, member});
        }
        db->clockGroups.push_back(new taDciSynClkGroup{
            0, static_cast<unsigned char>(asynchronous), {nullptr, new Members(), members}, text("groups")});
    }
    for (int direction : {-1, 0, 1, 2}) {
        char const* const min = direction == 0 ? "min" : "";
        char const* const max = direction == 0 ? "" : "max";
        db->ios.push_back(new taDciSynIo{nullptr, -1500, text("label"), text("io"), text(min), text(max),
                                         direction == 0 ? nullptr : clock, refs("get_cells d"), direction});
    }
    for (char const* marker : {"", "min", static_cast<char const*>(nullptr)}) {
        db->maxs.push_back(
            new taDciSynMax{0, 16777219, refs("get_cells f"), refs("get_pins t"), text("max"), text(marker)});
    }
    for (float multiplier : {2.9F, -1.5F, 1e30F, std::numeric_limits<float>::quiet_NaN()}) {
        db->mcycs.push_back(new taDciSynMcyc{0, multiplier, none, refs("get_ports @PO"), text("path")});
    }
    for (int flag : {0, 1, 255}) {
        db->falses.push_back(new taDciSynFalse{nullptr, flag == 1 ? refs("get_clocks f") : none,
                                               flag == 1 ? refs("get_clocks t") : none, refs("get_cells n"),
                                               text("false"), static_cast<unsigned char>(flag)});
    }
    return db;
}

}  // namespace support
