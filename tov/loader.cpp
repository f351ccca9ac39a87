// A constraint file, line by line, white space at both ends of a line dropped:
//
//   file      = { line }
//   line      = attribute | [ "#disable " ] command | comment | ""
//   attribute = "#attribute" text text text text text [ "-disable" | ignored word ]
//   command   = keyword ...             the class of the command reads it
//   comment   = any other text
//
// The commands and the attributes form two sections, in any order, which may alternate. A comment belongs to the
// section in which it is found.

#include "tov/loader_p.h"

#include <string>

#include "tov/constraint_line_p.h"
#include "tov/document_lists_p.h"
#include "tov/file_headers_p.h"
#include "tov/io/error_text_p.h"
#include "tov/io/file_p.h"
#include "tov/io/line_reader_p.h"

namespace kiri::tov::impl_detail {

namespace {

void eraseFirst(std::string& text, std::string_view part) {
    std::size_t const at = text.find(part);
    if (at != std::string::npos) text.erase(at, part.size());
}

// Puts the lines of a file into a document.
class DocumentFiller {
public:
    explicit DocumentFiller(TOV& document) : document_(document) {}

    Result add(std::string_view rawLine) {
        ConstraintLine const line(rawLine);
        if (line.kind == nullptr) {
            if (!line.text.empty()) addComment(line.text);
            return {};
        }
        std::unique_ptr<TovCmd> cmd;
        Result result = line.makeCommand(cmd);
        if (cmd == nullptr) return result;
        DocumentLists::of(document_).append(*line.kind, std::move(cmd));
        enterSection(line.kind->list == TOVCMD_ATTRIBUTE);
        return result;
    }

    void finish() {
        flushComments();
        for (std::string* text : {&document_.sdcCommentText, &document_.attributeCommentText}) {
            eraseFirst(*text, sdcHeader);
            eraseFirst(*text, attributeHeader);
        }
    }

private:
    // The text grows only once per line, so there are never three copies of a long one.
    void addComment(std::string_view line) {
        std::size_t const size = pendingComments_.size() + line.size() + 1;
        if (size > pendingComments_.capacity()) pendingComments_.reserve(size);
        pendingComments_.append(line) += '\n';
    }

    void enterSection(bool attributes) {
        if (inAttributes_ != attributes) flushComments();
        inAttributes_ = attributes;
    }

    // Moves the comments read so far to the section in which they were found.
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

Result readTovFile(TOV& document, char const* path, TovProgress const& progress) {
    File file;
    Result result = openForReading(path, file);
    if (!result.ok()) return result;
    document.sdcCommentText.clear();
    document.attributeCommentText.clear();
    ProgressMeter meter(progress, bytesLeft(file));
    LineReader lines(file, &meter);
    DocumentFiller filler(document);
    // A line that a command refuses ends the reading; what precedes it is kept.
    for (std::string_view line; result.ok() && lines.next(line);) result = filler.add(line);
    result.setLine(lines.number());
    if (result.ok()) result = lines.takeResult();
    filler.finish();
    if (result.ok() && !meter.stopped()) meter.finish();
    if (!meter.stopped()) return result;
    emptyDocument(document);
    meter.rethrow();
    return stoppedLoad();
}

void emptyDocument(TOV& document) {
    document.reset();
    document.sdcCommentText.clear();
    document.attributeCommentText.clear();
}

}  // namespace kiri::tov::impl_detail
