#include "serve/vocabulary.h"

#include <iterator>

namespace tool::lsp {

namespace {

constexpr CommandInfo commands[] = {
    {"create_clock", "-period NS [-waveform {RISE FALL}] [-name NAME] [OBJECT]",
     "Defines a clock: its period in ns, and the object where it enters the design"},
    {"create_generated_clock",
     "-source OBJECT [-divide_by N] [-multiply_by N] [-duty_cycle PERCENT] [-master_clock CLOCK] [-name NAME] OBJECT",
     "Defines a clock that the design derives from another clock"},
    {"set_clock_groups", "-asynchronous|-exclusive -group CLOCKS -group CLOCKS...",
     "Excludes the paths between groups of clocks from timing"},
    {"set_input_delay", "[-max] [-min] NS -clock CLOCK OBJECT",
     "Sets when data arrive at an input, in ns after a clock edge"},
    {"set_output_delay", "[-max] [-min] NS -clock CLOCK OBJECT",
     "Sets how long before a clock edge data must be at an output, in ns"},
    {"set_max_delay", "NS [-from OBJECT] [-to OBJECT]", "Sets the maximum delay of paths, in ns"},
    {"set_min_delay", "NS [-from OBJECT] [-to OBJECT]", "Sets the minimum delay of paths, in ns"},
    {"set_multicycle_path", "CYCLES [-from OBJECT] [-to OBJECT]", "Allows paths to take several clock cycles"},
    {"set_false_path", "[-from OBJECT] [-to OBJECT] | -through OBJECT", "Excludes paths from timing"},
    {"#attribute", "KIND OBJECT NAME VALUE TYPE [-disable]", "Sets an attribute of an object in the HDL source"},
    {"#disable", "COMMAND", "Disables a command but keeps it in the file"},
};

constexpr std::string_view endpointFrom = "The start of the paths: a port, pin, net, cell or clock",
                           endpointTo = "The end of the paths: a port, pin, net, cell or clock",
                           clockName = "The name of the clock; by default the name of its target";

constexpr OptionInfo options[] = {
    {"create_clock", "-period", Operand::number, "The period in ns"},
    {"create_clock", "-name", Operand::name, clockName},
    {"create_clock", "-waveform", Operand::edges,
     "The edge times in ns, a rising edge first; by default 0 and half the period"},
    {"create_generated_clock", "-name", Operand::name, clockName},
    {"create_generated_clock", "-source", Operand::objects, "Where the master clock arrives"},
    {"create_generated_clock", "-master_clock", Operand::clocks,
     "The master clock, if several clocks arrive at the source"},
    {"create_generated_clock", "-divide_by", Operand::number, "Divides the frequency by an integer"},
    {"create_generated_clock", "-multiply_by", Operand::number, "Multiplies the frequency by an integer"},
    {"create_generated_clock", "-duty_cycle", Operand::number, "How long the clock is high, in percent of the period"},
    {"set_clock_groups", "-asynchronous", Operand::none, "The clocks have no fixed phase relation"},
    {"set_clock_groups", "-exclusive", Operand::none, "The clocks are never active at the same time"},
    {"set_clock_groups", "-group", Operand::clocks, "The clocks of a group, as in [get_clocks {a b}]"},
    {"set_input_delay", "-clock", Operand::clocks, "The reference clock of the delay"},
    {"set_input_delay", "-max", Operand::none, "The delay is the latest arrival, for setup"},
    {"set_input_delay", "-min", Operand::none, "The delay is the earliest arrival, for hold"},
    {"set_output_delay", "-clock", Operand::clocks, "The reference clock of the delay"},
    {"set_output_delay", "-max", Operand::none, "The delay is the longest external delay, for setup"},
    {"set_output_delay", "-min", Operand::none, "The delay is the shortest external delay, for hold"},
    {"set_max_delay", "-from", Operand::objects, endpointFrom},
    {"set_max_delay", "-to", Operand::objects, endpointTo},
    {"set_min_delay", "-from", Operand::objects, endpointFrom},
    {"set_min_delay", "-to", Operand::objects, endpointTo},
    {"set_multicycle_path", "-from", Operand::objects, endpointFrom},
    {"set_multicycle_path", "-to", Operand::objects, endpointTo},
    {"set_false_path", "-from", Operand::objects, endpointFrom},
    {"set_false_path", "-to", Operand::objects, endpointTo},
    {"set_false_path", "-through", Operand::objects,
     "A point on the paths: a pin, net or cell; saved only without -from and -to"},
    {"#attribute", "-disable", Operand::none, "Disables the attribute but keeps it in the file"},
};

constexpr QueryInfo queries[] = {
    {"get_ports", taDciObjPort, "Ports of the design"},
    {"get_pins", taDciObjPin, "Pins of cells, as in u_core/u_reg/CK"},
    {"get_nets", taDciObjNet, "Nets of the design"},
    {"get_cells", taDciObjCell, "Cells of the design"},
    {"get_registers", taDciObjCell, "Registers of the design"},
    {"get_clocks", taDciObjClock, "Clocks, by their names"},
    {"all_inputs", taDciObjNone, "All input ports"},
    {"all_outputs", taDciObjNone, "All output ports"},
    {"all_clocks", taDciObjNone, "All clocks"},
    {"all_registers", taDciObjNone, "All registers"},
};

struct TypeTitle {
    taDciObjTyp type;
    std::string_view title;
};

constexpr TypeTitle typeTitles[] = {
    {taDciObjPort, "port"}, {taDciObjSourcePort, "port"}, {taDciObjPin, "pin"},   {taDciObjPin2, "pin"},
    {taDciObjNet, "net"},   {taDciObjSourceNet, "net"},   {taDciObjCell, "cell"}, {taDciObjClock, "clock"},
};

template <class Row, class Fits>
Row const* find(Row const* first, Row const* last, Fits fits) {
    for (; first != last; ++first) {
        if (fits(*first)) return first;
    }
    return nullptr;
}

}  // namespace

Rows<CommandInfo> commandInfos() {
    return {std::begin(commands), std::end(commands)};
}

Rows<OptionInfo> optionInfos() {
    return {std::begin(options), std::end(options)};
}

Rows<QueryInfo> queryInfos() {
    return {std::begin(queries), std::end(queries)};
}

CommandInfo const* findCommand(std::string_view keyword) {
    return find(std::begin(commands), std::end(commands), [&](auto const& row) { return row.keyword == keyword; });
}

OptionInfo const* findOption(CommandInfo const& command, std::string_view name) {
    return find(std::begin(options), std::end(options),
                [&](auto const& row) { return row.command == command.keyword && row.name == name; });
}

QueryInfo const* findQuery(std::string_view word) {
    return find(std::begin(queries), std::end(queries), [&](auto const& row) { return row.word == word; });
}

std::string_view typeTitle(taDciObjTyp type) {
    for (TypeTitle const& row : typeTitles) {
        if (row.type == type) return row.title;
    }
    return "object";
}

}  // namespace tool::lsp
