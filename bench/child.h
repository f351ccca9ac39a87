#pragma once

#include <benchmark/benchmark.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>

/// Times work(prepare()) in a child process of its own, so that each measurement finds a fresh heap, as a
/// program that opens a file does, and none pays for what another one left behind.
template <class Prepare, class Work>
void timeInChild(benchmark::State& state, Prepare prepare, Work work) {
    for (auto _ : state) {
        int ends[2];
        if (::pipe(ends) != 0) return state.SkipWithError("pipe");
        pid_t const child = ::fork();
        if (child == 0) {
            auto subject = prepare();
            auto const start = std::chrono::steady_clock::now();
            auto const result = work(subject);
            std::chrono::duration<double> const time = std::chrono::steady_clock::now() - start;
            benchmark::DoNotOptimize(result);
            double const seconds = time.count();
            ::_exit(::write(ends[1], &seconds, sizeof seconds) == sizeof seconds ? 0 : 1);
        }
        ::close(ends[1]);
        double seconds = 0;
        if (::read(ends[0], &seconds, sizeof seconds) != sizeof seconds) state.SkipWithError("child failed");
        ::close(ends[0]);
        ::waitpid(child, nullptr, 0);
        state.SetIterationTime(seconds);
    }
}

/// The same without preparation.
template <class Work>
void timeInChild(benchmark::State& state, Work work) {
    timeInChild(
        state, [] { return 0; }, [&work](int) { return work(); });
}

/// Registers a function so. The repetitions of the run are the only ones: each of them is reported.
#define CHILD_BENCHMARK(function) BENCHMARK(function)->UseManualTime()->Iterations(1)->Unit(benchmark::kMillisecond)
