// Loads a design dump, shows its content, and writes a constraint file with one clock for each clock of the design.
//
//   design_tour DUMP CONSTRAINT-FILE

#include <cstddef>
#include <cstdio>
#include <exception>
#include <iostream>
#include <list>
#include <string>

#include "tov/cmd/commands.h"
#include "tov/design/queries.h"
#include "tov/tov.h"

using namespace kiri::tov;

namespace {

/// Returns the text, or its start and "..." if it is long.
std::string cut(std::string text) {
    constexpr std::size_t most = 100;
    if (text.size() > most) text.replace(most - 3, std::string::npos, "...");
    return text;
}

constexpr std::size_t namesShown = 4;

// A row for each query: how many there are, and the first names.
void printRows(TovDesign const& design) {
    forEachQuery([&design](char const* what, auto query) {
        NodesOf<decltype(query)> nodes;
        std::printf("%-12s %5zu ", what, (design.*query)(nodes));
        std::size_t shown = 0;
        for (TovNode const* node : nodes) {
            if (shown++ == namesShown) break;
            std::printf(" %s", cut(node->hierachyName('/')).c_str());
        }
        std::printf(nodes.size() > namesShown ? " ...\n" : "\n");
    });
}

// A bus is in the list among its bits; only its class distinguishes it from them.
template <class Bus, class Node>
void printBuses(std::list<Node*> const& nodes) {
    for (Node const* node : nodes) {
        if (auto const* bus = dynamic_cast<Bus const*>(node)) {
            std::printf("bus          %-24s bits %d to %d\n", cut(node->hierachyName('/')).c_str(), bus->low(),
                        bus->high());
        }
    }
}

void printDesign(TovDesign const& design) {
    printRows(design);
    std::list<TovPortNode*> ports;
    std::list<TovPortNode*> pins;
    std::list<TovNetNode*> nets;
    design.getPorts(ports);
    design.getPins(pins);
    design.getNets(nets);
    printBuses<TovBusPortNode>(ports);
    printBuses<TovBusPortNode>(pins);
    printBuses<TovBusNetNode>(nets);
}

// Constrains every clock of the design to 100 MHz, on its port or its net.
void addClocks(TovDesign const& design, TOV& document) {
    std::list<TovClockNode*> clocks;
    design.getClocks(clocks);
    for (TovClockNode const* clock : clocks) {
        std::string const name = clock->hierachyName('/');
        char const* const query = clock->type() == TOV_OBJ_CLOCK_PORT ? "[get_ports " : "[get_nets ";
        auto* cmd = new TovCmdClockDef(10.0F, name.c_str(), nullptr);
        document.getTovCmdList(TOVCMD_CLOCK)->push_back(cmd);
        cmd->targets = TovCmd::fromTclString(query + name + "]", true);
        std::printf("clock        %s\n", cut(cmd->toSaveString(&document)).c_str());
    }
}

int tour(char const* dump, char const* constraints) {
    TovDesign design;
    std::string error;
    if (!design.load(dump, {}, &error)) {
        std::cerr << dump << ": " << error << '\n';
        return 1;
    }
    if (!error.empty()) std::cerr << dump << ": not read completely: " << error << '\n';
    std::printf("content of the design, with the first objects of each kind:\n");
    printDesign(design);
    std::printf("a constraint for each of its clocks:\n");
    TOV document;
    addClocks(design, document);
    if (!document.saveAtomically(constraints, &error)) {
        std::cerr << error << '\n';
        return 1;
    }
    std::printf("saved to %s\n", constraints);
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "usage: design_tour DUMP CONSTRAINT-FILE\n";
        return 2;
    }
    try {
        return tour(argv[1], argv[2]);
    } catch (std::exception const& error) {
        std::cerr << argv[1] << ": " << error.what() << '\n';
        return 1;
    }
}
