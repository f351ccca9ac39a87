#include "tov/cmd/obj_list_p.h"

#include <algorithm>
#include <iterator>

#include "platform/ut.h"
#include "tov/base/text_p.h"
#include "tov/base/tokenizer_p.h"

namespace kiri::tov::impl_detail {

namespace {

// An object expression is a word of a line:
//
//   expression = "["* element* "]"*
//   element    = query [ argument ]     object references named by the words of the argument
//              | other                  an object reference named by the whole expression
//   argument   = word | "{"* word* "}"*
struct QueryKeyword {
    std::string_view word;
    std::string_view opening;  // the query as it is saved, up to its names
    taDciObjTyp type;
    taDciObjTyp sourceType;
};

constexpr QueryKeyword queries[] = {
    {"get_ports", "[ get_ports { ", taDciObjPort, taDciObjSourcePort},
    {"get_nets", "[ get_nets { ", taDciObjNet, taDciObjSourceNet},
    {"get_clocks", "[ get_clocks { ", taDciObjClock, taDciObjClock},
    {"get_cells", "[ get_cells { ", taDciObjCell, taDciObjCell},
    {"get_pins", "[ get_pins { ", taDciObjPin, taDciObjPin},
};

struct ReservedKey {
    char const* key;
    std::string_view expression;
};

// "@CLKIN" means all clocks and "@CLOCK" all registers: the file format swaps them.
constexpr ReservedKey reservedKeys[] = {
    {"@PI", "[all_inputs]"},
    {"@PO", "[all_outputs]"},
    {"@CLKIN", "[all_clocks]"},
    {"@CLOCK", "[all_registers]"},
};

template <class Match>
QueryKeyword const* findQuery(Match match) {
    QueryKeyword const* const query = std::find_if(std::begin(queries), std::end(queries), match);
    return query == std::end(queries) ? nullptr : query;
}

std::string_view strip(std::string_view text, char front, char back) {
    while (!text.empty() && text.front() == front) text.remove_prefix(1);
    while (!text.empty() && text.back() == back) text.remove_suffix(1);
    return text;
}

// The database takes C strings, so copy the name and terminate it with a NUL byte. Names of usual length need no heap
// block for that.
void addName(ppStlList<taDciObj*>& list, std::string_view name, taDciObjTyp type) {
    char text[128];
    if (name.size() >= sizeof text) return addObj(list, std::string(name).c_str(), type);
    text[name.copy(text, sizeof text)] = '\0';
    addObj(list, text, type);
}

}  // namespace

// Link the node first: if the next allocation throws, nothing leaks.
void addObj(ppStlList<taDciObj*>& list, char const* name, taDciObjTyp type) {
    list.push_back(nullptr);
    list.back() = new taDciObj(name, nullptr, type, taDciObjNone);
}

void readObjs(ppStlList<taDciObj*>& list, std::string_view expression, bool source) {
    if (!list.empty()) freeDciObjList(list);
    taDciObj* whole = nullptr;
    WordCursor words(strip(expression, '[', ']'));
    for (std::string_view word; words.next(word);) {
        QueryKeyword const* const query = findQuery([word](QueryKeyword const& q) { return q.word == word; });
        if (query != nullptr) {
            bool const isPlain = words.isAtPlainWord();
            std::string_view argument;
            if (!words.next(argument)) break;
            if (isPlain && argument.back() != '}') {
                addName(list, argument, source ? query->sourceType : query->type);
                continue;
            }
            WordCursor names(strip(argument, '{', '}'));
            for (std::string_view name; names.next(name);) {
                addName(list, name, source ? query->sourceType : query->type);
            }
        } else if (whole == nullptr) {
            // Any word but a query becomes a reference to the whole expression. The copies share its text.
            addName(list, expression, taDciObjName);
            whole = list.back();
        } else {
            list.push_back(nullptr);
            list.back() = new taDciObj(whole);
        }
    }
}

std::string_view reservedExpression(char const* key) {
    // Compare the first character first, see docs/performance.md.
    if (key != nullptr && *key == '@') {
        for (ReservedKey const& reserved : reservedKeys) {
            if (ut_stricmp(key, reserved.key) == 0) return reserved.expression;
        }
    }
    return {};
}

void appendTclString(std::string& out, taDciObj const* obj) {
    if (obj == nullptr) return;
    std::string_view const reserved = reservedExpression(obj->name);
    if (!reserved.empty()) {
        out += reserved;
        return;
    }
    std::string_view const name = orEmpty(obj->name);
    taDciObjTyp const type = obj->type == taDciObjPin2 ? taDciObjPin : obj->type;
    QueryKeyword const* const query =
        findQuery([type](QueryKeyword const& q) { return q.type == type || q.sourceType == type; });
    if (query == nullptr) {
        out += name;
        return;
    }
    out.append(query->opening).append(name).append(" } ]");
}

void setClock(ppStlList<taDciObj*>& list, char const* name) {
    freeDciObjList(list);
    addObj(list, name, taDciObjClock);
}

}  // namespace kiri::tov::impl_detail
