#pragma once

/// Marks what the library exports; everything else is hidden.
#define TOVENG_API __attribute__((visibility("default")))

#ifdef _GLIBCXX_DEBUG
namespace kiri::tov {

/// Only a library that is itself built with _GLIBCXX_DEBUG defines this. The standard containers of that mode have a
/// different layout, so a program built with it must not link with any other library.
extern TOVENG_API char const builtWithGlibcxxDebug;

namespace {
[[gnu::used]] char const* const needsGlibcxxDebug = &builtWithGlibcxxDebug;
}

}  // namespace kiri::tov
#endif
