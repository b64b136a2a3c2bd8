// End to end: the virtual probe on a pseudo-terminal mapped to COM1, the real serial port, and
// the main window showing and measuring what the probe measures.
#include "app/MainWindowFixture.h"
#include "instrument/QtSerialLink.h"
#include "probe/PtyProbe.h"
#include "widgets/Knob.h"
#include "widgets/LitButton.h"
#include "widgets/ScopeGraph.h"
#include "widgets/Slide.h"

#include <QHash>
#include <QRegularExpression>
#include <QTest>
#include <cmath>
#include <numbers>

using namespace zorvik;
using zorvik::test::MainWindowFixture;

namespace {

// The probe's default set-up: a 1 kHz sine of 1 V amplitude on the 10 V range, sampled at
// 20Ks/s, triggered rising through 0.5 V.
constexpr double kOneCount = 0.1587301; // volts per count of the 10 V range
constexpr int kSamplesPerPeriod = 20;

class MainWindowLiveTrace : public MainWindowFixture {
protected:
    void SetUp() override {
        MainWindowFixture::SetUp();
        probe = std::make_unique<PtyProbe>(ProbeStream(ProbeSettings{}));
        probe->start();
        ports.setDevice(1, probe->devicePath());
    }
    void TearDown() override {
        MainWindowFixture::TearDown();
        probe->stop();
    }

    /// Switches POWER on and waits until `frames` frames have been shown.
    frmMain& live(int frames = 3) {
        frmMain& w = start({1}, &serial);
        QObject::connect(&w.link(), &InstrumentLink::received, &w, [this](const ReceiveStep& s) {
            if (s.event == ReceiveEvent::Frame)
                ++shown;
        });
        w.panel().CWBPwr->setValue(true);
        EXPECT_TRUE(QTest::qWaitFor([&] { return shown >= frames; }, 10000));
        EXPECT_TRUE(messages.empty());
        return w;
    }

    /// Waits for the next frame to be shown.
    void nextFrame() {
        const int before = shown;
        ASSERT_TRUE(QTest::qWaitFor([&] { return shown > before; }, 5000));
    }

    /// Drags a vertical cursor with the mouse from X position `from` to `to` on the graph.
    static void dragCursor(ScopeGraph& g, double from, double to) {
        const int y = g.plotAreaRect().center().y();
        const QPoint a(qRound(g.xAxis->coordToPixel(from)), y);
        const QPoint b(qRound(g.xAxis->coordToPixel(to)), y);
        QTest::mousePress(&g, Qt::LeftButton, {}, a);
        QTest::mouseMove(&g, b);
        QTest::mouseRelease(&g, Qt::LeftButton, {}, b);
    }

    /// A readout in seconds or hertz ("980.00 nSec" is 9.8e-7, "2.000 KHz" is 2000).
    static double readoutValue(const QString& text) {
        static const QHash<QString, double> units = {{"nSec", 1e-9}, {"uSec", 1e-6}, {"mSec", 1e-3},
                                                     {"Sec", 1.0},   {"Hz", 1.0},    {"KHz", 1e3},
                                                     {"MHz", 1e6},   {"GHz", 1e9}};
        const QStringList parts = text.split(' ');
        if (parts.size() != 2 || !units.contains(parts[1]))
            return std::nan("");
        return parts[0].toDouble() * units.value(parts[1]);
    }

    /// X positions where the trace rises through `level`, found in the plotted points by
    /// straight-line interpolation between the two samples either side.
    static QVector<double> risingCrossings(const ScopeGraph::PlotData& d, double level) {
        QVector<double> xs;
        for (int i = 1; i < d.y.size(); ++i) {
            if (d.y[i - 1] < level && d.y[i] >= level) {
                const double f = (level - d.y[i - 1]) / (d.y[i] - d.y[i - 1]);
                xs.append(d.x[i - 1] + f * (d.x[i] - d.x[i - 1]));
            }
        }
        return xs;
    }

    std::unique_ptr<PtyProbe> probe;
    QtSerialLink serial;
    int shown = 0;
};

} // namespace

TEST_F(MainWindowLiveTrace, LiveTraceFollowsTheProbesSineAtOneVoltPerDivision) {
    frmMain& w = live();
    w.panel().CWKChaLvl->setValue(5);     // 1 V/div
    w.panel().CWKTimeRange->setValue(12); // 1 ms/div
    nextFrame();
    EXPECT_EQ(w.panel().sbrComPort->text(), "Com: 1");
    EXPECT_EQ(w.panel().sbrSampleRate->text(), "Sample Rate: 20Ks/s");
    const ScopeGraph::PlotData d = w.panel().CWGraph1->plotData("CHa");
    ASSERT_EQ(d.y.size(), 128);
    // 50 us per sample at 1 ms/div: a twentieth of a division.
    EXPECT_EQ(d.x[1], static_cast<double>(5e-5f) * 1000);
    const double top = *std::max_element(d.y.begin(), d.y.end());
    const double bottom = *std::min_element(d.y.begin(), d.y.end());
    EXPECT_NEAR(top, 1.0, kOneCount);
    EXPECT_NEAR(bottom, -1.0, kOneCount);
    // Sample by sample: the sine from where it rises through the 0.5 V trigger level (30
    // degrees), eighteen degrees a sample, within a count.
    for (int i = 0; i < 128; ++i) {
        const double degrees = 30.0 + 360.0 * i / kSamplesPerPeriod;
        EXPECT_NEAR(d.y[i], std::sin(degrees * std::numbers::pi / 180.0), kOneCount) << i;
    }
}

TEST_F(MainWindowLiveTrace, TheTraceSpansOneDivisionEitherSideOfTheOffset) {
    frmMain& w = live();
    w.panel().CWKChaLvl->setValue(5);
    w.panel().CWSCHaOffset->setValue(1.5);
    nextFrame();
    const ScopeGraph::PlotData d = w.panel().CWGraph1->plotData("CHa");
    ASSERT_EQ(d.y.size(), 128);
    EXPECT_NEAR(*std::max_element(d.y.begin(), d.y.end()), 2.5, kOneCount);
    EXPECT_NEAR(*std::min_element(d.y.begin(), d.y.end()), 0.5, kOneCount);
}

TEST_F(MainWindowLiveTrace, VCursOverOnePeriodReadsOneMillisecondAndOneKilohertz) {
    frmMain& w = live();
    w.panel().CWKChaLvl->setValue(5);
    w.panel().CWKTimeRange->setValue(12); // 1 ms/div
    nextFrame();
    const QVector<double> rises = risingCrossings(w.panel().CWGraph1->plotData("CHa"), 0.0);
    ASSERT_GE(rises.size(), 2);
    EXPECT_NEAR(rises[1] - rises[0], 1.0, 1e-6); // one period is one division

    // The user drags the time pair onto two successive rising zero crossings.
    w.panel().CWBVCursors->setValue(true); // Cursor1 at 1, Cursor2 at 2
    ScopeGraph& g = *w.panel().CWGraph1;
    dragCursor(g, 1.0, rises[0]);
    dragCursor(g, 2.0, rises[1]);
    const double pixel = 10.0 / g.plotAreaRect().width(); // divisions per pixel
    EXPECT_NEAR(g.cursorX("Cursor1"), rises[0], pixel);
    EXPECT_NEAR(g.cursorX("Cursor2"), rises[1], pixel);

    // About 1.000 mSec and 1.000 KHz: within the pixel each cursor may be off.
    EXPECT_TRUE(QRegularExpression(R"(^\d+\.\d{3} (uSec|mSec)$)")
                    .match(w.panel().lblCTime->text())
                    .hasMatch())
        << w.panel().lblCTime->text().toStdString();
    EXPECT_NEAR(readoutValue(w.panel().lblCTime->text()), 1e-3, 2 * pixel * 1e-3);
    EXPECT_NEAR(readoutValue(w.panel().lblCFrequency->text()), 1000.0, 2 * pixel * 1000.0 * 1.1);
}

TEST_F(MainWindowLiveTrace, CursorsOneDivisionApartReadExactlyOneMillisecondAndOneKilohertz) {
    frmMain& w = live();
    w.panel().CWKTimeRange->setValue(12);
    w.panel().CWBVCursors->setValue(true); // one division apart: one period of the probe's sine
    EXPECT_EQ(w.panel().lblCTime->text(), "1.000 mSec");
    EXPECT_EQ(w.panel().lblCFrequency->text(), "1.000 KHz");
}

TEST_F(MainWindowLiveTrace, KnobsRescaleTheLiveTrace) {
    frmMain& w = live();
    w.panel().CWKChaLvl->setValue(5);
    w.panel().CWKTimeRange->setValue(12);
    nextFrame();
    w.panel().CWKChaLvl->setValue(4);     // 2 V/div: half the height
    w.panel().CWKTimeRange->setValue(13); // 2 ms/div: half the width
    nextFrame();
    ScopeGraph::PlotData d = w.panel().CWGraph1->plotData("CHa");
    ASSERT_EQ(d.y.size(), 128);
    EXPECT_NEAR(*std::max_element(d.y.begin(), d.y.end()), 0.5, kOneCount / 2);
    EXPECT_NEAR(*std::min_element(d.y.begin(), d.y.end()), -0.5, kOneCount / 2);
    EXPECT_EQ(d.x[1], static_cast<double>(5e-5f) * 500);
    QVector<double> rises = risingCrossings(d, 0.0);
    ASSERT_GE(rises.size(), 2);
    EXPECT_NEAR(rises[1] - rises[0], 0.5, 1e-6); // one period is half a division now

    w.panel().CWKChaLvl->setValue(7);     // .2 V/div: the peaks run off the screen
    w.panel().CWKTimeRange->setValue(10); // 200 us/div: five divisions a period
    nextFrame();
    d = w.panel().CWGraph1->plotData("CHa");
    EXPECT_NEAR(*std::max_element(d.y.begin(), d.y.end()), 5.0, 5 * kOneCount);
    rises = risingCrossings(d, 0.0);
    ASSERT_GE(rises.size(), 2);
    EXPECT_NEAR(rises[1] - rises[0], 5.0, 1e-6);
}
