#pragma once

// Counts the allocations of a program by operator new and the C library's functions, except for Qt's use of malloc, and
// makes an allocation fail. Include it in one source file of a program that wraps malloc, realloc and free.

#include <gtest/gtest.h>
#include <malloc.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <new>
#include <utility>

namespace allocations {

long live = 0;              // blocks allocated and not freed
std::size_t liveBytes = 0;  // and their size
std::size_t peakBytes = 0;
std::size_t largest = SIZE_MAX;  // beyond that size each allocation fails
long untilFailure = 0;           // counts down to the allocation that fails; 0: none

void* count(void* block, int sign) {
    if (block == nullptr) return nullptr;
    live += sign;
    liveBytes += static_cast<std::size_t>(sign) * ::malloc_usable_size(block);
    peakBytes = std::max(peakBytes, liveBytes);
    return block;
}

bool fails() {
    return untilFailure > 0 && --untilFailure == 0;
}

}  // namespace allocations

extern "C" {
void* __real_malloc(std::size_t size);
void* __real_realloc(void* block, std::size_t size);
void __real_free(void* block);

void* __wrap_malloc(std::size_t size) {
    using namespace allocations;
    return fails() || size > largest ? nullptr : count(__real_malloc(size), 1);
}
void* __wrap_realloc(void* block, std::size_t size) {
    using namespace allocations;
    return fails() ? nullptr : count(__real_realloc(count(block, -1), size), 1);
}
void __wrap_free(void* block) {
    __real_free(allocations::count(block, -1));
}
}

void* operator new(std::size_t size) {
    void* const block = __wrap_malloc(size);
    if (block == nullptr) throw std::bad_alloc();
    return block;
}
void operator delete(void* block) noexcept {
    __wrap_free(block);
}
void operator delete(void* block, std::size_t) noexcept {
    __wrap_free(block);
}
