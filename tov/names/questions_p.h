#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/dci.h"
#include "tov/names/design_names.h"
#include "tov/names/path_text_p.h"

namespace kiri::tov {
class TovCmd;
}

namespace kiri::tov::impl_detail {

/// A word by which a command refers to objects.
struct ReferenceWord {
    char const* role;       ///< as in TovReferences
    taDciObjTyp type;       ///< the type of the reference, or of the query that holds the word
    std::string_view text;  ///< a view into the command's reference
    TovNameMatch match;     ///< TOVMATCH_LOCAL in a hierarchical query
};

/// Returns whether a word contains a variable, so what it matches is known only when the Tcl runs.
inline bool holdsVariable(std::string_view word) {
    return word.find('$') != std::string_view::npos;
}

/// Returns the words of a command's references in the order of writing: each role, type, text and match once, without
/// words that are not names and without queries that cannot be judged by names alone. Words outside hierarchical
/// queries have `match`. The views are valid as long as the references.
std::vector<ReferenceWord> referenceWords(TovCmd& cmd, TovNameMatch match);

/// The questions that the words of a document ask a design. Equal questions are stored once and never removed.
class Questions {
public:
    using Id = std::uint32_t;
    enum class Answer : std::uint8_t { unknown, missing, found };

    struct Question {
        taDciObjTyp type;
        TovNameMatch match;
        std::string_view word;  ///< valid until the next question is added

        /// Returns whether the word may also match clocks of the document.
        bool mayBeClock() const { return type == taDciObjClock || type == taDciObjName; }
        bool isFoundIn(TovDesignNames const& names) const { return names.has(type, std::string(word), match); }
    };

    /// Returns the question of a word.
    static Question of(ReferenceWord const& word);

    /// Returns the number of a question; adds the question if it is new.
    Id put(Question const& question);
    /// Returns the number of a question; size() if there is no such question.
    Id find(Question const& question) const { return find(question, PathHash(question.word).value()); }

    Question operator[](Id id) const { return {rows_[id].type, rows_[id].match, rows_[id].word}; }
    Id size() const { return static_cast<Id>(rows_.size()); }

    Answer answer(Id id) const { return rows_[id].answer; }
    void setAnswer(Id id, Answer answer) { rows_[id].answer = answer; }
    /// Returns whether the design has a match for the question; looks it up unless the answer is known.
    bool isFoundIn(TovDesignNames const& names, Id id);

    /// The questions whose words may match names other than their own text: patterns, ranges, escapes, non-ASCII text.
    std::vector<Id> const& patterns() const { return patterns_; }
    /// Calls `visit(id)` for each question whose word has this hash.
    template <class Visit>
    void forEachLike(PathHash const& hash, Visit visit) const {
        auto const [first, last] = ids_.equal_range(hash.value());
        for (auto at = first; at != last; ++at) visit(at->second);
    }

private:
    struct Row {
        std::string word;
        taDciObjTyp type;
        TovNameMatch match;
        Answer answer;
    };

    Id find(Question const& question, std::uint64_t hash) const;

    std::vector<Row> rows_;
    std::unordered_multimap<std::uint64_t, Id> ids_;  // by the hash of the word
    std::vector<Id> patterns_;
};

}  // namespace kiri::tov::impl_detail
