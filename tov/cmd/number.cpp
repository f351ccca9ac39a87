#include "tov/cmd/number_p.h"

#include <locale.h>
#include <stdlib.h>

#include <charconv>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <limits>
#include <string>

namespace kiri::tov::impl_detail {

namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

// Reads a short decimal number. Its digits and the power of ten are exact as doubles, so the quotient is rounded only
// once, as by strtod. Returns false for other forms.
bool readShortDecimal(std::string_view text, double& value) {
    constexpr double powersOfTen[] = {1,   1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                      1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
    std::int64_t digits = 0;
    std::size_t count = 0;
    std::size_t integers = std::string_view::npos;
    for (char c : text) {
        if (isDigit(c)) {
            digits = 10 * digits + (c - '0');
            if (++count == std::size(powersOfTen)) return false;
        } else if (c == '.' && integers == std::string_view::npos) {
            integers = count;
        } else if (c == 'e' || c == 'E' || c == 'x' || c == 'X') {
            return false;
        } else {
            break;
        }
    }
    value = static_cast<double>(digits) / powersOfTen[integers == std::string_view::npos ? 0 : count - integers];
    return true;
}

// Reads what std::from_chars does not: hexadecimal numbers, and numbers beyond the range of a double.
double strtodInPlainLocale(std::string_view text) {
    std::string const copy(text);
    locale_t const plain = ::newlocale(LC_ALL_MASK, "C", nullptr);
    double const value = ::strtod_l(copy.c_str(), nullptr, plain);
    ::freelocale(plain);
    return value;
}

}  // namespace

bool parseFloatValue(std::string_view text, float& out) {
    bool const negative = !text.empty() && text.front() == '-';
    std::string_view const digits = text.substr(negative ? 1 : 0);
    if (digits.empty() || !isDigit(digits.front())) return false;
    bool const hexadecimal = digits.size() > 1 && digits[0] == '0' && (digits[1] == 'x' || digits[1] == 'X');
    double value = 0;
    if (readShortDecimal(digits, value)) {
        if (negative) value = -value;
    } else if (hexadecimal || std::from_chars(text.data(), text.data() + text.size(), value).ec != std::errc()) {
        value = strtodInPlainLocale(text);
    }
    out = static_cast<float>(value);
    return true;
}

int truncateToInt(float value) {
    using Limits = std::numeric_limits<int>;
    if (std::isnan(value)) return 0;
    if (value >= static_cast<float>(Limits::max())) return Limits::max();
    if (value <= static_cast<float>(Limits::min())) return Limits::min();
    return static_cast<int>(value);
}

float fromThousandths(int value) {
    return static_cast<float>(value / 1000.0);
}

}  // namespace kiri::tov::impl_detail
