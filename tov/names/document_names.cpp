#include "tov/names/document_names.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <new>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "tov/cmd/cmd.h"
#include "tov/edit.h"
#include "tov/names/document_clocks.h"
#include "tov/names/questions.h"
#include "tov/names/reference_words.h"
#include "tov/names/word_match.h"
#include "tov/tov.h"

namespace kiri::tov {

namespace {

// The type that stands for all which are looked for alike.
taDciObjTyp lookedForAs(taDciObjTyp type) {
    switch (type) {
        case taDciObjSourcePort:
            return taDciObjPort;
        case taDciObjPin2:
            return taDciObjPin;
        case taDciObjSourceNet:
            return taDciObjNet;
        default:
            return type;
    }
}

// Every text that a word without wildcards may be to stand for the node, and some that it may not.
std::vector<std::string> spellingsOf(TovNode const& node) {
    TovNode const* const cell =
        node.parent() != nullptr && node.parent()->type() == TOV_OBJ_CELL ? node.parent() : nullptr;
    std::vector<std::string> texts = {node.name(), node.hierachyName('/')};
    if (cell != nullptr) texts.push_back(cell->name() + "/" + texts[0]);
    for (std::string& text : texts) std::replace(text.begin(), text.end(), '.', '/');
    for (std::size_t i = 0; i < texts.size(); ++i) {
        std::string base;
        if (TovBusNode::isBusType(texts[i], &base)) texts.push_back(std::move(base));
    }
    // Whole names, their last levels and, of cells, the blocks.
    for (std::size_t i = texts.size(); i-- > 0;) {
        std::string const text = texts[i];
        for (std::size_t at = text.find('/'); at != std::string::npos; at = text.find('/', at + 1)) {
            texts.push_back(text.substr(at + 1));
            if (node.type() != TOV_OBJ_CELL) continue;
            texts.push_back(text.substr(0, at));
            texts.push_back(text.substr(at + 1, text.find('/', at + 1) - at - 1));
        }
    }
    return texts;
}

// A word with a variable in it may become any other.
bool holdsVariable(std::string_view word) {
    return word.find('$') != std::string_view::npos;
}

}  // namespace

class TovDocumentNames::Index {
public:
    Index(TOV& document, TovDesignNames const& names, TovNameMatch match)
        : document_(document),
          names_(names),
          match_(match == TOVMATCH_LOCAL || match == TOVMATCH_FLAT ? match : TOVMATCH_LEVELS) {
        forEachCommand(document, [this](TOVCMD_TYPE, TovCmd& cmd) { add(cmd); });
        questions_.shrink();
        uses_.shrink_to_fit();
    }

    void add(TovCmd& cmd);
    void remove(TovCmd const& cmd);

    std::vector<TovNameUse> usesIn(TovCmd& cmd);
    std::vector<TovNameUse> missingIn(TovCmd& cmd);
    std::vector<TovNameUse> missing();
    std::vector<TovCmd*> commandsOf(TovNode const& node) const;

private:
    using Id = Questions::Id;
    using Answer = Questions::Answer;

    struct Use {
        Id question;
        std::uint8_t role;  // in roles_
        std::uint8_t type;
    };
    struct Range {
        std::uint32_t first;  // in uses_
        std::uint32_t count;
    };

    Questions::Question questionOf(ReferenceWord const& word) const {
        return {lookedForAs(word.type), word.isLocal ? TOVMATCH_LOCAL : match_, word.text};
    }
    TovNameUse useOf(TovCmd& cmd, ReferenceWord const& word) const {
        return {&cmd, word.role, word.type, std::string(word.text), questionOf(word).match};
    }
    std::uint8_t roleIndex(char const* role);
    bool isInDesign(Questions::Question const& question) const {
        return names_.has(question.type, std::string(question.word), question.match);
    }
    bool isInDesign(Id id);
    bool isFound(Id id) { return isInDesign(id) || isClock(questions_[id]); }
    bool isFound(Questions::Question const& question);
    bool isClock(Questions::Question const& question) const {
        bool const mayBe = question.type == taDciObjClock || question.type == taDciObjName;
        return mayBe && clocks_.has(std::string(question.word));
    }
    void dropUnused();

    TOV& document_;
    TovDesignNames const& names_;
    TovNameMatch match_;
    DocumentClocks clocks_;
    Questions questions_;
    std::unordered_map<TovCmd const*, Range> commands_;
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
    if (unused_ > uses_.size() / 2 + 1000) dropUnused();
    std::vector<ReferenceWord> const words = referenceWords(cmd);
    std::size_t const first = uses_.size();
    if (first + words.size() > std::numeric_limits<std::uint32_t>::max()) throw std::bad_alloc();
    try {
        for (ReferenceWord const& word : words) {
            uses_.push_back(
                {questions_.put(questionOf(word)), roleIndex(word.role), static_cast<std::uint8_t>(word.type)});
        }
        clocks_.add(cmd);
        if (words.empty()) return;
        commands_[&cmd] = {static_cast<std::uint32_t>(first), static_cast<std::uint32_t>(words.size())};
    } catch (...) {
        uses_.resize(first);
        clocks_.remove(cmd);
        throw;
    }
}

void TovDocumentNames::Index::remove(TovCmd const& cmd) {
    clocks_.remove(cmd);
    auto const place = commands_.find(&cmd);
    if (place == commands_.end()) return;
    unused_ += place->second.count;
    commands_.erase(place);
}

// What removed commands left behind goes when it is the larger part. Nothing throws once there is room for all.
void TovDocumentNames::Index::dropUnused() {
    Questions questions;
    questions.reserve(questions_.size(), questions_.bytes());
    std::vector<Use> uses;
    uses.reserve(uses_.size() - unused_);
    for (auto& [cmd, range] : commands_) {
        std::size_t const first = uses.size();
        for (std::uint32_t i = 0; i < range.count; ++i) {
            Use use = uses_[range.first + i];
            Answer const answer = questions_.answer(use.question);
            use.question = questions.put(questions_[use.question]);
            questions.setAnswer(use.question, answer);
            uses.push_back(use);
        }
        range.first = static_cast<std::uint32_t>(first);
    }
    std::swap(questions_, questions);
    uses_.swap(uses);
    unused_ = 0;
}

bool TovDocumentNames::Index::isInDesign(Id id) {
    if (questions_.answer(id) == Answer::unknown) {
        questions_.setAnswer(id, isInDesign(questions_[id]) ? Answer::found : Answer::missing);
    }
    return questions_.answer(id) == Answer::found;
}

bool TovDocumentNames::Index::isFound(Questions::Question const& question) {
    Id const id = questions_.find(question);
    return id < questions_.size() ? isFound(id) : isInDesign(question) || isClock(question);
}

std::vector<TovNameUse> TovDocumentNames::Index::usesIn(TovCmd& cmd) {
    std::vector<TovNameUse> uses;
    for (ReferenceWord const& word : referenceWords(cmd)) {
        if (!holdsVariable(word.text) || isFound(questionOf(word))) uses.push_back(useOf(cmd, word));
    }
    return uses;
}

std::vector<TovNameUse> TovDocumentNames::Index::missingIn(TovCmd& cmd) {
    std::vector<TovNameUse> uses;
    for (ReferenceWord const& word : referenceWords(cmd)) {
        if (!holdsVariable(word.text) && !isFound(questionOf(word))) uses.push_back(useOf(cmd, word));
    }
    return uses;
}

std::vector<TovNameUse> TovDocumentNames::Index::missing() {
    std::vector<TovNameUse> uses;
    forEachCommand(document_, [&](TOVCMD_TYPE, TovCmd& cmd) {
        auto const place = cmd.enabled ? commands_.find(&cmd) : commands_.end();
        if (place == commands_.end()) return;
        for (std::uint32_t i = 0; i < place->second.count; ++i) {
            Use const& use = uses_[place->second.first + i];
            Questions::Question const question = questions_[use.question];
            if (holdsVariable(question.word) || isFound(use.question)) continue;
            uses.push_back({&cmd, roles_[use.role], static_cast<taDciObjTyp>(use.type), std::string(question.word),
                            question.match});
        }
    });
    return uses;
}

std::vector<TovCmd*> TovDocumentNames::Index::commandsOf(TovNode const& node) const {
    std::vector<bool> isMeant(questions_.size());
    auto const judge = [&](Id id) {
        auto const [type, match, word] = questions_[id];
        if (!isMeant[id] && standsFor(type, std::string(word), match, node)) isMeant[id] = true;
    };
    for (std::string const& text : spellingsOf(node)) questions_.forEachSpelling(text, judge);
    questions_.forEachPattern(judge);

    std::unordered_set<TovCmd const*> found;
    for (auto const& [cmd, range] : commands_) {
        auto const first = uses_.begin() + range.first;
        if (std::any_of(first, first + range.count, [&](Use const& use) { return isMeant[use.question]; })) {
            found.insert(cmd);
        }
    }
    std::vector<TovCmd*> commands;
    if (found.empty()) return commands;
    forEachCommand(document_, [&](TOVCMD_TYPE, TovCmd& cmd) {
        if (found.count(&cmd) != 0) commands.push_back(&cmd);
    });
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
