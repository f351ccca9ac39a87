#include "tov/cmd/references.h"

#include <gtest/gtest.h>

#include "support.h"

namespace {

using namespace kiri::tov;

TEST(References, StandAsTheyAreWritten) {
    support::expectRows("roles", [](std::string const& line) {
        TOV document;
        support::load(document, line);
        std::string text;
        for (int kind = TOVCMD_CLOCK; kind <= TOVCMD_ATTRIBUTE; ++kind) {
            for (TovCmd* cmd : *document.getTovCmdList(static_cast<TOVCMD_TYPE>(kind))) {
                for (auto& [role, list] : referencesOf(*cmd)) {
                    text += (text.empty() ? "" : "|") + (role + ("=" + support::textOf(*list)));
                }
            }
        }
        return text;
    });
    TovCmdClockGroupDef groups(true);
    groups.groups = {nullptr, new ppStlList<taDciObj*>()};
    ASSERT_EQ(referencesOf(groups).size(), 1U);
    EXPECT_EQ(referencesOf(groups)[0].list, groups.groups[1]);
}

}  // namespace
