// Runs every operation with each of its allocations failing in turn.

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <new>
#include <thread>

#include "allocations.h"
#include "database.h"
#include "platform/ut.h"
#include "support.h"
#include "tov/check.h"
#include "tov/cmd/references.h"
#include "tov/design/mrc_dump_reader.h"
#include "tov/names/document_names.h"
#include "tov/names/name_check.h"

namespace {

using namespace kiri::tov;
using allocations::live;
using allocations::untilFailure;

long failing = 0;  // the allocation that fails in this attempt
bool completed = false;

// Runs the operation of a scenario with a failing allocation; returns true if it completed.
bool attempt(std::function<void()> const& operation) {
    untilFailure = failing;
    completed = true;
    try {
        operation();
    } catch (std::bad_alloc const&) {
        completed = false;
    }
    EXPECT_EQ(failing > 0 && untilFailure == 0, !completed) << failing;
    untilFailure = 0;
    return completed;
}

// The same on a thread that has not used the library before.
bool attemptAnew(std::function<void()> const& operation) {
    std::thread([&operation] { attempt(operation); }).join();
    return completed;
}

// Plays a scenario with each allocation of its attempt failing in turn, from the `first` on; nothing may leak.
void sweep(std::function<void()> const& scenario, long first = 1) {
    failing = 0;
    scenario();  // allocates what the process keeps
    completed = false;
    for (failing = first; !completed && !testing::Test::HasFailure(); ++failing) {
        long const before = live;
        scenario();
        EXPECT_EQ(live, before) << failing;
    }
    EXPECT_GT(failing, first + 1) << "nothing failed";
}

// Lets a load continue, and needs memory for that.
bool allocate(std::uint64_t read, std::uint64_t) {
    return std::string(99, 'x').size() > read % 2;
}

TEST(Alloc, Documents) {
    support::TempDir const dir;
    std::string const out = dir / "out";
    auto const db = support::makeDatabase();
    std::vector<std::function<void(TOV&)>> fillings = {
        [&](TOV& document) { document.loadTaObjects(db.get(), true); },
    };
    for (auto const& seed : std::filesystem::directory_iterator(SEEDS "/document")) {
        fillings.push_back([path = seed.path()](TOV& document) { document.load(path.c_str(), allocate); });
    }
    std::string const old(100000, 'x');
    for (auto const& filling : fillings) {
        TOV whole;
        filling(whole);
        std::string const text = whole.toSaveString();
        sweep([&] {
            TOV document;
            bool const done = attemptAnew([&] { filling(document); });
            EXPECT_TRUE(document.toSaveString() == text || !done);
            document.reset();
            filling(document);
            EXPECT_TRUE(document.toSaveString() == text);
        });
        sweep([&] {
            support::write(out, old);
            bool const done = attemptAnew([&] { whole.save(out.c_str()); });
            EXPECT_TRUE(support::read(out) == (done ? text : old));
        });
        sweep([&] {
            std::string error = "as it was";
            support::write(out, "old");
            bool const done = attempt([&] { whole.saveAtomically(out.c_str(), &error); });
            EXPECT_TRUE(support::read(out) == (done ? text : "old"));
            EXPECT_EQ(error, done ? "" : "as it was");
            EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir / ""), {}), 1);
        });
    }
}

// A document is read completely or is empty, even if a line is refused.
TEST(Alloc, Reads) {
    support::TempDir const dir;
    for (std::string const last : {"c", "create_clock -waveform"}) {
        std::string const path = support::write(dir / "in", "set_false_path -to a\n# b\n#attribute a b c d e\n" + last);
        sweep([&] {
            std::string error = "as it was";
            TOV document;
            support::load(document, "set_false_path\nc");
            bool const done = attempt([&] { document.read(path.c_str(), allocate, &error); });
            EXPECT_EQ(error == "as it was", !done);
            EXPECT_EQ(support::bodyOf(document) == "~\n", !error.empty());
        });
    }
}

TEST(Alloc, Checks) {
    support::TempDir const dir;
    std::string const words = " a_word_that_is_beyond_any_small_text 2.9 b \\";
    for (std::string const line : {"set_multicycle_path -setup 2 1", "create_clock -add",
                                   "set_clock_groups -group {c d}", "set_load", "#attribute"}) {
        std::string const path = support::write(dir / "in", line + words + "\ncreate_clock -waveform");
        sweep([&] {
            std::vector<TovFinding> findings = {{7, TOVFINDING_LOST_WORD, "old"}};
            bool const done = attempt([&] { checkTovFile(path.c_str(), findings); });
            EXPECT_EQ(findings.front().text == "old", !done);
        });
        sweep([&] { attempt([&] { checkTovLine(line + words); }); });
    }
    TOV document;
    sweep([&] {
        std::string error = "as it was";
        bool const done = attempt([&] { document.saveAtomically((dir / "none/out").c_str(), &error); });
        EXPECT_EQ(error == "as it was", !done);
    });
}

TEST(Alloc, Commands) {
    char text[] = "[ get_pins { a_name_of_an_object_that_is_beyond_any_small_text b } ]";
    TovCmdFalsePath cmd(nullptr);
    std::function<void()> const operations[] = {
        [&] { referencesOf(cmd); },
        [&] { TovCmdClockDef(1, text, text); },
        [&] { TovCmdOutputDelay(1, text, text); },
        [&] { encloseDoubleQuotes(TovCmd::encloseBracket(text)); },
        [] { EXPECT_STREQ(neoform("%f", 1.5), "1.500000"); },
        [] { EXPECT_STREQ(neoform("%600.1f", 1.5) + 597, "1.5"); },
    };
    for (auto const& operation : operations) sweep([&] { attemptAnew(operation); });
    sweep([&] {
        ppStlList<taDciObj*> from = TovCmd::fromTclString(text, false);
        ppStlList<taDciObj*> to = TovCmd::fromTclString("old", false);
        bool const done = attemptAnew([&] { deepCopyDciObjList(from, to); });
        EXPECT_EQ(support::textOf(to), done ? support::textOf(from) : "old:59");
        freeDciObjList(from);
        freeDciObjList(to);
    });
}

TEST(Alloc, ADatabaseTakesAllThatItOwnsWithIt) {
    long const before = live;
    support::makeDatabase();
    EXPECT_EQ(live, before);
}

TEST(Alloc, Designs) {
    TovTopNode top("", "", "", "");
    untilFailure = 1000000;
    auto reader = std::make_unique<impl_detail::MrcDumpReader>(&top);
    long const made = 1000000 - std::exchange(untilFailure, 0);
    TovDesign design;
    support::TempDir const dir;
    std::string const whole = SEEDS "/design/full";
    std::string const cut = support::write(dir / "cut", support::read(whole) + "<");
    // If memory is short while Qt creates its objects, Qt ends the process: the sweep begins after that, on a thread
    // that Qt already knows.
    for (std::string const& path : {whole, cut}) {
        sweep(
            [&] {
                std::list<TovPortNode*> ports;
                std::string error;
                bool const done = attempt([&] { design.load(path.c_str(), allocate, &error); });
                EXPECT_EQ(design.getPorts(ports), done ? 4U : 0U);
                EXPECT_EQ(error.empty(), !done || path == whole);
                design.reset();
            },
            made + 1);
    }
    EXPECT_TRUE(design.load(whole.c_str()));
    sweep([&] {
        std::list<TovPortNode*> ports;
        bool const done = attemptAnew([&] { design.getPorts(ports); });
        EXPECT_NE(done, ports.empty());
    });
}

TEST(Alloc, NamesOfDesigns) {
    TovDesign design;
    EXPECT_TRUE(design.load(TEST_DATA "/joined.xml"));
    sweep([&] { attemptAnew([&] { EXPECT_TRUE(TovDesignNames(design, allocate).complete()); }); });
    TovDesignNames const names(design);
    using Nodes = std::vector<TovNode const*>;
    std::string const words[] = {"a/word/of/many/levels", "u1/CK", "*/C?", "*"};
    for (auto const match : {TOVMATCH_LEVELS, TOVMATCH_LOCAL, TOVMATCH_FLAT}) {
        auto const find = [&](std::string const& word, Nodes& nodes) { names.find(taDciObjName, word, nodes, match); };
        sweep([&] {
            Nodes nodes[4] = {{nullptr}, {nullptr}, {nullptr}, {nullptr}};
            bool const done = attempt([&] {
                for (int i = 0; i < 4; ++i) find(words[i], nodes[i]);
            });
            for (int i = 0; i < 4; ++i) {
                Nodes expected;
                find(words[i], expected);
                EXPECT_TRUE(nodes[i] == expected || (!done && nodes[i] == Nodes{nullptr})) << words[i];
            }
        });
    }
    sweep([&] { attempt([&] { EXPECT_EQ(names.nearest(taDciObjPin, "u1/CX"), "u1/CK"); }); });
}

TEST(Alloc, JoinsOfDocumentsAndDesigns) {
    TovDesign design;
    EXPECT_TRUE(design.load(TEST_DATA "/joined.xml"));
    TovDesignNames const names(design);
    std::list<TovPortNode*> ports;
    design.getPorts(ports);
    support::TempDir const dir;
    std::string const path = support::write(dir / "in",
                                            "create_clock -period 1 -name a_name_beyond_any_small_text clk\n"
                                            "set_false_path -from {a_name* b? d} -to [get_pins -hier {CK x*}]\n");
    TOV document;
    document.load(path.c_str());
    TovCmd& clock = *document.getTovCmdList(TOVCMD_CLOCK)->front();
    TovCmd& falsePath = *document.getTovCmdList(TOVCMD_FALSEPATH)->front();
    sweep([&] { attemptAnew([&] { TovDocumentNames(document, names).usesIn(falsePath); }); });
    sweep([&] {
        TovDocumentNames join(document, names);
        join.remove(clock);
        join.remove(falsePath);
        attempt([&] {
            join.add(clock);
            join.add(falsePath);
            EXPECT_EQ(join.missing().size() + join.commandsOf(*ports.front()).size(), 3U);
        });
        join.add(clock);
        join.add(falsePath);
        EXPECT_EQ(join.missingIn(falsePath).size() + join.commandsOf(*ports.front()).size(), 3U);
    });
    TovCheckOptions options;
    options.names = &names;
    sweep([&] {
        std::string error = "as it was";
        std::vector<TovFinding> findings = {{7, TOVFINDING_LOST_WORD, "old"}};
        bool const done = attempt([&] { checkTovFile(path.c_str(), options, findings, &error); });
        EXPECT_EQ(error == "as it was" && findings.front().text == "old", !done);
    });
}

}  // namespace
