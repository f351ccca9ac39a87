#pragma once

#include <string>
#include <string_view>

namespace kiri::tov {

/// What a stopped load tells.
inline constexpr char stoppedText[] = "The caller stopped the load";

/// The system's words for an errno, in English whatever the locale is.
std::string systemText(int error);

/// A text as users get it: one line of UTF-8, at most 1,000 bytes. Control characters and what is no UTF-8 become "?".
/// The middle of a longer text is left out.
std::string errorText(std::string_view text);

}  // namespace kiri::tov
