// Documents joined with a design: the words of commands, and the commands of nodes.

#include "tov/names/document_names.h"

#include <gtest/gtest.h>
#include <pthread.h>

#include <sys/stat.h>
#include <random>
#include <tuple>

#include <thread>

#include "support.h"
#include "tov/cmd/commands.h"
#include "tov/cmd/references.h"
#include "tov/edit.h"
#include "tov/make_command.h"
#include "tov/names/name_check.h"

namespace {

using namespace kiri::tov;

TovNameMatch const matches[] = {TOVMATCH_LEVELS, TOVMATCH_LOCAL, TOVMATCH_FLAT};

class Join : public testing::Test {
protected:
    Join() { support::load(document, "create_clock -name m\n#disable create_clock -name off"); }

    static TovDesign const& design() {
        static TovDesign loaded;
        static bool const done = loaded.load(TEST_DATA "/joined.xml");
        EXPECT_TRUE(done);
        return loaded;
    }

    // Adds the command of a line; any other text is an expression after "-from".
    TovCmd& add(std::string const& line) {
        TOVCMD_TYPE list = TOVCMD_NONE;
        if (std::unique_ptr<TovCmd> cmd = makeCommand(line, &list)) return addCommand(document, list, std::move(cmd));
        auto path = std::make_unique<TovCmdFalsePath>(nullptr);
        replaceReferences(path->from, line, false);
        return addCommand(document, TOVCMD_FALSEPATH, std::move(path));
    }

    // The uses as lines "role:type word"; those in `missing` are marked.
    static std::string textOf(std::vector<TovNameUse> const& uses, std::vector<TovNameUse> missing) {
        std::string text;
        for (TovNameUse const& use : uses) {
            text += (text.empty() ? "" : "\n") + (use.role + (":" + std::to_string(use.type))) + " " + use.word;
            if (use.match == TOVMATCH_LOCAL) text += " local";
            if (missing.empty() || missing.front().role != use.role || missing.front().word != use.word ||
                missing.front().match != use.match)
                continue;
            text += " missing";
            missing.erase(missing.begin());
        }
        return text + (missing.empty() ? "" : " and others are missing");
    }

    static std::string wordsOf(std::vector<TovNameUse> const& uses) {
        std::string text;
        for (TovNameUse const& use : uses) text += (text.empty() ? "" : " ") + use.word;
        return text;
    }

    template <class Node>
    static void addNodes(std::vector<TovNode const*>& nodes, std::size_t (TovDesign::*query)(std::list<Node*>&) const) {
        std::list<Node*> found;
        (design().*query)(found);
        nodes.insert(nodes.end(), found.begin(), found.end());
    }

    TOV document;
    TovDesignNames const names{design()};
};

TEST_F(Join, FindsTheWordsOfCommands) {
    add("create_generated_clock -name {g.1}");
    add("create_clock -period 1 {d d[0]}");
    TovDocumentNames const join(document, names);
    support::expectRows("uses", [&](std::string const& line) {
        TovCmd& cmd = add(line);
        TovDocumentNames const whole(document, names);
        EXPECT_EQ(wordsOf(whole.missing()), wordsOf(join.missingIn(cmd)));
        cmd.enabled = false;
        EXPECT_EQ(wordsOf(whole.missing()), "");
        return textOf(join.usesIn(cmd), join.missingIn(cmd));
    });
}

// The words of every command against every node, by the index itself.
TEST_F(Join, FindsTheCommandsOfNodes) {
    for (support::Row const& row : support::rowsOf("uses")) add(row.input);
    for (char const* words : {"* */* */*/* n?? u1/m[1] u1/m[3:0] CK m", "u1/r0/Q\\* \\\\r\xc3\xbc/x lib/u1/rtl/CK gck"})
        add("#disable set_false_path -from {" + std::string(words) + "} -to [get_pins -hier {" + words + "}]");
    std::vector<TovNode const*> nodes;
    addNodes(nodes, &TovDesign::getPorts);
    addNodes(nodes, &TovDesign::getPins);
    addNodes(nodes, &TovDesign::getNets);
    addNodes(nodes, &TovDesign::getCells);
    addNodes(nodes, &TovDesign::getClocks);
    for (TovNameMatch const match : matches) {
        TovDocumentNames const join(document, names, match);
        std::size_t count = 0;
        for (TovNode const* node : nodes) {
            std::vector<TovCmd*> expected;
            forEachCommand(document, [&](TOVCMD_TYPE, TovCmd& cmd) {
                bool refers = false;
                for (TovNameUse const& use : join.usesIn(cmd)) {
                    std::vector<TovNode const*> found;
                    names.find(use.type, use.word, found, use.match);
                    refers = refers || std::find(found.begin(), found.end(), node) != found.end();
                }
                if (refers) expected.push_back(&cmd);
            });
            EXPECT_EQ(join.commandsOf(*node), expected) << node->hierachyName('/');
            count += expected.size();
        }
        EXPECT_GT(count, 50U);
    }
}

TEST_F(Join, FollowsChanges) {
    TovCmd& path = add("set_false_path -from [get_clocks {off m new*}] -to u1/CK");
    TovDocumentNames join(document, names);
    std::list<TovPortNode*> pins;
    design().getPins(pins);
    TovNode const& pin = *pins.front();
    EXPECT_EQ(wordsOf(join.missing()), "off new*");
    EXPECT_EQ(join.commandsOf(pin), std::vector<TovCmd*>{&path});

    std::list<TovCmd*>& clocks = *document.getTovCmdList(TOVCMD_CLOCK);
    clocks.front()->enabled = false;
    clocks.back()->enabled = true;
    TovCmd& clock = add("create_clock -name new_1 u1/CK");
    join.add(clock);
    EXPECT_EQ(wordsOf(join.missing()), "m");
    EXPECT_EQ(join.commandsOf(pin), (std::vector<TovCmd*>{&clock, &path}));

    join.remove(clock);
    clocks.pop_back();
    delete &clock;
    EXPECT_EQ(wordsOf(join.missing()), "m new*");
    join.remove(path);
    EXPECT_TRUE(join.missing().empty() && join.commandsOf(pin).empty());
    EXPECT_EQ(wordsOf(join.missingIn(path)), "m new*");
    TovCmd& kept = add("set_false_path -from u1/CK -to nowhere");
    join.add(kept);
    // Often enough for the old words to be dropped.
    for (int i = 0; i < 5000; ++i) {
        replaceReferences(static_cast<TovCmdFalsePath&>(path).to, "u1/C" + std::to_string(i), false);
        join.add(path);
    }
    EXPECT_EQ(wordsOf(join.missing()), "m new* u1/C4999 nowhere");
    EXPECT_EQ(join.commandsOf(pin), std::vector<TovCmd*>{&kept});

    std::unique_ptr<TovCmd> const loose = makeCommand("set_max_delay 1 -to u1/CK");  // in no list yet
    join.add(*loose);
    EXPECT_EQ(join.commandsOf(pin), (std::vector<TovCmd*>{&kept, loose.get()}));
}

// The name of a clock is that of its definition without escapes, and has no bits.
TEST_F(Join, TakesTheNamesOfClocks) {
    add("create_clock -name {a.b\\[0\\]}");
    TovCmd& path = add("set_false_path -from {a/b[0] a.b[0] a*0? a/b?0] a/b a/b[1:0] of?}");
    EXPECT_EQ(wordsOf(TovDocumentNames(document, names).missingIn(path)), "a/b a/b[1:0] of?");
}

// A list that an expression made, in which the caller then replaced a port.
TEST_F(Join, FindsTheWordsOfChangedLists) {
    TovCmd& path = add("get_ports clk n");
    EXPECT_EQ(wordsOf(TovDocumentNames(document, names).missingIn(path)), "n");
    taDciObj*& port = static_cast<TovCmdFalsePath&>(path).from.front();
    delete std::exchange(port, new taDciObj("e", nullptr, taDciObjPort, taDciObjNone));
    EXPECT_EQ(wordsOf(TovDocumentNames(document, names).missingIn(path)), "e n");
}

// Commands are added, changed, removed and added again, and clocks with them; after each step a new join must give the
// same answers.
TEST_F(Join, AnswersAsOneMadeAnew) {
    TovDocumentNames join(document, names);
    std::vector<TovNode const*> nodes;
    addNodes(nodes, &TovDesign::getPins);
    addNodes(nodes, &TovDesign::getCells);
    addNodes(nodes, &TovDesign::getClocks);
    std::vector<std::string> lines = {"create_clock -name new_1 u1/CK", "create_clock [get_ports d]",
                                      "create_clock -name m", "create_generated_clock -name new_2 [get_pins -hier CK]"};
    for (char const* words : {"new_1", "new*", "m x", "u1/CK", "-hier CK", "d", "*/*", "CK r0/CK"})
        lines.push_back(std::string("set_false_path -to [get_clocks {") + words + "}] -from [get_pins {" + words +
                        "}]");
    struct Known {
        TovCmd* cmd;
        bool isJoined;
    };
    std::vector<Known> commands;
    std::minstd_rand random;
    for (int step = 0; step < 600; ++step) {
        if (commands.size() < 8 || random() % 3 == 0) {
            commands.push_back({&add(lines[random() % lines.size()]), true});
            join.add(*commands.back().cmd);
        }
        Known& known = commands[random() % commands.size()];
        if (random() % 4 == 0) known.cmd->enabled = !known.cmd->enabled;
        auto* path = dynamic_cast<TovCmdFalsePath*>(known.cmd);
        bool const isChanged = path != nullptr && random() % 2 == 0;
        join.remove(*known.cmd);
        if (isChanged) replaceReferences(path->from, random() % 2 == 0 ? "[get_pins u1/CK]" : "{new_2 x}", false);
        known.isJoined = random() % 4 != 0;
        if (known.isJoined) join.add(*known.cmd);
        if (step % 20 != 0) continue;
        TovDocumentNames whole(document, names);
        for (Known const& other : commands) {
            if (!other.isJoined) whole.remove(*other.cmd);
        }
        EXPECT_EQ(textOf(join.missing(), {}), textOf(whole.missing(), {})) << step;
        for (TovNode const* node : nodes) EXPECT_EQ(join.commandsOf(*node), whole.commandsOf(*node)) << step;
    }
}

// A node with very many levels, on a thread with a small stack.
TEST(DeepNames, AreFoundInASmallStack) {
    constexpr int levels = 10'000;
    std::string cell, pattern;
    for (int i = 0; i < levels; ++i) cell += "/a", pattern += "/*";
    support::TempDir const dir;
    TovDesign deep;
    deep.load(support::write(dir / "dump", "<top name='t'><library><instance name='t." + cell.substr(1) +
                                               "'><pins><pitem name='CK'/></pins></instance></library></top>")
                  .c_str());
    TOV document;
    support::load(document, "set_false_path -from [get_cells " + cell.substr(1) + "] -to [get_pins " +
                                pattern.substr(1) + "/CK]\nset_false_path -from [get_cells a] -to [get_pins {a/CK x}]");
    auto const ask = [](void* argument) -> void* {
        auto& [design, doc, word] = *static_cast<std::tuple<TovDesign*, TOV*, std::string>*>(argument);
        TovDesignNames const names(*design);
        for (int match = 0; match < 3; ++match) {
            std::vector<TovNode const*> nodes;
            EXPECT_EQ(names.find(taDciObjPin, word, nodes, static_cast<TovNameMatch>(match)), match == 1 ? 0U : 1U);
        }
        std::vector<TovNode const*> cells;
        names.find(taDciObjCell, "a", cells, TOVMATCH_LOCAL);
        TovDocumentNames const join(*doc, names);
        EXPECT_EQ(cells.size(), 1U);
        if (cells.empty()) return nullptr;
        EXPECT_EQ(join.commandsOf(*cells[0]).size(), 2U);
        EXPECT_EQ(join.missing().size(), 2U);
        EXPECT_EQ(names.nearest(taDciObjPin, std::string(500, '/') + "CX"), "");
        return nullptr;
    };
    std::tuple<TovDesign*, TOV*, std::string> input{&deep, &document, pattern.substr(1) + "/CK"};
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, std::size_t{256} * 1024);
    pthread_t thread{};
    ASSERT_EQ(pthread_create(&thread, &attributes, ask, &input), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

class NameCheck : public Join {
protected:
    // Findings as text: "line:kind text; ...".
    std::string check(std::string const& file, std::string* error = nullptr) {
        std::string text;
        std::vector<TovFinding> findings;
        EXPECT_EQ(checkTovFile(file.c_str(), options, findings, error), error == nullptr);
        for (auto const& [line, kind, words] : findings) {
            text += (text.empty() ? "" : "; ") + std::to_string(line) + ":" + std::to_string(kind) + " " + words;
        }
        return text;
    }

    support::TempDir const dir;
    std::string const path = dir / "in";
    TovCheckOptions options;
};

TEST_F(NameCheck, FindsMissingNames) {
    options.names = &names;
    support::expectRows("missing_names", [&](std::string const& text) { return check(support::write(path, text)); });
    support::write(path, "set_false_path -from [get_pins CK]\nset_load 1");
    EXPECT_EQ(check(path), "1:8 CK; 2:2 set_load 1");
    options.match = TOVMATCH_LOCAL;
    EXPECT_EQ(check(path), "2:2 set_load 1");
    options.names = nullptr;
    options.match = TOVMATCH_LEVELS;
    EXPECT_EQ(check(path), "2:2 set_load 1");
}

TEST_F(NameCheck, TellsProgressAndStops) {
    options.names = &names;
    std::string error;
    EXPECT_EQ(check(dir / "none", &error) + error, "No such file or directory");
    support::write(path, "set_false_path -to x\n" + std::string(1'000'000, 'z') + "\nset_false_path -to y");
    std::vector<TovFinding> findings;
    auto const load = [&](auto progress) {
        findings = {{7, TOVFINDING_LOST_WORD, "old"}};
        options.progress = progress;
        return checkTovFile(path.c_str(), options, findings, &error);
    };
    int const calls = support::expectProgress(path, load);
    EXPECT_EQ(findings.size() + error.size(), 3U);
    support::expectStops(calls, load, [&](bool thrown) {
        EXPECT_EQ(findings.front().text, thrown ? "old" : "x");
        EXPECT_TRUE(findings.size() == 1 || findings.size() == 3) << "a part of a line is checked";
        EXPECT_EQ(error, thrown ? "" : "The caller stopped the load");
        error.clear();
    });
}

// What the visitor receives, and where it may stop the check.
TEST_F(NameCheck, VisitsFindings) {
    options.names = &names;
    std::string const text =
        "set_load 1\r\n\nset_false_path 5 -from c -to {x y} -through\ncreate_clock -name c\nset_load 2";
    std::vector<std::string> visits;
    std::string error = "old";
    std::size_t most = 10;
    auto const visit = [&](TovFinding const& finding, std::string const& line, std::vector<TovNameUse> const& missing) {
        visits.push_back(std::to_string(finding.line) + ":" + findingCode(finding.kind) + " <" + line + "> " +
                         wordsOf(missing));
        return visits.size() < most;
    };
    std::vector<std::string> const expected = {
        "1:unknown-command <set_load 1> ",
        "3:lost-word <set_false_path 5 -from c -to {x y} -through> ",
        "3:missing-name <set_false_path 5 -from c -to {x y} -through> x y",
        "4:changed-value <create_clock -name c> ",
        "5:unknown-command <set_load 2> ",
    };
    EXPECT_TRUE(checkTovFile(support::write(path, text).c_str(), options, visit, &error));
    EXPECT_EQ(visits, expected);
    EXPECT_EQ(error, "");

    // A file that can be read only once, and comes in parts.
    std::string const pipe = dir / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    visits.clear();
    std::thread writer([&] {
        std::ofstream file(pipe);
        for (char const c : text) {
            file << c << std::flush;
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    });
    EXPECT_TRUE(checkTovFile(pipe.c_str(), options, visit));
    writer.join();
    EXPECT_EQ(visits, expected);

    options.progress = [](std::uint64_t read, std::uint64_t size) {
        EXPECT_TRUE(read == 0 || read < size) << "the end is reported of a check that stopped";
        return true;
    };
    for (most = 1; most <= expected.size(); ++most) {
        visits.clear();
        EXPECT_FALSE(checkTovFile(path.c_str(), options, visit, &error));
        EXPECT_EQ(error, "The caller stopped the check");
        EXPECT_EQ(visits.size(), most);
    }
}

TEST_F(NameCheck, SuggestsNames) {
    support::load(document, "set_false_path -from [get_clocks ck] -to {u1/CX \xe4\x1b}");
    std::vector<std::string> messages;
    for (TovNameUse const& use : TovDocumentNames(document, names).missing()) {
        messages.push_back(missingMessage(use));
        messages.push_back(missingMessage(use, names));
    }
    std::vector<std::string> const expected = {
        "no such clock: `ck`",       "no such clock: `ck`; did you mean `clk`?",
        "no such object: `u1/CX`",   "no such object: `u1/CX`; did you mean `u1/CK`?",
        "no such object: `\u00e4?`", "no such object: `\u00e4?`",
    };
    EXPECT_EQ(messages, expected);
    EXPECT_EQ(missingMessage({nullptr, "", taDciObjPin, "u1/CK", TOVMATCH_LOCAL}, names), "no such pin: `u1/CK`");
}

}  // namespace
