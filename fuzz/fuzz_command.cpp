// A line of a command whose class the first byte chooses: read, saved, and read again.

#include <memory>

#include "fuzz/settle.h"

namespace {

using namespace kiri::tov;

template <class Cmd>
std::unique_ptr<TovCmd> make(std::string const& line) {
    return std::make_unique<Cmd>(line);
}

struct {
    std::string keyword;
    std::unique_ptr<TovCmd> (*make)(std::string const& line);
} const kinds[] = {
    {"create_clock", make<TovCmdClockDef>},          {"create_generated_clock", make<TovCmdGenClockDef>},
    {"set_clock_groups", make<TovCmdClockGroupDef>}, {"set_input_delay", make<TovCmdInputDelay>},
    {"set_output_delay", make<TovCmdOutputDelay>},   {"set_max_delay", make<TovCmdMaxDelay>},
    {"set_min_delay", make<TovCmdMinDelay>},         {"set_multicycle_path", make<TovCmdMultiPath>},
    {"set_false_path", make<TovCmdFalsePath>},
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    if (size == 0) return 0;
    auto const& kind = kinds[data[0] % std::size(kinds)];
    std::string const text(reinterpret_cast<char const*>(data) + 1, size - 1);
    // With the top bit the text is the whole line, else what stands behind the keyword.
    std::string const line = (data[0] & 0x80) != 0 ? text : kind.keyword + " " + text;
    bool plain = false;
    auto const saved = [&](std::string const& from) {
        std::unique_ptr<TovCmd> const cmd = kind.make(from);
        bool const recognised = !cmd->enabled;
        cmd->enabled = true;
        plain = fuzz::isPlain(*cmd) && line.find('\0') == std::string::npos;
        std::string const result = cmd->toSaveString(nullptr);
        fuzz::require(result.compare(0, kind.keyword.size(), kind.keyword) == 0, "a line begins with its keyword",
                      result);
        cmd->enabled = false;
        fuzz::require(cmd->toSaveString(nullptr) == "#disable " + result, "a disabled command has its prefix", result);
        fuzz::require(recognised || result == kind.make("")->toSaveString(nullptr), "another line leaves no trace",
                      from);
        return result;
    };
    std::string first;
    try {
        first = saved(line);
    } catch (std::out_of_range const&) {
        fuzz::require(kind.keyword == "create_clock" && line.find("-waveform") != std::string::npos, "no exception",
                      line);
        return 0;
    }
    fuzz::requireSettled(first, plain, saved);
    return 0;
}
