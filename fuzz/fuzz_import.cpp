// Records of the constraint database with generated content: imported twice, and saved.

#include <fuzzer/FuzzedDataProvider.h>

#include <memory>

#include "fuzz/settle.h"

namespace {

using Refs = ppStlList<taDciObj*>;
using Members = ppStlList<taDciSynClkGroupMember*>;

// A value for any field of a record.
struct Any {
    FuzzedDataProvider& bytes;
    taDciSynClk* knownClock;

    operator int() const { return bytes.ConsumeIntegral<int>(); }
    operator unsigned char() const { return bytes.ConsumeIntegral<unsigned char>(); }
    operator float() const { return bytes.ConsumeFloatingPoint<float>(); }
    operator char*() const {
        return bytes.ConsumeBool() ? taDciText(bytes.ConsumeRandomLengthString(24).c_str()) : nullptr;
    }
    operator taDciSynClk*() const { return bytes.ConsumeBool() ? knownClock : nullptr; }
    operator taDciObj*() const {
        if (bytes.ConsumeBool()) return nullptr;
        auto const type = static_cast<taDciObjTyp>(bytes.ConsumeIntegralInRange(0, 60));
        bool const named = bytes.ConsumeBool();
        return new taDciObj(named ? bytes.ConsumeRandomLengthString(60).c_str() : nullptr, nullptr, type, taDciObjNone);
    }
    operator taDciSynClkGroupMember*() const { return new taDciSynClkGroupMember{{}, *this}; }
    operator Members*() const { return new Members(*this); }
    template <class T>
    operator ppStlList<T>() const {
        ppStlList<T> list;
        while (bytes.ConsumeBool()) list.push_back(*this);
        return list;
    }
};

// Rounds of a record of each kind, until the bytes are used up.
void fill(taDci& db, FuzzedDataProvider& bytes) {
    while (bytes.remaining_bytes() > 0) {
        Any const any{bytes, db.clocks.empty() ? nullptr : db.clocks.front()};
        db.clocks.push_back(new taDciSynClk{0, any, any, any, any, 0, any, any, any, any, any, any, any});
        db.ios.push_back(
            new taDciSynIo{nullptr, any, any, any, any, any, any, any, bytes.ConsumeIntegralInRange(-1, 2)});
        db.maxs.push_back(new taDciSynMax{0, any, any, any, any, any});
        db.mcycs.push_back(new taDciSynMcyc{0, any, any, any, any});
        db.falses.push_back(new taDciSynFalse{nullptr, any, any, any, any, any});
        db.clockGroups.push_back(new taDciSynClkGroup{0, any, any, any});
    }
}

}  // namespace

void fuzz::run(std::string const& input) {
    auto db = std::make_unique<taDci>();
    FuzzedDataProvider bytes(reinterpret_cast<std::uint8_t const*>(input.data()), input.size());
    fill(*db, bytes);
    kiri::tov::TOV document, again;
    document.loadTaObjects(db.get(), true);
    std::string const text = document.toSaveString();
    again.loadTaObjects(db.get(), true);
    fuzz::require(again.toSaveString() == text, "an import leaves the database as it was", text);
    db.reset();
    fuzz::require(document.toSaveString() == text, "commands outlive the database", text);
    fuzz::requireSettled(text, fuzz::savedAgain);
}
