#include <utility>

#include "findings.h"
#include "tov/names/name_check.h"

using namespace kiri::tov;

namespace tool {

namespace {

constexpr std::pair<taDciObjTyp, char const*> typeTitles[] = {
    {taDciObjPort, "port"}, {taDciObjSourcePort, "port"}, {taDciObjPin, "pin"},   {taDciObjPin2, "pin"},
    {taDciObjNet, "net"},   {taDciObjSourceNet, "net"},   {taDciObjCell, "cell"}, {taDciObjClock, "clock"},
};

}  // namespace

std::string missingMessage(taDciObjTyp type, std::string const& word, TovDesignNames const& names, int& suggestions) {
    TovNameUse const missing{nullptr, "", type, word, TOVMATCH_LEVELS};
    if (suggestions == 0) return kiri::tov::missingMessage(missing);
    --suggestions;
    return kiri::tov::missingMessage(missing, names);
}

char const* titleOf(taDciObjTyp type) {
    for (auto const& [known, title] : typeTitles) {
        if (known == type) return title;
    }
    return "object";
}

}  // namespace tool
