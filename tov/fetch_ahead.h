#ifndef TOVENG_TOV_FETCH_AHEAD_H
#define TOVENG_TOV_FETCH_AHEAD_H

#include <cstddef>
#include <list>

namespace kiri::tov {

/// Calls `take` for each pointer of a list. What a large list points to does not fit a cache, so the next object is
/// fetched meanwhile: its first `Size` bytes.
template <std::ptrdiff_t Size, class T, class Take>
void forEachFetched(std::list<T*> const& list, Take take) {
    constexpr std::ptrdiff_t cacheLine = 64;
    for (auto at = list.begin(); at != list.end();) {
        T* const object = *at++;
        if (at != list.end()) {
            auto const* const next = reinterpret_cast<char const*>(*at);
            for (std::ptrdiff_t offset = 0; offset < Size; offset += cacheLine) __builtin_prefetch(next + offset);
        }
        take(object);
    }
}

}  // namespace kiri::tov

#endif
