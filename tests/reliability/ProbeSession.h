// The real main window on the real serial path (QtSerialLink on a pseudo-terminal) to a
// virtual probe running in this process, with everything a fault-injection test looks at:
// the bytes the probe sent, the frames the window showed, every step of its receive cycle,
// the messages it raised and the longest stall of its event loop.
#pragma once

#include "Soak.h"
#include "StallMeter.h"
#include "app/MainWindowFixture.h"
#include "instrument/QtSerialLink.h"
#include "probe/PtyProbe.h"

#include <QElapsedTimer>

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace zorvik::test {

/// A frame as the window took it: the state record and the samples.
struct ShownFrame {
    HardwareState state;
    RawSamples samples{};
    friend bool operator==(const ShownFrame&, const ShownFrame&) = default;
};

/// Resident memory of this process, in bytes.
std::int64_t residentBytes();

class ProbeSession : public MainWindowFixture {
protected:
    void TearDown() override;

    /// Starts a probe on `stream`, maps COM1 to its device, makes the window and presses
    /// POWER; returns once the link is up (the test fails otherwise).
    frmMain& powerOn(ProbeStream stream, PtyProbe::Options options = {});
    /// Another probe on COM1 (the previous one, if any, is stopped first).
    void startProbe(ProbeStream stream, PtyProbe::Options options = {});
    /// POWER on in the window made by powerOn; true once the link is up.
    bool pressPower();
    /// Pulls the probe's plug.
    void unplug();

    /// Runs the event loop as the program's own does (waiting for events, never sleeping
    /// between them) until `done` holds or `timeoutMs` have passed; true when `done` held.
    /// QTest's waits sleep 10 ms between batches of events, which would slow the window down
    /// and count as stalls.
    static bool waitFor(const std::function<bool()>& done, int timeoutMs);
    /// Runs the event loop for `ms` milliseconds.
    static void runFor(int ms);

    /// Every byte the probe wrote to the line so far.
    std::vector<std::uint8_t> sentBytes() const;
    /// Count of receive-cycle steps of this kind so far.
    int steps(ReceiveEvent event) const;
    int allSteps() const;
    /// Longest time the link and the window took over one completed read of this kind, from
    /// the serial link's delivery to the end of the window's handling, in milliseconds.
    double longestStepMs(ReceiveEvent event) const;
    /// The longest handling of each kind of read that happened, as text for the figures.
    std::string longestSteps() const;

    /// Keep every byte the probe sends and every frame shown (off for floods, whose bytes
    /// would fill the memory and count as the window's own).
    bool recordTraffic = true;
    std::unique_ptr<PtyProbe> probe;
    QtSerialLink serial;
    StallMeter meter;
    std::vector<ShownFrame> shown;

private:
    mutable std::mutex m_sentMutex;
    std::vector<std::uint8_t> m_sent;
    std::vector<int> m_steps = std::vector<int>(16, 0);
    std::vector<double> m_longestStep = std::vector<double>(16, 0.0);
    QElapsedTimer m_stepClock;
    qint64 m_stepStart = 0;
};

/// Where a frame the window showed lies in the bytes sent: the offset of its sync byte, or
/// -1. A shown frame is always 139 bytes sent in a row (sync, fields, samples, reserved,
/// voltmeter, reserved); only the reserved bytes are not compared.
std::int64_t findFrame(const std::vector<std::uint8_t>& sent, const ShownFrame& frame,
                       std::size_t from = 0);

} // namespace zorvik::test
