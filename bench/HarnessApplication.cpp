// The watch on the event loop: the duration of each event, timer events, wake-ups and paints.
#include "HarnessApplication.h"

#include "HarnessReport.h"

#include <QAbstractEventDispatcher>
#include <QMetaEnum>
#include <QThread>
#include <QWidget>

#include <time.h>

namespace zorvik::harness {

qint64 nowNs() {
    timespec t{};
    clock_gettime(CLOCK_MONOTONIC, &t);
    return static_cast<qint64>(t.tv_sec) * 1000000000 + t.tv_nsec;
}

qint64 threadCpuNs() {
    timespec t{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return static_cast<qint64>(t.tv_sec) * 1000000000 + t.tv_nsec;
}

namespace {

QString describe(const QMetaObject* receiverClass, const QString& receiverName, QEvent::Type type) {
    const QString typeName =
        QString::fromLatin1(QMetaEnum::fromType<QEvent::Type>().valueToKey(static_cast<int>(type)));
    QString who = QStringLiteral("?");
    if (receiverClass) {
        who = QString::fromLatin1(receiverClass->className());
        if (!receiverName.isEmpty())
            who += QLatin1Char('(') + receiverName + QLatin1Char(')');
    }
    return (typeName.isEmpty() ? QString::number(static_cast<int>(type)) : typeName) +
           QStringLiteral(" to ") + who;
}

} // namespace

HarnessApplication::HarnessApplication(int& argc, char** argv) : QApplication(argc, argv) {
    connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake, this,
            [this] { ++m_wakeUps; });
}

HarnessApplication& harnessApp() {
    return *static_cast<HarnessApplication*>(QCoreApplication::instance());
}

void reportStall(const QString& key, const QString& what) {
    const HarnessApplication& app = harnessApp();
    const Stall& s = app.longestStall();
    result(key, static_cast<double>(s.ns) / 1e6, "ms", what);
    if (s.cpuNs < 0) {
        detail(QStringLiteral("longest event: %1").arg(s.what));
        return;
    }
    detail(QStringLiteral("longest event: %1, of it %2 ms processor time")
               .arg(s.what)
               .arg(static_cast<double>(s.cpuNs) / 1e6, 0, 'f', 2));
    const Stall& c = app.mostProcessorTime();
    detail(QStringLiteral("most processor time: %1 ms in %2 (%3 ms wall clock)")
               .arg(static_cast<double>(c.cpuNs) / 1e6, 0, 'f', 2)
               .arg(c.what)
               .arg(static_cast<double>(c.ns) / 1e6, 0, 'f', 2));
}

void HarnessApplication::resetCounts() {
    m_longest = {};
    m_mostCpu = {};
    m_costs.clear();
    m_timerEvents = 0;
    m_wakeUps = 0;
    m_timerReceivers.clear();
}

QStringList HarnessApplication::timerReceivers() const {
    QStringList list;
    for (const auto& [who, count] : m_timerReceivers)
        list.append(QStringLiteral("%1 x%2").arg(who).arg(count));
    return list;
}

QStringList HarnessApplication::processorTimeByEvent(int top) const {
    std::vector<EventCost> costs = m_costs;
    std::sort(costs.begin(), costs.end(),
              [](const EventCost& a, const EventCost& b) { return a.cpuNs > b.cpuNs; });
    QStringList list;
    for (int i = 0; i < top && i < static_cast<int>(costs.size()); ++i) {
        const EventCost& c = costs[static_cast<std::size_t>(i)];
        list.append(QStringLiteral("%1 ms in %2 x %3")
                        .arg(static_cast<double>(c.cpuNs) / 1e6, 0, 'f', 1)
                        .arg(c.count)
                        .arg(c.what));
    }
    return list;
}

void HarnessApplication::setPaintWatch(QWidget* widget, std::function<void(qint64)> done) {
    m_watched = widget;
    m_paintDone = std::move(done);
    m_watchedPainted = false;
}

bool HarnessApplication::notify(QObject* receiver, QEvent* event) {
    const QEvent::Type type = event->type();
    if ((type == QEvent::Timer || type == QEvent::ZeroTimerEvent) &&
        !receiver->objectName().startsWith(QLatin1String("harness-"))) {
        ++m_timerEvents;
        const QString who = describe(receiver->metaObject(), receiver->objectName(), type);
        auto it = std::find_if(m_timerReceivers.begin(), m_timerReceivers.end(),
                               [&](const auto& entry) { return entry.first == who; });
        if (it == m_timerReceivers.end())
            m_timerReceivers.emplace_back(who, 1);
        else
            ++it->second;
    }

    // An event is a stall of its event loop when it is the first dispatch of that loop; events
    // sent from inside it are part of it. An event loop started inside an event (a modal window)
    // keeps handling events, so the event that started it is not counted.
    Dispatch d;
    d.startNs = nowNs();
    d.loopLevel = static_cast<int>(QThread::currentThread()->loopLevel());
    d.counted = m_stack.empty() || m_stack.back().loopLevel < d.loopLevel;
    if (d.counted) {
        d.receiverClass = receiver->metaObject();
        d.receiverName = receiver->objectName();
        if (m_cpuAccounting)
            d.startCpuNs = threadCpuNs();
    }
    if (d.counted && !m_stack.empty()) {
        for (Dispatch& outer : m_stack)
            outer.nestedLoop = true;
    }
    m_stack.push_back(d);
    const bool result = QApplication::notify(receiver, event);
    const Dispatch done = m_stack.back();
    m_stack.pop_back();
    if (type == QEvent::Paint && receiver == m_watched && m_watched)
        m_watchedPainted = true;
    finishDispatch(done, type);
    return result;
}

void HarnessApplication::finishDispatch(const Dispatch& d, QEvent::Type type) {
    if (!d.counted)
        return;
    const qint64 end = nowNs();
    const qint64 cpu = m_cpuAccounting ? threadCpuNs() - d.startCpuNs : -1;
    if (!d.nestedLoop && end - d.startNs > m_longest.ns)
        m_longest = {end - d.startNs, cpu, describe(d.receiverClass, d.receiverName, type)};
    if (!d.nestedLoop && cpu > m_mostCpu.cpuNs)
        m_mostCpu = {end - d.startNs, cpu, describe(d.receiverClass, d.receiverName, type)};
    if (cpu >= 0 && !d.nestedLoop) {
        const QString what = describe(d.receiverClass, d.receiverName, type);
        auto it = std::find_if(m_costs.begin(), m_costs.end(),
                               [&](const EventCost& c) { return c.what == what; });
        if (it == m_costs.end())
            m_costs.push_back({what, 1, cpu});
        else {
            ++it->count;
            it->cpuNs += cpu;
        }
    }
    if (m_watchedPainted && m_paintDone) {
        m_watchedPainted = false;
        m_paintDone(end);
    }
}

} // namespace zorvik::harness
