// Object expressions: their object references, with and without the types of a clock's source, and copies of them.

#include "fuzz/fuzz.h"
#include "tov/cmd/commands.h"

using namespace kiri::tov;

namespace {

std::string textOf(ppStlList<taDciObj*>& list) {
    std::string text;
    for (taDciObj const* obj : list) text += std::to_string(obj->type) + ":" + obj->name + ";";
    freeDciObjList(list);
    return text;
}

}  // namespace

void fuzz::run(std::string const& input) {
    ppStlList<taDciObj*> objects = TovCmd::fromTclString(input, false);
    ppStlList<taDciObj*> sources = TovCmd::fromTclString(input, true);
    ppStlList<taDciObj*> copy;
    deepCopyDciObjList(sources, copy);
    std::string const text = textOf(sources);
    require(textOf(copy) == text, "a copy outlives its original", input);
    for (taDciObj* obj : objects) {
        bool const isWhole = std::string(obj->name) == input.c_str();
        require(obj->type != taDciObjName || isWhole, "an unknown object is the expression", input, obj->name);
        if (obj->type == taDciObjPort) obj->type = taDciObjSourcePort;
        if (obj->type == taDciObjNet) obj->type = taDciObjSourceNet;
    }
    require(textOf(objects) == text, "a source differs only in types", input);
}
