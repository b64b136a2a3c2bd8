// Autoset's choice of H-SCALE, V-SCALE and offset, on traces whose fit is known: every sample
// interval the probe uses, every range, sines and squares of every height, DC levels, and
// traces that cannot be fitted.
#include "analysis/Autoset.h"

#include "display/ScaleTables.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

using namespace zorvik;

namespace {

// Volts per count of the probe's three ranges, and its sample intervals.
constexpr float kVoltsPerCount[] = {0.01587301f, 0.1587301f, 1.587301f};
constexpr float kIntervals[] = {5e-8f, 1e-7f, 5e-7f, 1e-6f, 5e-6f, 1e-5f,
                                5e-5f, 1e-4f, 5e-4f, 1e-3f, 2e-3f};

/// A sine of `amplitude` counts about `centre` (count 31 is 0 V), as the probe sends it.
TraceArray sine(float voltsPerCount, int centre, int amplitude, double periods = 3.0) {
    TraceArray v{};
    for (std::size_t i = 0; i < v.size(); ++i) {
        const double phase = 2.0 * std::numbers::pi * periods * static_cast<double>(i) / 128.0;
        const int count = centre + static_cast<int>(std::lround(amplitude * std::sin(phase)));
        v[i] = static_cast<float>(count - 31) * voltsPerCount;
    }
    return v;
}

TraceArray level(float volts) {
    TraceArray v{};
    v.fill(volts);
    return v;
}

double gainAt(int position) {
    return static_cast<double>(*chaGainForPosition(position));
}

} // namespace

TEST(Autoset, EverySampleIntervalFillsSixToTenDivisions) {
    // H-SCALE position and the divisions the 127 intervals then span, worked out by hand:
    // 20 Ms/s spans 6.35 us, which is 6.35 divisions at 1 us/div (position 3), and so on.
    const struct {
        float interval;
        int position;
    } expected[] = {{5e-8f, 3},  {1e-7f, 4},  {5e-7f, 6},  {1e-6f, 7},  {5e-6f, 9}, {1e-5f, 10},
                    {5e-5f, 12}, {1e-4f, 13}, {5e-4f, 15}, {1e-3f, 16}, {2e-3f, 16}};
    for (const auto& e : expected) {
        const auto c = autoset(sine(kVoltsPerCount[1], 31, 20), e.interval, false);
        ASSERT_TRUE(c.has_value()) << e.interval;
        EXPECT_EQ(c->hScale, e.position) << e.interval;
        const double span = 127.0 * static_cast<double>(e.interval) *
                            static_cast<double>(timeScaleForPosition(c->hScale)->lngDivPerSec);
        if (e.interval < 2e-3f) {
            EXPECT_NEAR(span, 6.35, 1e-6) << e.interval;
        } else {
            // 254 ms is more than ten divisions even at 20 ms/div, the slowest position.
            EXPECT_NEAR(span, 12.7, 1e-6);
        }
    }
}

TEST(Autoset, AFullScaleSineOfEachRangeSpansFiveDivisionsAboutTheCentre) {
    // Counts 0..62: 62 counts peak to peak, 4.92 divisions at 0.2, 2 and 20 V/div.
    const int expected[] = {7, 4, 1};
    for (int r = 0; r < 3; ++r) {
        for (float interval : kIntervals) {
            const auto c = autoset(sine(kVoltsPerCount[r], 31, 31), interval, false);
            ASSERT_TRUE(c.has_value());
            EXPECT_EQ(c->vScale, expected[r]) << "range " << r;
            EXPECT_EQ(c->offset, 0.0) << "range " << r;
        }
    }
}

TEST(Autoset, EveryHeightOfEveryRangeStaysOnScreenAndIsCentred) {
    for (int r = 0; r < 3; ++r) {
        const float vpc = kVoltsPerCount[r];
        for (int amplitude = 1; amplitude <= 31; ++amplitude) {
            for (int centre = 31 - (31 - amplitude); centre <= 62 - amplitude; centre += 5) {
                const TraceArray v = sine(vpc, centre, amplitude);
                const auto c = autoset(v, 1e-6f, false);
                ASSERT_TRUE(c.has_value());
                const double low = *std::min_element(v.begin(), v.end());
                const double high = *std::max_element(v.begin(), v.end());
                const double gain = gainAt(c->vScale);
                const double height = (high - low) * gain;
                // On the screen, and as near five divisions as the 1-2-5 steps allow: three at
                // least, unless even 0.2 V/div shows it smaller.
                EXPECT_LE(height, 7.5) << r << " " << amplitude << " " << centre;
                if (c->vScale < kVScalePositions) {
                    EXPECT_GE(height, 3.0) << r << " " << amplitude << " " << centre;
                }
                // The next more sensitive position would have been farther from five or off
                // the screen.
                if (c->vScale < kVScalePositions) {
                    const double next = (high - low) * gainAt(c->vScale + 1);
                    EXPECT_TRUE(next > 7.5 || std::fabs(std::log(next / 5.0)) >=
                                                  std::fabs(std::log(height / 5.0)))
                        << r << " " << amplitude << " " << centre;
                }
                // The middle of the trace on the centre line, to the slide's step, when the
                // slide reaches that far.
                const double middleOnScreen = (low + high) / 2.0 * gain + c->offset;
                if (std::fabs((low + high) / 2.0 * gain) <= 4.0) {
                    EXPECT_LE(std::fabs(middleOnScreen), 0.05 + 1e-9)
                        << r << " " << amplitude << " " << centre;
                }
                EXPECT_EQ(std::round(c->offset * 10.0) / 10.0, c->offset);
            }
        }
    }
}

TEST(Autoset, AnOffCentreTraceIsBroughtToTheCentreLineAndInvertedTheOtherWay) {
    // Counts 31..62 on the 10 V range: 0 V to 4.92 V, 4.92 divisions at 1 V/div, middle 2.46 V.
    TraceArray v{};
    for (std::size_t i = 0; i < v.size(); ++i)
        v[i] = static_cast<float>(static_cast<int>(i % 32)) * kVoltsPerCount[1];
    const auto c = autoset(v, 5e-6f, false);
    ASSERT_TRUE(c.has_value());
    EXPECT_EQ(*c, (AutosetChoice{9, 5, -2.5}));
    const auto inverted = autoset(v, 5e-6f, true);
    ASSERT_TRUE(inverted.has_value());
    EXPECT_EQ(*inverted, (AutosetChoice{9, 5, 2.5}));
}

TEST(Autoset, SquaresOfEachDutyCycleGetTheHeightOfTheirTwoLevels) {
    for (int duty : {10, 25, 50}) {
        TraceArray v{};
        for (std::size_t i = 0; i < v.size(); ++i)
            v[i] = (static_cast<int>(i % 32) * 100 < duty * 32 ? 2.0f : -2.0f);
        const auto c = autoset(v, 1e-4f, false);
        ASSERT_TRUE(c.has_value());
        // 4 V peak to peak: 4 divisions at 1 V/div (2 divisions at 2 V/div, 8 at .5 V/div).
        EXPECT_EQ(c->vScale, 5) << duty;
        EXPECT_EQ(c->offset, 0.0) << duty;
        EXPECT_EQ(c->hScale, 13) << duty;
    }
}

TEST(Autoset, ADcLevelIsCentredAtTheMostSensitiveScaleTheOffsetReaches) {
    // 2 V: at 0.2 V/div it would need 10 divisions of offset; at 0.5 V/div exactly 4.
    EXPECT_EQ(*autoset(level(2.0f), 1e-6f, false), (AutosetChoice{7, 6, -4.0}));
    EXPECT_EQ(*autoset(level(2.0f), 1e-6f, true), (AutosetChoice{7, 6, 4.0}));
    // 0 V: the most sensitive scale, no offset.
    EXPECT_EQ(*autoset(level(0.0f), 1e-6f, false), (AutosetChoice{7, 7, 0.0}));
    // 150 V is beyond what the offset reaches even at 20 V/div: 20 V/div, the offset at its end.
    EXPECT_EQ(*autoset(level(150.0f), 1e-6f, false), (AutosetChoice{7, 1, -4.0}));
}

TEST(Autoset, ATraceTooHighForEveryScaleTakesTwentyVoltsPerDivision) {
    // 400 V peak to peak: 20 divisions even at 20 V/div.
    TraceArray v{};
    for (std::size_t i = 0; i < v.size(); ++i)
        v[i] = (i % 2 == 0) ? 200.0f : -200.0f;
    const auto c = autoset(v, 1e-6f, false);
    ASSERT_TRUE(c.has_value());
    EXPECT_EQ(c->vScale, 1);
    EXPECT_EQ(c->offset, 0.0);
}

TEST(Autoset, ATraceWithoutASampleIntervalOrWithoutNumbersIsNotFitted) {
    EXPECT_FALSE(autoset(sine(kVoltsPerCount[1], 31, 20), 0.0f, false).has_value());
    EXPECT_FALSE(autoset(sine(kVoltsPerCount[1], 31, 20), -1e-6f, false).has_value());
    EXPECT_FALSE(autoset(sine(kVoltsPerCount[1], 31, 20), std::nanf(""), false).has_value());
    TraceArray v = sine(kVoltsPerCount[1], 31, 20);
    v[17] = std::nanf("");
    EXPECT_FALSE(autoset(v, 1e-6f, false).has_value());
}
