#include "tov/io/atomic_file.h"

#include <fcntl.h>
#include <limits.h>
#include <signal.h>
#include <stdio.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstring>

#include "tov/io/file.h"

namespace kiri::tov {

namespace {

std::string reason(char const* path, int error) {
    char buffer[256];
    return std::string(path).append(": ").append(::strerror_r(error, buffer, sizeof buffer));
}

/// A file's place: the folder and the name in it.
struct Place {
    std::string folder;
    std::string name;

    explicit Place(std::string const& path) : folder(path, 0, path.rfind('/') + 1), name(path, folder.size()) {
        if (folder.empty()) folder = "./";
    }
};

// The place of the file to which symbolic links lead, whether it exists or not.
Place followLinks(char const* path) {
    Place place{path};
    constexpr int linksOfOnePath = 40;  // as the system has it
    for (int links = 0; links < linksOfOnePath; ++links) {
        char target[PATH_MAX];
        ssize_t const size = ::readlink((place.folder + place.name).c_str(), target, sizeof target);
        if (size < 0) break;
        std::string const text(target, static_cast<std::size_t>(size));
        place = Place(text.front() == '/' ? text : place.folder + text);
    }
    return place;
}

/// While it lives, a write beyond the size limit of the process gives an error and no signal, in this thread.
class SizeLimitWithoutSignal {
public:
    SizeLimitWithoutSignal() {
        ::sigemptyset(&signal_);
        ::sigaddset(&signal_, SIGXFSZ);
        sigset_t pending;
        ::sigpending(&pending);
        wasPending_ = ::sigismember(&pending, SIGXFSZ) == 1;
        ::pthread_sigmask(SIG_BLOCK, &signal_, &before_);
    }
    ~SizeLimitWithoutSignal() {
        int const error = errno;
        timespec const now{};
        if (!wasPending_) ::sigtimedwait(&signal_, nullptr, &now);
        ::pthread_sigmask(SIG_SETMASK, &before_, nullptr);
        errno = error;
    }
    SizeLimitWithoutSignal(SizeLimitWithoutSignal const&) = delete;
    SizeLimitWithoutSignal& operator=(SizeLimitWithoutSignal const&) = delete;

private:
    sigset_t signal_{};
    sigset_t before_{};
    bool wasPending_ = false;
};

/// A new file in a folder, which goes with the object unless it is given a name.
class TemporaryFile {
public:
    /// `folder` is open and outlives the file.
    TemporaryFile(int folder, mode_t mode) : folder_(folder), file_(create(mode)) {}
    ~TemporaryFile() {
        if (file_.isOpen() && !named_) ::unlinkat(folder_, name_, 0);
    }
    TemporaryFile(TemporaryFile const&) = delete;
    TemporaryFile& operator=(TemporaryFile const&) = delete;

    /// False if it could not be made; the reason is in errno.
    bool isOpen() const { return file_.isOpen(); }

    /// Gives the file what belongs to another one: the owner as far as the process may, and the permission bits.
    bool takeRightsOf(struct stat const& other) {
        bool const given = ::fchown(file_.descriptor(), other.st_uid, other.st_gid) == 0;
        static_cast<void>(given);
        return ::fchmod(file_.descriptor(), other.st_mode & 07777U) == 0;
    }

    /// Writes the text to the disk.
    bool write(std::string_view text) {
        SizeLimitWithoutSignal const guard;
        return writeAll(file_, text) && synchronise(file_.descriptor());
    }

    /// Puts the file in the place of another one in the folder.
    bool rename(char const* name) {
        named_ = ::renameat(folder_, name_, folder_, name) == 0;
        return named_;
    }

    static bool synchronise(int descriptor) {
        while (::fsync(descriptor) != 0) {
            if (errno != EINTR) return false;
        }
        return true;
    }

private:
    int create(mode_t mode) {
        for (;;) {
            std::uint64_t number = 0;
            if (::getrandom(&number, sizeof number, 0) < 0) return -1;
            ::snprintf(name_, sizeof name_, ".tov-%016llx", static_cast<unsigned long long>(number));
            int const fd = ::openat(folder_, name_, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
            if (fd >= 0 || (errno != EEXIST && errno != EINTR)) return fd;
        }
    }

    int folder_;
    char name_[32] = {};
    File file_;
    bool named_ = false;
};

}  // namespace

std::string replaceFile(char const* path, std::string_view text) {
    if (path == nullptr) return "no path";
    struct stat old {};
    bool const exists = ::stat(path, &old) == 0;
    if (!exists && errno != ENOENT) return reason(path, errno);
    if (exists && !S_ISREG(old.st_mode)) return std::string(path) + ": not a regular file";
    if (exists && ::faccessat(AT_FDCWD, path, W_OK, AT_EACCESS) != 0) return reason(path, errno);

    Place const place = followLinks(path);
    File const folder = openFile(place.folder.c_str(), O_RDONLY | O_DIRECTORY);
    if (!folder.isOpen()) return reason(path, errno);
    // A file without a name of its own, as an open one that was deleted, cannot be replaced.
    struct stat found {};
    bool const there = ::fstatat(folder.descriptor(), place.name.c_str(), &found, AT_SYMLINK_NOFOLLOW) == 0;
    if (there != exists || found.st_ino != old.st_ino || found.st_dev != old.st_dev)
        return std::string(path) + ": not a regular file";

    // The text is not shown to anyone before the file has the rights of the old one.
    TemporaryFile file(folder.descriptor(), exists ? 0600 : 0666);
    bool const replaced = file.isOpen() && (!exists || file.takeRightsOf(old)) && file.write(text) &&
                          file.rename(place.name.c_str()) && TemporaryFile::synchronise(folder.descriptor());
    return replaced ? std::string() : reason(path, errno);
}

}  // namespace kiri::tov
