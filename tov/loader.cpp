// A constraint file, line by line, white space at both ends of a line dropped:
//
//   file      = { line }
//   line      = attribute | [ "#disable " ] command | comment | ""
//   attribute = "#attribute" text text text text text [ "-disable" | ignored word ]
//   command   = keyword ...             the class of the command reads it
//   comment   = any other text
//
// The commands and the attributes are two sections, in any order and as often as they come. A comment belongs to the
// section in which it stands.

#include "tov/loader.h"

#include <cerrno>
#include <stdexcept>
#include <string>

#include "tov/edit.h"
#include "tov/io/error_text.h"
#include "tov/io/file.h"
#include "tov/io/line_reader.h"
#include "tov/text.h"
#include "tov/tokenizer.h"
#include "tov/writer.h"

namespace kiri::tov {

namespace {

// A line is of the kind whose keyword it begins with, whatever follows the keyword.
CommandKind const* findKind(std::string_view text) {
    for (CommandKind const& kind : commandKinds) {
        if (startsWith(text, kind.keyword)) return &kind;
    }
    return nullptr;
}

// An attribute line with another number of words is dropped.
bool hasSixOrSevenWords(std::string_view line) {
    int count = 0;
    WordCursor words(line);
    for (std::string_view word; count < 8 && words.next(word);) ++count;
    return count == 6 || count == 7;
}

void eraseFirst(std::string& text, std::string_view part) {
    std::size_t const at = text.find(part);
    if (at != std::string::npos) text.erase(at, part.size());
}

// Puts the lines of a file into a document.
class FileParser {
public:
    explicit FileParser(TOV& document) : document_(document) {}

    void readLine(char const* rawLine) {
        FileLine const line(rawLine);
        if (line.kind == nullptr) {
            if (!line.text.empty()) pendingComments_.append(line.text).append("\n");
        } else if (std::unique_ptr<TovCmd> cmd = line.makeCommand()) {
            addCommand(document_, line.kind->list, std::move(cmd));
            enterSection(line.kind->list == TOVCMD_ATTRIBUTE);
        }
    }

    void finish() {
        flushComments();
        for (std::string* text : {&document_.sdcCommentText, &document_.attributeCommentText}) {
            eraseFirst(*text, sdcHeader);
            eraseFirst(*text, attributeHeader);
        }
    }

private:
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

FileLine::FileLine(char const* line) : text(trim(line)) {
    disabled = startsWith(text, disablePrefix);
    std::string_view const keywordOn = disabled ? trimFront(text.substr(disablePrefix.size())) : text;
    kind = findKind(keywordOn);
    // Attributes have a mark of their own: "#disable " before one makes it a comment.
    if (disabled && kind != nullptr && kind->list == TOVCMD_ATTRIBUTE) kind = nullptr;
    if (kind != nullptr) command = keywordOn;
}

std::unique_ptr<TovCmd> FileLine::makeCommand() const {
    if (kind == nullptr) return nullptr;
    if (kind->list == TOVCMD_ATTRIBUTE) return hasSixOrSevenWords(command) ? kind->read(command.data()) : nullptr;
    std::unique_ptr<TovCmd> cmd = kind->read(command.data());
    cmd->enabled = !disabled;
    return cmd;
}

ReadOutcome readTovFile(TOV& document, char const* path, TovProgress const& progress) {
    ReadOutcome outcome;
    File const file = openForReading(path);
    if (!file.isOpen()) {
        outcome.problem = systemText(errno);
        return outcome;
    }
    document.sdcCommentText.clear();
    document.attributeCommentText.clear();
    ProgressMeter meter(progress, bytesLeft(file));
    LineReader lines(file, &meter);
    FileParser parser(document);
    try {
        for (std::string_view line; lines.next(line);) parser.readLine(line.data());
    } catch (std::out_of_range const&) {
        // The line that a command refuses ends the reading; what came before it is kept.
        outcome.refusal = std::current_exception();
        outcome.problem = "Line " + std::to_string(lines.number()) + ": create_clock ends in -waveform";
    }
    if (lines.error() != 0) outcome.problem = systemText(lines.error());
    parser.finish();
    if (outcome.problem.empty() && !meter.stopped()) meter.finish();
    if (!meter.stopped()) return outcome;
    emptyDocument(document);
    meter.rethrow();
    outcome.problem = stoppedText;
    outcome.stopped = true;
    return outcome;
}

void emptyDocument(TOV& document) {
    document.reset();
    document.sdcCommentText.clear();
    document.attributeCommentText.clear();
}

}  // namespace kiri::tov
