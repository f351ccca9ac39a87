#include "serve/name_list.h"

#include <algorithm>
#include <limits>

namespace tool::lsp {

void NameList::add(std::string_view name) {
    // A list ends at 4 GiB: it only serves for completion.
    constexpr std::size_t most = std::numeric_limits<std::uint32_t>::max();
    if (name.empty() || name.size() > most - bytes_.size()) return;
    names_.push_back({static_cast<std::uint32_t>(bytes_.size()), static_cast<std::uint32_t>(name.size())});
    bytes_ += name;
}

void NameList::sort() {
    std::string_view const bytes = bytes_;
    std::sort(names_.begin(), names_.end(), [bytes](Name const& a, Name const& b) {
        return bytes.substr(a.begin, a.size) < bytes.substr(b.begin, b.size);
    });
    names_.shrink_to_fit();
    bytes_.shrink_to_fit();
}

std::size_t NameList::lowerBound(std::string_view text, std::size_t from) const {
    std::string_view const bytes = bytes_;
    auto const found =
        std::lower_bound(names_.begin() + static_cast<std::ptrdiff_t>(from), names_.end(), text,
                         [bytes](Name const& a, std::string_view b) { return bytes.substr(a.begin, a.size) < b; });
    return static_cast<std::size_t>(found - names_.begin());
}

std::size_t NameList::endOf(std::string_view beginning, std::size_t from) const {
    // The last byte is a '/': the next entries in order begin with the next character.
    std::string after(beginning);
    ++after.back();
    return lowerBound(after, from);
}

}  // namespace tool::lsp
