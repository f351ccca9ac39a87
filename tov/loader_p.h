#pragma once

#include "tov/base/progress.h"
#include "tov/base/result_p.h"
#include "tov/tov.h"

namespace kiri::tov::impl_detail {

/// Reads a file into a document, see TOV::parseTovFile. Fails if the file is not read to its end. If `progress` stops
/// it, empties the document and rethrows the exception of `progress`, if any.
Result readTovFile(TOV& document, char const* path, TovProgress const& progress);

/// Leaves a document as after its construction.
void emptyDocument(TOV& document);

}  // namespace kiri::tov::impl_detail
