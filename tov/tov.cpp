#include "tov/tov.h"

#include "tov/cmd/cmd.h"
#include "tov/cmd_list.h"

namespace kiri::tov {

void freeCommands(std::list<TovCmd*>& list) {
    for (TovCmd* cmd : list) delete cmd;
    list.clear();
}

void append(std::list<TovCmd*>& list, std::unique_ptr<TovCmd> cmd) {
    list.push_back(cmd.get());
    cmd.release();
}

TOV::~TOV() { reset(); }

void TOV::reset() {
    for (std::list<TovCmd*>& list : cmdLists_) freeCommands(list);
    delete dci;
    dci = nullptr;
}

std::list<TovCmd*>* TOV::getTovCmdList(TOVCMD_TYPE type) {
    return type >= TOVCMD_CLOCK && type <= TOVCMD_ATTRIBUTE ? &cmdLists_[static_cast<std::size_t>(type) - 1] : nullptr;
}

ppStlList<char*>* TOV::getErrorList() { return dci == nullptr ? nullptr : &dci->errors; }

}  // namespace kiri::tov
