// Pseudo-terminal device of the virtual probe and its writer thread.
#include "probe/PtyProbe.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <system_error>
#include <termios.h>
#include <unistd.h>
#include <utility>

namespace zorvik {

namespace {

using Clock = std::chrono::steady_clock;

/// A paced writer sleeps at least this long between writes, so that bytes leave in small
/// bursts scheduled by the clock rather than one wake-up per byte.
constexpr auto kMinPacedSleep = std::chrono::milliseconds(4);
/// How long the end of a finite stream waits for the reader to take what is still buffered.
constexpr auto kReaderGrace = std::chrono::milliseconds(250);
constexpr auto kQueueSettle = std::chrono::milliseconds(20);

[[noreturn]] void throwErrno(const char* what) {
    throw std::system_error(errno, std::generic_category(), what);
}

void closeFd(int& fd) {
    if (fd >= 0)
        ::close(fd);
    fd = -1;
}

std::string slaveName(int master) {
    // ptsname() hands out a static buffer: one caller at a time.
    static std::mutex nameMutex;
    std::lock_guard lock(nameMutex);
    const char* name = ::ptsname(master);
    return name ? std::string(name) : std::string();
}

} // namespace

PtyProbe::PtyProbe(ProbeStream stream) : PtyProbe(std::move(stream), Options{}) {}

PtyProbe::PtyProbe(ProbeStream stream, Options options)
    : m_stream(std::move(stream)), m_options(std::move(options)),
      m_streamCounters(m_stream.counters()) {}

PtyProbe::~PtyProbe() {
    stop();
}

void PtyProbe::openDevice() {
    m_master = ::posix_openpt(O_RDWR | O_NOCTTY);
    if (m_master < 0)
        throwErrno("posix_openpt");
    ::fcntl(m_master, F_SETFD, FD_CLOEXEC);
    ::fcntl(m_master, F_SETFL, ::fcntl(m_master, F_GETFL) | O_NONBLOCK);
    if (::grantpt(m_master) != 0 || ::unlockpt(m_master) != 0)
        throwErrno("grantpt/unlockpt");
    m_devicePath = slaveName(m_master);
    if (m_devicePath.empty())
        throwErrno("ptsname");
    // The probe keeps the slave open itself, so that the device and its settings survive
    // while the program closes and reopens its port. Raw at once: no line discipline ever
    // touches a byte (no echo, no CR/LF mapping, no XON/XOFF, no signal characters).
    m_slave = ::open(m_devicePath.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (m_slave < 0)
        throwErrno("open of the pseudo-terminal");
    termios tio{};
    if (::tcgetattr(m_slave, &tio) != 0)
        throwErrno("tcgetattr");
    ::cfmakeraw(&tio);
    ::cfsetispeed(&tio, B19200);
    ::cfsetospeed(&tio, B19200);
    if (::tcsetattr(m_slave, TCSANOW, &tio) != 0)
        throwErrno("tcsetattr");

    if (!m_options.linkPath.empty()) {
        // A link left behind by an earlier run is replaced; anything else there is kept.
        struct stat st {};
        if (::lstat(m_options.linkPath.c_str(), &st) == 0) {
            if (!S_ISLNK(st.st_mode)) {
                errno = EEXIST;
                throwErrno(("link " + m_options.linkPath).c_str());
            }
            ::unlink(m_options.linkPath.c_str());
        }
        if (::symlink(m_devicePath.c_str(), m_options.linkPath.c_str()) != 0)
            throwErrno(("link " + m_options.linkPath).c_str());
        m_linked = true;
    }
}

void PtyProbe::closeDevice() {
    if (m_linked)
        ::unlink(m_options.linkPath.c_str());
    m_linked = false;
    // Closing the master removes the device node and hangs up every open port on it.
    closeFd(m_master);
    closeFd(m_slave);
}

void PtyProbe::start() {
    std::lock_guard lock(m_control);
    if (m_thread.joinable())
        return;
    try {
        if (::pipe(m_wake) != 0)
            throwErrno("pipe");
        for (const int fd : m_wake) {
            ::fcntl(fd, F_SETFD, FD_CLOEXEC);
            ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) | O_NONBLOCK);
        }
        openDevice();
    } catch (...) {
        closeDevice();
        closeFd(m_wake[0]);
        closeFd(m_wake[1]);
        throw;
    }
    m_stopRequested = false;
    m_disconnected = false;
    m_running = true;
    m_thread = std::thread(&PtyProbe::run, this);
}

void PtyProbe::stop() {
    std::lock_guard lock(m_control);
    if (m_thread.joinable()) {
        m_stopRequested = true;
        const char wake = 1;
        [[maybe_unused]] auto ignored = ::write(m_wake[1], &wake, 1);
        m_thread.join();
    }
    closeDevice();
    closeFd(m_wake[0]);
    closeFd(m_wake[1]);
}

void PtyProbe::disconnect() {
    stop();
    m_disconnected = true;
}

bool PtyProbe::waitUntilDone(std::chrono::milliseconds timeout) {
    std::unique_lock lock(m_stateMutex);
    return m_doneChanged.wait_for(lock, timeout, [this] { return !m_running; });
}

StreamCounters PtyProbe::streamCounters() const {
    std::lock_guard lock(m_stateMutex);
    return m_streamCounters;
}

bool PtyProbe::fetchChunk(StreamChunk& chunk) {
    std::lock_guard lock(m_stateMutex);
    auto next = m_stream.next();
    m_streamCounters = m_stream.counters();
    if (!next)
        return false;
    chunk = std::move(*next);
    return true;
}

void PtyProbe::sent(const std::uint8_t* bytes, std::size_t count) {
    if (count == 0)
        return;
    m_bytesWritten += count;
    if (m_options.onSent)
        m_options.onSent(bytes, count);
}

std::size_t PtyProbe::writeSome(const std::uint8_t* bytes, std::size_t count) {
    for (;;) {
        const ssize_t n = ::write(m_master, bytes, count);
        if (n >= 0)
            return static_cast<std::size_t>(n);
        if (errno != EINTR)
            return 0; // buffer full (EAGAIN), or the terminal is gone
    }
}

void PtyProbe::sleepFor(std::chrono::nanoseconds duration) {
    // Wakes early when stop() writes to the wake pipe.
    const auto ms = std::chrono::ceil<std::chrono::milliseconds>(duration).count();
    pollfd wake{m_wake[0], POLLIN, 0};
    if (::poll(&wake, 1, static_cast<int>(std::max<long long>(ms, 0))) > 0) {
        char drain[16];
        while (::read(m_wake[0], drain, sizeof drain) > 0) {
        }
    }
}

void PtyProbe::run() {
    if (m_options.paced)
        runPaced();
    else
        runUnpaced();
    finish();
}

void PtyProbe::waitForReader() {
    // Bytes just written may still be on their way into the terminal's input queue, so the
    // queue has to stay empty for a moment before the reader counts as done.
    const auto deadline = Clock::now() + kReaderGrace;
    auto emptySince = Clock::now();
    int queued = 0;
    while (!m_stopRequested && Clock::now() < deadline &&
           ::ioctl(m_slave, FIONREAD, &queued) == 0) {
        const auto now = Clock::now();
        if (queued > 0)
            emptySince = now;
        else if (now - emptySince >= kQueueSettle)
            return;
        sleepFor(std::chrono::milliseconds(2));
    }
}

void PtyProbe::finish() {
    if (!m_stopRequested) {
        // A stream that ends by itself leaves its last bytes to the reader (for a short while
        // at most) before the run ends or the plug is pulled, so that a program reading along
        // sees every frame.
        waitForReader();
        if (!m_stopRequested && m_stream.end() == StreamEnd::Disconnected) {
            closeDevice();
            m_disconnected = true;
        }
    }
    {
        std::lock_guard lock(m_stateMutex);
        m_running = false;
    }
    m_doneChanged.notify_all();
}

void PtyProbe::runPaced() {
    // Every byte has its moment on the line: the chunk's start plus one byte time for it and
    // each byte before it (the moment its stop bit ends). Each wake-up writes whatever has fallen
    // due by the clock, so the rate holds however late the thread wakes.
    const std::chrono::duration<double> byteTime(1.0 / m_options.bytesPerSecond);
    auto chunkStart = Clock::now();
    StreamChunk chunk;
    std::size_t offset = 0;
    bool haveChunk = false;
    while (!m_stopRequested) {
        if (!haveChunk) {
            if (!fetchChunk(chunk)) {
                // The last piece's time on the line runs out before the stream's end.
                const auto left = chunkStart - Clock::now();
                if (left > Clock::duration::zero())
                    sleepFor(left);
                return;
            }
            haveChunk = true;
            offset = 0;
        }
        const auto now = Clock::now();
        const double elapsedBytes = (now - chunkStart) / byteTime;
        const std::size_t due =
            elapsedBytes <= 0.0
                ? 0
                : std::min(chunk.bytes.size(), static_cast<std::size_t>(std::floor(elapsedBytes)));
        if (due > offset) {
            const std::size_t wanted = due - offset;
            if (m_options.onDue)
                m_options.onDue(chunk.bytes.data() + offset, wanted);
            const std::size_t written = writeSome(chunk.bytes.data() + offset, wanted);
            sent(chunk.bytes.data() + offset, written);
            m_bytesDropped += wanted - written;
            offset = due;
        }
        if (offset == chunk.bytes.size()) {
            chunkStart += std::chrono::duration_cast<Clock::duration>(
                              static_cast<double>(chunk.lineBytes) * byteTime) +
                          chunk.stallAfter;
            if (chunk.endsFrame)
                ++m_framesSent;
            haveChunk = false;
            continue;
        }
        const auto nextDue = chunkStart + std::chrono::duration_cast<Clock::duration>(
                                              static_cast<double>(offset + 1) * byteTime);
        sleepFor(std::max<Clock::duration>(nextDue - now, kMinPacedSleep));
    }
}

void PtyProbe::runUnpaced() {
    StreamChunk chunk;
    while (!m_stopRequested) {
        if (!fetchChunk(chunk))
            return;
        std::size_t offset = 0;
        while (offset < chunk.bytes.size() && !m_stopRequested) {
            const std::size_t n =
                writeSome(chunk.bytes.data() + offset, chunk.bytes.size() - offset);
            sent(chunk.bytes.data() + offset, n);
            offset += n;
            if (offset < chunk.bytes.size()) {
                // Wait until the reader makes room, or stop() calls.
                pollfd fds[2] = {{m_master, POLLOUT, 0}, {m_wake[0], POLLIN, 0}};
                ::poll(fds, 2, -1);
                if (fds[0].revents & (POLLERR | POLLHUP | POLLNVAL))
                    return;
            }
        }
        if (m_stopRequested)
            return;
        if (chunk.endsFrame)
            ++m_framesSent;
        if (chunk.stallAfter.count() > 0)
            sleepFor(chunk.stallAfter);
    }
}

} // namespace zorvik
