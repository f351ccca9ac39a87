// toveng_timing WORK FILE: does the work, which begins with a load of the file, and prints the name and the processor
// time of each step. It calls only what every release of the library has, so any two can be compared; without
// tov/check.h it checks nothing.

#include <cstdio>
#include <ctime>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "all_queries.h"  // the one beside this file, whatever library it is built with
#include "tov/design/design.h"
#include "tov/tov.h"
#if __has_include("tov/check.h")
#include "tov/check.h"
#endif

namespace {

using kiri::tov::TOV;
using kiri::tov::TovDesign;

double now() {
    std::timespec time{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

template <class Work>
void timed(std::string const& step, Work work) {
    double const start = now();
    work();
    std::printf("%s: %.9f\n", step.c_str(), now() - start);
}

// A long-running program: one document after the other, on the heap that the previous one left.
void rounds(char const* path) {
    for (int round = 1; round <= 3; ++round) {
        auto document = std::make_unique<TOV>();
        std::string const suffix = round == 1 ? "" : ", round " + std::to_string(round);
        timed("load" + suffix, [&] { document->load(path); });
        {
            std::string text;
            timed("save" + suffix, [&] { text = document->toSaveString(); });
        }
        timed("destroy" + suffix, [&] { document.reset(); });
    }
}

void save(char const* path) {
    TOV document;
    timed("load", [&] { document.load(path); });
    std::string text;
    timed("save", [&] { text = document.toSaveString(); });
}

void destroy(char const* path) {
    auto document = std::make_unique<TOV>();
    document->load(path);
    timed("destroy unsaved", [&] { document->reset(); });
}

void check([[maybe_unused]] char const* path) {
#if __has_include("tov/check.h")
    std::vector<kiri::tov::TovFinding> findings;
    timed("check", [&] { kiri::tov::checkTovFile(path, findings); });
#endif
}

void queryDump(char const* path) {
    TovDesign design;
    timed("dump load", [&] { design.load(path); });
    AllQueries queries;
    timed("ten queries", [&] { queries.ask(design); });
}

void destroyDump(char const* path) {
    auto design = std::make_unique<TovDesign>();
    design->load(path);
    timed("dump destroy", [&] { design.reset(); });
}

struct Work {
    std::string_view name;
    void (*run)(char const* path);
};

constexpr Work works[] = {{"save", save},   {"rounds", rounds},        {"destroy", destroy},
                          {"check", check}, {"query-dump", queryDump}, {"destroy-dump", destroyDump}};

}  // namespace

int main(int argc, char** argv) {
    for (Work const& work : works) {
        if (argc != 3 || work.name != argv[1]) continue;
        work.run(argv[2]);
        return 0;
    }
    std::fputs("toveng_timing save|rounds|destroy|check|query-dump|destroy-dump FILE\n", stderr);
    return 2;
}
