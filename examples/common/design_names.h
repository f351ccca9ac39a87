#ifndef COMMON_DESIGN_NAMES_H
#define COMMON_DESIGN_NAMES_H

#include <string>
#include <unordered_set>
#include <vector>

#include "tov/cmd/commands.h"
#include "tov/design/design.h"
#include "tov/tov.h"

/// The names by which constraints may refer to the objects of a design. A vector "data[7:0]" is known as "data", too; a
/// net also by its hierarchy name; a cell with "." or "/" between its parts; a pin by its cell, "/" and its name; a
/// clock also if the document defines it. A name with "*" or "?" is known if one of these fits it.
class DesignNames {
public:
    explicit DesignNames(kiri::tov::TovDesign const& design);

    /// Takes over the clocks that the document defines, in place of those before.
    void takeClocksOf(kiri::tov::TOV& document);

    /// The names in a command that the design does not have.
    std::vector<std::string> unknownIn(kiri::tov::TovCmd& cmd) const;

private:
    using Names = std::unordered_set<std::string>;

    bool knows(std::string const& name, taDciObjTyp type, bool isClock) const;

    Names ports_, nets_, cells_, pins_, clocks_, documentClocks_;
};

#endif
