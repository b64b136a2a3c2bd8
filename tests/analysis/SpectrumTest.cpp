// The spectrum against answers known in closed form: a sine on a bin peaks at that bin's
// frequency at its RMS level through every window, the flat-top window reads a tone between
// two bins within 0.1 dB, DC lands in bin 0, the coherent gain of each window is what its
// coefficients give, zero padding keeps levels, averaging keeps a steady tone's level.
#include "analysis/Spectrum.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>
#include <random>
#include <vector>

using namespace zorvik;

namespace {

constexpr SpectrumWindow kAllWindows[] = {SpectrumWindow::Rectangular, SpectrumWindow::Hann,
                                          SpectrumWindow::Hamming, SpectrumWindow::BlackmanHarris,
                                          SpectrumWindow::FlatTop};

/// `amplitude` volts peak, `cycles` periods in the 128 samples, plus `offset`.
std::vector<float> sine(double amplitude, double cycles, double offset = 0.0, double phase = 0.3) {
    std::vector<float> v(128);
    for (std::size_t i = 0; i < v.size(); ++i)
        v[i] = static_cast<float>(offset + amplitude * std::sin(2.0 * std::numbers::pi * cycles *
                                                                    static_cast<double>(i) / 128.0 +
                                                                phase));
    return v;
}

double dbv(double rms) {
    return 20.0 * std::log10(rms);
}

} // namespace

TEST(Spectrum, ASineOnABinPeaksAtThatBinsFrequencyAtItsRmsLevelThroughEveryWindow) {
    SpectrumAnalyzer analyzer;
    for (SpectrumWindow w : kAllWindows) {
        for (int cycles : {3, 10, 17, 40, 59}) {
            for (double interval : {1e-6, 5e-5, 2e-3}) {
                const std::vector<float> v = sine(1.5, cycles);
                const SpectrumResult r = analyzer.analyse(v.data(), v.size(), interval, w);
                ASSERT_EQ(r.volts.size(), 65u);
                ASSERT_EQ(r.frequency.size(), 65u);
                ASSERT_TRUE(r.peak.has_value()) << windowName(w) << " " << cycles;
                EXPECT_EQ(*r.peak, static_cast<std::size_t>(cycles)) << windowName(w);
                const double f = cycles / (128.0 * interval);
                EXPECT_NEAR(*r.peakFrequency(), f, f * 1e-12) << windowName(w);
                // Coherent gain compensated: A / sqrt(2) through every window.
                EXPECT_NEAR(r.volts[static_cast<std::size_t>(cycles)], 1.5 / std::sqrt(2.0), 1e-5)
                    << windowName(w) << " " << cycles;
                EXPECT_NEAR(*r.peakMagnitude(SpectrumUnit::DBV), dbv(1.5 / std::sqrt(2.0)), 1e-4);
            }
        }
    }
}

TEST(Spectrum, TheFlatTopWindowReadsAToneBetweenTwoBinsWithinATenthOfADecibel) {
    SpectrumAnalyzer analyzer;
    for (double amplitude : {0.05, 1.0, 3.7}) {
        for (double cycles = 10.0; cycles <= 11.0; cycles += 0.125) {
            const std::vector<float> v = sine(amplitude, cycles, 0.0, 1.1);
            const SpectrumResult r =
                analyzer.analyse(v.data(), v.size(), 1e-5, SpectrumWindow::FlatTop);
            ASSERT_TRUE(r.peak.has_value());
            EXPECT_NEAR(*r.peakMagnitude(SpectrumUnit::DBV), dbv(amplitude / std::sqrt(2.0)), 0.1)
                << cycles;
            EXPECT_NEAR(static_cast<double>(*r.peak), cycles, 0.5);
        }
    }
}

TEST(Spectrum, TheRectangularWindowLosesUpToFourDecibelsBetweenBinsWhereFlatTopDoesNot) {
    // The scalloping loss the flat top is for: at half a bin the rectangular window reads
    // 20 log10(2/pi) = -3.92 dB low.
    SpectrumAnalyzer analyzer;
    const std::vector<float> v = sine(1.0, 20.5, 0.0, 0.0);
    const SpectrumResult r =
        analyzer.analyse(v.data(), v.size(), 1e-5, SpectrumWindow::Rectangular);
    EXPECT_LT(*r.peakMagnitude(SpectrumUnit::DBV), dbv(1.0 / std::sqrt(2.0)) - 3.0);
}

TEST(Spectrum, DcLandsInBinZeroAtItsLevel) {
    SpectrumAnalyzer analyzer;
    for (SpectrumWindow w : kAllWindows) {
        const std::vector<float> v(128, -0.75f);
        const SpectrumResult r = analyzer.analyse(v.data(), v.size(), 1e-6, w);
        EXPECT_NEAR(r.volts[0], 0.75, 1e-6) << windowName(w);
        EXPECT_EQ(r.frequency[0], 0.0);
        // DC and its leakage through the window are not a tone: no peak, or one at the level
        // of the transform's rounding.
        if (r.peak) {
            EXPECT_GT(*r.peak, 5u) << windowName(w);
            EXPECT_LT(r.volts[*r.peak], 1e-5) << windowName(w);
        }
    }
    // DC beside a sine: both at their levels, and the peak is the sine.
    const std::vector<float> v = sine(1.0, 8, 2.5);
    const SpectrumResult r = analyzer.analyse(v.data(), v.size(), 1e-6, SpectrumWindow::Hann);
    EXPECT_NEAR(r.volts[0], 2.5, 1e-5);
    EXPECT_EQ(r.peak, 8u);
    EXPECT_NEAR(r.volts[8], 1.0 / std::sqrt(2.0), 1e-5);
}

TEST(Spectrum, EachWindowsCoherentGainIsItsFirstCoefficient) {
    EXPECT_NEAR(coherentGain(SpectrumWindow::Rectangular, 128), 1.0, 1e-12);
    EXPECT_NEAR(coherentGain(SpectrumWindow::Hann, 128), 0.5, 1e-12);
    EXPECT_NEAR(coherentGain(SpectrumWindow::Hamming, 128), 0.54, 1e-12);
    EXPECT_NEAR(coherentGain(SpectrumWindow::BlackmanHarris, 128), 0.35875, 1e-12);
    EXPECT_NEAR(coherentGain(SpectrumWindow::FlatTop, 128), 0.21557895, 1e-12);
    // The periodic form: the Hann window starts at 0 and peaks at 1 in the middle.
    const std::vector<double> hann = windowCoefficients(SpectrumWindow::Hann, 128);
    EXPECT_NEAR(hann[0], 0.0, 1e-15);
    EXPECT_NEAR(hann[64], 1.0, 1e-15);
    EXPECT_NEAR(hann[32], 0.5, 1e-15);
}

TEST(Spectrum, ZeroPaddingInterpolatesTheCurveAndKeepsTheLevels) {
    SpectrumAnalyzer analyzer;
    const std::vector<float> v = sine(2.0, 12);
    for (std::size_t padding : {1u, 2u, 4u, 8u, 16u}) {
        const SpectrumResult r =
            analyzer.analyse(v.data(), v.size(), 1e-6, SpectrumWindow::Hann, padding);
        ASSERT_EQ(r.volts.size(), 64 * padding + 1);
        EXPECT_NEAR(r.binWidth, 1.0 / (128.0 * padding * 1e-6), 1e-6);
        ASSERT_TRUE(r.peak.has_value());
        EXPECT_EQ(*r.peak, 12 * padding);
        EXPECT_NEAR(*r.peakFrequency(), 12.0 / 128e-6, 1e-6);
        EXPECT_NEAR(r.volts[*r.peak], 2.0 / std::sqrt(2.0), 1e-5);
    }
}

TEST(Spectrum, TheNyquistBinAndTheBinAboveNothingAreLevelsAsTheyAre) {
    // +A, -A, +A, ...: a tone at the Nyquist frequency whose RMS is A.
    std::vector<float> v(128);
    for (std::size_t i = 0; i < v.size(); ++i)
        v[i] = i % 2 ? -0.5f : 0.5f;
    SpectrumAnalyzer analyzer;
    const SpectrumResult r =
        analyzer.analyse(v.data(), v.size(), 1e-6, SpectrumWindow::Rectangular);
    EXPECT_NEAR(r.volts[64], 0.5, 1e-6);
    EXPECT_EQ(r.peak, 64u);
    EXPECT_NEAR(r.frequency[64], 500000.0, 1e-6);
}

TEST(Spectrum, ATraceOfZerosHasNoPeakAndLevelsAtTheDbvFloor) {
    SpectrumAnalyzer analyzer;
    const std::vector<float> v(128, 0.0f);
    const SpectrumResult r = analyzer.analyse(v.data(), v.size(), 1e-6, SpectrumWindow::Hann);
    EXPECT_FALSE(r.peak.has_value());
    EXPECT_FALSE(r.peakMagnitude(SpectrumUnit::DBV).has_value());
    EXPECT_FALSE(r.peakFrequency().has_value());
    for (double m : r.magnitude(SpectrumUnit::DBV))
        EXPECT_EQ(m, kDbvFloor);
}

TEST(Spectrum, WithoutASampleIntervalTheBinsHaveNoFrequency) {
    SpectrumAnalyzer analyzer;
    const std::vector<float> v = sine(1.0, 5);
    const SpectrumResult r = analyzer.analyse(v.data(), v.size(), 0.0, SpectrumWindow::Hann);
    EXPECT_TRUE(r.frequency.empty());
    EXPECT_EQ(r.binWidth, 0.0);
    EXPECT_EQ(r.peak, 5u);
    EXPECT_FALSE(r.peakFrequency().has_value());
}

TEST(Spectrum, MagnitudesInVoltsAndDbvAgree) {
    SpectrumAnalyzer analyzer;
    const std::vector<float> v = sine(1.0, 7, 0.2);
    const SpectrumResult r =
        analyzer.analyse(v.data(), v.size(), 1e-6, SpectrumWindow::BlackmanHarris);
    const std::vector<double> volts = r.magnitude(SpectrumUnit::Volts);
    const std::vector<double> db = r.magnitude(SpectrumUnit::DBV);
    for (std::size_t k = 0; k < volts.size(); ++k)
        EXPECT_DOUBLE_EQ(db[k], toDbv(volts[k]));
    EXPECT_NEAR(toDbv(1.0), 0.0, 1e-12);
    EXPECT_NEAR(toDbv(0.1), -20.0, 1e-12);
    EXPECT_EQ(toDbv(0.0), kDbvFloor);
    EXPECT_EQ(toDbv(1e-300), kDbvFloor);
}

TEST(Spectrum, AveragingKeepsASteadyTonesLevelAndSettlesNoise) {
    SpectrumAnalyzer analyzer;
    SpectrumAverage average;
    average.setFrames(16);
    std::mt19937 random(7);
    std::normal_distribution<double> noise(0.0, 0.1);
    SpectrumResult mean;
    std::vector<double> singleNoise;
    for (int frame = 0; frame < 40; ++frame) {
        std::vector<float> v = sine(1.0, 16, 0.0, 0.1 * frame);
        for (float& x : v)
            x += static_cast<float>(noise(random));
        const SpectrumResult r = analyzer.analyse(v.data(), v.size(), 1e-6, SpectrumWindow::Hann);
        if (frame == 0)
            singleNoise = r.volts;
        mean = average.add(r);
    }
    EXPECT_EQ(average.count(), 16u);
    EXPECT_EQ(mean.peak, 16u);
    // The tone's power plus the noise's share of the bin: within 2 % of 1/sqrt(2).
    EXPECT_NEAR(mean.volts[16], 1.0 / std::sqrt(2.0), 0.02);
    // The spread of the noise floor from bin to bin is smaller once averaged.
    auto spread = [](const std::vector<double>& v) {
        double sum = 0.0;
        double sum2 = 0.0;
        int n = 0;
        for (std::size_t k = 30; k < 64; ++k, ++n) {
            sum += v[k];
            sum2 += v[k] * v[k];
        }
        const double m = sum / n;
        return std::sqrt(sum2 / n - m * m) / m;
    };
    EXPECT_LT(spread(mean.volts), 0.5 * spread(singleNoise));
}

TEST(Spectrum, AveragingOverOneFrameIsTheFrameAndAChangeOfIntervalStartsAgain) {
    SpectrumAnalyzer analyzer;
    SpectrumAverage average;
    const std::vector<float> a = sine(1.0, 4);
    const std::vector<float> b = sine(2.0, 9);
    const SpectrumResult ra = analyzer.analyse(a.data(), a.size(), 1e-6, SpectrumWindow::Hann);
    EXPECT_EQ(average.add(ra).volts, ra.volts);
    average.setFrames(4);
    average.add(ra);
    EXPECT_EQ(average.count(), 2u);
    const SpectrumResult rb = analyzer.analyse(b.data(), b.size(), 2e-6, SpectrumWindow::Hann);
    const SpectrumResult mean = average.add(rb);
    EXPECT_EQ(average.count(), 1u);
    for (std::size_t k = 0; k < rb.volts.size(); ++k)
        EXPECT_NEAR(mean.volts[k], rb.volts[k], 1e-12);
    average.setFrames(0); // at least one
    EXPECT_EQ(average.frames(), 1u);
}

TEST(Spectrum, TheNamesOfWindowsAndUnitsGoBothWays) {
    for (SpectrumWindow w : kAllWindows)
        EXPECT_EQ(windowFromKey(windowKey(w)), w);
    EXPECT_EQ(windowKey(SpectrumWindow::BlackmanHarris), "blackman-harris");
    EXPECT_EQ(windowKey(SpectrumWindow::FlatTop), "flattop");
    EXPECT_FALSE(windowFromKey("kaiser").has_value());
    EXPECT_EQ(unitFromKey("dbv"), SpectrumUnit::DBV);
    EXPECT_EQ(unitFromKey("volts"), SpectrumUnit::Volts);
    EXPECT_FALSE(unitFromKey("dBV").has_value());
    EXPECT_STREQ(windowName(SpectrumWindow::FlatTop), "Flat top");
}
