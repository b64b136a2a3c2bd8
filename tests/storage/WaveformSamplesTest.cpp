// The reference samples as text: the seven lines, the split at commas, and each piece read
// back as the single nearest to its decimal text.
#include "storage/WaveformSamples.h"
#include "GermanLocale.h"
#include "WaveformTestSupport.h"
#include "storage/ConversionError.h"
#include "storage/VbConvert.h"

#include <gtest/gtest.h>

using namespace zorvik;
using namespace zorvik::testing;

namespace {

TraceArray countingTrace() {
    TraceArray t{};
    for (std::size_t i = 0; i < t.size(); ++i)
        t[i] = static_cast<float>(i + 1);
    return t;
}

TEST(WaveformSamples, EachOfTheFirstSixLinesHoldsTwentySamplesEachFollowedByAComma) {
    const TraceArray t = countingTrace();
    EXPECT_EQ(WaveformSamples::line(t, 1), "1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,19,20,");
    EXPECT_EQ(WaveformSamples::line(t, 6), "101,102,103,104,105,106,107,108,109,110,111,112,113,"
                                           "114,115,116,117,118,119,120,");
}

TEST(WaveformSamples, TheSeventhLineHoldsEightSamplesWithoutATrailingComma) {
    EXPECT_EQ(WaveformSamples::line(countingTrace(), 7), "121,122,123,124,125,126,127,128");
}

TEST(WaveformSamples, TheSevenLinesJoinedSplitIntoExactly128Pieces) {
    const TraceArray t = probeRecord(0x04, 5).volts;
    std::string joined;
    for (int line = 1; line <= 7; ++line)
        joined += WaveformSamples::line(t, line);
    const auto pieces = WaveformSamples::split(joined);
    ASSERT_EQ(pieces.size(), 128u);
    for (std::size_t i = 0; i < pieces.size(); ++i)
        EXPECT_EQ(pieces[i], VbConvert::singleToText(t[i])) << i;
}

TEST(WaveformSamples, SplitKeepsTheEmptyPieceAfterATrailingComma) {
    const auto pieces = WaveformSamples::split("1,,2,");
    ASSERT_EQ(pieces.size(), 4u);
    EXPECT_EQ(pieces[0], "1");
    EXPECT_EQ(pieces[1], "");
    EXPECT_EQ(pieces[2], "2");
    EXPECT_EQ(pieces[3], "");
    EXPECT_TRUE(WaveformSamples::split("").empty());
    EXPECT_EQ(WaveformSamples::split("7").size(), 1u);
}

// Each piece is the single nearest to its decimal text, nothing else: every probe sample of
// every range loads as the C library's own conversion of its 7-digit text says, and for two
// thirds of them that is not the sample that was saved.
TEST(WaveformSamples, EveryProbeSampleOfEveryRangeReadsAsTheNearestSingleToItsText) {
    int differentFromTheSaved = 0;
    for (std::uint8_t range : kRangeCodes) {
        for (int count = 0; count <= 62; ++count) {
            const float volts = probeVolts(count, range);
            const std::string text = VbConvert::singleToText(volts);
            SCOPED_TRACE(text);
            EXPECT_EQ(bits(WaveformSamples::read(text)), bits(nearestSingle(text)));
            differentFromTheSaved += bits(WaveformSamples::read(text)) != bits(volts) ? 1 : 0;
        }
    }
    EXPECT_EQ(differentFromTheSaved, 132);
}

TEST(WaveformSamples, ASevenDigitTextLoadsAsItsNearestSingleNotAsANearbyProbeSample) {
    // -31 counts at 1 V/count x 1/63 is 0xBEFBEFB8; its text is nearer to 0xBEFBEFB9.
    EXPECT_EQ(bits(probeVolts(0, 0x00)), 0xBEFBEFB8u);
    EXPECT_EQ(bits(WaveformSamples::read("-0.4920633")), 0xBEFBEFB9u);
    EXPECT_EQ(bits(WaveformSamples::read("-.4920633")), 0xBEFBEFB9u);
    EXPECT_EQ(bits(WaveformSamples::read("-4.920633E-01")), 0xBEFBEFB9u);
    // The same text whatever the file's range: nothing but the text decides.
    EXPECT_EQ(bits(WaveformSamples::read("0.1587301")), bits(nearestSingle("0.1587301")));
    EXPECT_EQ(bits(WaveformSamples::read("4.761903")), bits(nearestSingle("4.761903")));
}

TEST(WaveformSamples, OlderSpellingsOfANumberReadAsTheSameSingle) {
    const float expected = nearestSingle("-0.01587301");
    for (const char* text : {"-1.587301E-02", "-0.01587301", "-.01587301", "-1.587301e-2",
                             "-0.015873010", " -1.587301E-02 ", "-158.7301E-4", "-1.587301E-002"})
        EXPECT_EQ(bits(WaveformSamples::read(text)), bits(expected)) << text;
    EXPECT_EQ(bits(WaveformSamples::read("5E+00")), bits(5.0f));
    EXPECT_EQ(bits(WaveformSamples::read("-3.174602E+00")), bits(nearestSingle("-3.174602")));
}

TEST(WaveformSamples, NumbersAreTheNearestSingleToTheirDecimalValue) {
    for (const char* text :
         {".5", "-.25", "355.5554", "5E-08", "1E-07", "0.15873011", "0.158730", "1.234567E+20",
          "-7", "3.4028235E+38", "1E-45", "1.17549435E-38", "0.1", "16777217", "2.0000001"})
        EXPECT_EQ(bits(WaveformSamples::read(text)), bits(nearestSingle(text))) << text;
    EXPECT_EQ(WaveformSamples::read(".5"), 0.5f);
    EXPECT_EQ(WaveformSamples::read("-.25"), -0.25f);
    EXPECT_EQ(WaveformSamples::read("355.5554"), 355.5554f);
    // Halfway between two singles: ties go to the even one.
    EXPECT_EQ(WaveformSamples::read("16777217"), 16777216.0f);
}

TEST(WaveformSamples, AnyZeroIsTheZeroSample) {
    for (const char* text : {"0", "-0", "0.0", ".0", "0E+05", "-0.000"})
        EXPECT_EQ(bits(WaveformSamples::read(text)), bits(0.0f)) << text;
}

TEST(WaveformSamples, APieceThatIsNoNumberIsAnError) {
    for (const char* text : {"", " ", "abc", "0,5", "1..2", "--1", "1E", "0x10", "1 2"})
        EXPECT_THROW(WaveformSamples::read(text), ConversionError) << '"' << text << '"';
}

TEST(WaveformSamples, LinesAndReadingAreTheSameUnderAGermanLocale) {
    GermanLocale german;
    ASSERT_TRUE(german.available()) << "the set-up installs de_DE.UTF-8";
    TraceArray t{};
    t[0] = -0.4920633f;
    t[1] = 0.5f;
    t[2] = 5e-8f;
    EXPECT_EQ(WaveformSamples::line(t, 1).substr(0, 25), "-0.4920633,0.5,5E-08,0,0,");
    for (std::uint8_t range : kRangeCodes) {
        for (int count = 0; count <= 62; ++count) {
            const std::string text = VbConvert::singleToText(probeVolts(count, range));
            EXPECT_EQ(bits(WaveformSamples::read(text)), bits(nearestSingle(text))) << text;
        }
    }
    EXPECT_EQ(bits(WaveformSamples::read("-0.4920633")), 0xBEFBEFB9u);
    EXPECT_THROW(WaveformSamples::read("0,5"), ConversionError);
}

} // namespace
