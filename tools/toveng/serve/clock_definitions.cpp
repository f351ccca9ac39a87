#include "serve/clock_definitions.h"

#include <algorithm>
#include <stdexcept>

#include "serve/line_words.h"
#include "tov/cmd/references.h"
#include "tov/make_command.h"

using namespace kiri::tov;

namespace tool::lsp {

namespace {

std::unique_ptr<TovCmd> commandOf(std::string_view line) {
    try {
        return makeCommand(std::string(line));
    } catch (std::out_of_range const&) {
        return nullptr;  // a waveform without edges ends the load
    }
}

bool isTarget(Word const& word) {
    return word.kind == WordKind::name && word.role == nullptr;
}

char joined(char c) {
    return c == '.' ? '/' : c;
}

}  // namespace

std::optional<ClockDefinition> clockIn(std::string_view line, std::size_t number) {
    if (line.find("create_") == std::string_view::npos) return {};
    std::unique_ptr<TovCmd> const cmd = commandOf(line);
    if (cmd == nullptr) return {};
    ClockDefinition clock;
    clock.name = definedClock(*cmd);
    if (clock.name.empty()) return {};
    clock.line = number;
    clock.isEnabled = cmd->enabled;
    LineWords const words = wordsOf(line);
    // The last name counts, or without a name the first word of the last target.
    Word const* place = nullptr;
    for (Word const& word : words.words) {
        if (word.text != clock.name) continue;
        if (word.kind == WordKind::clockName) {
            clock.hasName = true;
            place = &word;
        } else if (!clock.hasName && isTarget(word)) {
            place = &word;
        }
    }
    clock.begin = place == nullptr ? 0 : place->begin;
    clock.end = place == nullptr ? line.size() : place->end;
    return clock;
}

std::vector<ClockDefinition> clocksIn(Text const& text) {
    std::vector<ClockDefinition> clocks;
    for (std::size_t i = 0; i < text.lineCount(); ++i) {
        if (std::optional<ClockDefinition> clock = clockIn(text.line(i), i)) clocks.push_back(std::move(*clock));
    }
    return clocks;
}

std::vector<ClockDefinition> clocksIn(SetFile const& file) {
    std::vector<ClockDefinition> clocks;
    for (std::size_t i = 0; i < file.lines.size(); ++i) {
        if (std::optional<ClockDefinition> clock = clockIn(file.lines[i], i)) clocks.push_back(std::move(*clock));
    }
    return clocks;
}

std::vector<SetFile const*> filesBeside(Workspace const& workspace, OpenDocument const& document) {
    std::vector<SetFile const*> files;
    for (SetFile const& file : workspace.files) {
        if (file.path != document.path) files.push_back(&file);
    }
    return files;
}

bool isPattern(std::string_view word) {
    return word.find_first_of("*?\\") != std::string_view::npos;
}

bool standsFor(std::string_view word, std::string_view name) {
    constexpr std::size_t none = std::string_view::npos;
    std::size_t at = 0;
    std::size_t in = 0;
    std::size_t star = none;    // the last '*', where the search continues
    std::size_t starIn = none;  // the name's part that it leaves
    while (in < name.size() || at < word.size()) {
        if (at < word.size() && word[at] == '*') {
            star = ++at;
            starIn = in;
            continue;
        }
        bool const isEscape = at < word.size() && word[at] == '\\';
        std::size_t const next = at + (isEscape ? 1 : 0);
        if (isEscape && next == word.size()) {
            ++at;  // a trailing '\' is dropped
            continue;
        }
        bool const fits = in < name.size() && next < word.size() &&
                          ((!isEscape && word[next] == '?') || joined(word[next]) == joined(name[in]));
        if (fits) {
            at = next + 1;
            ++in;
            continue;
        }
        if (star == none || starIn >= name.size()) return false;
        at = star;
        in = ++starIn;
    }
    return true;
}

}  // namespace tool::lsp
