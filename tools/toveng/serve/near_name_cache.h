#pragma once

#include <string>
#include <unordered_map>

#include "tov/names/design_names.h"

namespace tool::lsp {

/// Caches the nearest names in a design, because each search scans all of its names.
class NearNameCache {
public:
    std::string const& nearest(kiri::tov::TovDesignNames const& names, taDciObjTyp type, std::string const& word) {
        constexpr std::size_t most = 2'000;
        if (found_.size() >= most) found_.clear();
        auto const [place, isNew] = found_.try_emplace(std::to_string(type) + " " + word);
        if (isNew) place->second = names.nearest(type, word);
        return place->second;
    }

private:
    std::unordered_map<std::string, std::string> found_;
};

}  // namespace tool::lsp
