#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include "interpreter.h"
#include "references.h"
#include "run.h"

// Queries and the collection commands; collections are lists here.

namespace tool::sdc {

namespace {

int usage(Run& run, std::string const& text) {
    return failure(run, "wrong # args: should be \"" + text + "\"");
}

/// Reads the words of a collection; a look if their number depends on the design.
bool readKnown(Run& run, Tcl_Obj* const* objv, Tcl_Obj* value, std::vector<Word>& words) {
    if (!appendWords(value, words)) {
        failure(run, "unmatched open brace in list");
        return false;
    }
    for (Word const& word : words) {
        if (word.kind == Word::extent)
            run.look("\"" + std::string(textOf(objv[0])) + "\" looks into " + word.unknown->text);
    }
    return true;
}

/// Returns the value of a word; equal words have equal texts.
Tcl_Obj* valueOf(Word const& word) {
    switch (word.kind) {
        case Word::object:
            return newReference(word.reference);
        case Word::extent:
            return newExtent(*word.unknown);
        default:
            return newText(fromBytes(word.reference.name));
    }
}

void setCollection(Run& run, std::vector<Word> const& words) {
    if (words.size() == 1) return Tcl_SetObjResult(run.interp(), valueOf(words[0]));
    Tcl_Obj* const list = Tcl_NewListObj(0, nullptr);
    for (Word const& word : words) Tcl_ListObjAppendElement(nullptr, list, valueOf(word));
    Tcl_SetObjResult(run.interp(), list);
}

/// The words of a query, without its options.
struct QueryWords {
    std::vector<Word> words;
    bool hasOptions = false;
    std::string option;  ///< the first one that the format does not have
};

bool readQuery(Run& run, int objc, Tcl_Obj* const objv[], QueryWords& query) {
    for (int i = 1; i < objc; ++i) {
        std::vector<Word> words;
        if (!appendWords(objv[i], words)) return failure(run, "unmatched open brace in list"), false;
        bool const isOption =
            words.size() == 1 && words[0].kind == Word::plain && isOptionWord(words[0].reference.name);
        if (!isOption) {
            query.words.insert(query.words.end(), words.begin(), words.end());
            continue;
        }
        query.hasOptions = true;
        std::string const& option = words[0].reference.name;
        if (option == "-quiet") continue;
        if (query.option.empty()) query.option = option;
        // The value of an option is not the name of an object.
        bool const takesValue = option.compare(0, 2, "-o") == 0 || option.compare(0, 2, "-f") == 0 || option == "-hsc";
        if (takesValue) ++i;
    }
    return true;
}

template <std::size_t kind>
int query(Run& run, int objc, Tcl_Obj* const objv[]) {
    taDciObjTyp const type = queries[kind].type;
    QueryWords query;
    if (!readQuery(run, objc, objv, query)) return TCL_ERROR;
    std::vector<Object> named;
    std::vector<Word> words;
    bool isKnown = !query.hasOptions && objc > 1;
    bool isBroken = false;
    for (Word& word : query.words) {
        if (word.kind == Word::plain) {
            isKnown = isKnown && !isPattern(word.reference.name);
            word.kind = Word::object;
            word.reference.type = type;
            named.push_back(word.reference);
        }
        isBroken = isBroken || word.kind == Word::broken;
    }
    bool const givesBack = named.empty() && query.option.empty() && !query.words.empty();
    if (!isBroken && (isKnown || givesBack)) {
        setCollection(run, query.words);
        return TCL_OK;
    }
    std::string const text = "[" + commandText(objc, objv) + "]";
    if (isBroken) {
        Tcl_SetObjResult(run.interp(), run.extent({text, {}, {}}));
    } else if (named.size() == query.words.size() || !query.option.empty()) {
        if (!query.option.empty()) named.clear();
        Tcl_SetObjResult(run.interp(), run.extent({text, named, query.option}));
    } else {
        // References that are returned as they are, beside names of unknown extent.
        auto const isUnknown = [&](Word const& word) {
            return word.kind == Word::object && std::find(named.begin(), named.end(), word.reference) != named.end();
        };
        query.words.erase(std::remove_if(query.words.begin(), query.words.end(), isUnknown), query.words.end());
        Extent const rest{text, named, {}};
        Word word;
        word.kind = Word::extent;
        word.unknown = &rest;
        query.words.push_back(word);
        Value const noticed(run.extent(rest));
        setCollection(run, query.words);
    }
    return TCL_OK;
}

/// "all_inputs" and the like.
int allOf(Run& run, int objc, Tcl_Obj* const objv[]) {
    std::string const text = "[" + commandText(objc, objv) + "]";
    std::string option;
    for (int i = 1; i < objc && option.empty(); ++i) {
        if (textOf(objv[i]) != "-quiet") option = readable(textOf(objv[i]));
    }
    std::vector<Object> objects;
    if (option.empty()) objects = {{taDciObjName, "[" + bytesOf(objv[0]) + "]"}};
    Tcl_SetObjResult(run.interp(), run.extent({text, objects, option}));
    return TCL_OK;
}

int getObjectName(Run& run, int objc, Tcl_Obj* const objv[]) {
    if (objc != 2) return usage(run, "get_object_name collection");
    std::vector<Word> words;
    if (!readKnown(run, objv, objv[1], words)) return TCL_ERROR;
    if (words.size() == 1) {
        Tcl_SetObjResult(run.interp(), newText(fromBytes(words[0].reference.name)));
        return TCL_OK;
    }
    Tcl_Obj* const names = Tcl_NewListObj(0, nullptr);
    for (Word const& word : words) Tcl_ListObjAppendElement(nullptr, names, newText(fromBytes(word.reference.name)));
    Tcl_SetObjResult(run.interp(), names);
    return TCL_OK;
}

int sizeofCollection(Run& run, int objc, Tcl_Obj* const objv[]) {
    if (objc != 2) return usage(run, "sizeof_collection collection");
    std::vector<Word> words;
    if (!readKnown(run, objv, objv[1], words)) return TCL_ERROR;
    Tcl_SetObjResult(run.interp(), Tcl_NewIntObj(static_cast<int>(words.size())));
    return TCL_OK;
}

int indexCollection(Run& run, int objc, Tcl_Obj* const objv[]) {
    if (objc != 3) return usage(run, "index_collection collection index");
    std::vector<Word> words;
    int index = 0;
    if (!readKnown(run, objv, objv[1], words)) return TCL_ERROR;
    if (Tcl_GetIntFromObj(run.interp(), objv[2], &index) != TCL_OK) return TCL_ERROR;
    if (index < 0 || static_cast<std::size_t>(index) >= words.size()) return failure(run, "index out of range");
    Tcl_SetObjResult(run.interp(), valueOf(words[static_cast<std::size_t>(index)]));
    return TCL_OK;
}

/// Removes an option from the words of a command.
bool takeOption(std::vector<Tcl_Obj*>& words, std::string_view option) {
    auto const found = std::find_if(words.begin(), words.end(), [&](Tcl_Obj* word) {
        std::string_view const text = word->bytes == nullptr ? std::string_view() : textOf(word);
        return text.size() > 1 && option.substr(0, text.size()) == text;
    });
    if (found == words.end()) return false;
    words.erase(found);
    return true;
}

/// Returns the text by which objects are compared.
std::string keyOf(Word const& word) {
    Value const value(valueOf(word));
    return std::string(textOf(value.get()));
}

std::vector<Word> eachOnce(std::vector<Word> const& words) {
    std::vector<Word> once;
    std::vector<std::string> keys;
    for (Word const& word : words) {
        std::string key = word.kind == Word::extent ? word.unknown->text : keyOf(word);
        if (std::find(keys.begin(), keys.end(), key) != keys.end()) continue;
        keys.push_back(std::move(key));
        once.push_back(word);
    }
    return once;
}

int addToCollection(Run& run, int objc, Tcl_Obj* const objv[]) {
    std::vector<Tcl_Obj*> operands(objv + 1, objv + objc);
    bool const isUnique = takeOption(operands, "-unique");
    if (operands.size() != 2) return usage(run, "add_to_collection collection objects ?-unique?");
    std::vector<Word> words;
    for (Tcl_Obj* operand : operands) {
        if (!appendWords(operand, words)) return failure(run, "unmatched open brace in list");
    }
    setCollection(run, isUnique ? eachOnce(words) : words);
    return TCL_OK;
}

int appendToCollection(Run& run, int objc, Tcl_Obj* const objv[]) {
    std::vector<Tcl_Obj*> operands(objv + 1, objv + objc);
    bool const isUnique = takeOption(operands, "-unique");
    if (operands.size() != 2) return usage(run, "append_to_collection variable objects ?-unique?");
    std::vector<Word> words;
    Tcl_Obj* const before = Tcl_ObjGetVar2(run.interp(), operands[0], nullptr, 0);
    if ((before != nullptr && !appendWords(before, words)) || !appendWords(operands[1], words)) {
        return failure(run, "unmatched open brace in list");
    }
    setCollection(run, isUnique ? eachOnce(words) : words);
    Value const result(Tcl_GetObjResult(run.interp()));
    Tcl_Obj* const set = Tcl_ObjSetVar2(run.interp(), operands[0], nullptr, result.get(), TCL_LEAVE_ERR_MSG);
    if (set == nullptr) return TCL_ERROR;
    Tcl_SetObjResult(run.interp(), set);
    return TCL_OK;
}

int removeFromCollection(Run& run, int objc, Tcl_Obj* const objv[]) {
    std::vector<Tcl_Obj*> operands(objv + 1, objv + objc);
    bool const isIntersection = takeOption(operands, "-intersect");
    if (operands.size() != 2) return usage(run, "remove_from_collection ?-intersect? collection objects");
    std::vector<Word> words, taken;
    if (!readKnown(run, objv, operands[0], words) || !readKnown(run, objv, operands[1], taken)) return TCL_ERROR;
    std::vector<bool> isTaken(words.size());
    for (Word const& object : taken) {
        bool isFound = false;
        for (std::size_t i = 0; i < words.size(); ++i) {
            // A plain word names an object of any type.
            bool const isSame = object.kind == Word::plain ? words[i].reference.name == object.reference.name
                                                           : keyOf(words[i]) == keyOf(object);
            if (isSame) isTaken[i] = isFound = true;
        }
        if (!isFound)
            run.look("\"remove_from_collection\" removes " + object.reference.name + ", which is not in the list");
    }
    std::vector<Word> left;
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (isTaken[i] == isIntersection) left.push_back(words[i]);
    }
    setCollection(run, left);
    return TCL_OK;
}

int foreachInCollection(Run& run, int objc, Tcl_Obj* const objv[]) {
    if (objc != 4) return usage(run, "foreach_in_collection variable collection body");
    Value const loop(newText("::foreach"));
    Tcl_Obj* const words[] = {loop.get(), objv[1], objv[2], objv[3]};
    return Tcl_EvalObjv(run.interp(), 4, words, 0);
}

}  // namespace

void addQueries(Run& run) {
    constexpr Procedure procedures[] = {query<0>, query<1>, query<2>, query<3>, query<4>, query<5>};
    for (std::size_t i = 0; i < std::size(procedures); ++i) addCommand(run, queries[i].command, procedures[i]);
    for (char const* name : {"all_inputs", "all_outputs", "all_clocks", "all_registers"}) addCommand(run, name, allOf);
    addCommand(run, "get_object_name", getObjectName);
    addCommand(run, "sizeof_collection", sizeofCollection);
    addCommand(run, "index_collection", indexCollection);
    addCommand(run, "add_to_collection", addToCollection);
    addCommand(run, "append_to_collection", appendToCollection);
    addCommand(run, "remove_from_collection", removeFromCollection);
    addCommand(run, "foreach_in_collection", foreachInCollection);
}

}  // namespace tool::sdc
