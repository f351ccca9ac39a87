#include "tov/tov.h"

#include "tov/cmd/cmd.h"
#include "tov/cmd_list.h"
#include "tov/fetch_ahead.h"

namespace kiri::tov {

void freeCommands(std::list<TovCmd*>& list) {
    forEachFetched<fetchedOfCommand>(list, [](TovCmd* cmd) { delete cmd; });
    list.clear();
}

void append(std::list<TovCmd*>& list, std::unique_ptr<TovCmd> cmd) {
    list.push_back(cmd.get());
    cmd.release();
}

TOV::~TOV() {
    // Large blocks go first: an allocator may merge all the small blocks freed so far when a large one
    // follows them.
    std::string().swap(sdcCommentText);
    std::string().swap(attributeCommentText);
    reset();
}

void TOV::reset() {
    for (std::list<TovCmd*>& list : cmdLists_) freeCommands(list);
    delete dci;
    dci = nullptr;
}

std::list<TovCmd*>* TOV::getTovCmdList(TOVCMD_TYPE type) {
    return type >= TOVCMD_CLOCK && type <= TOVCMD_ATTRIBUTE ? &cmdLists_[static_cast<std::size_t>(type) - 1] : nullptr;
}

ppStlList<char*>* TOV::getErrorList() {
    return dci == nullptr ? nullptr : &dci->errors;
}

}  // namespace kiri::tov
