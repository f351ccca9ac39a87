#pragma once

#include <unistd.h>

#include <cstdint>
#include <cstdio>

#include "tov/progress.h"

/// A progress function that draws a bar on standard error, for files of 10 MB and more. Empty if standard error is not
/// a terminal.
inline kiri::tov::TovProgress progressBar() {
    constexpr std::uint64_t largeFile = 10'000'000;
    if (::isatty(STDERR_FILENO) == 0) return {};
    return [shown = -1](std::uint64_t read, std::uint64_t size) mutable {
        if (size < largeFile) return true;
        int const percent = static_cast<int>(read * 100 / size);
        if (percent != shown) {
            constexpr char const* full = "##################################################";
            std::fprintf(stderr, "\r[%-50.*s] %3d %%", percent / 2, full, percent);
            if (read == size) std::fputs("\r\033[K", stderr);  // erase a full bar
        }
        shown = percent;
        return true;
    };
}
