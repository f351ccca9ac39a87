#include "references.h"

#include <algorithm>
#include <cstring>
#include <deque>
#include <unordered_map>

namespace tool::sdc {

Query const queries[6] = {
    {"get_ports", taDciObjPort}, {"get_pins", taDciObjPin},       {"get_nets", taDciObjNet},
    {"get_cells", taDciObjCell}, {"get_registers", registerType}, {"get_clocks", taDciObjClock},
};

namespace {

// A mark is U+E000, "k" and a letter for the type or "x", the name or number, U+E001. Within a name, a character that
// Tcl would quote is the one 0xe100 beyond it. No file holds these characters: each of its bytes is below U+0100.
constexpr std::string_view markStart = "\xee\x80\x80";
constexpr std::string_view markEnd = "\xee\x80\x81";
constexpr std::string_view quotedByTcl = " \t\n\v\f\r{}[]\"$;\\#";

char letterOf(taDciObjTyp type) {
    return static_cast<char>('A' + type);
}

/// Names with a backslash, by their marks: the spelling that came first.
std::unordered_map<std::string, std::string>& spellings() {
    static std::unordered_map<std::string, std::string> map;
    return map;
}

struct Extents {
    std::deque<Extent> all;
    std::unordered_map<std::string, std::size_t> numbers;
};

Extents& extents() {
    static Extents known;
    return known;
}

std::string markOf(Object const& object) {
    std::string const name = fromBytes(object.name);
    std::string mark(markStart);
    mark += {'k', letterOf(object.type)};
    for (std::size_t i = 0; i < name.size(); ++i) {
        if (name[i] == '\\' && i + 1 < name.size()) ++i;
        auto const c = static_cast<unsigned char>(name[i]);
        if (quotedByTcl.find(name[i]) == std::string_view::npos) {
            mark += name[i];
        } else {
            mark += {'\xee', static_cast<char>(0x84 + c / 64), static_cast<char>(0x80 + c % 64)};
        }
    }
    mark += markEnd;
    if (name.find('\\') != std::string::npos) spellings().emplace(mark, object.name);
    return mark;
}

std::string nameIn(std::string_view mark) {
    auto const spelt = spellings().find(std::string(mark));
    if (spelt != spellings().end()) return spelt->second;
    std::string name;
    std::string_view const quoted = mark.substr(5, mark.size() - 5 - markEnd.size());
    for (std::size_t i = 0; i < quoted.size(); ++i) {
        if (quoted[i] == '\xee' && i + 2 < quoted.size()) {
            name += static_cast<char>((static_cast<unsigned char>(quoted[i + 1]) - 0x84) * 64 +
                                      (static_cast<unsigned char>(quoted[i + 2]) - 0x80));
            i += 2;
        } else {
            name += quoted[i];
        }
    }
    return toBytes(name);
}

/// Reads a mark. Because a script can write these characters too, anything malformed is `broken`.
Word wordOfMark(std::string_view mark) {
    constexpr std::size_t longest = 9;
    Word word;
    word.kind = Word::broken;
    std::string_view const body = mark.substr(markStart.size(), mark.size() - markStart.size() - markEnd.size());
    if (body.size() > 2 && body[0] == 'k') {
        for (Query const& query : queries) {
            if (letterOf(query.type) != body[1]) continue;
            word.kind = Word::object;
            word.reference = {query.type, nameIn(mark)};
        }
    }
    std::string_view const digits = body.substr(std::min<std::size_t>(1, body.size()));
    bool const isNumber =
        !digits.empty() && digits.size() <= longest && digits.find_first_not_of("0123456789") == std::string_view::npos;
    if (body.empty() || body[0] != 'x' || !isNumber) return word;
    std::size_t const number = std::stoul(std::string(digits));
    if (number >= extents().all.size()) return word;
    word.kind = Word::extent;
    word.unknown = &extents().all[number];
    return word;
}

Word wordOf(std::string_view text) {
    std::size_t const start = text.find('\xee');
    if (start == std::string_view::npos || text.find(markStart) == std::string_view::npos) {
        Word word;
        word.reference.name = toBytes(text);
        return word;
    }
    if (start == 0 && text.find(markEnd) == text.size() - markEnd.size()) return wordOfMark(text);
    Word word;
    word.kind = Word::broken;
    return word;
}

void setText(Tcl_Obj* value, std::string const& text) {
    value->bytes = Tcl_Alloc(static_cast<unsigned>(text.size() + 1));
    std::memcpy(value->bytes, text.c_str(), text.size() + 1);
    value->length = static_cast<int>(text.size());
}

// The Tcl type of a reference: its internal form is the object; its text is made on demand.

Object* objectIn(Tcl_Obj const* value) {
    return static_cast<Object*>(value->internalRep.twoPtrValue.ptr1);
}

void freeReference(Tcl_Obj* value) {
    delete objectIn(value);
}

extern Tcl_ObjType const referenceType;

void copyReference(Tcl_Obj* from, Tcl_Obj* to) {
    to->internalRep.twoPtrValue.ptr1 = new Object(*objectIn(from));
    to->typePtr = &referenceType;
}

void writeReference(Tcl_Obj* value) {
    setText(value, markOf(*objectIn(value)));
}

Tcl_ObjType const referenceType = {"tovengReference", freeReference, copyReference, writeReference, nullptr};

// The Tcl type of an extent, in the same way. The number in its mark is assigned on demand.

std::size_t silent = 0;

std::function<void()>& extentAsked() {
    static std::function<void()> asked;
    return asked;
}

Extent* extentIn(Tcl_Obj const* value) {
    return static_cast<Extent*>(value->internalRep.twoPtrValue.ptr1);
}

extern Tcl_ObjType const extentType;

void freeExtent(Tcl_Obj* value) {
    if (value->bytes == nullptr) --silent;
    delete extentIn(value);
}

void copyExtent(Tcl_Obj* from, Tcl_Obj* to) {
    to->internalRep.twoPtrValue.ptr1 = new Extent(*extentIn(from));
    to->typePtr = &extentType;
    if (to->bytes == nullptr) ++silent;
}

std::string markOf(Extent const& extent) {
    auto const [entry, isNew] = extents().numbers.emplace(extent.text, extents().all.size());
    if (isNew) extents().all.push_back(extent);
    return std::string(markStart) + "x" + std::to_string(entry->second) + std::string(markEnd);
}

void writeExtent(Tcl_Obj* value) {
    if (extentAsked()) extentAsked()();
    --silent;
    setText(value, markOf(*extentIn(value)));
}

Tcl_ObjType const extentType = {"tovengExtent", freeExtent, copyExtent, writeExtent, nullptr};

bool isSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

/// Returns the end of the group that a brace or a quote at `start` opens; npos if it is never closed.
std::size_t closing(std::string_view text, std::size_t start) {
    if (text[start] == '"') return text.find('"', start + 1);
    int depth = 0;
    for (std::size_t i = start; i < text.size(); ++i) {
        if (text[i] == '{') ++depth;
        if (text[i] == '}' && --depth == 0) return i;
    }
    return std::string_view::npos;
}

bool appendWords(std::string_view text, std::vector<Word>& words) {
    for (std::size_t i = 0;;) {
        while (i < text.size() && isSpace(text[i])) ++i;
        if (i == text.size()) return true;
        if (text[i] == '{' || text[i] == '"') {
            std::size_t const end = closing(text, i);
            if (end == std::string_view::npos) return false;
            if (!appendWords(text.substr(i + 1, end - i - 1), words)) return false;
            i = end + 1;
            if (i < text.size() && !isSpace(text[i])) return false;
        } else {
            std::size_t const start = i;
            while (i < text.size() && !isSpace(text[i])) ++i;
            words.push_back(wordOf(text.substr(start, i - start)));
        }
    }
}

std::string queryOf(Word const& word) {
    if (word.kind == Word::extent) return word.unknown->text;
    for (Query const& query : queries) {
        if (query.type == word.reference.type)
            return std::string("[") + query.command + " {" + word.reference.name + "}]";
    }
    return word.reference.name;
}

/// Returns the words as one query if they are objects of one type; otherwise an empty text.
std::string queryOf(std::vector<Word> const& words) {
    std::string names;
    for (Word const& word : words) {
        if (word.kind != Word::object || word.reference.type != words.front().reference.type) return {};
        names.append(names.empty() ? "" : " ").append(word.reference.name);
    }
    for (Query const& query : queries) {
        if (!words.empty() && query.type == words.front().reference.type) {
            return std::string("[") + query.command + " {" + names + "}]";
        }
    }
    return {};
}

std::string argumentText(Tcl_Obj* value) {
    if (value->typePtr == &extentType) return extentIn(value)->text;
    std::string_view const text = textOf(value);
    if (text.find(markStart) == std::string_view::npos) {
        char const* const element = text.data();
        int flags = 0;
        auto const size = static_cast<int>(text.size());
        std::string quoted(static_cast<std::size_t>(Tcl_ScanCountedElement(element, size, &flags)) + 1, '\0');
        quoted.resize(static_cast<std::size_t>(
            Tcl_ConvertCountedElement(element, size, quoted.data(), flags | TCL_DONT_QUOTE_HASH)));
        return toBytes(quoted);
    }
    std::vector<Word> words;
    if (appendWords(text, words)) {
        std::string query = queryOf(words);
        if (!query.empty()) return query;
    }
    std::string const shown = readable(text);
    return words.size() > 1 ? "[list " + shown + "]" : shown;
}

}  // namespace

Tcl_Obj* newReference(Object object) {
    Tcl_Obj* const value = Tcl_NewObj();
    Tcl_InvalidateStringRep(value);
    value->internalRep.twoPtrValue.ptr1 = new Object(std::move(object));
    value->typePtr = &referenceType;
    return value;
}

Tcl_Obj* newExtent(Extent extent) {
    Tcl_Obj* const value = Tcl_NewObj();
    Tcl_InvalidateStringRep(value);
    value->internalRep.twoPtrValue.ptr1 = new Extent(std::move(extent));
    value->typePtr = &extentType;
    ++silent;
    return value;
}

std::size_t silentExtents() {
    return silent;
}

void onExtentText(std::function<void()> asked) {
    extentAsked() = std::move(asked);
}

bool holdsExtent(std::string_view text) {
    for (std::size_t i = text.find('\xee'); i != std::string_view::npos; i = text.find('\xee', i + 1)) {
        if (text.substr(i, markStart.size()) == markStart && text.substr(i + markStart.size(), 1) == "x") return true;
    }
    return false;
}

bool extentsAreElements(std::string_view text) {
    constexpr std::string_view before = " \t\n\v\f\r{\"", after = " \t\n\v\f\r}\"";
    for (std::size_t i = text.find(markStart); i != std::string_view::npos; i = text.find(markStart, i + 1)) {
        if (!holdsExtent(text.substr(i, markStart.size() + 1))) continue;
        std::size_t const end = text.find(markEnd, i);
        if (end == std::string_view::npos) return false;
        if (i > 0 && before.find(text[i - 1]) == std::string_view::npos) return false;
        std::size_t const next = end + markEnd.size();
        if (next < text.size() && after.find(text[next]) == std::string_view::npos) return false;
    }
    return true;
}

bool appendWords(Tcl_Obj* value, std::vector<Word>& words) {
    if (value->typePtr == &referenceType) {
        Word word;
        word.kind = Word::object;
        word.reference = *objectIn(value);
        words.push_back(std::move(word));
        return true;
    }
    if (value->typePtr == &extentType) {
        Word word;
        word.kind = Word::extent;
        word.unknown = extentIn(value);
        words.push_back(std::move(word));
        return true;
    }
    static Tcl_ObjType const* const listType = Tcl_GetObjType("list");
    if (value->typePtr != listType || value->bytes != nullptr) return appendWords(textOf(value), words);
    int size = 0;
    Tcl_Obj** elements = nullptr;
    if (Tcl_ListObjGetElements(nullptr, value, &size, &elements) != TCL_OK) return false;
    for (int i = 0; i < size; ++i) {
        if (!appendWords(elements[i], words)) return false;
    }
    return true;
}

bool isPattern(std::string_view name) {
    for (std::size_t i = 0; i < name.size(); ++i) {
        if (name[i] == '\\')
            ++i;
        else if (name[i] == '*' || name[i] == '?')
            return true;
        else if (name[i] == '[') {
            std::size_t const colon = name.find_first_not_of("0123456789", i + 1);
            if (colon == std::string_view::npos || colon == i + 1 || name[colon] != ':') continue;
            std::size_t const end = name.find_first_not_of("0123456789", colon + 1);
            if (end != std::string_view::npos && end > colon + 1 && name[end] == ']') return true;
        }
    }
    return false;
}

std::string readable(std::string_view text) {
    std::string shown;
    while (!text.empty()) {
        std::size_t const start = text.find(markStart);
        std::size_t const end = start == std::string_view::npos ? start : text.find(markEnd, start);
        if (end == std::string_view::npos) return shown + toBytes(text);
        shown += toBytes(text.substr(0, start));
        shown += queryOf(wordOfMark(text.substr(start, end + markEnd.size() - start)));
        text.remove_prefix(end + markEnd.size());
    }
    return shown;
}

std::string commandText(int objc, Tcl_Obj* const objv[]) {
    std::string text;
    for (int i = 0; i < objc; ++i) text.append(i == 0 ? "" : " ").append(argumentText(objv[i]));
    for (char& c : text) {
        if (c == '\n' || c == '\0') c = ' ';
    }
    return text;
}

}  // namespace tool::sdc
