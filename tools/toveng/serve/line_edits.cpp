#include "serve/line_edits.h"

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <vector>

#include "analysis/keywords.h"
#include "serve/line_words.h"
#include "tov/check.h"
#include "tov/cmd/references.h"
#include "tov/make_command.h"

using namespace kiri::tov;

namespace tool::lsp {

namespace {

constexpr std::string_view disableOption = "-disable";

/// A parsed line of a constraint file.
struct Read {
    explicit Read(std::string_view text) : line(text) {
        try {
            cmd = makeCommand(line, &list);
        } catch (std::out_of_range const&) {
            cmd = nullptr;  // the line ends a load
        }
        if (cmd != nullptr) findings = checkTovLine(line);
    }

    std::string line;
    TOVCMD_TYPE list = TOVCMD_NONE;
    std::unique_ptr<TovCmd> cmd;
    std::vector<TovFinding> findings;
};

using Objects = ppStlList<taDciObj*>;

/// Puts one object of each list into the command, in turn.
class Splitter {
public:
    explicit Splitter(TovCmd& cmd) : cmd_(cmd) {
        for (TovReferences const& references : referencesOf(cmd)) {
            lists_.push_back(references.list);
            all_.emplace_back();
            all_.back().swap(*references.list);
        }
    }
    ~Splitter() {
        for (std::size_t i = 0; i < lists_.size(); ++i) all_[i].swap(*lists_[i]);
    }
    Splitter(Splitter const&) = delete;
    Splitter& operator=(Splitter const&) = delete;

    std::size_t lineCount() const {
        std::size_t count = 1;
        for (Objects const& objects : all_)
            count = std::min(count * std::max<std::size_t>(objects.size(), 1), limit + 1);
        return count;
    }

    std::vector<std::string> lines() {
        std::vector<std::string> lines;
        addLines(0, lines);
        lines.erase(std::unique(lines.begin(), lines.end()), lines.end());
        return lines;
    }

    static constexpr std::size_t limit = 1000;

private:
    void addLines(std::size_t list, std::vector<std::string>& lines) {
        if (list == lists_.size()) return lines.push_back(cmd_.toSaveString(nullptr));
        if (all_[list].empty()) return addLines(list + 1, lines);
        for (taDciObj* object : all_[list]) {
            lists_[list]->push_back(object);
            addLines(list + 1, lines);
            lists_[list]->clear();
        }
    }

    TovCmd& cmd_;
    std::vector<Objects*> lists_;
    std::vector<Objects> all_;
};

// The words that a check compares, in byte order.
std::vector<std::string> sortedWords(std::string_view text) {
    std::vector<std::string> words;
    for (std::size_t at = text.find_first_not_of(separators); at < text.size();
         at = text.find_first_not_of(separators, at)) {
        std::size_t const end = std::min(text.find_first_of(separators, at), text.size());
        words.emplace_back(text.substr(at, end - at));
        at = end;
    }
    std::sort(words.begin(), words.end());
    return words;
}

// What a save drops from the command's lists.
std::string laterObjects(TovCmd& cmd) {
    std::string names;
    for (TovReferences const& references : referencesOf(cmd)) {
        bool isFirst = true;
        for (taDciObj const* object : *references.list) {
            if (!isFirst && object->name != nullptr) names.append(object->name).append(1, ' ');
            isFirst = false;
        }
    }
    return names;
}

bool isKept(std::string const& line) {
    return checkTovLine(line).empty();
}

}  // namespace

std::optional<std::string> withOtherState(std::string_view line, bool& isOn) {
    Read const read(line);
    if (read.cmd == nullptr) return {};
    isOn = read.cmd->enabled;
    std::string_view const text = trim(line);
    if (read.list != TOVCMD_ATTRIBUTE) {
        if (isOn) return std::string(disablePrefix).append(text);
        return std::string(trim(text.substr(disablePrefix.size())));
    }
    if (isOn) return std::string(text).append("\t").append(disableOption);
    return std::string(trim(text.substr(0, text.rfind(disableOption))));
}

std::optional<std::string> asSaved(std::string_view line) {
    Read const read(line);
    if (read.cmd == nullptr || !read.findings.empty()) return {};
    std::string saved = read.cmd->toSaveString(nullptr);
    if (saved == line) return {};
    return saved;
}

std::optional<std::string> oneForEachObject(std::string_view line) {
    Read const read(line);
    // A clock on several objects is one clock; groups keep all of their clocks.
    bool const isPath = read.list > TOVCMD_CLOCKGROUP && read.list < TOVCMD_ATTRIBUTE;
    bool const losesObjects = read.findings.size() == 1 && read.findings.front().kind == TOVFINDING_LOST_WORD;
    if (read.cmd == nullptr || !isPath || !losesObjects) return {};
    if (sortedWords(read.findings.front().text) != sortedWords(laterObjects(*read.cmd))) return {};
    Splitter splitter(*read.cmd);
    if (splitter.lineCount() > Splitter::limit) return {};
    std::vector<std::string> const lines = splitter.lines();
    if (lines.size() < 2 || !std::all_of(lines.begin(), lines.end(), isKept)) return {};
    std::string text;
    for (std::string const& each : lines) text.append(text.empty() ? "" : "\n").append(each);
    return text;
}

std::string joinedLines(std::vector<std::string_view> const& lines) {
    std::string text;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        std::string_view line = lines[i];
        bool const goesOn = i + 1 < lines.size();
        if (goesOn && !line.empty() && line.back() == '\\') line.remove_suffix(1);
        if (goesOn) line = line.substr(0, line.find_last_not_of(whiteSpace) + 1);
        if (i > 0) line.remove_prefix(std::min(line.find_first_not_of(whiteSpace), line.size()));
        if (i > 0 && !line.empty()) text += ' ';
        text += line;
    }
    return text;
}

}  // namespace tool::lsp
