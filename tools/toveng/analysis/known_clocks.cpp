#include "analysis/known_clocks.h"

#include <algorithm>

#include "analysis/edit_distance.h"
#include "tov/cmd/clock_def.h"
#include "tov/cmd/false_path.h"
#include "tov/design/design.h"

using namespace kiri::tov;

namespace tool {

TovDesignNames const& noDesign() {
    static TovDesign const design;
    static TovDesignNames const names(design);
    return names;
}

KnownClocks::KnownClocks() : join_(std::make_unique<TovDocumentNames>(document_, noDesign())) {}

KnownClocks::~KnownClocks() = default;

KnownClocks::Id KnownClocks::useName(std::string const& name) {
    auto const [place, isNew] = nameIds_.try_emplace(name, 0);
    if (isNew) {
        place->second = names_.add();
        names_[place->second].text = name;
    }
    ++names_[place->second].uses;
    return place->second;
}

void KnownClocks::dropName(Id id) {
    if (--names_[id].uses > 0) return;
    nameIds_.erase(names_[id].text);
    names_.remove(id);
}

void KnownClocks::setKey(MissingWord const& word) {
    key_.assign(word.text).append(1, '\n');
    for (int part : {static_cast<int>(word.type), static_cast<int>(word.match), word.isClock ? 1 : 0}) {
        key_ += static_cast<char>(part);
    }
}

KnownClocks::Id KnownClocks::useWord(MissingWord const& word, Id user) {
    setKey(word);
    auto const [place, isNew] = wordIds_.try_emplace(key_, 0);
    if (isNew) {
        place->second = words_.add();
        Word& added = words_[place->second];
        added.word = word;
        added.isClock = isCurrent_ && word.mayBeClock() && has(word);
    }
    words_[place->second].users.push_back(user);
    return place->second;
}

void KnownClocks::dropWord(Id id, Id user) {
    Word& word = words_[id];
    word.users.eraseId(user);
    if (!word.users.empty()) return;
    setKey(word.word);
    wordIds_.erase(key_);
    words_.remove(id);
}

bool KnownClocks::define(Id id) {
    Name& name = names_[id];
    if (name.definitions++ > 0) return false;
    ++defined_;
    auto clock = std::make_unique<TovCmdClockDef>(0.0F, name.text.c_str(), nullptr);
    document_.getTovCmdList(TOVCMD_CLOCK)->push_back(clock.get());
    name.definition = clock.release();
    join_->add(*name.definition);
    isCurrent_ = false;
    return true;
}

bool KnownClocks::undefine(Id id) {
    Name& name = names_[id];
    if (--name.definitions > 0) return false;
    --defined_;
    join_->remove(*name.definition);
    document_.getTovCmdList(TOVCMD_CLOCK)->remove(name.definition);
    delete name.definition;
    name.definition = nullptr;
    isCurrent_ = false;
    return true;
}

bool KnownClocks::has(MissingWord const& word) const {
    TovCmdFalsePath probe(static_cast<char*>(nullptr));
    probe.from.push_back(new taDciObj(word.text.c_str(), nullptr, taDciObjClock, taDciObjNone));
    return join_->missingIn(probe).empty();
}

std::string KnownClocks::nearest(std::string const& word) const {
    constexpr std::size_t longest = 1000;
    Nearest nearest(word);
    for (Name const& name : names_) {
        if (name.definitions > 0 && word.size() <= longest) nearest.add(name.text);
    }
    return nearest.word();
}

}  // namespace tool
