#include "design.h"

#include <utility>

#include "input.h"
#include "text.h"

using namespace kiri::tov;

namespace tool {

namespace {

constexpr std::pair<taDciObjTyp, char const*> typeTitles[] = {
    {taDciObjPort, "port"}, {taDciObjSourcePort, "port"}, {taDciObjPin, "pin"},   {taDciObjPin2, "pin"},
    {taDciObjNet, "net"},   {taDciObjSourceNet, "net"},   {taDciObjCell, "cell"}, {taDciObjClock, "clock"},
};

}  // namespace

Design::Design(std::string const& dump) {
    Input const input(dump, Content::dump);
    std::string error;
    if (!design.load(input.path(), progressBar(), &error) || !error.empty()) {
        throw Trouble(dump + ": not read completely: " + error);
    }
    names = std::make_unique<TovDesignNames const>(design, progressBar());
}

char const* titleOf(taDciObjTyp type) {
    for (auto const& [known, title] : typeTitles) {
        if (known == type) return title;
    }
    return "object";
}

}  // namespace tool
