#include "tov/io/atomic_file_p.h"

#include <fcntl.h>
#include <limits.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "tov/io/error_text_p.h"
#include "tov/io/file_p.h"
#include "tov/io/file_rights_p.h"
#include "tov/io/temporary_file_p.h"

namespace kiri::tov::impl_detail {

namespace {

Result notRegular() {
    return {failureNotRegular, "not a regular file"};
}

/// The location of a file: its folder and its name there.
struct Place {
    std::string folder;
    std::string name;

    explicit Place(std::string const& path) : folder(path, 0, path.rfind('/') + 1), name(path, folder.size()) {
        if (folder.empty()) folder = "./";
    }
};

// Returns the location of the file to which symbolic links lead, whether it exists or not.
Place followLinks(char const* path) {
    Place place{path};
    constexpr int linksOfOnePath = 40;  // the system's own limit
    for (int links = 0; links < linksOfOnePath; ++links) {
        char target[PATH_MAX];
        ssize_t const size = ::readlink((place.folder + place.name).c_str(), target, sizeof target);
        if (size <= 0) break;
        std::string const text(target, static_cast<std::size_t>(size));
        place = Place(text.front() == '/' ? text : place.folder + text);
    }
    return place;
}

// If the process may create files in a folder but may not list it, the folder can be used, but not synchronised.
Result openFolder(std::string const& path, File& folder) {
    Result result = openFile(path.c_str(), O_RDONLY | O_DIRECTORY, folder);
    return result.is(EACCES) ? openFile(path.c_str(), O_PATH | O_DIRECTORY, folder) : std::move(result);
}

Result synchronise(File const& file) {
    while (::fsync(file.descriptor()) != 0) {
        if (errno != EINTR) return systemFailure(errno);
    }
    return {};
}

Result synchroniseFolder(File const& folder) {
    Result result = synchronise(folder);
    bool const opensAlone = result.is(EBADF);  // see openFolder
    return opensAlone || result.is(EINVAL) || result.is(ENOTSUP) ? Result() : std::move(result);
}

/// The status of a file, if there is one.
struct Status {
    bool exists;
    struct stat info;

    bool operator==(Status const& other) const {
        if (!exists || !other.exists) return exists == other.exists;
        return info.st_ino == other.info.st_ino && info.st_dev == other.info.st_dev;
    }
};

/// The file that a save replaces.
class Target {
public:
    explicit Target(char const* path) : path_(path), place_(path) {}

    /// Finds the file and its rights. Fails if it cannot be replaced.
    Result find() {
        // Other programs may replace the file meanwhile; then look again.
        constexpr int looks = 1000;
        for (int i = 0; i < looks; ++i) {
            bool settled = true;
            Result result = look(settled);
            if (settled) return result;
        }
        return systemFailure(EBUSY);
    }

    bool exists() const { return exists_; }
    File const& folder() const { return folder_; }
    char const* name() const { return place_.name.c_str(); }
    FileRights const& rights() const { return rights_; }

private:
    // Looks once. The result is valid if the path leads to the same file before and after.
    Result look(bool& settled) {
        // While the file is open, no other one gets its inode number.
        File file;
        Result opened = openFile(path_, O_PATH, file);
        if (!opened.ok() && !opened.is(ENOENT)) return opened;
        Status before{file.isOpen(), {}};
        if (before.exists && ::fstat(file.descriptor(), &before.info) != 0) return systemFailure(errno);
        if (before.exists && !S_ISREG(before.info.st_mode)) return notRegular();
        exists_ = before.exists;
        place_ = followLinks(path_);
        opened = openFolder(place_.folder, folder_);
        if (!opened.ok()) return opened;
        if (place_.name.empty()) return systemFailure(ENOENT);
        Result result = examine(before);
        Status after{};
        after.exists = ::stat(path_, &after.info) == 0;
        settled = before == after;
        return result;
    }

    Result examine(Status const& expected) {
        Status found{};
        int const folder = folder_.descriptor();
        found.exists = ::fstatat(folder, name(), &found.info, AT_SYMLINK_NOFOLLOW) == 0;
        // A file without a name of its own, such as an open one that was deleted, cannot be replaced.
        if (!(found == expected)) return notRegular();
        if (!found.exists) return {};
        if (::faccessat(folder, name(), W_OK, AT_EACCESS) != 0) return systemFailure(errno);
        return rights_.read(place_.folder + place_.name, found.info);
    }

    char const* path_;
    Place place_;
    File folder_;
    bool exists_ = false;
    FileRights rights_;
};

// Write the text and set the rights before the file gets the name.
Result fill(TemporaryFile& file, Target const& target, std::string_view text) {
    Result result = file.write(text);
    // After the text: writing clears some of the rights.
    if (result.ok() && target.exists()) result = target.rights().giveTo(file.file());
    return result.ok() ? synchronise(file.file()) : std::move(result);
}

Result replace(Target& target, std::string_view text) {
    Result result = target.find();
    if (!result.ok()) return result;
    for (TemporaryFile::Kind const kind : {TemporaryFile::unnamed, TemporaryFile::named}) {
        TemporaryFile file(target.folder());
        // Nobody else can read the text before the file has the rights of the old one.
        result = file.open(kind, target.exists() ? 0600 : 0666);
        if (!result.ok()) continue;
        result = fill(file, target, text);
        if (!result.ok()) return result;
        result = file.giveName();
        if (!result.ok()) continue;
        result = file.rename(target.name());
        return result.ok() ? synchroniseFolder(target.folder()) : std::move(result);
    }
    return result;
}

}  // namespace

Result replaceFile(char const* path, std::string_view text) {
    if (path == nullptr) return {ENOENT, "no path"};
    Target target(path);
    Result const result = replace(target, text);
    if (result.ok()) return {};
    return {result.code(), errorText(std::string(path) + ": " + result.message())};
}

}  // namespace kiri::tov::impl_detail
