// Tests of the VOLTS, TIME and FREQUENCY readout texts.
#include "display/CursorReadouts.h"

#include "display/ScaleTables.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <utility>

using namespace zorvik;

namespace {

/// Both pairs on, cursors at the window's edge + 1 and + 2 divisions, 1 V/div, 1 ms/div.
CursorInputs bothPairs() {
    CursorInputs in;
    in.CWBHCursors = true;
    in.CWBVCursors = true;
    in.Cursor3Y = 1.0;
    in.Cursor4Y = 2.0;
    in.Cursor1X = 1.0;
    in.Cursor2X = 2.0;
    in.sngChaGain = 1.0f;
    in.lngDivPerSec = 1000;
    in.intTimeUnit = 2;
    return in;
}

/// Time pair only, `divisions` apart, at H-SCALE knob position `position`.
CursorInputs timePair(int position, double divisions) {
    const auto scale = timeScaleForPosition(position).value();
    CursorInputs in;
    in.CWBVCursors = true;
    in.Cursor1X = 1.0;
    in.Cursor2X = 1.0 + divisions;
    in.lngDivPerSec = scale.lngDivPerSec;
    in.intTimeUnit = scale.intTimeUnit;
    return in;
}

/// Voltage pair only, `divisions` apart, at V-SCALE knob position `position`.
CursorInputs voltagePair(int position, double divisions) {
    CursorInputs in;
    in.CWBHCursors = true;
    in.Cursor3Y = -3.0;
    in.Cursor4Y = -3.0 + divisions;
    in.sngChaGain = chaGainForPosition(position).value();
    return in;
}

} // namespace

TEST(CursorReadouts, VoltageOfExactly100ShowsOneDecimal) {
    // Five divisions at 20 V/div.
    EXPECT_EQ(DisplayCursorData(voltagePair(1, 5.0)).lblCVoltage, "100.0 V");
}

TEST(CursorReadouts, VoltageOfExactly1ShowsTwoDecimals) {
    EXPECT_EQ(DisplayCursorData(voltagePair(5, 1.0)).lblCVoltage, "1.00 V");
    // Five divisions at .2 V/div.
    EXPECT_EQ(DisplayCursorData(voltagePair(7, 5.0)).lblCVoltage, "1.00 V");
}

TEST(CursorReadouts, VoltageBelow1ShowsThreeDecimals) {
    EXPECT_EQ(DisplayCursorData(voltagePair(7, 2.5)).lblCVoltage, "0.500 V");
    EXPECT_EQ(DisplayCursorData(voltagePair(6, 0.0)).lblCVoltage, "0.000 V");
}

TEST(CursorReadouts, VoltageUsesTheDistanceWhicheverCursorIsHigher) {
    CursorInputs in = voltagePair(4, 3.0); // 2 V/div
    std::swap(in.Cursor3Y, in.Cursor4Y);
    EXPECT_EQ(DisplayCursorData(in).lblCVoltage, "6.00 V");
    EXPECT_EQ(DisplayCursorData(voltagePair(2, 9.99)).lblCVoltage, "99.90 V");
    EXPECT_EQ(DisplayCursorData(voltagePair(1, 7.5)).lblCVoltage, "150.0 V");
}

TEST(CursorReadouts, OffsetDoesNotChangeTheVoltageReadout) {
    // Moving the offset moves the trace under the cursors; the readout depends only on
    // the distance between the two cursors and the V-SCALE.
    for (double zeroLine : {-4.0, 0.0, 2.5}) {
        CursorInputs in = voltagePair(3, 0.0);
        in.Cursor3Y = zeroLine + 1.0;
        in.Cursor4Y = zeroLine + 3.0;
        EXPECT_EQ(DisplayCursorData(in).lblCVoltage, "10.00 V") << zeroLine;
    }
}

TEST(CursorReadouts, SixDivisionsAt200nsShow1200nsInMicroseconds) {
    EXPECT_EQ(DisplayCursorData(timePair(1, 6.0)).lblCTime, "1.200 uSec");
}

TEST(CursorReadouts, FourPointNineDivisionsAt200nsShow980Nanoseconds) {
    EXPECT_EQ(DisplayCursorData(timePair(1, 4.9)).lblCTime, "980.00 nSec");
}

TEST(CursorReadouts, HalfAMicrosecondInTheMicrosecondRangeShowsNanoseconds) {
    EXPECT_EQ(DisplayCursorData(timePair(3, 0.5)).lblCTime, "500.00 nSec");
}

TEST(CursorReadouts, HalfAMillisecondInTheMillisecondRangeShowsMicroseconds) {
    EXPECT_EQ(DisplayCursorData(timePair(12, 0.5)).lblCTime, "500.000 uSec");
}

TEST(CursorReadouts, TimeLinesOfEachRange) {
    EXPECT_EQ(DisplayCursorData(timePair(2, 1.0)).lblCTime, "500.00 nSec");
    EXPECT_EQ(DisplayCursorData(timePair(4, 3.0)).lblCTime, "6.000 uSec");
    EXPECT_EQ(DisplayCursorData(timePair(11, 2.5)).lblCTime, "1.250 mSec");
    EXPECT_EQ(DisplayCursorData(timePair(13, 1.5)).lblCTime, "3.000 mSec");
    EXPECT_EQ(DisplayCursorData(timePair(16, 100.0)).lblCTime, "2.000 Sec");
    EXPECT_EQ(DisplayCursorData(timePair(17, 10.0)).lblCTime, "500.000 mSec");
}

TEST(CursorReadouts, CursorsOnTopOfEachOtherShowZeroTimeInTheRangesUnit) {
    EXPECT_EQ(DisplayCursorData(timePair(1, 0.0)).lblCTime, "0.00 nSec");
    EXPECT_EQ(DisplayCursorData(timePair(6, 0.0)).lblCTime, "0.00 nSec");
    EXPECT_EQ(DisplayCursorData(timePair(14, 0.0)).lblCTime, "0.000 uSec");
}

TEST(CursorReadouts, CursorsOnTopOfEachOtherLeaveTheFrequency) {
    for (int position : {1, 6, 14})
        EXPECT_FALSE(DisplayCursorData(timePair(position, 0.0)).lblCFrequency.has_value());
}

TEST(CursorReadouts, HalfAMillisecondIsTwoKilohertz) {
    EXPECT_EQ(DisplayCursorData(timePair(12, 0.5)).lblCFrequency, "2.000 KHz");
}

TEST(CursorReadouts, TwoMillisecondsIs500Hertz) {
    EXPECT_EQ(DisplayCursorData(timePair(12, 2.0)).lblCFrequency, "500.0 Hz");
}

TEST(CursorReadouts, QuarterMicrosecondIsFourMegahertz) {
    EXPECT_EQ(DisplayCursorData(timePair(3, 0.25)).lblCFrequency, "4.000 MHz");
}

TEST(CursorReadouts, FrequenciesFromOneMillionKilohertzAreInGigahertz) {
    EXPECT_EQ(frequencyText(1e-12), "1000.000 GHz");
    EXPECT_EQ(frequencyText(5e-10), "2.000 GHz");
    EXPECT_EQ(frequencyText(2e-9), "500.000 MHz");
}

TEST(CursorReadouts, SwitchingHCursOffEmptiesTheVoltageAtOnce) {
    CursorInputs in = bothPairs();
    in.CWBHCursors = false;
    const auto r = DisplayCursorData(in);
    EXPECT_EQ(r.lblCVoltage, "");
    EXPECT_EQ(r.lblCTime, "1.000 mSec");
    EXPECT_EQ(r.lblCFrequency, "1.000 KHz");
}

TEST(CursorReadouts, SwitchingVCursOffEmptiesTimeAndFrequency) {
    CursorInputs in = bothPairs();
    in.CWBVCursors = false;
    const auto r = DisplayCursorData(in);
    EXPECT_EQ(r.lblCVoltage, "1.00 V");
    EXPECT_EQ(r.lblCTime, "");
    EXPECT_EQ(r.lblCFrequency, "");
}

TEST(CursorReadouts, BothPairsOffEmptyAllThreeLabels) {
    const auto r = DisplayCursorData(CursorInputs{});
    EXPECT_EQ(r, (CursorReadouts{"", "", ""}));
}

TEST(CursorReadouts, ZeroGainLeavesTheVoltageLabel) {
    CursorInputs in = bothPairs();
    in.sngChaGain = 0.0f;
    const auto r = DisplayCursorData(in);
    EXPECT_FALSE(r.lblCVoltage.has_value());
    EXPECT_EQ(r.lblCTime, "1.000 mSec");
}

TEST(CursorReadouts, GainTooSmallForVoltsPerDivisionLeavesTheVoltageLabel) {
    CursorInputs in = bothPairs();
    in.sngChaGain = std::numeric_limits<float>::denorm_min();
    EXPECT_FALSE(DisplayCursorData(in).lblCVoltage.has_value());
}

TEST(CursorReadouts, ZeroDivisionsPerSecondLeaveTimeAndFrequency) {
    CursorInputs in = bothPairs();
    in.lngDivPerSec = 0;
    const auto r = DisplayCursorData(in);
    EXPECT_EQ(r.lblCVoltage, "1.00 V");
    EXPECT_FALSE(r.lblCTime.has_value());
    EXPECT_FALSE(r.lblCFrequency.has_value());
}

TEST(CursorReadouts, UnreadableCursorLeavesOnlyTheLabelsThatNeedIt) {
    CursorInputs in = bothPairs();
    in.Cursor4Y.reset();
    auto r = DisplayCursorData(in);
    EXPECT_FALSE(r.lblCVoltage.has_value());
    EXPECT_EQ(r.lblCTime, "1.000 mSec");

    in = bothPairs();
    in.Cursor1X.reset();
    r = DisplayCursorData(in);
    EXPECT_EQ(r.lblCVoltage, "1.00 V");
    EXPECT_FALSE(r.lblCTime.has_value());
    EXPECT_FALSE(r.lblCFrequency.has_value());
}

TEST(CursorReadouts, UnknownTimeUnitLeavesTheTimeButGivesTheFrequency) {
    CursorInputs in = bothPairs();
    in.intTimeUnit = 3;
    const auto r = DisplayCursorData(in);
    EXPECT_FALSE(r.lblCTime.has_value());
    EXPECT_EQ(r.lblCFrequency, "1.000 KHz");
}

TEST(CursorReadouts, PeriodTooShortForAFrequencyLeavesTheFrequencyLabel) {
    // 1 / (1000 x dt) overflows for a distance this small; the time still reads zero.
    CursorInputs in = bothPairs();
    in.Cursor1X = 0.0;
    in.Cursor2X = 1e-302;
    in.lngDivPerSec = std::numeric_limits<std::int32_t>::max();
    const auto r = DisplayCursorData(in);
    EXPECT_EQ(r.lblCTime, "0.000 uSec");
    EXPECT_FALSE(r.lblCFrequency.has_value());
    EXPECT_FALSE(frequencyText(1e-320).has_value());
}

TEST(CursorReadouts, NonFiniteCursorPositionLeavesTheLabels) {
    CursorInputs in = bothPairs();
    in.Cursor3Y = std::numeric_limits<double>::infinity();
    in.Cursor2X = std::numeric_limits<double>::quiet_NaN();
    const auto r = DisplayCursorData(in);
    EXPECT_FALSE(r.lblCVoltage.has_value());
    EXPECT_FALSE(r.lblCTime.has_value());
    EXPECT_FALSE(r.lblCFrequency.has_value());
}
