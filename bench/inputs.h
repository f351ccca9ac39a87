#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace inputs {

/// The order of the lines in a file; the lines themselves are the same.
enum class Order {
    saved,     ///< kind by kind, as a save writes them
    periodic,  ///< the kinds repeat after 100 lines
    random     ///< random runs of lines of a kind, the same in each run of the program
};

/// Writes a constraint file and returns its path: mixed lines of all kinds as in large designs, mostly delays and
/// exceptions. Files are written once and kept in the temporary folder of the run.
std::string constraintFile(std::size_t lines, Order order = Order::periodic);

/// Consistent constraints, in which a check finds nothing: clocks, delays and exceptions, each with its own objects.
std::string soundFile(std::size_t lines);

/// Only the lines of one kind of the mix: lines number `kind`, `kind` + 100 and so on.
std::string linesOfKind(std::size_t kind, std::size_t lines);

/// A file of copies of a line.
std::string copies(std::string const& line, std::size_t lines);

/// A line with that many names, and then mixed lines.
std::string longLineFirst(std::size_t names, std::size_t lines);

/// The length of the longest line of a file.
std::size_t longestLine(std::string const& path);

/// One line with that many names.
std::string oneLineOfNames(std::size_t names);

/// Lines with the names in0, in1 and so on.
std::string growingNames(std::size_t lines);

/// The mixed lines as a Tcl script of SDC, and a script that sources another with an empty procedure for each command.
std::string sdcFile(std::size_t lines);
std::string withEmptyProcedures(std::string const& path);

/// A Tcl script with a loop of that many passes, each of which creates a constraint.
std::string loopFile(std::size_t passes);

/// The lines of soundFile() in that many files.
std::vector<std::string> fileSet(std::size_t files, std::size_t lines);

/// A design dump of that many instances, and of ports, nets, clocks, views, memories and multipliers in proportion. The
/// cell of number I is u_core_<I mod 97>.u_blk_<I mod 13>.inst_<I> (in the file "top." precedes it), of a random type
/// that is the same in each run. It has the pins CK, D_<I>[<I mod 8>], A1 and Q, the bus D_<I> and the net net_<I>:
/// only the bus and the net have names of their own.
std::string designDump(std::size_t instances);

/// A constraint file of exceptions between pins and cells of designDump(instances), all of which exist. Every tenth
/// line has its own pattern.
std::string exceptionsOf(std::size_t instances, std::size_t lines);

}  // namespace inputs
