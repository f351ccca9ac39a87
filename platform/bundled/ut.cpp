#include "platform/ut.h"

#include <locale.h>
#include <pthread.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string_view>
#include <utility>

namespace {

// NOLINTBEGIN(cppcoreguidelines-no-malloc): the key frees by free()
/// The text that neoform returns, one for each thread. It is not a thread-local variable: the first use of one may end
/// the process when memory is short, and its destructor would prevent the library from being unloaded. A key has
/// neither problem, because its destructor is free() itself. When the library is unloaded, the texts of other threads
/// leak.
class ThreadText {
public:
    ThreadText() noexcept : made_(::pthread_key_create(&key_, std::free) == 0) {}
    ~ThreadText() {
        if (!std::exchange(made_, false)) return;
        std::free(::pthread_getspecific(key_));
        ::pthread_key_delete(key_);
    }
    ThreadText(ThreadText const&) = delete;
    ThreadText& operator=(ThreadText const&) = delete;

    /// Returns the calling thread's text, grown to at least `size` bytes.
    char* reserve(std::size_t size) {
        auto* block = made_ ? static_cast<Block*>(::pthread_getspecific(key_)) : nullptr;
        if (block == nullptr || block->size < size) block = grow(block, std::max(size, usualSize));
        return block->text();
    }

private:
    struct Block {
        std::size_t size;
        char* text() { return reinterpret_cast<char*>(this + 1); }
    };
    static constexpr std::size_t usualSize = 512;

    Block* grow(Block* old, std::size_t size) {
        if (!made_) throw std::bad_alloc();
        void* const grown = std::malloc(sizeof(Block) + size);
        if (grown == nullptr || ::pthread_setspecific(key_, grown) != 0) {
            std::free(grown);
            throw std::bad_alloc();
        }
        auto* const block = new (grown) Block{size};
        if (old != nullptr) std::memcpy(block->text(), old->text(), old->size);
        std::free(old);
        return block;
    }

    pthread_key_t key_{};
    bool made_;
};
// NOLINTEND(cppcoreguidelines-no-malloc)

ThreadText threadText;

// Longest "%f" of a double: 309 digits, the sign, the point and six decimals.
constexpr std::size_t numberSize = 320;

char* writeFixed(char* to, double value) {
    // The six decimals of a float are exact as an integer of millionths as long as that fits 53 bits; rint rounds half
    // to even, as printf does. See docs/performance.md.
    double const millionths = value * 1e6;
    if (static_cast<double>(static_cast<float>(value)) != value || !(std::fabs(millionths) < 9e15)) {
        return std::to_chars(to, to + numberSize, value, std::chars_format::fixed, 6).ptr;
    }
    auto const count = static_cast<unsigned long long>(std::rint(std::fabs(millionths)));
    if (std::signbit(value)) *to++ = '-';
    char* const point = std::to_chars(to, to + numberSize, count / 1000000).ptr;
    *point = '.';
    auto fraction = static_cast<unsigned>(count % 1000000);
    for (int i = 6; i > 0; --i, fraction /= 10) point[i] = static_cast<char>('0' + fraction % 10);
    return point + 7;
}

/// Formats text, "%%", "%d" and "%f". Returns null at any other conversion.
char const* formatCommon(char const* format, std::va_list arguments) {
    std::size_t size = 0;
    char* text = nullptr;
    for (std::string_view rest = format;;) {
        std::string_view const plain = rest.substr(0, rest.find('%'));
        text = threadText.reserve(size + plain.size() + numberSize);
        std::memcpy(text + size, plain.data(), plain.size());
        size += plain.size();
        rest.remove_prefix(plain.size());
        if (rest.empty()) break;
        char* to = text + size;
        switch (rest.size() > 1 ? rest[1] : '\0') {
            case 'd':
                to = std::to_chars(to, to + numberSize, va_arg(arguments, int)).ptr;
                break;
            case 'f':
                to = writeFixed(to, va_arg(arguments, double));
                break;
            case '%':
                *to++ = '%';
                break;
            default:
                return nullptr;
        }
        size = static_cast<std::size_t>(to - text);
        rest.remove_prefix(2);
    }
    text[size] = '\0';
    return text;
}

/// Formats in the "C" locale, set for the calling thread only. Returns null for a format that printf refuses.
char const* formatAny(char const* format, std::va_list arguments) {
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
    if (size < 0) return nullptr;
    char* const text = threadText.reserve(static_cast<std::size_t>(size) + 1);
    std::vsnprintf(text, static_cast<std::size_t>(size) + 1, format, arguments);
    return text;
}

int lower(char c) {
    return static_cast<unsigned char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
}

}  // namespace

char const* neoform(char const* format, ...) {
    if (format == nullptr) return nullptr;
    std::va_list arguments;
    va_start(arguments, format);
    struct End {
        std::va_list& list;
        ~End() { va_end(list); }
    } const end{arguments};
    std::va_list common;
    va_copy(common, arguments);
    struct End const endCommon{common};
    char const* const text = formatCommon(format, common);
    return text != nullptr ? text : formatAny(format, arguments);
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
