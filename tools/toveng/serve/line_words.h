#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "platform/dci.h"
#include "serve/vocabulary.h"

namespace tool::lsp {

/// Returns whether a query can contain a name only in braces.
inline bool needsBraces(std::string_view name) {
    return name.find_first_of(" \t[]{}\"$;\\") != std::string_view::npos;
}

/// The kind of a word in a line.
enum class WordKind { keyword, option, query, name, clockName, value, other };

/// A word and its place in the line, without surrounding brackets, braces and quotes.
struct Word {
    std::size_t begin;
    std::size_t end;
    WordKind kind;
    std::string_view text;
    taDciObjTyp type;        ///< for a name: the type of object that it may match
    OptionInfo const* role;  ///< the option before it; null for an operand without an option
    bool isLocal = false;    ///< its query is hierarchical
    bool isJudged = true;    ///< its query selects objects only by name
    bool isBraced = false;   ///< in braces or quotes
};

/// The state at the end of a line that is being typed.
struct OpenEnd {
    bool isComment = false;
    bool isFirstWord = false;          ///< the command is not complete
    bool isQueryWord = false;          ///< a bracket has just opened
    bool isBraced = false;             ///< in braces or quotes
    QueryInfo const* query = nullptr;  ///< the open query
    OptionInfo const* role = nullptr;  ///< the option whose operand is next
    std::size_t begin = 0;             ///< of the word being typed, which may be empty
};

/// The words of a line, and what each of them refers to. The words are views into the line.
struct LineWords {
    bool isDisabled = false;
    CommandInfo const* command = nullptr;  ///< null for any other line
    std::vector<Word> words;
    OpenEnd end;

    /// Returns the word that contains a place or ends there; null if there is none.
    Word const* at(std::size_t byte) const;
};

/// Splits a line. A bracket within a word is part of it: `d[3]` is one word.
LineWords wordsOf(std::string_view line);

}  // namespace tool::lsp
