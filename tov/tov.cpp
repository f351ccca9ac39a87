#include "tov/tov.h"

#include "tov/cmd/missing_value.h"
#include "tov/command_walk_p.h"
#include "tov/file_headers_p.h"
#include "tov/io/atomic_file_p.h"
#include "tov/io/file_p.h"
#include "tov/loader_p.h"
#include "tov/writer_p.h"

namespace kiri::tov {

using namespace impl_detail;

namespace {

// The failure that the interface reports by an exception.
void throwMissingValue(Result const& result) {
    if (result.is(failureMissingValue)) throw TovMissingValue();
}

void freeCommands(std::list<TovCmd*>& list) {
    for (TovCmd* cmd : list) delete cmd;
    list.clear();
}

}  // namespace

TOV::TOV() : cmdLists_(new std::list<TovCmd*>[std::size(commandKinds)]) {}

// The large blocks go first: the C library merges all small blocks freed so far when a large one follows them, which
// makes the destruction several times as long.
TOV::~TOV() {
    std::string().swap(sdcCommentText);
    std::string().swap(attributeCommentText);
    reset();
}

// Nobody observes the destruction of the library's own commands, so delete them first, in the order of memory. Then
// delete those of a caller's classes list by list.
void TOV::reset() {
    visitInMemoryOrder(*this, [this](CommandKind const& kind, std::list<TovCmd*>::iterator place) {
        if (!isLibraryCommand(kind, **place)) return true;
        delete *place;
        getTovCmdList(kind.list)->erase(place);
        return true;
    });
    for (CommandKind const& kind : commandKinds) freeCommands(*getTovCmdList(kind.list));
    delete dci;
    dci = nullptr;
}

bool TOV::load(char const* path) {
    return load(path, {});
}

bool TOV::load(char const* path, TovProgress const& progress) {
    if (!exists(path)) return false;
    reset();
    // A file that cannot be opened makes no command: callers test existence only.
    Result const result = readTovFile(*this, path, progress);
    throwMissingValue(result);
    return !result.is(failureStopped);
}

bool TOV::read(char const* path, TovProgress const& progress, std::string* error) {
    emptyDocument(*this);
    std::string problem;
    try {
        problem = readTovFile(*this, path, progress).message();
    } catch (...) {
        emptyDocument(*this);
        throw;
    }
    bool const whole = problem.empty();
    if (!whole) emptyDocument(*this);
    if (error != nullptr) error->swap(problem);
    return whole;
}

bool TOV::parseTovFile(char const* path) {
    if (!exists(path)) return false;
    // The other lists keep their commands: the file's are added to them.
    freeCommands(*getTovCmdList(TOVCMD_ATTRIBUTE));
    Result const result = readTovFile(*this, path, {});
    throwMissingValue(result);
    return result.ok();
}

std::string TOV::toSaveString() {
    return fileTextOf(*this);
}

bool TOV::save(char const* path) {
    std::string const text = toSaveString();
    File file;
    if (!openForWriting(path, file).ok()) return false;
    static_cast<void>(writeAll(file, text));
    return true;
}

bool TOV::saveAtomically(char const* path, std::string* error) {
    Result const result = replaceFile(path, toSaveString());
    if (error != nullptr) *error = result.message();
    return result.ok();
}

std::list<TovCmd*>* TOV::getTovCmdList(TOVCMD_TYPE type) {
    auto const index = static_cast<std::size_t>(type) - 1;  // TOVCMD_NONE wraps around
    return index < std::size(commandKinds) ? &cmdLists_[index] : nullptr;
}

ppStlList<char*>* TOV::getErrorList() {
    return dci == nullptr ? nullptr : &dci->errors;
}

std::string TOV::sdcComments() const {
    return std::string(sdcHeader);
}

std::string TOV::attributeComments() const {
    return std::string(attributeHeader);
}

}  // namespace kiri::tov
