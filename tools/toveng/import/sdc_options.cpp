#include "sdc_options.h"

#include <algorithm>
#include <iterator>

namespace tool::sdc {

CommandName const commandNames[9] = {
    {createClock, "create_clock"},
    {createGeneratedClock, "create_generated_clock"},
    {setClockGroups, "set_clock_groups"},
    {setInputDelay, "set_input_delay"},
    {setOutputDelay, "set_output_delay"},
    {setMaxDelay, "set_max_delay"},
    {setMinDelay, "set_min_delay"},
    {setFalsePath, "set_false_path"},
    {setMulticyclePath, "set_multicycle_path"},
};

namespace {

constexpr unsigned clocks = createClock | createGeneratedClock;
constexpr unsigned ioDelays = setInputDelay | setOutputDelay;
constexpr unsigned pathDelays = setMaxDelay | setMinDelay;
constexpr unsigned exceptions = setFalsePath | setMulticyclePath;
constexpr unsigned paths = pathDelays | exceptions;
constexpr unsigned all = clocks | setClockGroups | ioDelays | paths;

constexpr bool flag = false, value = true;

constexpr SdcOption options[] = {
    {all, "-comment", value, Becomes::nothing},
    {all, "-quiet", flag, Becomes::nothing},

    {clocks, "-name", value, Becomes::name},
    {clocks, "-add", flag, Becomes::notHeld},
    {createClock, "-period", value, Becomes::period},
    {createClock, "-waveform", value, Becomes::waveform},
    {createGeneratedClock, "-source", value, Becomes::source},
    {createGeneratedClock, "-master_clock", value, Becomes::masterClock},
    {createGeneratedClock, "-divide_by", value, Becomes::divideBy},
    {createGeneratedClock, "-multiply_by", value, Becomes::multiplyBy},
    {createGeneratedClock, "-duty_cycle", value, Becomes::dutyCycle},
    {createGeneratedClock, "-edges", value, Becomes::notHeld},
    {createGeneratedClock, "-edge_shift", value, Becomes::notHeld},
    {createGeneratedClock, "-invert", flag, Becomes::notHeld},
    {createGeneratedClock, "-combinational", flag, Becomes::notHeld},

    {setClockGroups, "-name", value, Becomes::nothing},
    {setClockGroups, "-group", value, Becomes::group},
    {setClockGroups, "-asynchronous", flag, Becomes::asynchronous},
    {setClockGroups, "-exclusive", flag, Becomes::exclusive},
    {setClockGroups, "-logically_exclusive", flag, Becomes::exclusive},
    {setClockGroups, "-physically_exclusive", flag, Becomes::exclusive},
    {setClockGroups, "-allow_paths", flag, Becomes::notHeld},

    {ioDelays, "-clock", value, Becomes::clock},
    {ioDelays, "-max", flag, Becomes::max},
    {ioDelays, "-min", flag, Becomes::min},
    {ioDelays, "-clock_fall", flag, Becomes::notHeld},
    {ioDelays, "-reference_pin", value, Becomes::notHeld},
    {ioDelays, "-level_sensitive", flag, Becomes::notHeld},
    {ioDelays, "-add_delay", flag, Becomes::notHeld},
    {ioDelays, "-network_latency_included", flag, Becomes::notHeld},
    {ioDelays, "-source_latency_included", flag, Becomes::notHeld},

    {paths, "-from", value, Becomes::from},
    {paths, "-to", value, Becomes::to},
    {setFalsePath, "-through", value, Becomes::through},
    {paths & ~unsigned{setFalsePath}, "-through", value, Becomes::notHeld},
    {paths, "-rise_from", value, Becomes::notHeld},
    {paths, "-fall_from", value, Becomes::notHeld},
    {paths, "-rise_to", value, Becomes::notHeld},
    {paths, "-fall_to", value, Becomes::notHeld},
    {paths, "-rise_through", value, Becomes::notHeld},
    {paths, "-fall_through", value, Becomes::notHeld},
    {pathDelays, "-ignore_clock_latency", flag, Becomes::notHeld},
    {paths, "-reset_path", flag, Becomes::notHeld},
    {exceptions, "-setup", flag, Becomes::notHeld},
    {exceptions, "-hold", flag, Becomes::notHeld},
    {setMulticyclePath, "-start", flag, Becomes::notHeld},
    {setMulticyclePath, "-end", flag, Becomes::notHeld},

    {ioDelays | paths, "-rise", flag, Becomes::notHeld},
    {ioDelays | paths, "-fall", flag, Becomes::notHeld},
};

}  // namespace

SdcOption const* findOption(Command command, std::string_view word) {
    SdcOption const* found = nullptr;
    std::size_t matches = 0;
    for (SdcOption const& option : options) {
        std::string_view const name = option.name;
        if ((option.commands & command) == 0 || name.substr(0, word.size()) != word) continue;
        if (name == word) return &option;
        found = &option;
        ++matches;
    }
    return matches == 1 && word.size() > 1 ? found : nullptr;
}

bool isDroppable(std::string_view name) {
    return name != "hold" && std::any_of(std::begin(options), std::end(options), [&](SdcOption const& option) {
               return option.becomes == Becomes::notHeld && !option.takesValue && name == option.name + 1;
           });
}

bool isOptionWord(std::string_view word) {
    if (word.size() < 2 || word[0] != '-') return false;
    return word.find_first_of("0123456789.", 1) != 1;
}

}  // namespace tool::sdc
