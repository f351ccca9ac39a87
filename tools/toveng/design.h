#pragma once

#include <memory>
#include <string>

#include "platform/dci.h"
#include "tov/design/design.h"
#include "tov/names/design_names.h"

namespace tool {

/// A design, ready for questions.
struct Design {
    /// Loads the dump; throws Trouble unless it was read completely.
    explicit Design(std::string const& dump);

    kiri::tov::TovDesign design;
    std::unique_ptr<kiri::tov::TovDesignNames const> names;
};

/// "port", "pin", "net", "cell" or "clock"; "object" for any other type.
char const* titleOf(taDciObjTyp type);

}  // namespace tool
