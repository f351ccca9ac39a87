#pragma once

#include <string>
#include <string_view>

namespace kiri::tov::impl_detail {

/// The error of a stopped load.
inline constexpr char stoppedText[] = "The caller stopped the load";

/// The error of a check that its visitor stopped.
inline constexpr char stoppedCheckText[] = "The caller stopped the check";

/// Returns the system's text for an errno, in English whatever the locale is.
std::string systemText(int error);

/// Returns a text for users: one line of UTF-8, at most 1,000 bytes. Control characters and invalid UTF-8 become "?".
/// Leaves out the middle of a longer text.
std::string errorText(std::string_view text);

/// Returns bytes of a file as UTF-8: valid UTF-8 as it is, anything else read as Latin-1.
std::string utf8Of(std::string_view bytes);

/// Returns words of a file for a message, in UTF-8 between back quotes. Of a text longer than 200 bytes the start, and
/// "...". The tabs between the texts of an attribute become blanks.
std::string quoted(std::string_view words);

}  // namespace kiri::tov::impl_detail
