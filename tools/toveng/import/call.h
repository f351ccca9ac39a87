#pragma once

#include <tcl.h>

#include <optional>
#include <set>
#include <string>
#include <vector>

#include "references.h"
#include "sdc_options.h"

namespace tool::sdc {

/// A time unit: `value * multiply / divide` is in nanoseconds.
struct TimeUnit {
    std::string name = "ns";
    double multiply = 1;
    double divide = 1;
};

/// Parses a unit such as "ns", "1ps" or "10.0ps". Returns nothing for any other text.
std::optional<TimeUnit> timeUnitOf(std::string_view text);

/// Why lines cannot hold a call: the option concerned, and a reason.
struct NotHeld {
    std::string option;
    std::string reason;
};

/// A number and its text.
struct Number {
    std::string text;
    double value;  ///< times are in nanoseconds
};

/// A call of one of the nine commands, with the values of its options.
struct Call {
    Command command;
    std::optional<Number> period, dutyCycle;
    std::optional<Number> value;  ///< a delay or a number of cycles
    std::optional<Number> divideBy, multiplyBy;
    std::vector<Number> waveform;
    std::string name;
    bool exclusive = false, asynchronous = false;
    bool max = false, min = false;
    std::vector<Object> source, masterClock, clock, from, to, through;
    std::vector<Object> targets;  ///< the targets of a clock, or the objects of a delay
    std::vector<std::vector<Object>> groups;
    std::vector<std::string> dropped;  ///< options that --drop leaves out
};

/// Reads a call. Throws NotHeld if the format cannot hold it.
Call readCall(Command command, int objc, Tcl_Obj* const objv[], TimeUnit const& unit,
              std::set<std::string> const& drop);

/// Returns the lines of a call, each with its line feed, and appends the texts of rounded numbers. Throws NotHeld.
std::string linesOf(Call const& call, std::vector<std::string>& rounded);

}  // namespace tool::sdc
