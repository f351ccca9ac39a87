// A client that also calls the flow: the formatter.
#include <cstdio>

#include "platform/ut.h"
#include "tov/cmd/commands.h"
#include "tov/design/design.h"
#include "tov/tov.h"

int main() {
    using namespace kiri::tov;
    TOV document;
    document.getTovCmdList(TOVCMD_CLOCK)->push_back(new TovCmdClockDef("create_clock -name c [get_ports {p q}]"));
    std::fputs(document.toSaveString().c_str() + document.sdcComments().size() + 1, stdout);
    TovDesign design;
    std::puts(neoform("missing design: %d", design.load("/nonexistent")));
}
