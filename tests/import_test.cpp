#include <gtest/gtest.h>

#include "database.h"

namespace {

using namespace kiri::tov;

// The database is deleted before the document is examined: the commands must own what they hold.
TEST(Import, MakesACommandOfEachRecord) {
    std::string const expected = support::read(TEST_DATA "/imported");
    TOV document;
    document.loadTaObjects(support::makeDatabase().get(), true);
    EXPECT_EQ(support::bodyOf(document), expected);
    document.loadTaObjects(support::makeDatabase().get(), false);
    std::string const text = support::bodyOf(document);
    EXPECT_EQ(text.size(), 2 * expected.size() - 2 + 2 * std::string("#disable ").size());
    EXPECT_NE(text.find("\n#disable set_input_delay -min"), std::string::npos);
    EXPECT_NE(text.find("\n#disable set_output_delay -max"), std::string::npos);
}

template <class Cmd>
Cmd& first(TOV& document, TOVCMD_TYPE list) {
    return dynamic_cast<Cmd&>(*document.getTovCmdList(list)->front());
}

TEST(Import, CopiesWhatNoFileHolds) {
    using support::textOf;
    TOV document;
    document.loadTaObjects(support::makeDatabase().get(), true);
    EXPECT_EQ(textOf(first<TovCmdClockDef>(document, TOVCMD_CLOCK).targets), "p:15 q:15");
    EXPECT_EQ(first<TovCmdGenClockDef>(document, TOVCMD_GENCLOCK).multiplyBy, "x2");
    EXPECT_EQ(first<TovCmdInputDelay>(document, TOVCMD_INPUTDELAY).label, "label");
    EXPECT_EQ(textOf(first<TovCmdFalsePath>(document, TOVCMD_FALSEPATH).through), "n:7");
    std::string notes;
    for (int list = TOVCMD_CLOCK; list <= TOVCMD_FALSEPATH; ++list) {
        notes += first<TovCmd>(document, static_cast<TOVCMD_TYPE>(list)).note + ";";
    }
    EXPECT_EQ(notes, ";clock;groups;io;io;max;max;path;false;");
}

}  // namespace
