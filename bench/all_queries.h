#pragma once

#include <list>

#include "tov/design/design.h"

/// The lists that the ten queries of a design fill.
struct AllQueries {
    std::list<kiri::tov::TovPortNode*> ports, pins;
    std::list<kiri::tov::TovNetNode*> nets;
    std::list<kiri::tov::TovCellNode*> cells, regs;
    std::list<kiri::tov::TovClockNode*> clocks;
    std::list<kiri::tov::TovViewNode*> views;
    std::list<kiri::tov::TovRamNode*> rams;
    std::list<kiri::tov::TovRomNode*> roms;
    std::list<kiri::tov::TovMultNode*> mults;

    /// Asks them all; returns the number of entries.
    std::size_t ask(kiri::tov::TovDesign const& design) {
        return design.getPorts(ports) + design.getPins(pins) + design.getNets(nets) + design.getCells(cells) +
               design.getRegs(regs) + design.getClocks(clocks) + design.getViews(views) + design.getRams(rams) +
               design.getRoms(roms) + design.getMults(mults);
    }
};
