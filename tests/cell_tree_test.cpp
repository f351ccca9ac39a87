// The tree of cells, and the walk that matches words with its levels.

#include "tov/names/cell_tree_p.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tov/names/tree_walk_p.h"

namespace {

using namespace kiri::tov::impl_detail;

class Tree : public testing::Test {
protected:
    /// The names must outlive the tree.
    static CellTree treeOf(std::vector<std::string> const& names) {
        CellTreeBuilder builder(names.size());
        for (std::string const& name : names) builder.add(name);
        return builder.build();
    }

    static std::string pathsOf(CellTree const& tree, CellTree::Range nodes) {
        std::string text;
        for (; nodes.size() > 0; ++nodes.begin) text += "'" + tree.path(nodes.begin) + "' ";
        return text;
    }
};

TEST_F(Tree, NumbersNodesLevelByLevel) {
    std::vector<std::string> const names = {"u2.b", "u1", "u2/a", "", "u2.a", "u2..x", "u10"};
    CellTree const tree = treeOf(names);
    std::string text;
    for (CellTree::Id node = 0; node < tree.size(); ++node) {
        text += tree.path(tree.parent(node)) + "|" + tree.path(node);
        for (std::uint32_t const cell : tree.cells(node)) text += " " + std::to_string(cell);
        text += "\n";
    }
    EXPECT_EQ(text, "|\n| 3\n|u1 1\n|u10 6\n|u2\nu2|u2/\nu2|u2/a 2 4\nu2|u2/b 0\nu2/|u2//x 5\n");
    EXPECT_EQ(pathsOf(tree, tree.children(CellTree::root)), "'' 'u1' 'u10' 'u2' ");
    EXPECT_EQ(pathsOf(tree, tree.children(tree.children(CellTree::root))), "'u2/' 'u2/a' 'u2/b' ");
    struct {
        char const* prefix;
        char const* nodes;
    } const prefixes[] = {{"u1", "'u1' 'u10' "}, {"u", "'u1' 'u10' 'u2' "}, {"u100", ""}, {"v", ""}, {"t", ""}};
    for (auto const& [prefix, nodes] : prefixes)
        EXPECT_EQ(pathsOf(tree, tree.withPrefix(tree.children(CellTree::root), prefix)), nodes);
    CellTree::Id const block = tree.child(CellTree::root, "u2", PathHash("u2"));
    EXPECT_EQ(tree.path(tree.child(block, "b", PathHash("b"))), "u2/b");
    EXPECT_EQ(tree.child(block, "u1", PathHash("u1")), CellTree::none);
    EXPECT_EQ(tree.withText({0, tree.size()}, PathHash("x")).size(), 1U);
}

// Texts whose hashes have the same prefix are distinguished, and so are equal texts in different blocks.
TEST_F(Tree, FindsEachOfManyChildren) {
    std::vector<std::string> names;
    for (int i = 1000; i < 3000; ++i) names.push_back((i % 2 == 0 ? "u1." : "u2.") + std::to_string(i / 2));
    CellTree const tree = treeOf(names);
    for (std::uint32_t cell = 0; cell < names.size(); ++cell) {
        std::string const block = names[cell].substr(0, 2);
        std::string const text = names[cell].substr(3);
        CellTree::Id const node = tree.child(tree.child(CellTree::root, block, PathHash(block)), text, PathHash(text));
        ASSERT_NE(node, CellTree::none) << names[cell];
        Span<CellTree::Id> const equal = tree.withText({0, tree.size()}, PathHash(text));
        EXPECT_GE(equal.size(), 2U) << "one in each block";
        EXPECT_TRUE(std::is_sorted(equal.begin(), equal.end()));
        EXPECT_EQ(tree.cells(node).size(), 1U);
        EXPECT_EQ(*tree.cells(node).begin(), cell);
    }
}

// If more siblings match than nodes have the text of a later level, only those nodes are tried.
TEST_F(Tree, IsWalkedWhereAWordMayFit) {
    std::vector<std::string> const names = {"u1.a", "u1.b", "u2.a", "u3.a", "u4.b", "u5.a", "v.a.c", "v.b.c", "v.c"};
    CellTree const tree = treeOf(names);
    struct {
        char const* word;
        bool crosses;
        char const* nodes;  // "!" after those that the whole word fits
        std::size_t until = std::string::npos;
    } const walks[] = {
        {"u?/b", false, "u1 u2 u3 u4 u5 ", 3},
        {"v/?/c", false, "v v/a v/b v/c ", 4},
        {"u2/a", false, "u2 u2/a! "},
        {"u2/a", true, "u2 u2/a! "},
        {"u2/x", false, "u2 "},
        {"u?/b", false, "u1/b! u4/b! "},
        {"?/*/c", false, "v/a/c! v/b/c! "},
        {"u[12]/*", false, ""},
        {"u1/?", false, "u1 u1/a! u1/b! "},
        {"*/*/*/*", false, ""},
        {"u?", false, "u1! u2! u3! u4! u5! "},
        {"u1*b", true, "u1 u1/a u1/b! "},
        {"v*c", true, "v v/a v/a/c! v/b v/b/c! v/c! "},
        {"v?a?c", true, "v v/a v/a/c! "},
        {"v/a*c*", true, "v v/a v/a/c! "},
    };
    for (auto const& [text, crosses, nodes, until] : walks) {
        NameWord const word(text);
        TreeWalk walk(tree, word, NameWord::start(crosses), until);
        std::string visited;
        while (walk.next()) {
            std::string const path = tree.path(walk.node());
            visited += path + (word.accepts(walk.match()) ? "! " : " ");
            Match const whole = word.advance(NameWord::start(crosses), path);
            EXPECT_EQ(walk.match().at, whole.at);
            EXPECT_TRUE(!crosses || walk.match().starEnd == whole.starEnd) << path;
        }
        EXPECT_EQ(visited, nodes) << text << crosses;
    }
    NameWord const any("*");
    TreeWalk walk(tree, any, NameWord::start(true), std::string::npos);
    int visited = 0;
    for (; walk.next(); ++visited) walk.skipBelow();
    EXPECT_EQ(visited, 6);
}

}  // namespace
