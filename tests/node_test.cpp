// Nodes of a design made by hand: their names and their buses.

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

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
    struct {
        TovNode const& node;
        char separator;
        char const* name;
    } const rows[] = {
        {top, '.', ""},     {plain, '.', "u1"},      {full, ':', "Work:u:a"}, {net, ':', "n"},
        {orphan, '/', "o"}, {pin, '.', "u1/rtl.CK"}, {bus, '|', "u1|q[4:4]"},
    };
    for (auto const& row : rows) EXPECT_EQ(row.node.hierachyName(row.separator), row.name);
}

TEST(Bus, SplitsBitNames) {
    std::string const longName(1000000, '1');
    std::pair<std::string, std::string> const rows[] = {
        {"a[10]", "a 10"},
        {"m[1][2]", "m[1] 2"},
        {"a[007]", "a 7"},
        {"[[1]", "[ 1"},
        {"a\n[1]", "a\n 1"},
        {"a[2147483647]", "a 2147483647"},
        {"a[2147483648]", "a 0"},
        {longName + "[3]", longName + " 3"},
        {"a[" + longName + "]", "a 0"},
    };
    for (auto const& [name, baseAndIndex] : rows) {
        int index = -5;
        std::string base;
        EXPECT_TRUE(TovBusNode::isBusType(name, &base) && TovBusNode::isBusType(name, nullptr));
        EXPECT_EQ(TovBusNode::getBusName(name, &index), base);
        EXPECT_EQ(TovBusNode::getBusName(name, nullptr), base);
        EXPECT_EQ(base + " " + std::to_string(index), baseAndIndex);
    }
    // clang-format off
    for (std::string const name : {"", "a", "]", "[]", "1]", "a[]", "[3]", "a[-1]", "a[ 1]", "a3]",
                                   "a[3]\n", "a[\xb2]", "a[3", "a[3]]", "a[3]b"}) {
        // clang-format on
        int index = -5;
        std::string base = "before";
        EXPECT_FALSE(TovBusNode::isBusType(name, &base));
        EXPECT_EQ(TovBusNode::getBusName(name, &index), name);
        EXPECT_TRUE(index == -5 && base == "before") << name;
    }
}

TEST(Bus, WidensAndRenamesUnchecked) {
    struct {
        std::string first;
        bool wildcard;
        std::vector<std::string> more;
        std::string bus;  // name, base, high, low
    } const rows[] = {
        {"x[3]", false, {}, "x[3:3] x 3 3"},
        {"x[3]", false, {"x[1]", "x[2]"}, "x[3:1] x 3 1"},
        {"x[3]", false, {"clk"}, "clk[3:0] x 3 0"},
        {"x[3]", false, {"y[8]"}, "y[8:3] x 8 3"},
        {"q[4]", true, {}, "q* q -1 -1"},
        {"q[4]", true, {"q[2]"}, "q[2:2] q 2 2"},
        {"a", false, {}, "  -1 -1"},
        {"a", true, {"a"}, "a[0:0]  0 0"},
    };
    for (auto const& row : rows) {
        TovBusNode bus(row.first, row.wildcard);
        for (auto const& name : row.more) bus.addToBus(name);
        std::ostringstream text;
        text << bus.name() << ' ' << bus.baseName() << ' ' << bus.high() << ' ' << bus.low();
        EXPECT_EQ(text.str(), row.bus);
    }
    TovBusNode const bus("data[0]", false);
    for (char const* own : {"data", "data[9]"}) EXPECT_TRUE(bus.isCurrentBus(own));
    for (char const* other : {"dat[9]", "data[9][1]", ""}) EXPECT_FALSE(bus.isCurrentBus(other));
}

}  // namespace
