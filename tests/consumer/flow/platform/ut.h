#pragma once
#include <cstddef>

// The utility library of some flow.
#define FLOW_API __attribute__((visibility("default")))
FLOW_API char const* neoform(char const* format, ...);
FLOW_API int ut_stricmp(char const* a, char const* b);
FLOW_API int ut_strincmp(char const* a, char const* b, std::size_t count);
