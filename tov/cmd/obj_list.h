#ifndef TOVENG_TOV_CMD_OBJ_LIST_H
#define TOVENG_TOV_CMD_OBJ_LIST_H

#include <string>
#include <string_view>

#include "platform/dci.h"
#include "tov/cmd/cmd.h"

namespace kiri::tov {

/// A list of references under construction: it owns them until they are handed over.
class OwnedObjList {
public:
    OwnedObjList() = default;
    /// Reads an object expression, as TovCmd::fromTclString tells.
    OwnedObjList(std::string_view expression, bool source);
    ~OwnedObjList() { freeDciObjList(list_); }
    OwnedObjList(OwnedObjList const&) = delete;
    OwnedObjList& operator=(OwnedObjList const&) = delete;

    /// Adds a new reference; null is no name.
    void add(char const* name, taDciObjTyp type);
    /// Adds a copy of the record.
    void addCopy(taDciObj* obj);

    /// Hands the references to `to` and takes over those that stood there.
    void swap(ppStlList<taDciObj*>& to) noexcept { list_.swap(to); }

private:
    void add(std::string_view name, taDciObjTyp type);

    ppStlList<taDciObj*> list_;
};

/// Replaces the content of a list by what `expression` names.
inline void readObjs(ppStlList<taDciObj*>& list, std::string_view expression, bool source) {
    OwnedObjList(expression, source).swap(list);
}

/// Replaces the content of a list by a reference to the clock of that name.
void setClock(ppStlList<taDciObj*>& list, char const* name);

/// Appends the expression of a reference, as TovCmd::toTclString tells.
void appendTclString(std::string& out, taDciObj const* obj);

/// The expression that a reserved key stands for; empty for any other key and for null.
std::string_view reservedExpression(char const* key);

}  // namespace kiri::tov

#endif
