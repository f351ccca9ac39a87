#include "tov/output_file.h"

#include <unistd.h>

#include <cerrno>

#include "tov/open_file.h"

namespace kiri::tov {

OutputFile::OutputFile(char const* path) : fd_(openFile(path, O_WRONLY | O_CREAT | O_TRUNC)) {}

OutputFile::~OutputFile() {
    if (fd_ >= 0) ::close(fd_);
}

bool OutputFile::write(std::string_view text) {
    while (!text.empty()) {
        ssize_t const written = ::write(fd_, text.data(), text.size());
        if (written < 0 && errno != EINTR) return false;
        if (written > 0) text.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

}  // namespace kiri::tov
