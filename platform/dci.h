#pragma once

#include "platform/export.h"
#include "platform/ppstl_list.h"

// The constraint database of the flow: its records as the library reads them, at the byte offsets of the flow's own
// library. A new record is empty. A record owns its texts (made by taDciText) and its object references, and may be
// used by one thread at a time.

/// Kind of a design object; the numbers are those of the database.
enum taDciObjTyp : int {
    taDciObjNone = 0,
    taDciObjNet = 2,
    taDciObjPin = 4,
    taDciObjPort = 5,
    taDciObjCell = 7,
    taDciObjPin2 = 12,
    taDciObjClock = 14,
    taDciObjSourcePort = 15,  ///< a port as the source of a clock
    taDciObjSourceNet = 16,   ///< a net as the source of a clock
    taDciObjName = 59         ///< a plain name, not a query
};

/// Returns a copy of `text` that a record may own: the record's destructor frees it. Returns null for null.
TOVENG_API char* taDciText(char const* text);

/// An object reference: the name of a design object as the constraint writes it, and its kind.
class TOVENG_API taDciObj {
public:
    /// Copies the name, which may be null. The second text and kind are for the flow; this class ignores them.
    taDciObj(char const* name, char const* text, taDciObjTyp type, taDciObjTyp type2);
    /// Copies `*other`. All copies share the bytes of a long name, which live until the last copy is destroyed.
    explicit taDciObj(taDciObj* other);
    ~taDciObj();
    taDciObj(taDciObj const&) = delete;
    taDciObj& operator=(taDciObj const&) = delete;

    /// May be null. Other object references may share its bytes, so never write to them: to change a name, put another
    /// object reference into the list.
    char* name;
    taDciObjTyp type;

private:
    char inlineName_[44];  // a short name needs no block of its own
};

/// A master or generated clock.
struct TOVENG_API taDciSynClk {
    taDciSynClk() = default;
    ~taDciSynClk();
    taDciSynClk(taDciSynClk const&) = delete;
    taDciSynClk& operator=(taDciSynClk const&) = delete;

    int reserved0 = 0;
    int period = 0;        ///< thousandths of the file's time unit
    char* name = nullptr;  ///< may be null
    char* text = nullptr;  ///< may be null
    ppStlList<taDciObj*> targets;
    int reserved40 = 0;
    unsigned char master = 0;    ///< non-zero: a master clock; zero: a generated one
    char* divideBy = nullptr;    ///< decimal text; may be null
    char* multiplyBy = nullptr;  ///< decimal text; may be null
    char* dutyCycle = nullptr;   ///< decimal text; may be null
    ppStlList<char*> waveform;   ///< edge times as texts, from taDciText
    ppStlList<taDciObj*> source;
    taDciSynClk* masterClock = nullptr;  ///< not owned; may be null
};

/// A member of a clock group.
struct taDciSynClkGroupMember {
    void* reserved0[2] = {};
    taDciSynClk* clock = nullptr;  ///< not owned
};

/// A relation between groups of clocks.
struct TOVENG_API taDciSynClkGroup {
    taDciSynClkGroup() = default;
    ~taDciSynClkGroup();
    taDciSynClkGroup(taDciSynClkGroup const&) = delete;
    taDciSynClkGroup& operator=(taDciSynClkGroup const&) = delete;

    int reserved0 = 0;
    unsigned char asynchronous = 0;                         ///< 1: asynchronous; 0: exclusive
    ppStlList<ppStlList<taDciSynClkGroupMember*>*> groups;  ///< owned, with their members; entries may be null
    char* text = nullptr;                                   ///< may be null
};

/// An input or output delay.
struct TOVENG_API taDciSynIo {
    taDciSynIo() = default;
    ~taDciSynIo();
    taDciSynIo(taDciSynIo const&) = delete;
    taDciSynIo& operator=(taDciSynIo const&) = delete;

    void* reserved0 = nullptr;
    int delay = 0;                 ///< picoseconds
    char* label = nullptr;         ///< may be null
    char* note = nullptr;          ///< may be null
    char* minMarker = nullptr;     ///< neither null nor empty: the delay is a minimum
    char* maxMarker = nullptr;     ///< neither null nor empty: the delay is a maximum
    taDciSynClk* clock = nullptr;  ///< not owned; may be null
    ppStlList<taDciObj*> objects;
    int direction = 0;  ///< 0: input; 1: output
};

/// A maximum or minimum delay.
struct TOVENG_API taDciSynMax {
    taDciSynMax() = default;
    ~taDciSynMax();
    taDciSynMax(taDciSynMax const&) = delete;
    taDciSynMax& operator=(taDciSynMax const&) = delete;

    int reserved0 = 0;
    int delay = 0;  ///< picoseconds
    ppStlList<taDciObj*> from;
    ppStlList<taDciObj*> to;
    char* note = nullptr;       ///< may be null
    char* minMarker = nullptr;  ///< neither null nor empty: a minimum delay
};

/// A multicycle path.
struct TOVENG_API taDciSynMcyc {
    taDciSynMcyc() = default;
    ~taDciSynMcyc();
    taDciSynMcyc(taDciSynMcyc const&) = delete;
    taDciSynMcyc& operator=(taDciSynMcyc const&) = delete;

    int reserved0 = 0;
    float multiplier = 0;  ///< clock cycles
    ppStlList<taDciObj*> from;
    ppStlList<taDciObj*> to;
    char* note = nullptr;  ///< may be null
};

/// A false path.
struct TOVENG_API taDciSynFalse {
    taDciSynFalse() = default;
    ~taDciSynFalse();
    taDciSynFalse(taDciSynFalse const&) = delete;
    taDciSynFalse& operator=(taDciSynFalse const&) = delete;

    void* reserved0 = nullptr;
    ppStlList<taDciObj*> from;
    ppStlList<taDciObj*> to;
    ppStlList<taDciObj*> through;
    char* note = nullptr;    ///< may be null
    unsigned char flag = 0;  ///< zero: the import skips the record
};

/// The constraint database of a design. It owns the records and error texts in its lists.
struct TOVENG_API taDci {
    taDci() = default;
    ~taDci();
    taDci(taDci const&) = delete;
    taDci& operator=(taDci const&) = delete;

    void* reserved0[6] = {};
    ppStlList<taDciSynClk*> clocks;  ///< master and generated clocks together
    ppStlList<taDciSynIo*> ios;
    ppStlList<taDciSynMcyc*> mcycs;
    ppStlList<taDciSynMax*> maxs;
    ppStlList<taDciSynFalse*> falses;
    void* reserved128[2] = {};
    ppStlList<taDciSynClkGroup*> clockGroups;
    ppStlList<char*> errors;  ///< texts from taDciText
};
