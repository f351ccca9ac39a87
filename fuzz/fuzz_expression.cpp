// Object expressions, against the rules of the format told step by step.

#include "fuzz/settle.h"

namespace {

using namespace kiri::tov;

struct Ref {
    std::string name;
    int type;
};

std::vector<Ref> refsOf(std::string const& expression, bool source) {
    struct {
        std::string word;
        int type;
    } const queries[] = {
        {"get_ports", source ? 15 : 5},
        {"get_nets", source ? 16 : 2},
        {"get_clocks", 14},
        {"get_cells", 7},
        {"get_pins", 4},
    };
    auto const strip = [](std::string text, char front, char back) {
        text.erase(0, std::min(text.find_first_not_of(front), text.size()));
        text.erase(text.find_last_not_of(back) + 1);
        return text;
    };
    std::vector<Ref> refs;
    std::vector<std::string> const words = tokenizeTclString(strip(expression, '[', ']'));
    for (std::size_t i = 0; i < words.size(); ++i) {
        auto const* query =
            std::find_if(std::begin(queries), std::end(queries), [&](auto& q) { return q.word == words[i]; });
        if (query == std::end(queries)) {
            refs.push_back({expression, 59});
        } else if (++i < words.size()) {
            for (std::string const& name : tokenizeTclString(strip(words[i], '{', '}')))
                refs.push_back({name, query->type});
        }
    }
    return refs;
}

bool equal(ppStlList<taDciObj*> const& list, std::vector<Ref> const& refs) {
    return list.size() == refs.size() &&
           std::equal(list.begin(), list.end(), refs.begin(), [](auto* obj, Ref const& ref) {
               return obj->type == ref.type && obj->name == std::string(ref.name.c_str());
           });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    std::string const text(reinterpret_cast<char const*>(data), size);
    for (bool source : {false, true}) {
        std::vector<Ref> const refs = refsOf(text, source);
        ppStlList<taDciObj*> list = TovCmd::fromTclString(text, source);
        fuzz::require(equal(list, refs), "the references of an expression", text);
        ppStlList<taDciObj*> copy;
        deepCopyDciObjList(list, copy);
        for (taDciObj* obj : list) {
            std::string reserved;
            if (!fuzz::isPlain(obj) || obj->type == taDciObjName || TovCmd::reservedKey(obj->name, reserved)) continue;
            ppStlList<taDciObj*> again = TovCmd::fromTclString(TovCmd::toTclString(obj), source);
            fuzz::require(equal(again, {{obj->name, obj->type}}), "an expression gives its reference back", text);
            freeDciObjList(again);
        }
        freeDciObjList(list);
        fuzz::require(equal(copy, refs), "a copy is like its original and outlives it", text);
        freeDciObjList(copy);
    }
    std::string const bracketed = TovCmd::encloseBracket(text.c_str());
    fuzz::require(TovCmd::encloseBracket(bracketed.c_str()) == bracketed, "brackets come once", text);
    std::string const quoted = encloseDoubleQuotes(text);
    fuzz::require(encloseDoubleQuotes(quoted) == quoted, "quotes come once", text);
    return 0;
}
