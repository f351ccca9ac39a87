// Loads a constraint file, shows what is in it, edits it, saves it, and checks that the saved file is stable.
//
//   constraint_tour FILE [SAVED-FILE]

#include <cstdio>
#include <exception>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>

#include "tov/cmd/commands.h"
#include "tov/tov.h"

using namespace kiri::tov;

namespace {

struct Kind {
    TOVCMD_TYPE type;
    char const* title;
};

constexpr Kind kinds[] = {
    {TOVCMD_CLOCK, "clocks"},
    {TOVCMD_GENCLOCK, "generated clocks"},
    {TOVCMD_CLOCKGROUP, "groups"},
    {TOVCMD_INPUTDELAY, "input delays"},
    {TOVCMD_OUTPUTDELAY, "output delays"},
    {TOVCMD_MAXDELAY, "maximum delays"},
    {TOVCMD_MINDELAY, "minimum delays"},
    {TOVCMD_MULTICYCLE, "multicycle paths"},
    {TOVCMD_FALSEPATH, "false paths"},
    {TOVCMD_ATTRIBUTE, "attributes"},
};

void printKinds(TOV& document) {
    for (Kind const& kind : kinds) {
        std::list<TovCmd*> const& cmds = *document.getTovCmdList(kind.type);
        std::printf("%-17s %7zu", kind.title, cmds.size());
        if (!cmds.empty()) std::printf("  %.100s", cmds.front()->toSaveString(&document).c_str());
        std::printf("\n");
    }
}

// Disables the first command that is enabled.
void disableOne(TOV& document) {
    for (Kind const& kind : kinds) {
        for (TovCmd* cmd : *document.getTovCmdList(kind.type)) {
            if (!cmd->enabled) continue;
            cmd->enabled = false;
            std::printf("disabled: %s\n", cmd->toSaveString(&document).c_str());
            return;
        }
    }
}

// Adds a clock on two ports; of a list of targets the file holds the first.
void addClock(TOV& document) {
    auto* clock = new TovCmdClockDef(8.0F, "tour_clk", nullptr);
    document.getTovCmdList(TOVCMD_CLOCK)->push_back(clock);
    clock->waveform = {0.0F, 4.0F};
    clock->targets = TovCmd::fromTclString("[get_ports {tour_clk_p tour_clk_n}]", true);
    std::printf("added:    %s\n", clock->toSaveString(&document).c_str());
}

std::string contentOf(std::string const& path) {
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

int countDifferences(std::string const& before, std::string const& after) {
    std::istringstream a(before);
    std::istringstream b(after);
    int differences = 0;
    for (std::string x, y;;) {
        bool const moreA = static_cast<bool>(std::getline(a, x));
        bool const moreB = static_cast<bool>(std::getline(b, y));
        if (!moreA && !moreB) return differences;
        if (moreA == moreB && x == y) continue;
        ++differences;
        if (moreA) std::printf("- %s\n", x.c_str());
        if (moreB) std::printf("+ %s\n", y.c_str());
    }
}

int tour(char const* path, std::string const& saved) {
    TOV document;
    if (!document.load(path)) {
        std::cerr << "no such file: " << path << '\n';
        return 1;
    }
    printKinds(document);
    disableOne(document);
    addClock(document);

    // The format keeps the first reference of a list, so the first save may drop some. From the second save
    // on the text of an ordinary file stays as it is.
    std::string texts[2];
    for (std::string& text : texts) {
        if (!document.save(saved.c_str()) || !document.load(saved.c_str()) || !document.save(saved.c_str())) {
            std::cerr << "cannot write " << saved << '\n';
            return 1;
        }
        text = contentOf(saved);
    }
    int const differences = countDifferences(texts[0], texts[1]);
    std::printf("saved, loaded and saved again: %zu bytes, %d lines differ\n", texts[1].size(), differences);
    return differences == 0 ? 0 : 1;
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
