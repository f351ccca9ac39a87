// Records of the constraint database with generated content: imported twice, and saved.

#include <fuzzer/FuzzedDataProvider.h>

#include <memory>

#include "fuzz/settle.h"
#include "tov/tov.h"

namespace {

class Generator : FuzzedDataProvider {
public:
    using FuzzedDataProvider::FuzzedDataProvider;

    // Rounds of a record of each kind, until the bytes are used up.
    void fill(taDci& db) {
        while (remaining_bytes() > 0) {
            taDciSynClk& clock = add(db.clocks);
            put(clock.period, clock.master, clock.name, clock.text, clock.divideBy, clock.multiplyBy, clock.dutyCycle,
                clock.targets, clock.source);
            for (bool more = ConsumeBool(); more; more = ConsumeBool()) {
                clock.waveform.push_back(nullptr);
                put(clock.waveform.back());
            }
            clock.masterClock = anyClock(db);
            taDciSynIo& io = add(db.ios);
            put(io.delay, io.label, io.note, io.minMarker, io.maxMarker, io.objects);
            io.direction = ConsumeIntegralInRange(-1, 2);
            io.clock = anyClock(db);
            taDciSynMax& max = add(db.maxs);
            put(max.delay, max.from, max.to, max.note, max.minMarker);
            taDciSynMcyc& multi = add(db.mcycs);
            ConsumeData(&multi.multiplier, sizeof multi.multiplier);
            put(multi.from, multi.to, multi.note);
            taDciSynFalse& path = add(db.falses);
            put(path.from, path.to, path.through, path.note, path.flag);
            taDciSynClkGroup& relation = add(db.clockGroups);
            put(relation.asynchronous, relation.text);
            for (bool more = ConsumeBool(); more; more = ConsumeBool()) {
                add(add(relation.groups)).clock = anyClock(db);
            }
        }
    }

private:
    template <class Record>
    Record& add(ppStlList<Record*>& list) {
        list.push_back(new Record());
        return *list.back();
    }
    template <class... Field>
    void put(Field&... field) {
        (putOne(field), ...);
    }
    void putOne(int& number) { number = ConsumeIntegral<int>(); }
    void putOne(unsigned char& number) { number = ConsumeIntegral<unsigned char>(); }
    void putOne(char*& text) {
        if (ConsumeBool()) text = taDciText(ConsumeRandomLengthString(24).c_str());
    }
    void putOne(fuzz::List& refs) {
        for (bool more = ConsumeBool(); more; more = ConsumeBool()) {
            auto const type = static_cast<taDciObjTyp>(ConsumeIntegralInRange(0, 60));
            std::string const name = ConsumeRandomLengthString(40);
            refs.push_back(type == 0 ? nullptr
                                     : new taDciObj(type == 1 ? nullptr : name.c_str(), nullptr, type, taDciObjNone));
        }
    }
    taDciSynClk* anyClock(taDci& db) { return ConsumeBool() ? db.clocks.front() : nullptr; }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    auto db = std::make_unique<taDci>();
    Generator(data, size).fill(*db);
    kiri::tov::TOV document, again;
    document.loadTaObjects(db.get(), true);
    std::string const text = document.toSaveString();
    again.loadTaObjects(db.get(), true);
    fuzz::require(again.toSaveString() == text, "an import leaves the database as it was", text);
    db.reset();
    fuzz::require(document.toSaveString() == text, "commands outlive the database", text);
    fuzz::requireSettled(text, false, [](std::string const& from) {
        kiri::tov::TOV loaded;
        fuzz::require(loaded.load(fuzz::MemoryFile(from).path().c_str()), "a saved file loads");
        return loaded.toSaveString();
    });
    return 0;
}
