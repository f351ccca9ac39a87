#pragma once

#include <string>

#include "tov/cmd/cmd.h"

namespace kiri::tov {

/// "set_multicycle_path": paths that may take several clock cycles.
class TOVENG_API TovCmdMultiPath : public TovCmd {
public:
    /// `note` may be null.
    TovCmdMultiPath(int multiplier, char* note);
    /// Copies a database record; truncates its multiplier.
    explicit TovCmdMultiPath(taDciSynMcyc* record);
    /// Reads a line (null reads as ""); unknown words are skipped.
    explicit TovCmdMultiPath(std::string const& line) : TovCmdMultiPath(line.c_str()) {}
    explicit TovCmdMultiPath(char const* line);
    ~TovCmdMultiPath() override;

    std::string toSaveString(TOV* document) override;
    /// Appends the line that this class saves to `line`.
    void appendSaveString(std::string& line) const;

    int multiplier = 0;         ///< clock cycles
    ppStlList<taDciObj*> from;  ///< owned
    ppStlList<taDciObj*> to;    ///< owned
};

}  // namespace kiri::tov
