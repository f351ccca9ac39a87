#include "tov/names/document_names.h"

#include <algorithm>
#include <cstddef>
#include <unordered_map>
#include <utility>

#include "tov/cmd/cmd.h"
#include "tov/edit.h"
#include "tov/names/document_clocks_p.h"
#include "tov/names/node_names_p.h"
#include "tov/names/questions_p.h"
#include "tov/tov.h"

namespace kiri::tov {

using namespace impl_detail;

// A nested class is exported with its enclosing class, unless marked otherwise.
class __attribute__((visibility("hidden"))) TovDocumentNames::Index {
public:
    Index(TOV& document, TovDesignNames const& names, TovNameMatch match)
        : document_(document), names_(names), match_(match) {
        forEachCommand(document, [this](TOVCMD_TYPE, TovCmd& cmd) { add(cmd); });
        entries_.shrink_to_fit();
        isOrdered_ = true;
    }

    void add(TovCmd& cmd);
    void remove(TovCmd const& cmd);

    std::vector<TovNameUse> usesIn(TovCmd& cmd, bool missingOnly);
    std::vector<TovNameUse> missing();
    std::vector<TovCmd*> commandsOf(TovNode const& node);

private:
    using Id = Questions::Id;

    struct Entry {
        TovCmd* cmd = nullptr;  // null for one that was removed
        std::vector<Id> questions;
    };
    using Entries = std::vector<Entry>;

    bool isClock(Questions::Question const& question) const {
        return question.mayBeClock() && clocks_.has(std::string(question.word));
    }
    bool isFound(Id id) { return questions_.isFoundIn(names_, id) || isClock(questions_[id]); }
    bool isFound(Questions::Question const& question);
    void dropRemoved();
    void putInOrder();
    void replaceEntries(Entries& entries);
    template <class Judge>
    std::vector<TovCmd*> commandsWith(Judge judge);

    TOV& document_;
    TovDesignNames const& names_;
    TovNameMatch match_;
    DocumentClocks clocks_;
    Questions questions_;
    Entries entries_;                                        // of the commands that have uses
    bool isOrdered_ = false;                                 // entries_, as the commands are written
    std::unordered_map<TovCmd const*, std::size_t> places_;  // in entries_
};

void TovDocumentNames::Index::add(TovCmd& cmd) {
    remove(cmd);
    if (entries_.size() > 2 * places_.size() + 1000) dropRemoved();
    std::vector<Id> questions;
    for (ReferenceWord const& word : referenceWords(cmd, match_))
        questions.push_back(questions_.put(Questions::of(word)));
    clocks_.add(cmd);
    if (questions.empty()) return;
    try {
        entries_.emplace_back();
        places_.emplace(&cmd, entries_.size() - 1);
    } catch (...) {
        clocks_.remove(cmd);
        throw;
    }
    entries_.back() = {&cmd, std::move(questions)};
    isOrdered_ = false;
}

void TovDocumentNames::Index::remove(TovCmd const& cmd) {
    clocks_.remove(cmd);
    auto const found = places_.find(&cmd);
    if (found == places_.end()) return;
    entries_[found->second] = {};
    places_.erase(found);
}

// Drops the entries of removed commands, and the questions that no other command asks.
void TovDocumentNames::Index::dropRemoved() {
    Questions questions;
    Entries entries;
    entries.reserve(places_.size());
    for (Entry const& entry : entries_) {
        if (entry.cmd == nullptr) continue;
        entries.push_back({entry.cmd, {}});
        for (Id const id : entry.questions) {
            Id const known = questions.put(questions_[id]);
            questions.setAnswer(known, questions_.answer(id));
            entries.back().questions.push_back(known);
        }
    }
    std::swap(questions_, questions);
    replaceEntries(entries);
}

void TovDocumentNames::Index::replaceEntries(Entries& entries) {
    for (std::size_t place = 0; place < entries.size(); ++place) places_.find(entries[place].cmd)->second = place;
    entries_.swap(entries);
}

// The walk through all lists is the most expensive part of a question.
void TovDocumentNames::Index::putInOrder() {
    Entries ordered;
    ordered.reserve(places_.size());
    auto const move = [&](Entry& entry) {
        if (entry.cmd != nullptr) ordered.push_back(std::exchange(entry, {}));
    };
    forEachCommand(document_, [&](TOVCMD_TYPE, TovCmd& cmd) {
        auto const found = places_.find(&cmd);
        if (found != places_.end()) move(entries_[found->second]);
    });
    // Commands that are not in a list yet.
    std::for_each(entries_.begin(), entries_.end(), move);
    replaceEntries(ordered);
    isOrdered_ = true;
}

bool TovDocumentNames::Index::isFound(Questions::Question const& question) {
    Id const id = questions_.find(question);
    return id < questions_.size() ? isFound(id) : question.isFoundIn(names_) || isClock(question);
}

std::vector<TovNameUse> TovDocumentNames::Index::usesIn(TovCmd& cmd, bool missingOnly) {
    std::vector<TovNameUse> uses;
    for (ReferenceWord const& word : referenceWords(cmd, match_)) {
        Questions::Question const question = Questions::of(word);
        bool const hasVariable = holdsVariable(word.text);
        bool const isMeant = missingOnly ? !hasVariable && !isFound(question) : !hasVariable || isFound(question);
        if (isMeant) uses.push_back({&cmd, word.role, word.type, std::string(word.text), question.match});
    }
    return uses;
}

// Returns the commands with a question for which `judge` is true, in the order of writing.
template <class Judge>
std::vector<TovCmd*> TovDocumentNames::Index::commandsWith(Judge judge) {
    std::vector<TovCmd*> found;
    for (auto const& [cmd, questions] : entries_) {
        if (cmd != nullptr && std::any_of(questions.begin(), questions.end(), judge)) found.push_back(cmd);
    }
    if (isOrdered_ || found.size() < 2) return found;
    putInOrder();
    return commandsWith(judge);
}

std::vector<TovNameUse> TovDocumentNames::Index::missing() {
    auto const isMissing = [this](Id id) { return !holdsVariable(questions_[id].word) && !isFound(id); };
    std::vector<TovNameUse> missing;
    for (TovCmd* cmd : commandsWith(isMissing)) {
        if (!cmd->enabled) continue;
        for (TovNameUse& use : usesIn(*cmd, true)) missing.push_back(std::move(use));
    }
    return missing;
}

std::vector<TovCmd*> TovDocumentNames::Index::commandsOf(TovNode const& node) {
    NodeNames const names(node);
    std::vector<bool> isMeant(questions_.size());
    auto const judge = [&](Id id) {
        auto const [type, match, word] = questions_[id];
        if (!isMeant[id] && names.fits(type, word, match)) isMeant[id] = true;
    };
    names.forEachLiteral([&](PathHash const& hash) { questions_.forEachLike(hash, judge); });
    for (Id const id : questions_.patterns()) judge(id);
    return commandsWith([&](Id id) { return isMeant[id]; });
}

TovDocumentNames::TovDocumentNames(TOV& document, TovDesignNames const& names, TovNameMatch match)
    : index_(std::make_unique<Index>(document, names, match)) {}

TovDocumentNames::~TovDocumentNames() = default;

std::vector<TovNameUse> TovDocumentNames::usesIn(TovCmd& cmd) const {
    return index_->usesIn(cmd, false);
}

std::vector<TovNameUse> TovDocumentNames::missing() const {
    return index_->missing();
}

std::vector<TovNameUse> TovDocumentNames::missingIn(TovCmd& cmd) const {
    return index_->usesIn(cmd, true);
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
