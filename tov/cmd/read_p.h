#pragma once

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string_view>

#include "tov/base/text_p.h"
#include "tov/base/tokenizer_p.h"
#include "tov/cmd/commands.h"
#include "tov/cmd/number_p.h"
#include "tov/cmd/obj_list_p.h"

namespace kiri::tov::impl_detail {

/// What follows an option word.
enum class OptionValue {
    none,
    ignoredAtEnd,  ///< a word; at the end of the line the option is ignored
    throwsAtEnd    ///< a word; at the end of the line std::out_of_range is thrown
};

/// An option of a command line: its word, and what it does to the command.
template <class Cmd>
struct Option {
    std::string_view word;
    OptionValue value;
    void (*apply)(Cmd& cmd, std::string_view value);
};

/// Reads the words after the keyword: options by the table, any other word by `readOther`. Empty words between
/// options are skipped; as the value of an option an empty word counts.
template <class Cmd, std::size_t Options>
void readOptions(Cmd& cmd, WordCursor words, Option<Cmd> const (&options)[Options],
                 void (*readOther)(Cmd& cmd, std::string_view word)) {
    std::string_view word;
    while (words.next(word)) {
        if (word.empty()) continue;
        Option<Cmd> const* option = std::end(options);
        if (word.front() == '-') {
            option = std::find_if(std::begin(options), std::end(options),
                                  [word](Option<Cmd> const& o) { return o.word == word; });
        }
        if (option == std::end(options)) {
            readOther(cmd, word);
            continue;
        }
        std::string_view value;
        if (option->value != OptionValue::none && !words.next(value)) {
            if (option->value == OptionValue::throwsAtEnd) throw std::out_of_range("vector::_M_range_check");
            return;
        }
        option->apply(cmd, value);
    }
}

/// Read the words of a command's line after the keyword.
void readWords(TovCmdClockDef& cmd, WordCursor words);
void readWords(TovCmdGenClockDef& cmd, WordCursor words);
void readWords(TovCmdClockGroupDef& cmd, WordCursor words);
void readWords(TovCmdIODelay& cmd, WordCursor words);
void readWords(TovCmdTimingDelay& cmd, WordCursor words);
void readWords(TovCmdMultiPath& cmd, WordCursor words);
void readWords(TovCmdFalsePath& cmd, WordCursor words);

/// Makes the attribute of a line; null unless the line has six or seven words.
std::unique_ptr<TovCmdAttr> makeAttribute(WordCursor line);

/// Reads a line whose first word is one of `keywords`. Another line leaves the command as it is. A command that is read
/// is disabled; the loader sets `enabled` afterwards.
///
/// The constructors that read a line or a record first delegate to the one from values: the command is complete then,
/// and its destructor frees its lists if the reading throws.
template <class Cmd, std::size_t Keywords>
void readLine(Cmd& cmd, char const* line, std::string_view const (&keywords)[Keywords]) {
    WordCursor words(orEmpty(line));
    std::string_view word;
    if (!words.next(word) || std::find(std::begin(keywords), std::end(keywords), word) == std::end(keywords)) return;
    cmd.enabled = false;
    readWords(cmd, words);
}

/// For commands that skip the words they do not know.
template <class Cmd>
void ignoreWord(Cmd&, std::string_view) {}

/// For options and words that name objects.
template <auto list, bool source, class Cmd>
void readInto(Cmd& cmd, std::string_view value) {
    readObjs(cmd.*list, value, source);
}

}  // namespace kiri::tov::impl_detail
