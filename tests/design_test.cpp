// Designs: what they answer, and how their loads end.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <string>
#include <thread>

#include "support.h"
#include "tov/design/design.h"

using namespace kiri::tov;

namespace {

template <class Node>
using Query = std::size_t (TovDesign::*)(std::list<Node*>&) const;

/// What a query gives into a list of one null: " | ", the length and the names.
template <class Node>
std::string answer(TovDesign const& design, Query<Node> query) {
    std::list<Node*> out(1);
    std::string line = " | " + std::to_string((design.*query)(out));
    for (TovNode const* node : out) {
        line += " " + (node == nullptr ? "null" : node->hierachyName('.'));
    }
    return line;
}

std::string answers(TovDesign const& design) {
    using D = TovDesign;
    auto const all = [&design](auto... query) { return (answer(design, query) + ...); };
    return all(&D::getPorts, &D::getPins, &D::getNets, &D::getCells, &D::getRegs) +
           all(&D::getClocks, &D::getViews, &D::getRams, &D::getRoms, &D::getMults);
}

std::string const noAnswers =
    " | 0 null | 0 null | 0 null | 0 null | 0 null | 0 null | 0 null | 0 null | 0 null | 0 null";

std::string const dump = R"(<top name="soc" library="work">
<clocks><clockitem name="clk" type="port"/></clocks>
<library><unit><pins><pitem name="d[1]"/><pitem name="d[0]"/></pins><nets><nitem name="n"/></nets>
<instance name="soc.u1" library="lib" arch="x" type="reg"><clocks><clockitem name="ck"/></clocks>
<pins><pitem name="Q"/></pins><nets><nitem name="k"/></nets></instance>
<instance name="u2" type="seq"><pins><pitem name="A"/></pins></instance><instance type="reg"/>
<views><view name="v"/></views><ramnets><ramnet name="r"/></ramnets>
<romnets><romnet name="o"/></romnets><mults><mult name="m"/></mults></unit></library></top>)";
std::string const dumpAnswers =
    " | 3 d[1] d[1:0] d[0] | 2 lib/u1/x.Q u2.A | 2 n lib/u1/x.k | 3 lib.u1.x u2  | 2 lib.u1.x "
    " | 2 clk lib/u1/x.ck | 1 v | 1 r | 1 o | 1 m";

TEST(Design, AnswersQueriesAndIsEmptyAfterAFailedLoad) {
    support::TempDir const dir;
    std::string const good = support::write(dir / "good", dump);
    std::string const bad = support::write(dir / "bad", "<design/>");
    TovDesign design;
    char const* const noPath = nullptr;
    for (char const* failing : {bad.c_str(), "missing", "/", "", noPath}) {
        EXPECT_EQ(answers(design), noAnswers);
        EXPECT_TRUE(design.load(good.c_str()));
        EXPECT_EQ(answers(design), dumpAnswers);
        EXPECT_FALSE(design.load(failing));
    }
    EXPECT_TRUE(design.load(good.c_str()));
    design.reset();
    EXPECT_EQ(answers(design), noAnswers);
}

TEST(Design, SaysWhyADumpWasNotReadWhole) {
    support::TempDir const dir;
    auto const file = [&dir](std::string const& name, std::string const& text) {
        return support::write(dir / name, text);
    };
    struct {
        std::string path;
        bool loaded;
        std::string error;
    } const rows[] = {
        {file("whole", dump), true, ""},
        {file("root", "<design/>"), false, "Line 1 Column 9: Tag design is not valid tag"},
        {file("child", "<top>\n<pins>"), true, "Line 2 Column 6: Tag pins is not valid tag"},
        {file("empty", ""), true, "Line 1 Column 0: Premature end of document."},
        {file("cut", "<top>\n<library>"), true, "Line 2 Column 9: Premature end of document."},
        {file("end", "<top></tip>"), true, "Line 1 Column 11: Opening and ending tag mismatch."},
        {"/proc/self/mem", true, "Line 1 Column 0: Premature end of document."},
        {dir / "missing", false, "No such file or directory"},
        {dir / "", false, "Is a directory"},
    };
    for (auto const& row : rows) {
        std::string error = "before";
        int calls = 0;
        auto const progress = [&calls](std::uint64_t at, std::uint64_t size) {
            EXPECT_EQ(at, size);
            return ++calls > 0;
        };
        EXPECT_EQ(TovDesign().load(row.path.c_str(), progress, &error), row.loaded) << row.error;
        EXPECT_EQ(error, row.error);
        EXPECT_EQ(calls, row.error.empty() ? 1 : 0) << row.error;
        EXPECT_EQ(TovDesign().load(row.path.c_str(), nullptr), row.loaded);
    }
    std::string error;
    EXPECT_FALSE(TovDesign().load(nullptr, nullptr, &error));
    EXPECT_EQ(error, "No such file or directory");
}

std::size_t openDescriptors() {
    std::filesystem::directory_iterator const all("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(begin(all), end(all)));
}

TEST(Design, TellsProgressAndStops) {
    support::TempDir const dir;
    std::string const path = support::write(dir / "large", dump + std::string(1'000'000, '\n'));
    std::uint64_t const size = std::filesystem::file_size(path);
    std::size_t const descriptors = openDescriptors();
    TovDesign design;
    int calls = 0;
    int lastCall = 0;
    bool throws = false;
    std::uint64_t before = 0;
    auto const progress = [&](std::uint64_t at, std::uint64_t of) {
        EXPECT_TRUE(of == size && at <= size && (at >= before || calls == 0)) << at;
        before = at;
        ++calls;
        if (throws && calls == lastCall) throw std::runtime_error("stop");
        return calls != lastCall;
    };
    EXPECT_TRUE(design.load(path.c_str(), progress));
    EXPECT_EQ(answers(design), dumpAnswers);
    EXPECT_TRUE(calls >= 20 && calls <= 1000) << calls;
    EXPECT_EQ(before, size);

    for (int const last : {1, calls / 2, calls, -1, -calls}) {
        EXPECT_TRUE(design.load(path.c_str()));
        calls = 0;
        lastCall = std::abs(last);
        throws = last < 0;
        std::string error;
        try {
            EXPECT_FALSE(design.load(path.c_str(), progress, &error));
            EXPECT_EQ(error, "The caller stopped the load");
        } catch (std::runtime_error const&) {
            EXPECT_EQ(error, "");
        }
        EXPECT_EQ(calls, lastCall);
        EXPECT_EQ(answers(design), noAnswers);
    }
    EXPECT_EQ(openDescriptors(), descriptors);
}

TEST(Design, ReadsAPipe) {
    support::TempDir const dir;
    std::string const pipe = dir / "p\xefpe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    std::thread writer([&] { std::ofstream(pipe) << "<" << std::flush << dump.substr(1); });
    TovDesign design;
    auto const progress = [](std::uint64_t at, std::uint64_t size) {
        EXPECT_EQ(at, dump.size());
        return size == at;
    };
    std::string error = "before";
    EXPECT_TRUE(design.load(pipe.c_str(), progress, &error));
    writer.join();
    EXPECT_EQ(answers(design), dumpAnswers);
    EXPECT_EQ(error, "");
}

}  // namespace
