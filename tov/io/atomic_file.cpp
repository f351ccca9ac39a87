#include "tov/io/atomic_file_p.h"

#include <fcntl.h>
#include <limits.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "tov/io/error_text_p.h"
#include "tov/io/file_p.h"
#include "tov/io/file_rights_p.h"
#include "tov/io/temporary_file_p.h"

namespace kiri::tov::impl_detail {

namespace {

constexpr char notRegular[] = "not a regular file";

/// The place of a file: the folder and the name in it.
struct Place {
    std::string folder;
    std::string name;

    explicit Place(std::string const& path) : folder(path, 0, path.rfind('/') + 1), name(path, folder.size()) {
        if (folder.empty()) folder = "./";
    }
};

// Returns the place of the file to which symbolic links lead, whether it exists or not.
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

// A folder in which the process may make files but that it may not list can be used, not synchronised.
File openFolder(std::string const& path) {
    File folder = openFile(path.c_str(), O_RDONLY | O_DIRECTORY);
    if (!folder.isOpen() && errno == EACCES) folder = openFile(path.c_str(), O_PATH | O_DIRECTORY);
    return folder;
}

bool synchronise(File const& file) {
    while (::fsync(file.descriptor()) != 0) {
        if (errno != EINTR) return false;
    }
    return true;
}

bool synchroniseFolder(File const& folder) {
    if (synchronise(folder)) return true;
    bool const opensAlone = errno == EBADF;  // see openFolder
    return opensAlone || errno == EINVAL || errno == ENOTSUP;
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

/// What a save replaces.
class Target {
public:
    explicit Target(char const* path) : path_(path), place_(path) {}

    /// Finds the file and its rights. Returns why it cannot be replaced, in one line; "" if it can.
    std::string find() {
        // Other programs may replace the file meanwhile: then look again.
        constexpr int looks = 1000;
        for (int i = 0; i < looks; ++i) {
            bool settled = true;
            std::string why = look(settled);
            if (settled) return why;
        }
        return systemText(EBUSY);
    }

    bool exists() const { return exists_; }
    File const& folder() const { return folder_; }
    char const* name() const { return place_.name.c_str(); }
    FileRights const& rights() const { return rights_; }

private:
    // One look. It is settled if the path leads to the same file before and after.
    std::string look(bool& settled) {
        // While the file is open, no other one gets its inode number.
        File const file = openFile(path_, O_PATH);
        if (!file.isOpen() && errno != ENOENT) return systemText(errno);
        Status before{file.isOpen(), {}};
        if (before.exists && ::fstat(file.descriptor(), &before.info) != 0) return systemText(errno);
        if (before.exists && !S_ISREG(before.info.st_mode)) return notRegular;
        exists_ = before.exists;
        place_ = followLinks(path_);
        folder_ = openFolder(place_.folder);
        if (!folder_.isOpen()) return systemText(errno);
        if (place_.name.empty()) return systemText(ENOENT);
        std::string why = examine(before);
        Status after{};
        after.exists = ::stat(path_, &after.info) == 0;
        settled = before == after;
        return why;
    }

    std::string examine(Status const& expected) {
        Status found{};
        int const folder = folder_.descriptor();
        found.exists = ::fstatat(folder, name(), &found.info, AT_SYMLINK_NOFOLLOW) == 0;
        // A file without a name of its own, such as an open one that was deleted, cannot be replaced.
        if (!(found == expected)) return notRegular;
        if (!found.exists) return {};
        if (::faccessat(folder, name(), W_OK, AT_EACCESS) != 0) return systemText(errno);
        return rights_.read(place_.folder + place_.name, found.info);
    }

    char const* path_;
    Place place_;
    File folder_;
    bool exists_ = false;
    FileRights rights_;
};

// Write the text and set the rights before the file gets the name.
std::string fill(TemporaryFile& file, Target const& target, std::string_view text) {
    if (!file.write(text)) return systemText(errno);
    // After the text: writing clears some of the rights.
    std::string why = target.exists() ? target.rights().giveTo(file.file()) : std::string();
    if (!why.empty()) return why;
    return synchronise(file.file()) ? std::string() : systemText(errno);
}

std::string replace(Target& target, std::string_view text) {
    std::string why = target.find();
    if (!why.empty()) return why;
    for (TemporaryFile::Kind const kind : {TemporaryFile::unnamed, TemporaryFile::named}) {
        // The text is not shown to anyone before the file has the rights of the old one.
        TemporaryFile file(kind, target.folder(), target.exists() ? 0600 : 0666);
        if (!file.isOpen()) continue;
        why = fill(file, target, text);
        if (!why.empty()) return why;
        if (!file.giveName()) continue;
        bool const replaced = file.rename(target.name()) && synchroniseFolder(target.folder());
        return replaced ? std::string() : systemText(errno);
    }
    return systemText(errno);
}

}  // namespace

std::string replaceFile(char const* path, std::string_view text) {
    if (path == nullptr) return "no path";
    Target target(path);
    std::string const why = replace(target, text);
    return why.empty() ? why : errorText(std::string(path) + ": " + why);
}

}  // namespace kiri::tov::impl_detail
