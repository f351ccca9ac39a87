// The line of a command, which the first byte chooses: read, saved, and read again.

#include <iterator>

#include "fuzz/settle.h"

namespace {

std::string const keywords[] = {
    "create_clock",  "create_generated_clock", "set_clock_groups",    "set_input_delay", "set_output_delay",
    "set_max_delay", "set_min_delay",          "set_multicycle_path", "set_false_path",
};

}  // namespace

void fuzz::run(std::string const& input) {
    if (input.empty()) return;
    auto const choice = static_cast<unsigned char>(input[0]);
    std::string const& keyword = keywords[choice % std::size(keywords)];
    std::string const text = input.substr(1, input.find_first_of("\r\n", 1) - 1);
    // The top bit joins the keyword and the text without a blank.
    std::string const line = keyword + ((choice & 0x80) != 0 ? "" : " ") + text;
    try {
        std::string const enabled = fuzz::savedAgain(line);
        std::string const disabled = fuzz::savedAgain("#disable " + line);
        std::size_t const at = enabled.find("\n" + keyword) + 1;
        fuzz::require(at > 0, "a line begins with its keyword", enabled);
        fuzz::require(std::string(enabled).insert(at, "#disable ") == disabled, "a disabled command has its prefix",
                      enabled);
        fuzz::requireSettled(enabled, fuzz::savedAgain);
    } catch (std::out_of_range const&) {
        fuzz::require(keyword == "create_clock" && line.find("-waveform") != line.npos, "no exception", line);
    }
}
