// Tests of where the virtual probe's trigger starts a frame, and of its waiting markers.
#include "probe/FrameGenerator.h"

#include <gtest/gtest.h>

using namespace zorvik;

namespace {

ProbeSettings triggered(std::uint8_t trigger, double amplitude = 1.0, double offset = 0.0) {
    ProbeSettings s;
    s.signal.amplitude = amplitude;
    s.signal.offset = offset;
    s.trigger = trigger;
    return s;
}

const std::vector<std::uint8_t> kMarker = {0x7D, 0x7D};

} // namespace

TEST(ProbeTrigger, RisingTriggerStartsEveryFrameAtTheLevelCrossing) {
    // Default set-up: 1 V sine, IN+ at 0.5 V; the crossing is at phase 1/12 (30 degrees).
    FrameGenerator generator{ProbeSettings{}};
    const auto first = generator.nextSamples().value();
    EXPECT_EQ(first[0], 34);  // 0.5 V, 3.15 counts
    EXPECT_EQ(first[1], 36);  // sin(48 deg) = 0.743 V, 4.68 counts
    EXPECT_EQ(first[5], 36);  // sin(120 deg) = 0.866 V, 5.46 counts
    EXPECT_EQ(first[10], 28); // -0.5 V
    EXPECT_EQ(first[15], 26); // sin(300 deg)
    const double t0 = generator.frameStart();
    const Waveform& wave = generator.waveform();
    EXPECT_LT(wave.valueAt(t0 - 1e-7), 0.5);
    EXPECT_GE(wave.valueAt(t0 + 1e-9), 0.5 - 1e-6);
    EXPECT_LT(wave.valueAt(t0 - 1e-7), wave.valueAt(t0 + 1e-7));
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(generator.nextSamples().value(), first) << "frame " << i + 2;
}

TEST(ProbeTrigger, FallingTriggerStartsAtTheFallingCrossing) {
    FrameGenerator generator(triggered(0x20));
    const auto samples = generator.nextSamples().value();
    EXPECT_EQ(samples[0], 34); // phase 5/12: 0.5 V
    EXPECT_EQ(samples[1], 32); // sin(168 deg) = 0.208 V
    EXPECT_EQ(samples[5], 26); // sin(240 deg)
    const Waveform& wave = generator.waveform();
    EXPECT_GT(wave.valueAt(generator.frameStart() - 1e-7), 0.5);
    EXPECT_GT(wave.valueAt(generator.frameStart() - 1e-7),
              wave.valueAt(generator.frameStart() + 1e-7));
}

TEST(ProbeTrigger, TriggerBit0DoesNotChangeTheMode) {
    FrameGenerator plain(triggered(0x40)), withBit0(triggered(0x41));
    EXPECT_EQ(plain.nextSamples(), withBit0.nextSamples());
    EXPECT_EQ(withBit0.next()[3], 0x41);
}

TEST(ProbeTrigger, NegativeLevelTriggersOnTheLowerHalf) {
    auto s = triggered(0x40);
    s.level = 64; // -1.5 V on the 10 V range
    s.signal.amplitude = 2.0;
    const auto samples = FrameGenerator(s).nextSamples().value();
    EXPECT_EQ(samples[0], 22); // -1.5 V, -9.45 counts
    EXPECT_LT(samples[0], samples[1]);
}

TEST(ProbeTrigger, SquareTriggersOnItsEdges) {
    auto s = triggered(0x40);
    s.signal.shape = Shape::Square;
    auto samples = FrameGenerator(s).nextSamples().value();
    EXPECT_EQ(samples[0], 37);
    EXPECT_EQ(samples[9], 37);
    EXPECT_EQ(samples[11], 25);
    s.trigger = 0x20;
    samples = FrameGenerator(s).nextSamples().value();
    EXPECT_EQ(samples[1], 25);
    EXPECT_EQ(samples[9], 25);
    EXPECT_EQ(samples[11], 37);
}

TEST(ProbeTrigger, TriangleTriggersAtTheLevel) {
    auto s = triggered(0x40);
    s.signal.shape = Shape::Triangle;
    const auto samples = FrameGenerator(s).nextSamples().value();
    EXPECT_EQ(samples[0], 34); // 0.5 V
    EXPECT_EQ(samples[1], 35); // 0.7 V, 4.41 counts
    EXPECT_EQ(samples[2], 37); // 0.9 V, 5.67 counts
}

TEST(ProbeTrigger, SignalThatNeverReachesTheLevelGivesAWaitingMarkerForEveryFrame) {
    FrameGenerator generator(triggered(0x40, 0.3));
    for (int i = 0; i < 3; ++i) {
        EXPECT_FALSE(generator.nextSamples().has_value());
        EXPECT_EQ(generator.next(), kMarker);
    }
}

TEST(ProbeTrigger, LevelTouchedOnlyAtThePeakDoesNotTrigger) {
    EXPECT_EQ(FrameGenerator(triggered(0x40, 0.5)).next(), kMarker);
    EXPECT_EQ(FrameGenerator(triggered(0x20, 0.5)).next(), kMarker);
}

TEST(ProbeTrigger, OffsetCanLiftTheSignalAboveTheLevel) {
    // 1 V sine on 2 V: 1..3 V never passes 0.5 V with DC coupling; with AC coupling it does.
    auto s = triggered(0x40, 1.0, 2.0);
    EXPECT_EQ(FrameGenerator(s).next(), kMarker);
    s.coupling = Coupling::Ac;
    const auto samples = FrameGenerator(s).nextSamples().value();
    EXPECT_EQ(samples[0], 34);
    EXPECT_EQ(samples[5], 36);
}

TEST(ProbeTrigger, DcAndGroundedInputsNeverTriggerInternally) {
    auto s = triggered(0x40, 1.0, 2.0);
    s.signal.shape = Shape::Dc;
    EXPECT_EQ(FrameGenerator(s).next(), kMarker);
    s = triggered(0x40);
    s.coupling = Coupling::Gnd;
    EXPECT_EQ(FrameGenerator(s).next(), kMarker);
}

TEST(ProbeTrigger, ExternalTriggerStartsFramesAtPhaseZero) {
    for (const std::uint8_t mode : {0x10, 0x08}) {
        FrameGenerator generator(triggered(mode));
        const auto first = generator.nextSamples().value();
        EXPECT_EQ(first[0], 31) << int(mode);
        EXPECT_EQ(first[5], 37) << int(mode);
        EXPECT_EQ(first[15], 25) << int(mode);
        EXPECT_EQ(generator.nextSamples().value(), first) << int(mode);
    }
}

TEST(ProbeTrigger, ExternalTriggerNeverWaits) {
    auto s = triggered(0x10, 0.3);
    s.coupling = Coupling::Gnd;
    const auto bytes = FrameGenerator(s).next();
    EXPECT_EQ(bytes.size(), 139u);
}

TEST(ProbeTrigger, ByteThatNamesNoModeRunsFree) {
    FrameGenerator generator(triggered(0x01));
    EXPECT_EQ(generator.nextSamples().value()[0], 31);
    EXPECT_EQ(generator.nextSamples().value()[0], 25); // time ran on, as in free run
    EXPECT_EQ(generator.next()[3], 0x01);
}

TEST(ProbeTrigger, UnknownLevelCodeTriggersAtZeroVolts) {
    auto s = triggered(0x40);
    s.level = 2;
    FrameGenerator generator(s);
    const auto samples = generator.nextSamples().value();
    EXPECT_EQ(samples[0], 31);
    EXPECT_EQ(samples[5], 37);
    EXPECT_EQ(generator.next()[4], 2);
}

TEST(ProbeTrigger, NoiseTriggersOnASampleAtOrAboveTheLevel) {
    auto s = triggered(0x40);
    s.signal.shape = Shape::Noise;
    FrameGenerator generator(s, 3);
    for (int i = 0; i < 20; ++i)
        EXPECT_GE(generator.nextSamples().value()[0], 34) << i;
    s.trigger = 0x20;
    FrameGenerator falling(s, 3);
    for (int i = 0; i < 20; ++i)
        EXPECT_LE(falling.nextSamples().value()[0], 34) << i;
}

TEST(ProbeTrigger, NoiseBelowTheLevelWaits) {
    auto s = triggered(0x40, 0.4);
    s.signal.shape = Shape::Noise;
    EXPECT_EQ(FrameGenerator(s).next(), kMarker);
}
