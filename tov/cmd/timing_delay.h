#pragma once

#include <string>

#include "tov/cmd/cmd.h"

namespace kiri::tov {

/// What maximum and minimum delays share: a bound on the delay of paths.
class TOVENG_API TovCmdTimingDelay : public TovCmd {
public:
    /// `note` may be null.
    TovCmdTimingDelay(float delay, char* note);
    /// Copies a database record.
    explicit TovCmdTimingDelay(taDciSynMax* record);
    /// Reads a line (null reads as ""); either keyword is taken.
    explicit TovCmdTimingDelay(std::string const& line) : TovCmdTimingDelay(line.c_str()) {}
    explicit TovCmdTimingDelay(char const* line);
    ~TovCmdTimingDelay() override;

    float delay = 0;            ///< nanoseconds
    ppStlList<taDciObj*> from;  ///< owned
    ppStlList<taDciObj*> to;    ///< owned
};

/// "set_max_delay".
class TOVENG_API TovCmdMaxDelay : public TovCmdTimingDelay {
public:
    using TovCmdTimingDelay::TovCmdTimingDelay;
    std::string toSaveString(TOV* document) override;
    /// Appends the line that this class saves to `line`.
    void appendSaveString(std::string& line) const;
};

/// "set_min_delay".
class TOVENG_API TovCmdMinDelay : public TovCmdTimingDelay {
public:
    using TovCmdTimingDelay::TovCmdTimingDelay;
    std::string toSaveString(TOV* document) override;
    /// Appends the line that this class saves to `line`.
    void appendSaveString(std::string& line) const;
};

}  // namespace kiri::tov
