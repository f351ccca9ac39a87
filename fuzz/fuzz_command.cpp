// The line of a command, chosen by the first byte: read, saved, and read again.

#include <iterator>

#include "fuzz/settle.h"
#include "tov/cmd/command_kind_p.h"

namespace {

using namespace kiri::tov;
using namespace kiri::tov::impl_detail;

// The attributes come last, and are disabled in another way.
constexpr std::size_t timingKinds = std::size(commandKinds) - 1;

// The keyword and a text. Bit 7 of the choice joins them without a blank, bit 6 puts the options of the kind's sample
// between them.
std::string lineOf(CommandKind const& kind, unsigned choice, std::string const& text) {
    std::string const start((choice & 0x40U) != 0 ? kind.sample : kind.keyword);
    return start + ((choice & 0x80U) != 0 ? "" : " ") + text;
}

}  // namespace

void fuzz::run(std::string const& input) {
    if (input.empty()) return;
    auto const choice = static_cast<unsigned char>(input[0]);
    CommandKind const& kind = commandKinds[choice % timingKinds];
    std::string const keyword(kind.keyword);
    std::string const line = lineOf(kind, choice, input.substr(1, input.find_first_of("\r\n", 1) - 1));
    try {
        std::string const enabled = fuzz::savedAgain(line);
        std::string const disabled = fuzz::savedAgain("#disable " + line);
        std::size_t const at = enabled.find("\n" + keyword) + 1;
        fuzz::require(at > 0, "a line begins with its keyword", enabled);
        fuzz::require(std::string(enabled).insert(at, "#disable ") == disabled, "a disabled command has its prefix",
                      enabled);
        fuzz::requireSettled(enabled, fuzz::savedAgain);
    } catch (std::out_of_range const&) {
        fuzz::require(kind.list == TOVCMD_CLOCK && line.find("-waveform") != line.npos, "no exception", line);
    }
}
