// Fills a constraint document from the records of a constraint database and prints the file text.

#include <cstdio>
#include <exception>

#include "platform/dci.h"
#include "tov/tov.h"

namespace {

// A database owns the records in its lists; a record owns its texts and object references. Create each one in the list
// that owns it.
template <class Record, class... Arguments>
Record* add(ppStlList<Record*>& list, Arguments... arguments) {
    list.push_back(nullptr);
    return list.back() = new Record(arguments...);
}

void addObject(ppStlList<taDciObj*>& list, char const* name, taDciObjTyp type) {
    add(list, name, nullptr, type, taDciObjNone);
}

taDciSynClk* addClock(taDci& database, char const* name, int period, char const* port) {
    taDciSynClk* const clock = add(database.clocks);
    clock->master = 1;
    clock->period = period;  // thousandths of the file's time unit
    clock->name = taDciText(name);
    addObject(clock->targets, port, taDciObjSourcePort);
    return clock;
}

void addGroup(taDciSynClkGroup& relation, taDciSynClk* clock) {
    add(*add(relation.groups))->clock = clock;
}

void fill(taDci& database) {
    taDciSynClk* const system = addClock(database, "clk_sys", 10000, "clk_in");
    taDciSynClk* const video = addClock(database, "clk_video", 6734, "video_in");
    video->waveform.push_back(taDciText("0"));
    video->waveform.push_back(taDciText("3.367"));

    taDciSynClk* const half = add(database.clocks);  // not a master clock, but a generated one
    half->name = taDciText("clk_half");
    half->divideBy = taDciText("2");
    half->masterClock = system;
    addObject(half->source, "clk_in", taDciObjSourcePort);
    addObject(half->targets, "u_div/q", taDciObjSourceNet);

    taDciSynClkGroup* const relation = add(database.clockGroups);
    relation->asynchronous = 1;
    addGroup(*relation, system);
    addGroup(*relation, video);

    taDciSynIo* const input = add(database.ios);
    input->delay = 2500;  // picoseconds
    input->maxMarker = taDciText("max");
    input->clock = system;
    input->direction = 0;
    addObject(input->objects, "data_in", taDciObjPort);

    taDciSynIo* const output = add(database.ios);
    output->delay = 1200;
    output->clock = video;
    output->direction = 1;
    addObject(output->objects, "pixel_out", taDciObjPort);

    taDciSynMax* const bound = add(database.maxs);
    bound->delay = 4000;
    addObject(bound->from, "u_bridge/req", taDciObjCell);
    addObject(bound->to, "u_bridge/ack", taDciObjCell);

    taDciSynMcyc* const cycles = add(database.mcycs);
    cycles->multiplier = 3;
    addObject(cycles->from, "u_mac/acc", taDciObjCell);

    taDciSynFalse* const never = add(database.falses);
    never->flag = 1;
    addObject(never->from, "reset_n", taDciObjPort);
}

}  // namespace

int main() {
    try {
        taDci database;
        fill(database);
        kiri::tov::TOV document;
        document.loadTaObjects(&database, true);  // the document makes copies; the database still belongs to us
        std::fputs(document.toSaveString().c_str(), stdout);
    } catch (std::exception const& error) {
        std::fprintf(stderr, "import_database: %s\n", error.what());
        return 1;
    }
}
