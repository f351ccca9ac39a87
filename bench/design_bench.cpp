#include <QDomDocument>
#include <QFile>
#include <QXmlStreamReader>

#include <list>
#include <memory>
#include <string>

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

// What the ten queries fill.
struct Lists {
    std::list<TovPortNode*> ports, pins;
    std::list<TovNetNode*> nets;
    std::list<TovCellNode*> cells, regs;
    std::list<TovClockNode*> clocks;
    std::list<TovViewNode*> views;
    std::list<TovRamNode*> rams;
    std::list<TovRomNode*> roms;
    std::list<TovMultNode*> mults;
};

std::size_t askAll(TovDesign const* design, Lists& lists) {
    return design->getPorts(lists.ports) + design->getPins(lists.pins) + design->getNets(lists.nets) +
           design->getCells(lists.cells) + design->getRegs(lists.regs) + design->getClocks(lists.clocks) +
           design->getViews(lists.views) + design->getRams(lists.rams) + design->getRoms(lists.roms) +
           design->getMults(lists.mults);
}

void FirstQueries(benchmark::State& state) {
    std::string const path = inputs::designDump(manyInstances);
    timeInChild(
        state, [&path] { return load(path); }, [](TovDesign* design) { return askAll(design, *new Lists()); });
}
CHILD_BENCHMARK(FirstQueries);

void LaterQueries(benchmark::State& state) {
    std::string const path = inputs::designDump(manyInstances);
    timeInChild(
        state,
        [&path] {
            TovDesign* const design = load(path);
            Lists lists;
            askAll(design, lists);
            return design;
        },
        [](TovDesign* design) { return askAll(design, *new Lists()); });
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
