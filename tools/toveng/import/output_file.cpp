#include "output_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "source_file.h"

namespace tool::sdc {

namespace {

/// A temporary file beside the output file, which it then replaces.
class Draft {
public:
    explicit Draft(std::string const& target) : path_(target.substr(0, target.rfind('/') + 1) + ".toveng-XXXXXX") {
        file_ = ::mkostemp(path_.data(), O_CLOEXEC);
    }
    ~Draft() {
        if (file_ < 0) return;
        ::close(file_);
        if (!isPlaced_) ::unlink(path_.c_str());
    }
    Draft(Draft const&) = delete;
    Draft& operator=(Draft const&) = delete;

    bool write(std::string_view text) const {
        while (file_ >= 0 && !text.empty()) {
            ssize_t const size = ::write(file_, text.data(), text.size());
            if (size > 0)
                text.remove_prefix(static_cast<std::size_t>(size));
            else if (errno != EINTR)
                return false;
        }
        return file_ >= 0;
    }

    bool place(std::string const& target, mode_t mode) {
        isPlaced_ = ::fchmod(file_, mode) == 0 && ::fsync(file_) == 0 && ::rename(path_.c_str(), target.c_str()) == 0;
        return isPlaced_;
    }

private:
    std::string path_;
    int file_ = -1;
    bool isPlaced_ = false;
};

mode_t newMode() {
    mode_t const mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

}  // namespace

bool writeWhole(std::string const& path, std::string_view text, std::string& error) {
    std::string const real = realPath(path);
    std::string const& target = real.empty() ? path : real;
    struct stat status {};
    bool const exists = ::stat(target.c_str(), &status) == 0;
    bool const isWritable = !exists || ::access(target.c_str(), W_OK) == 0;
    if (exists && !S_ISREG(status.st_mode)) {
        error = S_ISDIR(status.st_mode) ? std::strerror(EISDIR) : "not a regular file";
        return false;
    }
    Draft draft(target);
    if (isWritable && draft.write(text) && draft.place(target, exists ? status.st_mode & 0777 : newMode())) return true;
    error = std::strerror(errno);
    return false;
}

}  // namespace tool::sdc
