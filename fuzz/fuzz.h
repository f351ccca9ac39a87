#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

namespace fuzz {

/// Ends the run and reports the input.
inline void require(bool holds, char const* promise, std::string const& a = {}, std::string const& b = {}) {
    if (holds) return;
    std::fprintf(stderr, "broken promise: %s\n<<<%s>>>\n<<<%s>>>\n", promise, a.c_str(), b.c_str());
    std::abort();
}

/// A file in memory, with a path that can be opened.
class MemoryFile {
public:
    explicit MemoryFile(std::string_view content) : fd_(::memfd_create("fuzz", 0)) {
        bool const written = ::write(fd_, content.data(), content.size()) == static_cast<ssize_t>(content.size());
        require(fd_ >= 0 && written, "a file in memory");
    }
    ~MemoryFile() { ::close(fd_); }
    MemoryFile(MemoryFile const&) = delete;
    MemoryFile& operator=(MemoryFile const&) = delete;
    std::string path() const { return "/proc/self/fd/" + std::to_string(fd_); }

private:
    int fd_;
};

/// Runs a target on an input.
void run(std::string const& input);

}  // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    fuzz::run({reinterpret_cast<char const*>(data), size});
    return 0;
}
