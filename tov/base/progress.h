#pragma once

#include <cstdint>
#include <functional>

namespace kiri::tov {

/// Called during a load, in its thread: `read` of `size` bytes of the file have been read so far. `size` is 0 for a
/// pipe until the last call. A file of 1 MB or more causes 20 to 1,000 calls. A load that has read and used the whole
/// file ends with one call where `read` equals `size`, the number of bytes read, even for a pipe; no other load makes
/// such a call. Returning false stops the load, and so does an exception, which the load rethrows. May be empty.
using TovProgress = std::function<bool(std::uint64_t read, std::uint64_t size)>;

}  // namespace kiri::tov
