// Words and the nodes of a design that they match.

#include "tov/names/design_names.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <memory>
#include <thread>

#include "support.h"

using namespace kiri::tov;

namespace {

std::string const page = support::read(TEST_DATA "/../../docs/names.md");

std::map<std::string, taDciObjTyp> const types = {
    {"port", taDciObjPort}, {"pin", taDciObjPin},     {"net", taDciObjNet},
    {"cell", taDciObjCell}, {"clock", taDciObjClock}, {"any", taDciObjName},
};

/// The design of docs/names.md.
TovDesign const& design() {
    static TovDesign const instance;
    static bool const loaded = [] {
        support::TempDir const dir;
        std::size_t const begin = page.find("<top ");
        std::string const dump = page.substr(begin, page.find("</top>") + 6 - begin);
        return const_cast<TovDesign&>(instance).load(support::write(dir / "dump", dump).c_str());
    }();
    EXPECT_TRUE(loaded);
    return instance;
}

/// The names of the nodes as the page has them, in UTF-8.
std::string listOf(TovDesignNames const& names, std::vector<TovNode const*> const& nodes) {
    std::string list;
    for (TovNode const* node : nodes) {
        list += list.empty() ? "`" : ", `";
        for (char const c : names.nameOf(*node) + "`") {
            if (c == '\xfc') list += '\xc3';
            list += c == '\xfc' ? '\xbc' : c;
        }
    }
    return list.empty() ? "nothing" : list;
}

std::vector<std::string> cellsOf(std::string const& row) {
    std::vector<std::string> cells;
    for (std::size_t at = 2; at < row.size();) {
        std::size_t const end = row.find(" |", at);
        cells.push_back(row.substr(at, end - at));
        at = end + 3;
    }
    return cells;
}

TEST(DesignNames, AreFoundAsThePageHasIt) {
    TovDesignNames const names(design());
    std::istringstream lines(page);
    taDciObjTyp type = taDciObjNone;
    int rows = 0;
    for (std::string line; std::getline(lines, line);) {
        if (line.rfind("| ", 0) != 0) continue;
        std::vector<std::string> const cells = cellsOf(line);
        if (line[2] != '`') type = cells.size() == 4 ? types.at(cells[0]) : taDciObjNone;
        if (line[2] != '`' || type == taDciObjNone) continue;
        std::string const word = cells[0].substr(1, cells[0].size() - 2);
        for (int match = 0; match < 3; ++match, ++rows) {
            std::vector<TovNode const*> nodes(1);
            std::size_t const count = names.find(type, word, nodes, static_cast<TovNameMatch>(match));
            EXPECT_EQ(listOf(names, nodes), cells[static_cast<std::size_t>(match) + 1]) << word << match;
            EXPECT_EQ(count, nodes.size());
            EXPECT_EQ(names.has(type, word, static_cast<TovNameMatch>(match)), count > 0) << word;
        }
    }
    EXPECT_GT(rows, 150);
}

TEST(DesignNames, AreFoundByTheirTypes) {
    TovDesignNames const names(design());
    auto const count = [&](int type, char const* word = "*", int match = TOVMATCH_FLAT) {
        std::vector<TovNode const*> nodes(1);
        return names.find(static_cast<taDciObjTyp>(type), word, nodes, static_cast<TovNameMatch>(match));
    };
    EXPECT_EQ(count(taDciObjSourcePort), 8U);
    EXPECT_EQ(count(taDciObjPin2), 11U);
    EXPECT_EQ(count(taDciObjSourceNet), 3U);
    EXPECT_EQ(count(taDciObjName), 8U + 11U + 3U + 5U + 3U);
    EXPECT_EQ(count(taDciObjNone) + count(1) + count(60), 0U);
    EXPECT_EQ(count(taDciObjPin, "lvl/*", 7), 2U);
    EXPECT_EQ(count(taDciObjPin, "/u1/r0/rtl/CK"), 0U);  // the library of u1/r0 is not shown
    for (char const* word : {"", "\\", "[get_ports *]", "$*", "@*", "-*"}) {
        EXPECT_FALSE(TovDesignNames::isName(word));
        EXPECT_EQ(count(taDciObjName, word), 0U) << word;
    }
    EXPECT_TRUE(TovDesignNames::isName("\\-") && TovDesignNames::isName(" "));
}

TEST(DesignNames, AreNamedSoThatTheyAreFound) {
    TovDesignNames const names(design());
    std::vector<TovNode const*> all;
    names.find(taDciObjName, "*", all, TOVMATCH_FLAT);
    for (TovNode const* node : all) {
        std::vector<TovNode const*> found;
        names.find(taDciObjName, names.nameOf(*node), found);
        EXPECT_EQ(std::count(found.begin(), found.end(), node), 1) << names.nameOf(*node);
    }
    struct {
        char const* name;
        char const* word;
    } const rows[] = {{"-t.o*p", "\\-t/o\\*p"}, {"[a[0]", "\\[a[0]"}, {"$a$", "\\$a$"},
                      {"@a@", "\\@a@"},         {"?\\-", "\\?\\\\-"}, {"", ""}};
    for (auto const& [name, word] : rows) EXPECT_EQ(names.nameOf(TovTopNode(name, "", "", "")), word);
}

TEST(DesignNames, AreSuggested) {
    TovDesignNames const names(design());
    support::expectRows("nearest", [&](std::string const& row) {
        std::size_t const blank = row.find(' ');
        return names.nearest(types.at(row.substr(0, blank)), row.substr(blank + 1));
    });
    EXPECT_EQ(names.nearest(taDciObjNone, "clk"), "");
    EXPECT_EQ(names.nearest(taDciObjPin, "lvl/cnod"), "");  // a cell

    support::TempDir const dir;
    std::string const longest(1000, 'a');
    TovDesign other;
    other.load(support::write(dir / "dump",
                              "<top name='t'><library><unit><pins><pitem name='a*'/><pitem name='aZ'/><pitem name='" +
                                  longest + "'/></pins><instance name='t.a.b.c.d.e.f'/></unit></library></top>")
                   .c_str());
    TovDesignNames const others(other);
    EXPECT_EQ(others.nearest(taDciObjPort, "ab"), "aZ");  // before "a\*"
    EXPECT_EQ(others.nearest(taDciObjPort, "b" + longest.substr(1)), longest);
    EXPECT_EQ(others.nearest(taDciObjPort, longest + 'a'), "");
    EXPECT_EQ(others.nearest(taDciObjCell, "a/b/c/d/e/x"), "a/b/c/d/e/f");
}

TEST(DesignNames, TellProgressAndStop) {
    support::TempDir const dir;
    std::string ports;
    for (int i = 0; i < 60'000; ++i) ports += "<instance><pins><pitem name='a'/></pins></instance>";
    TovDesign large;
    large.load(support::write(dir / "dump", "<top><library>" + ports + "</library></top>").c_str());
    auto index = [&](auto progress) {
        TovDesignNames const names(large, progress);
        EXPECT_EQ(names.has(taDciObjCell, "*"), names.complete());
        return names.complete();
    };
    support::Calls calls;
    EXPECT_TRUE(index(std::ref(calls)));
    EXPECT_TRUE(calls.read == 120'000 && calls.size == 120'000 && calls.count > 3) << calls.read;
    support::expectStops(calls.count, index, [](bool) {});
    TovDesignNames const none{TovDesign()};
    EXPECT_TRUE(none.complete() && !none.has(taDciObjName, "*") && none.nearest(taDciObjName, "a").empty());
}

TEST(DesignNames, AnswerManyThreads) {
    TovDesignNames const names(design());
    auto const ask = [&] {
        std::string answers;
        for (char const* word : {"u1/r0/CK", "*/*", "d[1:0]", "u?", "CK"}) {
            for (int match = 0; match < 3; ++match) {
                std::vector<TovNode const*> nodes;
                names.find(taDciObjName, word, nodes, static_cast<TovNameMatch>(match));
                answers += listOf(names, nodes) + names.nearest(taDciObjName, word + std::string("x"));
            }
        }
        return answers;
    };
    std::string const expected = ask();
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) threads.emplace_back([&] { EXPECT_EQ(ask(), expected); });
    for (std::thread& thread : threads) thread.join();
}

// A pattern with very many possible matches.
TEST(DesignNames, MatchHostilePatterns) {
    support::TempDir const dir;
    std::string const name(20'000, 'a');
    TovDesign large;
    large.load(support::write(dir / "dump", "<top><library><instance name='" + name + "'><pins><pitem name='" + name +
                                                "'/></pins></instance></library></top>")
                   .c_str());
    TovDesignNames const names(large);
    std::string stars;
    for (int i = 0; i < 200; ++i) stars += "*a**";
    EXPECT_TRUE(names.has(taDciObjPin, stars + "/" + stars));
    for (int match = 0; match < 3; ++match) {
        EXPECT_FALSE(names.has(taDciObjPin, stars + "b/" + stars, static_cast<TovNameMatch>(match)));
        EXPECT_FALSE(names.has(taDciObjName, stars + "b", static_cast<TovNameMatch>(match)));
        EXPECT_EQ(names.has(taDciObjPin, stars, static_cast<TovNameMatch>(match)), match != TOVMATCH_LEVELS);
        EXPECT_FALSE(names.has(taDciObjPin, std::string(1'000'000, '/'), static_cast<TovNameMatch>(match)));
    }
}

}  // namespace
