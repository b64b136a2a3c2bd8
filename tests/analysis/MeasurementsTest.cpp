// Automatic measurements on traces whose answers are known in closed form: sines, squares of
// 10, 25 and 50 % duty with and without overshoot, triangles, DC levels, clipped and noisy
// signals, less than one period, every range and sample interval; the statistics and the texts.
#include "analysis/Measurements.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>
#include <random>

using namespace zorvik;

namespace {

constexpr float kVoltsPerCount[] = {0.01587301f, 0.1587301f, 1.587301f};
constexpr float kIntervals[] = {5e-8f, 1e-7f, 5e-7f, 1e-6f, 5e-6f, 1e-5f,
                                5e-5f, 1e-4f, 5e-4f, 1e-3f, 2e-3f};

std::optional<double> of(const MeasureValues& v, Measure m) {
    return v[static_cast<std::size_t>(m)];
}
double value(const MeasureValues& v, Measure m) {
    const auto x = of(v, m);
    EXPECT_TRUE(x.has_value()) << measureName(m);
    return x.value_or(std::nan(""));
}

/// A sine of `amplitude` volts, `samplesPerPeriod` samples a period, starting at 0 going up.
TraceArray sine(double amplitude, double samplesPerPeriod, double offset = 0.0) {
    TraceArray v{};
    for (std::size_t i = 0; i < v.size(); ++i)
        v[i] = static_cast<float>(offset +
                                  amplitude * std::sin(2.0 * std::numbers::pi *
                                                       static_cast<double>(i) / samplesPerPeriod));
    return v;
}

/// A square between `low` and `high`, 40 samples a period, high for `highSamples` of them,
/// starting low for 5 samples.
TraceArray square(float low, float high, int highSamples) {
    TraceArray v{};
    for (std::size_t i = 0; i < v.size(); ++i)
        v[i] = ((static_cast<int>(i) + 35) % 40) < highSamples ? high : low;
    return v;
}

} // namespace

TEST(Measurements, ASineGivesItsPeaksRmsAndFrequency) {
    // 2 V peak, 32 samples a period (four periods in the frame), 1 us apart: 31.25 kHz.
    const MeasureValues m = measure(sine(2.0, 32.0), 1e-6f);
    EXPECT_NEAR(value(m, Measure::Maximum), 2.0, 1e-6);
    EXPECT_NEAR(value(m, Measure::Minimum), -2.0, 1e-6);
    EXPECT_NEAR(value(m, Measure::PeakToPeak), 4.0, 1e-6);
    EXPECT_NEAR(value(m, Measure::Mean), 0.0, 1e-6);
    EXPECT_NEAR(value(m, Measure::Rms), 2.0 / std::sqrt(2.0), 1e-6);
    EXPECT_NEAR(value(m, Measure::AcRms), 2.0 / std::sqrt(2.0), 1e-6);
    EXPECT_NEAR(value(m, Measure::Period), 32e-6, 1e-12);
    EXPECT_NEAR(value(m, Measure::Frequency), 31250.0, 1e-3);
    // Half a period up, half down.
    EXPECT_NEAR(value(m, Measure::PositiveWidth), 16e-6, 1e-9);
    EXPECT_NEAR(value(m, Measure::NegativeWidth), 16e-6, 1e-9);
    EXPECT_NEAR(value(m, Measure::DutyCycle), 50.0, 1e-6);
}

TEST(Measurements, ASineWithAnOffsetHasItsMeanAndAcRmsApart) {
    // 1 V peak about 3 V: mean 3 V, RMS sqrt(9 + 0.5), AC RMS 1/sqrt(2).
    const MeasureValues m = measure(sine(1.0, 32.0, 3.0), 1e-6f);
    EXPECT_NEAR(value(m, Measure::Mean), 3.0, 1e-6);
    EXPECT_NEAR(value(m, Measure::Rms), std::sqrt(9.5), 1e-6);
    EXPECT_NEAR(value(m, Measure::AcRms), 1.0 / std::sqrt(2.0), 1e-6);
    EXPECT_NEAR(value(m, Measure::Frequency), 31250.0, 1e-3);
}

TEST(Measurements, SquaresOfEachDutyCycleGiveTheirLevelsWidthsAndEdges) {
    for (int duty : {10, 25, 50}) {
        const int high = 40 * duty / 100;
        const MeasureValues m = measure(square(-0.5f, 1.5f, high), 1e-5f);
        EXPECT_EQ(value(m, Measure::Top), 1.5) << duty;
        EXPECT_EQ(value(m, Measure::Base), -0.5) << duty;
        EXPECT_EQ(value(m, Measure::Amplitude), 2.0) << duty;
        EXPECT_NEAR(value(m, Measure::Overshoot), 0.0, 1e-9) << duty;
        // The interval is the single nearest 1e-5, so times are exact to its precision.
        const double dt = 1e-5f;
        EXPECT_DOUBLE_EQ(value(m, Measure::Period), 40 * dt) << duty;
        EXPECT_DOUBLE_EQ(value(m, Measure::Frequency), 1.0 / (40 * dt)) << duty;
        EXPECT_DOUBLE_EQ(value(m, Measure::PositiveWidth), high * dt) << duty;
        EXPECT_DOUBLE_EQ(value(m, Measure::NegativeWidth), (40 - high) * dt) << duty;
        EXPECT_NEAR(value(m, Measure::DutyCycle), duty, 1e-9) << duty;
        // A step from one sample to the next: 10 % to 90 % is 0.8 of an interval, by linear
        // interpolation between the two samples.
        EXPECT_NEAR(value(m, Measure::RiseTime), 0.8 * dt, 1e-9 * dt) << duty;
        EXPECT_NEAR(value(m, Measure::FallTime), 0.8 * dt, 1e-9 * dt) << duty;
        const double mean = (-0.5 * (40 - high) + 1.5 * high) / 40.0;
        // 128 samples are 3.2 periods, so the mean is near, not at, the period's mean.
        EXPECT_NEAR(value(m, Measure::Mean), mean, 0.1) << duty;
    }
}

TEST(Measurements, OvershootIsMeasuredAboveTheTopStateLevel) {
    TraceArray v = square(0.0f, 2.0f, 20);
    // The first sample of each high level overshoots to 2.3 V.
    for (std::size_t i = 1; i < v.size(); ++i) {
        if (v[i - 1] == 0.0f && v[i] == 2.0f)
            v[i] = 2.3f;
    }
    const MeasureValues m = measure(v, 1e-6f);
    EXPECT_EQ(value(m, Measure::Top), 2.0);
    EXPECT_NEAR(value(m, Measure::Maximum), 2.3, 1e-6);
    EXPECT_NEAR(value(m, Measure::Overshoot), 15.0, 1e-4);
}

TEST(Measurements, ATriangleHasTheRmsOfATriangleAndItsFrequency) {
    // Peak 1 V, 32 samples a period, 16 up and 16 down.
    TraceArray v{};
    for (std::size_t i = 0; i < v.size(); ++i) {
        const int k = static_cast<int>(i % 32);
        v[i] = static_cast<float>(k < 16 ? -1.0 + k / 8.0 : 3.0 - k / 8.0);
    }
    const MeasureValues m = measure(v, 1e-3f);
    EXPECT_NEAR(value(m, Measure::Rms), 1.0 / std::sqrt(3.0), 0.01);
    EXPECT_DOUBLE_EQ(value(m, Measure::Frequency), 1.0 / (32.0 * static_cast<double>(1e-3f)));
    EXPECT_NEAR(value(m, Measure::DutyCycle), 50.0, 1e-6);
}

TEST(Measurements, ADcLevelHasLevelsButNoTiming) {
    TraceArray v{};
    v.fill(1.25f);
    const MeasureValues m = measure(v, 1e-6f);
    EXPECT_EQ(value(m, Measure::Maximum), 1.25);
    EXPECT_EQ(value(m, Measure::Minimum), 1.25);
    EXPECT_EQ(value(m, Measure::PeakToPeak), 0.0);
    EXPECT_EQ(value(m, Measure::Mean), 1.25);
    EXPECT_EQ(value(m, Measure::Rms), 1.25);
    EXPECT_EQ(value(m, Measure::AcRms), 0.0);
    EXPECT_EQ(value(m, Measure::Top), 1.25);
    EXPECT_EQ(value(m, Measure::Base), 1.25);
    EXPECT_EQ(value(m, Measure::Amplitude), 0.0);
    for (Measure t :
         {Measure::Overshoot, Measure::Frequency, Measure::Period, Measure::PositiveWidth,
          Measure::NegativeWidth, Measure::DutyCycle, Measure::RiseTime, Measure::FallTime})
        EXPECT_FALSE(of(m, t).has_value()) << measureName(t);
}

TEST(Measurements, LessThanOnePeriodHasNoFrequency) {
    // Three quarters of a period over the frame: one falling crossing, no two alike.
    const MeasureValues m = measure(sine(1.0, 170.0), 1e-6f);
    EXPECT_FALSE(of(m, Measure::Frequency).has_value());
    EXPECT_FALSE(of(m, Measure::Period).has_value());
    EXPECT_FALSE(of(m, Measure::DutyCycle).has_value());
    EXPECT_TRUE(of(m, Measure::PeakToPeak).has_value());
}

TEST(Measurements, AClippedSineHasItsTopAtTheClipAndNoOvershoot) {
    TraceArray v = sine(2.0, 32.0);
    for (float& x : v)
        x = std::min(x, 1.0f);
    const MeasureValues m = measure(v, 1e-6f);
    EXPECT_EQ(value(m, Measure::Top), 1.0);
    EXPECT_EQ(value(m, Measure::Maximum), 1.0);
    EXPECT_EQ(value(m, Measure::Overshoot), 0.0);
    EXPECT_NEAR(value(m, Measure::Frequency), 31250.0, 1e-3);
}

TEST(Measurements, NoiseOnASquareDoesNotCountAsEdges) {
    // A square of 20 counts on the 10 V range with a count of noise on every sample.
    std::mt19937 random(7);
    std::uniform_int_distribution<int> noise(-1, 1);
    const float vpc = kVoltsPerCount[1];
    TraceArray v = square(0.0f, 20.0f * vpc, 20);
    for (float& x : v)
        x += static_cast<float>(noise(random)) * vpc;
    const MeasureValues m = measure(v, 1e-6f);
    EXPECT_NEAR(value(m, Measure::Frequency), 25000.0, 25000.0 * 0.02);
    EXPECT_NEAR(value(m, Measure::DutyCycle), 50.0, 3.0);
    EXPECT_NEAR(value(m, Measure::Amplitude), 20.0 * vpc, 2.0 * vpc);
}

TEST(Measurements, EveryRangeAndSampleIntervalScalesTheAnswers) {
    for (float vpc : kVoltsPerCount) {
        for (float dt : kIntervals) {
            const MeasureValues m = measure(square(0.0f, 40.0f * vpc, 10), dt);
            EXPECT_NEAR(value(m, Measure::Amplitude), 40.0 * vpc, 1e-5 * vpc) << vpc << " " << dt;
            EXPECT_NEAR(value(m, Measure::Frequency), 1.0 / (40.0 * dt), 1e-6 / dt)
                << vpc << " " << dt;
            EXPECT_NEAR(value(m, Measure::DutyCycle), 25.0, 1e-6) << vpc << " " << dt;
            EXPECT_NEAR(value(m, Measure::RiseTime), 0.8 * dt, 1e-6 * dt) << vpc << " " << dt;
        }
    }
}

TEST(Measurements, AFrameWithoutNumbersIsNotMeasured) {
    TraceArray v = sine(1.0, 32.0);
    v[3] = std::nanf("");
    const MeasureValues m = measure(v, 1e-6f);
    for (std::size_t i = 0; i < kMeasureCount; ++i)
        EXPECT_FALSE(m[i].has_value()) << i;
}

TEST(MeasureStatistics, CountMinimumMaximumMeanAndDeviationOfTheDefinedValues) {
    MeasureStatistics s;
    s.add(1.0);
    s.add(std::nullopt); // undefined for that frame: not counted
    s.add(2.0);
    s.add(3.0);
    s.add(4.0);
    EXPECT_EQ(s.count, 4u);
    EXPECT_EQ(s.current, 4.0);
    EXPECT_EQ(s.minimum, 1.0);
    EXPECT_EQ(s.maximum, 4.0);
    EXPECT_DOUBLE_EQ(s.mean, 2.5);
    EXPECT_DOUBLE_EQ(s.standardDeviation, std::sqrt(1.25));
    s.add(std::nullopt);
    EXPECT_FALSE(s.current.has_value());
    EXPECT_EQ(s.count, 4u);
}

TEST(MeasureText, SiPrefixesFourDigitsAndADashForUndefined) {
    EXPECT_EQ(formatMeasure(1000.0, "Hz"), "1.000 kHz");
    EXPECT_EQ(formatMeasure(123456.0, "Hz"), "123.5 kHz");
    EXPECT_EQ(formatMeasure(-0.012345, "V"), "-12.35 mV");
    EXPECT_EQ(formatMeasure(3.2e-6, "s"), "3.200 \u00b5s");
    EXPECT_EQ(formatMeasure(0.99996, "V"), "1.000 V");
    EXPECT_EQ(formatMeasure(0.99994, "V"), "999.9 mV");
    EXPECT_EQ(formatMeasure(99.996, "V"), "100.0 V");
    EXPECT_EQ(formatMeasure(0.0, "V"), "0.000 V");
    EXPECT_EQ(formatMeasure(2.5e-8, "s"), "25.00 ns");
    EXPECT_EQ(formatMeasure(50.0, "%"), "50.0 %");
    EXPECT_EQ(formatMeasure(std::nullopt, "Hz"), "\u2014");
}
