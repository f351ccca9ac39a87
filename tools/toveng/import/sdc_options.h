#pragma once

#include <string>
#include <string_view>

namespace tool::sdc {

/// The commands that a constraint file holds; each is a bit.
enum Command : unsigned {
    createClock = 1,
    createGeneratedClock = 2,
    setClockGroups = 4,
    setInputDelay = 8,
    setOutputDelay = 16,
    setMaxDelay = 32,
    setMinDelay = 64,
    setFalsePath = 128,
    setMulticyclePath = 256,
};

struct CommandName {
    Command command;
    char const* name;
};
extern CommandName const commandNames[9];

/// What an option of SDC becomes.
enum class Becomes {
    nothing,  ///< changes no meaning: left out
    notHeld,  ///< the file format does not have it
    period,
    name,
    waveform,
    divideBy,
    multiplyBy,
    dutyCycle,
    source,
    masterClock,
    exclusive,
    asynchronous,
    group,
    clock,
    max,
    min,
    from,
    to,
    through,
};

/// An option that SDC gives to some commands.
struct SdcOption {
    unsigned commands;
    char const* name;  ///< with its dash
    bool takesValue;
    Becomes becomes;
};

/// Returns the option of a command that a word means: one that it is, or the only one that begins with it. Null for any
/// other word.
SdcOption const* findOption(Command command, std::string_view word);

/// Returns whether an option may be dropped: it takes no value, the format does not have it, and it is not "hold". The
/// name comes without its dash.
bool isDroppable(std::string_view name);

/// Returns whether a word that begins with "-" is an option, not a number.
bool isOptionWord(std::string_view word);

}  // namespace tool::sdc
