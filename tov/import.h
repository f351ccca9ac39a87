#pragma once

#include "tov/tov.h"

namespace kiri::tov {

/// Adds the records of a database to a document, as TOV::loadTaObjects tells.
void importRecords(TOV& document, taDci const& db, bool ioEnabled);

}  // namespace kiri::tov
