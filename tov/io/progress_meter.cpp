#include "tov/io/progress_meter_p.h"

#include <algorithm>
#include <limits>

namespace kiri::tov::impl_detail {

namespace {

constexpr std::uint64_t firstStep = std::uint64_t{24} * 1024;

}  // namespace

ProgressMeter::ProgressMeter(TovProgress const& progress, std::uint64_t size)
    : progress_(progress), size_(size), next_(progress ? firstStep : std::numeric_limits<std::uint64_t>::max()) {}

// The steps grow with what was read, so a file of any size, known or not, causes fewer than a thousand calls. What was
// read has not been used yet: only finish() may report the end of the file.
bool ProgressMeter::report() noexcept {
    if (read_ == size_) return true;
    next_ = read_ + std::max(firstStep, read_ / 50);
    return call(size_ == 0 ? 0 : std::max(size_, read_ + 1));
}

bool ProgressMeter::finish() noexcept {
    return !progress_ || call(read_);
}

bool ProgressMeter::call(std::uint64_t size) noexcept {
    try {
        stopped_ = stopped_ || !progress_(read_, size);
    } catch (...) {
        stopped_ = true;
        thrown_ = std::current_exception();
    }
    return !stopped_;
}

}  // namespace kiri::tov::impl_detail
