#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "tov/names/path_text.h"

namespace kiri::tov::impl_detail {

/// Levenshtein's distance between a word and texts with common beginnings, if it is at most `bound`: '.' equals '/'. A
/// row holds the distances between the text so far and the beginnings of the word, near the diagonal alone.
class EditDistance {
public:
    static constexpr unsigned mostBound = 3;

    struct Row {
        std::size_t size = 0;  // of the text so far
        std::array<std::uint8_t, 2 * mostBound + 1> costs{};
    };

    EditDistance(std::string_view word, unsigned bound) : word_(word), bound_(bound) {}

    Row start() const;
    /// Returns the row for one byte more.
    Row next(Row const& row, char byte) const;
    /// Returns whether every text that begins like this is farther than the bound.
    bool isTooFar(Row const& row) const;
    /// Returns the distance of the text so far, or more than mostBound if it is over the bound.
    unsigned distance(Row const& row) const;

    /// Calls `visit(i, row)` for each of `count` texts that a nearer text may begin with. `textOf(i)` must be in byte
    /// order; those that begin alike are compared up to there once, and those too far are skipped together.
    template <class TextOf, class Visit>
    void walk(Row const& start, std::size_t count, TextOf textOf, Visit visit) const;

private:
    std::string_view word_;
    unsigned bound_;
};

template <class TextOf, class Visit>
void EditDistance::walk(Row const& start, std::size_t count, TextOf textOf, Visit visit) const {
    std::vector<Row> rows{start};
    std::string_view last;
    for (std::size_t i = 0; i < count;) {
        std::string_view const text = textOf(i);
        std::size_t shared = 0;
        while (shared + 1 < rows.size() && shared < text.size() && pathByte(text[shared]) == pathByte(last[shared]))
            ++shared;
        rows.resize(shared + 1);
        for (; rows.size() <= text.size() && !isTooFar(rows.back()); ++shared)
            rows.push_back(next(rows.back(), text[shared]));
        last = text;
        if (!isTooFar(rows.back())) {
            visit(i++, rows.back());
            continue;
        }
        // What begins with these bytes is too far.
        std::string_view const prefix = text.substr(0, shared);
        auto const hasPrefix = [&](std::size_t at) { return comparePaths(textOf(at).substr(0, shared), prefix) == 0; };
        std::size_t step = 1;
        while (i + step < count && hasPrefix(i + step)) step *= 2;
        std::size_t end = std::min(i + step, count);
        for (i += step / 2; i + 1 < end;) {
            std::size_t const middle = i + (end - i) / 2;
            (hasPrefix(middle) ? i : end) = middle;
        }
        ++i;
        rows.pop_back();
    }
}

}  // namespace kiri::tov::impl_detail
