#include "tov/tov.h"

#include <utility>

#include "tov/cmd/missing_value.h"
#include "tov/command_walk_p.h"
#include "tov/document_lists_p.h"
#include "tov/file_headers_p.h"
#include "tov/io/atomic_file_p.h"
#include "tov/io/file_p.h"
#include "tov/loader_p.h"
#include "tov/writer_p.h"

namespace kiri::tov {

using namespace impl_detail;

namespace {

// The failure that the interface reports as an exception.
void throwMissingValue(Result const& result) {
    if (result.is(failureMissingValue)) throw TovMissingValue();
}

// The destructor of a caller's class must not find a deleted command in the list.
void freeCommands(std::list<TovCmd*>& list) {
    while (!list.empty()) {
        TovCmd* const cmd = list.front();
        list.pop_front();
        delete cmd;
    }
}

// If no caller has had access to the lists, they hold only the library's commands and need not be searched.
bool holdsCallersCommand(TOV& document) {
    return DocumentLists::of(document).foreign &&
           !visitInMemoryOrder(document, [](CommandKind const& kind, std::list<TovCmd*>::iterator place) {
               return isLibraryCommand(kind, **place);
           });
}

// Nobody observes the destruction of the library's own commands, so they are deleted in the order of memory.
void freeLibraryCommands(TOV& document) {
    DocumentLists& lists = DocumentLists::of(document);
    visitInMemoryOrder(document, [&lists](CommandKind const& kind, std::list<TovCmd*>::iterator place) {
        delete *place;
        lists[kind].erase(place);
        return true;
    });
    for (std::list<TovCmd*>& list : lists.lists) list.clear();  // null entries
}

void empty(TOV& document, bool observed) {
    DocumentLists& lists = DocumentLists::of(document);
    if (observed) {
        for (std::list<TovCmd*>& list : lists.lists) freeCommands(list);
    } else {
        freeLibraryCommands(document);
    }
    lists.appended = 0;
    delete std::exchange(document.dci, nullptr);
}

}  // namespace

TOV::TOV() : lists_(std::make_unique<DocumentLists>()) {}

// Unless the destructor of a caller's class may read them, free the large blocks first: when a large block is freed
// after small ones, the C library merges all of those, and the destruction takes several times as long.
TOV::~TOV() {
    bool const observed = holdsCallersCommand(*this);
    if (!observed) {
        std::string().swap(sdcCommentText);
        std::string().swap(attributeCommentText);
    }
    empty(*this, observed);
}

void TOV::reset() {
    empty(*this, holdsCallersCommand(*this));
}

bool TOV::load(char const* path) {
    return load(path, {});
}

bool TOV::load(char const* path, TovProgress const& progress) {
    if (!exists(path)) return false;
    reset();
    // A file that cannot be opened yields no commands and still returns true: callers test only for existence.
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
    freeCommands((*lists_)[attributeKind]);
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
    if (index >= std::size(commandKinds)) return nullptr;
    lists_->foreign = true;
    return &lists_->lists[index];
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
