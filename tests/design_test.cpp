#include "tov/design/design.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>
#include <iostream>
#include <sstream>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

#include "support.h"
#include "tov/design/mrc_dump_reader.h"

using namespace kiri::tov;

namespace {

static_assert(!std::is_copy_constructible_v<TovBusPortNode> && !std::is_copy_constructible_v<TovDesign>);
static_assert(sizeof(TovObjType) == 4 && sizeof(CELL_TYPE) == 4 && sizeof(TovPortNode) <= 56);

std::string text(TovNode const* node, TovNode const* parent) {
    EXPECT_EQ(node->parent(), parent) << node->name();
    std::string line = " " + node->name() + ":" + std::to_string(node->type());
    if (auto const* port = dynamic_cast<TovPortNode const*>(node)) line += ":" + std::to_string(port->direction());
    return line;
}

template <class List>
std::string text(char const* label, List const& list, TovNode const* parent) {
    std::string line = list.empty() ? "" : label;
    for (auto const* node : list) line += text(node, parent);
    return line;
}

std::string content(TovBaseCellNode const& cell) {
    return cell.library() + "," + cell.arch() + text(" C", cell.clocks(), &cell) + text(" P", cell.ports(), &cell) +
           text(" N", cell.nets(), &cell);
}

/// A tree in file order: "name,entry,library,arch C clocks P ports N nets / cell / cell V views ...".
std::string text(TovTopNode const& top) {
    std::string line = top.name() + "," + top.entry() + "," + content(top);
    for (auto const* cell : top.cells()) {
        EXPECT_EQ(cell->type(), TOV_OBJ_CELL);
        EXPECT_EQ(cell->parent(), &top);
        line += " / " + cell->name() + "," + std::to_string(cell->cellType()) + "," + content(*cell);
    }
    return line + text(" V", top.views(), &top) + text(" R", top.rams(), &top) + text(" O", top.roms(), &top) +
           text(" M", top.mults(), &top);
}

/// What a dump gives: its tree, or "false" and the error text.
std::string read(std::string const& dump) {
    support::TempDir const dir;
    TovTopNode top("", "", "", "work");
    impl_detail::MrcDumpReader reader(&top);
    EXPECT_FALSE(reader.doRead(support::write(dir / "bad.xml", "<x/>").c_str()));  // leaves nothing behind
    bool const done = reader.doRead(support::write(dir / "dump.xml", dump).c_str());
    EXPECT_EQ(reader.device(), nullptr);
    return done ? text(top) : "false " + reader.errorString().toStdString();
}

std::string utf16(std::string const& ascii, bool bigEndian) {
    std::string wide = bigEndian ? "\xfe\xff" : "\xff\xfe";
    for (char const c : ascii) wide += bigEndian ? std::string{'\0', c} : std::string{c, '\0'};
    return wide;
}

std::string inUnit(std::string const& content) {
    return R"(<top name="t" library="L" arch="A" entry="E"><library name="w"><unit name="u">)" + content +
           "</unit></library></top>";
}

std::string const full =
    R"(<?xml version="1.0"?><!-- a dump --><top name="soc" library="work" arch="rtl" entry="e">
<clocks><clockitem name="clk" type="port"/><clockitem name="nclk" type="net"/><clockitem name="x" type="Port"/></clocks>
<library name="work"><unit name="a"><pins><pitem name="clk" direction="in"/><pitem name="d[1]" direction="out"/>
<pitem name="d[0]" direction="out"/><pitem name="io" direction="inout"/></pins><nets><nitem name="n[3]"/></nets>
<instance name="soc.u1.r0" library="lib1" arch="x" type="reg"><clocks><clockitem name="ck" type="net"/></clocks>
<pins><pitem name="Q" direction="out"/></pins><nets><nitem name="n[7]"/><nitem name="k"/></nets></instance>
<foo><bar a="&lt;"/>text<unit/></foo></unit></library><library name="other"><instance name="x.y" type="comb"/>
<unit><instance name="soc" type="pad"/><instance name="socks.z" type="seq"/><instance/><views><view name="v"/></views>
<ramnets><ramnet name="r"/></ramnets><romnets><romnet name="o"/></romnets><mults><mult name="m"/></mults></unit>
</library></top>)";
std::string const fullTree =
    "soc,e,work,rtl C clk:7 nclk:8 x:15 P clk:3:1 d[1]:3:2 d[1:0]:3:2 d[0]:3:2 io:3:3 N n[3]:1 n[7:3]:1 "
    "/ u1.r0,2,lib1,x C ck:8 P Q:2:2 N n[7]:1 k:1 / x.y,1,, / soc,4,, / socks.z,3,, / ,0,, V v:9 R r:10 O "
    "o:11 M m:14";

TEST(Dump, GivesTheTree) {
    std::string const bare = "t,E,L,A";
    struct {
        std::string dump, tree;
    } const rows[] = {
        {full, fullTree},
        {utf16(full, false), fullTree},
        {utf16(full, true), fullTree},
        {"<design/>", "false Line 1 Column 9: Tag design is not valid tag"},
        {"<?xml version='1.0'?>\n<!-- x -->\n  <Top a=''>", "false Line 3 Column 12: Tag Top is not valid tag"},
        {"", ",,work,"},
        {"<?xml version='1.0'?>", ",,work,"},
        {"<top/>", ",,,"},
        {"<top name='a'/><top name='b'/>", "a,,,"},
        {"<top name='a'/><design/>", "a,,,"},
        {"<!DOCTYPE top [<!ENTITY e \"k'&#228;\"><!ENTITY i \"<mult name='&e;'/>\">]>" +
             inUnit("<mults><mult name='a&amp;&e;&#x263a;&#x1F600;'/>&i;</mults>"),
         bare + " M a&k'\xe4???:14 k'\xe4:14"},
        {"\xef\xbb\xbf<?xml version='1.0' encoding='UTF-8'?>" + inUnit("<views><view name='\xc3\xa9'/></views>"),
         bare + " V \xe9:9"},
        {"<?xml version='1.0' encoding='ISO-8859-1'?>" + inUnit("<views><view name='\xe9'/></views>"),
         bare + " V \xe9:9"},
        {inUnit("<views>text<!--c--><view name='a'><![CDATA[<view/>]]><?pi <view?><x><view/></x></view>]]&gt;"
                "<?pi?><view/><View name='b'/><mult name='c'/></views>"),
         bare + " V a:9 :9"},
        {inUnit("<pins><pitem name='a' Name='b' Direction='in' direction='In'/><nitem name='c'/></pins>"),
         bare + " P a:3:0"},
        {inUnit("<pins><pitem name='a'/><pitem name='a[0]' direction='in'/><pitem name='a[2]'/></pins>"),
         bare + " P a:3:0 a[0]:3:1 a[2:0]:3:1 a[2]:3:0"},
        {inUnit("<instance name='i'><pins><pitem name='d[4]'/></pins></instance><instance name='j'><pins>"
                "<pitem name='d[9]'/></pins><nets><nitem name='d[1]'/></nets></instance>"),
         bare + " / i,0,, P d[4]:2:0 d[9:4]:2:0 / j,0,, P d[9]:2:0 N d[1]:1 d[1:1]:1"},
        {inUnit("<instance name='t.a' type='REG'/><instance name='t.t.a'/><instance name='t.'/><instance "
                "name='tt.a'/>"),
         bare + " / a,0,, / t.a,0,, / ,0,, / tt.a,0,,"},
        {"<top><library><instance name='.a'/></library></top>", ",,, / a,0,,"},
        {"<top name='a'><clocks/><pins/><library><unit><mults><mult "
         "name='m'/></mults></unit></library></top>",
         "a,,,"},
        {inUnit("<views><view name='a'/><view name='b'><x></view></views>"), bare + " V a:9"},
        {inUnit("<views><view name='a'/><view name='b' name='c'/></views>"), bare + " V a:9"},
        {inUnit("<views><view name='a'/><view name='&undeclared;'/></views>"), bare + " V a:9"},
        {"<top xmlns:x='y' name='a' x:name='b'><x:clocks><x:clockitem name='c' "
         "x:type='net'/></x:clocks></top>",
         "a,,, C c:15"},
    };
    for (auto const& row : rows) EXPECT_EQ(read(row.dump), row.tree) << row.dump;
}

TEST(Dump, TakesEachListOnlyInItsPlaces) {
    struct {
        char const *list, *top, *library, *unit, *instance;
    } const rows[] = {
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
        {"<top><clocks><clockitem/></clocks></top>", "", " M :14", " M :14", " / ,0,, M :14"},
    };
    std::string const last = "<unit><mults><mult/></mults></unit>";
    for (auto const& row : rows) {
        std::string const list = row.list, library = "<library>", end = last + "</library></top>";
        std::pair<std::string, std::string> const places[] = {
            {list + library + end, row.top},
            {library + list + end, row.library},
            {library + "<unit>" + list + "</unit>" + end, row.unit},
            {library + "<instance>" + list + "</instance>" + end, row.instance}};
        for (auto const& [dump, tree] : places) EXPECT_EQ(read("<top>" + dump), ",,," + tree) << dump;
    }
}

// Of an element with very many attributes the first ten thousand count. What only looks like one is left alone,
// wherever the blocks end in which a file is read.
TEST(Dump, DropsSurplusAttributes) {
    std::string words, attributes;
    for (int i = 0; i < 20000; ++i) {
        words += "'it' \"" + std::to_string(i) + "\" ";
        attributes += " a" + std::to_string(i) + "='/>'";
    }
    std::string const item = "<mult name='b'/>";
    for (std::string const& dump : {"<!-- for i < 8: " + words + "- -->" + item,
                                    "<![CDATA[ i <n " + words + "] ]]]>" + item, "<?pi <n " + words + "?" + "?>" + item,
                                    "a &lt; n " + words + item, "<mult" + attributes + " name='c'/>" + item,
                                    "<mult name='" + std::string(8190, 'x') + "'" + attributes + "></mult>" + item}) {
        std::string const found = " " + read(inUnit("<mults>" + dump + "</mults>"));
        EXPECT_EQ(found.substr(found.rfind(' ')), " b:14") << dump.substr(0, 20);
    }
}

/// The text with bus ranges left out, which later bits still change.
std::string withoutRanges(std::string tree) {
    tree += ' ';
    for (std::size_t colon = 0; (colon = tree.find(':', colon + 1)) != std::string::npos;) {
        std::size_t const open = tree.find_last_of("[ ", colon), close = tree.find_first_of("] ", colon);
        if (tree[open] == '[' && tree[close] == ']') tree.erase(open, close + 1 - open);
    }
    return tree;
}

TEST(Dump, CutAnywhereGivesTheFirstPartOfTheTree) {
    std::string const whole = withoutRanges(fullTree);
    std::size_t const start = full.find("\n<clocks>");
    for (std::size_t size = 0; size <= full.size(); ++size) {
        std::string const part = withoutRanges(read(full.substr(0, size)));
        ASSERT_EQ(size < start ? ",,work, " : whole.substr(0, part.size()), part) << size;
    }
}

/// What the queries give into a list of one null: " | " and the length and the names of each.
template <class... Node>
std::string answers(TovDesign const& design, std::size_t (TovDesign::*... query)(std::list<Node*>&) const) {
    std::string line;
    auto const add = [&](auto one, auto out) {
        line += " | " + std::to_string((design.*one)(out));
        for (TovNode const* node : out) line += node == nullptr ? " null" : " " + node->hierachyName('.');
    };
    (add(query, std::list<Node*>(1)), ...);
    return line;
}

std::string answers(TovDesign const& design) {
    using D = TovDesign;
    return answers(design, &D::getPorts, &D::getPins, &D::getNets, &D::getCells, &D::getRegs, &D::getClocks,
                   &D::getViews, &D::getRams, &D::getRoms, &D::getMults);
}

TEST(Design, AnswersQueriesAndIsEmptyAfterAFailedLoad) {
    support::TempDir const dir;
    std::string const good = support::write(dir / "good", full), bad = support::write(dir / "bad", "<design/>");
    std::string none;
    for (int i = 0; i < 10; ++i) none += " | 0 null";
    std::string const all =
        R"( | 5 clk d[1] d[1:0] d[0] io | 1 lib1/u1.r0/x.Q | 4 n[3] n[7:3] lib1/u1.r0/x.n[7] lib1/u1.r0/x.k)"
        R"( | 5 lib1.u1.r0.x x.y soc socks.z  | 1 lib1.u1.r0.x | 4 clk nclk x lib1/u1.r0/x.ck)"
        " | 1 v | 1 r | 1 o | 1 m";
    TovDesign design;
    for (std::string const& failing : {bad, dir / "missing", dir / "", std::string()}) {
        EXPECT_EQ(answers(design), none);
        EXPECT_TRUE(design.load(good.c_str()));
        EXPECT_EQ(answers(design), all);
        EXPECT_FALSE(design.load(failing.c_str())) << failing;
    }
    EXPECT_FALSE(design.load(nullptr));
    EXPECT_TRUE(design.load(good.c_str()));
    design.reset();
    EXPECT_EQ(answers(design), none);

    std::string const pipe = dir / "p\xefpe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    std::thread writer([&] { std::ofstream(pipe) << full.substr(0, 500) << std::flush << full.substr(500); });
    EXPECT_TRUE(design.load(pipe.c_str()));
    writer.join();
    EXPECT_EQ(answers(design), all);
}

TEST(Node, HierarchyNames) {
    TovTopNode top("t", "e", "a", "lib");
    TovCellNode plain("u1", &top, CELL_REG, "", "work"), arch("u1", &top, CELL_REG, "rtl", ""),
        both("name", &plain, CELL_COMB, "a", "lib1"), upper("u", nullptr, CELL_COMB, "", "Work");
    TovNetNode net("n", TOV_OBJ_NET, &top), orphan("o", TOV_OBJ_NET, nullptr);
    TovPortNode pin("CK", TOV_OBJ_PIN, &plain), archPin("CK", TOV_OBJ_PIN, &arch), deep("p", TOV_OBJ_PIN, &both);
    TovBusPortNode bus("q[4]", TOV_OBJ_PIN, &plain);
    TovViewNode below("v", TOV_OBJ_VIEW, &pin);
    struct {
        TovNode const& node;
        char separator;
        char const* name;
    } const rows[] = {
        // clang-format off
        {top, '.', ""}, {plain, '.', "u1"}, {arch, '.', "u1.rtl"}, {both, '.', "lib1.name.a"},
        {upper, ':', "Work:u"}, {net, ':', "n"}, {orphan, '/', "o"}, {pin, ':', "u1:CK"},
        {archPin, '.', "u1/rtl.CK"}, {deep, '.', "lib1/name/a.p"}, {bus, '|', "u1|q[4:4]"},
        {below, '.', "u1/CK.v"},
        // clang-format on
    };
    for (auto const& row : rows) EXPECT_EQ(row.node.hierachyName(row.separator), row.name);
}

TEST(Node, DumpListsTheTree) {
    std::string const rule = std::string(54, '-') + "\n", lists = "Clock list:\nPort list:\nNet list:\n";
    struct {
        std::string dump, listing;
    } const rows[] = {
        {"", rule + "Cell:()\n" + lists + "Child Cell list:\nView list:\nRam list:\nRom list:\nMult list:\n"},
        {inUnit(R"(<pins><pitem name="d[0]"/></pins><instance name="t.u" library="l" arch="a"><clocks>
<clockitem name="c"/></clocks><pins><pitem name="Q"/></pins><nets><nitem name="n"/></nets></instance><views>
<view name="v"/></views><ramnets><ramnet name="r"/></ramnets><romnets><romnet name="o"/></romnets>
<mults><mult name="m"/></mults>)"),
         rule + "Cell:(t)\nClock list:\nPort list:\nd[0](d[0])\nd[0:0](d[0:0])\nNet list:\n" + "Child Cell list:\n" +
             rule + "Cell:l/u/a(u) - Parent:(t)\nClock list:\nl/u/a/c(c)\n" +
             "Port list:\nl/u/a/Q(Q)\nNet list:\nl/u/a/n(n)\nView list:\nv(v)\nRam list:\nr(r)\n" +
             "Rom list:\no(o)\nMult list:\nm(m)\n"}};
    for (auto const& row : rows) {
        support::TempDir const dir;
        TovTopNode top("", "", "", "work");
        impl_detail::MrcDumpReader(&top).doRead(support::write(dir / "dump.xml", row.dump).c_str());
        std::ostringstream captured;
        std::streambuf* const console = std::cout.rdbuf(captured.rdbuf());
        top.dump();
        std::cout.rdbuf(console);
        EXPECT_EQ(captured.str(), row.listing);
    }
}

TEST(Bus, SplitsBitNames) {
    std::string const longName(50000000, '1');
    struct {
        std::string name, base;  // a name without base is no bit
        int index = -5;
    } const rows[] = {
        // clang-format off
        {"a[10]", "a", 10}, {"m[1][2]", "m[1]", 2}, {"a[007]", "a", 7}, {"[[1]", "[", 1}, {"a\n[1]", "a\n", 1},
        {"a[2147483647]", "a", 2147483647}, {"a[2147483648]", "a", 0}, {longName + "[3]", longName, 3},
        {"a[" + longName + "]", "a", 0},
        {"", ""}, {"a", ""}, {"]", ""}, {"[]", ""}, {"1]", ""}, {"a[]", ""}, {"[3]", ""}, {"a[3]b", ""}, {"a[-1]", ""},
        {"a[ 1]", ""}, {"a3]", ""}, {"a[3]\n", ""}, {"a[\xb2]", ""}, {"a[3", ""}, {"a[3]]", ""},
        // clang-format on
    };
    for (auto const& row : rows) {
        bool const isBit = !row.base.empty();
        int index = -5;
        std::string base = "before";
        EXPECT_EQ(TovBusNode::getBusName(row.name, &index), isBit ? row.base : row.name);
        EXPECT_EQ(TovBusNode::getBusName(row.name, nullptr), isBit ? row.base : row.name);
        EXPECT_EQ(TovBusNode::isBusType(row.name, &base), isBit);
        EXPECT_EQ(TovBusNode::isBusType(row.name, nullptr), isBit);
        EXPECT_EQ(std::pair(base, index), std::pair(isBit ? row.base : "before", row.index));
    }
}

TEST(Bus, WidensAndRenamesUnchecked) {
    struct {
        std::string first;
        bool wildcard;
        std::vector<std::string> more;
        std::string name, base;
        int high, low;
    } const rows[] = {{"x[3]", false, {}, "x[3:3]", "x", 3, 3},
                      {"x[3]", false, {"x[1]", "x[2]"}, "x[3:1]", "x", 3, 1},
                      {"x[3]", false, {"clk"}, "clk[3:0]", "x", 3, 0},
                      {"x[3]", false, {"y[8]"}, "y[8:3]", "x", 8, 3},
                      {"q[4]", true, {}, "q*", "q", -1, -1},
                      {"q[4]", true, {"q[2]"}, "q[2:2]", "q", 2, 2},
                      {"a", false, {}, "", "", -1, -1},
                      {"a", true, {"a"}, "a[0:0]", "", 0, 0}};
    for (auto const& row : rows) {
        TovBusNode bus(row.first, row.wildcard);
        for (auto const& name : row.more) bus.addToBus(name);
        EXPECT_EQ(bus.name() + "," + bus.baseName(), row.name + "," + row.base);
        EXPECT_EQ(std::pair(bus.high(), bus.low()), std::pair(row.high, row.low)) << row.name;
    }
    TovBusNode const bus("data[0]", false);
    EXPECT_TRUE(bus.isCurrentBus("data") && bus.isCurrentBus("data[9]"));
    EXPECT_FALSE(bus.isCurrentBus("dat[9]") || bus.isCurrentBus("data[9][1]") || bus.isCurrentBus(""));
}

}  // namespace
