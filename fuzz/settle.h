#pragma once

#include <regex>
#include <stdexcept>
#include <string>

#include "fuzz/fuzz.h"
#include "tov/tov.h"

namespace fuzz {

/// Returns whether all names of a saved text are plain: there are no quotes, brackets or braces except in the forms
/// that the commands write, no words other than clocks in a group, and no header among the comments.
inline bool isPlain(std::string const& text) {
    std::string const name = R"([^\s"\[\]{}]+)";
    std::regex const forms(R"( \[ get_[a-z]+ \{ )" + name +
                           R"( \} \]| \[all_[a-z]+\]| -waveform \{[-. \d]*\}|\t"[^"]*"|)" + " -group \\[ get_clocks (" +
                           name + " |\\{ (" + name + " )+\\}) \\]");
    std::string const rest = std::regex_replace(text, forms, " x");
    std::size_t const header = text.find("# This section describes the HDL");
    return rest.find_first_of("\"[]{}") == text.npos && rest.find("-group") == text.npos &&
           (header == text.npos || text.find("# This section", header + 1) == text.npos);
}

/// Returns what a document saves after loading a text.
inline std::string savedAgain(std::string const& text) {
    kiri::tov::TOV document;
    require(document.load(MemoryFile(text).path().c_str()), "a saved file loads");
    return document.toSaveString();
}

/// Loads and saves a text, with `next`, until it no longer changes. A text of plain names is stable after two saves, or
/// after one more if a save wrote a number beyond a float as `inf`, which the next load does not read as a number. Each
/// load removes one layer of quotes or braces from any other name, so such a text takes longer, but becomes stable
/// as well, except for a clock group, which may repeat its words at each save.
template <class Next>
void requireSettled(std::string const& first, Next next) {
    constexpr int patience = 40;
    constexpr std::size_t tooLong = 1 << 20;
    std::string text = first;
    for (int saves = 1; saves <= patience && text.size() < tooLong; ++saves) {
        std::string again;
        try {
            again = next(text);
        } catch (std::out_of_range const&) {
            return require(text.find("-waveform") != text.npos, "a saved text can be read", text);
        }
        if (again == text) return;
        require(saves < 2 || !isPlain(first) || text.find("inf") != text.npos,
                "the second and third saved text are equal", first, text);
        text.swap(again);
    }
    require(text.find("set_clock_groups") != text.npos, "a text settles", first, text);
}

}  // namespace fuzz
