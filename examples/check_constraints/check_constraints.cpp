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
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "../cut.h"
#include "../progress_bar.h"
#include "design_names.h"
#include "tov/check.h"
#include "tov/cmd/commands.h"
#include "tov/cmd/references.h"

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
    taDciObjTyp type;
    std::string name;
};

char const* titleOf(TovFindingKind kind) {
    switch (kind) {
        case TOVFINDING_DROPPED_LINE:
            return "dropped";
        case TOVFINDING_UNKNOWN_COMMAND:
            return "unknown command";
        case TOVFINDING_LOST_WORD:
            return "lost";
        case TOVFINDING_CHANGED_VALUE:
            return "changed or added";
        case TOVFINDING_MISTAKEN_WORD:
            return "taken as a name";
        case TOVFINDING_ENDS_LOAD:
            return "ends the load";
    }
    return "";
}

template <class Cmd>
std::unique_ptr<TovCmd> make(std::string const& line) {
    return std::make_unique<Cmd>(line);
}

// The command of a line that begins with a keyword; null for other lines.
std::unique_ptr<TovCmd> commandOf(std::string const& line) {
    constexpr std::pair<std::string_view, std::unique_ptr<TovCmd> (*)(std::string const&)> commands[] = {
        {"create_clock", make<TovCmdClockDef>},          {"create_generated_clock", make<TovCmdGenClockDef>},
        {"set_clock_groups", make<TovCmdClockGroupDef>}, {"set_input_delay", make<TovCmdInputDelay>},
        {"set_output_delay", make<TovCmdOutputDelay>},   {"set_max_delay", make<TovCmdMaxDelay>},
        {"set_min_delay", make<TovCmdMinDelay>},         {"set_multicycle_path", make<TovCmdMultiPath>},
        {"set_false_path", make<TovCmdFalsePath>},
    };
    std::size_t const first = line.find_first_not_of(" \t\r\v\f");
    if (first == std::string::npos) return nullptr;
    for (auto const& [keyword, makeCommand] : commands) {
        if (line.compare(first, keyword.size(), keyword) == 0) return makeCommand(line);
    }
    return nullptr;
}

std::string firstName(ppStlList<taDciObj*> const& targets) {
    return targets.empty() || targets.front()->name == nullptr ? std::string() : targets.front()->name;
}

// Words of a plain name: "{a b}" is a list of two.
std::vector<std::string> wordsOf(std::string const& name) {
    std::vector<std::string> words;
    constexpr char const* separators = " \t{}\"";
    for (std::size_t at = name.find_first_not_of(separators); at < name.size();) {
        std::size_t const end = std::min(name.find_first_of(separators, at), name.size());
        words.push_back(name.substr(at, end - at));
        at = name.find_first_not_of(separators, end);
    }
    return words;
}

/// Looks up what the commands of a file refer to.
class Lookup {
public:
    explicit Lookup(TovDesign const& design) : names_(design) {}

    void read(std::size_t line, std::string const& text) {
        std::unique_ptr<TovCmd> const cmd = commandOf(text);
        if (cmd == nullptr) return;
        if (auto const* clock = dynamic_cast<TovCmdClockDef*>(cmd.get())) define(clock->clockName, clock->targets);
        if (auto const* clock = dynamic_cast<TovCmdGenClockDef*>(cmd.get())) define(clock->clockName, clock->targets);
        std::set<std::pair<taDciObjTyp, std::string>> seen;
        for (TovReferences const& references : referencesOf(*cmd)) {
            for (taDciObj const* object : *references.list) {
                std::string const name = object->name == nullptr ? "" : object->name;
                if (!seen.emplace(object->type, name).second || names_.has(object->type, name)) continue;
                if (object->type != taDciObjName) missing_.push_back({line, object->type, name});
                if (object->type == taDciObjName) readPlainName(line, name);
            }
        }
    }

    /// Appends a message for each name that neither the design nor the file has.
    void report(std::vector<Message>& messages) {
        int suggestions = 0;
        for (auto const& [line, type, name] : missing_) {
            // A clock may be defined after it is used.
            if (names_.has(type, name)) continue;
            std::string text = std::string("no such ") + DesignNames::titleOf(type) + ": " + cut(name, textShown);
            std::string const nearest = suggestions++ < suggestionsAtMost ? names_.nearest(type, name) : "";
            if (!nearest.empty()) text += "; is it " + nearest + "?";
            messages.push_back({line, std::move(text)});
        }
    }

private:
    // A clock without a name has that of its first target.
    void define(std::string const& name, ppStlList<taDciObj*> const& targets) {
        names_.addClock(name.empty() ? firstName(targets) : name);
    }

    void readPlainName(std::size_t line, std::string const& name) {
        for (std::string& word : wordsOf(name)) {
            if (!names_.has(taDciObjName, word)) missing_.push_back({line, taDciObjName, std::move(word)});
        }
    }

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
