// Disables every command of a constraint file that refers to a clock, and saves the file under another name.
//
//   disable_by_clock FILE CLOCK OUT

#include <algorithm>
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "tov/cmd/commands.h"
#include "tov/cmd/references.h"
#include "tov/tov.h"

using namespace kiri::tov;

namespace {

using Objects = ppStlList<taDciObj*>;

// Whether a list refers to the clock: by a clock query, or by its plain name.
bool names(Objects const& objects, std::string const& clock) {
    return std::any_of(objects.begin(), objects.end(), [&clock](taDciObj const* object) {
        return (object->type == taDciObjClock || object->type == taDciObjName) && object->name != nullptr &&
               object->name == clock;
    });
}

// A definition refers to the clock that it defines.
std::string definedBy(TovCmd* cmd) {
    if (auto const* clock = dynamic_cast<TovCmdClockDef*>(cmd)) return clock->clockName;
    if (auto const* clock = dynamic_cast<TovCmdGenClockDef*>(cmd)) return clock->clockName;
    return {};
}

bool refersTo(TovCmd* cmd, std::string const& clock) {
    if (definedBy(cmd) == clock) return true;
    std::vector<TovReferences> const lists = referencesOf(*cmd);
    return std::any_of(lists.begin(), lists.end(),
                       [&clock](TovReferences const& references) { return names(*references.list, clock); });
}

int disable(char const* path, std::string const& clock, char const* out) {
    TOV document;
    if (!document.parseTovFile(path)) {
        std::fprintf(stderr, "cannot read %s\n", path);
        return 1;
    }
    int count = 0;
    for (int kind = TOVCMD_CLOCK; kind <= TOVCMD_FALSEPATH; ++kind) {
        for (TovCmd* cmd : *document.getTovCmdList(static_cast<TOVCMD_TYPE>(kind))) {
            if (!cmd->enabled || !refersTo(cmd, clock)) continue;
            cmd->enabled = false;
            ++count;
            std::puts(cmd->toSaveString(&document).c_str());
        }
    }
    std::string error;
    if (!document.saveAtomically(out, &error)) {
        std::fprintf(stderr, "%s\n", error.c_str());
        return 1;
    }
    std::printf("disabled %d commands that refer to %s\n", count, clock.c_str());
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        std::fprintf(stderr, "usage: disable_by_clock FILE CLOCK OUT\n");
        return 2;
    }
    try {
        return disable(argv[1], argv[2], argv[3]);
    } catch (std::exception const& error) {
        std::fprintf(stderr, "%s: %s\n", argv[1], error.what());
        return 1;
    }
}
