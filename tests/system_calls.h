#pragma once

// The system calls of a program that is linked with wrap_system_calls() of CMakeLists.txt: which were made, and which
// fail. Each thread has its own plans and records. For one source file of a program.

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

/// What a call does before the system does it: it fails by the errno returned, 0 lets it pass.
using Plan = std::function<int()>;

thread_local bool over =
    false;  // the thread has ended: its plans and records are gone, and coverage is yet to be written
thread_local std::map<std::string, Plan> plans;
thread_local std::string made;  // the names of the calls since the last start(), a blank after each
thread_local struct End {
    ~End() { over = true; }
} end;
thread_local std::size_t longestWrite = SIZE_MAX;
thread_local int written = -1;  // the descriptor of the last write

void start(std::map<std::string, Plan> newPlans = {}) {
    static_cast<void>(end);
    plans = std::move(newPlans);
    made.clear();
}

/// Fails one call, counted from 1, or each for 0.
Plan failing(int number, int error) {
    return [number, error, count = 0]() mutable { return ++count == number || number == 0 ? error : 0; };
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

#define WRAP(Result, name, parameters, arguments)                 \
    Result __real_##name parameters;                              \
    Result __wrap_##name parameters {                             \
        return calls::fail(#name) ? -1 : __real_##name arguments; \
    }

extern "C" {
WRAP(int, open, (char const* path, int flags, mode_t mode), (path, flags, mode))
WRAP(int, openat, (int at, char const* path, int flags, mode_t mode), (at, path, flags, mode))
WRAP(ssize_t, read, (int fd, void* to, size_t size), (fd, to, size))
WRAP(int, fsync, (int fd), (fd))
WRAP(int, fstatat, (int at, char const* path, struct stat* to, int flags), (at, path, to, flags))
WRAP(int, faccessat, (int at, char const* path, int mode, int flags), (at, path, mode, flags))
WRAP(int, fchown, (int fd, uid_t user, gid_t group), (fd, user, group))
WRAP(int, fchmod, (int fd, mode_t mode), (fd, mode))
WRAP(int, fremovexattr, (int fd, char const* name), (fd, name))
WRAP(int, fsetxattr, (int fd, char const* name, void const* value, size_t size, int flags),
     (fd, name, value, size, flags))
WRAP(ssize_t, llistxattr, (char const* path, char* to, size_t size), (path, to, size))
WRAP(ssize_t, getrandom, (void* to, size_t size, unsigned flags), (to, size, flags))
WRAP(int, linkat, (int at, char const* from, int toAt, char const* to, int flags), (at, from, toAt, to, flags))
WRAP(int, renameat, (int at, char const* from, int toAt, char const* to), (at, from, toAt, to))

ssize_t __real_write(int fd, void const* from, size_t size);
ssize_t __wrap_write(int fd, void const* from, size_t size) {
    calls::written = fd;
    return calls::fail("write") ? -1 : __real_write(fd, from, std::min(size, calls::longestWrite));
}

int __real_close(int fd);
int __wrap_close(int fd) {
    int const result = __real_close(fd);  // which closes the file even where it fails
    return calls::fail("close") ? -1 : result;
}
}
