// Tests of the V-SCALE and H-SCALE tables.
#include "display/ScaleTables.h"

#include <gtest/gtest.h>

using namespace zorvik;

TEST(ScaleTables, VScalePositionsGiveDivisionsPerVolt) {
    EXPECT_EQ(chaGainForPosition(1), 0.05f);
    EXPECT_EQ(chaGainForPosition(2), 0.1f);
    EXPECT_EQ(chaGainForPosition(3), 0.2f);
    EXPECT_EQ(chaGainForPosition(4), 0.5f);
    EXPECT_EQ(chaGainForPosition(5), 1.0f);
    EXPECT_EQ(chaGainForPosition(6), 2.0f);
    EXPECT_EQ(chaGainForPosition(7), 5.0f);
}

TEST(ScaleTables, VScalePositionOutsideTheKnobLeavesTheGain) {
    EXPECT_FALSE(chaGainForPosition(0).has_value());
    EXPECT_FALSE(chaGainForPosition(8).has_value());
    EXPECT_FALSE(chaGainForPosition(-1).has_value());
}

TEST(ScaleTables, HScaleHasAllSeventeenRows) {
    const TimeScale expected[] = {
        {5000000, 0}, {2000000, 0}, {1000000, 1}, {500000, 1}, {200000, 1}, {100000, 1},
        {50000, 1},   {20000, 1},   {10000, 1},   {5000, 1},   {2000, 1},   {1000, 2},
        {500, 2},     {200, 2},     {100, 2},     {50, 2},     {20, 2},
    };
    for (int p = 1; p <= 17; ++p)
        EXPECT_EQ(timeScaleForPosition(p), expected[p - 1]) << "position " << p;
}

TEST(ScaleTables, HScaleRow17BeyondTheKnobIsKept) {
    EXPECT_EQ(timeScaleForPosition(17), (TimeScale{20, 2}));
}

TEST(ScaleTables, HScalePositionOutside1To17LeavesTheScale) {
    EXPECT_FALSE(timeScaleForPosition(0).has_value());
    EXPECT_FALSE(timeScaleForPosition(18).has_value());
    EXPECT_FALSE(timeScaleForPosition(-5).has_value());
}
