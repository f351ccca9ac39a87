#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/dci.h"
#include "tov/names/design_names.h"
#include "tov/names/reference_words.h"

namespace kiri::tov {

/// The questions that the words of a document ask of a design. Equal questions are one; none is ever removed.
class Questions {
public:
    using Id = std::uint32_t;
    enum class Answer : std::uint8_t { unknown, missing, found };

    struct Question {
        taDciObjTyp type;  ///< port, pin, net, cell, clock or name
        TovNameMatch match;
        std::string_view word;  ///< lives until the next question is put

        /// Returns whether clocks of the document may be meant, too.
        bool mayBeClock() const { return type == taDciObjClock || type == taDciObjName; }
        bool isFoundIn(TovDesignNames const& names) const { return names.has(type, std::string(word), match); }
    };

    /// Returns the question of a word.
    static Question of(ReferenceWord const& word);

    /// Returns the number of a question; adds it unless it is there.
    Id put(Question const& question);

    /// Returns the number of a question; size() if it is not there.
    Id find(Question const& question) const;

    Question operator[](Id id) const;
    Id size() const { return static_cast<Id>(rows_.size()); }

    Answer answer(Id id) const { return rows_[id].answer; }
    void setAnswer(Id id, Answer answer) { rows_[id].answer = answer; }
    /// Returns whether the design has what the question asks for; looks it up unless the answer is known.
    bool isFoundIn(TovDesignNames const& names, Id id);

    /// Calls `visit(id)` for each question whose word may stand for something else than itself: a pattern, a range, an
    /// escape, text beyond ASCII.
    template <class Visit>
    void forEachPattern(Visit visit) const {
        for (Id const id : patterns_) visit(id);
    }

    /// Calls `visit(id)` for each question whose word is `text`, whose levels are joined by '/', and perhaps for
    /// others.
    template <class Visit>
    void forEachLike(std::string_view text, Visit visit) const {
        if (slots_.empty()) return;
        std::uint32_t const hash = hashOf(text);
        for (std::size_t at = hash & mask(); slots_[at] != free; at = (at + 1) & mask()) {
            if (rows_[slots_[at]].hash == hash) visit(slots_[at]);
        }
    }

    /// Reserves room for that many questions with that many bytes in their words: adding them does not throw then.
    void reserve(std::size_t questions, std::size_t bytes);
    std::size_t bytes() const { return words_.size(); }

    /// Frees the memory reserved for further questions.
    void shrink();

private:
    struct Row {
        std::size_t end;  // of the word in words_; it begins where the one before ends
        std::uint32_t hash;
        std::uint8_t type;
        std::uint8_t match;
        Answer answer;
    };
    static constexpr Id free = 0xffffffff;

    static std::uint32_t hashOf(std::string_view word);
    std::size_t mask() const { return slots_.size() - 1; }
    std::size_t slotOf(Question const& question, std::uint32_t hash) const;

    std::string words_;
    std::vector<Row> rows_;
    std::vector<Id> slots_;  // a hash table; their number is a power of two, a quarter is free at least
    std::vector<Id> patterns_;
};

}  // namespace kiri::tov
