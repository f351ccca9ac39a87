#pragma once

#include <cstdint>
#include <functional>

namespace kiri::tov {

/// Called during a load, in its thread: `read` bytes of the file are read so far, of `size`, which is 0 where the file
/// has no size, as a pipe. A file of 1 MB or more makes 20 to 1,000 calls. A load that has read and used all of the
/// file ends with the one call where `read` is `size`, for a pipe too; no other load has such a call. False stops the
/// load, and so does an exception, which then leaves the load. May be empty.
using TovProgress = std::function<bool(std::uint64_t read, std::uint64_t size)>;

}  // namespace kiri::tov
