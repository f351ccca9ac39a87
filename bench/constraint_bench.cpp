#include <benchmark/benchmark.h>
#include <tcl.h>

#include <memory>

#include "bench/floor.h"
#include "bench/inputs.h"
#include "tov/tov.h"

namespace {

using kiri::tov::TOV;

constexpr std::size_t mixedLines = 300'000;

// Times `work` alone; what it returns is destroyed off the clock.
template <class Work>
void timeOnly(benchmark::State& state, Work work) {
    for (auto _ : state) {
        auto result = work();
        state.PauseTiming();
        benchmark::DoNotOptimize(result);
        result.reset();
        state.ResumeTiming();
    }
}

std::unique_ptr<TOV> load(std::string const& path) {
    auto document = std::make_unique<TOV>();
    document->load(path.c_str());
    return document;
}

void loadFile(benchmark::State& state, std::string const& path) {
    timeOnly(state, [&path] { return load(path); });
}

void Load(benchmark::State& state) {
    loadFile(state, inputs::constraintFile(static_cast<std::size_t>(state.range(0))));
}
BENCHMARK(Load)->RangeMultiplier(10)->Range(1000, 100'000)->Arg(mixedLines)->Arg(1'000'000)->Arg(3'000'000)->Unit(benchmark::kMillisecond);

void LoadOneLineOfNames(benchmark::State& state) { loadFile(state, inputs::oneLineOfNames(400'000)); }
BENCHMARK(LoadOneLineOfNames)->Unit(benchmark::kMillisecond);

void LoadLinesOfOneName(benchmark::State& state) { loadFile(state, inputs::linesOfOneName(400'000)); }
BENCHMARK(LoadLinesOfOneName)->Unit(benchmark::kMillisecond);

void LoadFloor(benchmark::State& state) {
    std::string const path = inputs::constraintFile(mixedLines);
    timeOnly(state, [&path] {
        auto floor = std::make_unique<Floor>();
        benchmark::DoNotOptimize(floor->load(path));
        return floor;
    });
}
BENCHMARK(LoadFloor)->Unit(benchmark::kMillisecond);

// A Tcl interpreter sources the file; each command stores its arguments and each query returns its own.
void LoadTcl(benchmark::State& state) {
    std::string const path = inputs::constraintFile(mixedLines);
    constexpr char const* procedures = R"(
        foreach command {create_clock create_generated_clock set_clock_groups set_input_delay set_output_delay
                         set_max_delay set_min_delay set_multicycle_path set_false_path} {
            proc $command args "lappend ::$command \$args; return"
        }
        foreach query {get_ports get_nets get_clocks get_cells get_pins} { proc $query args {return $args} }
    )";
    Tcl_FindExecutable(nullptr);
    for (auto _ : state) {
        state.PauseTiming();
        Tcl_Interp* const interpreter = Tcl_CreateInterp();
        if (Tcl_Eval(interpreter, procedures) != TCL_OK) state.SkipWithError("procedures");
        state.ResumeTiming();
        if (Tcl_EvalFile(interpreter, path.c_str()) != TCL_OK) {
            state.SkipWithError(Tcl_GetStringResult(interpreter));
        }
        state.PauseTiming();
        Tcl_DeleteInterp(interpreter);
        state.ResumeTiming();
    }
}
BENCHMARK(LoadTcl)->Unit(benchmark::kMillisecond);

void SaveText(benchmark::State& state) {
    auto const document = load(inputs::constraintFile(mixedLines));
    for (auto _ : state) benchmark::DoNotOptimize(document->toSaveString());
}
BENCHMARK(SaveText)->Unit(benchmark::kMillisecond);

void SaveFile(benchmark::State& state) {
    auto const document = load(inputs::constraintFile(mixedLines));
    std::string const path = inputs::constraintFile(mixedLines) + ".saved";
    for (auto _ : state) benchmark::DoNotOptimize(document->save(path.c_str()));
}
BENCHMARK(SaveFile)->Unit(benchmark::kMillisecond);

void Destroy(benchmark::State& state) {
    std::string const path = inputs::constraintFile(mixedLines);
    for (auto _ : state) {
        state.PauseTiming();
        auto document = load(path);
        state.ResumeTiming();
        document.reset();
    }
}
BENCHMARK(Destroy)->Unit(benchmark::kMillisecond);

void Import(benchmark::State& state) {
    auto const db = inputs::database(mixedLines);
    timeOnly(state, [&db] {
        auto document = std::make_unique<TOV>();
        document->loadTaObjects(db.get(), true);
        return document;
    });
}
BENCHMARK(Import)->Unit(benchmark::kMillisecond);

}  // namespace
