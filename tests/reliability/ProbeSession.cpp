// The window-and-probe session of the fault-injection tests.
#include "ProbeSession.h"

#include "widgets/LitButton.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <fstream>
#include <unistd.h>

namespace zorvik::test {

std::int64_t residentBytes() {
    std::ifstream in("/proc/self/statm");
    std::int64_t size = 0;
    std::int64_t resident = 0;
    in >> size >> resident;
    return resident * ::sysconf(_SC_PAGESIZE);
}

void ProbeSession::TearDown() {
    meter.stop();
    // The window closes its port before the device goes away.
    MainWindowFixture::TearDown();
    probe.reset();
}

void ProbeSession::startProbe(ProbeStream stream, PtyProbe::Options options) {
    // Stopping and starting the probe's writer thread is the test's doing, not the window's.
    meter.pause();
    probe.reset();
    if (recordTraffic) {
        options.onSent = [this](const std::uint8_t* bytes, std::size_t count) {
            std::lock_guard lock(m_sentMutex);
            m_sent.insert(m_sent.end(), bytes, bytes + count);
        };
    }
    {
        std::lock_guard lock(m_sentMutex);
        m_sent.clear();
    }
    probe = std::make_unique<PtyProbe>(std::move(stream), std::move(options));
    probe->start();
    ports.setDevice(1, probe->devicePath());
    meter.resume();
}

frmMain& ProbeSession::powerOn(ProbeStream stream, PtyProbe::Options options) {
    startProbe(std::move(stream), std::move(options));
    // Connected before the window connects the link, so this runs first for every read.
    m_stepClock.start();
    QObject::connect(&serial, &SerialLink::dataReceived, &serial,
                     [this] { m_stepStart = m_stepClock.nsecsElapsed(); });
    frmMain& w = start({1}, &serial);
    QObject::connect(&w.link(), &InstrumentLink::received, &w, [this, &w](const ReceiveStep& step) {
        const auto event = static_cast<std::size_t>(step.event);
        ++m_steps[event];
        const double ms = static_cast<double>(m_stepClock.nsecsElapsed() - m_stepStart) / 1e6;
        m_longestStep[event] = std::max(m_longestStep[event], ms);
        if (step.event == ReceiveEvent::Frame && recordTraffic)
            shown.push_back({w.link().machine().state(), w.link().machine().bytRawData()});
    });
    meter.start();
    EXPECT_TRUE(pressPower());
    return w;
}

bool ProbeSession::pressPower() {
    // The port search takes the first byte it reads as the probe's answer, and a zero byte
    // counts as none. The probe's frames hold zero bytes (the reserved bytes, voltmeter digits),
    // so now and then the search lands on one and fails with its message; POWER is then
    // pressed again, as a user would, and that message is not counted.
    for (int attempt = 0; attempt < 3; ++attempt) {
        const std::size_t before = messages.size();
        window->panel().CWBPwr->setValue(true);
        waitFor([this] { return window->model().blnLiveData || !window->panel().CWBPwr->value(); },
                5000);
        if (window->model().blnLiveData)
            return true;
        if (messages.size() != before + 1)
            break;
        messages.pop_back();
        messageStatus.pop_back();
    }
    ADD_FAILURE() << "no link after POWER: device " << probe->devicePath() << ", port "
                  << (serial.isOpen() ? "open" : "closed") << ", last port error \""
                  << serial.errorString().toStdString() << "\", " << messages.size()
                  << " messages, probe " << (probe->isRunning() ? "sending" : "stopped");
    return false;
}

void ProbeSession::unplug() {
    meter.pause();
    probe->disconnect();
    meter.resume();
}

bool ProbeSession::waitFor(const std::function<bool()>& done, int timeoutMs) {
    if (done())
        return true;
    QEventLoop loop;
    QTimer poll;
    QElapsedTimer clock;
    bool held = false;
    QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
        if (done()) {
            held = true;
            loop.quit();
        } else if (clock.elapsed() >= timeoutMs) {
            loop.quit();
        }
    });
    clock.start();
    poll.start(5);
    loop.exec();
    return held;
}

void ProbeSession::runFor(int ms) {
    QElapsedTimer clock;
    clock.start();
    waitFor([&] { return clock.elapsed() >= ms; }, ms + 1000);
}

std::vector<std::uint8_t> ProbeSession::sentBytes() const {
    std::lock_guard lock(m_sentMutex);
    return m_sent;
}

int ProbeSession::steps(ReceiveEvent event) const {
    return m_steps[static_cast<std::size_t>(event)];
}

double ProbeSession::longestStepMs(ReceiveEvent event) const {
    return m_longestStep[static_cast<std::size_t>(event)];
}

std::string ProbeSession::longestSteps() const {
    static const std::pair<ReceiveEvent, const char*> kinds[] = {
        {ReceiveEvent::Frame, "frame"},
        {ReceiveEvent::SyncFound, "sync"},
        {ReceiveEvent::Hunt, "hunt"},
        {ReceiveEvent::Waiting, "waiting"},
        {ReceiveEvent::Rejected, "rejected"}};
    std::string text = "longest handling of a read:";
    for (const auto& [event, name] : kinds) {
        if (steps(event) == 0)
            continue;
        char figure[64];
        std::snprintf(figure, sizeof figure, " %s %.1f ms", name, longestStepMs(event));
        text += figure;
    }
    return text;
}

int ProbeSession::allSteps() const {
    int total = 0;
    for (int n : m_steps)
        total += n;
    return total;
}

std::int64_t findFrame(const std::vector<std::uint8_t>& sent, const ShownFrame& frame,
                       std::size_t from) {
    const HardwareState& s = frame.state;
    for (std::size_t p = from; p + kFrameBytes <= sent.size(); ++p) {
        const std::uint8_t* f = sent.data() + p;
        if (f[0] != kSyncByte || f[1] != s.bytSwitchSetting || f[2] != s.bytTimebaseDef ||
            f[3] != s.bytTriggerDef || f[4] != s.bytTriggerLvl || f[134] != s.bytDVM100 ||
            f[135] != s.bytDVM10 || f[136] != s.bytDVM1 || f[137] != s.bytDVMflags)
            continue;
        if (std::equal(frame.samples.begin(), frame.samples.end(), f + 5))
            return static_cast<std::int64_t>(p);
    }
    return -1;
}

} // namespace zorvik::test
