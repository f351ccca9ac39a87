// Designs: the results of queries, and how loads end.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdint>
#include <fstream>
#include <thread>

#include "support.h"
#include "tov/design/queries.h"

using namespace kiri::tov;

namespace {

/// Runs each query with a list of one null; returns " | ", the length and the names for each.
std::string answers(TovDesign const& design) {
    std::string line;
    forEachQuery([&](char const*, auto query) {
        NodesOf<decltype(query)> out(1);
        line += " | " + std::to_string((design.*query)(out));
        for (TovNode const* node : out) line += " " + (node == nullptr ? "null" : node->hierachyName('.'));
    });
    return line;
}

// The answer of a design without nodes: each list is unchanged.
std::string const noAnswers = [] {
    std::string line;
    forEachQuery([&line](char const*, auto) { line += " | 0 null"; });
    return line;
}();

auto const [dump, dumpAnswers, place] = support::rowsOf("answers").front();

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
    auto const load = [](char const* path) {
        std::string error = "before";
        int calls = 0;
        auto const progress = [&calls](std::uint64_t at, std::uint64_t size) {
            EXPECT_EQ(at, size);
            return ++calls > 0;
        };
        bool const loaded = TovDesign().load(path, progress, &error);
        EXPECT_EQ(calls, error.empty() ? 1 : 0) << error;
        EXPECT_EQ(TovDesign().load(path, nullptr), loaded) << error;
        return (loaded ? "true " : "false ") + error;
    };
    support::expectRows("dump_errors",
                        [&](std::string const& text) { return load(support::write(dir / "dump", text).c_str()); });
    EXPECT_EQ(load("/proc/self/mem"), "true Line 1 Column 0: Premature end of document.");
    EXPECT_EQ(load((dir / "missing").c_str()), "false No such file or directory");
    EXPECT_EQ(load((dir / "").c_str()), "false Is a directory");
    EXPECT_EQ(load(nullptr), "false No such file or directory");
}

TEST(Design, TellsProgressAndStops) {
    support::TempDir const dir;
    std::string const path = support::write(dir / "large", dump + std::string(1'000'000, '\n'));
    std::size_t const descriptors = support::descriptors();
    TovDesign design;
    std::string error;
    auto const load = [&](auto progress) {
        EXPECT_TRUE(design.load(path.c_str()));
        error.clear();
        return design.load(path.c_str(), progress, &error);
    };
    int const calls = support::expectProgress(path, load);
    EXPECT_EQ(answers(design), dumpAnswers);
    support::expectStops(calls, load, [&](bool thrown) {
        EXPECT_EQ(error, thrown ? "" : "The caller stopped the load");
        EXPECT_EQ(answers(design), noAnswers);
    });
    EXPECT_EQ(support::descriptors(), descriptors);
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
