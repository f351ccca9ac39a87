#include "tov/cmd/commands.h"

#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>

#include "support.h"

namespace {

using namespace kiri::tov;
using support::textOf;

// A class reads a line and writes it back; what a constructor sets is disabled until a document says
// otherwise.
template <class Cmd>
std::string saved(std::string const& line) {
    Cmd cmd(line);
    EXPECT_FALSE(cmd.enabled) << line;
    EXPECT_EQ(cmd.toSaveString(nullptr).substr(0, 9), "#disable ") << line;
    cmd.enabled = true;
    return cmd.toSaveString(nullptr);
}

struct Row {
    char const* line;
    char const* saved;
};

template <class Cmd, std::size_t N>
void expectRows(std::string const& keyword, Row const (&rows)[N]) {
    for (Row const& row : rows) {
        EXPECT_EQ(saved<Cmd>(keyword + row.line), keyword + row.saved) << row.line;
    }
    Cmd const wrong(std::string("x") + keyword + rows[0].line);
    EXPECT_TRUE(wrong.enabled);
    EXPECT_TRUE(Cmd("").enabled);
    EXPECT_TRUE(Cmd(std::string_view(" \t")).enabled);
}

TEST(Commands, ClockDefinition) {
    expectRows<TovCmdClockDef>(
        "create_clock",
        {
            {"", " -period 0.000000"},
            {" -period 10 [get_ports clk]", " -period 10.000000 [ get_ports { clk } ]"},
            {" -waveform {0 5} -name c -period -5 [get_nets {n m}]",
             " -period -5.000000 -waveform { 0.000000 5.000000 } -name c [ get_nets { n } ]"},
            {" -period 2 -period abc -name \"\" -name -x", " -period 2.000000 -name -x"},
            {" -waveform {0 x 5} -waveform 7", " -period 0.000000 -waveform { 0.000000 5.000000 7.000000 }"},
            {" -waveform \"\" -period", " -period 0.000000"},
            {" -name", " -period 0.000000"},
            {" a [get_pins {p}] \"\"", " -period 0.000000 [ get_pins { p } ]"},
            {" -add [get_ports]", " -period 0.000000"},
            // Numbers: the whole of strtod's grammar behind a digit, in the "C" locale.
            {" -period 2.5ns", " -period 2.500000"},
            {" -period 1e-3", " -period 0.001000"},
            {" -period 3.3333333333", " -period 3.333333"},
            {" -period 0x10", " -period 16.000000"},
            {" -period -0x1.8p1", " -period -3.000000"},
            {" -period 1e400", " -period inf"},
            {" -period -1e-400", " -period -0.000000"},
            {" -period 1e+", " -period 1.000000"},
            {" -period +1 -period .5 -period -.5 -period - -period nan", " -period 0.000000"},
        });
    for (char const* line : {"create_clock -waveform", "create_clock -period 1 [get_ports {a}] -waveform"}) {
        EXPECT_THROW(TovCmdClockDef{line}, std::out_of_range);
    }
}

TEST(Commands, GeneratedClock) {
    expectRows<TovCmdGenClockDef>(
        "create_generated_clock",
        {
            {"", ""},
            {" [get_pins pll/out] -name g -master_clock [get_clocks {m n}] -source [get_ports {s}] "
             "-duty_cycle 50"
             " -multiply_by 3 -divide_by 2",
             " -divide_by 2 -multiply_by 3 -duty_cycle 50.000000 -source [ get_ports { s } ] -master_clock"
             " [ get_clocks { m } ] -name g [ get_pins { pll/out } ]"},
            {" -divide_by 2.9 -multiply_by -2.9", " -divide_by 2 -multiply_by -2"},
            {" -divide_by 4 -divide_by x -duty_cycle y", " -divide_by 4"},
            {" -divide_by 99999999999 -multiply_by -1e400",
             " -divide_by 2147483647 -multiply_by -2147483648"},
            {" -name g1 -name g2 -multiply_by", " -name g2"},
            {" -source a -source \"\" -invert t", " t"},
        });
    TovCmdGenClockDef cmd("create_generated_clock -source [get_ports {a b}] -master_clock m [get_nets n]");
    EXPECT_EQ(textOf(cmd.sources) + "|" + textOf(cmd.masterClock) + "|" + textOf(cmd.targets),
              "a:15 b:15|m:59|n:16");
}

TEST(Commands, ClockGroups) {
    expectRows<TovCmdClockGroupDef>(
        "set_clock_groups",
        {
            {"", " -exclusive"},
            {" -exclusive -asynchronous -group", " -asynchronous"},
            {" -name x -group [get_clocks a]", " -exclusive -group [ get_clocks a  ]"},
            {" -group [get_clocks {a b}] -group [get_clocks {a b c}]",
             " -exclusive -group [ get_clocks { a b } ] -group [ get_clocks { a b c } ]"},
            {" -group {a} -group \"\"", " -exclusive -group{a} -group"},
            {" -group [get_ports {p q}]", " -exclusive -grouppq"},
            {" -group \"get_clocks {a @pi b} x\"",
             " -exclusive -group [all_inputs]get_clocks {a @pi b} x [ get_clocks { a b } ]"},
        });
    TovCmdClockGroupDef cmd(false);
    EXPECT_TRUE(cmd.enabled);
    cmd.groups = {nullptr, new ppStlList<taDciObj*>(TovCmd::fromTclString("get_ports {a}", true)),
                  new ppStlList<taDciObj*>(TovCmd::fromTclString("get_nets {n o}", true))};
    EXPECT_EQ(cmd.toSaveString(nullptr),
              "set_clock_groups -asynchronous -group [ get_clocks a  ] -group [ get_clocks { n o } ]");
    cmd.reset();
    EXPECT_EQ(cmd.toSaveString(nullptr), "set_clock_groups -asynchronous");
}

TEST(Commands, InputAndOutputDelay) {
    Row const rows[] = {
        {"", " 0.000000 "},
        {" 2 -clock [get_clocks {clk}] [get_ports {d}]",
         " 2.000000 -clock [ get_clocks { clk } ]  [ get_ports { d } ]"},
        {" -min -max 1 -clock clk [get_ports {a b}]", " -max -min 1.000000 -clock clk  [ get_ports { a } ]"},
        {" 1 [get_ports {a}] [get_ports {b}]", " 1.000000  [ get_ports { b } ]"},
        {" -add_delay 1 2.5 -clock", " 2.500000  -add_delay"},
        {" a -clock \"\" -2", " -2.000000  a"},
        {" 1 [all_inputs]", " 1.000000  [all_inputs]"},
    };
    expectRows<TovCmdInputDelay>("set_input_delay",
                                 {rows[0], rows[1], rows[2], rows[3], rows[4], rows[5], rows[6]});
    expectRows<TovCmdOutputDelay>("set_output_delay",
                                  {rows[0], rows[1], rows[2], rows[3], rows[4], rows[5], rows[6]});
    EXPECT_EQ(saved<TovCmdInputDelay>("set_output_delay 1 x"), "set_input_delay 1.000000  x");
}

TEST(Commands, MaximumAndMinimumDelay) {
    expectRows<TovCmdMaxDelay>("set_max_delay",
                               {
                                   {" abc", " 0.000000"},
                                   {" 3 -from [get_ports {a b}] -to [get_nets {n}]",
                                    " 3.000000 -from  [ get_ports { a } ] -to  [ get_nets { n } ]"},
                                   {" -to a -from b -to [get_cells c] 1 -From d 2.5 e",
                                    " 2.500000 -from  b -to  [ get_cells { c } ]"},
                                   {" -to", " 0.000000"},
                               });
    EXPECT_EQ(saved<TovCmdMinDelay>("set_max_delay 1 -to -from"), "set_min_delay 1.000000 -to  -from");
}

TEST(Commands, FalsePath) {
    expectRows<TovCmdFalsePath>(
        "set_false_path",
        {
            {" 5 -setup x", ""},
            {" -from [get_clocks {c1}] -to [get_clocks {c2}]",
             " -from  [ get_clocks { c1 } ] -to  [ get_clocks { c2 } ]"},
            {" -through [get_nets {x}] -through [get_nets {y z}]", " -through  [ get_nets { y } ]"},
            {" -through [get_nets {x}] -to a", " -to  a"},
            {" -from [get_ports {a}] -through", " -from  [ get_ports { a } ]"},
        });
}

TEST(Commands, MulticyclePath) {
    expectRows<TovCmdMultiPath>("set_multicycle_path",
                                {
                                    {"", " 0"},
                                    {" 2 -from [get_clocks {c1}] -to [get_clocks {c2}]",
                                     " 2 -from  [ get_clocks { c1 } ] -to  [ get_clocks { c2 } ]"},
                                    {" -setup 3", " 3"},
                                    {" 2.9 x", " 2"},
                                    {" -1.5", " -1"},
                                    {" 2147483520", " 2147483520"},
                                    {" 99999999999 -to", " 2147483647"},
                                    {" -3e9", " -2147483648"},
                                });
}

TEST(Commands, Attribute) {
    TovCmdAttr cmd("a", "b c", "d\"e f", "", "tab\there");
    EXPECT_EQ(cmd.toSaveString(nullptr), "#attribute\ta\t\"b c\"\td\"e f\t\t\"tab\there\"");
    cmd.enabled = false;
    EXPECT_EQ(cmd.toSaveString(nullptr), "#attribute\ta\t\"b c\"\td\"e f\t\t\"tab\there\"\t-disable");
}

TEST(Commands, FromValues) {
    char note[] = "note";
    TovCmdClockDef clock(2.5F, nullptr, note);
    TovCmdGenClockDef generated("g", nullptr);
    TovCmdInputDelay input(1.0F, "label", note);
    TovCmdOutputDelay output(1.0F, nullptr, nullptr);
    TovCmdMaxDelay max(1.0F, note);
    TovCmdMultiPath path(-2, note);
    TovCmdFalsePath none(static_cast<char*>(nullptr));
    TovCmdFalsePath noted(note);
    EXPECT_EQ(input.label + input.note + noted.note, "labelnotenote");
    std::string text;
    for (TovCmd* cmd :
         std::initializer_list<TovCmd*>{&clock, &generated, &input, &output, &max, &path, &none}) {
        EXPECT_TRUE(cmd->enabled);
        text += cmd->toSaveString(nullptr) + "|" + cmd->note + ";";
    }
    EXPECT_EQ(
        text,
        "create_clock -period 2.500000|note;create_generated_clock -name g|;set_input_delay 1.000000 |note;"
        "set_output_delay 1.000000 |;set_max_delay 1.000000|note;set_multicycle_path "
        "-2|note;set_false_path|;");
}

TEST(Objects, ReadFromExpressions) {
    struct {
        char const* text;
        char const* plain;
        char const* source;
    } const rows[] = {
        {"", "", ""},
        {"[[]]", "", ""},
        {"clk", "clk:59", "clk:59"},
        {"[all_inputs]", "[all_inputs]:59", "[all_inputs]:59"},
        {"[ get_ports { a b } ]", "a:5 b:5", "a:15 b:15"},
        {"[[get_nets {netA netB}]]", "netA:2 netB:2", "netA:16 netB:16"},
        {"[get_clocks {{c}}]", "c:14", "c:14"},
        {"[get_cells u]", "u:7", "u:7"},
        {"get_pins {p/a p/b}", "p/a:4 p/b:4", "p/a:4 p/b:4"},
        {"[get_ports]", "", ""},
        {"[Get_ports a]", "[Get_ports a]:59 [Get_ports a]:59", "[Get_ports a]:59 [Get_ports a]:59"},
        {"[get_ports a get_pins b]", "a:5 b:4", "a:15 b:4"},
        {"[get_ports a[0]]", "a[0:5", "a[0:15"},
        {"[get_pins [get_cells u1]/Q]", "get_cells:4 u1:4 [get_pins [get_cells u1]/Q]:59",
         "get_cells:4 u1:4 [get_pins [get_cells u1]/Q]:59"},
        {" [get_ports a] ", "a:5", "a:15"},
        {"[get_ports \"a b\"]", "a:5 b:5", "a:15 b:15"},
    };
    for (auto const& row : rows) {
        std::string texts[2];
        for (bool source : {false, true}) {
            ppStlList<taDciObj*> list = TovCmd::fromTclString(row.text, source);
            texts[source ? 1 : 0] = textOf(list);
            freeDciObjList(list);
        }
        EXPECT_EQ(texts[0], row.plain) << row.text;
        EXPECT_EQ(texts[1], row.source) << row.text;
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
    struct {
        char const* name;
        int type;
        char const* text;
    } const rows[] = {
        {"n", 2, "[ get_nets { n } ]"},
        {"n", 16, "[ get_nets { n } ]"},
        {"p", 4, "[ get_pins { p } ]"},
        {"u1/A", 12, "[ get_pins { u1/A } ]"},
        {"a", 5, "[ get_ports { a } ]"},
        {"a", 15, "[ get_ports { a } ]"},
        {"u", 7, "[ get_cells { u } ]"},
        {"c", 14, "[ get_clocks { c } ]"},
        {"x", 59, "x"},
        {"x", 0, "x"},
        {"x", 3, "x"},
        {nullptr, 5, "[ get_ports {  } ]"},
        {nullptr, 59, ""},
        {"@PO", 5, "[all_outputs]"},
        {"@clkin", 14, "[all_clocks]"},
        {"@Clock", 59, "[all_registers]"},
        {"@pi", 0, "[all_inputs]"},
        {"@PIN", 59, "@PIN"},
    };
    for (auto const& row : rows) {
        taDciObj obj(row.name, nullptr, static_cast<taDciObjTyp>(row.type), taDciObjNone);
        EXPECT_EQ(TovCmd::toTclString(&obj), row.text);
    }
    EXPECT_EQ(TovCmd::toTclString(nullptr), "");
    std::string out = "kept";
    EXPECT_FALSE(TovCmd::reservedKey(nullptr, out) || TovCmd::reservedKey("", out) ||
                 TovCmd::reservedKey("@P", out));
    EXPECT_EQ(out, "kept");
    EXPECT_TRUE(TovCmd::reservedKey("@po", out));
    EXPECT_EQ(out, "[all_outputs]");
}

TEST(Texts, AreEnclosed) {
    char const* const brackets[][2] = {{"  get_nets {a}\n", "[ get_nets {a} ]"},
                                       {"GET_PINS x", "[ GET_PINS x ]"},
                                       {"get_portsX", "[ get_portsX ]"},
                                       {"get_registers", "[ get_registers ]"},
                                       {"clk", "clk"},
                                       {"[get_ports a]", "[get_ports a]"},
                                       {" \t\r\n", ""},
                                       {nullptr, ""},
                                       {"\vget_ports a", "\vget_ports a"}};
    for (auto const& row : brackets) EXPECT_EQ(TovCmd::encloseBracket(row[0]), row[1]);
    char const* const quotes[][2] = {{"a b", "\"a b\""},       {"a", "a"},         {"", ""},
                                     {"a\tb\n", "\"a\tb\n\""}, {"a \"b", "a \"b"}, {"\xa0", "\xa0"}};
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
