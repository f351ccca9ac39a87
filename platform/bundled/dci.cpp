#include "platform/dci.h"

#include <atomic>
#include <cstring>
#include <memory>
#include <new>

#include "platform/dci_make.h"

namespace {

// A text stands behind the count of the records that hold it.
using UseCount = std::atomic<std::size_t>;

UseCount* useCount(char* text) {
    return reinterpret_cast<UseCount*>(text - sizeof(UseCount));
}

char* makeText(std::string_view text) {
    char* const block = static_cast<char*>(::operator new(sizeof(UseCount) + text.size() + 1));
    new (block) UseCount(1);
    char* const copy = block + sizeof(UseCount);
    std::memcpy(copy, text.data(), text.size());
    copy[text.size()] = '\0';
    return copy;
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
    return text == nullptr ? nullptr : makeText(text);
}

// Makes records by other ways than the public constructors; the record under construction is whole at each
// step, so that its destructor frees what it holds when an allocation fails.
class taDciObjMaker {
public:
    static taDciObj* make(std::string_view name, taDciObjTyp type) {
        std::unique_ptr<taDciObj> obj(new taDciObj(nullptr, nullptr, type, taDciObjNone));
        setName(*obj, name);
        return obj.release();
    }

    static taDciObj* makeWithSharedName(taDciObj const& other) {
        std::unique_ptr<taDciObj> obj(new taDciObj(nullptr, nullptr, other.type, taDciObjNone));
        if (other.name == nullptr || other.name == other.inlineName_) {
            setName(*obj, other.name);
        } else {
            useCount(other.name)->fetch_add(1, std::memory_order_relaxed);
            obj->name = other.name;
        }
        return obj.release();
    }

    static void setName(taDciObj& obj, char const* name) {
        if (name != nullptr) setName(obj, std::string_view(name));
    }

    static void setName(taDciObj& obj, std::string_view name) {
        if (name.size() >= sizeof obj.inlineName_) {
            obj.name = makeText(name);
            return;
        }
        std::memcpy(obj.inlineName_, name.data(), name.size());
        obj.inlineName_[name.size()] = '\0';
        obj.name = obj.inlineName_;
    }
};

taDciObj* makeDciObj(std::string_view name, taDciObjTyp type) {
    return taDciObjMaker::make(name.substr(0, name.find('\0')), type);
}

taDciObj* makeDciObjWithSharedName(taDciObj* other) {
    return taDciObjMaker::makeWithSharedName(*other);
}

taDciObj::taDciObj(char const* name_, char const*, taDciObjTyp type_, taDciObjTyp) : name(nullptr), type(type_) {
    taDciObjMaker::setName(*this, name_);
}

taDciObj::taDciObj(taDciObj* other) : taDciObj(other->name, nullptr, other->type, taDciObjNone) {}

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
