#include "serve/uses.h"

#include <algorithm>
#include <utility>

using namespace kiri::tov;

namespace tool::lsp {

namespace {

// A name with its levels joined by '/', without a bit or range at its end.
std::string baseOf(std::string_view name) {
    std::string base(name);
    std::replace(base.begin(), base.end(), '.', '/');
    while (!base.empty() && base.back() == ']') {
        std::size_t const open = base.rfind('[');
        if (open == std::string::npos) break;
        base.erase(open);
    }
    return base;
}

bool mayBeClock(Word const& word) {
    return word.kind == WordKind::clockName || word.type == taDciObjClock || word.type == taDciObjName;
}

bool mayBeObject(Word const& word, taDciObjTyp type) {
    return word.kind == WordKind::name && (word.type == type || word.type == taDciObjName || type == taDciObjName);
}

bool hasName(std::vector<ClockDefinition> const& clocks, std::string_view word) {
    return std::any_of(clocks.begin(), clocks.end(), [&](auto const& clock) { return standsFor(word, clock.name); });
}

}  // namespace

std::optional<Subject> Subject::at(Workspace const& workspace, OpenDocument const& document, Place place) {
    LineWords const words = wordsOf(document.text.line(place.line));
    Word const* const word = words.at(place.byte);
    if (word == nullptr || (word->kind != WordKind::name && word->kind != WordKind::clockName)) return {};
    return Subject(workspace, document, place.line, *word);
}

Subject::Subject(Workspace const& workspace, OpenDocument const& document, std::size_t line, Word const& word)
    : workspace_(&workspace),
      document_(&document),
      text_(word.text),
      type_(word.type),
      use_{line, word.begin, word.end, word.kind == WordKind::clockName, isPattern(word.text)} {
    findClocks(word);
    if (!isClock_) findNodes(word);
}

void Subject::findClocks(Word const& word) {
    if (!mayBeClock(word)) return;
    for (ClockDefinition& clock : clocksIn(document_->text)) {
        if (standsFor(text_, clock.name)) clocks_.push_back(std::move(clock));
    }
    bool isElsewhere = false;
    for (SetFile const* file : filesBeside(*workspace_, *document_)) {
        isElsewhere = isElsewhere || hasName(clocksIn(*file), text_);
    }
    isClock_ = word.type == taDciObjClock || !clocks_.empty() || isElsewhere;
    names_.insert(text_);
    for (ClockDefinition const& clock : clocks_) names_.insert(clock.name);
    if (isClock_ && workspace_->design != nullptr) {
        workspace_->design->names().find(taDciObjClock, text_, nodes_, TOVMATCH_FLAT);
        for (TovNode const* node : nodes_) names_.insert(workspace_->design->names().nameOf(*node));
    }
}

TovNameMatch Subject::matchOf(Word const& word) const {
    return word.isLocal ? TOVMATCH_LOCAL : workspace_->match;
}

void Subject::findNodes(Word const& word) {
    names_ = {baseOf(text_)};
    if (workspace_->design == nullptr || !word.isJudged) return;
    constexpr std::size_t most = 1000;
    workspace_->design->names().find(type_, text_, nodes_, matchOf(word));
    nodeSet_.insert(nodes_.begin(), nodes_.end());
    tryAll_ = nodes_.size() > most;
    for (std::size_t i = 0; i < nodes_.size() && !tryAll_; ++i)
        addNames(workspace_->design->names().nameOf(*nodes_[i]));
}

// A plain word for an object is its path, a block that contains it, or its last levels. A bit also reads as its base.
void Subject::addNames(std::string const& path) {
    std::string const base = baseOf(path);
    for (std::size_t end = base.find('/'); end != std::string::npos; end = base.find('/', end + 1)) {
        names_.insert(base.substr(0, end));
    }
    std::size_t const last = base.rfind('/');
    names_.insert(base);
    if (last == std::string::npos) return;
    names_.insert(base.substr(last + 1));
    std::size_t const before = last == 0 ? std::string::npos : base.rfind('/', last - 1);
    if (before != std::string::npos) names_.insert(base.substr(before + 1));
}

bool Subject::isUseOfClock(Word const& word) const {
    if (!mayBeClock(word)) return false;
    if (names_.count(std::string(word.text)) > 0) return true;
    return isPattern(word.text) && std::any_of(names_.begin(), names_.end(),
                                               [&](std::string const& name) { return standsFor(word.text, name); });
}

bool Subject::isUseOfNodes(Word const& word) const {
    if (!mayBeObject(word, type_)) return false;
    if (word.text == text_) return true;
    if (nodeSet_.empty() || !word.isJudged) return false;
    bool const isPlain = word.text.find_first_of("*?\\") == std::string_view::npos;
    if (isPlain && !word.isLocal && !tryAll_ && names_.count(baseOf(word.text)) == 0) return false;
    std::string const key = std::to_string(word.type) + (word.isLocal ? "l" : " ") + std::string(word.text);
    auto const [found, isNew] = judged_.emplace(key, false);
    if (isNew) {
        std::vector<TovNode const*> nodes;
        workspace_->design->names().find(word.type, std::string(word.text), nodes, matchOf(word));
        found->second =
            std::any_of(nodes.begin(), nodes.end(), [&](TovNode const* node) { return nodeSet_.count(node) > 0; });
    }
    return found->second;
}

bool Subject::isUse(Word const& word) const {
    return isClock_ ? isUseOfClock(word) : isUseOfNodes(word);
}

std::vector<Use> Subject::uses() const {
    std::vector<Use> uses;
    Text const& text = document_->text;
    auto clock = clocks_.begin();
    for (std::size_t i = 0; i < text.lineCount(); ++i) {
        LineWords const words = wordsOf(text.line(i));
        while (clock != clocks_.end() && clock->line < i) ++clock;
        bool const defines = clock != clocks_.end() && clock->line == i;
        for (Word const& word : words.words) {
            bool const isDefinition = isClock_ && defines && clock->begin == word.begin;
            if (!isDefinition && !isUse(word)) continue;
            uses.push_back(
                {i, word.begin, word.end, isDefinition || word.kind == WordKind::clockName, isPattern(word.text)});
        }
    }
    return uses;
}

}  // namespace tool::lsp
