// toveng_pairs OLD NEW [PAIRS]: runs two builds of toveng_timing in alternation on generated inputs, each run in a
// process of its own, on a fresh heap, and prints for each work the median of the ratios of the pairs.

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

using Times = std::map<std::string, double>;

Times run(std::string const& program, std::string const& work, std::string const& path) {
    std::string const command = "'" + program + "' " + work + " '" + path + "'";
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> output(::popen(command.c_str(), "r"), ::pclose);
    Times times;
    char step[64];
    for (double seconds = 0; output != nullptr && std::fscanf(output.get(), "%63[^0-9]%lf ", step, &seconds) == 2;) {
        times[std::string(step, std::strlen(step) - 1)] = seconds;  // without the blank
    }
    if (output == nullptr || ::pclose(output.release()) != 0) {
        std::fprintf(stderr, "%s failed\n", command.c_str());
        std::exit(1);
    }
    return times;
}

struct Input {
    char const* name;
    std::string path;
    std::vector<char const*> works;
    int pairs;
};

// The ratios of the pairs of each step.
using Ratios = std::map<std::string, std::vector<double>>;

Ratios measure(Input const& input, std::string const& oldProgram, std::string const& newProgram) {
    Ratios ratios;
    for (int pair = 0; pair < input.pairs; ++pair) {
        for (char const* work : input.works) {
            // Whichever is first alternates, so that neither gains where the machine grows faster or slower.
            bool const newFirst = pair % 2 != 0;
            Times first = run(newFirst ? newProgram : oldProgram, work, input.path);
            Times second = run(newFirst ? oldProgram : newProgram, work, input.path);
            if (newFirst) first.swap(second);
            for (auto const& [step, seconds] : second) {
                if (first.count(step) != 0) ratios[step].push_back(seconds / first[step]);
            }
        }
    }
    return ratios;
}

void print(char const* input, Ratios const& ratios) {
    for (auto [step, values] : ratios) {
        std::sort(values.begin(), values.end());
        std::size_t const count = values.size();
        std::printf("| %s | %s | %.3f | %.3f to %.3f |\n", input, step.c_str(), values[count / 2], values[count / 4],
                    values[count - 1 - count / 4]);
    }
    std::fflush(stdout);
}

}  // namespace

int main(int argc, char** argv) {
    int const pairs = argc > 3 ? std::atoi(argv[3]) : 9;
    if (argc < 3 || pairs < 1) {
        std::fputs("toveng_pairs OLD NEW [PAIRS]\n", stderr);
        return 2;
    }
    std::vector<char const*> const documentWorks = {"save", "destroy", "check"};
    constexpr std::size_t lines = 300'000;
    Input const all[] = {
        {"lines as saved", inputs::constraintFile(lines, inputs::Order::saved), documentWorks, pairs},
        {"lines with a period", inputs::constraintFile(lines, inputs::Order::periodic), documentWorks, pairs},
        {"lines at random", inputs::constraintFile(lines, inputs::Order::random), documentWorks, pairs},
        {"dump", inputs::designDump(100'000), {"query-dump", "destroy-dump"}, (pairs + 1) / 2},
    };
    std::puts("| input | work | median | middle half |\n|---|---|---|---|");
    for (Input const& input : all) print(input.name, measure(input, argv[1], argv[2]));
    return 0;
}
