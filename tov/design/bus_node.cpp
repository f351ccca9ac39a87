#include "tov/design/bus_node.h"

#include <algorithm>
#include <charconv>
#include <string_view>
#include <utility>

namespace kiri::tov {

namespace {

/// Returns where the bracket of a bit name's index opens; npos if `name` is not a bit name.
std::size_t indexBracket(std::string_view name) {
    if (name.empty() || name.back() != ']') return std::string_view::npos;
    std::size_t const close = name.size() - 1;
    std::size_t first = close;
    while (first > 0 && name[first - 1] >= '0' && name[first - 1] <= '9') --first;
    // The bracket and a base of at least one character precede the first digit.
    bool const isBit = first < close && first >= 2 && name[first - 1] == '[';
    return isBit ? first - 1 : std::string_view::npos;
}

}  // namespace

TovBusNode::TovBusNode(std::string const& name, bool wildcard) {
    if (!isBusType(name, &baseName_)) return;
    if (wildcard) {
        busName_ = baseName_ + "*";
    } else {
        addToBus(name);
    }
}

TovBusNode::~TovBusNode() = default;

std::string TovBusNode::name() const {
    return busName_;
}

std::string TovBusNode::getBusName(std::string const& name, int* index) {
    std::size_t const bracket = indexBracket(name);
    if (bracket == std::string::npos) return name;
    if (index != nullptr) {
        int value = 0;
        std::from_chars(name.data() + bracket + 1, name.data() + name.size() - 1, value);
        *index = value;
    }
    return name.substr(0, bracket);
}

bool TovBusNode::isBusType(std::string const& name, std::string* baseName) {
    std::size_t const bracket = indexBracket(name);
    if (bracket == std::string::npos) return false;
    if (baseName != nullptr) baseName->assign(name, 0, bracket);
    return true;
}

bool TovBusNode::isCurrentBus(std::string const& name) const {
    // npos takes the whole name.
    return std::string_view(name).substr(0, indexBracket(name)) == baseName_;
}

void TovBusNode::addToBus(std::string const& name) {
    int index = 0;
    std::string text = getBusName(name, &index);
    int const low = low_ == -1 || low_ > index ? index : low_;
    int const high = std::max(high_, index);
    text += '[';
    text += std::to_string(high);
    text += ':';
    text += std::to_string(low);
    text += ']';
    busName_ = std::move(text);
    low_ = low;
    high_ = high;
}

TovBusPortNode::TovBusPortNode(std::string const& name, TovObjType type, TovNode* parent)
    : TovBusNode(name, false), TovPortNode(name, type, parent) {}

TovBusPortNode::~TovBusPortNode() = default;

std::string TovBusPortNode::name() const {
    return TovBusNode::name();
}

TovBusNetNode::TovBusNetNode(std::string const& name, TovObjType type, TovNode* parent)
    : TovBusNode(name, false), TovNetNode(name, type, parent) {}

TovBusNetNode::~TovBusNetNode() = default;

std::string TovBusNetNode::name() const {
    return TovBusNode::name();
}

}  // namespace kiri::tov
