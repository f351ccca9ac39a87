#pragma once

#include <string>
#include <string_view>

#include "tov/base/result_p.h"

namespace kiri::tov::impl_detail {

/// Returns the system's message for an errno value, in English whatever the locale is.
std::string systemText(int error);

/// The failure of a system call: an errno value and its message.
Result systemFailure(int error);

/// The failure of a load that the caller stopped.
Result stoppedLoad();

/// Returns a text for users: one line of UTF-8, at most 1,000 bytes. Control characters and invalid UTF-8 become "?".
/// Leaves out the middle of a longer text.
std::string errorText(std::string_view text);

/// Returns bytes of a file as UTF-8: valid UTF-8 unchanged, anything else converted from Latin-1.
std::string utf8Of(std::string_view bytes);

/// Returns words of a file for a message, in UTF-8 between back quotes. Truncates a text longer than 200 bytes and
/// appends "...". The tabs between the texts of an attribute become blanks.
std::string quoted(std::string_view words);

}  // namespace kiri::tov::impl_detail
