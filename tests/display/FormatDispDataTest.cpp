// Tests of the frame decoding: acquisition values, indicator positions, status text, volts.
#include "display/FormatDispData.h"

#include "instrument/DecodeTables.h"

#include <bit>
#include <cstdint>
#include <gtest/gtest.h>

using namespace zorvik;

namespace {

HardwareState frame(std::uint8_t sw, std::uint8_t timebase, std::uint8_t trigDef,
                    std::uint8_t trigLvl) {
    HardwareState s;
    s.bytSwitchSetting = sw;
    s.bytTimebaseDef = timebase;
    s.bytTriggerDef = trigDef;
    s.bytTriggerLvl = trigLvl;
    return s;
}

RawSamples filled(std::uint8_t count) {
    RawSamples raw;
    raw.fill(count);
    return raw;
}

/// Values as left by an earlier frame: 10 V range, level code 16, 1 Ms/s.
AcquisitionValues earlier() {
    return {kVoltsPerCount10V, 1e-6f, "1Ms/s", 0.5f};
}

} // namespace

TEST(FormatDispData, DecodesRangeLevelAndTimeBaseOfAFrame) {
    AcquisitionValues v;
    const auto r = FormatDispData(frame(0x08 | 0x20, 4, 64, 8), filled(31), v);
    EXPECT_EQ(v.sngVoltsPerCount, 1.587301f);
    EXPECT_EQ(v.sngTrigLevel, 15.0f);
    EXPECT_EQ(v.sngSampleInterval, 5e-6f);
    EXPECT_EQ(v.strSampleRate, "200Ks/s");
    EXPECT_EQ(r.CWSRange, 1);
    EXPECT_EQ(r.CWSCoupling, 3);
    EXPECT_EQ(r.CWSTrigger, 2);
    EXPECT_EQ(r.sbrSampleRate, "Sample Rate: 200Ks/s");
}

TEST(FormatDispData, TriggerLevelIsReadWithinTheRangeOfTheSameFrame) {
    AcquisitionValues v = earlier();
    FormatDispData(frame(0x00, 3, 0, 0), filled(31), v);
    EXPECT_EQ(v.sngTrigLevel, -0.25f);
    FormatDispData(frame(0x04, 3, 0, 64), filled(31), v);
    EXPECT_EQ(v.sngTrigLevel, -1.5f);
    FormatDispData(frame(0x08, 3, 0, 32), filled(31), v);
    EXPECT_EQ(v.sngTrigLevel, -5.0f);
}

TEST(FormatDispData, RangeBits12KeepVoltsPerCountAndTriggerLevel) {
    AcquisitionValues v = earlier();
    const auto r = FormatDispData(frame(0x0C | 0x10, 9, 0, 4), filled(41), v);
    EXPECT_EQ(v.sngVoltsPerCount, kVoltsPerCount10V);
    EXPECT_EQ(v.sngTrigLevel, 0.5f);
    EXPECT_FALSE(r.CWSRange.has_value());
    // The rest of the frame still applies, and the volts use the previous scale.
    EXPECT_EQ(v.strSampleRate, "1Ks/s");
    EXPECT_EQ(r.CWSCoupling, 2);
    EXPECT_EQ(r.sngChaVolts[0], 10.0f * kVoltsPerCount10V);
}

TEST(FormatDispData, UnknownTriggerLevelCodeKeepsTheLevel) {
    AcquisitionValues v = earlier();
    FormatDispData(frame(0x00, 3, 0, 2), filled(31), v);
    EXPECT_EQ(v.sngTrigLevel, 0.5f);
    EXPECT_EQ(v.sngVoltsPerCount, kVoltsPerCount1V);
}

TEST(FormatDispData, UnknownTimeBaseCodeKeepsIntervalAndRateText) {
    AcquisitionValues v = earlier();
    const auto r = FormatDispData(frame(0x04, 11, 0, 16), filled(31), v);
    EXPECT_EQ(v.sngSampleInterval, 1e-6f);
    EXPECT_EQ(v.strSampleRate, "1Ms/s");
    EXPECT_EQ(r.sbrSampleRate, "Sample Rate: 1Ms/s");
}

TEST(FormatDispData, StatusTextBeforeAnyKnownTimeBaseIsTheBareLabel) {
    AcquisitionValues v;
    const auto r = FormatDispData(frame(0x00, 200, 0, 0), filled(31), v);
    EXPECT_EQ(r.sbrSampleRate, "Sample Rate: ");
}

TEST(FormatDispData, CouplingBits48LeaveTheCouplingIndicator) {
    AcquisitionValues v;
    EXPECT_FALSE(FormatDispData(frame(0x30, 0, 0, 0), filled(31), v).CWSCoupling.has_value());
    EXPECT_EQ(FormatDispData(frame(0x00, 0, 0, 0), filled(31), v).CWSCoupling, 1);
}

TEST(FormatDispData, TriggerIndicatorFollowsMaskedTriggerDefinition) {
    AcquisitionValues v;
    const auto position = [&](std::uint8_t def) {
        return FormatDispData(frame(0x00, 0, def, 0), filled(31), v).CWSTrigger;
    };
    EXPECT_EQ(position(0), 1);
    EXPECT_EQ(position(2), 1);    // bit 1 ignored: "FR"
    EXPECT_EQ(position(0xC0), 2); // bit 7 ignored: "IN+"
    EXPECT_EQ(position(33), 3);
    EXPECT_EQ(position(17), 4);
    EXPECT_EQ(position(9), 5);
    EXPECT_FALSE(position(1).has_value());
    EXPECT_FALSE(position(3).has_value());
}

TEST(FormatDispData, Count31IsZeroVoltsAndCounts0And62AreMinusAndPlus31Counts) {
    for (std::uint8_t sw : {0x00, 0x04, 0x08}) {
        AcquisitionValues v;
        RawSamples raw = filled(31);
        raw[1] = 0;
        raw[2] = 62;
        const auto r = FormatDispData(frame(sw, 0, 0, 0), raw, v);
        EXPECT_EQ(r.sngChaVolts[0], 0.0f);
        EXPECT_EQ(r.sngChaVolts[1], -31.0f * v.sngVoltsPerCount);
        EXPECT_EQ(r.sngChaVolts[2], 31.0f * v.sngVoltsPerCount);
    }
}

TEST(FormatDispData, VoltsAreTheSinglePrecisionProductForEveryCountOfEveryRange) {
    // Every count of the probe's 6-bit samples (0..62) and the rest of the byte as well.
    const struct {
        std::uint8_t sw;
        std::uint32_t bits;
    } ranges[] = {{0x00, 0x3C82081Du}, {0x04, 0x3E228A25u}, {0x08, 0x3FCB2CAEu}};
    for (const auto& range : ranges) {
        const float perCount = std::bit_cast<float>(range.bits);
        for (int first = 0; first < 256; first += 128) {
            RawSamples raw;
            for (std::size_t i = 0; i < raw.size(); ++i)
                raw[i] = static_cast<std::uint8_t>(first + static_cast<int>(i));
            AcquisitionValues v;
            const auto r = FormatDispData(frame(range.sw, 0, 0, 0), raw, v);
            for (std::size_t i = 0; i < raw.size(); ++i) {
                volatile float counts = static_cast<float>(raw[i]) - 31.0f;
                const float expected = counts * perCount;
                EXPECT_EQ(std::bit_cast<std::uint32_t>(r.sngChaVolts[i]),
                          std::bit_cast<std::uint32_t>(expected))
                    << "count " << int(raw[i]) << " range " << int(range.sw);
            }
        }
    }
}

TEST(FormatDispData, VoltsOfCount62InThe1VRangeAreNotTheExactFraction) {
    AcquisitionValues v;
    const auto r = FormatDispData(frame(0x00, 0, 0, 0), filled(62), v);
    EXPECT_EQ(std::bit_cast<std::uint32_t>(r.sngChaVolts[0]), 0x3EFBEFB8u);
    EXPECT_EQ(std::bit_cast<std::uint32_t>(31.0f / 63.0f), 0x3EFBEFBFu);
}
