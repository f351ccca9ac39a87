// Dumps, and the trees that the reader builds from them.

#include <gtest/gtest.h>

#include <iostream>
#include <sstream>

#include "support.h"
#include "tov/design/mrc_dump_reader.h"

using namespace kiri::tov;
using impl_detail::MrcDumpReader;

namespace {

char const* const types[] = {"no port",   "net",  "pin", "port", "", "cell", "top",  "port clock",
                             "net clock", "view", "ram", "rom",  "", "",     "mult", "clock"};
char const* const cellTypes[] = {"", " comb", " reg", " seq", " pad"};
char const* const directions[] = {"", " in", " out", " inout"};

std::string quoted(char const* word, std::string const& text) {
    return word + (" '" + text + "'");
}

// The library and arch of a cell, if it has them.
std::string placeOf(TovBaseCellNode const& cell) {
    std::string const library = cell.library().empty() ? "" : quoted(" library", cell.library());
    return library + (cell.arch().empty() ? "" : quoted(" arch", cell.arch()));
}

// Each node of a list on its own line.
template <class List>
std::string text(List const& list, TovNode const& parent, char const* indent = "\n") {
    std::string lines;
    for (TovNode const* node : list) {
        EXPECT_EQ(node->parent(), &parent) << node->name();
        lines += indent + quoted(types[node->type()], node->name());
        if (auto const* port = dynamic_cast<TovPortNode const*>(node)) lines += directions[port->direction()];
        if (auto const* cell = dynamic_cast<TovCellNode const*>(node)) {
            lines += cellTypes[cell->cellType()] + placeOf(*cell) + text(cell->clocks(), *cell, "\n  ");
            lines += text(cell->ports(), *cell, "\n  ") + text(cell->nets(), *cell, "\n  ");
        }
    }
    return lines;
}

// The nodes of a tree in file order, each on a line after a line feed.
std::string content(TovTopNode const& top) {
    return text(top.clocks(), top) + text(top.ports(), top) + text(top.nets(), top) + text(top.cells(), top) +
           text(top.views(), top) + text(top.rams(), top) + text(top.roms(), top) + text(top.mults(), top);
}

/// Returns the tree of a dump: the top node and all below it, or "false" and the error text.
std::string read(std::string const& dump, int entityLimit = 0) {
    support::TempDir const dir;
    TovTopNode top("", "", "", "work");
    MrcDumpReader reader(&top);
    if (entityLimit != 0) reader.setEntityExpansionLimit(entityLimit);
    bool const done = reader.doRead(support::write(dir / "dump.xml", dump).c_str());
    EXPECT_EQ(reader.device(), nullptr);
    EXPECT_EQ(reader.hasError(), !done);
    if (!done) return "false " + reader.errorString().toStdString();
    std::string const entry = top.entry().empty() ? "" : quoted(" entry", top.entry());
    return quoted("top", top.name()) + entry + placeOf(top) + content(top);
}

/// A dump whose unit contains `content`.
std::string inUnit(std::string const& content) {
    return "<top name='t'><library><unit>" + content + "</unit></library></top>";
}

// The lines of the nodes below the top node, each after a line feed.
std::string linesOf(std::string const& dump, int entityLimit = 0) {
    std::string const tree = read(dump, entityLimit);
    return tree.substr(std::min(tree.find('\n'), tree.size()));
}

std::string addedBy(std::string const& dump, int entityLimit = 0) {
    std::string const lines = linesOf(dump, entityLimit);
    return lines.empty() ? "" : lines.substr(1);
}

TEST(Reader, GivesTheTree) {
    support::expectRows("dumps", [](std::string const& dump) { return read(dump); });
    support::expectRows("units", [](std::string const& content) { return addedBy(inUnit(content)); });
}

TEST(Reader, TakesEachListOnlyInItsPlaces) {
    support::expectRows("places", [](std::string const& list) {
        std::string const end = "<unit><mults><mult/></mults></unit></library></top>";
        std::string const instance = "<instance>" + list + "</instance>";
        return "in top:" + linesOf("<top>" + list + "<library>" + end) +                  //
               "\nin library:" + linesOf("<top><library>" + list + end) +                 //
               "\nin unit:" + linesOf("<top><library><unit>" + list + "</unit>" + end) +  //
               "\nin instance:" + linesOf("<top><library>" + instance + end);
    });
}

// Large or odd content is still content, within the limits of the XML parser.
TEST(Reader, AltersNothing) {
    std::string quotes = "<x";
    std::string attributes;
    for (int i = 0; i <= 10000; ++i) {
        quotes += " ''";
        attributes += " a" + std::to_string(i) + "=''";
    }
    std::string const name4000(4000, 'n');
    auto const withEntity = [](std::string const& value, std::string const& content) {
        return "<!DOCTYPE top [<!ENTITY e \"" + value + "\">]>" + inUnit(content);
    };
    std::string const use = "<mults><mult name='&e;'/></mults>";
    EXPECT_EQ(addedBy(inUnit("<!--->" + quotes + "--><mults><mult name='b'/></mults>")), "mult 'b'");
    EXPECT_EQ(addedBy(withEntity(quotes, "<mults><mult/></mults>")), "mult ''");
    EXPECT_EQ(addedBy(inUnit("<mults><mult" + attributes + " name='b'/></mults>")), "mult 'b'");
    EXPECT_EQ(addedBy(inUnit("<mults><mult/><mult" + attributes + " bad/><mult/></mults>")), "mult ''");
    EXPECT_EQ(addedBy(withEntity(name4000, use)), quoted("mult", name4000));
    EXPECT_EQ(addedBy(withEntity("12345678901", use), 5), "");
}

TEST(Reader, ForgetsTheFileBefore) {
    support::TempDir const dir;
    TovTopNode top("", "", "", "work");
    MrcDumpReader reader(&top);
    std::string const items = "<pins><pitem name='d[0]'/></pins><nets><nitem name='d[0]'/></nets>";
    std::string const whole = support::write(dir / "whole", inUnit(items));
    std::string const cut = support::write(dir / "cut", "<top><library><unit>" + items);
    for (std::string const& path : {whole, cut, whole}) {
        EXPECT_FALSE(reader.doRead(support::write(dir / "bad", "<x/>").c_str()));
        EXPECT_FALSE(reader.doRead((dir / "none").c_str()));
        EXPECT_FALSE(reader.hasError());
        EXPECT_TRUE(reader.doRead(path.c_str()));
    }
    std::string const pins = "\nport 'd[0]'\nport 'd[0:0]'";
    std::string const nets = "\nnet 'd[0]'\nnet 'd[0:0]'";
    EXPECT_EQ(content(top), pins + pins + pins + nets + nets + nets);
}

TEST(Reader, TreesAreListed) {
    support::expectRows("listing", [](std::string const& content) {
        support::TempDir const dir;
        TovTopNode top("", "", "", "work");
        MrcDumpReader(&top).doRead(support::write(dir / "dump.xml", inUnit(content)).c_str());
        std::ostringstream captured;
        std::streambuf* const console = std::cout.rdbuf(captured.rdbuf());
        top.dump();
        std::cout.rdbuf(console);
        return captured.str();
    });
}

}  // namespace
