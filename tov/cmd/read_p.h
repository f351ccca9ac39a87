#pragma once

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <typeinfo>
#include <utility>
#include <vector>

#include "tov/base/result_p.h"
#include "tov/base/text_p.h"
#include "tov/base/tokenizer_p.h"
#include "tov/cmd/command_kind_p.h"
#include "tov/cmd/missing_value.h"
#include "tov/cmd/number_p.h"
#include "tov/cmd/obj_list_p.h"

namespace kiri::tov::impl_detail {

/// What follows an option.
enum class OptionValue {
    none,
    ignoredAtEnd,  ///< a word; the option is ignored at the end of the line
    requiredAtEnd  ///< a word; a line that ends here is an error
};

/// An option of a command line: its name, what it does to the command, and the object lists that it fills.
template <class Cmd>
struct Option {
    using Command = Cmd;

    std::string_view word;  ///< a literal; anyOtherWord as the last row of a table
    OptionValue value;
    void (*apply)(Cmd& cmd, std::string_view value);
    /// Appends the lists to those of the command; null for an option without objects.
    void (*appendLists)(Cmd& cmd, char const* role, std::vector<TovReferences>& lists) = nullptr;
};

template <auto list, class Cmd>
void appendList(Cmd& cmd, char const* role, std::vector<TovReferences>& lists) {
    lists.push_back({role, &(cmd.*list)});
}

/// The row for words that are not options. Without this row they are ignored.
// Not null: it is a role, too. NOLINTNEXTLINE(bugprone-string-constructor)
inline constexpr std::string_view anyOtherWord{"", 0};

template <class Member>
struct MemberClass;

template <class Class, class Field>
struct MemberClass<Field Class::*> {
    using Type = Class;
};

/// An option whose value names the objects of a list; with `source`, ports and nets get the types of clock sources.
template <auto list, bool source = false, class Cmd = typename MemberClass<decltype(list)>::Type>
constexpr Option<Cmd> objects(std::string_view word) {
    return {word, word == anyOtherWord ? OptionValue::none : OptionValue::ignoredAtEnd,
            [](Cmd& cmd, std::string_view value) { readObjs(cmd.*list, value, source); }, appendList<list, Cmd>};
}

/// The class that a table of options describes.
template <auto const& options>
using CommandOf = typename std::decay_t<decltype(options[0])>::Command;

/// Reads the words after the keyword as a table of options says; the table has the object lists in the order of
/// writing. Empty words between options are skipped, but count as the value of an option.
template <auto const& options>
Result readWords(CommandOf<options>& cmd, WordCursor words, std::string_view keyword) {
    constexpr auto const& last = options[std::size(options) - 1];
    std::string_view word;
    while (words.next(word)) {
        if (word.empty()) continue;
        auto const* option = std::end(options);
        if (word.front() == '-') {
            option = std::find_if(std::begin(options), std::end(options),
                                  [word](auto const& candidate) { return candidate.word == word; });
        }
        if (option == std::end(options)) {
            if constexpr (last.word == anyOtherWord) last.apply(cmd, word);
            continue;
        }
        std::string_view value;
        if (option->value != OptionValue::none && !words.next(value)) {
            if (option->value == OptionValue::ignoredAtEnd) break;
            return {failureMissingValue, std::string(keyword).append(" ends in ").append(word)};
        }
        option->apply(cmd, value);
    }
    return {};
}

// The command is empty if the first word of the line is longer than the keyword.
template <class Cmd, auto const& options>
Result makeCommand(CommandKind const& kind, WordCursor words, std::unique_ptr<TovCmd>& cmd) {
    auto made = std::make_unique<Cmd>(static_cast<char const*>(nullptr));
    Result result = readWords<options>(*made, words, kind.keyword);
    if (result.ok()) cmd = std::move(made);
    return result;
}

/// A class derived from `Cmd` may save another line.
template <class Cmd>
void appendCommand(std::string& line, TovCmd& cmd, TOV& document) {
    if (typeid(cmd) == typeid(Cmd)) {
        static_cast<Cmd&>(cmd).appendSaveString(line);
    } else {
        line += cmd.toSaveString(&document);
    }
}

template <auto const& options>
bool appendLists(TovCmd& cmd, std::vector<TovReferences>& lists) {
    auto* const own = dynamic_cast<CommandOf<options>*>(&cmd);
    if (own == nullptr) return false;
    lists.reserve(std::size(options));
    for (auto const& option : options) {
        if (option.appendLists != nullptr) option.appendLists(*own, option.word.data(), lists);
    }
    return true;
}

/// Returns the kind of a class whose lines `options` describes.
template <class Cmd, auto const& options>
constexpr CommandKind kindOf(TOVCMD_TYPE list, std::string_view keyword, std::string_view sample) noexcept {
    return {list, keyword, sample, &typeid(Cmd), makeCommand<Cmd, options>, appendCommand<Cmd>, appendLists<options>};
}

/// Reads a line whose first word is the keyword of one of `kinds`. Any other line leaves the command unchanged. Reading
/// a line disables the command; the loader sets `enabled` afterwards. Throws TovMissingValue.
///
/// The constructors that read a line or a record first delegate to the constructor from values: the object then counts
/// as constructed, and its destructor frees the lists if the reading throws.
template <auto const& options>
void readLine(CommandOf<options>& cmd, char const* line, std::initializer_list<CommandKind const*> kinds) {
    WordCursor words(orEmpty(line));
    std::string_view word;
    if (!words.next(word)) return;
    if (std::none_of(kinds.begin(), kinds.end(), [word](auto* kind) { return kind->keyword == word; })) return;
    cmd.enabled = false;
    if (!readWords<options>(cmd, words, word).ok()) throw TovMissingValue();
}

}  // namespace kiri::tov::impl_detail
