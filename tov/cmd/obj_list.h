#pragma once

#include <string>
#include <string_view>

#include "platform/dci.h"
#include "tov/cmd/cmd.h"

namespace kiri::tov {

/// A list of references that nothing owns yet: it frees them unless they are handed over.
class OwnedObjList {
public:
    OwnedObjList() = default;
    ~OwnedObjList() { freeDciObjList(list); }
    OwnedObjList(OwnedObjList const&) = delete;
    OwnedObjList& operator=(OwnedObjList const&) = delete;

    ppStlList<taDciObj*> list;
};

/// Adds a new reference to a list; null is no name.
void addObj(ppStlList<taDciObj*>& list, char const* name, taDciObjTyp type);

/// Replaces the content of a list by what an object expression names, as TovCmd::fromTclString tells.
void readObjs(ppStlList<taDciObj*>& list, std::string_view expression, bool source);

/// Replaces the content of a list by a reference to the clock of that name.
void setClock(ppStlList<taDciObj*>& list, char const* name);

/// Appends the expression of a reference, as TovCmd::toTclString tells.
void appendTclString(std::string& out, taDciObj const* obj);

/// The expression that a reserved key stands for; empty for any other key and for null.
std::string_view reservedExpression(char const* key);

}  // namespace kiri::tov
