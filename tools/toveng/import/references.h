#pragma once

#include <tcl.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/dci.h"

// What design objects are in a script. An object of a literal name is a Tcl value of its own, so that lists of objects
// are Tcl lists. An extent stands for objects that the design alone knows. The text of both is a mark, a word without
// any character that Tcl would quote; the marks of one object are equal however its name is escaped.

namespace tool::sdc {

/// The type of a register, for which the file format has no number.
constexpr taDciObjTyp registerType = taDciObjNone;

/// An object that a call names; `name` is in the bytes of a file.
struct Object {
    taDciObjTyp type;
    std::string name;

    bool operator==(Object const& other) const { return type == other.type && name == other.name; }
};

/// What a query stands for if the design alone knows its objects, or what an unknown command returns.
struct Extent {
    std::string text;             ///< as a script reads, "[all_inputs]"; equal texts are equal extents
    std::vector<Object> objects;  ///< what a line names for it; empty if no line can
    std::string option;           ///< the option of the query for which no line can name it; may be empty
};

/// A word of a value.
struct Word {
    enum Kind {
        plain,   ///< a text
        object,  ///< an object of a literal name
        extent,  ///< an extent
        broken   ///< a text that holds a mark beside others
    };
    Kind kind = plain;
    Object reference = {taDciObjName, {}};  ///< of a plain word, too
    Extent const* unknown = nullptr;        ///< lives as long as the value
};

/// A query word and the type of its objects.
struct Query {
    char const* command;
    taDciObjTyp type;
};
extern Query const queries[6];

Tcl_Obj* newReference(Object object);
Tcl_Obj* newExtent(Extent extent);

/// Returns how many values hold an extent whose text nobody has asked for.
std::size_t silentExtents();

/// Sets what is called before such a value gives its text.
void onExtentText(std::function<void()> asked);

/// Returns whether a text holds the mark of an extent.
bool holdsExtent(std::string_view text);

/// Returns whether each mark of an extent in a text is an element of a list.
bool extentsAreElements(std::string_view text);

/// Appends the words of a Tcl list, those of nested lists too; a backslash is an ordinary character. Returns false if a
/// brace or a quote is open at the end.
bool appendWords(Tcl_Obj* value, std::vector<Word>& words);

/// Returns whether a name has a wildcard or a range of bits: "d*", "d[7:0]".
bool isPattern(std::string_view name);

/// Returns a text with queries in place of the marks: "[get_ports {d[3]}]".
std::string readable(std::string_view text);

/// Returns a command as one line of Tcl, readable.
std::string commandText(int objc, Tcl_Obj* const objv[]);

/// A byte of a file is a character of Tcl. Characters beyond these become UTF-8.
std::string toBytes(std::string_view text);
std::string fromBytes(std::string_view bytes);

inline std::string_view textOf(Tcl_Obj* value) {
    int size = 0;
    char const* const text = Tcl_GetStringFromObj(value, &size);
    return {text, static_cast<std::size_t>(size)};
}

inline Tcl_Obj* newText(std::string_view text) {
    return Tcl_NewStringObj(text.data(), static_cast<int>(text.size()));
}

/// Returns the text as file bytes.
inline std::string bytesOf(Tcl_Obj* value) {
    return toBytes(textOf(value));
}

/// Holds a Tcl value.
class Value {
public:
    explicit Value(Tcl_Obj* value) : value_(value) { Tcl_IncrRefCount(value_); }
    Value(Value const& other) : Value(other.value_) {}
    Value& operator=(Value const&) = delete;
    ~Value() { Tcl_DecrRefCount(value_); }
    Tcl_Obj* get() const { return value_; }

private:
    Tcl_Obj* value_;
};

}  // namespace tool::sdc
