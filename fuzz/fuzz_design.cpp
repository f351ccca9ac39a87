// A design dump: loaded, asked everything, loaded again with progress, and stopped.

#include "fuzz/fuzz.h"
#include "tov/design/queries.h"

namespace {

using namespace kiri::tov;

// All answers of a design, as one text.
std::string contentOf(TovDesign const& design) {
    std::string text;
    forEachQuery([&](char const*, auto query) {
        NodesOf<decltype(query)> out;
        std::size_t const count = (design.*query)(out);
        fuzz::require(count == out.size(), "a query returns the length of its list");
        for (TovNode* node : out) {
            fuzz::require(node->parent() != nullptr, "every node but the top has a parent");
            auto* const bus = dynamic_cast<TovBusNode*>(node);
            fuzz::require(bus == nullptr || (bus->low() >= 0 && bus->low() <= bus->high()), "a bus has a range");
            text.append(node->hierachyName('.')).append("|").append(node->name()).append("\n");
        }
    });
    return text;
}

}  // namespace

void fuzz::run(std::string const& input) {
    fuzz::MemoryFile const file(input);
    TovDesign design;
    bool const loaded = design.load(file.path().c_str());
    std::string const first = contentOf(design);
    fuzz::require(loaded || first.empty(), "a failed load leaves the design empty");
    bool whole = false;
    std::string error = "none";
    auto const progress = [&whole](std::uint64_t at, std::uint64_t of) { return whole = at == of; };
    fuzz::require(design.load(file.path().c_str(), progress, &error) == loaded && contentOf(design) == first,
                  "a second load is like the first");
    fuzz::require(error.empty() == whole && (loaded || !whole), "a dump is whole, or the reason is reported");
    fuzz::require(error.find('\n') == std::string::npos, "the reason is one line");
    bool const stopped = whole && !design.load(file.path().c_str(), [](auto, auto) { return false; });
    fuzz::require(stopped == whole && (!stopped || contentOf(design).empty()), "a stopped load leaves nothing");
}
