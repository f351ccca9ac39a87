#include "tov/names/edit_distance.h"

namespace kiri::tov::impl_detail {

namespace {

constexpr std::uint8_t far = EditDistance::mostBound + 1;

}  // namespace

// costs[k] belongs to the first `size + k - bound` bytes of the word.
EditDistance::Row EditDistance::start() const {
    Row row;
    for (std::size_t k = 0; k < row.costs.size(); ++k) {
        bool const isInWord = k >= bound_ && k - bound_ <= std::min<std::size_t>(word_.size(), bound_);
        row.costs[k] = isInWord ? static_cast<std::uint8_t>(k - bound_) : far;
    }
    return row;
}

EditDistance::Row EditDistance::next(Row const& row, char byte) const {
    Row after;
    after.size = row.size + 1;
    after.costs.fill(far);
    unsigned const width = 2 * bound_ + 1;
    for (unsigned k = 0; k < width; ++k) {
        std::size_t const before = after.size + k;  // the bytes of the word, and the bound
        if (before < bound_ || before - bound_ > word_.size()) continue;
        std::size_t const at = before - bound_;
        unsigned cost = far;
        if (at > 0) cost = row.costs[k] + (pathByte(word_[at - 1]) == pathByte(byte) ? 0U : 1U);
        if (k + 1 < width) cost = std::min(cost, row.costs[k + 1] + 1U);
        if (k > 0) cost = std::min(cost, after.costs[k - 1] + 1U);
        after.costs[k] = static_cast<std::uint8_t>(std::min<unsigned>(cost, far));
    }
    return after;
}

bool EditDistance::isTooFar(Row const& row) const {
    return std::all_of(row.costs.begin(), row.costs.end(), [this](std::uint8_t cost) { return cost > bound_; });
}

unsigned EditDistance::distance(Row const& row) const {
    std::size_t const k = word_.size() + bound_;
    unsigned const cost = k >= row.size && k - row.size < row.costs.size() ? row.costs[k - row.size] : far;
    return cost <= bound_ ? cost : far;
}

}  // namespace kiri::tov::impl_detail
