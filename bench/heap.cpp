#include "bench/heap.h"

#include <malloc.h>

#include <algorithm>

namespace heap {

std::size_t live = 0;
std::size_t peak = 0;

std::size_t block(std::size_t size) {
    return std::max<std::size_t>(32, (size + 8 + 15) / 16 * 16);
}

std::size_t blockOf(void* start) {
    return malloc_usable_size(start) + 8;
}

namespace {

void* count(void* block) {
    if (block != nullptr) {
        live += blockOf(block);
        peak = std::max(peak, live);
    }
    return block;
}

void discount(void* block) {
    if (block != nullptr) live -= blockOf(block);
}

}  // namespace

}  // namespace heap

extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void __libc_free(void* block);

void* malloc(std::size_t size) {
    return heap::count(__libc_malloc(size));
}
void* calloc(std::size_t number, std::size_t size) {
    return heap::count(__libc_calloc(number, size));
}
void* realloc(void* block, std::size_t size) {
    heap::discount(block);
    return heap::count(__libc_realloc(block, size));
}
void free(void* block) {
    heap::discount(block);
    __libc_free(block);
}
}
