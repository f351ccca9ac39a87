// Shares the counters of coverage with child processes, so that the fuzzer sees what these cover. Compiled without
// coverage: the compiler gives the names below another meaning in its own counting.

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>

extern "C" __attribute__((visibility("hidden"))) char __start___sancov_cntrs[];
extern "C" __attribute__((visibility("hidden"))) char __stop___sancov_cntrs[];

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
    // Whole pages: other variables share the first and the last one.
    auto const page = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
    std::uintptr_t const first = (reinterpret_cast<std::uintptr_t>(__start___sancov_cntrs) + page - 1) / page * page;
    std::uintptr_t const last = reinterpret_cast<std::uintptr_t>(__stop___sancov_cntrs) / page * page;
    void* const counters = reinterpret_cast<void*>(first);
    int const flags = MAP_SHARED | MAP_ANONYMOUS | MAP_FIXED;
    if (first >= last || ::mmap(counters, last - first, PROT_READ | PROT_WRITE, flags, -1, 0) != counters) std::abort();
    return 0;
}
