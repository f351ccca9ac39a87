#pragma once

#include <string_view>

namespace kiri::tov {

/// Reads a number as strtod does in the "C" locale, characters after it ignored, and narrows it to float. The first
/// character, or the second after a minus sign, must be a digit; otherwise false, and `out` untouched.
bool parseFloatValue(std::string_view text, float& out);

/// Truncates; out of range saturates; NaN gives 0.
int truncateToInt(float value);

/// A thousandth of a database number: picoseconds to nanoseconds, or thousandths of the file's time unit to that unit.
float fromThousandths(int value);

}  // namespace kiri::tov
