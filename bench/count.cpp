// toveng_count OPERATION: performs one operation on a generated input and prints the size of the input file, or the
// number of words looked up. Under "valgrind --tool=callgrind --instr-atstart=no" only the operation itself is counted,
// see scripts/bench --count.

#include <QFile>
#include <QString>
#include <QXmlStreamReader>

#include <valgrind/callgrind.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "bench/all_queries.h"
#include "bench/inputs.h"
#include "tov/check.h"
#include "tov/design/design.h"
#include "tov/names/document_names.h"
#include "tov/tov.h"

namespace {

using kiri::tov::TOV;
using kiri::tov::TovDesign;
using kiri::tov::TovDesignNames;

template <class Work>
void measured(Work work) {
    CALLGRIND_START_INSTRUMENTATION;
    work();
    CALLGRIND_STOP_INSTRUMENTATION;
}

constexpr std::size_t mixedLines = 30'000;
constexpr std::size_t instances = 10'000;

void load(std::string const& path) {
    TOV document;
    measured([&] { document.load(path.c_str()); });
}

void save(std::string const& path) {
    TOV document;
    document.load(path.c_str());
    std::string text;
    measured([&] { text = document.toSaveString(); });
}

void destroy(std::string const& path) {
    auto document = std::make_unique<TOV>();
    document->load(path.c_str());
    measured([&] { document.reset(); });
}

void check(std::string const& path) {
    std::vector<kiri::tov::TovFinding> findings;
    measured([&] { kiri::tov::checkTovFile(path.c_str(), findings); });
}

void loadDump(std::string const& path) {
    TovDesign design;
    measured([&] { design.load(path.c_str()); });
}

void readDumpBare(std::string const& path) {
    measured([&] {
        QFile file(QString::fromStdString(path));
        if (!file.open(QIODevice::ReadOnly)) return;
        QXmlStreamReader reader(&file);
        while (!reader.atEnd()) reader.readNext();
    });
}

void queryDump(std::string const& path) {
    TovDesign design;
    design.load(path.c_str());
    AllQueries queries;
    measured([&] { queries.ask(design); });
}

void destroyDump(std::string const& path) {
    auto design = std::make_unique<TovDesign>();
    design->load(path.c_str());
    measured([&] { design.reset(); });
}

void index(std::string const& path) {
    TovDesign design;
    design.load(path.c_str());
    measured([&] { TovDesignNames const names(design); });
}

constexpr std::size_t wordsAsked = 1000;

void find(std::string const& path, taDciObjTyp type, std::vector<std::string> const& words) {
    TovDesign design;
    design.load(path.c_str());
    TovDesignNames const names(design);
    std::vector<kiri::tov::TovNode const*> nodes;
    measured([&] {
        for (std::string const& word : words) names.find(type, word, nodes);
    });
}

/// Words for objects of instances throughout the design.
std::vector<std::string> wordsFor(std::string const& block, std::string const& object) {
    std::vector<std::string> words;
    for (std::size_t i = 0; i < wordsAsked; ++i) {
        std::size_t const number = i * 7919 % instances;
        std::string const blockName = block.empty() ? "u_blk_" + std::to_string(number % 13) : block;
        words.push_back("u_core_" + std::to_string(number % 97) + "/" + blockName + "/inst_" + std::to_string(number) +
                        "/" + object);
    }
    return words;
}

void join(std::string const& path) {
    TovDesign design;
    design.load(inputs::designDump(instances).c_str());
    TovDesignNames const names(design);
    TOV document;
    document.load(path.c_str());
    measured([&] { kiri::tov::TovDocumentNames(document, names).missing(); });
}

std::string mixedFile(std::size_t lines) {
    return inputs::constraintFile(lines);
}

struct Operation {
    std::string_view name;
    void (*run)(std::string const& path);
    std::string (*makeInput)(std::size_t size);
    std::size_t inputSize;
    std::size_t steps = 0;  // the divisor of the count; if 0, the size of the input file
};

constexpr Operation operations[] = {
    {"load", load, mixedFile, mixedLines},
    {"save", save, mixedFile, mixedLines},
    {"destroy", destroy, mixedFile, mixedLines},
    {"check", check, mixedFile, mixedLines},
    {"dump-load", loadDump, inputs::designDump, instances},
    {"dump-bare", readDumpBare, inputs::designDump, instances},
    {"dump-queries", queryDump, inputs::designDump, instances},
    {"index", index, inputs::designDump, instances},
    {"pins", [](std::string const& path) { find(path, taDciObjPin, wordsFor("", "CK")); }, inputs::designDump,
     instances, wordsAsked},
    {"pins-missing", [](std::string const& path) { find(path, taDciObjPin, wordsFor("", "XX")); }, inputs::designDump,
     instances, wordsAsked},
    {"names", [](std::string const& path) { find(path, taDciObjName, wordsFor("", "CK")); }, inputs::designDump,
     instances, wordsAsked},
    {"names-missing", [](std::string const& path) { find(path, taDciObjName, wordsFor("", "XX")); }, inputs::designDump,
     instances, wordsAsked},
    {"patterns", [](std::string const& path) { find(path, taDciObjPin, wordsFor("u_blk_*", "A?")); },
     inputs::designDump, instances, wordsAsked},
    {"clock-patterns", [](std::string const& path) { find(path, taDciObjClock, wordsFor("", "C*")); },
     inputs::designDump, instances, wordsAsked},
    {"name-patterns", [](std::string const& path) { find(path, taDciObjName, wordsFor("", "C*")); }, inputs::designDump,
     instances, wordsAsked},
    {"pattern-nowhere", [](std::string const& path) { find(path, taDciObjPin, {"*/*/*/Z"}); }, inputs::designDump,
     instances},
    {"join", join, [](std::size_t lines) { return inputs::exceptionsOf(instances, lines); }, instances},
    {"dump-destroy", destroyDump, inputs::designDump, instances},
};

}  // namespace

int main(int argc, char** argv) {
    for (Operation const& operation : operations) {
        if (argc != 2 || operation.name != argv[1]) continue;
        std::string const path = operation.makeInput(operation.inputSize);
        operation.run(path);
        std::uintmax_t const steps = operation.steps;
        std::printf("%ju\n", steps != 0 ? steps : std::filesystem::file_size(path));
        return 0;
    }
    std::fputs("toveng_count OPERATION, one of:\n", stderr);
    for (Operation const& operation : operations) std::fprintf(stderr, "  %s\n", operation.name.data());
    return 2;
}
