// Every operation with each of its allocations failing in turn. What Qt takes by malloc is its own.

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <new>

#include "support.h"
#include "tov/check.h"
#include "tov/cmd/references.h"
#include "tov/design/mrc_dump_reader.h"

static long live = 0;          // blocks handed out and not given back
static long untilFailure = 0;  // counts down to the allocation that fails; 0: none
static long failing = 0;       // the allocation of an attempt that fails
static bool completed = false;

void* operator new(std::size_t size) {
    void* const block = untilFailure > 0 && --untilFailure == 0 ? nullptr : std::malloc(size + 1);
    if (block == nullptr) throw std::bad_alloc();
    return ++live, block;
}
void operator delete(void* block) noexcept {
    live -= block != nullptr, std::free(block);
}
void operator delete(void* block, std::size_t) noexcept {
    operator delete(block);
}

namespace {

using namespace kiri::tov;

// The operation of a scenario whose allocation fails; true if it was completed.
bool attempt(std::function<void()> const& operation) {
    untilFailure = failing;
    completed = true;
    try {
        operation();
    } catch (std::bad_alloc const&) {
        completed = false;
    }
    EXPECT_TRUE(untilFailure > 0 || !completed || failing == 0) << failing << " was swallowed";
    untilFailure = 0;
    return completed;
}

// Plays a scenario with each allocation of its attempt failing, from the `first` on; nothing is left over.
void sweep(std::function<void()> const& scenario, long first = 1) {
    failing = 0;
    scenario();  // makes what a thread or the process keeps
    completed = false;
    for (failing = first; !completed && !testing::Test::HasFailure(); ++failing) {
        long const before = live;
        scenario();
        EXPECT_EQ(live, before) << failing;
    }
    EXPECT_GT(failing, first + 1) << "nothing failed";
}

// Puts a record for every class of commands into a database.
void fill(taDci& db) {
    char const* const name = "name_of_an_object_that_is_beyond_any_small_text";
    auto const refs = [name](auto&... list) {
        (list.push_back(new taDciObj(name, "", taDciObjPort, taDciObjNone)), ...);
    };
    db.clocks = {new taDciSynClk(), new taDciSynClk()};
    db.ios = {new taDciSynIo()};
    db.maxs = {new taDciSynMax()};
    db.mcycs = {new taDciSynMcyc()};
    db.falses = {new taDciSynFalse()};
    db.clockGroups = {new taDciSynClkGroup()};
    db.clockGroups.front()->groups = {new ppStlList<taDciSynClkGroupMember*>{new taDciSynClkGroupMember()}};
    db.clockGroups.front()->groups.front()->front()->clock = db.clocks.front();
    db.clocks.front()->master = db.falses.front()->flag = 1;
    db.ios.front()->clock = db.clocks.front();
    refs(db.ios.front()->objects, db.maxs.front()->from, db.maxs.front()->to);
    refs(db.mcycs.front()->from, db.mcycs.front()->to, db.falses.front()->from, db.falses.front()->through);
    for (auto* c : db.clocks) c->name = taDciText(name), c->masterClock = c, refs(c->source, c->targets);
}

TEST(Alloc, Documents) {
    support::TempDir const dir;
    std::string const out = dir / "out";
    taDci db;
    fill(db);
    std::vector<std::function<void(TOV&)>> fillings = {[&](TOV& document) { document.loadTaObjects(&db, true); }};
    for (auto const& seed : std::filesystem::directory_iterator(SEEDS "/document")) {
        fillings.push_back([path = seed.path()](TOV& document) { document.load(path.c_str()); });
    }
    for (auto const& filling : fillings) {
        TOV whole;
        filling(whole);
        std::string const text = whole.toSaveString();
        sweep([&] {
            TOV document;
            bool const done = attempt([&] { filling(document); });
            EXPECT_TRUE(document.toSaveString() == text || !done);
            document.reset();
            filling(document);
            EXPECT_EQ(document.toSaveString(), text);
        });
        sweep([&] {
            support::write(out, "old");
            bool const done = attempt([&] { whole.save(out.c_str()); });
            EXPECT_EQ(support::read(out), done ? text : "old");
        });
        sweep([&] {
            std::string error = "as it was";
            support::write(out, "old");
            bool const done = attempt([&] { whole.saveAtomically(out.c_str(), &error); });
            EXPECT_EQ(support::read(out), done ? text : "old");
            EXPECT_EQ(error, done ? "" : "as it was");
            EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir / ""), {}), 1);
        });
    }
}

TEST(Alloc, Checks) {
    std::string const words = " a_word_that_is_beyond_any_small_text 2.9 b \\";
    for (std::string const line : {"set_multicycle_path -setup 2 1", "create_clock -add",
                                   "set_clock_groups -group {c d}", "set_load", "#attribute"}) {
        support::TempDir const dir;
        std::string const path = support::write(dir / "in", line + words + "\ncreate_clock -waveform");
        sweep([&] {
            std::vector<TovFinding> findings = {{7, TOVFINDING_LOST_WORD, "old"}};
            bool const done = attempt([&] { checkTovFile(path.c_str(), findings); });
            EXPECT_EQ(findings.front().text == "old", !done);
        });
        sweep([&] { attempt([&] { checkTovLine(line + words); }); });
    }
    support::TempDir const dir;
    TOV document;
    sweep([&] {
        std::string error = "as it was";
        bool const done = attempt([&] { document.saveAtomically((dir / "none/out").c_str(), &error); });
        EXPECT_EQ(error == "as it was", !done);
    });
    TovCmdFalsePath cmd(nullptr);
    sweep([&] { attempt([&] { referencesOf(cmd); }); });
}

TEST(Alloc, Commands) {
    char text[] = "[ get_pins { a_name_of_an_object_that_is_beyond_any_small_text b } ]";
    sweep([&] {
        attempt([&] {
            TovCmdClockDef(1, text, text), TovCmdGenClockDef(text, text), TovCmdOutputDelay(1, text, text);
            TovCmdMaxDelay(1, text), TovCmdMultiPath(1, text), TovCmdFalsePath(&text[0]);
            TovCmdAttr(text, text, text, text, encloseDoubleQuotes(TovCmd::encloseBracket(text)));
        });
    });
    sweep([&] {
        ppStlList<taDciObj*> from = TovCmd::fromTclString(text, false);
        ppStlList<taDciObj*> to = TovCmd::fromTclString("old", false);
        bool const done = attempt([&] { deepCopyDciObjList(from, to); });
        EXPECT_EQ(support::textOf(to), done ? support::textOf(from) : "old:59");
        freeDciObjList(from);
        freeDciObjList(to);
    });
}

// An answer is complete, or there is none.
template <class Node>
void sweepQuery(TovDesign const& design, std::size_t (TovDesign::*query)(std::list<Node*>&) const) {
    sweep([&] {
        std::list<Node*> out;
        bool const done = attempt([&] { (design.*query)(out); });
        EXPECT_NE(done, out.empty());
    });
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
    std::string const longText(99, 'x');
    TovProgress const allocate = [&](auto, auto) { return std::string(longText) == longText; };
    auto const scenario = [&](std::string const& path) {
        std::list<TovPortNode*> ports;
        std::string error;
        bool const done = attempt([&] { design.load(path.c_str(), allocate, &error); });
        EXPECT_EQ(design.getPorts(ports), done ? 4U : 0U);
        EXPECT_EQ(error.empty(), !done || path == whole);
        design.reset();
    };
    // Where memory is short while Qt makes its parser, Qt ends the process: the sweep begins after that.
    sweep([&] { scenario(whole); }, made + 1);
    sweep([&] { scenario(cut); }, made + 1);
    EXPECT_TRUE(design.load(SEEDS "/design/full"));
    auto const sweepAll = [&](auto... query) { (sweepQuery(design, query), ...); };
    sweepAll(&TovDesign::getPorts, &TovDesign::getPins, &TovDesign::getNets, &TovDesign::getCells, &TovDesign::getRegs,
             &TovDesign::getClocks, &TovDesign::getViews, &TovDesign::getRams, &TovDesign::getRoms,
             &TovDesign::getMults);
}

}  // namespace
