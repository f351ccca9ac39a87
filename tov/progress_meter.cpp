#include "tov/progress_meter.h"

#include <algorithm>
#include <limits>

namespace kiri::tov {

namespace {

constexpr std::uint64_t firstStep = std::uint64_t{24} * 1024;

}  // namespace

ProgressMeter::ProgressMeter(TovProgress const& progress, std::uint64_t size)
    : progress_(progress), size_(size), next_(progress ? firstStep : std::numeric_limits<std::uint64_t>::max()) {}

// The steps grow with what was read, so that a file of any size, known or not, gives less than a thousand calls.
bool ProgressMeter::report() noexcept {
    next_ = read_ + std::max(firstStep, read_ / 50);
    return call(size_ == 0 ? 0 : std::max(size_, read_));
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

}  // namespace kiri::tov
