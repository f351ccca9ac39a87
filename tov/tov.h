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

/// A constraint file in memory: its commands by kind and in file order, and its comments.
///
///     TOV document;
///     std::string error;
///     if (!document.read(path, {}, &error)) return report(error);
///     for (TovCmd* cmd : *document.getTovCmdList(TOVCMD_FALSEPATH)) cmd->enabled = false;
///     if (!document.saveAtomically(path, &error)) return report(error);
///
/// A document owns its commands. Any operation may throw std::bad_alloc. One document is used by one thread at a time;
/// different documents may be used by different threads at once.
class TOVENG_API TOV {
public:
    TOV();
    /// Resets the document; a destructor of a caller's class finds the comments as they are.
    ~TOV();
    TOV(TOV const&) = delete;
    TOV& operator=(TOV const&) = delete;

    /// Deletes all commands and then the database object. The comments stay. Where a list holds a command of a caller's
    /// class, the commands go list by list in the order of TOVCMD_TYPE, each list from its front: while a command goes,
    /// it is in no list, and the later commands and lists are whole. Else the order is not specified. load() and read()
    /// reset in the same way.
    void reset();

    /// Replaces the content by that of the file and calls `progress` meanwhile, unless it is empty. Returns true, with
    /// an empty `error`, if the file was read to its end. Else the document is as after its construction, for a missing
    /// file too, and `error`, unless null, says why in one line: the system's words for a file that is missing or
    /// cannot be opened or read ("No such file or directory"), "Line 12: create_clock ends in -waveform", or "The
    /// caller stopped the load". Throws std::bad_alloc and what `progress` throws; the document is empty then, and
    /// `error` as it was.
    bool read(char const* path, TovProgress const& progress = {}, std::string* error = nullptr);

    /// Replaces the content by that of the file. Returns false and changes nothing if nothing exists at `path`. True
    /// means only that something does: a file that cannot be opened or read leaves what could be read of it. Where a
    /// file must not be overwritten unless it was read, use read(). Throws TovMissingValue at a "create_clock" line
    /// that ends in "-waveform"; the lines before it are kept.
    bool load(char const* path);

    /// The same, and calls `progress`. When that stops the load, returns false and leaves the document as after its
    /// construction.
    bool load(char const* path, TovProgress const& progress);

    /// As load, but adds to the nine lists of timing commands and replaces the attributes and comments. Returns true
    /// only if the file was read to its end.
    bool parseTovFile(char const* path);

    /// Returns the file text of the document. The document does not change.
    std::string toSaveString();

    /// Writes toSaveString() to the file. Returns true if the file could be opened for writing; does not report
    /// errors in writing. The text is complete before the file is opened.
    bool save(char const* path);

    /// Writes toSaveString() so that the file at `path` is either the old one, byte for byte, or the new one, complete
    /// and on the disk: a new file in the same folder takes the old one's place when it is whole. Returns
    /// true, with an empty `error`, if the file was replaced, and the folder synchronised as far as its file system
    /// offers that. Returns false if anything fails: no other file is left, and `error`, unless null, says why
    /// in one line. The old file is there then, except when the folder could not be synchronised (an input/output
    /// error): the new file has taken its place, and a power failure may bring the old one back.
    ///
    /// A symbolic link stays, and what it leads to is replaced, or made if it does not exist. Anything but
    /// a regular file that the process may write is refused. Other names of the old file (hard links) keep the old
    /// text. Where several programs save one path at once, each save is whole, and the last one wins.
    ///
    /// Owner, group and permission bits are kept where the process may set them. Nobody gets a right that the old file
    /// did not grant: where the group cannot be kept, the new group and all others have what both the old group and all
    /// others had; set-user-ID and set-group-ID bits stay only with their owner and group. Access lists and other
    /// extended attributes are kept, or the save fails.
    ///
    /// A process that is killed meanwhile may leave a file `.tov-` with 16 hexadecimal digits in the folder, which may
    /// be deleted. Reaching the size limit of the process is an error and raises no signal. std::bad_alloc leaves every
    /// file as it was.
    bool saveAtomically(char const* path, std::string* error = nullptr);

    /// Appends a command for each record of the database, which must not be null. The document keeps no part of it.
    /// `ioEnabled` enables the input and output delays; other commands are enabled.
    void loadTaObjects(taDci* db, bool ioEnabled);

    /// Returns the list of that kind; null for TOVCMD_NONE and any value that names no list. The list may be edited:
    /// the document owns the commands in it, and a command taken out belongs to the caller.
    std::list<TovCmd*>* getTovCmdList(TOVCMD_TYPE type);

    /// Returns the error list of `dci`; null without one.
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
    taDci* dci = nullptr;  ///< owned; set by the application alone
};

}  // namespace kiri::tov
