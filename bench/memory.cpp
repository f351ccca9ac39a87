// Prints what loads keep and what they need beyond that, counted at each allocation.

#include <malloc.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

#include "bench/all_queries.h"
#include "bench/inputs.h"
#include "tov/design/design.h"
#include "tov/tov.h"

namespace {

// Bytes of the heap in use, with the allocator's own eight of each block, and the most there were.
std::size_t live = 0;
std::size_t peak = 0;

void* count(void* block) {
    if (block != nullptr) {
        live += malloc_usable_size(block) + 8;
        peak = std::max(peak, live);
    }
    return block;
}

void discount(void* block) {
    if (block != nullptr) live -= malloc_usable_size(block) + 8;
}

}  // namespace

extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void __libc_free(void* block);

void* malloc(std::size_t size) {
    return count(__libc_malloc(size));
}
void* calloc(std::size_t number, std::size_t size) {
    return count(__libc_calloc(number, size));
}
void* realloc(void* block, std::size_t size) {
    discount(block);
    return count(__libc_realloc(block, size));
}
void free(void* block) {
    discount(block);
    __libc_free(block);
}
}

namespace {

struct Usage {
    std::size_t kept;
    std::size_t above;
};

template <class Object>
Usage load(std::string const& path, Object& object) {
    std::size_t const before = live;
    peak = live;
    object.load(path.c_str());
    return {live - before, peak - live};
}

void reportDocument(char const* name, std::string const& path) {
    kiri::tov::TOV document;
    Usage const usage = load(path, document);
    auto const size = static_cast<double>(std::filesystem::file_size(path));
    std::printf("constraints %s: keeps %.2f and needs %.3f times the file beyond that\n", name,
                static_cast<double>(usage.kept) / size, static_cast<double>(usage.above) / size);
}

void reportDesign(std::size_t instances) {
    kiri::tov::TovDesign design;
    Usage const usage = load(inputs::designDump(instances), design);
    AllQueries queries;
    // Registers are cells.
    std::size_t const nodes = queries.ask(design) - queries.regs.size();
    std::printf("design of %zu instances: %zu nodes, keeps %.1f bytes a node and needs %.3f MiB beyond that\n",
                instances, nodes, static_cast<double>(usage.kept) / static_cast<double>(nodes),
                static_cast<double>(usage.above) / 1048576);
}

}  // namespace

int main() {
    // What the XML reader and the streams set up once is not the load's.
    kiri::tov::TovDesign().load(inputs::designDump(10).c_str());
    reportDocument("of 300,000 mixed lines", inputs::constraintFile(300'000));
    reportDocument("of one line of 400,000 names", inputs::oneLineOfNames(400'000));
    for (std::size_t instances : {1000U, 10'000U, 100'000U}) reportDesign(instances);
}
