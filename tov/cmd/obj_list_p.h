#pragma once

#include <string>
#include <string_view>

#include "platform/dci.h"
#include "tov/cmd/cmd.h"

namespace kiri::tov::impl_detail {

/// A list of object references that frees them unless they are moved to another owner.
class OwnedObjList {
public:
    OwnedObjList() = default;
    ~OwnedObjList() { freeDciObjList(list); }
    OwnedObjList(OwnedObjList const&) = delete;
    OwnedObjList& operator=(OwnedObjList const&) = delete;

    ppStlList<taDciObj*> list;
};

/// Appends a new object reference to a list; a null name stays null.
void addObj(ppStlList<taDciObj*>& list, char const* name, taDciObjTyp type);

/// Replaces the content of a list with the objects of an expression, see TovCmd::fromTclString.
void readObjs(ppStlList<taDciObj*>& list, std::string_view expression, bool source);

/// Replaces the content of a list with an object reference to the clock of that name.
void setClock(ppStlList<taDciObj*>& list, char const* name);

/// Appends the expression of an object reference, see TovCmd::toTclString.
void appendTclString(std::string& out, taDciObj const* obj);

/// Returns the expression of a reserved key; an empty one for any other key and for null.
std::string_view reservedExpression(char const* key);

}  // namespace kiri::tov::impl_detail
