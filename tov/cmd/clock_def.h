#pragma once

#include <string>
#include <vector>

#include "tov/cmd/cmd.h"

namespace kiri::tov {

/// "create_clock": a primary clock and the objects it is defined on.
class TOVENG_API TovCmdClockDef : public TovCmd {
public:
    /// Reads a line (null reads as ""); TovMissingValue if "-waveform" is its last word.
    explicit TovCmdClockDef(std::string const& line) : TovCmdClockDef(line.c_str()) {}
    explicit TovCmdClockDef(char const* line);
    /// Copies a database record.
    explicit TovCmdClockDef(taDciSynClk* record);
    /// `name` and `text` (the note) may be null.
    TovCmdClockDef(float period, char const* name, char const* text);
    ~TovCmdClockDef() override;

    std::string toSaveString(TOV* document) override;
    /// Appends the line that this class saves to `line`.
    void appendSaveString(std::string& line) const;

    float period = 0;              ///< in the file's time unit
    std::vector<float> waveform;   ///< edge times in the file's time unit
    std::string clockName;         ///< empty when none
    ppStlList<taDciObj*> targets;  ///< owned
};

}  // namespace kiri::tov
