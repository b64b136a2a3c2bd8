// The main window with the virtual probe on a pseudo-terminal: the real serial path, end to
// end.
#include "app/MainWindowFixture.h"
#include "instrument/QtSerialLink.h"
#include "probe/DemoTour.h"
#include "probe/PtyProbe.h"
#include "widgets/IndicatorSlide.h"
#include "widgets/Knob.h"
#include "widgets/Led.h"
#include "widgets/LitButton.h"
#include "widgets/ScopeGraph.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <cstdio>

using namespace zorvik;
using zorvik::test::MainWindowFixture;

namespace {

const char* const kText = "Unable to Communicate with Instrument - Check Port Connection!";

class MainWindowProbe : public MainWindowFixture {
protected:
    /// Serves `stream` on a pseudo-terminal mapped to COM `n`.
    PtyProbe& serve(ProbeStream stream, int n = 1, bool paced = true) {
        PtyProbe::Options o;
        o.paced = paced;
        probes.push_back(std::make_unique<PtyProbe>(std::move(stream), o));
        probes.back()->start();
        ports.setDevice(n, probes.back()->devicePath());
        return *probes.back();
    }
    /// Starts the window on the real serial link; `existing` ports exist.
    frmMain& startReal(QSet<int> existing) { return start(existing, &serial); }

    bool powerOn(frmMain& w, int timeoutMs = 3000) {
        w.panel().CWBPwr->setValue(true);
        return QTest::qWaitFor([&] { return w.model().blnLiveData || !w.panel().CWBPwr->value(); },
                               timeoutMs) &&
               w.model().blnLiveData;
    }

    QtSerialLink serial;
    std::vector<std::unique_ptr<PtyProbe>> probes;
};

} // namespace

TEST_F(MainWindowProbe, PowerFindsTheProbeOnTheMappedPortAndFramesFillTheRecord) {
    serve(ProbeStream(ProbeSettings{}));
    frmMain& w = startReal({1});
    QElapsedTimer clock;
    clock.start();
    ASSERT_TRUE(powerOn(w));
    std::printf("[ figure ] the lamp turned green %lld ms after POWER\n",
                static_cast<long long>(clock.elapsed()));
    EXPECT_EQ(w.panel().CWBPwrLed->onColor(), QColor(0, 255, 0));
    EXPECT_EQ(w.panel().sbrBaudRate->text(), "Baud: 19200");
    EXPECT_EQ(w.panel().sbrComPort->text(), "Com: 1");
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return w.panel().sbrSampleRate->text() == "Sample Rate: 20Ks/s"; }, 3000));
    const HardwareState s = w.model().state;
    EXPECT_EQ(s.bytSwitchSetting, 0x24);
    EXPECT_EQ(s.bytTimebaseDef, 6);
    EXPECT_EQ(s.bytTriggerDef, 0x40);
    EXPECT_EQ(s.bytTriggerLvl, 16);
    EXPECT_TRUE(messages.empty());
}

TEST_F(MainWindowProbe, StreamThatStartsMidFrameLocksOn) {
    // The probe has been streaming for a while when the port opens, so the first bytes the
    // window reads are somewhere inside a frame.
    PtyProbe& probe = serve(ProbeStream(ProbeSettings{}));
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return probe.bytesWritten() > 139 && probe.bytesWritten() % 139 != 0; }, 5000));
    frmMain& w = startReal({1});
    ASSERT_TRUE(powerOn(w));
    int frames = 0;
    QObject::connect(&w.link(), &InstrumentLink::received, [&](const ReceiveStep& st) {
        if (st.event == ReceiveEvent::Frame)
            ++frames;
    });
    ASSERT_TRUE(QTest::qWaitFor([&] { return frames >= 5; }, 4000));
}

TEST_F(MainWindowProbe, WaitingMarkersMoveTheTriggerIndicator) {
    ProbeSettings settings;
    settings.coupling = Coupling::Gnd; // IN+ never triggers on a grounded input
    serve(ProbeStream(settings));
    frmMain& w = startReal({1});
    ASSERT_TRUE(powerOn(w));
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return w.panel().CWSTrigger->pointerStateText("Pointer-1") == "WAIT"; }, 3000));
    EXPECT_EQ(w.panel().CWSTrigger->pointerValue("Pointer-1"), 300);
}

TEST_F(MainWindowProbe, StallLongerThanThreeSecondsMidFrameTakesTheErrorPath) {
    StreamOptions o;
    o.stallAfter = 15;
    o.stallFor = std::chrono::milliseconds(4500);
    serve(ProbeStream(ProbeSettings{}, o));
    frmMain& w = startReal({1});
    ASSERT_TRUE(powerOn(w));
    ASSERT_TRUE(QTest::qWaitFor([&] { return messages.size() == 1; }, 8000));
    EXPECT_EQ(messages[0].title, "Communication Error");
    EXPECT_EQ(messages[0].text, kText);
    EXPECT_EQ(messageStatus[0], "Sample Rate: 20Ks/s");
    EXPECT_FALSE(w.panel().CWBPwr->value());
    EXPECT_FALSE(w.panel().CWBPwrLed->value());
    EXPECT_EQ(w.panel().sbrBaudRate->text(), "Baud: ");
    EXPECT_EQ(w.panel().sbrComPort->text(), "Com: ");
    EXPECT_FALSE(serial.isOpen());
}

TEST_F(MainWindowProbe, VanishedPortTakesTheErrorPath) {
    PtyProbe& probe = serve(ProbeStream(ProbeSettings{}));
    frmMain& w = startReal({1});
    ASSERT_TRUE(powerOn(w));
    int frames = 0;
    QObject::connect(&w.link(), &InstrumentLink::received, [&](const ReceiveStep& st) {
        frames += st.event == ReceiveEvent::Frame ? 1 : 0;
    });
    ASSERT_TRUE(QTest::qWaitFor([&] { return frames >= 2; }, 5000));
    const QDateTime made = QFileInfo(device(1)).metadataChangeTime();
    probe.disconnect();
    ASSERT_TRUE(QTest::qWaitFor([&] { return messages.size() == 1; }, 4000));
    EXPECT_EQ(messages[0].text, kText);
    EXPECT_FALSE(w.panel().CWBPwr->value());
    // Gone, or a newer terminal of another test under the same (reused) number.
    const QFileInfo now(device(1));
    EXPECT_TRUE(!now.exists() || now.metadataChangeTime() != made);
}

TEST_F(MainWindowProbe, PowerWithNoProbeShowsTheMessage) {
    frmMain& w = startReal({});
    w.panel().CWBPwr->setValue(true);
    ASSERT_TRUE(QTest::qWaitFor([&] { return messages.size() == 1; }, 3000));
    EXPECT_EQ(messages[0].title, "Communication Error");
    EXPECT_EQ(messages[0].text, kText);
    EXPECT_EQ(messages[0].icon, MsgIcon::Critical);
    EXPECT_FALSE(w.panel().CWBPwr->value());
}

TEST_F(MainWindowProbe, DevicePathThatIsNotASerialPortDoesNotAnswer) {
    // COM1 names an ordinary file: it exists, but it is no serial port.
    const QString file = dir.filePath("not-a-port");
    QFile f(file);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write("\x7D\x24");
    f.close();
    ports.setDevice(1, file.toStdString());
    frmMain& w = startReal({1});
    w.panel().CWBPwr->setValue(true);
    ASSERT_TRUE(QTest::qWaitFor([&] { return messages.size() == 1; }, 3000));
    EXPECT_EQ(messages[0].text, kText);
    EXPECT_FALSE(w.panel().CWBPwr->value());
}

TEST_F(MainWindowProbe, PortHeldByAnotherProgramDoesNotAnswer) {
    serve(ProbeStream(ProbeSettings{}));
    QtSerialLink other;
    ASSERT_TRUE(other.open(device(1)));
    frmMain& w = startReal({1});
    w.panel().CWBPwr->setValue(true);
    ASSERT_TRUE(QTest::qWaitFor([&] { return messages.size() == 1; }, 3000));
    EXPECT_EQ(messages[0].text, kText);
}

TEST_F(MainWindowProbe, StreamingAtTheLineRateShowsEveryFrameAndPrintsTheLongestStall) {
    serve(ProbeStream(ProbeSettings{}));
    frmMain& w = startReal({1});
    // Longest gap between two ticks of a 1 ms timer: how long the window did not answer.
    qint64 longest = 0;
    QElapsedTimer gap;
    QTimer tick;
    tick.setTimerType(Qt::PreciseTimer);
    tick.setInterval(1);
    QObject::connect(&tick, &QTimer::timeout, [&] { longest = std::max(longest, gap.restart()); });
    gap.start();
    tick.start();
    ASSERT_TRUE(powerOn(w));
    QElapsedTimer run;
    run.start();
    int frames = 0;
    QObject::connect(&w.link(), &InstrumentLink::received, [&](const ReceiveStep& st) {
        if (st.event == ReceiveEvent::Frame)
            ++frames;
    });
    // 30 frames take a little over 2 s at 13.8 frames per second.
    EXPECT_TRUE(QTest::qWaitFor([&] { return frames >= 30; }, 20000));
    tick.stop();
    std::printf("[ figure ] %d frames in %lld ms at the line rate; longest event-loop stall "
                "%lld ms\n",
                frames, static_cast<long long>(run.elapsed()), static_cast<long long>(longest));
    // The stall is a printed figure, not a pass mark.
    EXPECT_GE(frames, 30);
}

namespace {

// zorvik --demo: POWER at the start-up positions, and the first picture is a clear trace
// across most of the graph, with the probe's real settings in the status bar.
TEST_F(MainWindowProbe, TheDemosFirstPictureIsAClearTraceAtTheStartUpPositions) {
    serve(ProbeStream(demoSettings(0), demoStreamOptions()));
    frmMain& w = startReal({1});
    ASSERT_EQ(w.panel().CWKTimeRange->value(), 3); // 1 us/div
    ASSERT_EQ(w.panel().CWKChaLvl->value(), 1);    // 20 V/div
    ASSERT_TRUE(powerOn(w));
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return w.panel().CWGraph1->plotData("CHa").y.size() == 128; }, 5000));
    const ScopeGraph::PlotData d = w.panel().CWGraph1->plotData("CHa");
    // 128 samples 50 ns apart: 6.35 of the 10 divisions from the left edge.
    EXPECT_EQ(d.x.front(), 0.0);
    EXPECT_NEAR(d.x.back(), 6.35, 1e-6);
    const auto [low, high] = std::minmax_element(d.y.begin(), d.y.end());
    EXPECT_GE(*high - *low, 2.0);
    EXPECT_LE(*high, 4.0);
    EXPECT_GE(*low, -4.0);
    EXPECT_EQ(w.panel().sbrSampleRate->text(), "Sample Rate: 20Ms/s");
    EXPECT_EQ(w.panel().CWSRange->value(), 1);   // "100"
    EXPECT_EQ(w.panel().CWSTrigger->value(), 2); // "IN+"
}

} // namespace
