#include "platform/ut.h"

#include <strings.h>

#include <cstdarg>
#include <cstdio>

// Marks each formatted text, to show which formatter made it.
char const* neoform(char const* format, ...) {
    static thread_local char text[512] = "<flow>";
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text + 6, sizeof text - 6, format, arguments);
    va_end(arguments);
    return text;
}
int ut_stricmp(char const* a, char const* b) {
    return ::strcasecmp(a, b);
}
int ut_strincmp(char const* a, char const* b, std::size_t count) {
    return ::strncasecmp(a, b, count);
}
