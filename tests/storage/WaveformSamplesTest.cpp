// The reference samples as text: the seven lines, the split at commas, and probe samples that
// come back bit for bit although the file keeps only 7 significant digits.
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

// Without the recovery of probe samples 132 of the 189 values would come back changed; with
// it every one comes back exactly.
TEST(WaveformSamples, EveryProbeSampleOfEveryRangeReadsBackBitIdentically) {
    int changedByTextAlone = 0;
    for (std::uint8_t range : kRangeCodes) {
        for (int count = 0; count <= 62; ++count) {
            const float volts = probeVolts(count, range);
            const std::string text = VbConvert::singleToText(volts);
            SCOPED_TRACE(text);
            EXPECT_EQ(bits(WaveformSamples::read(text, range)), bits(volts));
            // The coupling bits around the range do not matter.
            EXPECT_EQ(bits(WaveformSamples::read(text, range | 0x30)), bits(volts));
            changedByTextAlone += bits(VbConvert::textToSingle(text)) != bits(volts) ? 1 : 0;
        }
    }
    EXPECT_EQ(changedByTextAlone, 132);
}

TEST(WaveformSamples, OlderSpellingsOfAProbeSampleFindTheSameSample) {
    const float minusOneCount = probeVolts(30, 0x00);
    for (const char* text : {"-1.587301E-02", "-0.01587301", "-.01587301", "-1.587301e-2",
                             "-0.015873010", " -1.587301E-02 ", "-158.7301E-4"})
        EXPECT_EQ(bits(WaveformSamples::read(text, 0x00)), bits(minusOneCount)) << text;
    EXPECT_EQ(bits(WaveformSamples::read("-.4920633", 0x00)), bits(probeVolts(0, 0x00)));
    EXPECT_EQ(bits(WaveformSamples::read("49.20633", 0x08)), bits(probeVolts(62, 0x08)));
}

// "0.1587301" is 10 counts in the lowest range and 1 count in the middle one, two singles a
// bit apart: the range of the file decides, then the others from the lowest code up.
TEST(WaveformSamples, TheFilesOwnRangeIsTriedFirst) {
    const float tenCountsLow = probeVolts(41, 0x00);
    const float oneCountMiddle = probeVolts(32, 0x04);
    ASSERT_NE(bits(tenCountsLow), bits(oneCountMiddle));
    EXPECT_EQ(bits(WaveformSamples::read("0.1587301", 0x00)), bits(tenCountsLow));
    EXPECT_EQ(bits(WaveformSamples::read("0.1587301", 0x04)), bits(oneCountMiddle));
    // Neither range nor the 0x0C code has it first: the lowest code wins.
    EXPECT_EQ(bits(WaveformSamples::read("0.1587301", 0x08)), bits(tenCountsLow));
    EXPECT_EQ(bits(WaveformSamples::read("0.1587301", 0x0C)), bits(tenCountsLow));
    // "4.761903": 30 counts in the middle range, 3 in the highest.
    EXPECT_EQ(bits(WaveformSamples::read("4.761903", 0x08)), bits(probeVolts(34, 0x08)));
    EXPECT_EQ(bits(WaveformSamples::read("4.761903", 0x04)), bits(probeVolts(61, 0x04)));
}

TEST(WaveformSamples, ASampleFromAnotherRangeThanTheFilesIsStillFound) {
    for (int count = 0; count <= 62; ++count) {
        const float volts = probeVolts(count, 0x08);
        const std::string text = VbConvert::singleToText(volts);
        if (text == "4.761903" || text == "-4.761903")
            continue; // also a sample of the middle range, which comes first
        EXPECT_EQ(bits(WaveformSamples::read(text, 0x00)), bits(volts)) << text;
    }
}

TEST(WaveformSamples, NumbersThatAreNoProbeSampleAreKeptAsRead) {
    for (const char* text : {".5", "-.25", "355.5554", "5E-08", "1E-07", "0.15873011", "0.158730",
                             "1.234567E+20", "-7"})
        EXPECT_EQ(bits(WaveformSamples::read(text, 0x04)), bits(VbConvert::textToSingle(text)))
            << text;
    EXPECT_EQ(WaveformSamples::read(".5", 0x04), 0.5f);
    EXPECT_EQ(WaveformSamples::read("-.25", 0x04), -0.25f);
    EXPECT_EQ(WaveformSamples::read("355.5554", 0x04), 355.5554f);
}

TEST(WaveformSamples, AnyZeroIsTheZeroSample) {
    for (const char* text : {"0", "-0", "0.0", ".0", "0E+05", "-0.000"})
        EXPECT_EQ(bits(WaveformSamples::read(text, 0x00)), bits(0.0f)) << text;
}

TEST(WaveformSamples, APieceThatIsNoNumberIsAnError) {
    for (const char* text : {"", " ", "abc", "0,5", "1..2", "--1", "1E", "0x10", "1 2"})
        EXPECT_THROW(WaveformSamples::read(text, 0x00), ConversionError) << '"' << text << '"';
}

TEST(WaveformSamples, LinesAndReadingAreTheSameUnderAGermanLocale) {
    GermanLocale german;
    if (!german.available())
        GTEST_SKIP() << "no de_DE.UTF-8 locale and localedef could not make one";
    TraceArray t{};
    t[0] = -0.4920633f;
    t[1] = 0.5f;
    t[2] = 5e-8f;
    EXPECT_EQ(WaveformSamples::line(t, 1).substr(0, 25), "-0.4920633,0.5,5E-08,0,0,");
    for (std::uint8_t range : kRangeCodes) {
        for (int count = 0; count <= 62; ++count) {
            const float volts = probeVolts(count, range);
            EXPECT_EQ(bits(WaveformSamples::read(VbConvert::singleToText(volts), range)),
                      bits(volts));
        }
    }
    EXPECT_THROW(WaveformSamples::read("0,5", 0x00), ConversionError);
}

} // namespace
