// Reports what a save of a constraint file would lose, shows the content of the file, edits it, saves it, and checks
// that the saved file does not change when it is loaded and saved again.
//
//   constraint_tour FILE [SAVED-FILE]

#include <cstdio>
#include <exception>
#include <fstream>
#include <iostream>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <utility>

#include "tov/cmd/commands.h"
#include "tov/cmd/references.h"
#include "tov/edit.h"
#include "tov/names/name_check.h"
#include "tov/tov.h"

using namespace kiri::tov;

namespace {

/// Returns the text, or its start and "..." if it is long.
std::string cut(std::string text) {
    constexpr std::size_t most = 100;
    if (text.size() > most) text.replace(most - 3, std::string::npos, "...");
    return text;
}

// A row for each kind of command: how many there are, and the first of them.
void printKinds(TOV& document) {
    struct Kind {
        std::size_t count = 0;
        std::string first;
    };
    std::map<TOVCMD_TYPE, Kind> kinds;
    forEachCommand(document, [&](TOVCMD_TYPE list, TovCmd& cmd) {
        Kind& kind = kinds[list];
        if (kind.count++ == 0) kind.first = cut(cmd.toSaveString(&document));
    });
    for (auto const& [list, kind] : kinds) {
        std::printf("  %-22s %7zu  %s\n", keywordOf(list), kind.count, kind.first.c_str());
    }
}

// Disables the first enabled command.
void disableOne(TOV& document) {
    TovCmd* first = nullptr;
    forEachCommand(document, [&first](TOVCMD_TYPE, TovCmd& cmd) {
        if (first == nullptr && cmd.enabled) first = &cmd;
    });
    if (first == nullptr) return;
    first->enabled = false;
    std::printf("  disabled: %s\n", cut(first->toSaveString(&document)).c_str());
}

// Adds a clock on two ports; a file holds only the first target of a list.
void addClock(TOV& document) {
    auto clock = std::make_unique<TovCmdClockDef>(8.0F, "tour_clk", nullptr);
    clock->waveform = {0.0F, 4.0F};
    replaceReferences(clock->targets, "[get_ports {tour_clk_p tour_clk_n}]", true);
    TovCmd& added = addCommand(document, TOVCMD_CLOCK, std::move(clock));
    std::printf("  added:    %s\n", added.toSaveString(&document).c_str());
}

std::string contentOf(std::string const& path) {
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

// Reports what the saved file will not have.
void printFindings(char const* path) {
    constexpr std::size_t findingsShown = 20;
    std::size_t count = 0;
    std::puts("what a load and a save of the file lose:");
    auto const show = [&count](TovFinding const& finding, std::string const& line, auto const&) {
        if (++count > findingsShown) return true;
        std::printf("  line %zu: %s [%s]\n", finding.line, findingMessage(finding, line).c_str(),
                    findingCode(finding.kind));
        return true;
    };
    checkTovFile(path, TovCheckOptions(), show);
    std::printf("  %zu findings\n", count);
}

bool saveTo(TOV& document, std::string const& path) {
    std::string error;
    if (document.saveAtomically(path.c_str(), &error)) return true;
    std::cerr << error << '\n';
    return false;
}

int tour(char const* path, std::string const& saved) {
    TOV document;
    std::string error;
    if (!document.read(path, {}, &error)) {
        std::cerr << path << ": " << error << '\n';
        return 1;
    }
    printFindings(path);
    std::printf("content of the file, with the first command of each kind as it is saved:\n");
    printKinds(document);
    std::printf("an edit:\n");
    disableOne(document);
    addClock(document);

    // The first save drops what the format does not hold. From the second save on, the text of an ordinary file is
    // stable.
    if (!saveTo(document, saved)) return 1;
    std::string const first = contentOf(saved);
    std::string const second = saved + ".again";
    TOV again;
    if (!again.read(saved.c_str()) || !saveTo(again, second)) return 1;
    bool const isStable = contentOf(second) == first;
    std::remove(second.c_str());
    std::printf("saved to %s: %zu bytes; loaded and saved again, the text %s\n", saved.c_str(), first.size(),
                isStable ? "is the same" : "differs, because a name in it is not plain");
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::cerr << "usage: constraint_tour FILE [SAVED-FILE]\n";
        return 2;
    }
    try {
        return tour(argv[1], argc > 2 ? argv[2] : "constraint_tour.saved");
    } catch (std::exception const& error) {
        std::cerr << argv[1] << ": " << error.what() << '\n';
        return 1;
    }
}
