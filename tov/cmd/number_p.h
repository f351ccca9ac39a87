#pragma once

#include <string_view>

namespace kiri::tov::impl_detail {

/// Reads a number as strtod does in the "C" locale, ignores the characters after it, and narrows it to float. Returns
/// false and leaves `out` as it was unless the first character, or the second after a minus sign, is a digit.
bool parseFloatValue(std::string_view text, float& out);

/// Returns whether a word begins with a number, which is what its commands take it for.
inline bool isNumber(std::string_view word) {
    float value = 0;
    return parseFloatValue(word, value);
}

/// Truncates; out of range saturates; NaN becomes 0.
int truncateToInt(float value);

/// Divides a database number by 1,000: picoseconds to nanoseconds, or thousandths of the file's time unit to that unit.
float fromThousandths(int value);

}  // namespace kiri::tov::impl_detail
