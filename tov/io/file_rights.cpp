#include "tov/io/file_rights_p.h"

#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string_view>

#include "tov/io/error_text_p.h"

namespace kiri::tov::impl_detail {

namespace {

constexpr char accessList[] = "system.posix_acl_access";

// Stores in `value` what `call` writes to a buffer. Without a buffer, `call` returns the size that it needs.
template <class Call>
bool readValue(std::string& value, Call call) {
    for (;;) {
        ssize_t size = call(nullptr, 0);
        if (size < 0) return false;
        value.resize(static_cast<std::size_t>(size));
        size = call(value.data(), value.size());
        if (size >= 0) value.resize(static_cast<std::size_t>(size));
        if (size >= 0 || errno != ERANGE) return size >= 0;
    }
}

Result lostAttribute(std::string_view name, int error) {
    std::string const what = name == accessList ? "access list" : "attribute " + std::string(name);
    return {error, "its " + what + " cannot be kept: " + systemText(error)};
}

// Returns the permission bits for a file with another group. The members of that group, and all others, who now include
// the members of the old group, get only the rights that both the old group and all others had.
mode_t withoutGroup(mode_t mode) {
    mode_t const shared = mode & (mode >> 3U) & S_IRWXO;
    return (mode & ~static_cast<mode_t>(S_ISGID | S_IRWXG | S_IRWXO)) | shared << 3U | shared;
}

}  // namespace

Result FileRights::read(std::string const& path, struct stat const& status) {
    status_ = status;
    attributes_.clear();
    std::string names;
    bool const listed =
        readValue(names, [&](char* to, std::size_t size) { return ::llistxattr(path.c_str(), to, size); });
    if (!listed) return errno == ENOTSUP || errno == ENOSYS ? Result() : systemFailure(errno);
    for (std::size_t at = 0; at < names.size(); at += std::strlen(names.c_str() + at) + 1) {
        Attribute attribute{names.c_str() + at, {}};
        char const* const name = attribute.name.c_str();
        auto const get = [&](char* to, std::size_t size) { return ::lgetxattr(path.c_str(), name, to, size); };
        bool const found = readValue(attribute.value, get);
        if (!found && errno == ENODATA) continue;  // it was removed meanwhile
        if (!found) return lostAttribute(attribute.name, errno);
        attributes_.push_back(std::move(attribute));
    }
    return {};
}

bool FileRights::hasAccessList() const {
    return std::any_of(attributes_.begin(), attributes_.end(),
                       [](Attribute const& attribute) { return attribute.name == accessList; });
}

Result FileRights::giveTo(File const& file) const {
    int const fd = file.descriptor();
    // A process may be allowed to set only the group. The status shows what was set.
    int const results[] = {::fchown(fd, static_cast<uid_t>(-1), status_.st_gid),
                           ::fchown(fd, status_.st_uid, static_cast<gid_t>(-1))};
    static_cast<void>(results);
    struct stat now {};
    if (::fstat(fd, &now) != 0) return systemFailure(errno);
    mode_t mode = status_.st_mode & 07777U;
    if (now.st_uid != status_.st_uid) mode &= ~static_cast<mode_t>(S_ISUID);
    if (now.st_gid != status_.st_gid) {
        if (hasAccessList()) return lostAttribute(accessList, EPERM);
        mode = withoutGroup(mode);
    }
    // The new file may have the default access list of its folder.
    if (!hasAccessList() && ::fremovexattr(fd, accessList) != 0 && errno != ENODATA && errno != ENOTSUP)
        return lostAttribute(accessList, errno);
    for (auto const& [name, value] : attributes_) {
        std::string present;
        auto const get = [&, key = name.c_str()](char* to, std::size_t size) { return ::fgetxattr(fd, key, to, size); };
        bool const same = readValue(present, get) && present == value;
        if (!same && ::fsetxattr(fd, name.c_str(), value.data(), value.size(), 0) != 0)
            return lostAttribute(name, errno);
    }
    return ::fchmod(fd, mode) == 0 ? Result() : systemFailure(errno);
}

}  // namespace kiri::tov::impl_detail
