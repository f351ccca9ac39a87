#pragma once

namespace kiri::tov {

/// The command lists of a document, in the order in which they are written.
enum TOVCMD_TYPE : int {
    TOVCMD_NONE = 0,         ///< no list
    TOVCMD_CLOCK = 1,        ///< TovCmdClockDef
    TOVCMD_GENCLOCK = 2,     ///< TovCmdGenClockDef
    TOVCMD_CLOCKGROUP = 3,   ///< TovCmdClockGroupDef
    TOVCMD_INPUTDELAY = 4,   ///< TovCmdInputDelay
    TOVCMD_OUTPUTDELAY = 5,  ///< TovCmdOutputDelay
    TOVCMD_MAXDELAY = 6,     ///< TovCmdMaxDelay
    TOVCMD_MINDELAY = 7,     ///< TovCmdMinDelay
    TOVCMD_MULTICYCLE = 8,   ///< TovCmdMultiPath
    TOVCMD_FALSEPATH = 9,    ///< TovCmdFalsePath
    TOVCMD_ATTRIBUTE = 10    ///< TovCmdAttr
};

}  // namespace kiri::tov
