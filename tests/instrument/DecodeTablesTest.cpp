// Tests of the hardware-state decode tables.
#include "instrument/DecodeTables.h"

#include <bit>
#include <cstdint>
#include <gtest/gtest.h>

using namespace zorvik;

TEST(DecodeTables, RangeVoltsPerCountHasTheExactSinglePrecisionBitPatterns) {
    EXPECT_EQ(std::bit_cast<std::uint32_t>(*rangeVoltsPerCount(0x00)), 0x3C82081Du);
    EXPECT_EQ(std::bit_cast<std::uint32_t>(*rangeVoltsPerCount(0x04)), 0x3E228A25u);
    EXPECT_EQ(std::bit_cast<std::uint32_t>(*rangeVoltsPerCount(0x08)), 0x3FCB2CAEu);
}

TEST(DecodeTables, RangeIgnoresBitsOutsideMask) {
    EXPECT_EQ(rangeVoltsPerCount(0xF3 & ~0x0C), kVoltsPerCount1V);
    EXPECT_EQ(rangeVoltsPerCount(0x04 | 0x33), kVoltsPerCount10V);
    EXPECT_EQ(rangePosition(0x08 | 0x30), 1);
    EXPECT_EQ(rangePosition(0x04), 2);
    EXPECT_EQ(rangePosition(0x00), 3);
}

TEST(DecodeTables, RangeBits0x0CLeaveVoltsPerCountAndPositionUnchanged) {
    EXPECT_FALSE(rangeVoltsPerCount(0x0C).has_value());
    EXPECT_FALSE(rangePosition(0x0C).has_value());
    EXPECT_FALSE(rangePosition(0xFF).has_value());
}

TEST(DecodeTables, CouplingPositions) {
    EXPECT_EQ(couplingPosition(0x00), 1);
    EXPECT_EQ(couplingPosition(0x10), 2);
    EXPECT_EQ(couplingPosition(0x20), 3);
    EXPECT_EQ(couplingPosition(0x2C), 3);
}

TEST(DecodeTables, CouplingBits0x30LeaveIndicatorUnchanged) {
    EXPECT_FALSE(couplingPosition(0x30).has_value());
    EXPECT_FALSE(couplingPosition(0xFF).has_value());
}

TEST(DecodeTables, TimeBaseTableHasAllElevenRows) {
    const struct {
        std::uint8_t code;
        float interval;
        const char* text;
    } rows[] = {
        {0, 5e-8f, "20Ms/s"},  {1, 1e-7f, "10Ms/s"},  {2, 5e-7f, "2Ms/s"},   {3, 1e-6f, "1Ms/s"},
        {4, 5e-6f, "200Ks/s"}, {5, 1e-5f, "100Ks/s"}, {6, 5e-5f, "20Ks/s"},  {7, 1e-4f, "10Ks/s"},
        {8, 5e-4f, "2Ks/s"},   {9, 1e-3f, "1Ks/s"},   {10, 2e-3f, "500s/s"},
    };
    for (const auto& row : rows) {
        auto tb = timeBase(row.code);
        ASSERT_TRUE(tb.has_value()) << int(row.code);
        EXPECT_EQ(tb->sngSampleInterval, row.interval) << int(row.code);
        EXPECT_EQ(tb->strSampleRate, row.text) << int(row.code);
    }
}

TEST(DecodeTables, TimeBaseCodeAbove10LeavesIntervalAndTextUnchanged) {
    EXPECT_FALSE(timeBase(11).has_value());
    EXPECT_FALSE(timeBase(255).has_value());
}

TEST(DecodeTables, TriggerModeMaskedWith0x7D) {
    EXPECT_EQ(triggerPosition(0), 1);
    EXPECT_EQ(triggerPosition(64), 2);
    EXPECT_EQ(triggerPosition(65), 2);
    EXPECT_EQ(triggerPosition(32), 3);
    EXPECT_EQ(triggerPosition(33), 3);
    EXPECT_EQ(triggerPosition(16), 4);
    EXPECT_EQ(triggerPosition(17), 4);
    EXPECT_EQ(triggerPosition(8), 5);
    EXPECT_EQ(triggerPosition(9), 5);
}

TEST(DecodeTables, TriggerModeValue2MasksTo0AndShowsFR) {
    EXPECT_EQ(triggerPosition(2), 1);
    EXPECT_EQ(kTriggerLabels[*triggerPosition(2) - 1], "FR");
}

TEST(DecodeTables, TriggerMode1Or3MasksTo1AndLeavesIndicatorUnchanged) {
    EXPECT_FALSE(triggerPosition(1).has_value());
    EXPECT_FALSE(triggerPosition(3).has_value());
}

TEST(DecodeTables, TriggerDef0xC0MasksTo0x40AndShowsINPlus) {
    EXPECT_EQ(triggerPosition(0xC0), 2);
    EXPECT_EQ(kTriggerLabels[*triggerPosition(0xC0) - 1], "IN+");
}

TEST(DecodeTables, TriggerLevelByRange) {
    const std::uint8_t codes[] = {0, 4, 8, 16, 32, 64};
    const float r0[] = {-0.25f, 0.25f, 0.15f, 0.05f, -0.05f, -0.15f};
    const float r4[] = {-2.5f, 2.5f, 1.5f, 0.5f, -0.5f, -1.5f};
    const float r8[] = {-25.f, 25.f, 15.f, 5.f, -5.f, -15.f};
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ(triggerLevel(0x00, codes[i]), r0[i]);
        EXPECT_EQ(triggerLevel(0x04, codes[i]), r4[i]);
        EXPECT_EQ(triggerLevel(0x08, codes[i]), r8[i]);
    }
}

TEST(DecodeTables, TriggerLevelUnknownCodeLeavesLevelUnchanged) {
    EXPECT_FALSE(triggerLevel(0x00, 2).has_value());
    EXPECT_FALSE(triggerLevel(0x04, 12).has_value());
    EXPECT_FALSE(triggerLevel(0x08, 128).has_value());
}

TEST(DecodeTables, TriggerLevelInRange0x0CIsUnchanged) {
    EXPECT_FALSE(triggerLevel(0x0C, 4).has_value());
}
