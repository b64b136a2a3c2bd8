// Number texts of the waveform file: every sample value and sample interval the probe can
// produce, written with at most 7 significant digits and read back; and the same texts under
// a German locale, where C's own conversions would use a comma.
#include "GermanLocale.h"
#include "storage/VbConvert.h"

#include <bit>
#include <clocale>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <locale>
#include <random>
#include <sstream>

using namespace zorvik;
using namespace zorvik::VbConvert;

namespace {

constexpr float kVoltsPerCount[] = {0.01587301f, 0.1587301f, 1.587301f};
constexpr float kSampleIntervals[] = {5e-8f, 1e-7f, 5e-7f, 1e-6f, 5e-6f, 1e-5f,
                                      5e-5f, 1e-4f, 5e-4f, 1e-3f, 2e-3f};

std::uint32_t bits(float f) {
    return std::bit_cast<std::uint32_t>(f);
}

int significantDigits(const std::string& text) {
    int digits = 0;
    bool leading = true;
    for (char c : text) {
        if (c == 'E')
            break;
        if (c >= '1' && c <= '9')
            leading = false;
        if (c >= '0' && c <= '9' && !leading)
            ++digits;
    }
    return digits;
}

TEST(SampleText, EverySampleIntervalRoundTripsBitIdentically) {
    for (float interval : kSampleIntervals) {
        const std::string text = singleToText(interval);
        EXPECT_EQ(bits(textToSingle(text)), bits(interval)) << text;
    }
    EXPECT_EQ(singleToText(5e-8f), "5E-08");
    EXPECT_EQ(singleToText(2e-3f), "0.002");
}

// Seven significant digits cannot hold every single-precision number: of the 189 sample
// values, 57 come back bit-identical and the other 132 come back as the single nearest to
// their 7-digit text, at most half a unit of the 7th digit away. From then on the value is
// stable: saving and loading it again changes nothing.
TEST(SampleText, EverySampleValueIsWrittenWithSevenDigitsAndReadsBackStable) {
    int identical = 0;
    int total = 0;
    for (float voltsPerCount : kVoltsPerCount) {
        for (int count = 0; count <= 62; ++count) {
            const float volts = static_cast<float>(count - 31) * voltsPerCount;
            const std::string text = singleToText(volts);
            SCOPED_TRACE(text);
            EXPECT_LE(significantDigits(text), 7);
            EXPECT_EQ(text.find(','), std::string::npos);
            const float back = textToSingle(text);
            // Half a unit of the 7th digit, plus half a step between singles for the read.
            const double halfUnit =
                volts == 0.0f ? 0.0
                              : 0.5 * std::pow(10.0, std::floor(std::log10(std::fabs(volts))) - 6);
            const double halfStep =
                0.5 * (std::nextafter(std::fabs(volts), 1e30f) - std::fabs(volts));
            EXPECT_LE(std::fabs(static_cast<double>(back) - volts), halfUnit + halfStep);
            EXPECT_EQ(singleToText(back), text);
            EXPECT_EQ(bits(textToSingle(singleToText(back))), bits(back));
            identical += bits(back) == bits(volts) ? 1 : 0;
            ++total;
        }
    }
    EXPECT_EQ(total, 189);
    EXPECT_EQ(identical, 57);
}

TEST(SampleText, SampleValuesOfTheExamplesHaveTheirKnownTexts) {
    EXPECT_EQ(singleToText(-31.0f * 0.01587301f), "-0.4920633");
    EXPECT_EQ(singleToText(10.0f * 0.01587301f), "0.1587301");
    EXPECT_EQ(singleToText(0.0f * 1.587301f), "0");
    EXPECT_EQ(singleToText(31.0f * 1.587301f), "49.20633");
}

TEST(SampleText, NumberTextsKeepTheDecimalPointUnderAGermanLocale) {
    zorvik::testing::GermanLocale german;
    if (!german.available())
        FAIL() << "no de_DE.UTF-8 locale and localedef could not make one (run "
                  "scripts/install-deps.sh)";

    // The locale is really in force: C's and C++'s own conversions now use a comma.
    char printed[32];
    std::snprintf(printed, sizeof printed, "%.1f", 0.5);
    EXPECT_STREQ(printed, "0,5");
    std::ostringstream stream;
    stream << 0.5;
    EXPECT_EQ(stream.str(), "0,5");

    EXPECT_EQ(singleToText(0.1587301f), "0.1587301");
    EXPECT_EQ(singleToText(-1.5f), "-1.5");
    EXPECT_EQ(singleToText(5e-8f), "5E-08");
    EXPECT_EQ(textToSingle("0.1587301"), 0.1587301f);
    EXPECT_THROW(textToSingle("0,1587301"), ConversionError);
    EXPECT_EQ(doubleToText(-0.25), "-0.25");
    EXPECT_EQ(textToDouble("-0.25"), -0.25);
    EXPECT_EQ(leadingNumber("3.5"), 3.5);
    EXPECT_EQ(textToLong("2.5"), 2);
}

} // namespace
