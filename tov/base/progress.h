#pragma once

#include <cstdint>
#include <functional>

namespace kiri::tov {

/// Called during a load, in its thread: `read` bytes of the file have been read so far, of `size`. A pipe has no size:
/// it is 0 there until the last call. A file of 1 MB or more makes 20 to 1,000 calls. A load that has read and used all
/// of the file ends with one call where `read` equals `size`, the bytes that were read, for a pipe too; no other load
/// makes such a call. Returning false stops the load, and so does an exception, which the load rethrows. May be empty.
using TovProgress = std::function<bool(std::uint64_t read, std::uint64_t size)>;

}  // namespace kiri::tov
