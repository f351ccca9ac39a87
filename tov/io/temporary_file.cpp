#include "tov/io/temporary_file_p.h"

#include <fcntl.h>
#include <signal.h>
#include <stdio.h>
#include <sys/random.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <string>

#include "tov/io/error_text_p.h"

namespace kiri::tov::impl_detail {

namespace {

/// During its lifetime, a write beyond the size limit of the process fails without a signal to this thread.
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
        timespec const now{};
        if (!wasPending_) ::sigtimedwait(&signal_, nullptr, &now);
        ::pthread_sigmask(SIG_SETMASK, &before_, nullptr);
    }
    SizeLimitWithoutSignal(SizeLimitWithoutSignal const&) = delete;
    SizeLimitWithoutSignal& operator=(SizeLimitWithoutSignal const&) = delete;

private:
    sigset_t signal_{};
    sigset_t before_{};
    bool wasPending_ = false;
};

}  // namespace

Result TemporaryFile::open(Kind kind, mode_t mode) {
    int const at = folder_.descriptor();
    constexpr int flags = O_WRONLY | O_CLOEXEC;
    file_ = File(kind == unnamed ? ::openat(at, ".", flags | O_TMPFILE, mode)
                                 : makeName([&] { return ::openat(at, name_, flags | O_CREAT | O_EXCL, mode); }));
    return file_.isOpen() ? Result() : systemFailure(errno);
}

TemporaryFile::~TemporaryFile() {
    if (name_[0] != '\0') ::unlinkat(folder_.descriptor(), name_, 0);
}

Result TemporaryFile::write(std::string_view text) {
    SizeLimitWithoutSignal const guard;
    return writeAll(file_, text);
}

Result TemporaryFile::giveName() {
    if (name_[0] != '\0') return {};
    std::string const source = "/proc/self/fd/" + std::to_string(file_.descriptor());
    int const linked =
        makeName([&] { return ::linkat(AT_FDCWD, source.c_str(), folder_.descriptor(), name_, AT_SYMLINK_FOLLOW); });
    return linked >= 0 ? Result() : systemFailure(errno);
}

Result TemporaryFile::rename(char const* name) {
    int const at = folder_.descriptor();
    if (::renameat(at, name_, at, name) != 0) return systemFailure(errno);
    name_[0] = '\0';
    return {};
}

/// Calls `make` with new names until one is not in use. Returns the last result; on failure, clears the name.
template <class Make>
int TemporaryFile::makeName(Make make) {
    for (;;) {
        std::uint64_t number = 0;
        if (::getrandom(&number, sizeof number, 0) < 0) return -1;
        ::snprintf(name_, sizeof name_, ".tov-%016llx", static_cast<unsigned long long>(number));
        int const made = make();
        if (made >= 0) return made;
        name_[0] = '\0';
        if (errno != EEXIST && errno != EINTR) return made;
    }
}

}  // namespace kiri::tov::impl_detail
