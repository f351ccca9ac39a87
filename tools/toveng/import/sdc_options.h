#pragma once

#include <string>
#include <string_view>

namespace tool::sdc {

/// The nine commands of a constraint file; each is a bit.
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

/// What an SDC option becomes.
enum class Becomes {
    nothing,  ///< does not change the meaning: left out
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

/// An option of some SDC commands.
struct SdcOption {
    unsigned commands;
    char const* name;  ///< with its dash
    bool takesValue;
    Becomes becomes;
};

/// Returns the option of a command that a word names: an exact match, or the only option that begins with the word.
/// Null for any other word.
SdcOption const* findOption(Command command, std::string_view word);

/// Returns whether an option may be dropped: it takes no value, the format does not have it, and it is not "hold". The
/// name has no dash.
bool isDroppable(std::string_view name);

/// Returns whether a word that begins with "-" is an option, not a number.
bool isOptionWord(std::string_view word);

}  // namespace tool::sdc
