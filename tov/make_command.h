#pragma once

#include <memory>
#include <string>

#include "platform/export.h"
#include "tov/cmd/cmd.h"
#include "tov/tov.h"

namespace kiri::tov {

/// Makes the command of a line as a load does: the keyword determines its class, and it is enabled unless it follows
/// "#disable " or is an attribute that ends in "-disable". Returns null for every other line, and for an attribute line
/// without six or seven words. `list`, unless null, becomes the list to which a load would add the command, or
/// TOVCMD_NONE. Throws TovMissingValue as TovCmdClockDef does. The caller owns the command. Any number of threads may
/// call it at once.
TOVENG_API std::unique_ptr<TovCmd> makeCommand(std::string const& line, TOVCMD_TYPE* list = nullptr);

}  // namespace kiri::tov
