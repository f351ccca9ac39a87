// Dumps, and the trees that the reader makes of them.

#include <gtest/gtest.h>

#include <iostream>
#include <sstream>

#include "support.h"
#include "tov/design/mrc_dump_reader.h"

using namespace kiri::tov;
using impl_detail::MrcDumpReader;

namespace {

template <class List>
std::string text(char const* label, List const& list, TovNode const* parent) {
    std::string line = list.empty() ? "" : label;
    for (TovNode const* node : list) {
        EXPECT_EQ(node->parent(), parent) << node->name();
        line += " " + node->name() + ":" + std::to_string(node->type());
        auto const* const port = dynamic_cast<TovPortNode const*>(node);
        if (port != nullptr) line += ":" + std::to_string(port->direction());
    }
    return line;
}

std::string content(TovBaseCellNode const& cell) {
    std::string const line = cell.library() + "," + cell.arch() + text(" C", cell.clocks(), &cell);
    return line + text(" P", cell.ports(), &cell) + text(" N", cell.nets(), &cell);
}

/// A tree in file order: "name,entry,library,arch C clocks P ports N nets / cells V views ...".
std::string text(TovTopNode const& top) {
    std::string line = top.name() + "," + top.entry() + "," + content(top);
    for (TovCellNode const* cell : top.cells()) {
        EXPECT_TRUE(cell->type() == TOV_OBJ_CELL && cell->parent() == &top);
        line += " / " + cell->name() + "," + std::to_string(cell->cellType()) + ",";
        line += content(*cell);
    }
    line += text(" V", top.views(), &top) + text(" R", top.rams(), &top);
    return line + text(" O", top.roms(), &top) + text(" M", top.mults(), &top);
}

/// What a dump gives: its tree, or "false" and the error text.
std::string read(std::string const& dump, int entityLimit = 0) {
    support::TempDir const dir;
    TovTopNode top("", "", "", "work");
    MrcDumpReader reader(&top);
    if (entityLimit != 0) reader.setEntityExpansionLimit(entityLimit);
    bool const done = reader.doRead(support::write(dir / "dump.xml", dump).c_str());
    EXPECT_EQ(reader.device(), nullptr);
    EXPECT_EQ(reader.hasError(), !done);
    return done ? text(top) : "false " + reader.errorString().toStdString();
}

/// A dump of the tree "t,E,L,A" and what `content` adds.
std::string inUnit(std::string const& content) {
    std::string const top = "<top name='t' library='L' arch='A' entry='E'>";
    return top + "<library><unit>" + content + "</unit></library></top>";
}

// What a dump gives, without the first words of the top cell.
std::string addedBy(std::string const& dump, int entityLimit = 0) {
    std::string const tree = read(dump, entityLimit);
    return tree.substr(tree.find(' ') + 1);
}

TEST(Reader, GivesTheTree) {
    support::expectRows("dumps", [](std::string const& dump) { return read(dump); });
    support::expectRows("units", [](std::string const& content) { return addedBy(inUnit(content)); });
}

TEST(Reader, TakesEachListOnlyInItsPlaces) {
    support::expectRows("places", [](std::string const& list) {
        std::string const end = "<unit><mults><mult/></mults></unit></library></top>";
        std::string const instance = "<instance>" + list + "</instance>";
        return addedBy("<top>" + list + "<library>" + end) + "\n" + addedBy("<top><library>" + list + end) + "\n" +
               addedBy("<top><library><unit>" + list + "</unit>" + end) + "\n" +
               addedBy("<top><library>" + instance + end);
    });
}

// What is large or looks odd is content all the same, as far as the XML parser's own limits go.
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
    EXPECT_EQ(addedBy(inUnit("<!--->" + quotes + "--><mults><mult name='b'/></mults>")), "M b:14");
    EXPECT_EQ(addedBy(withEntity(quotes, "<mults><mult/></mults>")), "M :14");
    EXPECT_EQ(addedBy(inUnit("<mults><mult" + attributes + " name='b'/></mults>")), "M b:14");
    EXPECT_EQ(addedBy(inUnit("<mults><mult/><mult" + attributes + " bad/><mult/></mults>")), "M :14");
    EXPECT_EQ(addedBy(withEntity(name4000, use)), "M " + name4000 + ":14");
    EXPECT_EQ(addedBy(withEntity("12345678901", use), 5), "t,E,L,A");
}

TEST(Reader, ForgetsTheBusesOfTheFileBefore) {
    support::TempDir const dir;
    TovTopNode top("", "", "", "work");
    MrcDumpReader reader(&top);
    std::string const item = "item name='d[0]'/>";
    std::string const dump = inUnit("<pins><p" + item + "</pins><nets><n" + item + "</nets>");
    for (int reads = 0; reads < 2; ++reads) {
        EXPECT_FALSE(reader.doRead(support::write(dir / "bad.xml", "<x/>").c_str()));
        EXPECT_TRUE(reader.doRead(support::write(dir / "dump.xml", dump).c_str()));
    }
    std::string const pins = " P d[0]:3:0 d[0:0]:3:0 d[0]:3:0 d[0:0]:3:0";
    EXPECT_EQ(text(top), "t,E,L,A" + pins + " N d[0]:1 d[0:0]:1 d[0]:1 d[0:0]:1");
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
