#pragma once

#include <string>
#include <type_traits>
#include <vector>

#include "tov/cmd/cmd.h"

namespace kiri::tov {

/// "set_clock_groups": groups of clocks that are exclusive or asynchronous to each other.
class TOVENG_API TovCmdClockGroupDef : public TovCmd {
public:
    /// Makes a command without groups. Accepts only a bool: pointers and texts do not convert to one.
    template <class Bool, class = std::enable_if_t<std::is_same_v<Bool, bool>>>
    explicit TovCmdClockGroupDef(Bool exclusive_) : exclusive(exclusive_) {}
    /// Reads a line (null reads as ""); exclusive unless it has "-asynchronous".
    explicit TovCmdClockGroupDef(std::string const& line) : TovCmdClockGroupDef(line.c_str()) {}
    explicit TovCmdClockGroupDef(char const* line);
    /// Copies a database record.
    explicit TovCmdClockGroupDef(taDciSynClkGroup* record);
    ~TovCmdClockGroupDef() override;

    /// Deletes all groups.
    void reset();

    std::string toSaveString(TOV* document) override;
    /// Appends the line that this class saves to `line`.
    void appendSaveString(std::string& line) const;

    bool exclusive = true;                      ///< false: asynchronous
    std::vector<ppStlList<taDciObj*>*> groups;  ///< owned with their references; entries may be null
};

}  // namespace kiri::tov
