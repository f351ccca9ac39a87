#pragma once

#include <string>

#include "tov/cmd/cmd.h"

namespace kiri::tov {

/// "#attribute": an HDL attribute of five texts, which the library does not interpret.
class TOVENG_API TovCmdAttr : public TovCmd {
public:
    /// Takes the five texts.
    TovCmdAttr(std::string text1, std::string text2, std::string text3, std::string text4, std::string text5);
    /// Reads the five words after the first one (null reads as ""); missing ones stay empty. Enabled unless the seventh
    /// and last word is "-disable".
    explicit TovCmdAttr(std::string const& line) : TovCmdAttr(line.c_str()) {}
    explicit TovCmdAttr(char const* line);

    /// Tabs separate the fields; a disabled attribute ends in "-disable" and has no prefix.
    std::string toSaveString(TOV* document) override;
    /// Appends the line that this class saves to `line`.
    void appendSaveString(std::string& line) const;

    // Usually the kind of object, the object, the name of the attribute, its value, and the value's type.
    std::string text1;
    std::string text2;
    std::string text3;
    std::string text4;
    std::string text5;
};

}  // namespace kiri::tov
