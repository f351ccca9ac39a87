#pragma once

#include <cstddef>
#include <string>

/// Returns the text, or its start and "..." if it is longer than `most` bytes.
inline std::string cut(std::string text, std::size_t most = 100) {
    if (text.size() > most) text.replace(most - 3, std::string::npos, "...");
    return text;
}
