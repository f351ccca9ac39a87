#ifndef TOVENG_TOV_CMD_PARSE_H
#define TOVENG_TOV_CMD_PARSE_H

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <stdexcept>
#include <string_view>

#include "tov/cmd/cmd.h"
#include "tov/cmd/number.h"
#include "tov/cmd/obj_list.h"
#include "tov/tokenizer.h"

namespace kiri::tov {

/// What follows an option word.
enum class OptionValue {
    none,
    wanted,   ///< a word; the option is ignored where the line ends
    required  ///< a word; std::out_of_range where the line ends
};

/// An option of a command line: its word, and what it does to the command.
template <class Cmd>
struct Option {
    std::string_view word;
    OptionValue value;
    void (*apply)(Cmd& cmd, std::string_view value);
};

/// Begins to read a command's line: false if its first word is none of `keywords`. A recognised command is
/// disabled until its reader knows better.
template <std::size_t N>
bool beginLine(TovCmd& cmd, WordCursor& words, std::string_view const (&keywords)[N]) {
    std::string_view first;
    if (!words.next(first) || std::find(std::begin(keywords), std::end(keywords), first) == std::end(keywords)) {
        return false;
    }
    cmd.enabled = false;
    return true;
}

/// Reads the words behind the keyword: options as the table tells, any other word by `other`. Empty words
/// between options are skipped; as the value of an option an empty word counts.
template <class Cmd, std::size_t N>
void readWords(Cmd& cmd, WordCursor& words, Option<Cmd> const (&options)[N],
               void (*other)(Cmd& cmd, std::string_view word)) {
    for (std::string_view word; words.next(word);) {
        if (word.empty()) continue;
        auto const option = std::find_if(std::begin(options), std::end(options),
                                         [word](Option<Cmd> const& o) { return o.word == word; });
        if (option == std::end(options)) {
            other(cmd, word);
            continue;
        }
        std::string_view value;
        if (option->value != OptionValue::none && !words.next(value)) {
            if (option->value == OptionValue::required) throw std::out_of_range("vector::_M_range_check");
            return;
        }
        option->apply(cmd, value);
    }
}

/// For commands that skip the words they do not know.
template <class Cmd>
void ignoreWord(Cmd&, std::string_view) {}

/// Replaces the content of an object list by what `expression` names.
inline void readObjs(ppStlList<taDciObj*>& list, std::string_view expression, bool source) {
    OwnedObjList(expression, source).swap(list);
}

/// The start and end points of a path, for all commands that have them.
template <class Cmd>
void readFrom(Cmd& cmd, std::string_view value) {
    readObjs(cmd.from, value, false);
}
template <class Cmd>
void readTo(Cmd& cmd, std::string_view value) {
    readObjs(cmd.to, value, false);
}

}  // namespace kiri::tov

#endif
