#pragma once

#include <string_view>

#include "platform/dci.h"

namespace tool::lsp {

/// The operand of an option.
enum class Operand { none, number, name, edges, objects, clocks };

/// An option of a command.
struct OptionInfo {
    std::string_view command;
    std::string_view name;
    Operand operand;
    std::string_view meaning;  ///< a sentence without its full stop
};

/// A command of a constraint file.
struct CommandInfo {
    std::string_view keyword;
    std::string_view usage;
    std::string_view meaning;
};

/// A query, which is written in brackets.
struct QueryInfo {
    std::string_view word;
    taDciObjTyp type;  ///< of the names in it; taDciObjNone if it takes no names
    std::string_view meaning;
};

/// All rows of a kind, in the order in which they are offered.
template <class Row>
struct Rows {
    Row const* first;
    Row const* last;

    Row const* begin() const { return first; }
    Row const* end() const { return last; }
};

Rows<CommandInfo> commandInfos();
Rows<OptionInfo> optionInfos();
Rows<QueryInfo> queryInfos();

// Return null for an unknown word.
CommandInfo const* findCommand(std::string_view keyword);
OptionInfo const* findOption(CommandInfo const& command, std::string_view name);
QueryInfo const* findQuery(std::string_view word);

/// "port", "pin", "net", "cell" or "clock"; "object" for any other type.
std::string_view typeTitle(taDciObjTyp type);

}  // namespace tool::lsp
