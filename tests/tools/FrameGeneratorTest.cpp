// Tests of the virtual probe's frame bytes, sample counts, coupling and voltmeter bytes.
#include "probe/FrameGenerator.h"
#include "instrument/DecodeTables.h"
#include "probe/ProbeStream.h"

#include <algorithm>
#include <gtest/gtest.h>

using namespace zorvik;

namespace {

ProbeSettings freeRun(Shape shape, double amplitude, double offset) {
    ProbeSettings s;
    s.signal = {shape, 1000.0, amplitude, offset};
    s.trigger = 0x00;
    return s;
}

RawSamples firstSamples(const ProbeSettings& settings) {
    FrameGenerator generator(settings);
    return generator.nextSamples().value();
}

} // namespace

TEST(FrameGenerator, FrameHasSyncSettingsSamplesReservedAndVoltmeterBytesAtTheirOffsets) {
    const HardwareState state{0x24, 6, 0x40, 16, 1, 2, 3, 0x85};
    RawSamples samples{};
    for (std::size_t i = 0; i < samples.size(); ++i)
        samples[i] = static_cast<std::uint8_t>(i % 63);
    const auto frame = buildFrame(state, samples);
    ASSERT_EQ(frame.size(), 139u);
    EXPECT_EQ(frame[0], 0x7D);
    EXPECT_EQ(frame[1], 0x24);
    EXPECT_EQ(frame[2], 6);
    EXPECT_EQ(frame[3], 0x40);
    EXPECT_EQ(frame[4], 16);
    for (std::size_t i = 0; i < 128; ++i)
        EXPECT_EQ(frame[5 + i], i % 63) << i;
    EXPECT_EQ(frame[133], kReservedByte);
    EXPECT_EQ(frame[134], 1);
    EXPECT_EQ(frame[135], 2);
    EXPECT_EQ(frame[136], 3);
    EXPECT_EQ(frame[137], 0x85);
    EXPECT_EQ(frame[138], kReservedByte);
}

TEST(FrameGenerator, DefaultsAreTheDemoSetUp) {
    const ProbeSettings s;
    EXPECT_EQ(s.signal.shape, Shape::Sine);
    EXPECT_EQ(s.signal.frequency, 1000.0);
    EXPECT_EQ(s.signal.amplitude, 1.0);
    EXPECT_EQ(s.signal.offset, 0.0);
    EXPECT_EQ(s.switchSetting(), 0x24);
    EXPECT_EQ(s.voltsPerCount(), 0.1587301f);
    EXPECT_EQ(s.sampleInterval(), 5e-5f);
    EXPECT_EQ(s.triggerMode(), TriggerMode::InternalRising);
    EXPECT_EQ(s.triggerVolts(), 0.5f);

    const auto bytes = FrameGenerator(s).next();
    ASSERT_EQ(bytes.size(), 139u);
    EXPECT_EQ(bytes[0], 0x7D);
    EXPECT_EQ(bytes[1], 0x24);
    EXPECT_EQ(bytes[2], 6);
    EXPECT_EQ(bytes[3], 0x40);
    EXPECT_EQ(bytes[4], 16);
}

TEST(FrameGenerator, SettingsBytesAreSentAsTheyStand) {
    ProbeSettings s;
    s.range = 0x08;
    s.coupling = Coupling::Ac;
    s.timebase = 10;
    s.trigger = 0xC0;
    s.level = 64; // -15 V on the 100 V range
    s.signal.amplitude = 20.0;
    const auto bytes = FrameGenerator(s).next();
    ASSERT_EQ(bytes.size(), 139u);
    EXPECT_EQ(bytes[1], 0x18);
    EXPECT_EQ(bytes[2], 10);
    EXPECT_EQ(bytes[3], 0xC0);
    EXPECT_EQ(bytes[4], 64);
}

TEST(FrameGenerator, SwitchByteCarriesRangeAndCouplingBits) {
    ProbeSettings s;
    s.range = 0x00;
    s.coupling = Coupling::Gnd;
    EXPECT_EQ(s.switchSetting(), 0x00);
    s.coupling = Coupling::Ac;
    EXPECT_EQ(s.switchSetting(), 0x10);
    s.range = 0x08;
    s.coupling = Coupling::Dc;
    EXPECT_EQ(s.switchSetting(), 0x28);
}

TEST(FrameGenerator, Count31IsZeroVolts) {
    EXPECT_EQ(voltsToCount(0.0, kVoltsPerCount1V), 31);
    EXPECT_EQ(voltsToCount(0.0, kVoltsPerCount10V), 31);
    EXPECT_EQ(voltsToCount(0.0, kVoltsPerCount100V), 31);
    RawSamples all31;
    all31.fill(31);
    EXPECT_EQ(firstSamples(freeRun(Shape::Dc, 1.0, 0.0)), all31);
}

TEST(FrameGenerator, CountIsRoundedVoltsPerCountPlus31) {
    EXPECT_EQ(voltsToCount(1.0, kVoltsPerCount10V), 37);    // 6.30 counts
    EXPECT_EQ(voltsToCount(0.5, kVoltsPerCount10V), 34);    // 3.15
    EXPECT_EQ(voltsToCount(-0.3, kVoltsPerCount10V), 29);   // -1.89
    EXPECT_EQ(voltsToCount(0.25, kVoltsPerCount1V), 47);    // 15.75
    EXPECT_EQ(voltsToCount(-20.0, kVoltsPerCount100V), 18); // -12.6
}

TEST(FrameGenerator, CountsClipAt0And62) {
    EXPECT_EQ(voltsToCount(31 * 0.1587301, kVoltsPerCount10V), 62);
    EXPECT_EQ(voltsToCount(-31 * 0.1587301, kVoltsPerCount10V), 0);
    EXPECT_EQ(voltsToCount(5.0, kVoltsPerCount10V), 62);
    EXPECT_EQ(voltsToCount(-5.0, kVoltsPerCount10V), 0);
    EXPECT_EQ(voltsToCount(1e12, kVoltsPerCount1V), 62);
    EXPECT_EQ(voltsToCount(-1e12, kVoltsPerCount1V), 0);

    ProbeSettings s = freeRun(Shape::Sine, 10.0, 0.0);
    s.range = 0x00;
    const auto samples = firstSamples(s);
    EXPECT_EQ(*std::max_element(samples.begin(), samples.end()), 62);
    EXPECT_EQ(*std::min_element(samples.begin(), samples.end()), 0);
}

TEST(FrameGenerator, DcLevelGivesItsCountInEverySample) {
    auto s = freeRun(Shape::Dc, 0.0, 1.0);
    auto samples = firstSamples(s);
    EXPECT_TRUE(std::all_of(samples.begin(), samples.end(), [](auto c) { return c == 37; }));

    s = freeRun(Shape::Dc, 0.0, 0.25);
    s.range = 0x00;
    samples = firstSamples(s);
    EXPECT_TRUE(std::all_of(samples.begin(), samples.end(), [](auto c) { return c == 47; }));
}

TEST(FrameGenerator, DcSignalIgnoresAmplitude) {
    const auto samples = firstSamples(freeRun(Shape::Dc, 3.0, -0.3));
    EXPECT_TRUE(std::all_of(samples.begin(), samples.end(), [](auto c) { return c == 29; }));
}

TEST(FrameGenerator, FreeRunSineStartsAtPhaseZero) {
    // 1000 Hz at 20Ks/s: 20 samples per period.
    const auto samples = firstSamples(freeRun(Shape::Sine, 1.0, 0.0));
    EXPECT_EQ(samples[0], 31);
    EXPECT_EQ(samples[5], 37);  // +1 V
    EXPECT_EQ(samples[15], 25); // -1 V
    EXPECT_EQ(samples[2], 35);  // sin(36 deg) = 0.588 V, 3.70 counts
    EXPECT_EQ(samples[25], 37);
}

TEST(FrameGenerator, FreeRunTimeRunsOnBetweenFrames) {
    FrameGenerator generator(freeRun(Shape::Sine, 1.0, 0.0));
    generator.nextSamples();
    const auto second = generator.nextSamples().value();
    // The second frame starts 128 samples + 139 bytes at 1920 bytes/s later:
    // 78.7958 ms = 78.7958 periods, phase 0.7958: sin = -0.9588 V, -6.04 counts.
    EXPECT_NEAR(generator.frameStart(), 0.0007958333, 1e-9);
    EXPECT_EQ(second[0], 25);
}

TEST(FrameGenerator, TimeBaseSetsTheSampleSpacing) {
    auto s = freeRun(Shape::Sine, 1.0, 0.0);
    s.signal.frequency = 100.0;
    s.timebase = 9; // 1 ms per sample: 10 samples per period
    const auto samples = firstSamples(s);
    EXPECT_EQ(samples[1], 35);
    EXPECT_EQ(samples[2], 37); // sin(72 deg) = 0.951 V, 5.99 counts
    EXPECT_EQ(samples[5], 31);
    EXPECT_EQ(samples[7], 25);
}

TEST(FrameGenerator, SquareIsHighForTheFirstHalfPeriod) {
    const auto samples = firstSamples(freeRun(Shape::Square, 1.0, 0.0));
    for (int i = 1; i < 10; ++i)
        EXPECT_EQ(samples[i], 37) << i;
    for (int i = 11; i < 20; ++i)
        EXPECT_EQ(samples[i], 25) << i;
}

TEST(FrameGenerator, TriangleRisesFromTheCentre) {
    const auto samples = firstSamples(freeRun(Shape::Triangle, 1.0, 0.0));
    EXPECT_EQ(samples[0], 31);
    EXPECT_EQ(samples[2], 34); // 0.4 V, 2.52 counts
    EXPECT_EQ(samples[5], 37);
    EXPECT_EQ(samples[10], 31);
    EXPECT_EQ(samples[15], 25);
}

TEST(FrameGenerator, GndCouplingGivesCount31Everywhere) {
    auto s = freeRun(Shape::Sine, 5.0, 2.0);
    s.coupling = Coupling::Gnd;
    const auto samples = firstSamples(s);
    EXPECT_TRUE(std::all_of(samples.begin(), samples.end(), [](auto c) { return c == 31; }));
    EXPECT_EQ(s.switchSetting(), 0x04);
}

TEST(FrameGenerator, AcCouplingRemovesTheOffset) {
    auto s = freeRun(Shape::Sine, 1.0, 2.0);
    auto samples = firstSamples(s);
    EXPECT_EQ(samples[0], 44); // 2 V, 12.6 counts
    EXPECT_EQ(samples[5], 50); // 3 V, 18.9 counts
    s.coupling = Coupling::Ac;
    samples = firstSamples(s);
    EXPECT_EQ(samples[0], 31);
    EXPECT_EQ(samples[5], 37);
    EXPECT_EQ(samples[15], 25);
}

TEST(FrameGenerator, AcCouplingTakesADcSignalToZero) {
    auto s = freeRun(Shape::Dc, 0.0, 2.0);
    s.coupling = Coupling::Ac;
    const auto samples = firstSamples(s);
    EXPECT_TRUE(std::all_of(samples.begin(), samples.end(), [](auto c) { return c == 31; }));
}

TEST(FrameGenerator, NoiseIsDeterministicForASeedAndWithinItsAmplitude) {
    const auto s = freeRun(Shape::Noise, 1.0, 0.0);
    FrameGenerator a(s, 7), b(s, 7), c(s, 8);
    const auto first = a.nextSamples().value();
    EXPECT_EQ(first, b.nextSamples().value());
    EXPECT_NE(first, c.nextSamples().value());
    EXPECT_NE(first, a.nextSamples().value());
    for (const auto count : first) {
        EXPECT_GE(count, 25);
        EXPECT_LE(count, 37);
    }
    EXPECT_GT(std::count_if(first.begin(), first.end(), [&](auto v) { return v != first[0]; }), 64);
}

TEST(FrameGenerator, VoltmeterShowsTheMeanWithTheResolutionOfTheRange) {
    EXPECT_EQ(voltmeterBytes(0.0, 0x04), (std::array<std::uint8_t, 4>{'0', '0', '0', 0x44}));
    EXPECT_EQ(voltmeterBytes(-2.37, 0x04), (std::array<std::uint8_t, 4>{'0', '2', '4', 0x45}));
    EXPECT_EQ(voltmeterBytes(0.25, 0x00), (std::array<std::uint8_t, 4>{'0', '2', '5', 0x42}));
    EXPECT_EQ(voltmeterBytes(123.4, 0x08), (std::array<std::uint8_t, 4>{'1', '2', '3', 0x40}));
    EXPECT_EQ(voltmeterBytes(-0.004, 0x00), (std::array<std::uint8_t, 4>{'0', '0', '0', 0x42}));
}

TEST(FrameGenerator, VoltmeterOverRangeShowsNines) {
    EXPECT_EQ(voltmeterBytes(12.0, 0x00), (std::array<std::uint8_t, 4>{'9', '9', '9', 0xC2}));
    EXPECT_EQ(voltmeterBytes(-1500.0, 0x08), (std::array<std::uint8_t, 4>{'9', '9', '9', 0xC1}));
}

TEST(FrameGenerator, FrameCarriesTheVoltmeterReadingOfTheCoupledInput) {
    auto s = freeRun(Shape::Sine, 1.0, -2.37);
    auto bytes = FrameGenerator(s).next();
    EXPECT_EQ(std::vector<std::uint8_t>(bytes.begin() + 134, bytes.begin() + 138),
              (std::vector<std::uint8_t>{'0', '2', '4', 0x45}));
    s.coupling = Coupling::Ac;
    bytes = FrameGenerator(s).next();
    EXPECT_EQ(std::vector<std::uint8_t>(bytes.begin() + 134, bytes.begin() + 138),
              (std::vector<std::uint8_t>{'0', '0', '0', 0x44}));
}

TEST(FrameGenerator, VoltmeterBytesCanBeGivenAsTheyStand) {
    auto s = freeRun(Shape::Sine, 1.0, 0.0);
    s.dvm = std::array<std::uint8_t, 4>{0x12, 0x34, 0x56, 0x78};
    const auto bytes = FrameGenerator(s).next();
    EXPECT_EQ(bytes[134], 0x12);
    EXPECT_EQ(bytes[135], 0x34);
    EXPECT_EQ(bytes[136], 0x56);
    EXPECT_EQ(bytes[137], 0x78);
}

TEST(FrameGenerator, ReadyMadeStreamHasFramesAndWaitingMarkersBetweenThem) {
    const ProbeSettings s;
    const auto bytes = makeProbeBytes(s, 3, 2);
    ASSERT_EQ(bytes.size(), 3 * 139u + 2 * 2 * 2u);
    const auto frame = FrameGenerator(s).next();
    EXPECT_TRUE(std::equal(frame.begin(), frame.end(), bytes.begin()));
    for (std::size_t i = 139; i < 143; ++i)
        EXPECT_EQ(bytes[i], 0x7D) << i;
    EXPECT_EQ(bytes[143], 0x7D);
    EXPECT_EQ(bytes[144], 0x24);
    EXPECT_EQ(bytes[143 + 139], 0x7D);
    EXPECT_EQ(bytes[143 + 139 + 4], 0x7D);
    EXPECT_EQ(bytes[143 + 139 + 5], 0x24);
}
