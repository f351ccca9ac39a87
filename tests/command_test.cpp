#include "tov/cmd/commands.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <utility>
#include <vector>

#include "support.h"

namespace {

using namespace kiri::tov;
using support::textOf;

// A class reads a line and writes it back. A recognised line leaves the command disabled until a document
// says otherwise; another keyword leaves it enabled and empty.
template <class Cmd>
std::string saved(std::string const& line) {
    EXPECT_TRUE(Cmd("x" + line).enabled);
    EXPECT_TRUE(Cmd("").enabled && Cmd(static_cast<char const*>(nullptr)).enabled);
    Cmd cmd(line.c_str());
    std::string const text = cmd.toSaveString(nullptr);
    EXPECT_EQ(text.substr(0, 9), "#disable ") << line;
    cmd.enabled = true;
    EXPECT_EQ(cmd.toSaveString(nullptr), text.substr(9));
    return text.substr(9);
}

// clang-format off
struct {
    std::string keyword;
    std::string (*saved)(std::string const& line);
    std::vector<std::pair<char const*, char const*>> rows;  // what follows the keyword, in a line and when saved
} const families[] = {
    {"create_clock", saved<TovCmdClockDef>, {
        {"", " -period 0.000000"},
        {" -period 10 [get_ports clk]", " -period 10.000000 [ get_ports { clk } ]"},
        {" -waveform {0 5} -name c -period -5 [get_nets {n m}]",
         " -period -5.000000 -waveform { 0.000000 5.000000 } -name c [ get_nets { n } ]"},
        {" -period 2 -period abc -name \"\" -name -x", " -period 2.000000 -name -x"},
        {" -waveform {0 x 5} -waveform 7", " -period 0.000000 -waveform { 0.000000 5.000000 7.000000 }"},
        {" -waveform \"\" -period", " -period 0.000000"},
        {" a [get_pins {p}] \"\" -name", " -period 0.000000 [ get_pins { p } ]"},
        {" -add [get_ports]", " -period 0.000000"}}},
    {"create_generated_clock", saved<TovCmdGenClockDef>, {
        {"", ""},
        {" [get_pins o] -name g -master_clock [get_clocks {m n}] -source [get_ports {s}] -duty_cycle 50 -multiply_by 3"
         " -divide_by 2", " -divide_by 2 -multiply_by 3 -duty_cycle 50.000000 -source [ get_ports { s } ] -master_clock"
         " [ get_clocks { m } ] -name g [ get_pins { o } ]"},
        {" -divide_by 2.9 -multiply_by -2.9 -duty_cycle y", " -divide_by 2 -multiply_by -2"},
        {" -divide_by 4 -divide_by x", " -divide_by 4"},
        {" -divide_by 99999999999 -multiply_by -1e400", " -divide_by 2147483647 -multiply_by -2147483648"},
        {" -name g1 -name g2 -multiply_by", " -name g2"},
        {" -source a -source \"\" -invert t", " t"}}},
    {"set_clock_groups", saved<TovCmdClockGroupDef>, {
        {" -exclusive -asynchronous -group", " -asynchronous"},
        {" -name x -group [get_clocks a] -group [get_clocks {a b c}]",
         " -exclusive -group [ get_clocks a  ] -group [ get_clocks { a b c } ]"},
        {" -group {a} -group \"\" -group [get_ports {p q}]", " -exclusive -group{a} -group -grouppq"},
        {" -group \"get_clocks {a @pi b} x\"",
         " -exclusive -group [all_inputs]get_clocks {a @pi b} x [ get_clocks { a b } ]"}}},
    {"set_input_delay", saved<TovCmdInputDelay>, {
        {"", " 0.000000 "},
        {" -min -max 1 -clock clk [get_ports {a b}]", " -max -min 1.000000 -clock clk  [ get_ports { a } ]"},
        {" -add_delay 1 2.5 -clock", " 2.500000  -add_delay"},
        {" a -clock \"\" -2", " -2.000000  a"}}},
    {"set_output_delay", saved<TovCmdOutputDelay>, {
        {" 2 -clock [get_clocks {clk}] [get_ports {d}]", " 2.000000 -clock [ get_clocks { clk } ]  [ get_ports { d } ]"},
        {" -min 1 [get_ports {a}] [all_inputs]", " -min 1.000000  [all_inputs]"}}},
    {"set_max_delay", saved<TovCmdMaxDelay>, {
        {" abc", " 0.000000"},
        {" 3 -from [get_ports {a b}] -to [get_nets {n}]", " 3.000000 -from  [ get_ports { a } ] -to  [ get_nets { n } ]"},
        {" -to a -from b -to [get_cells c] 1 -From d 2.5 e", " 2.500000 -from  b -to  [ get_cells { c } ]"}}},
    {"set_min_delay", saved<TovCmdMinDelay>, {{" 1 -to", " 1.000000"}, {" 1 -to -from", " 1.000000 -to  -from"}}},
    {"set_false_path", saved<TovCmdFalsePath>, {
        {" 5 -setup x", ""},
        {" -from [get_clocks {c1}] -to [get_clocks {c2}]", " -from  [ get_clocks { c1 } ] -to  [ get_clocks { c2 } ]"},
        {" -through [get_nets {x}] -through [get_nets {y z}]", " -through  [ get_nets { y } ]"},
        {" -through [get_nets {x}] -to a", " -to  a"},
        {" -from [get_ports {a}] -through", " -from  [ get_ports { a } ]"}}},
    {"set_multicycle_path", saved<TovCmdMultiPath>, {
        {"", " 0"}, {" -setup 3", " 3"}, {" 2.9 x", " 2"}, {" -1.5", " -1"}, {" 2147483520", " 2147483520"},
        {" 99999999999 -to", " 2147483647"}, {" -3e9", " -2147483648"},
        {" 2 -from [get_clocks {c1}] -to c2", " 2 -from  [ get_clocks { c1 } ] -to  c2"}}},
};
// clang-format on

TEST(Commands, ReadAndWriteLines) {
    for (auto const& family : families) {
        for (auto const& [line, text] : family.rows) {
            EXPECT_EQ(family.saved(family.keyword + line), family.keyword + text) << line;
        }
    }
    EXPECT_EQ(saved<TovCmdInputDelay>("set_output_delay 1 x"), "set_input_delay 1.000000  x");
    EXPECT_EQ(saved<TovCmdMinDelay>("set_max_delay 1"), "set_min_delay 1.000000");
    for (char const* line : {"create_clock -waveform", "create_clock -period 1 [get_ports {a}] -waveform"}) {
        EXPECT_THROW(TovCmdClockDef{line}, std::out_of_range);
    }
}

// The whole of strtod's grammar behind a digit; what is no number leaves the 7 that stood before.
TEST(Commands, ReadNumbers) {
    // clang-format off
    std::pair<char const*, char const*> const rows[] = {
        {"2.5ns", "2.500000"}, {"1e-3", "0.001000"}, {"3.3333333333", "3.333333"}, {"0x10", "16.000000"}, {"1.", "1.000000"},
        {"-0x1.8p1", "-3.000000"}, {"1e400", "inf"}, {"-1e-400", "-0.000000"}, {"1e+", "1.000000"}, {"0x", "0.000000"},
        {"16777217", "16777216.000000"}, {"+1", "7.000000"}, {".5", "7.000000"}, {"-.5", "7.000000"}, {"-", "7.000000"},
        {"nan", "7.000000"}, {"-inf", "7.000000"}, {"\"\"", "7.000000"},
    };
    // clang-format on
    for (auto const& [text, number] : rows) {
        std::string const line = std::string("create_clock -period 7 -period ") + text;
        EXPECT_EQ(saved<TovCmdClockDef>(line), std::string("create_clock -period ") + number);
    }
}

TEST(Commands, KeepWhatTheyDoNotWrite) {
    TovCmdGenClockDef cmd("create_generated_clock -source [get_ports {a b}] -master_clock m [get_nets n]");
    EXPECT_EQ(textOf(cmd.sources) + "|" + textOf(cmd.masterClock) + "|" + textOf(cmd.targets), "a:15 b:15|m:59|n:16");
    TovCmdFalsePath path("set_false_path -from a -through [get_nets {x y}]");
    EXPECT_EQ(textOf(path.from) + "|" + textOf(path.through), "a:59|x:2 y:2");
    TovCmdClockGroupDef group(false);
    group.groups = {nullptr, new ppStlList<taDciObj*>(TovCmd::fromTclString("get_ports {a}", true)),
                    new ppStlList<taDciObj*>(TovCmd::fromTclString("get_nets {n o}", true))};
    EXPECT_EQ(group.toSaveString(nullptr),
              "set_clock_groups -asynchronous -group [ get_clocks a  ] -group [ get_clocks { n o } ]");
    group.reset();
    EXPECT_EQ(group.toSaveString(nullptr), "set_clock_groups -asynchronous");
}

TEST(Commands, Attribute) {
    TovCmdAttr cmd("a", "b c", "d\"e f", "", "tab\there");
    EXPECT_EQ(cmd.toSaveString(nullptr), "#attribute\ta\t\"b c\"\td\"e f\t\t\"tab\there\"");
    cmd.enabled = false;
    EXPECT_EQ(cmd.toSaveString(nullptr), "#attribute\ta\t\"b c\"\td\"e f\t\t\"tab\there\"\t-disable");
}

TEST(Commands, FromValues) {
    char note[] = "note";
    std::unique_ptr<TovCmd> const cmds[] = {std::make_unique<TovCmdClockDef>(2.5F, nullptr, note),
                                            std::make_unique<TovCmdGenClockDef>("g", note),
                                            std::make_unique<TovCmdOutputDelay>(1.0F, "label", note),
                                            std::make_unique<TovCmdMaxDelay>(1.0F, note),
                                            std::make_unique<TovCmdMultiPath>(-2, note),
                                            std::make_unique<TovCmdFalsePath>(&note[0])};
    std::string text;
    for (auto const& cmd : cmds) text += cmd->toSaveString(nullptr) + "|" + cmd->note + ";";
    EXPECT_EQ(text,
              "create_clock -period 2.500000|note;create_generated_clock -name g|note;set_output_delay 1.000000 |note;"
              "set_max_delay 1.000000|note;set_multicycle_path -2|note;set_false_path|note;");
    EXPECT_EQ(TovCmdInputDelay(1.0F, "label", nullptr).label + TovCmdFalsePath(static_cast<char*>(nullptr)).note,
              "label");
}

TEST(Objects, ReadFromExpressions) {
    // clang-format off
    struct {
        char const *text, *plain, *source;
    } const rows[] = {
        {"", "", ""}, {"[[]]", "", ""}, {"[get_ports]", "", ""}, {"clk", "clk:59", "clk:59"}, {"[get_cells u]", "u:7", "u:7"},
        {"[all_inputs]", "[all_inputs]:59", "[all_inputs]:59"},
        {"[ get_ports { a b } ]", "a:5 b:5", "a:15 b:15"},
        {"[[get_nets {netA netB}]]", "netA:2 netB:2", "netA:16 netB:16"},
        {"[get_clocks {{c}}]", "c:14", "c:14"},
        {"get_pins {p/a p/b}", "p/a:4 p/b:4", "p/a:4 p/b:4"},
        {"[Get_ports a]", "[Get_ports a]:59 [Get_ports a]:59", "[Get_ports a]:59 [Get_ports a]:59"},
        {"[get_ports a get_pins b]", "a:5 b:4", "a:15 b:4"},
        {"[get_ports a[0]]", "a[0:5", "a[0:15"},
        {"[get_pins [get_cells u1]/Q]", "get_cells:4 u1:4 [get_pins [get_cells u1]/Q]:59",
         "get_cells:4 u1:4 [get_pins [get_cells u1]/Q]:59"},
        {" [get_ports a] ", "a:5", "a:15"}, {"[get_ports \"a b\"]", "a:5 b:5", "a:15 b:15"},
    };
    // clang-format on
    for (auto const& row : rows) {
        for (bool source : {false, true}) {
            ppStlList<taDciObj*> list = TovCmd::fromTclString(row.text, source);
            EXPECT_EQ(textOf(list), source ? row.source : row.plain) << row.text;
            freeDciObjList(list);
        }
    }
}

// A text of many unknown words gives as many references of the whole text, at the cost of one text.
TEST(Objects, ShareTheTextOfAWholeExpression) {
    std::string text = "{";
    for (int i = 0; i < 200000; ++i) text += "name" + std::to_string(i) + " ";
    text += "}";
    ppStlList<taDciObj*> list = TovCmd::fromTclString(text, false);
    EXPECT_EQ(list.size(), 200000U);
    delete list.front();
    list.pop_front();
    EXPECT_EQ(list.front()->name, text);
    EXPECT_EQ(list.back()->name, text);
    freeDciObjList(list);
}

TEST(Objects, WriteAsExpressions) {
    // clang-format off
    struct {
        char const* name;
        int type;
        char const* text;
    } const rows[] = {
        {"n", 2, "[ get_nets { n } ]"}, {"n", 16, "[ get_nets { n } ]"}, {"p", 4, "[ get_pins { p } ]"},
        {"p", 12, "[ get_pins { p } ]"}, {"a", 5, "[ get_ports { a } ]"}, {"a", 15, "[ get_ports { a } ]"},
        {"u", 7, "[ get_cells { u } ]"}, {"c", 14, "[ get_clocks { c } ]"}, {"x", 59, "x"}, {"x", 0, "x"}, {"x", 3, "x"},
        {nullptr, 5, "[ get_ports {  } ]"}, {nullptr, 59, ""}, {"@PO", 5, "[all_outputs]"}, {"@PIN", 59, "@PIN"},
        {"@clkin", 14, "[all_clocks]"}, {"@Clock", 59, "[all_registers]"}, {"@pi", 0, "[all_inputs]"},
    };
    // clang-format on
    for (auto const& row : rows) {
        taDciObj obj(row.name, nullptr, static_cast<taDciObjTyp>(row.type), taDciObjNone);
        EXPECT_EQ(TovCmd::toTclString(&obj), row.text);
    }
    EXPECT_EQ(TovCmd::toTclString(nullptr), "");
    std::string out = "kept";
    for (char const* key : {"", "@P", static_cast<char const*>(nullptr)}) EXPECT_FALSE(TovCmd::reservedKey(key, out));
    EXPECT_EQ(out, "kept");
    EXPECT_TRUE(TovCmd::reservedKey("@po", out));
    EXPECT_EQ(out, "[all_outputs]");
}

TEST(Texts, AreEnclosed) {
    // clang-format off
    char const* const brackets[][2] = {
        {"  get_nets {a}\n", "[ get_nets {a} ]"}, {"GET_PINS x", "[ GET_PINS x ]"}, {"get_portsX", "[ get_portsX ]"},
        {"get_registers", "[ get_registers ]"}, {"clk", "clk"}, {"[get_ports a]", "[get_ports a]"}, {" \t\r\n", ""},
        {nullptr, ""}, {"\vget_ports a", "\vget_ports a"}};
    char const* const quotes[][2] = {
        {"a b", "\"a b\""}, {"a", "a"}, {"", ""}, {"a\tb\n", "\"a\tb\n\""}, {"a \"b", "a \"b"}, {"\xa0", "\xa0"}};
    // clang-format on
    for (auto const& row : brackets) EXPECT_EQ(TovCmd::encloseBracket(row[0]), row[1]);
    for (auto const& row : quotes) EXPECT_EQ(encloseDoubleQuotes(row[0]), row[1]);
}

TEST(Objects, CopyDeeply) {
    ppStlList<taDciObj*> from = TovCmd::fromTclString("get_ports {a b c}", false);
    ppStlList<taDciObj*> to = TovCmd::fromTclString("old", false);
    from.push_back(nullptr);
    deepCopyDciObjList(from, to);
    EXPECT_EQ(textOf(from), "a:5 b:5 c:5 null");
    freeDciObjList(from);
    EXPECT_TRUE(from.empty());
    EXPECT_EQ(textOf(to), "a:5 b:5 c:5");
    deepCopyDciObjList(to, to);
    EXPECT_EQ(textOf(to), "a:5 b:5 c:5");
    deepCopyDciObjList(from, to);
    EXPECT_TRUE(to.empty());
}

}  // namespace
