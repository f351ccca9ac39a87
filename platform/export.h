#ifndef TOVENG_PLATFORM_EXPORT_H
#define TOVENG_PLATFORM_EXPORT_H

/// Marks what the library exports; everything else is hidden.
#define TOVENG_API __attribute__((visibility("default")))

#endif
