#include "tov/cmd/references.h"

#include <gtest/gtest.h>

#include "support.h"
#include "tov/edit.h"

namespace {

using namespace kiri::tov;

TEST(References, StandAsTheyAreWritten) {
    support::expectRows("roles", [](std::string const& line) {
        TOV document;
        support::load(document, line);
        std::string text;
        forEachCommand(document, [&text](TOVCMD_TYPE, TovCmd& cmd) {
            for (auto& [role, list] : referencesOf(cmd)) {
                text += (text.empty() ? "" : "|") + (role + ("=" + support::textOf(*list)));
            }
        });
        return text;
    });
    TovCmdClockGroupDef groups(true);
    groups.groups = {nullptr, new ppStlList<taDciObj*>()};
    ASSERT_EQ(referencesOf(groups).size(), 1U);
    EXPECT_EQ(referencesOf(groups)[0].list, groups.groups[1]);
    // A caller's class has the lists of its base class.
    struct OwnDelay : TovCmdIODelay {
        using TovCmdIODelay::TovCmdIODelay;
        std::string toSaveString(TOV*) override { return {}; }
    } delay("set_input_delay 1");
    ASSERT_EQ(referencesOf(delay).size(), 2U);
    EXPECT_EQ(referencesOf(delay)[1].list, &delay.objects);
}

// A class derived from one of the library's has its lists.
TEST(References, OfDerivedClasses) {
    struct Derived : TovCmdFalsePath {
        Derived() : TovCmdFalsePath("set_false_path -from a -through b") {}
    } derived;
    std::vector<TovReferences> const lists = referencesOf(derived);
    ASSERT_EQ(lists.size(), 3U);
    EXPECT_EQ(lists[2].role + std::string(" ") + support::textOf(*lists[2].list), "-through b:59");
}

}  // namespace
