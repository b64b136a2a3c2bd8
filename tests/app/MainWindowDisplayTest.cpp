// Frames fed to the main window end as exact points on the graph: the trace "CHa" for every
// range, time base, V-SCALE setting, offset and inversion, the reference "Ref", the pan window
// and the side scale's pointers.
#include "app/LiveWindowFixture.h"
#include "widgets/IndicatorSlide.h"
#include "widgets/Knob.h"
#include "widgets/Led.h"
#include "widgets/Slide.h"

#include <cmath>

using namespace zorvik;
using zorvik::test::flatSamples;
using zorvik::test::LiveWindowFixture;
using zorvik::test::rampSamples;
using zorvik::test::stateWith;

namespace {

// Volts per count of the three ranges and the seconds per sample of a few time-base codes,
// as the probe's frames announce them.
constexpr float kVpc1V = 0.01587301f;                                        // range bits 0x00
constexpr float kVpc10V = 0.1587301f;                                        // range bits 0x04
constexpr float kVpc100V = 1.587301f;                                        // range bits 0x08
constexpr float kDivPerVolt[] = {0.05f, 0.1f, 0.2f, 0.5f, 1.0f, 2.0f, 5.0f}; // V-SCALE 1..7

/// The Y of one sample as the display computes it: volts x gain in double precision, negated
/// when inverted, plus the offset, kept in single precision.
float plotY(float volts, float gain, float offset, bool inverted) {
    double y = static_cast<double>(volts) * static_cast<double>(gain);
    if (inverted)
        y = -y;
    return static_cast<float>(y + static_cast<double>(offset));
}

TraceArray plotYs(const TraceArray& volts, float gain, float offset, bool inverted) {
    TraceArray y{};
    for (std::size_t i = 0; i < y.size(); ++i)
        y[i] = plotY(volts[i], gain, offset, inverted);
    return y;
}

struct DisplayCase {
    const char* name;
    std::uint8_t range;
    float voltsPerCount;
    std::uint8_t timebase;
    float sampleInterval;
    int vScale; // V-SCALE knob position 1..7
    int hScale; // H-SCALE knob position 1..16
    std::int32_t divPerSec;
    double offset;
    bool inverted;
};

void PrintTo(const DisplayCase& c, std::ostream* os) {
    *os << c.name;
}

class MainWindowTrace : public LiveWindowFixture,
                        public ::testing::WithParamInterface<DisplayCase> {};

} // namespace

TEST_P(MainWindowTrace, FrameGivesTheExactPointsOnCHa) {
    const DisplayCase& c = GetParam();
    frmMain& w = running();
    ASSERT_TRUE(w.panel().CWKChaLvl->setValue(c.vScale));
    ASSERT_TRUE(w.panel().CWKTimeRange->setValue(c.hScale));
    ASSERT_TRUE(w.panel().CWSCHaOffset->setValue(c.offset));
    w.panel().CWBChaInv->setValue(c.inverted);
    feed(stateWith(c.range, c.timebase), rampSamples());

    EXPECT_EQ(w.model().acquisition.sngVoltsPerCount, c.voltsPerCount);
    EXPECT_EQ(w.model().acquisition.sngSampleInterval, c.sampleInterval);
    EXPECT_EQ(w.model().lngDivPerSec, c.divPerSec);
    const TraceArray volts = voltsOf(rampSamples(), c.voltsPerCount);
    EXPECT_EQ(w.model().sngChaVolts, volts);
    const float gain = kDivPerVolt[c.vScale - 1];
    const TraceArray y = plotYs(volts, gain, static_cast<float>(c.offset), c.inverted);
    EXPECT_EQ(y, expectedY(volts)); // the display core agrees
    const double step = static_cast<double>(c.sampleInterval) * c.divPerSec;
    expectPlot(*w.panel().CWGraph1, "CHa", step, y);
    EXPECT_EQ(w.model().sngChaPlot, y);
}

INSTANTIATE_TEST_SUITE_P(RangesTimeBasesAndScales, MainWindowTrace,
                         ::testing::Values(DisplayCase{"TenVoltRange20KsAt1VoltAnd1ms", 0x04,
                                                       kVpc10V, 6, 5e-5f, 5, 12, 1000, 0.0, false},
                                           DisplayCase{"OneVoltRange20MsAt200mVAnd200ns", 0x00,
                                                       kVpc1V, 0, 5e-8f, 7, 1, 5000000, 1.5, true},
                                           DisplayCase{"HundredVoltRange500sAt20VoltAnd20ms", 0x08,
                                                       kVpc100V, 10, 2e-3f, 1, 16, 50, -2.3, false},
                                           DisplayCase{"TenVoltRange1MsAt5VoltAnd10us", 0x04,
                                                       kVpc10V, 3, 1e-6f, 3, 6, 100000, 0.7, true},
                                           DisplayCase{"OneVoltRange2KsAt500mVAnd5ms", 0x00, kVpc1V,
                                                       8, 5e-4f, 6, 14, 200, -0.4, false}),
                         [](const ::testing::TestParamInfo<DisplayCase>& info) {
                             return info.param.name;
                         });

using MainWindowDisplay = LiveWindowFixture;

TEST_F(MainWindowDisplay, TurningAKnobReplotsTheLastFrameAtTheNewScale) {
    frmMain& w = running();
    feed(stateWith(0x04, 6), rampSamples());
    const TraceArray volts = voltsOf(rampSamples(), kVpc10V);
    w.panel().CWKChaLvl->setValue(5); // 1 V/div
    expectPlot(*w.panel().CWGraph1, "CHa", 5e-5f * 1000000.0, plotYs(volts, 1.0f, 0.0f, false));
    w.panel().CWKTimeRange->setValue(12); // 1 ms/div
    expectPlot(*w.panel().CWGraph1, "CHa", static_cast<double>(5e-5f) * 1000,
               plotYs(volts, 1.0f, 0.0f, false));
}

TEST_F(MainWindowDisplay, Count31PlotsExactlyOnTheOffsetLine) {
    frmMain& w = running();
    w.panel().CWKChaLvl->setValue(7);
    w.panel().CWSCHaOffset->setValue(1.3);
    feed(stateWith(0x00, 6), flatSamples(31));
    const ScopeGraph::PlotData d = w.panel().CWGraph1->plotData("CHa");
    ASSERT_EQ(d.y.size(), 128);
    for (double y : d.y)
        EXPECT_EQ(y, static_cast<double>(1.3f));
}

TEST_F(MainWindowDisplay, Counts0And62PlotThirtyOneCountsEitherSideOfTheOffset) {
    frmMain& w = running();
    w.panel().CWKChaLvl->setValue(5); // 1 V/div: one count of the 10 V range is 0.1587301 divisions
    w.panel().CWSCHaOffset->setValue(-0.5);
    RawSamples r{};
    for (std::size_t i = 0; i < r.size(); ++i)
        r[i] = i % 2 == 0 ? 0 : 62;
    feed(stateWith(0x04, 6), r);
    const ScopeGraph::PlotData d = w.panel().CWGraph1->plotData("CHa");
    ASSERT_EQ(d.y.size(), 128);
    const double thirtyOneCounts = 31 * static_cast<double>(kVpc10V);
    for (int i = 0; i < 128; ++i) {
        const double expected = -0.5 + (i % 2 == 0 ? -thirtyOneCounts : thirtyOneCounts);
        EXPECT_NEAR(d.y[i], expected, 1e-6) << i;
        EXPECT_EQ(d.y[i], plotY(i % 2 == 0 ? -31 * kVpc10V : 31 * kVpc10V, 1.0f, -0.5f, false));
    }
}

TEST_F(MainWindowDisplay, PanMovesTheVisibleWindowWithoutRecomputingTheTraces) {
    frmMain& w = running();
    feed(stateWith(0x04, 6), rampSamples());
    const ScopeGraph::PlotData before = w.panel().CWGraph1->plotData("CHa");
    const TraceArray plotBefore = w.model().sngChaPlot;
    // A scale the traces would change with, were they worked out again.
    w.model().sngChaGain = 3.0f;
    w.model().sngChaOffset = 2.0f;
    ASSERT_TRUE(w.panel().CWSPan->setValue(7.5));
    EXPECT_EQ(w.model().varGraphOffset, 7.5);
    EXPECT_EQ(w.panel().CWGraph1->axisMinimum("XAxis"), 7.5);
    EXPECT_EQ(w.panel().CWGraph1->axisMaximum("XAxis"), 17.5);
    EXPECT_EQ(w.panel().CWGraph1->xAxis->range().lower, 7.5);
    EXPECT_EQ(w.panel().CWGraph1->xAxis->range().upper, 17.5);
    const ScopeGraph::PlotData after = w.panel().CWGraph1->plotData("CHa");
    EXPECT_EQ(after.x, before.x);
    EXPECT_EQ(after.y, before.y);
    EXPECT_EQ(w.model().sngChaPlot, plotBefore);
    ASSERT_TRUE(w.panel().CWSPan->setValue(0.0));
    EXPECT_EQ(w.panel().CWGraph1->axisMinimum("XAxis"), 0.0);
    EXPECT_EQ(w.panel().CWGraph1->axisMaximum("XAxis"), 10.0);
}

TEST_F(MainWindowDisplay, WithoutLiveDataALoadedReferenceIsTheOnlyTraceDrawn) {
    frmMain& w = start();
    // Something left on "CHa" from before.
    const TraceArray junk{};
    w.panel().CWGraph1->plotY("CHa", junk, 0.0, 1.0);
    // A reference as reading a waveform file leaves it.
    const TraceArray refVolts = voltsOf(rampSamples(), kVpc10V);
    w.model().sngRefVolts = refVolts;
    w.model().sngRefSampleInterval = 1e-6f;
    w.model().sngRefVoltsPerCount = kVpc10V;
    w.model().blnRefLoaded = true;
    w.panel().CWKChaLvl->setValue(5);
    w.panel().CWBRef->setValue(true);
    EXPECT_TRUE(w.panel().CWGraph1->plotData("CHa").x.isEmpty());
    expectPlot(*w.panel().CWGraph1, "Ref", static_cast<double>(1e-6f) * 1000000,
               plotYs(refVolts, 1.0f, 0.0f, false));
    EXPECT_TRUE(w.panel().CWGraph1->plotVisible("Ref"));
    // REF off: the reference goes too.
    w.panel().CWBRef->setValue(false);
    w.ChartA();
    EXPECT_TRUE(w.panel().CWGraph1->plotData("Ref").x.isEmpty());
    EXPECT_TRUE(w.panel().CWGraph1->plotData("CHa").x.isEmpty());
}

TEST_F(MainWindowDisplay, HScaleStretchesBothTracesAboutXZeroAndTheReferenceKeepsItsSpacing) {
    frmMain& w = running();
    // The reference is taken at 20Ks/s, the live trace then runs at 1Ms/s.
    feed(stateWith(0x04, 6), rampSamples());
    w.panel().CWBStoreRef->setValue(true);
    ASSERT_TRUE(w.panel().CWBRef->value());
    w.panel().CWBStoreRef->setValue(false);
    ASSERT_TRUE(QTest::qWaitFor([&] { return fake.pendingCount() == 2; }, 2000));
    feed(stateWith(0x04, 3), flatSamples(40));
    for (int p : {12, 9, 3}) {
        w.panel().CWKTimeRange->setValue(p);
        const double divPerSec = w.model().lngDivPerSec;
        const ScopeGraph::PlotData live = w.panel().CWGraph1->plotData("CHa");
        const ScopeGraph::PlotData ref = w.panel().CWGraph1->plotData("Ref");
        ASSERT_EQ(live.x.size(), 128);
        ASSERT_EQ(ref.x.size(), 128);
        EXPECT_EQ(live.x[0], 0.0);
        EXPECT_EQ(ref.x[0], 0.0);
        EXPECT_EQ(live.x[1], static_cast<double>(1e-6f) * divPerSec) << p;
        EXPECT_EQ(ref.x[1], static_cast<double>(5e-5f) * divPerSec) << p;
        EXPECT_EQ(ref.x[127], 127 * static_cast<double>(5e-5f) * divPerSec) << p;
    }
}

TEST_F(MainWindowDisplay, InvertingMirrorsBothTracesAndTheTriggerLevelAboutTheOffset) {
    frmMain& w = running();
    w.panel().CWKChaLvl->setValue(5);
    feed(stateWith(0x04, 6, 16), rampSamples()); // trigger level 0.5 V
    w.panel().CWBStoreRef->setValue(true);       // the same samples become the reference
    w.panel().CWBStoreRef->setValue(false);
    ASSERT_TRUE(QTest::qWaitFor([&] { return fake.pendingCount() == 2; }, 2000));
    w.panel().CWSCHaOffset->setValue(1.5);
    const ScopeGraph::PlotData live = w.panel().CWGraph1->plotData("CHa");
    const ScopeGraph::PlotData ref = w.panel().CWGraph1->plotData("Ref");
    EXPECT_DOUBLE_EQ(w.panel().CWSTrigInd->pointerValue("TrigLvl"), 2.0);
    EXPECT_DOUBLE_EQ(w.panel().CWSTrigInd->pointerValue("CHa_Zero"), 1.5);

    w.panel().CWBChaInv->setValue(true);
    const ScopeGraph::PlotData liveInv = w.panel().CWGraph1->plotData("CHa");
    const ScopeGraph::PlotData refInv = w.panel().CWGraph1->plotData("Ref");
    ASSERT_EQ(liveInv.y.size(), 128);
    ASSERT_EQ(refInv.y.size(), 128);
    const TraceArray volts = voltsOf(rampSamples(), kVpc10V);
    for (int i = 0; i < 128; ++i) {
        // Mirrored about the offset line 1.5, not about the graph's centre line 0.
        EXPECT_NEAR(liveInv.y[i] - 1.5, -(live.y[i] - 1.5), 1e-6) << i;
        EXPECT_NEAR(refInv.y[i] - 1.5, -(ref.y[i] - 1.5), 1e-6) << i;
        EXPECT_EQ(liveInv.y[i], plotY(volts[static_cast<std::size_t>(i)], 1.0f, 1.5f, true));
    }
    EXPECT_EQ(liveInv.x, live.x);
    EXPECT_DOUBLE_EQ(w.panel().CWSTrigInd->pointerValue("TrigLvl"), 1.0);
    EXPECT_DOUBLE_EQ(w.panel().CWSTrigInd->pointerValue("CHa_Zero"), 1.5);
    EXPECT_TRUE(w.panel().CWBChaInvLed->value());
}

TEST_F(MainWindowDisplay, RangeBits12KeepTheVoltsPerCountAndTheTriggerLevel) {
    frmMain& w = running();
    w.panel().CWKChaLvl->setValue(5);
    feed(stateWith(0x00, 6, 4), rampSamples()); // 1 V range, level 0.25 V
    ASSERT_EQ(w.model().acquisition.sngTrigLevel, 0.25f);
    EXPECT_DOUBLE_EQ(w.panel().CWSTrigInd->pointerValue("TrigLvl"), 0.25);
    feed(stateWith(0x0C, 6, 8), flatSamples(50)); // no range; level code 8 would be 0.15 V
    EXPECT_EQ(w.model().acquisition.sngVoltsPerCount, kVpc1V);
    EXPECT_EQ(w.model().acquisition.sngTrigLevel, 0.25f);
    EXPECT_DOUBLE_EQ(w.panel().CWSTrigInd->pointerValue("TrigLvl"), 0.25);
    EXPECT_EQ(w.panel().CWSRange->value(), 3); // the range indicator stays on "1"
    expectPlot(*w.panel().CWGraph1, "CHa", static_cast<double>(5e-5f) * 1000000,
               plotYs(voltsOf(flatSamples(50), kVpc1V), 1.0f, 0.0f, false));
}

// The "0" pointer stands at the offset from the start, on a first run without a settings file
// as with one: it does not wait for the first frame.
TEST_F(MainWindowDisplay, TheZeroPointerStandsAtTheOffsetFromTheStart) {
    frmMain& w = start();
    EXPECT_TRUE(w.panel().CWSTrigInd->pointerVisible("CHa_Zero"));
    EXPECT_EQ(w.panel().CWSTrigInd->pointerValue("CHa_Zero"), 0.0);
    EXPECT_EQ(w.panel().CWSTrigInd->tagRects().size(), 1); // "0" only: "T" waits for a frame
}

TEST_F(MainWindowDisplay, TheZeroPointerFollowsTheOffsetHoweverItIsSet) {
    frmMain& w = start();
    w.panel().CWSCHaOffset->setValueSilently(-1.5); // as a waveform file sets it
    EXPECT_EQ(w.panel().CWSTrigInd->pointerValue("CHa_Zero"), -1.5);
    w.panel().CWSCHaOffset->setValue(2.25);
    EXPECT_EQ(w.panel().CWSTrigInd->pointerValue("CHa_Zero"), 2.25);
}

// At 20 V/div every trigger level lies within a few pixels of the zero line: the two tags are
// moved apart so that "T" and "0" both stay readable, each still pointing at its value.
TEST_F(MainWindowDisplay, TriggerAndZeroTagsNeverCoverEachOther) {
    frmMain& w = running();
    ASSERT_EQ(w.panel().CWKChaLvl->value(), 1);
    for (std::uint8_t level : {0, 4, 8, 16, 32, 64}) {
        feed(stateWith(0x00, 6, level), rampSamples());
        SCOPED_TRACE(int(level));
        ASSERT_LT(
            std::abs(
                w.panel().CWSTrigInd->pixelFor(w.panel().CWSTrigInd->pointerValue("TrigLvl")) -
                w.panel().CWSTrigInd->pixelFor(w.panel().CWSTrigInd->pointerValue("CHa_Zero"))),
            3.0);
        const QList<QRectF> tags = w.panel().CWSTrigInd->tagRects();
        ASSERT_EQ(tags.size(), 2);
        EXPECT_FALSE(tags[0].intersects(tags[1]));
        for (const QRectF& r : tags)
            EXPECT_TRUE(QRectF(w.panel().CWSTrigInd->rect()).contains(r));
    }
}
