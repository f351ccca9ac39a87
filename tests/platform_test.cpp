#include <gtest/gtest.h>

#include <cmath>
#include <locale>
#include <random>
#include <thread>
#include <type_traits>

#include "platform/dci.h"
#include "platform/ut.h"

namespace {

TEST(Utilities, FormatsAsPrintfDoes) {
    std::vector<double> values = {0.0, -0.0, 0.5e-6, 1.5e-6, -2.5e-6,  0.1,       2.675,
                                  9e9, 1e15, 1e300,  -1e39,  HUGE_VAL, -HUGE_VAL, std::nan("")};
    std::mt19937 engine(7);
    for (int i = 0; i < 60000; ++i) {
        double const value = std::ldexp(engine(), static_cast<int>(engine() % 60) - 50);
        values.push_back(i % 2 == 0 ? -value : static_cast<float>(value));
        values.push_back(static_cast<float>(engine() % 4096) / 128.0F / 1e4F);
    }
    for (double value : values) {
        char expected[400];
        std::snprintf(expected, sizeof expected, "a %f b", value);
        ASSERT_STREQ(neoform("a %f b", value), expected);
    }
    EXPECT_STREQ(neoform("%d%%%d", -2147483647 - 1, 7), "-2147483648%7");
    EXPECT_STREQ(neoform("%s|%5.2f|%-4d|%x|%c|%ld", "text", 1.25, 3, 255U, 'c', 5L), "text| 1.25|3   |ff|c|5");
    EXPECT_STREQ(neoform(""), "");
    EXPECT_EQ(neoform("%"), nullptr);
    EXPECT_EQ(neoform(nullptr), nullptr);
}

// On a new thread, whose text is created and grows.
TEST(Utilities, FormatsTextsOfAnyLength) {
    for (std::size_t size : {511U, 512U, 513U, 100000U}) {
        std::string const part(size, 'x');
        std::thread([&] {
            EXPECT_EQ(neoform("%s", part.c_str()), part);
            EXPECT_EQ(neoform((part + "%d" + part + "%d").c_str(), 1, 2), part + "1" + part + "2");
        }).join();
    }
}

TEST(Utilities, TextOfAThreadStaysWhileAnotherFormats) {
    char const* const mine = neoform("%d", 1);
    std::thread([] { neoform("%d", 2); }).join();
    EXPECT_STREQ(mine, "1");
}

TEST(Utilities, ComparesWithoutCase) {
    EXPECT_EQ(ut_stricmp("@AbyZ[", "@aBYz["), 0);
    EXPECT_LT(ut_stricmp("[", "a"), 0);
    EXPECT_NE(ut_stricmp("@", "`"), 0);
    EXPECT_NE(ut_stricmp("[", "{"), 0);
    EXPECT_GT(ut_stricmp("ab", "A"), 0);
    EXPECT_NE(ut_stricmp("\xc4", "\xe4"), 0);
    EXPECT_EQ(ut_stricmp(nullptr, ""), 0);
    EXPECT_EQ(ut_stricmp("", nullptr), 0);
    EXPECT_EQ(ut_strincmp("GET_portsX", "get_ports", 9), 0);
    EXPECT_NE(ut_strincmp("get_port", "get_ports", 9), 0);
}

TEST(List, KeepsItsLinksThroughEveryOperation) {
    using List = ppStlList<char>;
    static_assert(std::is_nothrow_move_constructible_v<List>);
    auto const text = [](List const& list) {
        std::string const forward(list.begin(), list.end());
        EXPECT_EQ(std::string(list.rbegin(), list.rend()), std::string(forward.rbegin(), forward.rend()));
        EXPECT_EQ(list.size(), forward.size());
        return forward + "/";
    };
    List a{'1', '2'};
    a.push_front('0');
    a.push_back('3');
    EXPECT_EQ(*a.insert(std::next(a.begin()), '4'), '4');
    EXPECT_EQ(*a.erase(a.begin()), '4');
    List b(a);
    List c(std::move(a));
    EXPECT_EQ(text(a) + text(b) + text(c), "/4123/4123/");
    b.pop_back();
    b.pop_front();
    a.swap(b);
    EXPECT_EQ(text(a) + text(b), "12//");
    b = a;
    a = std::move(c);
    EXPECT_EQ(text(a) + text(b) + text(c), "4123/12//");
    auto& self = a;
    a = self;
    a = std::move(self);
    a.swap(self);
    EXPECT_EQ(a.erase(std::next(a.begin()), std::prev(a.end())), std::prev(a.end()));
    EXPECT_EQ(text(a), "43/");
    a.clear();
    EXPECT_TRUE(a.empty());
}

// Short names are stored in the object reference, long ones outside.
TEST(Records, CopyAndOwnTheirTexts) {
    for (std::size_t size : {0U, 43U, 44U, 5000U}) {
        std::string const name(size, 'n');
        auto* first = new taDciObj(name.c_str(), "text", taDciObjPort, taDciObjCell);
        taDciObj copy(first);
        delete first;
        EXPECT_EQ(copy.name, name);
        EXPECT_EQ(copy.type, 5);
    }
    taDciObj unnamed(nullptr, nullptr, taDciObjName, taDciObjNone);
    EXPECT_EQ(taDciObj(&unnamed).name, nullptr);
    EXPECT_EQ(taDciText(nullptr), nullptr);
}

}  // namespace
