#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "platform/dci.h"

namespace inputs {

/// Writes a constraint file and returns its path: mixed lines of all kinds as large designs have them, mostly
/// delays and exceptions. Files are made once and kept in the temporary folder of the run.
std::string constraintFile(std::size_t lines);

/// Lines of one kind of the mix alone: its lines number `kind`, `kind` + 100 and so on.
std::string linesOfKind(std::size_t kind, std::size_t lines);

/// A line with that many names, before and after mixed lines.
std::string longLineFirst(std::size_t names, std::size_t lines);
std::string longLineLast(std::size_t names, std::size_t lines);

/// The length of the longest line of a file.
std::size_t longestLine(std::string const& path);

/// One line with that many names, and that many lines of one name each.
std::string oneLineOfNames(std::size_t names);
std::string linesOfOneName(std::size_t names);

/// A design dump of that many instances, each with four pins, a bus and a net of its own, and with clocks,
/// views, memories and multipliers in proportion.
std::string designDump(std::size_t instances);

/// A constraint database with as many records as constraintFile(lines) has commands.
std::unique_ptr<taDci> database(std::size_t lines);

}  // namespace inputs
