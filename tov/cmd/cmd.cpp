#include "tov/cmd/cmd.h"

#include <string_view>
#include <utility>

#include "platform/ut.h"
#include "tov/base/text_p.h"
#include "tov/cmd/obj_list_p.h"

namespace kiri::tov {

using namespace impl_detail;

namespace {

constexpr std::string_view bracketedQueries[] = {"get_ports", "get_nets",   "get_cells",
                                                 "get_pins",  "get_clocks", "get_registers"};

}  // namespace

TovCmd::TovCmd(char const* noteText) : note(orEmpty(noteText)) {}

TovCmd::~TovCmd() = default;

ppStlList<taDciObj*> TovCmd::fromTclString(std::string const& text, bool source) {
    OwnedObjList objs;
    readObjs(objs.list, text, source);
    return std::move(objs.list);
}

std::string TovCmd::toTclString(taDciObj* obj) {
    std::string text;
    appendTclString(text, obj);
    return text;
}

bool TovCmd::reservedKey(char const* key, std::string& out) {
    std::string_view const expression = reservedExpression(key);
    if (expression.empty()) return false;
    out = expression;
    return true;
}

std::string TovCmd::encloseBracket(char const* text) {
    constexpr char const* space = " \t\n\r";
    std::string trimmed(orEmpty(text));
    trimmed.erase(trimmed.find_last_not_of(space) + 1);
    trimmed.erase(0, trimmed.find_first_not_of(space));
    for (std::string_view query : bracketedQueries) {
        if (ut_strincmp(trimmed.c_str(), query.data(), query.size()) == 0) return "[ " + trimmed + " ]";
    }
    return trimmed;
}

std::string encloseDoubleQuotes(std::string const& text) {
    bool const quote = text.find_first_of(whiteSpace) != std::string::npos && text.find('"') == std::string::npos;
    return quote ? '"' + text + '"' : text;
}

void deepCopyDciObjList(ppStlList<taDciObj*>& from, ppStlList<taDciObj*>& to) {
    OwnedObjList copies;
    for (taDciObj* obj : from) {
        if (obj == nullptr) continue;
        copies.list.push_back(nullptr);
        copies.list.back() = new taDciObj(obj);
    }
    to.swap(copies.list);
}

void freeDciObjList(ppStlList<taDciObj*>& list) {
    for (taDciObj* obj : list) delete obj;
    list.clear();
}

}  // namespace kiri::tov
