#pragma once

#include <cstdint>
#include <string>

#include "platform/dci.h"
#include "platform/export.h"

namespace kiri::tov {

class TOV;
namespace impl_detail {
struct DocumentLists;
}

/// A command of a constraint file. It owns the object references in its lists and frees them when it is destroyed.
///
/// Commands come from a line of a file, from a record of the constraint database, or from plain values. A line is read
/// up to its first NUL byte. Parsing ignores what the command does not understand. The constructors do not read
/// "#disable ": a timing command made from a line with its own keyword is disabled until the caller enables it, and any
/// other line leaves it enabled and empty. Use makeCommand to read a line as the loader does. Any constructor or
/// operation may throw std::bad_alloc. A command may be used by one thread at a time.
class TOVENG_API TovCmd {
public:
    TovCmd(TovCmd const&) = delete;
    TovCmd& operator=(TovCmd const&) = delete;
    virtual ~TovCmd();

    /// Returns the line that a save writes, without a line end. `document` is unused and may be null. Texts from a
    /// program or a database record are written as they are, so a line feed in one starts a new line of the file.
    virtual std::string toSaveString(TOV* document) = 0;

    /// Reads an object expression such as "[ get_ports { a b } ]". The caller owns the object references returned. With
    /// `source`, ports and nets get the type taDciObjSourcePort or taDciObjSourceNet. Each word that is not a query
    /// becomes a reference of type taDciObjName whose name is the whole `text`. Assigning the result to a list does not
    /// free the references in that list; replaceReferences does both.
    static ppStlList<taDciObj*> fromTclString(std::string const& text, bool source);

    /// Returns the expression of one object reference: a reserved expression, a query, or the name; "" for null.
    static std::string toTclString(taDciObj* obj);

    /// Stores the expression of a reserved key ("@PI", "@PO", "@CLKIN", "@CLOCK", in any case) in `out`. For any other
    /// key and for null, returns false and leaves `out` as it was.
    static bool reservedKey(char const* key, std::string& out);

    /// Returns `text` without blanks, tabs, LF and CR at its ends, and in brackets if it begins with the name of a
    /// query in any case. Null reads as "".
    static std::string encloseBracket(char const* text);

    bool enabled = true;  ///< false: written with the prefix "#disable ", an attribute with "-disable" at its end

private:
    friend struct impl_detail::DocumentLists;
    std::uint32_t order_ = 0;  // the place among the commands that the library appended to a document; 0: none

public:
    std::string note;  ///< free text; never written

protected:
    TovCmd() = default;
    explicit TovCmd(char const* noteText);
};

/// Returns `text` in double quotes if it contains white space and no double quote, else unchanged.
TOVENG_API std::string encloseDoubleQuotes(std::string const& text);

/// Replaces the content of `to` with copies of the object references in `from`, in order and without null entries.
/// std::bad_alloc leaves `to` as it was.
TOVENG_API void deepCopyDciObjList(ppStlList<taDciObj*>& from, ppStlList<taDciObj*>& to);

/// Deletes every object reference in `list` and empties it.
TOVENG_API void freeDciObjList(ppStlList<taDciObj*>& list);

}  // namespace kiri::tov
