// Tests of the fixed-decimal number texts used by the readouts.
#include "display/NumberFormat.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <locale>

using namespace zorvik;

TEST(NumberFormat, GivesExactlyTheRequestedDecimals) {
    EXPECT_EQ(formatDecimals(12.5, 2), "12.50");
    EXPECT_EQ(formatDecimals(12.5, 3), "12.500");
    EXPECT_EQ(formatDecimals(12.5, 1), "12.5");
    EXPECT_EQ(formatDecimals(12.5, 0), "13");
    EXPECT_EQ(formatDecimals(100.0, 1), "100.0");
}

TEST(NumberFormat, AlwaysHasADigitBeforeThePoint) {
    EXPECT_EQ(formatDecimals(0.0, 2), "0.00");
    EXPECT_EQ(formatDecimals(0.25, 3), "0.250");
    EXPECT_EQ(formatDecimals(0.0004, 3), "0.000");
}

TEST(NumberFormat, HalfRoundsAwayFromZero) {
    EXPECT_EQ(formatDecimals(0.0005, 3), "0.001");
    EXPECT_EQ(formatDecimals(0.5, 0), "1");
    EXPECT_EQ(formatDecimals(2.5, 0), "3");
    EXPECT_EQ(formatDecimals(0.125, 2), "0.13");
    EXPECT_EQ(formatDecimals(-0.125, 2), "-0.13");
    EXPECT_EQ(formatDecimals(-2.5, 0), "-3");
}

TEST(NumberFormat, DecimalHalvesNotExactInBinaryStillRoundUp) {
    // 1.0005 and 2.675 are stored slightly below the half.
    EXPECT_EQ(formatDecimals(1.0005, 3), "1.001");
    EXPECT_EQ(formatDecimals(2.675, 2), "2.68");
    EXPECT_EQ(formatDecimals(1.2345, 3), "1.235");
}

TEST(NumberFormat, ValueJustBelowAHalfThroughArithmeticNoiseRoundsAsTheHalf) {
    // Two units of the last binary place below 1.0005: still 1.0005 to 15 digits.
    const double noisy = std::nextafter(std::nextafter(1.0005, 0.0), 0.0);
    EXPECT_EQ(formatDecimals(noisy, 3), "1.001");
}

TEST(NumberFormat, ValueClearlyBelowAHalfRoundsDown) {
    EXPECT_EQ(formatDecimals(1.00049999, 3), "1.000");
    EXPECT_EQ(formatDecimals(0.00049, 3), "0.000");
    EXPECT_EQ(formatDecimals(979.99999999999989, 2), "980.00");
    EXPECT_EQ(formatDecimals(1.2344, 3), "1.234");
}

TEST(NumberFormat, CarryRunsIntoTheIntegerPart) {
    EXPECT_EQ(formatDecimals(9.9995, 3), "10.000");
    EXPECT_EQ(formatDecimals(999.9996, 3), "1000.000");
    EXPECT_EQ(formatDecimals(99.96, 1), "100.0");
}

TEST(NumberFormat, LargeNumbersHaveAllTheirDigitsAndNoSeparators) {
    EXPECT_EQ(formatDecimals(1234567.0, 3), "1234567.000");
    EXPECT_EQ(formatDecimals(1e20, 1), "100000000000000000000.0");
}

TEST(NumberFormat, ValueRoundingToZeroHasNoSign) {
    EXPECT_EQ(formatDecimals(-0.0004, 3), "0.000");
    EXPECT_EQ(formatDecimals(-0.0, 2), "0.00");
}

TEST(NumberFormat, InfinityAndNanHaveNoText) {
    EXPECT_FALSE(formatDecimals(std::numeric_limits<double>::infinity(), 2));
    EXPECT_FALSE(formatDecimals(std::numeric_limits<double>::quiet_NaN(), 2));
    EXPECT_FALSE(formatWithUnit(std::numeric_limits<double>::infinity(), 2, " V"));
}

TEST(NumberFormat, UnitIsAppendedExactlyAsWritten) {
    EXPECT_EQ(formatWithUnit(12.5, 2, " V"), "12.50 V");
    EXPECT_EQ(formatWithUnit(1.5, 2, " nSec"), "1.50 nSec");
    EXPECT_EQ(formatWithUnit(1.5, 3, " uSec"), "1.500 uSec");
    EXPECT_EQ(formatWithUnit(1.5, 3, " mSec"), "1.500 mSec");
    EXPECT_EQ(formatWithUnit(1.5, 3, " Sec"), "1.500 Sec");
    EXPECT_EQ(formatWithUnit(1.5, 1, " Hz"), "1.5 Hz");
    EXPECT_EQ(formatWithUnit(1.5, 3, " KHz"), "1.500 KHz");
    EXPECT_EQ(formatWithUnit(1.5, 3, " MHz"), "1.500 MHz");
    EXPECT_EQ(formatWithUnit(1.5, 3, " GHz"), "1.500 GHz");
    EXPECT_EQ(formatWithUnit(7.0, 0, " 0.0#%"), "7 0.0#%");
}

namespace {
struct CommaDecimal : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};
} // namespace

TEST(NumberFormat, DecimalPointIsAFullStopWhateverTheLocale) {
    const std::locale previous =
        std::locale::global(std::locale(std::locale::classic(), new CommaDecimal));
    const auto text = formatDecimals(1234.5, 2);
    std::locale::global(previous);
    EXPECT_EQ(text, "1234.50");
}
