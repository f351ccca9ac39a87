#include "tov/names/document_clocks_p.h"

#include <algorithm>
#include <vector>

#include "tov/cmd/cmd.h"
#include "tov/cmd/references.h"
#include "tov/names/node_names_p.h"

namespace kiri::tov::impl_detail {

namespace {

// The clock name that a word in a definition means: "a.b\[0\]" is "a/b[0]".
std::string nameIn(std::string_view word) {
    std::string name;
    for (std::size_t i = 0; i < word.size(); ++i) {
        if (word[i] == '\\' && ++i == word.size()) break;
        name += word[i] == '.' ? '/' : word[i];
    }
    return name;
}

}  // namespace

void DocumentClocks::add(TovCmd& cmd) {
    std::string name = nameIn(definedClock(cmd));
    if (name.empty()) return;
    auto const place = definitions_.try_emplace(&cmd).first;
    try {
        place->second = clocks_.emplace(std::move(name), &cmd.enabled);
    } catch (...) {
        definitions_.erase(place);
        throw;
    }
}

void DocumentClocks::addForGood(TovCmd& cmd) {
    static constexpr bool isEnabled = true;
    std::string name = cmd.enabled ? nameIn(definedClock(cmd)) : std::string();
    if (!name.empty() && clocks_.count(name) == 0) clocks_.emplace(std::move(name), &isEnabled);
}

void DocumentClocks::remove(TovCmd const& cmd) {
    auto const place = definitions_.find(&cmd);
    if (place == definitions_.end()) return;
    clocks_.erase(place->second);
    definitions_.erase(place);
}

bool DocumentClocks::has(std::string const& word) const {
    auto const isEnabled = [](auto const& clock) { return *clock.second; };
    if (isLiteral(word)) {
        auto const [first, last] = clocks_.equal_range(nameIn(word));
        return std::any_of(first, last, isEnabled);
    }
    bool isFound = false;
    forEachForm(word, [&](NameWord const& form) {
        isFound = std::any_of(clocks_.begin(), clocks_.end(), [&](auto const& clock) {
            return isEnabled(clock) && form.fits(clock.first, false, true);
        });
        return !isFound;
    });
    return isFound;
}

}  // namespace kiri::tov::impl_detail
