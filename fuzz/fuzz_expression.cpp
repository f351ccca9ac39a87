// Object expressions, against a plain model of them.

#include <algorithm>
#include <map>

#include "fuzz/fuzz.h"
#include "tov/cmd/commands.h"
#include "tov/tokenizer.h"

namespace {

using namespace kiri::tov;

std::string reference(int type, std::string const& name) {
    return std::to_string(type) + ":" + name.c_str() + ";";
}

std::string textOf(ppStlList<taDciObj*>&& list) {
    std::string text;
    for (taDciObj const* obj : list) text += reference(obj->type, obj->name);
    freeDciObjList(list);
    return text;
}

std::string strip(std::string text, char front, char back) {
    text.erase(0, std::min(text.find_first_not_of(front), text.size()));
    return text.erase(text.find_last_not_of(back) + 1);
}

std::string modelOf(std::string const& expression, bool source) {
    std::map<std::string, int> const types = {
        {"get_ports", source ? 15 : 5},
        {"get_nets", source ? 16 : 2},
        {"get_clocks", 14},
        {"get_cells", 7},
        {"get_pins", 4},
    };
    std::string text;
    std::string query;
    for (std::string const& word : tokenizeTclString(strip(expression, '[', ']'))) {
        if (!query.empty()) {
            for (auto const& name : tokenizeTclString(strip(word, '{', '}'))) text += reference(types.at(query), name);
            query.clear();
        } else if (types.count(word) > 0) {
            query = word;
        } else {
            text += reference(59, expression);
        }
    }
    return text;
}

}  // namespace

void fuzz::run(std::string const& input) {
    for (bool source : {false, true}) {
        ppStlList<taDciObj*> list = TovCmd::fromTclString(input, source);
        ppStlList<taDciObj*> copy;
        deepCopyDciObjList(list, copy);
        std::string const model = modelOf(input, source);
        fuzz::require(textOf(std::move(list)) == model, "the references of an expression", input);
        fuzz::require(textOf(std::move(copy)) == model, "a copy outlives its original", input);
    }
}
