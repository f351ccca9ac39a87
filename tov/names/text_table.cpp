#include "tov/names/text_table_p.h"

#include <utility>

namespace kiri::tov::impl_detail {

void sumUp(std::vector<std::uint32_t>& counts) {
    std::uint32_t sum = 0;
    for (std::uint32_t& count : counts) sum += std::exchange(count, sum);
}

TextTable::TextTable(std::vector<Entry> const& entries, std::size_t size, std::size_t most) {
    for (std::size_t starts = 1024; starts <= size && shift_ > 0; starts *= 2) --shift_;
    starts_.resize((std::size_t{1} << (32 - shift_)) + 1);
    for (Entry const& entry : entries) ++starts_[entry.hash >> shift_];
    std::vector<bool> isCommon(starts_.size());
    for (std::size_t i = 0; i < starts_.size(); ++i) {
        isCommon[i] = starts_[i] > most;
        if (isCommon[i]) starts_[i] = 1;
    }
    sumUp(starts_);
    numbers_.resize(starts_.back(), common);
    std::vector<std::uint32_t> ends(starts_);
    for (auto const& [hash, number] : entries) {
        if (!isCommon[hash >> shift_]) numbers_[ends[hash >> shift_]++] = number;
    }
}

}  // namespace kiri::tov::impl_detail
