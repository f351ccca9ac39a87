#pragma once

/// Marks what the library exports; everything else is hidden.
#define TOVENG_API __attribute__((visibility("default")))
