#pragma once

#include <string>
#include <vector>

#include "platform/dci.h"
#include "platform/export.h"

namespace kiri::tov {

class TovCmd;

/// A list of object references in a command.
struct TovReferences {
    /// The option before the list: "-source", "-master_clock", "-group", "-clock", "-from", "-to" or
    /// "-through"; "" for the targets of a clock and the objects of an input or output delay.
    char const* role;
    /// Never null. The list belongs to the command and may be edited like its fields.
    ppStlList<taDciObj*>* list;
};

/// Returns the object lists of a command in the order in which they are written, empty ones too. Each group of a clock
/// group command is a list of its own; null groups are left out. An attribute has none. The lists live as long as the
/// command and its groups. May throw std::bad_alloc. Call it in the thread that uses the command.
TOVENG_API std::vector<TovReferences> referencesOf(TovCmd& cmd);

/// Replaces the object references of a list with those of an expression, see TovCmd::fromTclString, and frees the old
/// ones. std::bad_alloc leaves the list as it was.
TOVENG_API void replaceReferences(ppStlList<taDciObj*>& list, std::string const& expression, bool source);

/// Returns the clock that a TovCmdClockDef or TovCmdGenClockDef defines: its `clockName` without braces and quotes or,
/// if that is empty, the first name in its targets. Options, the value of -hsc, "list" and the keywords of queries are
/// not names, and a query with -of_objects or -filter has none. "" if there is none, and for any other command.
TOVENG_API std::string definedClock(TovCmd& cmd);

}  // namespace kiri::tov
