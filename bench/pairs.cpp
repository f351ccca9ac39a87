// toveng_pairs TIMING REPETITIONS [OLD]: runs toveng_timing on generated inputs, each run in its own process, and
// prints the median and the middle half of the ratios; each ratio is of times of the same repetition. With another
// build of toveng_timing, runs the two in alternation and prints the ratios of the first one's times to the other's;
// alone, the ratios between its own times.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "bench/inputs.h"

namespace {

struct Input {
    char const* name;
    std::string path;
    std::vector<char const*> works;
};

// The times of the steps of each input: one for each repetition.
using Times = std::map<std::pair<std::string, std::string>, std::vector<double>>;

void run(std::string const& program, char const* work, Input const& input, Times& times) {
    std::string const command = "'" + program + "' " + work + " '" + input.path + "'";
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> output(::popen(command.c_str(), "r"), ::pclose);
    char step[64];
    for (double seconds = 0; output != nullptr && std::fscanf(output.get(), " %63[^:]: %lf", step, &seconds) == 2;) {
        times[{input.name, step}].push_back(seconds);
    }
    if (output == nullptr || ::pclose(output.release()) != 0) {
        std::fprintf(stderr, "%s failed\n", command.c_str());
        std::exit(1);
    }
}

std::vector<double> ratiosOf(std::vector<double> const& above, std::vector<double> const& below) {
    std::vector<double> ratios;
    std::transform(above.begin(), above.begin() + static_cast<long>(std::min(above.size(), below.size())),
                   below.begin(), std::back_inserter(ratios), [](double a, double b) { return a / b; });
    return ratios;
}

void print(std::string const& input, std::string const& what, std::vector<double> ratios) {
    if (ratios.empty()) return;
    std::sort(ratios.begin(), ratios.end());
    std::size_t const count = ratios.size();
    std::printf("| %s | %s | %.3g | %.3g to %.3g |\n", input.c_str(), what.c_str(), ratios[count / 2],
                ratios[count / 4], ratios[count - 1 - count / 4]);
}

// The ratios between the times of one build on one input.
constexpr std::pair<char const*, char const*> comparisons[] = {
    {"save", "load"},
    {"destroy", "load"},
    {"destroy unsaved", "load"},
    {"check", "load"},
    {"load, round 3", "load"},
    {"save, round 3", "save"},
    {"destroy, round 3", "destroy"},
    {"ten queries", "dump load"},
    {"dump destroy", "dump load"},
};

void printAlone(std::vector<Input> const& inputs, Times& times) {
    std::puts("| input | time / time | median | middle half |\n|---|---|---|---|");
    for (Input const& input : inputs) {
        for (auto const& [above, below] : comparisons) {
            print(input.name, above + std::string(" / ") + below,
                  ratiosOf(times[{input.name, above}], times[{input.name, below}]));
        }
    }
    print("four times the lines with a period", "load / load",
          ratiosOf(times[{inputs[0].name, "load"}], times[{"lines with a period", "load"}]));
}

void printAgainst(std::vector<Input> const& inputs, Times& times, Times& old) {
    std::puts("| input | time / its time in the other build | median | middle half |\n|---|---|---|---|");
    for (Input const& input : inputs) {
        for (auto const& [key, seconds] : times) {
            if (key.first == input.name) print(input.name, key.second, ratiosOf(seconds, old[key]));
        }
    }
}

}  // namespace

int main(int argc, char** argv) {
    int const repetitions = argc > 2 ? std::atoi(argv[2]) : 0;
    if (argc > 4 || repetitions < 1) {
        std::fputs("toveng_pairs TIMING REPETITIONS [OLD]\n", stderr);
        return 2;
    }
    std::vector<char const*> const works = {"rounds", "destroy", "check"};
    constexpr std::size_t lines = 300'000;
    std::vector<Input> all = {
        {"1,200,000 lines", inputs::constraintFile(4 * lines), {"save"}},
        {"lines as saved", inputs::constraintFile(lines, inputs::Order::saved), works},
        {"lines with a period", inputs::constraintFile(lines, inputs::Order::periodic), works},
        {"lines at random", inputs::constraintFile(lines, inputs::Order::random), works},
        {"dump", inputs::designDump(100'000), {"query-dump", "destroy-dump"}},
    };
    bool const alone = argc == 3;
    Times times;
    Times old;
    for (int repetition = 0; repetition < repetitions; ++repetition) {
        for (Input const& input : all) {
            for (char const* work : input.works) {
                // The order alternates, so neither build profits if the machine becomes faster or slower.
                if (!alone && repetition % 2 == 0) run(argv[3], work, input, old);
                run(argv[1], work, input, times);
                if (!alone && repetition % 2 != 0) run(argv[3], work, input, old);
            }
        }
    }
    if (alone) {
        printAlone(all, times);
    } else {
        printAgainst(all, times, old);
    }
    return 0;
}
