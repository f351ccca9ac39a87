#include "tov/names/document_names.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <new>
#include <unordered_map>
#include <utility>

#include "tov/cmd/cmd.h"
#include "tov/edit.h"
#include "tov/names/document_clocks.h"
#include "tov/names/node_names.h"
#include "tov/names/questions.h"
#include "tov/names/reference_words.h"
#include "tov/tov.h"

namespace kiri::tov {

// A nested class is exported with the class around it, unless marked otherwise.
class __attribute__((visibility("hidden"))) TovDocumentNames::Index {
public:
    Index(TOV& document, TovDesignNames const& names, TovNameMatch match)
        : document_(document), names_(names), match_(match) {
        forEachCommand(document, [this](TOVCMD_TYPE, TovCmd& cmd) { add(cmd); });
        questions_.shrink();
        std::vector<Use>(uses_).swap(uses_);
        Entries(entries_).swap(entries_);
        isOrdered_ = true;
    }

    void add(TovCmd& cmd);
    void remove(TovCmd const& cmd);

    std::vector<TovNameUse> usesIn(TovCmd& cmd);
    std::vector<TovNameUse> missingIn(TovCmd& cmd);
    std::vector<TovNameUse> missing();
    std::vector<TovCmd*> commandsOf(TovNode const& node);

private:
    using Id = Questions::Id;
    using Answer = Questions::Answer;

    struct Use {
        Id question;
        std::uint8_t role;  // in roles_
        std::uint8_t type;
    };
    struct Entry {
        TovCmd* cmd;          // null for one that was removed, which has no uses
        std::uint32_t first;  // in uses_
        std::uint32_t count;
    };
    using Entries = std::vector<Entry>;

    Questions::Question questionOf(ReferenceWord const& word) const { return Questions::of(word); }
    TovNameUse useOf(TovCmd& cmd, ReferenceWord const& word) const {
        return {&cmd, word.role, word.type, std::string(word.text), questionOf(word).match};
    }
    std::uint8_t roleIndex(char const* role);
    bool isClock(Questions::Question const& question) const {
        return question.mayBeClock() && clocks_.has(std::string(question.word));
    }
    bool isFound(Id id) { return questions_.isFoundIn(names_, id) || isClock(questions_[id]); }
    bool isFound(Questions::Question const& question);
    void dropUnused();
    void putInOrder();
    template <class Judge>
    Entries entriesWith(Judge judge);

    TOV& document_;
    TovDesignNames const& names_;
    TovNameMatch match_;
    DocumentClocks clocks_;
    Questions questions_;
    Entries entries_;                                          // of the commands that have uses
    bool isOrdered_ = false;                                   // entries_, as the commands are written
    std::unordered_map<TovCmd const*, std::uint32_t> places_;  // in entries_
    std::vector<Use> uses_;
    std::size_t unused_ = 0;  // of uses_
    std::vector<char const*> roles_;
};

std::uint8_t TovDocumentNames::Index::roleIndex(char const* role) {
    auto const place = std::find(roles_.begin(), roles_.end(), role);
    auto const index = static_cast<std::uint8_t>(place - roles_.begin());
    if (place == roles_.end()) roles_.push_back(role);
    return index;
}

void TovDocumentNames::Index::add(TovCmd& cmd) {
    remove(cmd);
    if (unused_ > uses_.size() / 4 + 1000) dropUnused();
    std::vector<ReferenceWord> const words = referenceWords(cmd, match_);
    std::size_t const first = uses_.size();
    if (first + words.size() > std::numeric_limits<std::uint32_t>::max()) throw std::bad_alloc();
    try {
        for (ReferenceWord const& word : words) {
            uses_.push_back(
                {questions_.put(questionOf(word)), roleIndex(word.role), static_cast<std::uint8_t>(word.type)});
        }
        clocks_.add(cmd);
        if (words.empty()) return;
        auto const place = static_cast<std::uint32_t>(entries_.size());
        entries_.push_back({&cmd, static_cast<std::uint32_t>(first), static_cast<std::uint32_t>(words.size())});
        places_[&cmd] = place;
        isOrdered_ = false;
    } catch (...) {
        if (!entries_.empty() && entries_.back().cmd == &cmd) entries_.pop_back();
        uses_.resize(first);
        clocks_.remove(cmd);
        throw;
    }
}

void TovDocumentNames::Index::remove(TovCmd const& cmd) {
    clocks_.remove(cmd);
    auto const found = places_.find(&cmd);
    if (found == places_.end()) return;
    Entry& entry = entries_[found->second];
    unused_ += entry.count;
    entry = {};
    places_.erase(found);
}

// Drops the entries of removed commands. Only the reservations may throw, and they come first.
void TovDocumentNames::Index::dropUnused() {
    Questions questions;
    questions.reserve(questions_.size(), questions_.bytes());
    std::vector<Use> uses;
    uses.reserve(uses_.size() - unused_);
    entries_.erase(std::remove_if(entries_.begin(), entries_.end(), [](Entry const& e) { return e.cmd == nullptr; }),
                   entries_.end());
    for (std::size_t place = 0; place < entries_.size(); ++place) {
        Entry& entry = entries_[place];
        places_.find(entry.cmd)->second = static_cast<std::uint32_t>(place);
        std::size_t const first = uses.size();
        for (std::uint32_t i = 0; i < entry.count; ++i) {
            Use use = uses_[entry.first + i];
            Answer const answer = questions_.answer(use.question);
            use.question = questions.put(questions_[use.question]);
            questions.setAnswer(use.question, answer);
            uses.push_back(use);
        }
        entry.first = static_cast<std::uint32_t>(first);
    }
    std::swap(questions_, questions);
    uses_.swap(uses);
    unused_ = 0;
}

// The walk through all lists is the most expensive part of a question.
void TovDocumentNames::Index::putInOrder() {
    Entries ordered;
    ordered.reserve(places_.size());
    auto const move = [&](Entry& entry) {
        if (entry.cmd == nullptr) return;
        places_.find(entry.cmd)->second = static_cast<std::uint32_t>(ordered.size());
        ordered.push_back(std::exchange(entry, {}));
    };
    forEachCommand(document_, [&](TOVCMD_TYPE, TovCmd& cmd) {
        auto const found = places_.find(&cmd);
        if (found != places_.end()) move(entries_[found->second]);
    });
    // Commands that are in no list yet.
    std::for_each(entries_.begin(), entries_.end(), move);
    entries_.swap(ordered);
    isOrdered_ = true;
}

bool TovDocumentNames::Index::isFound(Questions::Question const& question) {
    Id const id = questions_.find(question);
    return id < questions_.size() ? isFound(id) : question.isFoundIn(names_) || isClock(question);
}

std::vector<TovNameUse> TovDocumentNames::Index::usesIn(TovCmd& cmd) {
    std::vector<TovNameUse> uses;
    for (ReferenceWord const& word : referenceWords(cmd, match_)) {
        if (!holdsVariable(word.text) || isFound(questionOf(word))) uses.push_back(useOf(cmd, word));
    }
    return uses;
}

std::vector<TovNameUse> TovDocumentNames::Index::missingIn(TovCmd& cmd) {
    std::vector<TovNameUse> uses;
    for (ReferenceWord const& word : referenceWords(cmd, match_)) {
        if (!holdsVariable(word.text) && !isFound(questionOf(word))) uses.push_back(useOf(cmd, word));
    }
    return uses;
}

// Returns the entries with a use for which `judge` is true, in the order of writing.
template <class Judge>
TovDocumentNames::Index::Entries TovDocumentNames::Index::entriesWith(Judge judge) {
    Entries found;
    for (Entry const& entry : entries_) {
        auto const first = uses_.begin() + entry.first;
        auto const isMeant = [&](Use const& use) { return judge(entry, use); };
        if (std::any_of(first, first + entry.count, isMeant)) found.push_back(entry);
    }
    if (isOrdered_ || found.size() < 2) return found;
    putInOrder();
    return entriesWith(judge);
}

std::vector<TovNameUse> TovDocumentNames::Index::missing() {
    auto const isMissing = [this](Entry const& entry, Use const& use) {
        return entry.cmd->enabled && !holdsVariable(questions_[use.question].word) && !isFound(use.question);
    };
    std::vector<TovNameUse> uses;
    for (Entry const& entry : entriesWith(isMissing)) {
        for (std::uint32_t i = 0; i < entry.count; ++i) {
            Use const& use = uses_[entry.first + i];
            if (!isMissing(entry, use)) continue;
            Questions::Question const question = questions_[use.question];
            uses.push_back({entry.cmd, roles_[use.role], static_cast<taDciObjTyp>(use.type), std::string(question.word),
                            question.match});
        }
    }
    return uses;
}

std::vector<TovCmd*> TovDocumentNames::Index::commandsOf(TovNode const& node) {
    impl_detail::NodeNames const names(node);
    std::vector<bool> isMeant(questions_.size());
    auto const judge = [&](Id id) {
        auto const [type, match, word] = questions_[id];
        if (!isMeant[id] && names.fits(type, word, match)) isMeant[id] = true;
    };
    for (std::string const& word : names.literalWords()) questions_.forEachLike(word, judge);
    questions_.forEachPattern(judge);

    std::vector<TovCmd*> commands;
    for (Entry const& entry : entriesWith([&](Entry const&, Use const& use) { return isMeant[use.question]; })) {
        commands.push_back(entry.cmd);
    }
    return commands;
}

TovDocumentNames::TovDocumentNames(TOV& document, TovDesignNames const& names, TovNameMatch match)
    : index_(std::make_unique<Index>(document, names, match)) {}

TovDocumentNames::~TovDocumentNames() = default;

std::vector<TovNameUse> TovDocumentNames::usesIn(TovCmd& cmd) const {
    return index_->usesIn(cmd);
}

std::vector<TovNameUse> TovDocumentNames::missing() const {
    return index_->missing();
}

std::vector<TovNameUse> TovDocumentNames::missingIn(TovCmd& cmd) const {
    return index_->missingIn(cmd);
}

std::vector<TovCmd*> TovDocumentNames::commandsOf(TovNode const& node) const {
    return index_->commandsOf(node);
}

void TovDocumentNames::add(TovCmd& cmd) {
    index_->add(cmd);
}

void TovDocumentNames::remove(TovCmd& cmd) {
    index_->remove(cmd);
}

}  // namespace kiri::tov
