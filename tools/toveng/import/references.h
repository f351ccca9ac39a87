#pragma once

#include <tcl.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/dci.h"

// How a script represents design objects. An object with a literal name is a Tcl value, so lists of objects are Tcl
// lists. An extent is a set of objects that only the design determines. The text of both is a mark, a word without
// characters that Tcl would quote; the marks of one object are equal however its name is escaped.

namespace tool::sdc {

/// The type of a register, for which the library has no enumerator.
constexpr taDciObjTyp registerType = taDciObjNone;

/// An object that a call names; `name` is in the bytes of a file.
struct Object {
    taDciObjTyp type;
    std::string name;

    bool operator==(Object const& other) const { return type == other.type && name == other.name; }
};

/// The result of a query whose objects depend on the design, or of an unknown command.
struct Extent {
    std::string text;             ///< as written in a script, "[all_inputs]"; equal texts are equal extents
    std::vector<Object> objects;  ///< the objects that a line names for it; empty if no line can
    std::string option;           ///< the option of the query because of which no line can name it; may be empty
};

/// A word of a value.
struct Word {
    enum Kind {
        plain,   ///< a text
        object,  ///< an object with a literal name
        extent,  ///< an extent
        broken   ///< a text that contains a mark and other characters
    };
    Kind kind = plain;
    Object reference = {taDciObjName, {}};  ///< set for a plain word, too
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

/// Returns how many values hold an extent whose text has not been made.
std::size_t silentExtents();

/// Sets a function that is called before the text of such a value is made.
void onExtentText(std::function<void()> asked);

/// Returns whether a text contains the mark of an extent.
bool holdsExtent(std::string_view text);

/// Returns whether each mark of an extent in a text is a separate list element.
bool extentsAreElements(std::string_view text);

/// Appends the words of a Tcl list, including those of nested lists; a backslash is an ordinary character. Returns
/// false if a brace or a quote is open at the end.
bool appendWords(Tcl_Obj* value, std::vector<Word>& words);

/// Returns whether a name has a wildcard or a range of bits: "d*", "d[7:0]".
bool isPattern(std::string_view name);

/// Returns a text with queries in place of the marks: "[get_ports {d[3]}]".
std::string readable(std::string_view text);

/// Returns a command as one readable line of Tcl.
std::string commandText(int objc, Tcl_Obj* const objv[]);

/// Each byte of a file is one Tcl character. Characters above U+00FF become UTF-8.
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
