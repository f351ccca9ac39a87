#include <tcl.h>

#include <memory>
#include <string>
#include <vector>

#include "bench/child.h"
#include "bench/floor.h"
#include "bench/inputs.h"
#include "tov/check.h"
#include "tov/tov.h"

namespace {

using kiri::tov::TOV;

constexpr std::size_t mixedLines = 300'000;

TOV* load(std::string const& path) {
    auto* document = new TOV();
    document->load(path.c_str());
    return document;
}

void Load(benchmark::State& state) {
    std::string const path = inputs::constraintFile(static_cast<std::size_t>(state.range(0)));
    timeInChild(state, [&path] { return load(path); });
}
CHILD_BENCHMARK(Load)
    ->Arg(1000)
    ->Arg(10'000)
    ->Arg(30'000)
    ->Arg(100'000)
    ->Arg(mixedLines)
    ->Arg(1'000'000)
    ->Arg(3'000'000);

// The file in the order that the state's range names, as an inputs::Order.
std::string orderedFile(benchmark::State const& state) {
    return inputs::constraintFile(mixedLines, static_cast<inputs::Order>(state.range(0)));
}

void LoadInOrder(benchmark::State& state) {
    std::string const path = orderedFile(state);
    timeInChild(state, [&path] { return load(path); });
}
CHILD_BENCHMARK(LoadInOrder)->DenseRange(0, 2);

void LoadOneLineOfNames(benchmark::State& state) {
    std::string const path = inputs::oneLineOfNames(400'000);
    timeInChild(state, [&path] { return load(path); });
}
CHILD_BENCHMARK(LoadOneLineOfNames);

void LoadLinesOfOneName(benchmark::State& state) {
    std::string const path = inputs::linesOfOneName(400'000);
    timeInChild(state, [&path] { return load(path); });
}
CHILD_BENCHMARK(LoadLinesOfOneName);

void LoadFloor(benchmark::State& state) {
    std::string const path = inputs::constraintFile(mixedLines);
    timeInChild(state, [&path] { return (new Floor())->load(path); });
}
CHILD_BENCHMARK(LoadFloor);

// An interpreter in which each command stores its arguments and each query returns its own.
Tcl_Interp* makeInterpreter() {
    Tcl_FindExecutable(nullptr);
    Tcl_Interp* const interpreter = Tcl_CreateInterp();
    Tcl_Eval(interpreter, R"(
        foreach command {create_clock create_generated_clock set_clock_groups set_input_delay set_output_delay
                         set_max_delay set_min_delay set_multicycle_path set_false_path} {
            proc $command args "lappend ::stored_$command \$args; return"
        }
        foreach query {get_ports get_nets get_clocks get_cells get_pins} { proc $query args {return $args} }
    )");
    return interpreter;
}

void LoadTcl(benchmark::State& state) {
    std::string const path = inputs::constraintFile(mixedLines);
    timeInChild(state, makeInterpreter, [&path](Tcl_Interp* interpreter) {
        if (Tcl_EvalFile(interpreter, path.c_str()) != TCL_OK) ::_exit(1);
        return interpreter;
    });
}
CHILD_BENCHMARK(LoadTcl);

void SaveText(benchmark::State& state) {
    std::string const path = orderedFile(state);
    timeInChild(
        state, [&path] { return load(path); }, [](TOV* document) { return new std::string(document->toSaveString()); });
}
CHILD_BENCHMARK(SaveText)->DenseRange(0, 2);

void SaveFile(benchmark::State& state) {
    std::string const path = inputs::constraintFile(mixedLines);
    std::string const saved = path + ".saved";
    timeInChild(
        state, [&path] { return load(path); }, [&saved](TOV* document) { return document->save(saved.c_str()); });
}
CHILD_BENCHMARK(SaveFile);

void Check(benchmark::State& state) {
    std::string const path = orderedFile(state);
    timeInChild(state, [&path] {
        std::vector<kiri::tov::TovFinding> findings;
        kiri::tov::checkTovFile(path.c_str(), findings);
        return findings.size();
    });
}
CHILD_BENCHMARK(Check)->DenseRange(0, 2);

void Destroy(benchmark::State& state) {
    std::string const path = orderedFile(state);
    timeInChild(
        state, [&path] { return load(path); },
        [](TOV* document) {
            delete document;
            return 0;
        });
}
CHILD_BENCHMARK(Destroy)->DenseRange(0, 2);

void Import(benchmark::State& state) {
    timeInChild(
        state, [] { return inputs::database(mixedLines).release(); },
        [](taDci* db) {
            auto* document = new TOV();
            document->loadTaObjects(db, true);
            return document;
        });
}
CHILD_BENCHMARK(Import);

}  // namespace
