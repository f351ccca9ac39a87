#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>

#include "tov/progress.h"

namespace kiri::tov {

/// Counts the bytes of a load and calls the caller's function from time to time.
class ProgressMeter {
public:
    /// `progress` outlives the meter; `size` is 0 where the file has none.
    ProgressMeter(TovProgress const& progress, std::uint64_t size);

    /// Counts bytes that were read. False if the load is to stop.
    bool add(std::size_t bytes) noexcept {
        read_ += bytes;
        return read_ < next_ || report();
    }

    /// Reports that the file was read and used to its end. Returns false if the callback cancels even now.
    bool finish() noexcept;

    /// Whether the function asked for a stop, by its result or by an exception.
    bool stopped() const { return stopped_; }

    /// Throws the exception that came out of the function, if one did.
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

}  // namespace kiri::tov
