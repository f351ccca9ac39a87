#include "tov/design/node.h"

#include <iostream>
#include <utility>

namespace kiri::tov {

TovNode::TovNode(std::string name, TovObjType type, TovNode* parent)
    : name_(std::move(name)), type_(type), parent_(parent) {}

TovNode::~TovNode() = default;

std::string TovNode::hierachyName(char separator) const {
    if (parent_ == nullptr) return name();
    // The parent's part is always joined with '/', so "u1/rtl.CK" mixes both separators.
    std::string path = parent_->hierachyName('/');
    if (path.empty()) return name();
    path += separator;
    path += name();
    return path;
}

void TovNode::dump() const {
    std::cout << hierachyName('/') << '(' << name() << ')' << std::endl;
}

std::string TovNode::name() const {
    return name_;
}

TovPortNode::~TovPortNode() = default;

void TovPortNode::dump() const {
    TovNode::dump();
}

TovNetNode::~TovNetNode() = default;
TovClockNode::~TovClockNode() = default;
TovViewNode::~TovViewNode() = default;
TovRamNode::~TovRamNode() = default;
TovRomNode::~TovRomNode() = default;
TovMultNode::~TovMultNode() = default;

}  // namespace kiri::tov
