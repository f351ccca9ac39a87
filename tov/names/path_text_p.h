#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

// Paths as text: levels joined by '.' or '/', which are equivalent.

namespace kiri::tov::impl_detail {

inline bool isSeparator(char c) {
    return c == '.' || c == '/';
}

/// A byte of a path, with one separator for both.
inline char pathByte(char c) {
    return c == '.' ? '/' : c;
}

/// Removes the first level from `rest`, which must have one, and returns it. After the last level `rest` is null.
inline std::string_view takeLevel(std::string_view& rest) {
    auto const* const end = std::find_if(rest.begin(), rest.end(), isSeparator);
    auto const size = static_cast<std::size_t>(end - rest.begin());
    std::string_view const level = rest.substr(0, size);
    rest = size == rest.size() ? std::string_view() : std::string_view(end + 1, rest.size() - size - 1);
    return level;
}

/// Returns where the last levels of a path begin; 0 for a path with fewer.
inline std::size_t lastLevelsOf(std::string_view path, std::size_t levels = 1) {
    std::size_t begin = path.size() + 1;
    for (; begin > 0 && levels > 0; --levels) {
        --begin;
        while (begin > 0 && !isSeparator(path[begin - 1])) --begin;
    }
    return begin;
}

/// Returns whether two texts of equal size are equal as paths.
inline bool equalPaths(char const* a, char const* b, std::size_t size) {
    for (std::size_t i = 0; i < size; ++i) {
        if (pathByte(a[i]) != pathByte(b[i])) return false;
    }
    return true;
}

inline std::size_t countLevels(std::string_view path) {
    return 1 + static_cast<std::size_t>(std::count_if(path.begin(), path.end(), isSeparator));
}

/// Compares two paths byte by byte: negative, 0 or positive.
inline int comparePaths(std::string_view a, std::string_view b) {
    std::size_t const size = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < size; ++i) {
        auto const left = static_cast<unsigned char>(pathByte(a[i]));
        auto const right = static_cast<unsigned char>(pathByte(b[i]));
        if (left != right) return left < right ? -1 : 1;
    }
    return a.size() < b.size() ? -1 : a.size() > b.size() ? 1 : 0;
}

/// The hash of a path, byte by byte; '.' equals '/'.
class PathHash {
public:
    PathHash() = default;
    explicit PathHash(std::string_view path) {
        for (char const c : path) add(c);
    }
    void add(char c) { addPathByte(pathByte(c)); }
    void addPathByte(char c) { value_ = (value_ ^ static_cast<unsigned char>(c)) * 0x100000001b3; }
    std::uint64_t value() const { return value_; }
    /// Returns bits that each depend on the whole path.
    std::uint32_t bits() const {
        return static_cast<std::uint32_t>((value_ ^ value_ >> 29U) * 0x9e3779b97f4a7c15 >> 32U);
    }

private:
    std::uint64_t value_ = 0xcbf29ce484222325;
};

struct PathLess {
    bool operator()(std::string_view a, std::string_view b) const { return comparePaths(a, b) < 0; }
};

}  // namespace kiri::tov::impl_detail
