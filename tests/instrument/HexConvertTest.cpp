// Tests of the hexadecimal text conversions.
#include "instrument/HexConvert.h"

#include <gtest/gtest.h>

using namespace zorvik;

TEST(HexToByte, ReadsHexDigitsInEitherCase) {
    EXPECT_EQ(HexToByte("0"), 0);
    EXPECT_EQ(HexToByte("7D"), 0x7D);
    EXPECT_EQ(HexToByte("ff"), 255);
    EXPECT_EQ(HexToByte("Ff"), 255);
    EXPECT_EQ(HexToByte("80"), 128);
    EXPECT_EQ(HexToByte("00FF"), 255);
    EXPECT_EQ(HexToByte("000000A5"), 0xA5);
}

TEST(HexToByte, ValueThatDoesNotFitAByteGivesZeroNotItsLowByte) {
    EXPECT_EQ(HexToByte("100"), 0);
    EXPECT_EQ(HexToByte("1FF"), 0);
    EXPECT_EQ(HexToByte("7FFF"), 0);
    EXPECT_EQ(HexToByte("12345"), 0);
}

TEST(HexToByte, FourDigitsWithTheTopBitSetAreNegativeAndGiveZero) {
    EXPECT_EQ(HexToByte("FFFF"), 0);
    EXPECT_EQ(HexToByte("8000"), 0);
    EXPECT_EQ(HexToByte("FFFFFFFF"), 0);
}

TEST(HexToByte, EmptyOrNonHexTextGivesZero) {
    EXPECT_EQ(HexToByte(""), 0);
    EXPECT_EQ(HexToByte("G"), 0);
    EXPECT_EQ(HexToByte("1G"), 0);
    EXPECT_EQ(HexToByte(" 1"), 0);
    EXPECT_EQ(HexToByte("-1"), 0);
    EXPECT_EQ(HexToByte("&H10"), 0);
}

TEST(HexToByte, MoreThanEightDigitsGiveZero) {
    EXPECT_EQ(HexToByte("000000001"), 0);
}

TEST(HexToLng, ShortTextsAreReadAsHexNumbers) {
    EXPECT_EQ(HexToLng("0"), 0);
    EXPECT_EQ(HexToLng("A"), 10);
    EXPECT_EQ(HexToLng("7d"), 125);
    EXPECT_EQ(HexToLng("FFF"), 4095);
}

TEST(HexToLng, FourCharactersAreNeverNegative) {
    EXPECT_EQ(HexToLng("FFFF"), 65535);
    EXPECT_EQ(HexToLng("8000"), 32768);
    EXPECT_EQ(HexToLng("1234"), 0x1234);
    EXPECT_EQ(HexToLng("0fff"), 4095);
}

TEST(HexToLng, FourCharactersWithANonHexCharacterGiveZero) {
    EXPECT_EQ(HexToLng("G123"), 0);
    EXPECT_EQ(HexToLng("123G"), 0);
    EXPECT_EQ(HexToLng(" 123"), 0);
}

TEST(HexToLng, FiveToEightDigitsAreA32BitSignedValue) {
    EXPECT_EQ(HexToLng("10000"), 65536);
    EXPECT_EQ(HexToLng("FFFFF"), 0xFFFFF);
    EXPECT_EQ(HexToLng("7FFFFFFF"), 2147483647);
    EXPECT_EQ(HexToLng("FFFFFFFF"), -1);
    EXPECT_EQ(HexToLng("80000000"), -2147483647 - 1);
}

TEST(HexToLng, EmptyTooLongOrNonHexTextGivesZero) {
    EXPECT_EQ(HexToLng(""), 0);
    EXPECT_EQ(HexToLng("100000000"), 0);
    EXPECT_EQ(HexToLng("XYZ"), 0);
    EXPECT_EQ(HexToLng("12 45"), 0);
}
