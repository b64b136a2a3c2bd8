// Test helper: reads the virtual probe's device with plain POSIX calls, as a serial port
// would, always against a deadline.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <fcntl.h>
#include <poll.h>
#include <string>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace zorvik::test {

using Clock = std::chrono::steady_clock;

class PtyReader {
public:
    explicit PtyReader(const std::string& path)
        : m_fd(::open(path.c_str(), O_RDONLY | O_NOCTTY | O_NONBLOCK | O_CLOEXEC)) {}
    ~PtyReader() {
        if (m_fd >= 0)
            ::close(m_fd);
    }
    PtyReader(const PtyReader&) = delete;
    PtyReader& operator=(const PtyReader&) = delete;

    bool isOpen() const { return m_fd >= 0; }

    /// Reads until `count` bytes have come or the deadline passes; returns what came.
    std::vector<std::uint8_t> read(std::size_t count, std::chrono::milliseconds timeout) {
        std::vector<std::uint8_t> bytes;
        const auto deadline = Clock::now() + timeout;
        while (bytes.size() < count && readSome(bytes, count - bytes.size(), deadline)) {
        }
        return bytes;
    }

    /// Waits for data until the deadline and appends up to `max` bytes; false when nothing
    /// more will come in time (deadline, hang-up or error).
    bool readSome(std::vector<std::uint8_t>& bytes, std::size_t max, Clock::time_point deadline) {
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
        if (left.count() <= 0)
            return false;
        pollfd p{m_fd, POLLIN, 0};
        if (::poll(&p, 1, static_cast<int>(left.count())) <= 0)
            return false;
        std::uint8_t buffer[4096];
        const ssize_t n = ::read(m_fd, buffer, std::min(max, sizeof buffer));
        if (n <= 0) {
            m_hungUp = true;
            return false;
        }
        bytes.insert(bytes.end(), buffer, buffer + n);
        return true;
    }

    /// Bytes waiting to be read now.
    std::size_t available() const {
        int count = 0;
        return ::ioctl(m_fd, FIONREAD, &count) == 0 ? static_cast<std::size_t>(count) : 0;
    }

    /// The device hung up under the reader (a read found no more data ever).
    bool hungUp() const { return m_hungUp; }

private:
    int m_fd;
    bool m_hungUp = false;
};

inline bool pathExists(const std::string& path) {
    struct stat st {};
    return ::lstat(path.c_str(), &st) == 0;
}

/// A device node as it was when first seen. Pseudo-terminal numbers are reused at once by
/// whoever opens the next one (other tests run in parallel), so "gone" means: no node at the
/// path, or a node made later than this one.
struct DeviceNode {
    std::string path;
    timespec changed{};
};

inline DeviceNode deviceNode(const std::string& path) {
    struct stat st {};
    DeviceNode node{path, {}};
    if (::lstat(path.c_str(), &st) == 0)
        node.changed = st.st_ctim;
    return node;
}

inline bool stillThere(const DeviceNode& node) {
    struct stat st {};
    if (::lstat(node.path.c_str(), &st) != 0)
        return false;
    return st.st_ctim.tv_sec == node.changed.tv_sec && st.st_ctim.tv_nsec == node.changed.tv_nsec;
}

/// Polls `condition` until it holds or `timeout` passes.
template <typename Condition> bool waitFor(Condition condition, std::chrono::milliseconds timeout) {
    const auto deadline = Clock::now() + timeout;
    while (!condition()) {
        if (Clock::now() >= deadline)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

} // namespace zorvik::test
