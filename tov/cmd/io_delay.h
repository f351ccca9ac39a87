#pragma once

#include <string>

#include "tov/cmd/cmd.h"

namespace kiri::tov {

/// What input and output delays share: the external delay at ports relative to a clock.
class TOVENG_API TovCmdIODelay : public TovCmd {
public:
    /// `label` and `note` may be null.
    TovCmdIODelay(float delay, char const* label, char* note);
    /// Copies a database record.
    explicit TovCmdIODelay(taDciSynIo* record);
    /// Reads a line (null reads as ""); accepts either keyword.
    explicit TovCmdIODelay(std::string const& line) : TovCmdIODelay(line.c_str()) {}
    explicit TovCmdIODelay(char const* line);
    ~TovCmdIODelay() override;

    float delay = 0;               ///< nanoseconds
    bool max = false;              ///< the delay is a maximum
    bool min = false;              ///< the delay is a minimum
    std::string label;             ///< free text; never written
    ppStlList<taDciObj*> clock;    ///< owned
    ppStlList<taDciObj*> objects;  ///< owned
};

/// "set_input_delay".
class TOVENG_API TovCmdInputDelay : public TovCmdIODelay {
public:
    using TovCmdIODelay::TovCmdIODelay;
    std::string toSaveString(TOV* document) override;
    /// Appends the line that this class saves to `line`.
    void appendSaveString(std::string& line) const;
};

/// "set_output_delay".
class TOVENG_API TovCmdOutputDelay : public TovCmdIODelay {
public:
    using TovCmdIODelay::TovCmdIODelay;
    std::string toSaveString(TOV* document) override;
    /// Appends the line that this class saves to `line`.
    void appendSaveString(std::string& line) const;
};

}  // namespace kiri::tov
