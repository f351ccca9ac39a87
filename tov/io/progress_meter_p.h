#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>

#include "tov/base/progress.h"

namespace kiri::tov::impl_detail {

/// Counts the bytes of a load and calls the caller's function at intervals.
class ProgressMeter {
public:
    /// `progress` must outlive the meter; `size` is 0 if the file has none.
    ProgressMeter(TovProgress const& progress, std::uint64_t size);

    /// Adds bytes that were read. Returns false if the callback cancels the load.
    bool add(std::size_t bytes) noexcept {
        read_ += bytes;
        return read_ < next_ || report();
    }

    /// Reports that the file was read and used to its end. Returns false if the callback cancels even now.
    bool finish() noexcept;

    /// Returns whether the callback cancelled the load, by its result or by an exception.
    bool stopped() const { return stopped_; }

    /// Rethrows the exception of the callback, if it threw one.
    void rethrow() const {
        if (thrown_ != nullptr) std::rethrow_exception(thrown_);
    }

private:
    bool report() noexcept;
    bool call(std::uint64_t size) noexcept;

    TovProgress const& progress_;
    std::uint64_t size_;
    std::uint64_t read_ = 0;
    std::uint64_t next_;  // the next call comes when read_ reaches this
    bool stopped_ = false;
    std::exception_ptr thrown_;
};

}  // namespace kiri::tov::impl_detail
