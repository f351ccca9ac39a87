// The save that replaces a file: what it keeps, what it refuses, and what it leaves when something fails.

#include <grp.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <string.h>
#include <sys/mount.h>
#include <sys/resource.h>

#include <set>
#include <sstream>

#include "support.h"
#include "system_calls.h"

namespace {

using namespace kiri::tov;
namespace fs = std::filesystem;

// During its lifetime, the process is another user with another group and a supplementary group.
class OtherUser {
public:
    OtherUser(uid_t user, gid_t group, gid_t member) {
        if (::setgroups(1, &member) != 0 || ::setegid(group) != 0 || ::seteuid(user) != 0) std::abort();
    }
    ~OtherUser() {
        if (::seteuid(0) != 0 || ::setegid(0) != 0 || ::setgroups(0, nullptr) != 0) std::abort();
    }
};

// "user:group mode" of a file.
std::string rightsOf(std::string const& path) {
    struct stat info {};
    if (::stat(path.c_str(), &info) != 0) return "none";
    std::ostringstream text;
    text << info.st_uid << ':' << info.st_gid << ' ' << std::oct << (info.st_mode & 07777U);
    return text.str();
}

// A folder with one file, and a document to save.
class Atomic : public testing::Test {
protected:
    Atomic() {
        support::load(document, "# " + std::string(9000, 'x') + "\ncreate_clock -period 5");
        support::write(path, "old");
    }
    ~Atomic() override { calls::start(); }

    // The names in the folder.
    std::set<std::string> names() const {
        std::set<std::string> result;
        for (auto const& entry : fs::directory_iterator(dir / "")) result.insert(entry.path().filename());
        return result;
    }

    // Saves, and returns why that failed, without the path.
    std::string save(std::string const& to) {
        std::string error = "old error";
        bool const saved = document.saveAtomically(to.c_str(), &error);
        EXPECT_EQ(saved, error.empty());
        if (saved) return "";
        EXPECT_EQ(error.substr(0, to.size() + 2), to + ": ");
        return error.substr(to.size() + 2);
    }

    bool isSaved(std::string const& to) { return support::read(to) == document.toSaveString(); }

    support::TempDir const dir;
    std::string const path = dir / "file";
    TOV document;
};

TEST_F(Atomic, ReplacesTheFile) {
    ::chmod(path.c_str(), 0604);
    EXPECT_EQ(save(path), "");
    EXPECT_TRUE(isSaved(path));
    EXPECT_EQ(fs::status(path).permissions(), fs::perms(0604));
    mode_t const before = ::umask(0027);
    EXPECT_TRUE(document.saveAtomically((dir / "new").c_str()));
    ::umask(before);
    EXPECT_EQ(fs::status(dir / "new").permissions(), fs::perms(0640));
    fs::path const here = fs::current_path();
    fs::current_path(dir / "");
    EXPECT_EQ(save("local"), "");
    fs::current_path(here);
    EXPECT_EQ(names(), (std::set<std::string>{"file", "local", "new"}));
}

TEST_F(Atomic, FollowsLinks) {
    fs::create_directory(dir / "sub");
    fs::create_symlink("../file", dir / "sub/link");
    fs::create_symlink("sub/link", dir / "link");
    fs::create_symlink(dir / "sub/made", dir / "dangling");
    EXPECT_EQ(save(dir / "link"), "");
    EXPECT_TRUE(isSaved(path));
    EXPECT_EQ(save(dir / "dangling"), "");
    EXPECT_TRUE(isSaved(dir / "sub/made"));
    EXPECT_EQ(fs::read_symlink(dir / "link"), "sub/link");
    EXPECT_EQ(names(), (std::set<std::string>{"dangling", "file", "link", "sub"}));
    // As many links as the system follows.
    std::string last = "file";
    for (int links = 1; links <= 41; ++links) {
        std::string const next = "sub/" + std::to_string(links);
        fs::create_symlink("../" + last, dir / next);
        last = next;
        EXPECT_EQ(save(dir / last).empty(), ::access((dir / last).c_str(), F_OK) == 0) << links;
    }
}

TEST_F(Atomic, SaysWhyItFailed) {
    fs::create_symlink("loop", dir / "loop");
    fs::create_directory(dir / "sub");
    std::string const device = support::makeFullDevice(dir);
    EXPECT_TRUE(device.empty() || save(device) == "not a regular file");
    std::set<std::string> const before = names();
    support::expectRows("save_errors", [this](std::string const& to) { return save(dir / to); });
    EXPECT_EQ(save(""), "No such file or directory");
    EXPECT_FALSE(document.saveAtomically(nullptr));
    int const open = ::open(support::write(dir / "gone", "").c_str(), O_RDONLY | O_CLOEXEC);
    fs::remove(dir / "gone");
    EXPECT_EQ(save("/proc/self/fd/" + std::to_string(open)), "not a regular file");
    ::close(open);
    std::string const deep = dir / std::string(3000, '/') + "\x1b[1m\nn\xc3\xa9\xff/none";
    std::string error;
    EXPECT_FALSE(document.saveAtomically(deep.c_str(), &error));
    EXPECT_EQ(error.size(), 999U);
    std::string const end = "//?[1m?n\xc3\xa9?/none: No such file or directory";
    EXPECT_EQ(error.substr(error.size() - end.size()), end);
    EXPECT_EQ(support::read(path), "old");
    EXPECT_EQ(names(), before);
}

// Other users may not gain rights from a save.
TEST_F(Atomic, KeepsRightsAndGivesNone) {
    if (::geteuid() != 0) GTEST_SKIP() << "only root is other users";
    ::chmod((dir / "").c_str(), 0777);
    support::expectRows("save_rights", [this](std::string const& row) {
        unsigned owner = 0, group = 0, mode = 0, user = 0, userGroup = 0, member = 0;
        std::sscanf(row.c_str(), "%u:%u %o by %u:%u %u", &owner, &group, &mode, &user, &userGroup, &member);
        support::write(path, "old");
        EXPECT_TRUE(::chown(path.c_str(), owner, group) == 0 && ::chmod(path.c_str(), mode) == 0);
        OtherUser const other(user, userGroup, member);
        std::string const why = save(path);
        return rightsOf(path) + (why.empty() ? "" : " " + why);
    });
    // The process may create files in the folder, but not list them.
    ::chmod((dir / "").c_str(), 0733);
    {
        OtherUser const other(5001, 5001, 5001);
        EXPECT_EQ(save(dir / "new"), "");
    }
    EXPECT_EQ(rightsOf(dir / "new").substr(0, 9), "5001:5001");
    EXPECT_EQ(names(), (std::set<std::string>{"file", "new"}));
}

// An access list with rights for a group of others, as the system stores it.
std::string accessList(unsigned char mask) {
    struct Entry {
        std::uint16_t tag, permissions;
        std::uint32_t id;
    };
    Entry const entries[] = {{1, 6, ~0U}, {4, 0, ~0U}, {8, 6, 5003}, {16, mask, ~0U}, {32, 0, ~0U}};
    return std::string("\2\0\0\0", 4).append(reinterpret_cast<char const*>(entries), sizeof entries);
}

std::string attributeOf(std::string const& path, char const* name) {
    char value[100];
    ssize_t const size = ::getxattr(path.c_str(), name, value, sizeof value);
    return size < 0 ? "none" : std::string(value, static_cast<std::size_t>(size));
}

TEST_F(Atomic, KeepsAccessListsAndAttributes) {
    constexpr char access[] = "system.posix_acl_access";
    std::string const list = accessList(4);
    auto const set = [](std::string const& to, char const* name, std::string const& value) {
        return ::setxattr(to.c_str(), name, value.data(), value.size(), 0) == 0;
    };
    if (!set(dir / "", "system.posix_acl_default", accessList(6))) GTEST_SKIP() << "no access lists";
    ::chmod(path.c_str(), 0660);
    EXPECT_EQ(save(path), "");
    EXPECT_EQ(attributeOf(path, access), "none");
    EXPECT_EQ(fs::status(path).permissions(), fs::perms(0660));
    EXPECT_EQ(save(dir / "new"), "");
    EXPECT_NE(attributeOf(dir / "new", access), "none");
    EXPECT_TRUE(set(path, access, list) && set(path, "user.note", "kept"));
    for (bool hasUnnamedFiles : {true, false}) {
        calls::start({{"linkat", calls::failing(hasUnnamedFiles ? -1 : 0, EPERM)}});
        EXPECT_EQ(save(path), "");
        EXPECT_EQ(attributeOf(path, access), list);
        EXPECT_EQ(attributeOf(path, "user.note"), "kept");
    }
    EXPECT_EQ(fs::status(path).permissions(), fs::perms(0640));
    for (char const* call : {"lgetxattr", "fsetxattr"}) {
        calls::start({{call, calls::failing(2, EIO)}});
        EXPECT_NE(save(path).find(" cannot be kept: Input/output error"), std::string::npos) << call;
    }
    if (::geteuid() == 0) {
        EXPECT_EQ(::chown(path.c_str(), 0, 6000), 0);
        calls::start({{"fchown", calls::failing(0, EPERM)}});
        EXPECT_EQ(save(path), "its access list cannot be kept: Operation not permitted");
    }
    EXPECT_EQ(names(), (std::set<std::string>{"file", "new"}));
}

// Each step with its arguments, in the order that protects the old file: text, rights, disk, name. A row says whether
// the file exists and whether the system supports files without a name.
TEST_F(Atomic, NamesTheFileWhenItIsWhole) {
    mode_t const before = ::umask(0);
    support::expectRows("save_steps", [this](std::string const& row) {
        fs::remove(path);
        if (row.find("old") != row.npos) ::chmod(support::write(path, "old").c_str(), 0751);
        bool const hasUnnamedFiles = row.find("unnamed") != row.npos;
        struct stat written {};
        calls::start({{"openat", calls::failing(hasUnnamedFiles ? -1 : 1, EISDIR)},
                      {"write", [&] { return ::fstat(calls::written, &written); }}});
        EXPECT_EQ(save(path), "");
        EXPECT_EQ(written.st_mode & 07777U, row.find("old") != row.npos ? 0600U : 0666U);
        std::string steps = calls::lines.substr(0, calls::lines.size() - 1);
        std::string const size = std::to_string(document.toSaveString().size());
        return steps.replace(steps.find(size), size.size(), "SIZE");
    });
    ::umask(before);
}

// A temporary name that another file has, or a call that a signal interrupts.
TEST_F(Atomic, TriesNamesAgain) {
    for (int const error : {EEXIST, EINTR}) {
        int count = 0;
        calls::start({{"openat", [&] { return ++count == 1 ? EISDIR : count == 2 ? error : 0; }}});
        EXPECT_EQ(save(path), "");
        EXPECT_EQ(count, 3);
    }
    EXPECT_EQ(names(), std::set<std::string>{"file"});
}

// A row has a system call, which of its calls fail (0: all), and the error.
TEST_F(Atomic, LeavesTheOldFileOrTheNewOne) {
    support::expectRows("save_faults", [this](std::string const& row) {
        std::istringstream fault(row);
        std::string call, name;
        int number = 0, error = 1;
        fault >> call >> number >> name;
        while (error < 200 && (::strerrorname_np(error) == nullptr || name != ::strerrorname_np(error))) ++error;
        support::write(path, "old");
        calls::start({{call, calls::failing(number, error)}});
        std::string const why = save(path);
        EXPECT_NE(calls::made.find(call), std::string::npos);
        calls::start();
        EXPECT_EQ(names(), std::set<std::string>{"file"});
        return (isSaved(path) ? "new" : support::read(path)) + (why.empty() ? "" : ": " + why);
    });
}

// Another program replaces or removes the file while it is examined.
TEST_F(Atomic, LooksAgain) {
    std::string const other = support::write(dir / "other", "other");
    ::chmod(other.c_str(), 0606);
    for (char const* call : {"fstatat", "faccessat", "llistxattr"}) {
        for (bool replace : {true, false}) {
            support::write(path, "old");
            calls::start({{call, [&, done = false]() mutable {
                               if (done) return 0;
                               done = true;
                               fs::remove(path);
                               if (replace) fs::copy_file(other, path);
                               return 0;
                           }}});
            EXPECT_EQ(save(path), "") << call;
            EXPECT_TRUE(isSaved(path));
            EXPECT_EQ(fs::status(path).permissions() == fs::perms(0606), replace) << call;
        }
    }
}

TEST_F(Atomic, SurvivesLimits) {
    sigset_t mask, pending;
    ::sigemptyset(&mask);
    ::sigaddset(&mask, SIGXFSZ);
    rlimit before{};
    ::getrlimit(RLIMIT_FSIZE, &before);
    rlimit const small{4096, before.rlim_max};
    for (bool isPending : {false, true}) {
        if (isPending) ::pthread_sigmask(SIG_BLOCK, &mask, nullptr);
        if (isPending) ::raise(SIGXFSZ);
        ::setrlimit(RLIMIT_FSIZE, &small);
        EXPECT_EQ(save(path), "File too large");
        ::setrlimit(RLIMIT_FSIZE, &before);
        sigset_t now;
        EXPECT_EQ(::pthread_sigmask(SIG_BLOCK, nullptr, &now), 0);
        ::sigpending(&pending);
        EXPECT_EQ(::sigismember(&now, SIGXFSZ), isPending);
        EXPECT_EQ(::sigismember(&pending, SIGXFSZ), isPending);
    }
    timespec const atOnce{};
    ::sigtimedwait(&mask, nullptr, &atOnce);
    ::pthread_sigmask(SIG_UNBLOCK, &mask, nullptr);
    EXPECT_EQ(support::read(path), "old");
    EXPECT_EQ(names(), std::set<std::string>{"file"});
    if (::mount("none", (dir / "").c_str(), "tmpfs", 0, "size=4k") != 0) GTEST_SKIP();
    EXPECT_EQ(save(dir / "new"), "No space left on device");
    EXPECT_EQ(names(), std::set<std::string>{});
    ::mount("none", (dir / "").c_str(), "tmpfs", MS_REMOUNT | MS_RDONLY, "");
    EXPECT_EQ(save(dir / "new"), "Read-only file system");
    ::umount((dir / "").c_str());
}

}  // namespace
