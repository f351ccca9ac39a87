#include <benchmark/benchmark.h>

#include <QDomDocument>
#include <QFile>
#include <QXmlStreamReader>

#include <list>
#include <memory>

#include "bench/inputs.h"
#include "tov/design/design.h"

namespace {

using namespace kiri::tov;

constexpr std::size_t manyInstances = 100'000;

std::unique_ptr<TovDesign> load(std::string const& path) {
    auto design = std::make_unique<TovDesign>();
    design->load(path.c_str());
    return design;
}

void DesignLoad(benchmark::State& state) {
    std::string const path = inputs::designDump(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        auto design = load(path);
        state.PauseTiming();
        design.reset();
        state.ResumeTiming();
    }
}
BENCHMARK(DesignLoad)->RangeMultiplier(10)->Range(1000, 1'000'000)->Unit(benchmark::kMillisecond);

void BareReaderPass(benchmark::State& state) {
    QString const path = QString::fromStdString(inputs::designDump(manyInstances));
    for (auto _ : state) {
        QFile file(path);
        file.open(QIODevice::ReadOnly);
        QXmlStreamReader reader(&file);
        while (!reader.atEnd()) reader.readNext();
        if (reader.hasError()) state.SkipWithError("dump");
    }
}
BENCHMARK(BareReaderPass)->Unit(benchmark::kMillisecond);

void DomDocument(benchmark::State& state) {
    QString const path = QString::fromStdString(inputs::designDump(manyInstances));
    for (auto _ : state) {
        QFile file(path);
        file.open(QIODevice::ReadOnly);
        QDomDocument document;
        if (!document.setContent(&file)) state.SkipWithError("dump");
    }
}
BENCHMARK(DomDocument)->Unit(benchmark::kMillisecond);

void AllQueries(benchmark::State& state) {
    auto const design = load(inputs::designDump(manyInstances));
    for (auto _ : state) {
        std::list<TovPortNode*> ports, pins;
        std::list<TovNetNode*> nets;
        std::list<TovCellNode*> cells, regs;
        std::list<TovClockNode*> clocks;
        std::list<TovViewNode*> views;
        std::list<TovRamNode*> rams;
        std::list<TovRomNode*> roms;
        std::list<TovMultNode*> mults;
        benchmark::DoNotOptimize(design->getPorts(ports) + design->getPins(pins) + design->getNets(nets) +
                                 design->getCells(cells) + design->getRegs(regs) + design->getClocks(clocks) +
                                 design->getViews(views) + design->getRams(rams) + design->getRoms(roms) +
                                 design->getMults(mults));
        state.PauseTiming();
        pins.clear();
        nets.clear();
        cells.clear();
        regs.clear();
        state.ResumeTiming();
    }
}
BENCHMARK(AllQueries)->Unit(benchmark::kMillisecond);

void DesignDestroy(benchmark::State& state) {
    std::string const path = inputs::designDump(manyInstances);
    for (auto _ : state) {
        state.PauseTiming();
        auto design = load(path);
        state.ResumeTiming();
        design.reset();
    }
}
BENCHMARK(DesignDestroy)->Unit(benchmark::kMillisecond);

}  // namespace
