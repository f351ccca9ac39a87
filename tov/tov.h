#pragma once

#include <list>
#include <memory>
#include <string>

#include "platform/dci.h"
#include "platform/export.h"
#include "tov/cmd/cmd_type.h"
#include "tov/progress.h"

namespace kiri::tov {

class TovCmd;
namespace impl_detail {
struct DocumentLists;
}

/// A constraint file in memory: its commands, by kind and in file order, and its comments.
///
///     TOV document;
///     std::string error;
///     if (!document.read(path, {}, &error)) return report(error);
///     for (TovCmd* cmd : *document.getTovCmdList(TOVCMD_FALSEPATH)) cmd->enabled = false;
///     if (!document.saveAtomically(path, &error)) return report(error);
///
/// A document owns its commands. Any operation may throw std::bad_alloc. One document may be used by one thread at a
/// time, different documents by different threads at once.
class TOVENG_API TOV {
public:
    TOV();
    /// Resets the document; the destructor of a caller's class finds the comments intact.
    ~TOV();
    TOV(TOV const&) = delete;
    TOV& operator=(TOV const&) = delete;

    /// Deletes all commands and then the database object. The comments stay. If a list holds a command of a caller's
    /// class, the commands are deleted list by list in the order of TOVCMD_TYPE, each list from its front: while a
    /// command is deleted, it is not in any list, and the later commands and lists are intact. Otherwise the order is
    /// unspecified. load() and read() reset in the same way.
    void reset();

    /// Replaces the content with that of the file and calls `progress` during the load, unless it is empty. Returns
    /// true, with an empty `error`, if the file was read to its end. Otherwise the document is as after its
    /// construction, even if the file is missing, and `error`, unless null, says why in one line: the system's message
    /// for a file that is missing or cannot be opened or read ("No such file or directory"), "Line 12: create_clock
    /// ends in -waveform", or "The caller stopped the load". Throws std::bad_alloc and what `progress` throws; the
    /// document is then empty, and `error` unchanged.
    bool read(char const* path, TovProgress const& progress = {}, std::string* error = nullptr);

    /// Replaces the content with that of the file. Returns false and changes nothing if nothing exists at `path`. True
    /// means only that something exists: of a file that cannot be opened or read to its end, the document holds what
    /// could be read. Use read() if the file will be overwritten later. Throws TovMissingValue at a "create_clock" line
    /// that ends in "-waveform"; the lines before it are kept.
    bool load(char const* path);

    /// The same, and calls `progress`. If that stops the load, returns false and leaves the document as after its
    /// construction.
    bool load(char const* path, TovProgress const& progress);

    /// Like load, but adds to the nine lists of timing commands, and replaces the attributes and comments. Returns true
    /// only if the file was read to its end.
    bool parseTovFile(char const* path);

    /// Returns the file text of the document. The document does not change.
    std::string toSaveString();

    /// Writes toSaveString() to the file. Returns true if the file could be opened for writing; does not report write
    /// errors. The text is complete before the file is opened.
    bool save(char const* path);

    /// Writes toSaveString() so that the file at `path` is either the old one, byte for byte, or the new one, complete
    /// and on the disk: a new file in the same folder replaces the old one when it is complete. Returns true, with an
    /// empty `error`, if the file was replaced, and the folder synchronised as far as its file system supports that.
    /// Returns false if anything fails: no other file is left, and `error`, unless null, says why in one line. The old
    /// file is then unchanged, unless the folder could not be synchronised (an input/output error): in that case the
    /// new file has replaced it, and a power failure may bring the old one back.
    ///
    /// A symbolic link stays, and its target is replaced, or created if it does not exist. Anything but a regular file
    /// that the process may write is refused. Other names of the old file (hard links) keep the old text. If several
    /// programs save to one path at once, each save is complete, and the last one wins.
    ///
    /// Owner, group and permission bits are kept if the process may set them. Nobody gains a right that the old file
    /// did not grant: if the group cannot be kept, the new group and all others get only the rights that both the old
    /// group and all others had; set-user-ID and set-group-ID bits are kept only together with their owner and group.
    /// Access lists and other extended attributes are kept, or the save fails.
    ///
    /// A process that is killed during the save may leave a file `.tov-` with 16 hexadecimal digits in the folder,
    /// which may be deleted. Exceeding the size limit of the process is an error and raises no signal. std::bad_alloc
    /// leaves every file as it was.
    bool saveAtomically(char const* path, std::string* error = nullptr);

    /// Appends a command for each record of the database, which must not be null. The document does not refer to it
    /// afterwards. `ioEnabled` enables the input and output delays; other commands are enabled.
    void loadTaObjects(taDci* db, bool ioEnabled);

    /// Returns the list of that kind; null for TOVCMD_NONE and any value that is not a list. The list may be edited:
    /// the document owns the commands in it, and a command removed from it belongs to the caller.
    std::list<TovCmd*>* getTovCmdList(TOVCMD_TYPE type);

    /// Returns the error list of `dci`; null if there is no `dci`.
    ppStlList<char*>* getErrorList();

    /// Return the comment headers that open the two sections of a file.
    std::string sdcComments() const;
    std::string attributeComments() const;

    std::string sdcCommentText;        ///< comment lines of the command section, each with its line feed
    std::string attributeCommentText;  ///< comment lines of the attribute section, likewise

private:
    friend struct impl_detail::DocumentLists;

    std::unique_ptr<impl_detail::DocumentLists> lists_;

public:
    taDci* dci = nullptr;  ///< owned; set only by the application
};

}  // namespace kiri::tov
