#include "platform/dci.h"

#include <atomic>
#include <cstring>
#include <new>

namespace {

// Each text is preceded by its reference count, because records share texts.
using UseCount = std::atomic<std::size_t>;

UseCount* useCount(char* text) {
    return reinterpret_cast<UseCount*>(text - sizeof(UseCount));
}

char* makeText(char const* text, std::size_t size) {
    char* const block = static_cast<char*>(::operator new(sizeof(UseCount) + size + 1));
    new (block) UseCount(1);
    char* const copy = block + sizeof(UseCount);
    std::memcpy(copy, text, size);
    copy[size] = '\0';
    return copy;
}

char* shareText(char* text) {
    if (text != nullptr) useCount(text)->fetch_add(1, std::memory_order_relaxed);
    return text;
}

void freeText(char* text) noexcept {
    if (text != nullptr && useCount(text)->fetch_sub(1, std::memory_order_acq_rel) == 1) {
        ::operator delete(useCount(text));
    }
}

template <class T>
void freeAll(ppStlList<T*>& list) {
    for (T* entry : list) delete entry;
}

void freeAll(ppStlList<char*>& texts) {
    for (char* text : texts) freeText(text);
}

}  // namespace

char* taDciText(char const* text) {
    return text == nullptr ? nullptr : makeText(text, std::strlen(text));
}

taDciObj::taDciObj(char const* name_, char const*, taDciObjTyp type_, taDciObjTyp) : name(nullptr), type(type_) {
    if (name_ == nullptr) return;
    std::size_t const size = std::strlen(name_);
    if (size < sizeof inlineName_) {
        name = inlineName_;
        std::memcpy(inlineName_, name_, size + 1);
    } else {
        name = makeText(name_, size);
    }
}

taDciObj::taDciObj(taDciObj* other) : name(inlineName_), type(other->type) {
    if (other->name == other->inlineName_) {
        std::memcpy(inlineName_, other->inlineName_, sizeof inlineName_);
    } else {
        name = shareText(other->name);
    }
}

taDciObj::~taDciObj() {
    if (name != inlineName_) freeText(name);
}

taDciSynClk::~taDciSynClk() {
    for (char* owned : {name, text, divideBy, multiplyBy, dutyCycle}) freeText(owned);
    freeAll(targets);
    freeAll(waveform);
    freeAll(source);
}

taDciSynClkGroup::~taDciSynClkGroup() {
    for (ppStlList<taDciSynClkGroupMember*>* group : groups) {
        if (group != nullptr) freeAll(*group);
        delete group;
    }
    freeText(text);
}

taDciSynIo::~taDciSynIo() {
    for (char* owned : {label, note, minMarker, maxMarker}) freeText(owned);
    freeAll(objects);
}

taDciSynMax::~taDciSynMax() {
    freeAll(from);
    freeAll(to);
    freeText(note);
    freeText(minMarker);
}

taDciSynMcyc::~taDciSynMcyc() {
    freeAll(from);
    freeAll(to);
    freeText(note);
}

taDciSynFalse::~taDciSynFalse() {
    freeAll(from);
    freeAll(to);
    freeAll(through);
    freeText(note);
}

taDci::~taDci() {
    freeAll(clocks);
    freeAll(ios);
    freeAll(mcycs);
    freeAll(maxs);
    freeAll(falses);
    freeAll(clockGroups);
    freeAll(errors);
}
