#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "platform/dci.h"
#include "serve/vocabulary.h"

namespace tool::lsp {

/// What a word of a line is.
enum class WordKind { keyword, option, query, name, clockName, value, other };

/// A word and its place in the line. Brackets, braces and quotes around it are left out.
struct Word {
    std::size_t begin;
    std::size_t end;
    WordKind kind;
    std::string_view text;
    taDciObjTyp type;        ///< of a name: what it is looked for as
    OptionInfo const* role;  ///< the option before it; null for what a command takes by itself
    bool isLocal = false;    ///< its query is hierarchical
    bool isJudged = true;    ///< its query names objects by nothing but their names
    bool isBraced = false;   ///< in braces or quotes
};

/// Where a line ends that is still being written.
struct OpenEnd {
    bool isComment = false;
    bool isFirstWord = false;          ///< the command is not written yet
    bool isQueryWord = false;          ///< a bracket has just opened
    bool isBraced = false;             ///< in braces or quotes
    QueryInfo const* query = nullptr;  ///< the query that is open
    OptionInfo const* role = nullptr;  ///< the option whose operand comes
    std::size_t begin = 0;             ///< of the word that is being written, which may be empty
};

/// The words of a line, with what each of them refers to. Views into the line.
struct LineWords {
    bool isDisabled = false;
    CommandInfo const* command = nullptr;  ///< null for any other line
    std::vector<Word> words;
    OpenEnd end;

    /// Returns the word that a place is in or at the end of; null if there is none.
    Word const* at(std::size_t byte) const;
};

/// Splits a line. A bracket within a word belongs to it: `d[3]` is one word.
LineWords wordsOf(std::string_view line);

}  // namespace tool::lsp
