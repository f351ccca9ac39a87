#include <QDomDocument>
#include <QFile>
#include <QXmlStreamReader>

#include <memory>
#include <string>

#include "bench/all_queries.h"
#include "bench/child.h"
#include "bench/inputs.h"
#include "tov/design/design.h"

namespace {

using namespace kiri::tov;

constexpr std::size_t manyInstances = 100'000;

TovDesign* load(std::string const& path) {
    auto* design = new TovDesign();
    design->load(path.c_str());
    return design;
}

void DesignLoad(benchmark::State& state) {
    std::string const path = inputs::designDump(static_cast<std::size_t>(state.range(0)));
    timeInChild(state, [&path] { return load(path); });
}
CHILD_BENCHMARK(DesignLoad)->RangeMultiplier(10)->Range(1000, 1'000'000);

void BareReaderPass(benchmark::State& state) {
    std::string const path = inputs::designDump(manyInstances);
    timeInChild(state, [&path] {
        QFile file(QString::fromStdString(path));
        if (!file.open(QIODevice::ReadOnly)) ::_exit(1);
        QXmlStreamReader reader(&file);
        while (!reader.atEnd()) reader.readNext();
        if (reader.hasError()) ::_exit(1);
        return reader.characterOffset();
    });
}
CHILD_BENCHMARK(BareReaderPass);

void DomDocument(benchmark::State& state) {
    std::string const path = inputs::designDump(manyInstances);
    timeInChild(state, [&path] {
        QFile file(QString::fromStdString(path));
        auto* document = new QDomDocument();
        if (!file.open(QIODevice::ReadOnly) || !document->setContent(&file)) ::_exit(1);
        return document;
    });
}
CHILD_BENCHMARK(DomDocument);

void FirstQueries(benchmark::State& state) {
    std::string const path = inputs::designDump(manyInstances);
    timeInChild(
        state, [&path] { return load(path); }, [](TovDesign* design) { return (new AllQueries())->ask(*design); });
}
CHILD_BENCHMARK(FirstQueries);

void LaterQueries(benchmark::State& state) {
    std::string const path = inputs::designDump(manyInstances);
    timeInChild(
        state,
        [&path] {
            TovDesign* const design = load(path);
            AllQueries().ask(*design);
            return design;
        },
        [](TovDesign* design) { return (new AllQueries())->ask(*design); });
}
CHILD_BENCHMARK(LaterQueries);

void DesignDestroy(benchmark::State& state) {
    std::string const path = inputs::designDump(manyInstances);
    timeInChild(
        state, [&path] { return load(path); },
        [](TovDesign* design) {
            delete design;
            return 0;
        });
}
CHILD_BENCHMARK(DesignDestroy);

}  // namespace
