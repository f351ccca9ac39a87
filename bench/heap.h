#pragma once

#include <cstddef>

/// Counts the heap of a program that links heap.cpp, with what the allocator itself takes for each block.
namespace heap {

/// Bytes in use, and the most there were since a caller last set `peak`.
extern std::size_t live;
extern std::size_t peak;

/// What a block of that size takes from the heap: eight bytes more, in steps of sixteen, at least 32.
std::size_t block(std::size_t size);

/// What the block that begins at `start` takes.
std::size_t blockOf(void* start);

}  // namespace heap
