// Prints tables of what loads keep and what they need beyond that, counted at each allocation, which does not vary
// between runs. Exits with 1 if a load takes more than docs/performance.md promises.

#include <cstdio>
#include <filesystem>
#include <string>

#include "bench/all_queries.h"
#include "bench/fields.h"
#include "bench/heap.h"
#include "bench/inputs.h"
#include "tov/cmd/command_kind_p.h"
#include "tov/design/design.h"
#include "tov/names/design_names.h"
#include "tov/tov.h"

namespace {

using namespace kiri::tov;
using namespace kiri::tov::impl_detail;

constexpr double mostOfMixedLines = 3.76;  // times the file
constexpr std::size_t mostOfBuffers = std::size_t{64} * 1024;
constexpr double mostOfIndex = 60;      // bytes a cell
constexpr std::size_t mostOfBus = 100;  // while a dump is read, beyond the node, for a base that fits into its object

bool kept = true;

void promise(bool holds, char const* what, char const* subject) {
    if (holds) return;
    std::fprintf(stderr, "%s: %s\n", subject, what);
    kept = false;
}

struct Usage {
    std::size_t kept;
    std::size_t above;
};

template <class Object>
Usage load(std::string const& path, Object& object) {
    std::size_t const before = heap::live;
    heap::peak = heap::live;
    object.load(path.c_str());
    return {heap::live - before, heap::peak - heap::live};
}

double kibibytes(std::size_t bytes) {
    return static_cast<double>(bytes) / 1024;
}

double ratio(std::size_t above, std::size_t below) {
    return static_cast<double>(above) / static_cast<double>(below);
}

// The lines of a kind in the mix. A kind that is not in the mix is measured with its sample.
constexpr struct {
    TOVCMD_TYPE list;
    std::size_t number;
} linesOfTheMix[] = {
    {TOVCMD_CLOCK, 0},        {TOVCMD_GENCLOCK, 1},  {TOVCMD_CLOCKGROUP, 2}, {TOVCMD_INPUTDELAY, 5},
    {TOVCMD_OUTPUTDELAY, 30}, {TOVCMD_MAXDELAY, 87}, {TOVCMD_MINDELAY, 95},  {TOVCMD_MULTICYCLE, 75},
    {TOVCMD_FALSEPATH, 55},   {TOVCMD_ATTRIBUTE, 4},
};

std::string fileOf(CommandKind const& kind, std::size_t lines) {
    for (auto const& [list, number] : linesOfTheMix) {
        if (list == kind.list) return inputs::linesOfKind(number, lines);
    }
    return inputs::copies(std::string(kind.sample), lines);
}

void reportKind(CommandKind const& kind) {
    constexpr std::size_t lines = 10'000;
    std::string const path = fileOf(kind, lines);
    TOV document;
    Usage const usage = load(path, document);
    FieldSizes sizes;
    std::size_t fields = 0;
    for (TovCmd* command : *document.getTovCmdList(kind.list)) fields += sizes.of(*command);
    std::printf("| `%s` | %.1f | %.1f | %.1f | %.1f |\n", kind.keyword.data(),
                ratio(std::filesystem::file_size(path), lines), ratio(fields, lines), ratio(usage.kept, lines),
                ratio(usage.kept, lines) - ratio(fields, lines));
    // If the allocator has no block of the right size, it returns a slightly larger one.
    promise(usage.kept <= fields + lines / 10, "keeps more than its fields take", kind.keyword.data());
}

void reportDocument(char const* name, std::string const& path, double mostKept = 0) {
    TOV document;
    Usage const usage = load(path, document);
    std::size_t const longest = inputs::longestLine(path);
    double const times = ratio(usage.kept, std::filesystem::file_size(path));
    std::printf("| %s | %.2f | %.1f | %.1f |\n", name, times, kibibytes(longest), kibibytes(usage.above));
    std::size_t const comments = document.sdcCommentText.size() + document.attributeCommentText.size();
    promise(usage.above <= longest / 8 * 9 + 2 * comments + mostOfBuffers,
            "needs more than promised beyond what it keeps", name);
    promise(mostKept == 0 || times <= mostKept, "keeps more than promised", name);
}

void reportSave(char const* name, std::string const& path) {
    constexpr double mostTaken = 2.1;  // times the text
    constexpr double mostCapacity = 1.3;
    TOV document;
    document.load(path.c_str());
    std::string text;
    std::size_t const before = heap::peak = heap::live;
    text = document.toSaveString();
    double const taken = ratio(heap::peak - before, text.size());
    double const capacity = ratio(text.capacity(), text.size());
    std::printf("| %s | %.2f | %.2f |\n", name, taken, capacity);
    promise(taken <= mostTaken && capacity <= mostCapacity, "its save takes more than promised", name);
}

std::size_t fieldsOf(AllQueries const& nodes) {
    return FieldSizes::ofNodes(nodes.ports) + FieldSizes::ofNodes(nodes.pins) + FieldSizes::ofNodes(nodes.nets) +
           FieldSizes::ofNodes(nodes.cells) + FieldSizes::ofNodes(nodes.clocks) + FieldSizes::ofNodes(nodes.views) +
           FieldSizes::ofNodes(nodes.rams) + FieldSizes::ofNodes(nodes.roms) + FieldSizes::ofNodes(nodes.mults);
}

void reportDesign(std::size_t instances) {
    TovDesign design;
    Usage const usage = load(inputs::designDump(instances), design);
    AllQueries queries;
    // Registers are cells.
    std::size_t const nodes = queries.ask(design) - queries.regs.size();
    std::size_t const fields = fieldsOf(queries);
    std::printf("| %zu | %zu | %.1f | %.1f | %.1f |", instances, nodes, ratio(fields, nodes), ratio(usage.kept, nodes),
                kibibytes(usage.above));
    // The top node is not in the lists.
    promise(usage.kept <= fields + fields / 1000 + 1024, "keeps more than its fields take", "design");
    std::size_t const before = heap::live;
    TovDesignNames const names(design);
    double const index = ratio(heap::live - before, queries.cells.size());
    std::printf(" %.1f |\n", index);
    promise(instances < 10'000 || index <= mostOfIndex, "the index of its names takes more than promised", "design");
    promise(usage.above <= mostOfBuffers + instances * mostOfBus, "needs more than promised beyond what it keeps",
            "design");
}

}  // namespace

int main() {
    // What the XML reader and the streams allocate once is not part of the load.
    TovDesign().load(inputs::designDump(10).c_str());

    std::puts("| kind of line | bytes in the file | its fields take | the document keeps | more |");
    std::puts("|---|---|---|---|---|");
    for (CommandKind const& kind : commandKinds) reportKind(kind);

    std::puts("\n| document | keeps, times the file | longest line, KiB | needs beyond that, KiB |");
    std::puts("|---|---|---|---|");
    reportDocument("300,000 mixed lines", inputs::constraintFile(300'000), mostOfMixedLines);
    reportDocument("one line of 400,000 names", inputs::oneLineOfNames(400'000));
    reportDocument("a line of 100,000 names, then 30,000 mixed lines", inputs::longLineFirst(100'000, 30'000));
    reportDocument("400,000 comments", inputs::linesOfKind(3, 400'000));

    std::puts("\n| save of | takes, times its text | capacity, times its text |\n|---|---|---|");
    reportSave("mixed lines as saved", inputs::constraintFile(300'000, inputs::Order::saved));
    reportSave("mixed lines at random", inputs::constraintFile(300'000, inputs::Order::random));
    reportSave("names that grow (in0 to in199999)", inputs::growingNames(200'000));
    reportSave("a line of 100,000 names, then 30,000 mixed lines", inputs::longLineFirst(100'000, 30'000));

    std::puts(
        "\n| instances of a dump | nodes | fields, bytes a node | keeps, bytes a node | needs beyond that, KiB | index "
        "of names, bytes a cell |");
    std::puts("|---|---|---|---|---|---|");
    for (std::size_t instances : {1000U, 10'000U, 100'000U}) reportDesign(instances);
    return kept ? 0 : 1;
}
