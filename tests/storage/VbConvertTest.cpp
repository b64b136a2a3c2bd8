// The text <-> number conversions: leading numeric part, rounding, booleans, and the number
// texts of the settings and waveform files.
#include "storage/VbConvert.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

using namespace zorvik;
using namespace zorvik::VbConvert;

namespace {

void expectError(ConversionError::Kind kind, auto&& call) {
    try {
        call();
        ADD_FAILURE() << "no ConversionError";
    } catch (const ConversionError& e) {
        EXPECT_EQ(e.kind(), kind) << e.what();
    }
}

TEST(VbConvert, LeadingNumberTakesSignFractionAndExponent) {
    EXPECT_EQ(leadingNumber("3.5"), 3.5);
    EXPECT_EQ(leadingNumber("-2.5e1xyz"), -25.0);
    EXPECT_EQ(leadingNumber("+4"), 4.0);
    EXPECT_EQ(leadingNumber("1.5E-2"), 0.015);
    EXPECT_EQ(leadingNumber(".5"), 0.5);
    EXPECT_EQ(leadingNumber("-.25"), -0.25);
    EXPECT_EQ(leadingNumber("5."), 5.0);
}

TEST(VbConvert, LeadingNumberStopsAtTheFirstCharacterThatCannotContinueIt) {
    EXPECT_EQ(leadingNumber("7abc"), 7.0);
    EXPECT_EQ(leadingNumber("7 8"), 7.0);
    EXPECT_EQ(leadingNumber("1.2.3"), 1.2);
    EXPECT_EQ(leadingNumber("1e"), 1.0);
    EXPECT_EQ(leadingNumber("1e+"), 1.0);
    EXPECT_EQ(leadingNumber("2.5e-x"), 2.5);
    EXPECT_EQ(leadingNumber("12,5"), 12.0);
}

TEST(VbConvert, LeadingNumberSkipsLeadingBlanks) {
    EXPECT_EQ(leadingNumber(" \t\r\n 8"), 8.0);
}

TEST(VbConvert, LeadingNumberWithoutNumericStartIsZero) {
    EXPECT_EQ(leadingNumber(""), 0.0);
    EXPECT_EQ(leadingNumber("abc"), 0.0);
    EXPECT_EQ(leadingNumber("-"), 0.0);
    EXPECT_EQ(leadingNumber("."), 0.0);
    EXPECT_EQ(leadingNumber("e5"), 0.0);
    EXPECT_EQ(leadingNumber("x7"), 0.0);
}

TEST(VbConvert, LeadingNumberBeyondDoubleRangeIsInfinityOrZero) {
    EXPECT_EQ(leadingNumber("1e400"), std::numeric_limits<double>::infinity());
    EXPECT_EQ(leadingNumber("-1e400"), -std::numeric_limits<double>::infinity());
    EXPECT_EQ(leadingNumber("1" + std::string(400, '0')), std::numeric_limits<double>::infinity());
    EXPECT_EQ(leadingNumber("1e-400"), 0.0);
    EXPECT_EQ(leadingNumber("0." + std::string(400, '0') + "1"), 0.0);
    EXPECT_EQ(leadingNumber("1e99999999999999999999"), std::numeric_limits<double>::infinity());
}

TEST(VbConvert, RoundToLongRoundsHalvesToEven) {
    EXPECT_EQ(roundToLong(2.5), 2);
    EXPECT_EQ(roundToLong(3.5), 4);
    EXPECT_EQ(roundToLong(0.5), 0);
    EXPECT_EQ(roundToLong(1.5), 2);
    EXPECT_EQ(roundToLong(-2.5), -2);
    EXPECT_EQ(roundToLong(-3.5), -4);
    EXPECT_EQ(roundToLong(2.4999), 2);
    EXPECT_EQ(roundToLong(2.5001), 3);
    EXPECT_EQ(roundToLong(-0.4), 0);
}

TEST(VbConvert, RoundToLongAcceptsTheWhole32BitRange) {
    EXPECT_EQ(roundToLong(2147483647.4), 2147483647);
    EXPECT_EQ(roundToLong(-2147483648.5), -2147483647 - 1);
}

TEST(VbConvert, RoundToLongOutside32BitsIsAnOverflow) {
    expectError(ConversionError::Kind::Overflow, [] { roundToLong(2147483647.5); });
    expectError(ConversionError::Kind::Overflow, [] { roundToLong(-2147483648.6); });
    expectError(ConversionError::Kind::Overflow, [] { roundToLong(1e300); });
    expectError(ConversionError::Kind::Overflow,
                [] { roundToLong(std::numeric_limits<double>::infinity()); });
    expectError(ConversionError::Kind::Overflow,
                [] { roundToLong(std::numeric_limits<double>::quiet_NaN()); });
}

TEST(VbConvert, TextToLongNeedsTheWholeTextToBeANumber) {
    EXPECT_EQ(textToLong(" 12 "), 12);
    EXPECT_EQ(textToLong("3.5"), 4);
    EXPECT_EQ(textToLong("1e3"), 1000);
    EXPECT_EQ(textToLong("-7"), -7);
    expectError(ConversionError::Kind::TypeMismatch, [] { textToLong("12abc"); });
    expectError(ConversionError::Kind::TypeMismatch, [] { textToLong(""); });
    expectError(ConversionError::Kind::TypeMismatch, [] { textToLong("FAIL"); });
    expectError(ConversionError::Kind::Overflow, [] { textToLong("3000000000"); });
}

TEST(VbConvert, TextToBooleanAcceptsTrueAndFalseInAnyCase) {
    EXPECT_TRUE(textToBoolean("True"));
    EXPECT_TRUE(textToBoolean("TRUE"));
    EXPECT_TRUE(textToBoolean("tRuE"));
    EXPECT_FALSE(textToBoolean("False"));
    EXPECT_FALSE(textToBoolean("fAlSe"));
    EXPECT_TRUE(textToBoolean(" True\t"));
}

TEST(VbConvert, TextToBooleanTakesANumberNonZeroMeaningTrue) {
    EXPECT_TRUE(textToBoolean("1"));
    EXPECT_TRUE(textToBoolean("-1"));
    EXPECT_TRUE(textToBoolean("0.5"));
    EXPECT_FALSE(textToBoolean("0"));
    EXPECT_FALSE(textToBoolean("0.0"));
    EXPECT_FALSE(textToBoolean("-0"));
}

TEST(VbConvert, TextToBooleanRejectsAnythingElse) {
    for (const char* text : {"maybe", "", "yes", "1x", "T", "Truex", "on"})
        expectError(ConversionError::Kind::TypeMismatch, [&] { textToBoolean(text); });
}

TEST(VbConvert, BooleanAndWholeNumberTexts) {
    EXPECT_EQ(booleanToText(true), "True");
    EXPECT_EQ(booleanToText(false), "False");
    EXPECT_EQ(longToText(0), "0");
    EXPECT_EQ(longToText(-42), "-42");
    EXPECT_EQ(longToText(16777215), "16777215");
    EXPECT_EQ(longToText(-2147483647 - 1), "-2147483648");
}

TEST(VbConvert, SingleToTextHasTheFormsOfPercentGWithSevenDigits) {
    EXPECT_EQ(singleToText(0.1587301f), "0.1587301");
    EXPECT_EQ(singleToText(-0.4920633f), "-0.4920633");
    EXPECT_EQ(singleToText(355.5554f), "355.5554");
    EXPECT_EQ(singleToText(0.0f), "0");
    EXPECT_EQ(singleToText(5e-8f), "5E-08");
    EXPECT_EQ(singleToText(1e-7f), "1E-07");
    EXPECT_EQ(singleToText(1.0f), "1");
    EXPECT_EQ(singleToText(-2.5f), "-2.5");
    EXPECT_EQ(singleToText(-0.01587301f), "-0.01587301");
    EXPECT_EQ(singleToText(1234567.0f), "1234567");
    EXPECT_EQ(singleToText(12345678.0f), "1.234568E+07");
    EXPECT_EQ(singleToText(0.0001f), "0.0001");
    EXPECT_EQ(singleToText(0.00001f), "1E-05");
    EXPECT_EQ(singleToText(1e20f), "1E+20");
    EXPECT_EQ(singleToText(1e-30f), "1E-30");
    EXPECT_EQ(singleToText(3.4028235e38f), "3.402823E+38");
}

TEST(VbConvert, TextToSingleAcceptsEveryFormOlderBuildsWrote) {
    EXPECT_EQ(textToSingle("0.1587301"), 0.1587301f);
    EXPECT_EQ(textToSingle("-1.587301E-02"), -0.01587301f);
    EXPECT_EQ(textToSingle("5E-08"), 5e-8f);
    EXPECT_EQ(textToSingle("1E-07"), 1e-7f);
    EXPECT_EQ(textToSingle("5e-08"), 5e-8f);
    EXPECT_EQ(textToSingle("1.234568e+07"), 1.234568e7f);
    EXPECT_EQ(textToSingle(".5"), 0.5f);
    EXPECT_EQ(textToSingle("-.25"), -0.25f);
    EXPECT_EQ(textToSingle("0"), 0.0f);
    EXPECT_EQ(textToSingle("  355.5554 \t"), 355.5554f);
    EXPECT_EQ(textToSingle("+2"), 2.0f);
    EXPECT_EQ(textToSingle("5."), 5.0f);
    EXPECT_EQ(textToSingle("1E5"), 1e5f);
}

TEST(VbConvert, TextToSingleKeepsTinyValues) {
    EXPECT_EQ(textToSingle("1.5E-40"), 1.5e-40f);
    EXPECT_EQ(textToSingle("1E-50"), 0.0f);
    EXPECT_EQ(textToSingle("1E-400"), 0.0f);
}

TEST(VbConvert, TextToSingleRejectsEmptyLettersAndCommaDecimal) {
    for (const char* text : {"", "   ", "abc", "0,5", "1,587301E-02", "1.5.2", "1e", "e5", "-", ".",
                             "5x", "inf", "nan", "--1", "0x10", "1 2"})
        expectError(ConversionError::Kind::TypeMismatch, [&] { textToSingle(text); });
}

TEST(VbConvert, TextToSingleBeyondSingleRangeIsAnOverflow) {
    expectError(ConversionError::Kind::Overflow, [] { textToSingle("1E39"); });
    expectError(ConversionError::Kind::Overflow, [] { textToSingle("-1E400"); });
}

TEST(VbConvert, TextToDoubleFollowsTheSameRules) {
    EXPECT_EQ(textToDouble(" -0.25 "), -0.25);
    EXPECT_EQ(textToDouble("1.5E-3"), 1.5e-3);
    expectError(ConversionError::Kind::TypeMismatch, [] { textToDouble("0,25"); });
    expectError(ConversionError::Kind::Overflow, [] { textToDouble("1E400"); });
}

TEST(VbConvert, DoubleToTextIsShortestFixedTextThatReadsBackExactly) {
    EXPECT_EQ(doubleToText(0.5), "0.5");
    EXPECT_EQ(doubleToText(-1.25), "-1.25");
    EXPECT_EQ(doubleToText(3.0), "3");
    EXPECT_EQ(doubleToText(0.1), "0.1");
    EXPECT_EQ(doubleToText(1e-5), "0.00001");
    EXPECT_EQ(doubleToText(1.0 / 3.0), "0.3333333333333333");
    for (double v : {0.1, -0.5, 1.0 / 3.0, 2.0 / 3.0, 12345.678, -7.000000000000001, 1e-7})
        EXPECT_EQ(textToDouble(doubleToText(v)), v) << doubleToText(v);
}

} // namespace
