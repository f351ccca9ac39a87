#pragma once

#include <string>
#include <string_view>

namespace tool {

/// What counts as one edit, apart from inserting, dropping and replacing a character.
enum class Exchange { no, ofNeighbours };

/// Returns the number of edits that turn one word into the other, or `bound` + 1 if it is larger than `bound`.
unsigned editDistance(std::string_view a, std::string_view b, unsigned bound, Exchange exchange = Exchange::no);

/// Keeps the nearest of the given candidates.
class Nearest {
public:
    Nearest(std::string_view word, unsigned bound, Exchange exchange = Exchange::no)
        : word_(word), bound_(bound), exchange_(exchange) {}
    /// The bound of names: 1 for a word below 4 bytes, 2 below 12, else 3.
    explicit Nearest(std::string_view name) : Nearest(name, name.size() < 4 ? 1 : name.size() < 12 ? 2 : 3) {}

    void add(std::string_view candidate);

    /// The nearest candidate within the bound, the first in byte order if several are equally near; empty if there is
    /// none.
    std::string const& word() const { return nearest_; }
    bool found() const { return found_; }
    unsigned distance() const { return bound_; }

private:
    std::string_view word_;
    unsigned bound_;
    Exchange exchange_;
    std::string nearest_;
    bool found_ = false;
};

}  // namespace tool
