#include "tov/cmd/number.h"

#include <locale.h>
#include <stdlib.h>

#include <charconv>
#include <cmath>
#include <limits>
#include <string>

namespace kiri::tov {

namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

// The forms that std::from_chars leaves out: hexadecimal numbers, and what no double holds.
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
    if (hexadecimal || std::from_chars(text.data(), text.data() + text.size(), value).ec != std::errc()) {
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

}  // namespace kiri::tov
