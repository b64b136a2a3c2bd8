// Tests of the port search and the receive cycle over pseudo-terminals.
#include "instrument/InstrumentLink.h"
#include "common/EventLoop.h"
#include "common/FrameBytes.h"
#include "common/PtyPair.h"
#include "instrument/QtSerialLink.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>

using namespace zorvik;
using zorvik::test::frameBytes;
using zorvik::test::PtyPair;
using zorvik::test::sampleState;

namespace {

/// An instrument that streams frames on a pty every few milliseconds.
class StreamingPty {
public:
    explicit StreamingPty(std::vector<unsigned char> bytes = frameBytes(sampleState(), 1)) {
        timer_.setInterval(5);
        QObject::connect(&timer_, &QTimer::timeout, [this, bytes] { pty_.write(bytes); });
        timer_.start();
    }
    const std::string& path() const { return pty_.path(); }
    PtyPair& pty() { return pty_; }
    void stop() { timer_.stop(); }

private:
    PtyPair pty_;
    QTimer timer_;
};

struct Rig {
    PortMap ports;
    QtSerialLink serial;
    InstrumentLink link{serial, ports, [this](int n) {
                            return QFileInfo::exists(QString::fromStdString(ports.devicePath(n)));
                        }};
    Rig() {
        for (int n = 1; n <= 8; ++n)
            ports.setDevice(n, "/nonexistent/zorvik-test-com" + std::to_string(n));
    }
};

} // namespace

TEST(InstrumentLink, SearchWithNoPortsAtAllFailsWithoutProbing) {
    Rig rig;
    QSignalSpy done(&rig.link, &InstrumentLink::searchFinished);
    QElapsedTimer clock;
    clock.start();
    rig.link.startSearch(true, 1);
    ASSERT_TRUE(QTest::qWaitFor([&] { return done.count() == 1; }, 2000));
    EXPECT_FALSE(done.at(0).at(0).toBool());
    // No port was probed: that would have taken its full second.
    EXPECT_LT(clock.elapsed(), kProbeTimeoutMs);
    EXPECT_FALSE(rig.serial.isOpen());
}

TEST(InstrumentLink, SearchProbesPortOneFirstThenPortThreeWins) {
    Rig rig;
    PtyPair silent;
    StreamingPty instrument;
    rig.ports.setDevice(1, silent.path());
    rig.ports.setDevice(3, instrument.path());
    QSignalSpy done(&rig.link, &InstrumentLink::searchFinished);
    QElapsedTimer clock;
    clock.start();
    rig.link.startSearch(true, 1);
    EXPECT_TRUE(rig.link.searching());
    ASSERT_TRUE(QTest::qWaitFor([&] { return done.count() == 1; }, 5000));
    EXPECT_TRUE(done.at(0).at(0).toBool());
    EXPECT_EQ(done.at(0).at(1).toInt(), 3);
    EXPECT_GE(clock.elapsed(), kProbeTimeoutMs - 20) << "port 1 had its full second";
    EXPECT_TRUE(rig.serial.isOpen());
    EXPECT_EQ(rig.serial.device().toStdString(), instrument.path());
    EXPECT_EQ(rig.serial.baudRate(), 19200);
}

TEST(InstrumentLink, FixedPortIsProbedEvenWhenTheSearchWouldSkipIt) {
    Rig rig;
    StreamingPty instrument;
    rig.ports.setDevice(6, instrument.path());
    QSignalSpy done(&rig.link, &InstrumentLink::searchFinished);
    rig.link.startSearch(false, 6);
    ASSERT_TRUE(QTest::qWaitFor([&] { return done.count() == 1; }, 3000));
    EXPECT_TRUE(done.at(0).at(0).toBool());
    EXPECT_EQ(done.at(0).at(1).toInt(), 6);
}

TEST(InstrumentLink, ProbeThatReadsTheByteZeroCountsAsNoAnswer) {
    Rig rig;
    StreamingPty zeros(std::vector<unsigned char>(16, 0));
    rig.ports.setDevice(1, zeros.path());
    QSignalSpy done(&rig.link, &InstrumentLink::searchFinished);
    rig.link.startSearch(false, 1);
    ASSERT_TRUE(QTest::qWaitFor([&] { return done.count() == 1; }, 3000));
    EXPECT_FALSE(done.at(0).at(0).toBool());
    EXPECT_FALSE(rig.serial.isOpen());
}

TEST(InstrumentLink, CancelledSearchEndsQuietly) {
    Rig rig;
    PtyPair silent;
    rig.ports.setDevice(1, silent.path());
    QSignalSpy done(&rig.link, &InstrumentLink::searchFinished);
    rig.link.startSearch(true, 1);
    ASSERT_TRUE(QTest::qWaitFor([&] { return rig.serial.isOpen(); }, 2000));
    rig.link.cancelSearch();
    // What is checked is that nothing comes: the probe's time-out, had it stayed armed, would
    // have ended the search within this time (a busy machine only makes the check longer).
    QTest::qWait(kProbeTimeoutMs + 200);
    EXPECT_EQ(done.count(), 0);
    EXPECT_FALSE(rig.serial.isOpen());
    EXPECT_FALSE(rig.link.searching());
}

TEST(InstrumentLink, ReceiveCycleDeliversWholeFramesFromTheStream) {
    Rig rig;
    StreamingPty instrument;
    rig.ports.setDevice(1, instrument.path());
    QSignalSpy done(&rig.link, &InstrumentLink::searchFinished);
    rig.link.startSearch(false, 1);
    ASSERT_TRUE(QTest::qWaitFor([&] { return done.count() == 1; }, 3000));
    rig.link.machine().blnAcquire = true;
    int frames = 0;
    QObject::connect(&rig.link, &InstrumentLink::received, [&](const ReceiveStep& s) {
        if (s.event == ReceiveEvent::Frame)
            ++frames;
    });
    rig.link.resetAndArm();
    ASSERT_TRUE(QTest::qWaitFor([&] { return frames >= 5; }, 3000));
    EXPECT_EQ(rig.link.machine().state(), sampleState());
}

TEST(InstrumentLink, HoldStopsReceptionUntilRearmed) {
    Rig rig;
    StreamingPty instrument;
    rig.ports.setDevice(1, instrument.path());
    QSignalSpy done(&rig.link, &InstrumentLink::searchFinished);
    rig.link.startSearch(false, 1);
    ASSERT_TRUE(QTest::qWaitFor([&] { return done.count() == 1; }, 3000));
    rig.link.machine().blnAcquire = true;
    QSignalSpy received(&rig.link, &InstrumentLink::received);
    rig.link.resetAndArm();
    ASSERT_TRUE(QTest::qWaitFor([&] { return received.count() >= 4; }, 3000));
    rig.link.machine().blnAcquire = false;
    rig.link.stopReception();
    const auto before = received.count();
    // Frames keep coming on the line meanwhile (one every 72 ms): none is taken in.
    QTest::qWait(150);
    EXPECT_EQ(received.count(), before);
    rig.link.machine().blnAcquire = true;
    rig.link.resetAndArm();
    ASSERT_TRUE(QTest::qWaitFor([&] { return received.count() > before + 2; }, 3000));
}

TEST(InstrumentLink, StallLongerThanTheFrameTimeOutFails) {
    Rig rig;
    PtyPair pty;
    rig.ports.setDevice(1, pty.path());
    QSignalSpy done(&rig.link, &InstrumentLink::searchFinished);
    QTimer::singleShot(100, [&] { pty.write({0x7D}); });
    rig.link.startSearch(false, 1);
    ASSERT_TRUE(QTest::qWaitFor([&] { return done.count() == 1; }, 3000));
    ASSERT_TRUE(done.at(0).at(0).toBool());
    rig.link.machine().blnAcquire = true;
    QSignalSpy failed(&rig.link, &InstrumentLink::failed);
    rig.link.resetAndArm();
    // Half a frame, then silence.
    auto frame = frameBytes(sampleState(), 1);
    frame.resize(70);
    pty.write(frame);
    QElapsedTimer clock;
    clock.start();
    ASSERT_TRUE(QTest::qWaitFor([&] { return failed.count() == 1; }, kFrameTimeoutMs + 2000));
    EXPECT_GE(clock.elapsed(), kFrameTimeoutMs - 100);
}

TEST(InstrumentLink, VanishedPortWhileReceivingFails) {
    Rig rig;
    auto instrument = std::make_unique<StreamingPty>();
    rig.ports.setDevice(1, instrument->path());
    QSignalSpy done(&rig.link, &InstrumentLink::searchFinished);
    rig.link.startSearch(false, 1);
    ASSERT_TRUE(QTest::qWaitFor([&] { return done.count() == 1; }, 3000));
    rig.link.machine().blnAcquire = true;
    QSignalSpy failed(&rig.link, &InstrumentLink::failed);
    QSignalSpy received(&rig.link, &InstrumentLink::received);
    rig.link.resetAndArm();
    ASSERT_TRUE(QTest::qWaitFor([&] { return received.count() >= 1; }, 3000));
    instrument->stop();
    instrument->pty().closeAll();
    ASSERT_TRUE(QTest::qWaitFor([&] { return failed.count() == 1; }, 3000));
    EXPECT_FALSE(rig.serial.isOpen());
}
