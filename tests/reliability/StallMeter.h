// Measures how long the window's event loop goes without answering: a timer that should run
// every 2 ms records the longest gap between two of its runs. The same gap is also given less
// the time the thread spent ready to run but waiting for a processor (the system's run-queue
// wait, from /proc), so that a machine busy with other work does not count against the window.
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <cstdint>

namespace zorvik::test {

/// The window keeps answering: its event loop never stops for as long as this. The bound is
/// what a user would call a frozen window, wide enough that a busy machine (two test programs
/// on two cores, the sanitizer build) never breaks it; how short the stalls really are is a
/// figure the tests print and the performance harness measures (docs/PERFORMANCE.md).
inline constexpr double kMaxStallMs = 500.0;

class StallMeter : public QObject {
    Q_OBJECT
public:
    explicit StallMeter(QObject* parent = nullptr);

    /// Starts measuring afresh.
    void start();
    void stop();
    /// Leaves out what follows until resume(): work of the test itself on this thread (such as
    /// stopping the probe's writer thread), which is not the window's.
    void pause();
    void resume();

    /// Longest gap between two timer runs, in milliseconds.
    double longestGapMs() const { return m_longestGap; }
    /// The same gap less the thread's run-queue wait in it: the time the event loop itself
    /// was busy or blocked.
    double longestOwnGapMs() const { return m_longestOwnGap; }
    /// Timer runs seen.
    std::uint64_t ticks() const { return m_ticks; }

private:
    void tick();
    static std::int64_t runQueueWaitNs();

    QTimer m_timer;
    QElapsedTimer m_clock;
    std::int64_t m_lastNs = 0;
    std::int64_t m_lastWaitNs = 0;
    double m_longestGap = 0.0;
    double m_longestOwnGap = 0.0;
    std::uint64_t m_ticks = 0;
};

} // namespace zorvik::test
