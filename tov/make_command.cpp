#include "tov/make_command.h"

#include "tov/loader.h"

namespace kiri::tov {

std::unique_ptr<TovCmd> makeCommand(std::string const& line, TOVCMD_TYPE* list) {
    FileLine const parts(line.c_str());
    std::unique_ptr<TovCmd> cmd = parts.makeCommand();
    if (list != nullptr) *list = cmd == nullptr ? TOVCMD_NONE : parts.kind->list;
    return cmd;
}

}  // namespace kiri::tov
