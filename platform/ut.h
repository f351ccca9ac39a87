#pragma once

#include <cstddef>

#include "platform/export.h"

/// Formats as printf does in the "C" locale, whatever the locale of the process is. The text belongs to the calling
/// thread: it is valid until the thread's next call, and must not be passed to that call. Returns null for a null or
/// malformed format. Throws std::bad_alloc when memory is short.
TOVENG_API char const* neoform(char const* format, ...);

/// Compares two texts as strcmp does, but ignores the case of the letters A to Z. Null reads as an empty text.
TOVENG_API int ut_stricmp(char const* a, char const* b);

/// Compares at most the first `count` characters as ut_stricmp does.
TOVENG_API int ut_strincmp(char const* a, char const* b, std::size_t count);
