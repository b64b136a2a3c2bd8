// The event-loop stall meter.
#include "StallMeter.h"

#include <algorithm>
#include <fstream>

namespace zorvik::test {

StallMeter::StallMeter(QObject* parent) : QObject(parent) {
    m_timer.setTimerType(Qt::PreciseTimer);
    m_timer.setInterval(2);
    connect(&m_timer, &QTimer::timeout, this, &StallMeter::tick);
}

void StallMeter::start() {
    m_longestGap = 0.0;
    m_longestOwnGap = 0.0;
    m_ticks = 0;
    m_clock.start();
    m_lastNs = 0;
    m_lastWaitNs = runQueueWaitNs();
    m_timer.start();
}

void StallMeter::stop() {
    m_timer.stop();
}

void StallMeter::pause() {
    m_timer.stop();
}

void StallMeter::resume() {
    m_lastNs = m_clock.nsecsElapsed();
    m_lastWaitNs = runQueueWaitNs();
    m_timer.start();
}

std::int64_t StallMeter::runQueueWaitNs() {
    // Second field of schedstat: nanoseconds spent on a run queue waiting for a processor.
    std::ifstream in("/proc/thread-self/schedstat");
    std::int64_t running = 0;
    std::int64_t waiting = 0;
    if (!(in >> running >> waiting))
        return 0;
    return waiting;
}

void StallMeter::tick() {
    const std::int64_t now = m_clock.nsecsElapsed();
    const std::int64_t wait = runQueueWaitNs();
    const double gap = static_cast<double>(now - m_lastNs) / 1e6;
    const double waited = static_cast<double>(wait - m_lastWaitNs) / 1e6;
    m_longestGap = std::max(m_longestGap, gap);
    m_longestOwnGap = std::max(m_longestOwnGap, gap - waited);
    m_lastNs = now;
    m_lastWaitNs = wait;
    ++m_ticks;
}

} // namespace zorvik::test
