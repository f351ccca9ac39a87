// Dumps, and the trees that the reader makes of them.

#include <gtest/gtest.h>

#include <iostream>
#include <sstream>
#include <string>
#include <utility>

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

TEST(Reader, GivesTheTree) {
    std::pair<std::string, std::string> const rows[] = {
        {"", ",,work,"},
        {"<?xml version='1.0'?>", ",,work,"},
        {"<design/>", "false Line 1 Column 9: Tag design is not valid tag"},
        {"<?xml version='1.0'?>\n\n  <Top>", "false Line 3 Column 7: Tag Top is not valid tag"},
        {"<top/>", ",,,"},
        {"<top name='a' entry='e' library='l' arch='r'/><top name='b'/>", "a,e,l,r"},
        {"<top xmlns:x='y' name='a' x:name='b'><x:clocks><x:clockitem name='c' x:type='net'/>"
         "<clockitem type='port'/><clockitem type='net'/><clockitem type='Port'/></x:clocks></top>",
         "a,,, C c:15 :7 :8 :15"},
        {"<top><library><instance name='.a'/></library><library><unit><mults><mult/></mults></unit>"
         "<unit><mults><mult name='b'/></mults></unit></library></top>",
         ",,, / a,0,, M :14 b:14"},
    };
    for (auto const& [dump, tree] : rows) EXPECT_EQ(read(dump), tree) << dump;
}

TEST(Reader, GivesWhatStandsInAUnit) {
    std::pair<std::string, std::string> const rows[] = {
        {"text<!--c--><foo><bar a='&lt;'/>text<unit/></foo><views>text<view name='a'><x><view/></x>"
         "<![CDATA[<view/>]]><?pi <view?></view>]]&gt;<view/><View name='b'/><mult/></views>",
         " V a:9 :9"},
        {"<views><view name='\xc3\xa9&#x263a;&#x1F600;&amp;'/></views>", " V \xe9???&:9"},
        {"<views><view name='a'/><view name='b'><x></view></views>", " V a:9"},
        {"<views><view name='a'/><view name='b' name='c'/></views>", " V a:9"},
        {"<instance name='a' library='l' arch='r'><nets><nitem/><nitem>", " / a,0,l,r N :1"},
        {"<instance type='reg'/><instance type='comb'/>", " / ,2,, / ,1,,"},
        {"<instance type='pad'/><instance type='seq'/>", " / ,4,, / ,3,,"},
        {"<instance type='REG'/><instance/>", " / ,0,, / ,0,,"},
        {"<instance name='t.a'/><instance name='t.t.a'/>", " / a,0,, / t.a,0,,"},
        {"<instance name='t.'/><instance name='tt.a'/>", " / ,0,, / tt.a,0,,"},
        {"<pins><pitem name='a' Name='b' Direction='in' direction='In'/><pitem direction='in'/>"
         "<pitem direction='out'/><pitem direction='inout'/></pins>",
         " P a:3:0 :3:1 :3:2 :3:3"},
        {"<pins><pitem name='a'/><pitem name='a[0]' direction='in'/><pitem name='a[2]'/></pins>",
         " P a:3:0 a[0]:3:1 a[2:0]:3:1 a[2]:3:0"},
        {"<instance><pins><pitem name='d[4]'/></pins><nets><nitem name='n[3]'/></nets></instance>"
         "<instance><pins><pitem name='d[9]'/></pins><nets><nitem name='d[1]'/></nets></instance>",
         " / ,0,, P d[4]:2:0 d[9:4]:2:0 N n[3]:1 n[3:3]:1 / ,0,, P d[9]:2:0 N d[1]:1 d[1:1]:1"},
        {"<nets><nitem name='n[3]'/><nitem name='n[5]'/></nets>", " N n[3]:1 n[5:3]:1 n[5]:1"},
    };
    for (auto const& [content, tree] : rows) {
        EXPECT_EQ(read(inUnit(content)), "t,E,L,A" + tree) << content;
    }
}

/// Lists, and what they give below each of these.
struct {
    std::string list;
    std::string top;
    std::string library;
    std::string unit;
    std::string instance;
} const places[] = {
    {"<clocks><clockitem/></clocks>", " C :15 M :14", " M :14", " M :14", " / ,0,, C :15 M :14"},
    {"<pins><pitem/></pins>", "", " M :14", " P :3:0 M :14", " / ,0,, P :2:0 M :14"},
    {"<nets><nitem/></nets>", "", " M :14", " N :1 M :14", " / ,0,, N :1 M :14"},
    {"<views><view/></views>", "", " M :14", " V :9 M :14", " / ,0,, M :14"},
    {"<ramnets><ramnet/></ramnets>", "", " M :14", " R :10 M :14", " / ,0,, M :14"},
    {"<romnets><romnet/></romnets>", "", " M :14", " O :11 M :14", " / ,0,, M :14"},
    {"<mults><mult/></mults>", "", " M :14", " M :14 :14", " / ,0,, M :14"},
    {"<instance/>", "", " / ,0,, M :14", " / ,0,, M :14", " / ,0,, M :14"},
    {"<unit><views><view/></views></unit>", "", " V :9 M :14", " M :14", " / ,0,, M :14"},
    {"<library><instance/></library>", " / ,0,, M :14", " M :14", " M :14", " / ,0,, M :14"},
    {"<top><library/></top>", "", " M :14", " M :14", " / ,0,, M :14"},
};

TEST(Reader, TakesEachListOnlyInItsPlaces) {
    std::string const end = "<unit><mults><mult/></mults></unit></library></top>";
    for (auto const& row : places) {
        std::string const inInstance = "<instance>" + row.list + "</instance>";
        EXPECT_EQ(read("<top>" + row.list + "<library>" + end), ",,," + row.top);
        EXPECT_EQ(read("<top><library>" + row.list + end), ",,," + row.library);
        EXPECT_EQ(read("<top><library><unit>" + row.list + "</unit>" + end), ",,," + row.unit);
        EXPECT_EQ(read("<top><library>" + inInstance + end), ",,," + row.instance);
    }
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
    struct {
        std::string dump;
        std::string mults;
        int entityLimit = 0;
    } const rows[] = {
        {inUnit("<!--->" + quotes + "--><mults><mult name='b'/></mults>"), " M b:14"},
        {withEntity(quotes, "<mults><mult/></mults>"), " M :14"},
        {inUnit("<mults><mult" + attributes + " name='b'/></mults>"), " M b:14"},
        {inUnit("<mults><mult/><mult" + attributes + " bad/><mult/></mults>"), " M :14"},
        {withEntity(name4000, use), " M " + name4000 + ":14"},
        {withEntity(name4000 + name4000, use), " M " + name4000 + name4000 + ":14", 9000},
        {withEntity("12345678901", use), "", 5},
    };
    for (auto const& row : rows) {
        EXPECT_EQ(read(row.dump, row.entityLimit), "t,E,L,A" + row.mults) << row.dump.substr(0, 99);
    }
}

TEST(Reader, ForgetsTheBusesOfTheFileBefore) {
    support::TempDir const dir;
    TovTopNode top("", "", "", "work");
    MrcDumpReader reader(&top);
    for (char const* bit : {"d[0]", "d[1]"}) {
        std::string const item = std::string("item name='") + bit + "'/>";
        std::string const dump = inUnit("<pins><p" + item + "</pins><nets><n" + item + "</nets>");
        EXPECT_FALSE(reader.doRead(support::write(dir / "bad.xml", "<x/>").c_str()));
        EXPECT_TRUE(reader.doRead(support::write(dir / "dump.xml", dump).c_str()));
    }
    std::string const pins = " P d[0]:3:0 d[0:0]:3:0 d[1]:3:0 d[1:1]:3:0";
    EXPECT_EQ(text(top), "t,E,L,A" + pins + " N d[0]:1 d[0:0]:1 d[1]:1 d[1:1]:1");
}

TEST(Reader, TreesAreListed) {
    support::TempDir const dir;
    std::string const dump = inUnit(
        "<pins><pitem name='d[0]'/></pins><instance name='t.u' library='l' arch='a'><clocks>"
        "<clockitem name='c'/></clocks><pins><pitem name='Q'/></pins><nets><nitem name='n'/>"
        "</nets></instance><views><view name='v'/></views><ramnets><ramnet name='r'/></ramnets>"
        "<romnets><romnet name='o'/></romnets><mults><mult name='m'/></mults>");
    TovTopNode top("", "", "", "work");
    MrcDumpReader(&top).doRead(support::write(dir / "dump.xml", dump).c_str());
    std::ostringstream captured;
    std::streambuf* const console = std::cout.rdbuf(captured.rdbuf());
    top.dump();
    std::cout.rdbuf(console);
    std::string const rule = std::string(54, '-') + "\n";
    std::string const ofTop =
        "Cell:(t)\nClock list:\nPort list:\nd[0](d[0])\n"
        "d[0:0](d[0:0])\nNet list:\nChild Cell list:\n";
    std::string const cell =
        "Cell:l/u/a(u) - Parent:(t)\nClock list:\nl/u/a/c(c)\nPort list:\n"
        "l/u/a/Q(Q)\nNet list:\nl/u/a/n(n)\n";
    std::string const rest =
        "View list:\nv(v)\nRam list:\nr(r)\nRom list:\no(o)\n"
        "Mult list:\nm(m)\n";
    EXPECT_EQ(captured.str(), rule + ofTop + rule + cell + rest);
}

}  // namespace
