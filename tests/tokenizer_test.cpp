#include "tov/tokenizer.h"

#include <gtest/gtest.h>

#include <chrono>

namespace {

using kiri::tov::tokenizeTclString;
using Words = std::vector<std::string>;

TEST(Tokenizer, SplitsLines) {
    struct Row {
        std::string line;
        Words words;
    };
    Row const rows[] = {
        {"", {}},
        {" \t\r\n\v\f", {}},
        {"create_clock -period 10 -name clk [get_ports clk]",
         {"create_clock", "-period", "10", "-name", "clk", "[get_ports clk]"}},
        {" a\tb\rc\vd\fe\nf ", {"a", "b", "c", "d", "e", "f"}},
        {"a\xa0\x85z b\xff", {"a\xa0\x85z", "b\xff"}},
        {std::string("a\0b c", 5), {std::string("a\0b", 3), "c"}},
        // The group that encloses a whole line goes, once.
        {"[get_ports {a b}]", {"get_ports", "{a b}"}},
        {"{ {a} }", {"{a}"}},
        {"[]", {}},
        {"{}", {}},
        {"[", {"["}},
        {"[a}", {"[a}"}},
        {"{a} {b}", {"a}", "{b"}},
        {"[a] x", {"[a]", "x"}},
        // A group skips one nested group and no more; the two kinds do not see each other.
        {"x [get_pins [get_cells u1]/Q] y", {"x", "[get_pins [get_cells u1]/Q]", "y"}},
        {"x {a {b} c}", {"x", "{a {b} c}"}},
        {"{a {b} {c}} d", {"{a {b} {c}", "}", "d"}},
        {"x [a[0] b[1]] y", {"x", "[a[0] b[1]", "]", "y"}},
        {"x {{{a}}} y", {"x", "{{{a}}", "}", "y"}},
        {"x [get_ports {a[0]}] y", {"x", "[get_ports {a[0]}]", "y"}},
        {"x {a[} b] y", {"x", "{a[}", "b]", "y"}},
        {"x [a]b y", {"x", "[a]", "b", "y"}},
        {"x [a {b y", {"x", "[a {b y"}},
        {"x {a {b} c", {"x", "{a {b} c"}},
        {"x ]a} y", {"x", "]a}", "y"}},
        {"x a[0] b{c d} y", {"x", "a[0]", "b{c", "d}", "y"}},
        // Quotes count at the start of a word only, and stand over groups.
        {"x \"a b\" y", {"x", "a b", "y"}},
        {"x \" a b", {"x", "a b"}},
        {"x \"\" y", {"x", "", "y"}},
        {"\"", {""}},
        {"x \"  \"y\"z", {"x", "", "y\"z"}},
        {"x \"[a\" b] a\"b c\"", {"x", "[a", "b]", "a\"b", "c\""}},
        {"x {a \"}\" b}", {"x", "{a \"}", "b}"}},
        {"x \\{a\\ b # c", {"x", "\\{a\\", "b", "#", "c"}},
    };
    for (Row const& row : rows) EXPECT_EQ(tokenizeTclString(row.line), row.words) << row.line;
}

// Each of these lines takes minutes where a word costs a walk over the rest of the line.
TEST(Tokenizer, IsLinearInTheLine) {
    std::string const patterns[] = {"a ", "{a} ", "[a ", "{a {b} ", "\"a\" ", "{ ", "}{ ", "[a] {b "};
    for (std::string const& pattern : patterns) {
        std::string line = "x ";
        while (line.size() < 4'000'000) line += pattern;
        auto const start = std::chrono::steady_clock::now();
        kiri::tov::WordCursor cursor(line);
        std::size_t size = 0;
        for (std::string_view word; cursor.next(word);) size += word.size();
        EXPECT_GT(size, line.size() / 8) << pattern;
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20)) << pattern;
    }
}

}  // namespace
