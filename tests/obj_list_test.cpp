// Object references as text.

#include <gtest/gtest.h>

#include "support.h"

namespace {

using namespace kiri::tov;
using support::textOf;

TEST(Objects, ReadFromExpressions) {
    support::expectRows("expressions", [](std::string const& expression) {
        ppStlList<taDciObj*> objects = TovCmd::fromTclString(expression, false);
        ppStlList<taDciObj*> sources = TovCmd::fromTclString(expression, true);
        std::string text = textOf(objects);
        if (textOf(sources) != text) text += "\n" + textOf(sources);
        freeDciObjList(objects);
        freeDciObjList(sources);
        return text;
    });
}

TEST(Objects, WriteAsExpressions) {
    support::expectRows("references", [](std::string const& object) {
        std::size_t const name = object.find(' ') + 1;
        taDciObj obj(name == 0 ? nullptr : &object[name], nullptr, static_cast<taDciObjTyp>(std::stoi(object)),
                     taDciObjNone);
        return TovCmd::toTclString(&obj);
    });
    EXPECT_EQ(TovCmd::toTclString(nullptr), "");
    std::string out = "kept";
    for (char const* key : {"", "@P", static_cast<char const*>(nullptr)}) {
        EXPECT_FALSE(TovCmd::reservedKey(key, out));
    }
    EXPECT_EQ(out, "kept");
    EXPECT_TRUE(TovCmd::reservedKey("@po", out));
    EXPECT_EQ(out, "[all_outputs]");
}

TEST(Objects, CopyDeeply) {
    ppStlList<taDciObj*> from = TovCmd::fromTclString("get_ports {a b c}", false);
    ppStlList<taDciObj*> to = TovCmd::fromTclString("old", false);
    from.push_front(nullptr);
    deepCopyDciObjList(from, to);
    EXPECT_EQ(textOf(from), "null a:5 b:5 c:5");
    freeDciObjList(from);
    EXPECT_TRUE(from.empty());
    deepCopyDciObjList(to, to);
    EXPECT_EQ(textOf(to), "a:5 b:5 c:5");
    deepCopyDciObjList(from, to);
    EXPECT_TRUE(to.empty());
}

// A name of up to 43 bytes is stored in its record; a longer one is shared by the copies of the record.
TEST(Objects, KeepNamesOfCopies) {
    for (std::size_t const size : {1U, 42U, 43U, 44U, 45U, 127U, 128U}) {
        std::string const name = "x" + std::string(size - 1, 'y');
        ppStlList<taDciObj*> from = TovCmd::fromTclString(name, false);
        ppStlList<taDciObj*> to;
        deepCopyDciObjList(from, to);
        EXPECT_EQ(from.front()->name == to.front()->name, size > 43);
        freeDciObjList(from);
        EXPECT_EQ(textOf(to), name + ":59");
        freeDciObjList(to);
    }
}

TEST(Texts, AreEnclosed) {
    support::expectRows("brackets", [](std::string const& text) { return TovCmd::encloseBracket(text.c_str()); });
    support::expectRows("quotes", encloseDoubleQuotes);
    EXPECT_EQ(TovCmd::encloseBracket(nullptr), "");
}

}  // namespace
