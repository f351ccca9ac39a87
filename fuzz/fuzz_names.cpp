// A design and words: compares what the index finds with what the rules find, applied to one node after another. The
// input is lines: c, p, n, k with the name of a cell, and of its pin, net or clock; before the first cell those of the
// top. l and a are library and arch of the cells that follow. Any other line is a word. The words are also those of a
// document, joined with the design.

#include <map>

#include "fuzz/fuzz.h"
#include "fuzz/name_rules.h"
#include "tov/edit.h"
#include "tov/make_command.h"
#include "tov/names/document_names.h"

namespace {

using namespace kiri::tov;

constexpr std::size_t mostWords = 6;  // of the input, and as many again of the design's own

std::string attribute(char const* name, std::string const& text) {
    std::string xml = std::string(" ") + name + "=\"";
    for (char const c : text) xml += "&#" + std::to_string(std::max<int>(static_cast<unsigned char>(c), 9)) + ";";
    return xml + "\"";
}

std::string item(char kind, std::string const& name) {
    if (kind == 'k') return "<clocks><clockitem" + attribute("name", name) + "/></clocks>";
    if (kind == 'n') return "<nets><nitem" + attribute("name", name) + "/></nets>";
    return "<pins><pitem" + attribute("name", name) + "/></pins>";
}

// Returns the dump that the lines describe, and stores the words.
std::string dumpOf(std::string const& input, std::vector<std::string>& words) {
    std::string clocks;
    std::string dump;
    std::string library;
    std::string arch;
    bool isInCell = false;
    for (std::size_t at = 0, end = 0; at < input.size(); at = end + 1) {
        end = std::min(input.find('\n', at), input.size());
        std::string const line = input.substr(at, end - at);
        std::string const name = line.empty() ? "" : line.substr(1);
        switch (line.empty() ? '\0' : line[0]) {
            case 'l':
                library = name;
                break;
            case 'a':
                arch = name;
                break;
            case 'c':
                dump += isInCell ? "</instance><instance" : "<instance";
                dump += attribute("name", name) + attribute("library", library) + attribute("arch", arch) + ">";
                isInCell = true;
                break;
            case 'p':
            case 'n':
            case 'k':
                (line[0] == 'k' && !isInCell ? clocks : dump) += item(line[0], name);
                break;
            default:
                if (words.size() < mostWords) words.push_back(line.empty() || line[0] != 'w' ? line : name);
        }
    }
    if (isInCell) dump += "</instance>";
    return "<top>" + clocks + "<library><unit>" + dump + "</unit></library></top>";
}

// Commands that refer to the words as all kinds of objects.
void addCommands(TOV& document, std::vector<std::string> const& words) {
    for (std::string const& word : words) {
        for (std::string const& line : {"-from [get_pins {" + word + "}] -to [get_cells {" + word + "}]",
                                        "-from [get_ports {" + word + "}] -to [get_clocks {" + word + "}]",
                                        "-from [get_nets {" + word + "}] -to [get_cells -hier {" + word + "}]",
                                        "-from {" + word + "} -to [get_pins -hier {" + word + "}]"}) {
            if (auto cmd = makeCommand("set_false_path " + line))
                addCommand(document, TOVCMD_FALSEPATH, std::move(cmd));
        }
    }
}

// The commands of each node are those that have a word by which the index finds it.
void checkCommandsOf(std::vector<name_rules::Candidate> const& candidates, TovDesignNames const& names,
                     std::vector<std::string> const& words) {
    TOV document;
    addCommands(document, words);
    for (auto const match : {TOVMATCH_LEVELS, TOVMATCH_LOCAL, TOVMATCH_FLAT}) {
        TovDocumentNames const join(document, names, match);
        std::map<TovNode const*, std::vector<TovCmd*>> expected;
        forEachCommand(document, [&](TOVCMD_TYPE, TovCmd& cmd) {
            for (TovNameUse const& use : join.usesIn(cmd)) {
                std::vector<TovNode const*> nodes;
                names.find(use.type, use.word, nodes, use.match);
                for (TovNode const* node : nodes) {
                    std::vector<TovCmd*>& known = expected[node];
                    if (known.empty() || known.back() != &cmd) known.push_back(&cmd);
                }
            }
        });
        for (auto const& candidate : candidates) {
            fuzz::require(join.commandsOf(*candidate.node) == expected[candidate.node], "the commands of a node",
                          names.nameOf(*candidate.node), std::to_string(match));
        }
    }
}

}  // namespace

void fuzz::run(std::string const& input) {
    std::vector<std::string> words;
    fuzz::MemoryFile const file(dumpOf(input, words));
    TovDesign design;
    fuzz::require(design.load(file.path().c_str()), "a dump");
    TovDesignNames const names(design);
    auto const candidates = name_rules::candidatesOf(design);
    for (auto const& candidate : candidates) {
        if (words.size() < 2 * mostWords) words.push_back(names.nameOf(*candidate.node));
    }
    for (std::string const& word : words) {
        for (int type : {taDciObjNet, taDciObjPin, taDciObjPort, taDciObjCell, taDciObjClock, taDciObjName}) {
            auto const kind = static_cast<taDciObjTyp>(type);
            for (auto const match : {TOVMATCH_LEVELS, TOVMATCH_LOCAL, TOVMATCH_FLAT}) {
                std::vector<TovNode const*> nodes(1);
                auto const expected = name_rules::find(candidates, kind, word, match);
                fuzz::require(names.find(kind, word, nodes, match) == nodes.size(), "the number of nodes", word);
                fuzz::require(nodes == expected, "the nodes are those of the rules", word, std::to_string(type));
                fuzz::require(names.has(kind, word, match) == !nodes.empty(), "there are any", word);
            }
        }
        fuzz::require(names.nearest(taDciObjName, word) == name_rules::nearest(names, candidates, taDciObjName, word),
                      "the nearest name", word);
    }
    checkCommandsOf(candidates, names, words);
    for (auto const& candidate : candidates) {
        std::string const word = names.nameOf(*candidate.node);
        auto const found = name_rules::find(candidates, taDciObjName, word, TOVMATCH_LEVELS);
        fuzz::require(word.empty() || std::count(found.begin(), found.end(), candidate.node) == 1, "a node's name",
                      word);
    }
}
