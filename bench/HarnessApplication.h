// The performance harness's application object: the program's QApplication with a watch on its
// event loop. Every event the loop hands out passes through notify(), so the harness sees how
// long each one kept the loop busy (the longest is the loop's worst stall), which timers fire,
// how often the loop wakes up, and when a watched widget has been painted and shown.
#pragma once

#include <QApplication>
#include <QPointer>
#include <QString>
#include <QStringList>

#include <chrono>
#include <functional>
#include <vector>

namespace zorvik::harness {

/// Nanoseconds on the system's monotonic clock, shared by every thread and process.
qint64 nowNs();

/// Processor time of the calling thread, in nanoseconds.
qint64 threadCpuNs();

/// The longest time one event kept the event loop from handling the next one.
struct Stall {
    qint64 ns = 0;
    /// Processor time the program spent in that event: when it is much less than `ns`, other
    /// programs on the machine had the processor meanwhile. -1: not measured.
    qint64 cpuNs = -1;
    QString what; ///< the event's type and the class and name of its receiver
};

class HarnessApplication : public QApplication {
    Q_OBJECT
public:
    HarnessApplication(int& argc, char** argv);

    bool notify(QObject* receiver, QEvent* event) override;

    /// Starts a new measurement: the longest stall, the counts of timer events and wake-ups
    /// and the list of timer receivers start again from nothing.
    void resetCounts();
    const Stall& longestStall() const { return m_longest; }
    /// The event that took the most processor time (measured only with setCpuAccounting).
    const Stall& mostProcessorTime() const { return m_mostCpu; }
    /// Measures the processor time of every event too (two system calls per event).
    void setCpuAccounting(bool on) { m_cpuAccounting = on; }
    /// With processor time measured: the events that took the most of it since resetCounts(),
    /// by event type and receiver, as "count x, total ms".
    QStringList processorTimeByEvent(int top) const;
    /// Timer events handed out since resetCounts(), except the harness's own (for objects
    /// named "harness-...").
    int timerEvents() const { return m_timerEvents; }
    /// Who received them: "Class(objectName)" with a count, for the report.
    QStringList timerReceivers() const;
    /// How often the event loop woke up from waiting since resetCounts().
    int wakeUps() const { return m_wakeUps; }

    /// Called with the time at which an event in which `widget` was painted has been handled
    /// completely: the picture is then in the window and the window has been flushed.
    void setPaintWatch(QWidget* widget, std::function<void(qint64 doneNs)> done);

private:
    struct Dispatch {
        qint64 startNs = 0;
        qint64 startCpuNs = 0;
        int loopLevel = 0;
        // Taken before the event is handled: the receiver may be deleted while handling it.
        const QMetaObject* receiverClass = nullptr;
        QString receiverName;
        bool counted = false;    ///< the first dispatch of its event loop (not a nested send)
        bool nestedLoop = false; ///< an event loop ran inside it: not a stall of this loop
    };
    void finishDispatch(const Dispatch& d, QEvent::Type type);

    std::vector<Dispatch> m_stack;
    Stall m_longest;
    Stall m_mostCpu;
    bool m_cpuAccounting = false;
    int m_timerEvents = 0;
    int m_wakeUps = 0;
    std::vector<std::pair<QString, int>> m_timerReceivers;
    struct EventCost {
        QString what;
        int count = 0;
        qint64 cpuNs = 0;
    };
    std::vector<EventCost> m_costs;
    QPointer<QWidget> m_watched;
    std::function<void(qint64)> m_paintDone;
    bool m_watchedPainted = false;
};

/// The harness's application object.
HarnessApplication& harnessApp();

/// Prints the longest stall since resetCounts() as figure `key`, with the event that caused it
/// and, when measured, its processor time and the event that took the most processor time.
void reportStall(const QString& key, const QString& what);

} // namespace zorvik::harness
