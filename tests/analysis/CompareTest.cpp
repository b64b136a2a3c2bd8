// Comparison with the reference: the band's half-width from volts and per cent of the
// reference's peak-to-peak, samples outside it marked and counted, the largest deviation with
// its sign and place, the RMS difference, interpolation between reference samples when the
// intervals differ, and the counts of passed and failed frames.
#include "analysis/Compare.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

using namespace zorvik;

namespace {

TraceArray sine(double amplitude, double cycles) {
    TraceArray v{};
    for (std::size_t i = 0; i < v.size(); ++i)
        v[i] = static_cast<float>(
            amplitude * std::sin(2.0 * std::numbers::pi * cycles * static_cast<double>(i) / 128.0));
    return v;
}

} // namespace

TEST(Compare, TheBandsHalfWidthAddsVoltsAndAShareOfTheReferencesPeakToPeak) {
    EXPECT_DOUBLE_EQ((ToleranceBand{0.5, 0.0}).halfWidth(4.0), 0.5);
    EXPECT_DOUBLE_EQ((ToleranceBand{0.0, 10.0}).halfWidth(4.0), 0.4);
    EXPECT_DOUBLE_EQ((ToleranceBand{0.5, 10.0}).halfWidth(4.0), 0.9);
    const TraceArray ref = sine(2.0, 3); // peak-to-peak a little under 4 V
    const auto r = compareWithReference(ref, 1e-6f, ref, 1e-6f, ToleranceBand{0.1, 5.0});
    ASSERT_TRUE(r.has_value());
    const auto [lo, hi] = std::minmax_element(ref.begin(), ref.end());
    EXPECT_DOUBLE_EQ(r->halfWidth, 0.1 + 0.05 * (static_cast<double>(*hi) - *lo));
}

TEST(Compare, AnExactCopyPassesEvenAZeroWidthBand) {
    const TraceArray ref = sine(1.0, 4);
    const auto r = compareWithReference(ref, 1e-6f, ref, 1e-6f, ToleranceBand{});
    ASSERT_TRUE(r.has_value());
    EXPECT_TRUE(r->passed);
    EXPECT_EQ(r->samplesCompared, 128u);
    EXPECT_EQ(r->samplesOutside, 0u);
    EXPECT_EQ(r->rmsDifference, 0.0);
    EXPECT_EQ(r->largestDeviation, 0.0);
}

TEST(Compare, SamplesOutsideTheBandAreMarkedCountedAndTheLargestIsFound) {
    const TraceArray ref = sine(1.0, 2);
    TraceArray live = ref;
    live[10] += 0.30f; // outside a 0.25 V band
    live[20] -= 0.60f; // outside, the largest, below
    live[30] += 0.20f; // inside
    const auto r = compareWithReference(live, 1e-5f, ref, 1e-5f, ToleranceBand{0.25, 0.0});
    ASSERT_TRUE(r.has_value());
    EXPECT_FALSE(r->passed);
    EXPECT_EQ(r->samplesOutside, 2u);
    EXPECT_TRUE(r->outside[10]);
    EXPECT_TRUE(r->outside[20]);
    EXPECT_FALSE(r->outside[30]);
    EXPECT_EQ(r->largestAt, 20u);
    EXPECT_NEAR(r->largestDeviation, -0.60, 1e-6);
    const double rms = std::sqrt((0.30 * 0.30 + 0.60 * 0.60 + 0.20 * 0.20) / 128.0);
    EXPECT_NEAR(r->rmsDifference, rms, 1e-6);
}

TEST(Compare, AConstantOffsetGivesItselfAsDeviationAndRms) {
    TraceArray ref{};
    TraceArray live{};
    ref.fill(1.0f);
    live.fill(1.5f);
    const auto r = compareWithReference(live, 1e-6f, ref, 1e-6f, ToleranceBand{0.4, 0.0});
    ASSERT_TRUE(r.has_value());
    EXPECT_FALSE(r->passed);
    EXPECT_EQ(r->samplesOutside, 128u);
    EXPECT_DOUBLE_EQ(r->rmsDifference, 0.5);
    EXPECT_DOUBLE_EQ(r->largestDeviation, 0.5);
    // A flat reference has no peak-to-peak: the per cent part adds nothing.
    EXPECT_FALSE(compareWithReference(live, 1e-6f, ref, 1e-6f, ToleranceBand{0.0, 50.0})->passed);
    EXPECT_TRUE(compareWithReference(live, 1e-6f, ref, 1e-6f, ToleranceBand{0.5, 0.0})->passed);
}

TEST(Compare, DifferentIntervalsCompareAtTheSameTimeBetweenReferenceSamples) {
    // The reference a ramp of 1 V a sample at 2 us; the live one at 1 us: its sample i is at
    // reference position i / 2, so it is i / 2 volts there, and the second half of the live
    // trace lies beyond the reference's span.
    TraceArray ref{};
    for (std::size_t i = 0; i < ref.size(); ++i)
        ref[i] = static_cast<float>(i);
    TraceArray live{};
    for (std::size_t i = 0; i < live.size(); ++i)
        live[i] = static_cast<float>(i) / 2.0f;
    auto r = compareWithReference(live, 1e-6f, ref, 2e-6f, ToleranceBand{1e-6, 0.0});
    ASSERT_TRUE(r.has_value());
    EXPECT_TRUE(r->passed);
    EXPECT_EQ(r->samplesCompared, 128u); // live 127 us against the reference's 254 us
    // The other way round: live at 2 us against a reference at 1 us spans only half.
    TraceArray ramp2{};
    for (std::size_t i = 0; i < ramp2.size(); ++i)
        ramp2[i] = static_cast<float>(2 * i);
    r = compareWithReference(ramp2, 2e-6f, ref, 1e-6f, ToleranceBand{1e-6, 0.0});
    ASSERT_TRUE(r.has_value());
    EXPECT_TRUE(r->passed);
    EXPECT_EQ(r->samplesCompared, 64u); // 0 .. 126 us: samples 0 .. 63
    EXPECT_TRUE(r->compared[63]);
    EXPECT_FALSE(r->compared[64]);
}

TEST(Compare, FramesAreCountedAsPassedOrFailed) {
    const TraceArray ref = sine(1.0, 2);
    TraceArray bad = ref;
    bad[5] += 1.0f;
    CompareCounts counts;
    counts.add(*compareWithReference(ref, 1e-6f, ref, 1e-6f, ToleranceBand{0.1, 0.0}));
    counts.add(*compareWithReference(bad, 1e-6f, ref, 1e-6f, ToleranceBand{0.1, 0.0}));
    counts.add(*compareWithReference(ref, 1e-6f, ref, 1e-6f, ToleranceBand{0.1, 0.0}));
    EXPECT_EQ(counts.passed, 2u);
    EXPECT_EQ(counts.failed, 1u);
}
