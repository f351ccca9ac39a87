// The fields have these byte offsets in the flow's own library: a header that moves one does not compile.

#include <cstddef>

#include "platform/dci.h"

#pragma GCC diagnostic ignored "-Winvalid-offsetof"

#define AT(record, field, offset) static_assert(offsetof(record, field) == (offset), #record "::" #field)

static_assert(sizeof(ppStlList<taDciObj*>) == 16 && sizeof(ppStlList<char*>) == 16, "a list is two pointers");
static_assert(sizeof(taDciObjTyp) == 4, "a kind is a 32-bit number");

AT(taDci, clocks, 48);
AT(taDci, ios, 64);
AT(taDci, mcycs, 80);
AT(taDci, maxs, 96);
AT(taDci, falses, 112);
AT(taDci, clockGroups, 144);
AT(taDci, errors, 160);

AT(taDciSynClk, period, 4);
AT(taDciSynClk, name, 8);
AT(taDciSynClk, text, 16);
AT(taDciSynClk, targets, 24);
AT(taDciSynClk, master, 44);
AT(taDciSynClk, divideBy, 48);
AT(taDciSynClk, multiplyBy, 56);
AT(taDciSynClk, dutyCycle, 64);
AT(taDciSynClk, waveform, 72);
AT(taDciSynClk, source, 88);
AT(taDciSynClk, masterClock, 104);

AT(taDciSynClkGroup, asynchronous, 4);
AT(taDciSynClkGroup, groups, 8);
AT(taDciSynClkGroup, text, 24);
AT(taDciSynClkGroupMember, clock, 16);

AT(taDciSynIo, delay, 8);
AT(taDciSynIo, label, 16);
AT(taDciSynIo, note, 24);
AT(taDciSynIo, minMarker, 32);
AT(taDciSynIo, maxMarker, 40);
AT(taDciSynIo, clock, 48);
AT(taDciSynIo, objects, 56);
AT(taDciSynIo, direction, 72);

AT(taDciSynMax, delay, 4);
AT(taDciSynMax, from, 8);
AT(taDciSynMax, to, 24);
AT(taDciSynMax, note, 40);
AT(taDciSynMax, minMarker, 48);

AT(taDciSynMcyc, multiplier, 4);
AT(taDciSynMcyc, from, 8);
AT(taDciSynMcyc, to, 24);
AT(taDciSynMcyc, note, 40);

AT(taDciSynFalse, from, 8);
AT(taDciSynFalse, to, 24);
AT(taDciSynFalse, through, 40);
AT(taDciSynFalse, note, 56);
AT(taDciSynFalse, flag, 64);
