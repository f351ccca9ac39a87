#pragma once

#include <string>

#include "tov/cmd/cmd.h"

namespace kiri::tov {

/// "create_generated_clock": a clock derived from another one. Its numbers are kept as texts.
class TOVENG_API TovCmdGenClockDef : public TovCmd {
public:
    /// Reads a line (null reads as ""); numbers become normal decimal texts.
    explicit TovCmdGenClockDef(std::string const& line) : TovCmdGenClockDef(line.c_str()) {}
    explicit TovCmdGenClockDef(char const* line);
    /// Copies a database record; keeps the texts of its numbers as they are.
    explicit TovCmdGenClockDef(taDciSynClk* record);
    /// `name` and `text` (the note) may be null.
    TovCmdGenClockDef(char const* name, char const* text);
    ~TovCmdGenClockDef() override;

    std::string toSaveString(TOV* document) override;
    /// Appends the line that this class saves to `line`.
    void appendSaveString(std::string& line) const;

    ppStlList<taDciObj*> sources;      ///< owned
    ppStlList<taDciObj*> masterClock;  ///< owned
    std::string divideBy;              ///< an integer; empty when none; not written unless it is a number
    std::string multiplyBy;            ///< as divideBy
    std::string dutyCycle;             ///< percent, with six decimals; otherwise as divideBy
    std::string clockName;             ///< empty when none
    ppStlList<taDciObj*> targets;      ///< owned
};

}  // namespace kiri::tov
