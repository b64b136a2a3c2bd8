// The file a recording writes to.
#include "analysis/RecordingFile.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace zorvik {

RecordingFile::~RecordingFile() {
    close();
}

bool RecordingFile::create(const std::string& path) {
    close();
    error_.clear();
    bytes_ = 0;
    fd_ = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
    if (fd_ < 0) {
        error_ = std::strerror(errno);
        return false;
    }
    return true;
}

bool RecordingFile::write(std::string_view text) {
    if (fd_ < 0) {
        error_ = std::strerror(EBADF);
        return false;
    }
    while (!text.empty()) {
        const ssize_t n = ::write(fd_, text.data(), text.size());
        if (n < 0) {
            if (errno == EINTR)
                continue;
            error_ = std::strerror(errno);
            return false;
        }
        bytes_ += n;
        text.remove_prefix(static_cast<std::size_t>(n));
    }
    return true;
}

void RecordingFile::close() {
    if (fd_ >= 0)
        ::close(fd_);
    fd_ = -1;
}

} // namespace zorvik
