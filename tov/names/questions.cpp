#include "tov/names/questions.h"

#include <algorithm>
#include <new>

#include "tov/names/node_names.h"

namespace kiri::tov {

namespace {

// Makes room for more entries; the room grows in proportion.
template <class Container>
void makeRoom(Container& container, std::size_t more) {
    if (container.capacity() - container.size() >= more) return;
    container.reserve(std::max(container.size() + more, container.size() + container.size() / 2));
}

// The one type for all types that are looked up alike.
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

}  // namespace

Questions::Question Questions::of(ReferenceWord const& word) {
    bool const isMatch = word.match == TOVMATCH_LOCAL || word.match == TOVMATCH_FLAT;
    return {lookedForAs(word.type), isMatch ? word.match : TOVMATCH_LEVELS, word.text};
}

std::uint32_t Questions::hashOf(std::string_view word) {
    std::uint64_t hash = 0xcbf29ce484222325;
    for (char const c : word) hash = (hash ^ static_cast<unsigned char>(c == '.' ? '/' : c)) * 0x100000001b3;
    return static_cast<std::uint32_t>(hash ^ hash >> 32U);
}

Questions::Question Questions::operator[](Id id) const {
    Row const& row = rows_[id];
    std::size_t const begin = id == 0 ? 0 : rows_[id - 1].end;
    return {static_cast<taDciObjTyp>(row.type), static_cast<TovNameMatch>(row.match),
            std::string_view(words_).substr(begin, row.end - begin)};
}

// The slot of an equal question, or the free one where it belongs.
std::size_t Questions::slotOf(Question const& question, std::uint32_t hash) const {
    std::size_t at = hash & mask();
    for (; slots_[at] != free; at = (at + 1) & mask()) {
        if (rows_[slots_[at]].hash != hash) continue;
        Question const known = (*this)[slots_[at]];
        if (known.type == question.type && known.match == question.match && known.word == question.word) break;
    }
    return at;
}

Questions::Id Questions::find(Question const& question) const {
    if (slots_.empty()) return size();
    Id const id = slots_[slotOf(question, hashOf(question.word))];
    return id == free ? size() : id;
}

Questions::Id Questions::put(Question const& question) {
    Id const known = find(question);
    if (known != size()) return known;
    if (rows_.size() == free) throw std::bad_alloc();
    reserve(1, question.word.size());
    std::uint32_t const hash = hashOf(question.word);
    Id& slot = slots_[slotOf(question, hash)];
    slot = size();
    words_ += question.word;
    rows_.push_back({words_.size(), hash, static_cast<std::uint8_t>(question.type),
                     static_cast<std::uint8_t>(question.match), Answer::unknown});
    if (!impl_detail::isLiteral(question.word)) patterns_.push_back(slot);
    return slot;
}

bool Questions::isFoundIn(TovDesignNames const& names, Id id) {
    if (answer(id) == Answer::unknown) setAnswer(id, (*this)[id].isFoundIn(names) ? Answer::found : Answer::missing);
    return answer(id) == Answer::found;
}

void Questions::reserve(std::size_t questions, std::size_t bytes) {
    makeRoom(words_, bytes);
    makeRoom(rows_, questions);
    makeRoom(patterns_, questions);
    std::size_t slots = std::max<std::size_t>(slots_.size(), 16);
    while (slots * 3 < (rows_.size() + questions) * 4) slots *= 2;
    if (slots == slots_.size()) return;
    std::vector<Id> larger(slots, free);
    slots_.swap(larger);
    for (Id id = 0; id < size(); ++id) {
        std::size_t at = rows_[id].hash & mask();
        while (slots_[at] != free) at = (at + 1) & mask();
        slots_[at] = id;
    }
}

void Questions::shrink() {
    // Copies take what they need.
    std::string(words_).swap(words_);
    std::vector<Row>(rows_).swap(rows_);
    std::vector<Id>(patterns_).swap(patterns_);
}

}  // namespace kiri::tov
