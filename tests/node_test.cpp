// Manually created nodes of a design: their names and buses.

#include <gtest/gtest.h>

#include <sstream>
#include <type_traits>

#include "support.h"
#include "tov/design/design.h"

using namespace kiri::tov;

namespace {

static_assert(!std::is_copy_constructible_v<TovBusPortNode> && sizeof(TovObjType) == 4);
static_assert(TOV_OBJ_PORT == 0, "no reader leaves this number, but callers may compare it");

TEST(Node, HierarchyNames) {
    TovTopNode top("t", "e", "a", "lib");
    TovCellNode plain("u1", &top, CELL_REG, "", "work");
    TovCellNode withArch("u1", &top, CELL_REG, "rtl", "");
    TovCellNode full("u", nullptr, CELL_COMB, "a", "Work");
    TovNetNode net("n", TOV_OBJ_NET, &top);
    TovNetNode orphan("o", TOV_OBJ_NET, nullptr);
    TovPortNode pin("CK", TOV_OBJ_PIN, &withArch);
    TovBusPortNode bus("q[4]", TOV_OBJ_PIN, &plain);
    EXPECT_EQ(top.hierachyName('.'), "");
    EXPECT_EQ(plain.hierachyName('.'), "u1");
    EXPECT_EQ(full.hierachyName(':'), "Work:u:a");
    EXPECT_EQ(net.hierachyName(':'), "n");
    EXPECT_EQ(orphan.hierachyName('/'), "o");
    EXPECT_EQ(pin.hierachyName('.'), "u1/rtl.CK");
    EXPECT_EQ(bus.hierachyName('|'), "u1|q[4:4]");
}

// The base and the index of a bit's name; for any other name both results are unchanged.
std::string bitOf(std::string const& name) {
    int index = -5;
    std::string base = "before";
    bool const isBit = TovBusNode::isBusType(name, &base);
    EXPECT_EQ(TovBusNode::isBusType(name, nullptr), isBit);
    std::string const busName = TovBusNode::getBusName(name, &index);
    EXPECT_TRUE(TovBusNode::getBusName(name, nullptr) == busName);
    EXPECT_TRUE(busName == (isBit ? base : name));
    if (isBit) return base + " " + std::to_string(index);
    return index == -5 && base == "before" ? "no bit" : "changed";
}

TEST(Bus, SplitsBitNames) {
    support::expectRows("bits", bitOf);
    std::string const longName(1000000, '1');
    EXPECT_TRUE(bitOf(longName + "[3]") == longName + " 3");
    EXPECT_EQ(bitOf("a[" + longName + "]"), "a 0");
}

TEST(Bus, WidensAndRenamesUnchecked) {
    support::expectRows("buses", [](std::string const& names) {
        std::istringstream words(names);
        std::string name;
        words >> name;
        bool const wildcard = name[0] == '*';
        TovBusNode bus(name.substr(wildcard ? 1 : 0), wildcard);
        while (words >> name) bus.addToBus(name);
        return bus.name() + "|" + bus.baseName() + "|" + std::to_string(bus.high()) + "|" + std::to_string(bus.low());
    });
    TovBusNode const bus("data[0]", false);
    for (char const* own : {"data", "data[9]"}) EXPECT_TRUE(bus.isCurrentBus(own));
    for (char const* other : {"dat[9]", "data[9][1]", ""}) EXPECT_FALSE(bus.isCurrentBus(other));
}

}  // namespace
