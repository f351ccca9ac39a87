#ifndef TOVENG_TOV_CMD_CLOCK_GROUP_DEF_H
#define TOVENG_TOV_CMD_CLOCK_GROUP_DEF_H

#include <string>
#include <string_view>
#include <vector>

#include "tov/cmd/cmd.h"

namespace kiri::tov {

/// "set_clock_groups": groups of clocks that are exclusive or asynchronous to each other.
class TOVENG_API TovCmdClockGroupDef : public TovCmd {
public:
    explicit TovCmdClockGroupDef(bool exclusive);
    /// Reads a line (null reads as ""); exclusive unless it holds "-asynchronous".
    explicit TovCmdClockGroupDef(std::string const& line);
    explicit TovCmdClockGroupDef(std::string_view line);
    explicit TovCmdClockGroupDef(char const* line);
    /// Copies a database record.
    explicit TovCmdClockGroupDef(taDciSynClkGroup* record);
    ~TovCmdClockGroupDef() override;

    /// Deletes all groups.
    void reset();

    std::string toSaveString(TOV* document) override;

    bool exclusive = true;                      ///< false: asynchronous
    std::vector<ppStlList<taDciObj*>*> groups;  ///< owned with their references; entries may be null

private:
    TovCmdClockGroupDef() = default;
};

}  // namespace kiri::tov

#endif
