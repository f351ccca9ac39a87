#pragma once

#include <exception>
#include <string>

#include "tov/base/progress.h"
#include "tov/tov.h"

namespace kiri::tov::impl_detail {

/// How a file was read.
struct ReadOutcome {
    std::string problem;         // why it was not read to its end, in one line; empty if it was
    bool stopped = false;        // by `progress`
    std::exception_ptr refusal;  // the exception of the line that ended the reading

    void rethrow() const {
        if (refusal != nullptr) std::rethrow_exception(refusal);
    }
};

/// Reads a file into a document, see TOV::parseTovFile. When `progress` stops it, empties the document and rethrows
/// an exception of `progress`.
ReadOutcome readTovFile(TOV& document, char const* path, TovProgress const& progress);

/// Leaves a document as after its construction.
void emptyDocument(TOV& document);

}  // namespace kiri::tov::impl_detail
