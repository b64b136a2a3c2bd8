// The virtual probe on a pseudo-terminal: a background thread writes the probe's byte schedule
// to the master side, and the program opens the slave device as its serial port.
#pragma once

#include "probe/ProbeSettings.h"
#include "probe/ProbeStream.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

namespace zorvik {

class PtyProbe {
public:
    struct Options {
        /// true: bytes leave at the line rate, and bytes that find the terminal's buffer full
        /// are lost, as with an instrument that keeps streaming to a port nobody reads.
        /// false: as fast as the reader takes them, none lost.
        bool paced = true;
        /// Line rate of a paced probe, bytes per second.
        double bytesPerSecond = kLineBytesPerSecond;
        /// When set, a symbolic link to the device is made here and removed again.
        std::string linkPath;
        /// Told of every byte that went out (on the writer thread).
        std::function<void(const std::uint8_t* bytes, std::size_t count)> onSent;
        /// Paced only: told of the bytes whose moment on the line has come, just before they
        /// are written (on the writer thread), whether or not the terminal has room for them.
        std::function<void(const std::uint8_t* bytes, std::size_t count)> onDue;
    };

    explicit PtyProbe(ProbeStream stream);
    PtyProbe(ProbeStream stream, Options options);
    ~PtyProbe();
    PtyProbe(const PtyProbe&) = delete;
    PtyProbe& operator=(const PtyProbe&) = delete;

    /// Makes the device (and the link) and starts sending; std::system_error when the
    /// terminal or the link cannot be made. Does nothing once started, until stop().
    void start();
    /// Stops sending, closes the device and removes the link. Returns promptly.
    void stop();
    /// Pulls the plug: as stop(), remembered as a disconnect. A port the program holds open on
    /// the device fails from then on.
    void disconnect();

    /// The slave device the program opens, for example "/dev/pts/3"; empty before start().
    const std::string& devicePath() const { return m_devicePath; }
    const std::string& linkPath() const { return m_options.linkPath; }

    /// The writer thread is sending (it stops at stop(), a disconnect or the end of a finite
    /// stream).
    bool isRunning() const { return m_running; }
    /// Waits up to `timeout` for the writer to stop by itself; true once it has.
    bool waitUntilDone(std::chrono::milliseconds timeout);
    /// The device is gone: disconnect() or the stream's own disconnect.
    bool isDisconnected() const { return m_disconnected; }

    std::uint64_t framesSent() const { return m_framesSent; }
    std::uint64_t bytesWritten() const { return m_bytesWritten; }
    /// Bytes lost because the terminal's buffer was full (paced probe only).
    std::uint64_t bytesDropped() const { return m_bytesDropped; }
    /// The stream's own counts (frames, markers, bytes dropped on purpose, ...).
    StreamCounters streamCounters() const;

private:
    void openDevice();
    void closeDevice();
    void run();
    void runPaced();
    void runUnpaced();
    bool fetchChunk(StreamChunk& chunk);
    void sent(const std::uint8_t* bytes, std::size_t count);
    std::size_t writeSome(const std::uint8_t* bytes, std::size_t count);
    void sleepFor(std::chrono::nanoseconds duration);
    void waitForReader();
    void finish();

    ProbeStream m_stream;
    Options m_options;
    std::string m_devicePath;
    int m_master = -1;
    int m_slave = -1;
    int m_wake[2] = {-1, -1};
    bool m_linked = false;
    std::thread m_thread;
    std::mutex m_control; // start, stop and disconnect one at a time

    std::atomic<bool> m_stopRequested{false};
    std::atomic<bool> m_running{false};
    std::atomic<bool> m_disconnected{false};
    std::atomic<std::uint64_t> m_framesSent{0};
    std::atomic<std::uint64_t> m_bytesWritten{0};
    std::atomic<std::uint64_t> m_bytesDropped{0};

    mutable std::mutex m_stateMutex;
    std::condition_variable m_doneChanged;
    StreamCounters m_streamCounters;
};

} // namespace zorvik
