#include "platform/dci_make.h"

#include <string>

taDciObj* makeDciObj(std::string_view name, taDciObjTyp type) {
    return new taDciObj(std::string(name).c_str(), nullptr, type, taDciObjNone);
}

taDciObj* makeDciObjWithSharedName(taDciObj* other) {
    return new taDciObj(other);
}
