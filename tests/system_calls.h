#pragma once

// The system calls of a program that is linked with wrap_system_calls() of CMakeLists.txt: which were made, and which
// fail. Each thread has its own plans and records. Include it in one source file of a program.

#include <fcntl.h>
#include <stdio.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <functional>
#include <map>
#include <string>

namespace calls {

/// Runs before a system call: the call fails with the returned errno; 0 lets it pass.
using Plan = std::function<int()>;

thread_local bool over =
    false;  // the thread has ended and its plans and records are destroyed, but coverage is still to be written
thread_local std::map<std::string, Plan> plans;
thread_local std::string made;   // the names of the calls since the last start(), each followed by a blank
thread_local std::string lines;  // the calls with their arguments, one per line
thread_local struct End {
    ~End() { over = true; }
} end;
thread_local std::size_t longestWrite = SIZE_MAX;
thread_local int written = -1;  // the descriptor of the last write

void start(std::map<std::string, Plan> newPlans = {}) {
    static_cast<void>(end);
    plans = std::move(newPlans);
    made.clear();
    lines.clear();
}

/// Fails one call, counted from 1, or each for 0.
Plan failing(int number, int error) {
    return [number, error, count = 0]() mutable { return ++count == number || number == 0 ? error : 0; };
}

// Arguments as words: a file is its name, a test's folder "FOLDER", a temporary file "TEMP".
struct Descriptor {
    int number;
};
struct Flags {
    int bits;
    bool areOfOpen = true;
};
struct Mode {
    mode_t mode;
    int flags = O_CREAT;
};
struct Id {
    unsigned id;
    unsigned own;
};

std::string textOf(char const* path) {
    std::string const text = path;
    bool const isTemporary = text.find(".tov-") != text.npos || text.find(" (deleted)") != text.npos;
    if (isTemporary) return "TEMP";
    std::string const name = text == "." ? text : text.substr(text.find_last_of('/', text.size() - 2) + 1);
    return name.rfind("toveng-", 0) == 0 ? "FOLDER" : name;  // a TempDir
}

std::string textOf(Descriptor fd) {
    if (fd.number == AT_FDCWD) return "CWD";
    std::string target(500, '\0');
    ssize_t const size = ::readlink(("/proc/self/fd/" + std::to_string(fd.number)).c_str(), target.data(), 499);
    return size < 0 ? "closed" : textOf(target.c_str());
}

std::string textOf(Flags flags) {
    struct Name {
        int bits;
        char const* name;
    };
    constexpr Name ofOpen[] = {{O_WRONLY, "WRONLY"}, {O_RDWR, "RDWR"},       {O_CREAT, "CREAT"},
                               {O_EXCL, "EXCL"},     {O_TRUNC, "TRUNC"},     {O_TMPFILE, "TMPFILE"},
                               {O_PATH, "PATH"},     {O_CLOEXEC, "CLOEXEC"}, {O_DIRECTORY, "DIRECTORY"}};
    constexpr Name ofAt[] = {{AT_SYMLINK_NOFOLLOW, "NOFOLLOW"}, {AT_SYMLINK_FOLLOW, "FOLLOW"}, {AT_EACCESS, "EACCESS"}};
    std::string text;
    auto const add = [&](Name const& name) {
        if ((flags.bits & name.bits) != name.bits) return;
        flags.bits &= ~name.bits;
        text += (text.empty() ? "" : "|") + std::string(name.name);
    };
    if (flags.areOfOpen) std::for_each(std::begin(ofOpen), std::end(ofOpen), add);
    if (!flags.areOfOpen) std::for_each(std::begin(ofAt), std::end(ofAt), add);
    if (flags.bits != 0) text += "|" + std::to_string(flags.bits);
    return text.empty() ? "0" : text;
}

std::string textOf(Mode mode) {
    if ((mode.flags & O_CREAT) == 0 && (mode.flags & O_TMPFILE) != O_TMPFILE) return "";
    char text[20];
    std::snprintf(text, sizeof text, "%04o", mode.mode);
    return text;
}

std::string textOf(Id id) {
    if (id.id == ~0U) return "-";
    return id.id == id.own ? "own" : std::to_string(id.id);
}

std::string textOf(std::size_t size) {
    return std::to_string(size);
}

template <class... Arguments>
void note(char const* name, Arguments... arguments) {
    if (over) return;
    int const before = errno;
    lines += name;
    for (std::string const& text : {textOf(arguments)...}) lines += text.empty() ? "" : " " + text;
    lines += '\n';
    errno = before;
}

bool fail(char const* name) {
    if (over) return false;
    made += name + std::string(" ");
    auto const plan = plans.find(name);
    int const error = plan == plans.end() ? 0 : plan->second();
    if (error != 0) errno = error;
    return error != 0;
}

}  // namespace calls

// WRAP(result, name, parameters, arguments, the arguments that are noted)
#define WRAP(Result, name, parameters, arguments, ...)            \
    Result __real_##name parameters;                              \
    Result __wrap_##name parameters {                             \
        calls::note(#name, __VA_ARGS__);                          \
        return calls::fail(#name) ? -1 : __real_##name arguments; \
    }

extern "C" {
using calls::Descriptor;
using calls::Flags;
using calls::Id;
using calls::Mode;
WRAP(int, open, (char const* path, int flags, mode_t mode), (path, flags, mode), path, Flags{flags}, Mode{mode, flags})
WRAP(int, openat, (int at, char const* path, int flags, mode_t mode), (at, path, flags, mode), Descriptor{at}, path,
     Flags{flags}, Mode{mode, flags})
WRAP(ssize_t, read, (int fd, void* to, size_t size), (fd, to, size), Descriptor{fd}, size)
WRAP(int, fsync, (int fd), (fd), Descriptor{fd})
WRAP(int, fstatat, (int at, char const* path, struct stat* to, int flags), (at, path, to, flags), Descriptor{at}, path,
     Flags{flags, false})
WRAP(int, faccessat, (int at, char const* path, int mode, int flags), (at, path, mode, flags), Descriptor{at}, path,
     mode == W_OK ? "W_OK" : "?", Flags{flags, false})
WRAP(int, fchown, (int fd, uid_t user, gid_t group), (fd, user, group), Descriptor{fd}, Id{user, ::geteuid()},
     Id{group, ::getegid()})
WRAP(int, fchmod, (int fd, mode_t mode), (fd, mode), Descriptor{fd}, Mode{mode})
WRAP(int, fremovexattr, (int fd, char const* name), (fd, name), Descriptor{fd}, name)
WRAP(int, fsetxattr, (int fd, char const* name, void const* value, size_t size, int flags),
     (fd, name, value, size, flags), Descriptor{fd}, name, size, Flags{flags})
WRAP(ssize_t, llistxattr, (char const* path, char* to, size_t size), (path, to, size), path)
WRAP(ssize_t, getrandom, (void* to, size_t size, unsigned flags), (to, size, flags), size)
WRAP(int, linkat, (int at, char const* from, int toAt, char const* to, int flags), (at, from, toAt, to, flags),
     Descriptor{at}, Descriptor{std::atoi(from + std::string("/proc/self/fd/").size())}, Descriptor{toAt}, to,
     Flags{flags, false})
WRAP(int, renameat, (int at, char const* from, int toAt, char const* to), (at, from, toAt, to), Descriptor{at}, from,
     Descriptor{toAt}, to)

ssize_t __real_write(int fd, void const* from, size_t size);
ssize_t __wrap_write(int fd, void const* from, size_t size) {
    calls::note("write", Descriptor{fd}, size);
    calls::written = fd;
    return calls::fail("write") ? -1 : __real_write(fd, from, std::min(size, calls::longestWrite));
}

// Not noted: a system with security labels has attributes to read on every file.
ssize_t __real_lgetxattr(char const* path, char const* name, void* to, size_t size);
ssize_t __wrap_lgetxattr(char const* path, char const* name, void* to, size_t size) {
    return calls::fail("lgetxattr") ? -1 : __real_lgetxattr(path, name, to, size);
}

int __real_close(int fd);
int __wrap_close(int fd) {
    calls::note("close", Descriptor{fd});
    int const result = __real_close(fd);  // which closes the file even if it fails
    return calls::fail("close") ? -1 : result;
}
}
