// A constraint file, line by line, white space at both ends of a line dropped:
//
//   file      = { line }
//   line      = attribute | [ "#disable " ] command | comment | ""
//   attribute = "#attribute" text text text text text [ "-disable" | ignored word ]
//   command   = keyword ...             the class of the command reads it
//   comment   = any other text
//
// The commands and the attributes are two sections, in any order and as often as they come. A comment belongs
// to the section in which it stands.

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

#include "tov/cmd/commands.h"
#include "tov/cmd_list.h"
#include "tov/input_file.h"
#include "tov/line_reader.h"
#include "tov/text.h"
#include "tov/tokenizer.h"
#include "tov/tov.h"

namespace kiri::tov {

namespace {

struct CommandKind {
    std::string_view keyword;
    TOVCMD_TYPE list;
    std::unique_ptr<TovCmd> (*make)(std::string_view line);
};

template <class Cmd>
std::unique_ptr<TovCmd> make(std::string_view line) {
    return std::make_unique<Cmd>(line);
}

// A line is the command whose keyword it begins with, whatever follows the keyword.
constexpr CommandKind commandKinds[] = {
    {"create_clock", TOVCMD_CLOCK, make<TovCmdClockDef>},
    {"create_generated_clock", TOVCMD_GENCLOCK, make<TovCmdGenClockDef>},
    {"set_clock_groups", TOVCMD_CLOCKGROUP, make<TovCmdClockGroupDef>},
    {"set_input_delay", TOVCMD_INPUTDELAY, make<TovCmdInputDelay>},
    {"set_output_delay", TOVCMD_OUTPUTDELAY, make<TovCmdOutputDelay>},
    {"set_false_path", TOVCMD_FALSEPATH, make<TovCmdFalsePath>},
    {"set_max_delay", TOVCMD_MAXDELAY, make<TovCmdMaxDelay>},
    {"set_min_delay", TOVCMD_MINDELAY, make<TovCmdMinDelay>},
    {"set_multicycle_path", TOVCMD_MULTICYCLE, make<TovCmdMultiPath>},
};

constexpr std::string_view attributeKeyword = "#attribute";

// Reads an attribute line; null unless it has six or seven words. Only the exact seventh word disables it.
std::unique_ptr<TovCmd> makeAttribute(std::string_view line) {
    std::string_view words[8];
    std::size_t count = 0;
    WordCursor cursor(line);
    while (count < std::size(words) && cursor.next(words[count])) ++count;
    if (count != 6 && count != 7) return nullptr;
    auto cmd = std::make_unique<TovCmdAttr>(std::string(words[1]), std::string(words[2]), std::string(words[3]),
                                            std::string(words[4]), std::string(words[5]));
    cmd->enabled = !(count == 7 && words[6] == disableOption);
    return cmd;
}

void eraseFirst(std::string& text, std::string const& part) {
    std::size_t const at = text.find(part);
    if (at != std::string::npos) text.erase(at, part.size());
}

// Puts the lines of a file into a document.
class FileParser {
public:
    explicit FileParser(TOV& document) : document_(document) {}

    void readLine(std::string_view rawLine) {
        std::string_view const line = trim(rawLine.substr(0, rawLine.find('\0')));
        if (line.empty()) return;
        if (startsWith(line, attributeKeyword)) {
            readAttribute(line);
        } else if (!readCommand(line)) {
            pendingComments_.append(line).append("\n");
        }
    }

    void finish() {
        flushComments();
        for (std::string* text : {&document_.sdcCommentText, &document_.attributeCommentText}) {
            eraseFirst(*text, document_.sdcComments());
            eraseFirst(*text, document_.attributeComments());
        }
    }

private:
    void readAttribute(std::string_view line) {
        std::unique_ptr<TovCmd> cmd = makeAttribute(line);
        if (cmd == nullptr) return;
        append(*document_.getTovCmdList(TOVCMD_ATTRIBUTE), std::move(cmd));
        enterSection(true);
    }

    bool readCommand(std::string_view line) {
        bool const disabled = startsWith(line, disablePrefix);
        std::string_view const text = disabled ? trimFront(line.substr(disablePrefix.size())) : line;
        for (CommandKind const& kind : commandKinds) {
            if (!startsWith(text, kind.keyword)) continue;
            std::unique_ptr<TovCmd> cmd = kind.make(text);
            cmd->enabled = !disabled;
            append(*document_.getTovCmdList(kind.list), std::move(cmd));
            enterSection(false);
            return true;
        }
        return false;
    }

    void enterSection(bool attributes) {
        if (inAttributes_ != attributes) flushComments();
        inAttributes_ = attributes;
    }

    // Gives the comments read so far to the section in which they stood.
    void flushComments() {
        std::string& text = inAttributes_ ? document_.attributeCommentText : document_.sdcCommentText;
        if (text.empty()) {
            text.swap(pendingComments_);
        } else {
            text += pendingComments_;
            pendingComments_.clear();
        }
    }

    TOV& document_;
    std::string pendingComments_;
    bool inAttributes_ = false;
};

}  // namespace

bool TOV::load(char const* path) {
    if (!InputFile::exists(path)) return false;
    reset();
    // A file that cannot be opened gives no command: callers test existence only.
    parseTovFile(path);
    return true;
}

bool TOV::parseTovFile(char const* path) {
    if (!InputFile::exists(path)) return false;
    // The other lists keep their commands: the file's are added to them.
    freeCommands(*getTovCmdList(TOVCMD_ATTRIBUTE));
    InputFile file(path);
    if (!file.isOpen()) return false;
    sdcCommentText.clear();
    attributeCommentText.clear();
    FileParser parser(*this);
    LineReader lines(file);
    try {
        for (std::string_view line; lines.next(line);) parser.readLine(line);
    } catch (std::out_of_range const&) {
        // The line that a command refuses ends the reading; what stood before it is kept.
        parser.finish();
        throw;
    }
    parser.finish();
    return !lines.failed();
}

}  // namespace kiri::tov
