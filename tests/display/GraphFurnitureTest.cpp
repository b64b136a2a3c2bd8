// Tests of the side-scale pointers and the horizontal window.
#include "display/GraphFurniture.h"

#include "display/ChartA.h"

#include <gtest/gtest.h>

using namespace zorvik;

TEST(ShowTrigLevel, TrigLvlIsLevelTimesGainPlusOffset) {
    const auto p = ShowTrigLevel(1.5f, 2.0f, 0.5f, false, 0.5);
    EXPECT_EQ(p.TrigLvl, 3.5);
    EXPECT_EQ(p.CHa_Zero, 0.5);
}

TEST(ShowTrigLevel, TrigLvlIsWorkedOutInDoublePrecision) {
    const auto p = ShowTrigLevel(0.15f, 0.2f, 0.3f, false, 0.3);
    EXPECT_EQ(p.TrigLvl,
              static_cast<double>(0.15f) * static_cast<double>(0.2f) + static_cast<double>(0.3f));
}

TEST(ShowTrigLevel, InvertFlipsTrigLvlAboutTheOffsetButNotChaZero) {
    const auto upright = ShowTrigLevel(-2.5f, 0.5f, 1.0f, false, 1.0);
    const auto inverted = ShowTrigLevel(-2.5f, 0.5f, 1.0f, true, 1.0);
    EXPECT_EQ(upright.TrigLvl, -0.25);
    EXPECT_EQ(inverted.TrigLvl, 2.25);
    EXPECT_EQ(upright.CHa_Zero, 1.0);
    EXPECT_EQ(inverted.CHa_Zero, 1.0);
}

TEST(ShowTrigLevel, OffsetMovesTrigLvlAndChaZeroTogether) {
    const auto low = ShowTrigLevel(5.0f, 0.2f, -3.0f, false, -3.0);
    const auto high = ShowTrigLevel(5.0f, 0.2f, 2.0f, false, 2.0);
    EXPECT_DOUBLE_EQ(high.TrigLvl - low.TrigLvl, 5.0);
    EXPECT_EQ(high.CHa_Zero - low.CHa_Zero, 5.0);
}

TEST(ShowTrigLevel, TrigLvlSitsWhereATracePointAtTheTriggerLevelIs) {
    TraceArray volts{};
    volts.fill(-1.5f);
    ChartInputs in;
    in.blnLiveData = true;
    in.CWBChaInv = true;
    in.sngChaGain = 0.5f;
    in.sngChaOffset = 0.25f;
    const auto r = ChartA(in, volts, volts);
    const auto p = ShowTrigLevel(-1.5f, 0.5f, 0.25f, true, 0.25);
    EXPECT_EQ(static_cast<double>(r.CHa.y[0]), p.TrigLvl);
}

TEST(SetXAxis, MaximumFollowsTheMinimumAsTheAxisReportsIt) {
    EXPECT_EQ(xAxisMaximum(21.0), 31.0);
    EXPECT_EQ(xAxisMaximum(-10.0), 0.0);
}
