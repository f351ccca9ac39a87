#pragma once

#include <cstddef>
#include <string>

#include "tov/cmd/cmd.h"

namespace kiri::tov {

/// "set_false_path": paths that are not timed.
class TOVENG_API TovCmdFalsePath : public TovCmd {
public:
    /// Makes a command with a note, which may be null. A non-const text is a note, not a line:
    /// TovCmdFalsePath(text.data()) does not read a line if `text` is a non-const std::string.
    explicit TovCmdFalsePath(char* note);
    explicit TovCmdFalsePath(std::nullptr_t note);
    /// Copies a database record.
    explicit TovCmdFalsePath(taDciSynFalse* record);
    /// Reads a line (null reads as ""); unknown words are skipped.
    explicit TovCmdFalsePath(std::string const& line) : TovCmdFalsePath(line.c_str()) {}
    explicit TovCmdFalsePath(char const* line);
    ~TovCmdFalsePath() override;

    std::string toSaveString(TOV* document) override;
    /// Appends the line that this class saves to `line`.
    void appendSaveString(std::string& line) const;

    ppStlList<taDciObj*> from;     ///< owned
    ppStlList<taDciObj*> to;       ///< owned
    ppStlList<taDciObj*> through;  ///< owned; written only if from and to are empty
};

}  // namespace kiri::tov
