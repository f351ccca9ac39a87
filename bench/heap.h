#pragma once

#include <cstddef>

/// Counts the heap memory of a program that links heap.cpp, including the allocator's overhead for each block.
namespace heap {

/// Bytes in use, and their maximum since a caller last set `peak`.
extern std::size_t live;
extern std::size_t peak;

/// The heap memory of a block of that size: eight bytes more, in steps of sixteen, at least 32.
std::size_t block(std::size_t size);

/// The heap memory of the block that begins at `start`.
std::size_t blockOf(void* start);

}  // namespace heap
