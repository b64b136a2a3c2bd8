// The demonstration tour of zorvik --demo: every frame period of a whole tour gives a trace
// that, at the front panel's start-up positions (1 us/div, 20 V/div), spans most of the graph's
// width and at least two divisions of its height, and the tour shows every shape, both trigger
// kinds, waiting markers and both couplings.
#include "probe/DemoTour.h"
#include "display/ScaleTables.h"
#include "instrument/DecodeTables.h"
#include "probe/FrameGenerator.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

using namespace zorvik;

namespace {

constexpr double kStartUpDivPerSecond = 1000000.0; // H-SCALE position 3, 1 us/div
constexpr double kStartUpDivPerVolt = 0.05;        // V-SCALE position 1, 20 V/div

TEST(DemoTour, EveryFrameOfTheTourFillsMostOfTheGraphAtTheStartUpPositions) {
    ProbeStream stream(demoSettings(0), demoStreamOptions());
    int frames = 0;
    int waiting = 0;
    std::set<Shape> shapes;
    std::set<std::uint8_t> triggers;
    std::set<Coupling> couplings;
    for (std::uint64_t period = 0; period < kDemoSteps * kDemoStepFrames; ++period) {
        const ProbeSettings s = demoSettings(period);
        shapes.insert(s.signal.shape);
        triggers.insert(s.trigger);
        couplings.insert(s.coupling);
        // What the probe sends for this period (the stream asks the tour for it).
        std::vector<std::uint8_t> bytes;
        while (bytes.size() < 2) {
            const auto chunk = stream.next();
            ASSERT_TRUE(chunk);
            bytes.insert(bytes.end(), chunk->bytes.begin(), chunk->bytes.end());
            if (chunk->endsFrame || bytes == std::vector<std::uint8_t>{0x7D, 0x7D})
                break;
        }
        if (bytes.size() == 2) {
            ++waiting;
            continue;
        }
        ASSERT_EQ(bytes.size(), kFrameBytes) << period;
        ++frames;
        // The frame names the fastest time base and the 100 V range.
        EXPECT_EQ(bytes[2], 0) << period;
        EXPECT_EQ(bytes[1] & 0x0C, 0x08) << period;
        const auto [low, high] = std::minmax_element(bytes.begin() + 5, bytes.begin() + 133);
        const double volts = (*high - *low) * static_cast<double>(*rangeVoltsPerCount(0x08));
        EXPECT_GE(volts * kStartUpDivPerVolt, 2.0) << "period " << period;
        // Within the graph's +-4 divisions.
        EXPECT_LE((*high - 31) * 1.587301 * kStartUpDivPerVolt, 4.0) << period;
        EXPECT_GE((*low - 31) * 1.587301 * kStartUpDivPerVolt, -4.0) << period;
    }
    // 128 samples at 20Ms/s: 6.4 of the 10 divisions.
    EXPECT_NEAR(128 * demoSettings(0).sampleInterval() * kStartUpDivPerSecond, 6.4, 1e-6);
    // Almost every period brings a trace; a few (the WAIT moment) bring waiting markers.
    EXPECT_GT(waiting, 0);
    EXPECT_LT(waiting, 20);
    EXPECT_EQ(frames + waiting, static_cast<int>(kDemoSteps * kDemoStepFrames));
    EXPECT_EQ(shapes, (std::set<Shape>{Shape::Sine, Shape::Square, Shape::Triangle}));
    EXPECT_TRUE(triggers.contains(0x00) && triggers.contains(0x40));
    EXPECT_EQ(couplings, (std::set<Coupling>{Coupling::Dc, Coupling::Ac}));
}

TEST(DemoTour, TheTourBeginsWithAStillSineAndStartsAgainAfterItsLastStep) {
    const ProbeSettings first = demoSettings(0);
    EXPECT_EQ(first.signal.shape, Shape::Sine);
    EXPECT_EQ(first.trigger, 0x40);
    EXPECT_EQ(first.timebase, 0);
    EXPECT_EQ(first.range, 0x08);
    EXPECT_EQ(demoSettings(kDemoSteps * kDemoStepFrames), first);
    // zorvik-probe's own defaults stay the 1 kHz, 1 V sine at 20Ks/s.
    const ProbeSettings plain;
    EXPECT_EQ(plain.signal.frequency, 1000.0);
    EXPECT_EQ(plain.timebase, 6);
}

} // namespace

namespace {

TEST(DemoTour, ARestartPlaysTheFirstStepAgainFromTheNextFramePeriod) {
    auto tour = std::make_shared<DemoTour>();
    StreamOptions options = DemoTour::streamOptions(tour);
    const std::uint64_t square = 2 * kDemoStepFrames;
    EXPECT_EQ(options.program(square).signal.shape, Shape::Square);
    tour->restart();
    EXPECT_EQ(options.program(square + 1), demoSettings(0));
    EXPECT_EQ(options.program(square + 2), demoSettings(1));
    EXPECT_EQ(options.program(square + 1 + 2 * kDemoStepFrames).signal.shape, Shape::Square);
}

} // namespace
