// toveng_costs TOVENG TIMING: runs the program, and what it is compared with, on generated inputs, and prints its cost
// next to the promise: user time as the median of five ratios, memory as the peak of a run.

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "bench/inputs.h"

namespace {

using Command = std::vector<std::string>;

struct Usage {
    double seconds;  // user time
    double bytes;    // peak of memory
};

Usage run(Command const& command) {
    pid_t const child = ::fork();
    if (child == 0) {
        int const nothing = ::open("/dev/null", O_RDWR);
        for (int fd : {0, 1, 2}) ::dup2(nothing, fd);
        std::vector<char*> arguments;
        for (std::string const& argument : command) arguments.push_back(const_cast<char*>(argument.c_str()));
        arguments.push_back(nullptr);
        ::execvp(arguments[0], arguments.data());
        std::_Exit(127);
    }
    int status = 0;
    rusage usage{};
    ::wait4(child, &status, 0, &usage);
    // 1: findings.
    if (!WIFEXITED(status) || WEXITSTATUS(status) > 1) {
        std::fprintf(stderr, "%s %s failed: %d\n", command[0].c_str(), command[1].c_str(), status);
        std::exit(1);
    }
    return {static_cast<double>(usage.ru_utime.tv_sec) + 1e-6 * static_cast<double>(usage.ru_utime.tv_usec),
            1024 * static_cast<double>(usage.ru_maxrss)};
}

void print(std::string const& what, double counted, double promise) {
    std::printf("| %s | at most %g | %.3g |\n", what.c_str(), promise, counted);
    std::fflush(stdout);
}

void printTimes(std::string const& what, Command const& above, Command const& below, double promise) {
    std::vector<double> ratios(5);
    for (double& ratio : ratios) ratio = run(above).seconds / run(below).seconds;
    std::sort(ratios.begin(), ratios.end());
    print(what, ratios[2], promise);
}

Command with(Command command, std::vector<std::string> const& more) {
    command.insert(command.end(), more.begin(), more.end());
    return command;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fputs("toveng_costs TOVENG TIMING\n", stderr);
        return 2;
    }
    Command const check = {argv[1], "check"};
    Command const import = {argv[1], "import"};
    Command const saves = {argv[2], "save"};
    Command const destroys = {argv[2], "destroy"};
    constexpr std::size_t lines = 300'000;
    constexpr double mebibyte = 1024 * 1024;
    std::string const file = inputs::soundFile(lines);
    std::string const sdc = inputs::sdcFile(lines);
    std::vector<std::string> const set = inputs::fileSet(200, lines / 200);

    std::puts("| program | promise | measured |\n|---|---|---|");
    printTimes("`toveng check` of 300,000 lines / load and save", with(check, {file}), with(saves, {file}), 3);
    print("rules, bytes a command beside the document",
          (run(with(check, {file})).bytes - run(with(destroys, {file})).bytes) / lines, 400);
    printTimes("`toveng check` of 200 files / of 100", with(check, set), with(check, {set.begin(), set.begin() + 100}),
               2.2);
    printTimes("`toveng import` of 300,000 lines / tclsh with empty procedures", with(import, {sdc}),
               {"tclsh", inputs::withEmptyProcedures(sdc)}, 1.5);
    print("`toveng import`, memory beyond 16 MiB / its file",
          (run(with(import, {sdc})).bytes - 16 * mebibyte) / static_cast<double>(std::filesystem::file_size(sdc)), 6);
    printTimes("`toveng import`, a `foreach` of 100,000 / of 50,000", with(import, {inputs::loopFile(100'000)}),
               with(import, {inputs::loopFile(50'000)}), 2.2);
    return 0;
}
