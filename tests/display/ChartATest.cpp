// Tests of the plot decisions and arrays of the live ("CHa") and reference ("Ref") traces.
#include "display/ChartA.h"

#include "display/FormatDispData.h"
#include "display/ScaleTables.h"
#include "instrument/DecodeTables.h"

#include <bit>
#include <cstdint>
#include <gtest/gtest.h>

using namespace zorvik;

namespace {

TraceArray ramp(float first, float step) {
    TraceArray a{};
    for (std::size_t i = 0; i < a.size(); ++i)
        a[i] = first + step * static_cast<float>(i);
    return a;
}

ChartInputs liveAt200ns() {
    ChartInputs in;
    in.blnLiveData = true;
    in.sngChaGain = 1.0f;
    in.lngDivPerSec = 5000000;
    in.sngSampleInterval = 5e-8f;
    in.sngRefSampleInterval = 5e-8f;
    return in;
}

float expectedY(float volts, float gain, float offset, bool inverted) {
    double y = static_cast<double>(volts) * static_cast<double>(gain);
    if (inverted)
        y = -y;
    return static_cast<float>(y + static_cast<double>(offset));
}

} // namespace

TEST(ChartA, NeitherLiveDataNorLoadedReferenceClearsOnlyCHa) {
    ChartInputs in;
    in.CWBRef = true;
    const auto r = ChartA(in, ramp(0, 1), ramp(0, 1));
    EXPECT_EQ(r.CHa.action, PlotAction::Clear);
    EXPECT_EQ(r.Ref.action, PlotAction::Unchanged);
}

TEST(ChartA, NoLiveDataWithFileLoadedClearsCHaAndDrawsOnlyRef) {
    ChartInputs in = liveAt200ns();
    in.blnLiveData = false;
    in.blnRefLoaded = true;
    in.CWBRef = true;
    const auto r = ChartA(in, ramp(0, 1), ramp(0.5f, 0.25f));
    EXPECT_EQ(r.CHa.action, PlotAction::Clear);
    ASSERT_EQ(r.Ref.action, PlotAction::Plot);
    EXPECT_EQ(r.Ref.y[3], 1.25f);
    EXPECT_EQ(r.Ref.firstX, 0.0);
}

TEST(ChartA, NoLiveDataWithFileLoadedAndRefOffClearsBoth) {
    ChartInputs in = liveAt200ns();
    in.blnLiveData = false;
    in.blnRefLoaded = true;
    const auto r = ChartA(in, ramp(0, 1), ramp(0, 1));
    EXPECT_EQ(r.CHa.action, PlotAction::Clear);
    EXPECT_EQ(r.Ref.action, PlotAction::Clear);
}

TEST(ChartA, LiveDataWithRefOffPlotsCHaAndClearsRef) {
    const auto r = ChartA(liveAt200ns(), ramp(-1, 0.5f), ramp(0, 1));
    ASSERT_EQ(r.CHa.action, PlotAction::Plot);
    EXPECT_EQ(r.CHa.y[0], -1.0f);
    EXPECT_EQ(r.CHa.y[127], 62.5f);
    EXPECT_EQ(r.Ref.action, PlotAction::Clear);
}

TEST(ChartA, StoredReferenceIsDrawnWithLiveDataWhenRefIsOn) {
    ChartInputs in = liveAt200ns();
    in.CWBRef = true;
    const auto r = ChartA(in, ramp(0, 1), ramp(2, -1));
    EXPECT_EQ(r.CHa.action, PlotAction::Plot);
    ASSERT_EQ(r.Ref.action, PlotAction::Plot);
    EXPECT_EQ(r.Ref.y[5], -3.0f);
}

TEST(ChartA, Count31PlotsExactlyOnTheOffsetLineAndCounts0And62At31CountsEitherSide) {
    for (std::uint8_t sw : {0x00, 0x04, 0x08}) {
        HardwareState state;
        state.bytSwitchSetting = sw;
        RawSamples raw;
        raw.fill(31);
        raw[1] = 0;
        raw[2] = 62;
        AcquisitionValues values;
        const auto volts = FormatDispData(state, raw, values).sngChaVolts;
        ChartInputs in = liveAt200ns();
        in.sngChaGain = 0.2f;
        in.sngChaOffset = 1.5f;
        const auto r = ChartA(in, volts, volts);
        ASSERT_EQ(r.CHa.action, PlotAction::Plot);
        EXPECT_EQ(r.CHa.y[0], 1.5f);
        const float counts31 = 31.0f * values.sngVoltsPerCount;
        EXPECT_EQ(r.CHa.y[1], expectedY(-counts31, 0.2f, 1.5f, false));
        EXPECT_EQ(r.CHa.y[2], expectedY(counts31, 0.2f, 1.5f, false));
    }
}

TEST(ChartA, PlotValuesAreWorkedOutInDoubleAndKeptInSingle) {
    // Count 6 of the 10 V range at 5 V/div and offset 0.3: single-precision arithmetic
    // throughout would give -0.493650556 instead.
    const float volts = -25.0f * kVoltsPerCount10V;
    TraceArray v{};
    v.fill(volts);
    ChartInputs in = liveAt200ns();
    in.sngChaGain = 0.2f;
    in.sngChaOffset = 0.3f;
    const auto r = ChartA(in, v, v);
    ASSERT_EQ(r.CHa.action, PlotAction::Plot);
    EXPECT_EQ(r.CHa.y[0], expectedY(volts, 0.2f, 0.3f, false));
    EXPECT_EQ(r.CHa.y[0], -0.493650526f);
    EXPECT_NE(r.CHa.y[0], -0.493650556f);
}

TEST(ChartA, XIncrementForTimeBaseCode0At200nsPerDivisionIsTheDoubleOfTheSingleInterval) {
    HardwareState state;
    state.bytTimebaseDef = 0; // 20 Ms/s
    RawSamples raw{};
    AcquisitionValues values;
    FormatDispData(state, raw, values);
    ChartInputs in = liveAt200ns();
    in.sngSampleInterval = values.sngSampleInterval;
    in.lngDivPerSec = timeScaleForPosition(1)->lngDivPerSec; // 200 ns/div
    const auto r = ChartA(in, ramp(0, 1), ramp(0, 1));
    EXPECT_EQ(r.CHa.xStep, static_cast<double>(5e-8f) * 5000000.0);
    EXPECT_EQ(r.CHa.xStep, 0.25000000292152436);
    EXPECT_EQ(xIncrement(5e-8f, 5000000), 0.25000000292152436);
}

TEST(ChartA, HScaleChangeStretchesBothTracesAboutXZero) {
    ChartInputs in = liveAt200ns();
    in.CWBRef = true;
    const auto fine = ChartA(in, ramp(0, 1), ramp(1, 1));
    in.lngDivPerSec = 2000000; // 500 ns/div
    const auto coarse = ChartA(in, ramp(0, 1), ramp(1, 1));
    EXPECT_EQ(fine.CHa.firstX, 0.0);
    EXPECT_EQ(coarse.CHa.firstX, 0.0);
    EXPECT_EQ(fine.Ref.firstX, 0.0);
    EXPECT_EQ(coarse.Ref.firstX, 0.0);
    EXPECT_EQ(coarse.CHa.xStep, static_cast<double>(5e-8f) * 2000000.0);
    EXPECT_EQ(coarse.Ref.xStep, static_cast<double>(5e-8f) * 2000000.0);
    EXPECT_DOUBLE_EQ(fine.CHa.xStep / coarse.CHa.xStep, 2.5);
    EXPECT_EQ(fine.CHa.y, coarse.CHa.y);
    EXPECT_EQ(fine.Ref.y, coarse.Ref.y);
}

TEST(ChartA, ReferenceStoredAtAnotherSampleRateKeepsItsOwnSpacing) {
    ChartInputs in = liveAt200ns();
    in.CWBRef = true;
    in.sngRefSampleInterval = 1e-6f; // taken at 1 Ms/s
    const auto r = ChartA(in, ramp(0, 1), ramp(0, 1));
    EXPECT_EQ(r.CHa.xStep, static_cast<double>(5e-8f) * 5000000.0);
    EXPECT_EQ(r.Ref.xStep, static_cast<double>(1e-6f) * 5000000.0);
    EXPECT_EQ(r.Ref.firstX, 0.0);
}

TEST(ChartA, InvertMirrorsBothTracesAboutTheOffsetNotTheGraphCentre) {
    ChartInputs in = liveAt200ns();
    in.CWBRef = true;
    in.sngChaGain = 2.0f;
    in.sngChaOffset = 2.0f;
    const auto live = ramp(-1.0f, 0.25f);
    const auto ref = ramp(0.75f, -0.125f);
    const auto upright = ChartA(in, live, ref);
    in.CWBChaInv = true;
    const auto inverted = ChartA(in, live, ref);
    for (std::size_t i = 0; i < kSamplesPerFrame; ++i) {
        EXPECT_EQ(inverted.CHa.y[i] - 2.0f, -(upright.CHa.y[i] - 2.0f)) << i;
        EXPECT_EQ(inverted.Ref.y[i] - 2.0f, -(upright.Ref.y[i] - 2.0f)) << i;
    }
    EXPECT_EQ(upright.CHa.y[0], 0.0f);
    EXPECT_EQ(inverted.CHa.y[0], 4.0f);
}

TEST(ChartA, ReferenceFollowsThePresentGainOffsetAndInversion) {
    ChartInputs in = liveAt200ns();
    in.CWBRef = true;
    in.CWBChaInv = true;
    in.sngChaGain = 0.5f;
    in.sngChaOffset = -1.0f;
    const auto r = ChartA(in, ramp(0, 0), ramp(3.0f, 1.0f));
    ASSERT_EQ(r.Ref.action, PlotAction::Plot);
    EXPECT_EQ(r.Ref.y[0], -2.5f);
    EXPECT_EQ(r.Ref.y[1], -3.0f);
}

TEST(ChartA, PlotValuesBeyondSinglePrecisionStopTheDrawingThere) {
    ChartInputs in = liveAt200ns();
    in.CWBRef = true;
    in.sngChaGain = 1e38f;
    const auto r = ChartA(in, ramp(0, 10), ramp(0, 0));
    EXPECT_EQ(r.CHa.action, PlotAction::Unchanged);
    EXPECT_EQ(r.Ref.action, PlotAction::Unchanged);

    const auto refOnly = ChartA(in, ramp(0, 0), ramp(0, 10));
    EXPECT_EQ(refOnly.CHa.action, PlotAction::Plot);
    EXPECT_EQ(refOnly.Ref.action, PlotAction::Unchanged);
}
