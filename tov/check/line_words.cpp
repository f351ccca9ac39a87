#include "tov/check/line_words_p.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "tov/base/text_p.h"
#include "tov/base/tokenizer_p.h"
#include "tov/cmd/number_p.h"

namespace kiri::tov::impl_detail {

namespace {

struct OptionUse {
    std::string_view word;
    Takes takes = Takes::nothing;
};

/// How the commands of a list read their words.
struct Grammar {
    TOVCMD_TYPE list;
    Takes other;  // a number, if the word is one
    Takes otherThanNumber;
    OptionUse options[6];
};

constexpr Grammar grammars[] = {
    {TOVCMD_CLOCK,
     Takes::objects,
     Takes::objects,
     {{"-period", Takes::number}, {"-name", Takes::name}, {"-waveform", Takes::edges}}},
    {TOVCMD_GENCLOCK,
     Takes::objects,
     Takes::objects,
     {{"-divide_by", Takes::wholeNumber},
      {"-multiply_by", Takes::wholeNumber},
      {"-name", Takes::name},
      {"-duty_cycle", Takes::number},
      {"-source", Takes::objects},
      {"-master_clock", Takes::objects}}},
    {TOVCMD_CLOCKGROUP, Takes::nothing, Takes::nothing, {{"-asynchronous"}, {"-group", Takes::group}}},
    {TOVCMD_INPUTDELAY, Takes::number, Takes::objects, {{"-max"}, {"-min"}, {"-clock", Takes::objects}}},
    {TOVCMD_OUTPUTDELAY, Takes::number, Takes::objects, {{"-max"}, {"-min"}, {"-clock", Takes::objects}}},
    {TOVCMD_MAXDELAY, Takes::number, Takes::nothing, {{"-from", Takes::objects}, {"-to", Takes::objects}}},
    {TOVCMD_MINDELAY, Takes::number, Takes::nothing, {{"-from", Takes::objects}, {"-to", Takes::objects}}},
    {TOVCMD_MULTICYCLE, Takes::wholeNumber, Takes::nothing, {{"-from", Takes::objects}, {"-to", Takes::objects}}},
    {TOVCMD_FALSEPATH,
     Takes::nothing,
     Takes::nothing,
     {{"-from", Takes::objects}, {"-to", Takes::objects}, {"-through", Takes::objects}}},
    {TOVCMD_ATTRIBUTE, Takes::nothing, Takes::nothing, {}},
};

// Options of the same commands in other tools that take a value.
constexpr std::string_view otherToolsOptions[] = {
    "-comment",    "-edge_shift", "-edges",      "-fall_from", "-fall_through",  "-fall_to",
    "-group_path", "-name",       "-pll_output", "-rise_from", "-reference_pin", "-rise_through",
    "-rise_to",    "-through",    "-from",       "-to",
};

Grammar const& grammarOf(TOVCMD_TYPE list) {
    auto const* const grammar =
        std::find_if(std::begin(grammars), std::end(grammars), [list](Grammar const& g) { return g.list == list; });
    return grammar == std::end(grammars) ? grammars[std::size(grammars) - 1] : *grammar;
}

OptionUse const* findOption(Grammar const& grammar, std::string_view word) {
    auto const* const option = std::find_if(std::begin(grammar.options), std::end(grammar.options),
                                            [word](OptionUse const& o) { return o.word == word; });
    return word.empty() || option == std::end(grammar.options) ? nullptr : option;
}

// Marks the words that are not replaced by later ones.
void markWhatCounts(std::vector<LineWord>& words) {
    std::vector<std::pair<std::string_view, Takes>> seen;
    for (auto word = words.rbegin(); word != words.rend(); ++word) {
        bool const isOption = word->use == LineWord::Use::option;
        bool const takesNothing = word->takes == Takes::nothing;
        if (isOption != takesNothing) continue;  // an option with a value, or an ignored word
        std::pair const place(word->option, word->takes);
        bool const isAdded = word->takes == Takes::edges || word->takes == Takes::group;
        bool const isLast = std::find(seen.begin(), seen.end(), place) == seen.end();
        word->counts = isAdded || isLast;
        if (isLast) seen.push_back(place);
    }
}

}  // namespace

std::string_view optionInFull(TOVCMD_TYPE list, std::string_view word) {
    std::string_view full;
    for (OptionUse const& option : grammarOf(list).options) {
        if (!startsWith(option.word, word)) continue;
        if (!full.empty()) return {};
        full = option.word;
    }
    return full;
}

bool looksLikeOption(std::string_view word) {
    return startsWith(word, "-") && !isNumber(word);
}

std::vector<LineWord> lineWordsOf(TOVCMD_TYPE list, std::string_view command) {
    using Use = LineWord::Use;
    Grammar const& grammar = grammarOf(list);
    std::vector<LineWord> words;
    WordCursor cursor(command);
    std::string_view text;
    cursor.next(text);  // the keyword
    while (cursor.next(text)) {
        if (text.empty()) continue;
        OptionUse const* const option = findOption(grammar, text);
        if (option != nullptr) {
            words.push_back({text, Use::option, option->word, option->takes});
            if (option->takes != Takes::nothing && cursor.next(text)) {
                words.push_back({text, Use::value, option->word, option->takes});
            }
            continue;
        }
        bool const isOption = looksLikeOption(text);
        bool const isValue = !words.empty() && words.back().use == Use::unknownOption &&
                             std::find(std::begin(otherToolsOptions), std::end(otherToolsOptions), words.back().text) !=
                                 std::end(otherToolsOptions);
        Takes const takes = isNumber(text) ? grammar.other : grammar.otherThanNumber;
        // The command reads what follows an unknown option like any other word.
        if (isOption) {
            words.push_back({text, Use::unknownOption, {}, takes});
        } else {
            words.push_back({text, isValue ? Use::unknownValue : Use::other, {}, takes});
        }
    }
    markWhatCounts(words);
    return words;
}

}  // namespace kiri::tov::impl_detail
