// Tells what a load and a save of a constraint file would not keep, and which names the design does not have, in the
// form in which compilers tell their errors. Names in commands that are switched off are not looked up.
//
//   check_constraints FILE [DUMP]
//
// Exit status: 0 without findings, 1 with findings, 2 if something cannot be read.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "../common/cut.h"
#include "../common/design_names.h"
#include "../common/progress_bar.h"
#include "tov/check.h"
#include "tov/make_command.h"

using namespace kiri::tov;

namespace {

constexpr std::size_t textShown = 200;
// The nearest name is looked for among all names of the design, so not for each of a great many.
constexpr int suggestionsAtMost = 100;

struct Message {
    std::size_t line;
    std::string text;
};

struct Missing {
    std::size_t line;
    DesignNames::Missing name;
};

/// Looks up what the commands of a file refer to.
class Lookup {
public:
    explicit Lookup(TovDesign const& design) : names_(design) {}

    void read(std::size_t line, std::string const& text) {
        std::unique_ptr<TovCmd> const cmd = makeCommand(text);
        if (cmd == nullptr || !cmd->enabled) return;
        names_.addClockOf(*cmd);
        for (DesignNames::Missing& name : names_.missingIn(*cmd)) missing_.push_back({line, std::move(name)});
    }

    /// Appends a message for each name that neither the design nor the file has.
    void report(std::vector<Message>& messages) {
        int suggestions = 0;
        for (auto const& [line, missing] : missing_) {
            auto const& [type, name] = missing;
            // A clock may be defined after it is used.
            if (names_.has(type, name)) continue;
            std::string text = std::string("no such ") + DesignNames::titleOf(type) + ": " + cut(name, textShown);
            std::string const nearest = suggestions++ < suggestionsAtMost ? names_.nearest(type, name) : "";
            if (!nearest.empty()) text += "; is it " + nearest + "?";
            messages.push_back({line, std::move(text)});
        }
    }

private:
    DesignNames names_;
    std::vector<Missing> missing_;
};

// Reads the file line by line. False if it cannot be read.
bool checkFile(char const* path, Lookup* lookup, std::vector<Message>& messages) {
    std::ifstream file(path, std::ios::binary);
    if (!file) return false;
    std::error_code none;
    std::uint64_t const size =
        std::filesystem::is_regular_file(path, none) ? std::filesystem::file_size(path, none) : 0;
    TovProgress const progress = progressBar();
    std::uint64_t read = 0;
    std::size_t number = 0;
    for (std::string line; std::getline(file, line);) {
        ++number;
        read += line.size() + 1;
        if (progress && number % 10'000 == 0) progress(std::min(read, size), size);
        bool ends = false;
        for (TovFinding const& finding : checkTovLine(line)) {
            messages.push_back({number, std::string(titleOf(finding.kind)) + ": " + cut(finding.text, textShown)});
            ends = finding.kind == TOVFINDING_ENDS_LOAD;
        }
        if (ends) break;
        if (lookup != nullptr) lookup->read(number, line);
    }
    if (progress) progress(size, size);
    return !file.bad();
}

int check(char const* path, char const* dump) {
    std::vector<Message> messages;
    std::unique_ptr<Lookup> lookup;
    if (dump != nullptr) {
        TovDesign design;
        std::string error;
        if (!design.load(dump, progressBar(), &error)) {
            std::fprintf(stderr, "%s: %s\n", dump, error.c_str());
            return 2;
        }
        if (!error.empty()) std::fprintf(stderr, "%s: not read whole: %s\n", dump, error.c_str());
        lookup = std::make_unique<Lookup>(design);
    }
    if (!checkFile(path, lookup.get(), messages)) {
        std::fprintf(stderr, "%s: cannot be read\n", path);
        return 2;
    }
    if (lookup != nullptr) lookup->report(messages);
    std::stable_sort(messages.begin(), messages.end(),
                     [](Message const& a, Message const& b) { return a.line < b.line; });
    for (Message const& message : messages) std::printf("%s:%zu: %s\n", path, message.line, message.text.c_str());
    return messages.empty() ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2 && argc != 3) {
        std::fprintf(stderr, "usage: check_constraints FILE [DUMP]\n");
        return 2;
    }
    try {
        return check(argv[1], argc == 3 ? argv[2] : nullptr);
    } catch (std::exception const& error) {
        std::fprintf(stderr, "%s: %s\n", argv[1], error.what());
        return 2;
    }
}
