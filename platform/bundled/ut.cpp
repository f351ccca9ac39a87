#include "platform/ut.h"

#include <charconv>
#include <clocale>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <memory>
#include <new>
#include <string>
#include <string_view>

#include <locale.h>

namespace {

// Longest "%f" of a double: 309 digits, the sign, the point and six decimals.
constexpr std::size_t numberSize = 320;

void appendInteger(std::string& out, int value) {
    char digits[16];
    out.append(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
}

void appendFixed(std::string& out, double value) {
    char digits[numberSize];
    // Six decimals of a number that a float holds are exact as an integer of millionths while that fits 53
    // bits; rint rounds a half to even, as printf does.
    double const millionths = value * 1e6;
    if (static_cast<double>(static_cast<float>(value)) == value && std::fabs(millionths) < 9e15) {
        auto const count = static_cast<unsigned long long>(std::rint(std::fabs(millionths)));
        char* end = std::to_chars(digits, digits + sizeof digits, count / 1000000).ptr;
        *end = '.';
        auto fraction = static_cast<unsigned>(count % 1000000);
        for (int i = 6; i > 0; --i, fraction /= 10) end[i] = static_cast<char>('0' + fraction % 10);
        if (std::signbit(value)) out += '-';
        out.append(digits, end + 7);
        return;
    }
    out.append(digits, std::to_chars(digits, digits + sizeof digits, value, std::chars_format::fixed, 6).ptr);
}

// Formats what holds only text, "%%", "%d" and "%f". False at any other conversion.
bool formatCommon(std::string& out, char const* format, std::va_list arguments) {
    for (std::string_view rest = format; !rest.empty();) {
        std::size_t const percent = rest.find('%');
        out.append(rest.substr(0, percent));
        if (percent == std::string_view::npos) break;
        char const conversion = percent + 1 < rest.size() ? rest[percent + 1] : '\0';
        if (conversion == 'd') {
            appendInteger(out, va_arg(arguments, int));
        } else if (conversion == 'f') {
            appendFixed(out, va_arg(arguments, double));
        } else if (conversion == '%') {
            out += '%';
        } else {
            return false;
        }
        rest.remove_prefix(percent + 2);
    }
    return true;
}

// Formats in the "C" locale of the calling thread alone. False for a format that printf refuses.
bool formatAny(std::string& out, char const* format, std::va_list arguments) {
    struct ThreadLocale {
        locale_t const plain = ::newlocale(LC_ALL_MASK, "C", nullptr);
        locale_t const before = ::uselocale(plain);
        ~ThreadLocale() {
            ::uselocale(before);
            ::freelocale(plain);
        }
    } const locale;
    std::va_list again;
    va_copy(again, arguments);
    int const size = std::vsnprintf(nullptr, 0, format, again);
    va_end(again);
    if (size < 0) return false;
    out.resize(static_cast<std::size_t>(size) + 1);
    std::vsnprintf(out.data(), out.size(), format, arguments);
    out.pop_back();
    return true;
}

int lower(char c) {
    return static_cast<unsigned char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
}

}  // namespace

char const* neoform(char const* format, ...) {
    thread_local std::string text;
    if (format == nullptr) return nullptr;
    std::va_list arguments;
    va_start(arguments, format);
    std::va_list again;
    va_copy(again, arguments);
    struct End {
        std::va_list& a;
        std::va_list& b;
        ~End() {
            va_end(a);
            va_end(b);
        }
    } const end{arguments, again};
    text.clear();
    if (formatCommon(text, format, arguments)) return text.c_str();
    text.clear();
    return formatAny(text, format, again) ? text.c_str() : nullptr;
}

int ut_stricmp(char const* a, char const* b) {
    return ut_strincmp(a, b, static_cast<std::size_t>(-1));
}

int ut_strincmp(char const* a, char const* b, std::size_t count) {
    if (a == nullptr) a = "";
    if (b == nullptr) b = "";
    for (std::size_t i = 0; i < count; ++i) {
        int const difference = lower(a[i]) - lower(b[i]);
        if (difference != 0 || a[i] == '\0') return difference;
    }
    return 0;
}
