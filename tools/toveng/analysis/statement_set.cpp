#include "analysis/statement_set.h"

#include <algorithm>

namespace tool {

StatementSet::Id StatementSet::add(Facts const& facts) {
    Id const id = entries_.add();
    if (id == places_.size()) places_.push_back(0);
    Entry& entry = entries_[id];
    entry.key = facts.key;
    entry.path = facts.path;
    entry.value = facts.value;
    entry.isMin = facts.isMin;
    entry.isMax = facts.isMax;
    entry.isDelay = facts.isDelay;
    entry.isCompared = facts.isCompared;
    entry.hidesClocks = facts.hidesClocks;
    for (MissingWord const& word : facts.missing) entry.words.push_back(clocks_.useWord(word, id));
    for (std::string const& clock : facts.clocks) entry.clocks.push_back(clocks_.useName(clock));
    return id;
}

void StatementSet::append(Facts const& facts) {
    Id const id = add(facts);
    places_[id] = static_cast<std::uint32_t>(order_.size());
    order_.push_back(id);
    link(id);
}

void StatementSet::replace(std::size_t first, std::size_t count, std::vector<Facts> const& others) {
    for (std::size_t i = first; i < first + count; ++i) remove(order_[i]);
    std::vector<Id> ids;
    ids.reserve(others.size());
    for (Facts const& facts : others) ids.push_back(add(facts));
    std::size_t const same = std::min(count, ids.size());
    auto const place = order_.begin() + static_cast<std::ptrdiff_t>(first);
    auto const kept = static_cast<std::ptrdiff_t>(same);
    std::copy(ids.begin(), ids.begin() + kept, place);
    if (same < count) order_.erase(place + kept, place + static_cast<std::ptrdiff_t>(count));
    if (same < ids.size()) order_.insert(place + kept, ids.begin() + kept, ids.end());
    if (count == ids.size()) {
        for (std::size_t i = 0; i < count; ++i) places_[ids[i]] = static_cast<std::uint32_t>(first + i);
    } else {
        number(first);
    }
    for (Id id : ids) link(id);
}

void StatementSet::number(std::size_t first) {
    for (std::size_t i = first; i < order_.size(); ++i) places_[order_[i]] = static_cast<std::uint32_t>(i);
}

StatementSet::Id const* StatementSet::placeIn(IdList const& ids, Id id) const {
    return std::lower_bound(ids.begin(), ids.end(), id, [this](Id a, Id b) { return places_[a] < places_[b]; });
}

void StatementSet::insertInto(IdList& ids, Id id) {
    bool const isLast = ids.empty() || places_[*(ids.end() - 1)] < places_[id];
    ids.insert(isLast ? ids.end() : placeIn(ids, id), id);
}

void StatementSet::link(Id id) {
    Entry& entry = entries_[id];
    touch(id);
    for (Id clock : entry.clocks) clocks_.define(clock);
    if (entry.hidesClocks) ++hiding_;
    if (entry.key != 0) {
        entry.same = same_.put(entry.key);
        insertInto(same_[entry.same], id);
        touchNeighbours(same_[entry.same], id);
    }
    if (entry.path != 0) {
        entry.limits = limits_.put(entry.path);
        if (entry.isMin) insertInto(limits_[entry.limits].minimums, id);
        if (entry.isMax) insertInto(limits_[entry.limits].maximums, id);
        touchLimits(id);
    }
    if (!entry.isCompared) return;
    for (Id clock : entry.clocks) {
        IdList& compared = clocks_.name(clock).compared;
        insertInto(compared, id);
        touchFrom(compared, id);
    }
}

void StatementSet::remove(Id id) {
    Entry& entry = entries_[id];
    for (Id word : entry.words) clocks_.dropWord(word, id);
    for (Id clock : entry.clocks) clocks_.undefine(clock);
    if (entry.hidesClocks) --hiding_;
    if (entry.key != 0) {
        touchNeighbours(same_[entry.same], id);
        eraseFrom(same_[entry.same], id);
        if (same_[entry.same].empty()) same_.erase(entry.key);
    }
    if (entry.path != 0) {
        touchLimits(id);
        Limits& limits = limits_[entry.limits];
        if (entry.isMin) eraseFrom(limits.minimums, id);
        if (entry.isMax) eraseFrom(limits.maximums, id);
        if (limits.minimums.empty() && limits.maximums.empty()) limits_.erase(entry.path);
    }
    if (entry.isCompared) {
        for (Id clock : entry.clocks) {
            IdList& compared = clocks_.name(clock).compared;
            touchFrom(compared, id);
            eraseFrom(compared, id);
        }
    }
    for (Id clock : entry.clocks) clocks_.dropName(clock);
    entries_.remove(id);
}

void StatementSet::touch(Id id) {
    if (entries_[id].isTouched) return;
    entries_[id].isTouched = true;
    touched_.push_back(id);
}

void StatementSet::touchAll(IdList const& ids) {
    for (Id id : ids) touch(id);
}

// A statement is compared with the statements of its key before and after it.
void StatementSet::touchNeighbours(IdList const& ids, Id id) {
    Id const* const place = placeIn(ids, id);
    if (place != ids.begin()) touch(*(place - 1));
    if (place + 1 < ids.end()) touch(*(place + 1));
}

// Touches the statements of a list that follow a statement.
void StatementSet::touchFrom(IdList const& ids, Id id) {
    for (Id const* place = placeIn(ids, id); place != ids.end(); ++place) touch(*place);
}

// Touches the following statements that are compared with the bound that a statement sets.
void StatementSet::touchLimits(Id id) {
    Entry const& entry = entries_[id];
    Limits const& limits = limits_[entry.limits];
    if (entry.isMin) touchFrom(limits.maximums, id);
    if (entry.isMax) touchFrom(limits.minimums, id);
}

bool StatementSet::judgesClocks() const {
    return !hasDesign_ && !isCut_ && hiding_ == 0 && !clocks_.empty();
}

void StatementSet::update() {
    clocks_.update([this](KnownClocks::Word const& word) { touchAll(word.users); });
    if (hasDesign_ || judgedClocks_ == judgesClocks()) return;
    judgedClocks_ = judgesClocks();
    for (Id id : order_) {
        if (!entries_[id].words.empty()) touch(id);
    }
}

std::vector<std::size_t> StatementSet::takeTouched() {
    update();
    std::vector<std::size_t> places;
    for (Id id : touched_) {
        if (!entries_[id].isTouched) continue;  // removed meanwhile
        entries_[id].isTouched = false;
        places.push_back(places_[id]);
    }
    touched_.clear();
    std::sort(places.begin(), places.end());
    return places;
}

std::vector<SetFinding> StatementSet::findingsOf(std::size_t place) const {
    std::vector<SetFinding> findings;
    Id const id = order_[place];
    findMissing(entries_[id], findings);
    findRedefined(id, findings);
    findSame(id, findings);
    findLimit(id, findings);
    return findings;
}

void StatementSet::findMissing(Entry const& entry, std::vector<SetFinding>& findings) const {
    if (entry.words.empty() || !(hasDesign_ || judgesClocks())) return;
    SetFinding finding{hasDesign_ ? Code::missingName : Code::undefinedClock};
    for (Id id : entry.words) {
        KnownClocks::Word const& word = clocks_.word(id);
        if (!word.isClock) finding.words.push_back(word.word);
    }
    if (!finding.words.empty()) findings.push_back(std::move(finding));
}

void StatementSet::findRedefined(Id id, std::vector<SetFinding>& findings) const {
    Entry const& entry = entries_[id];
    if (!entry.isCompared) return;
    for (Id clock : entry.clocks) {
        IdList const& compared = clocks_.name(clock).compared;
        Id const* const place = placeIn(compared, id);
        if (place != compared.begin()) findings.push_back({Code::redefinedClock, places_[*(place - 1)]});
    }
}

void StatementSet::findSame(Id id, std::vector<SetFinding>& findings) const {
    Entry const& entry = entries_[id];
    if (entry.key == 0) return;
    IdList const& same = same_[entry.same];
    if (same.size() == 1) return;
    Id const* const place = placeIn(same, id);
    if (place != same.begin() && entries_[*(place - 1)].value == entry.value) {
        findings.push_back({Code::repeated, places_[*(place - 1)]});
    }
    if (place + 1 < same.end() && entries_[*(place + 1)].value != entry.value) {
        findings.push_back({Code::overridden, places_[*(place + 1)]});
    }
}

// A command that sets both bounds replaces both.
void StatementSet::findLimit(Id id, std::vector<SetFinding>& findings) const {
    Entry const& entry = entries_[id];
    if (entry.path == 0 || entry.isMin == entry.isMax) return;
    Limits const& limits = limits_[entry.limits];
    IdList const& others = entry.isMin ? limits.maximums : limits.minimums;
    Id const* const after = placeIn(others, id);
    if (after == others.begin()) return;
    Id const* const other = after - 1;  // the bound that is in force
    double const bound = entries_[*other].value;
    bool const isOver = entry.isMin ? entry.value > bound : entry.value < bound;
    if (isOver) findings.push_back({Code::minOverMax, places_[*other]});
}

}  // namespace tool
