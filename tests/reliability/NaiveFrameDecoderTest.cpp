// Tests of the plain reading of the frame rules that the receive cycle is fuzzed against, and
// of the comparison that reports where the two part.
#include "NaiveFrameDecoder.h"
#include "ReceiveDifferential.h"
#include "common/FrameBytes.h"

#include <gtest/gtest.h>

using namespace zorvik;
using namespace zorvik::fuzz;
using zorvik::test::frameBytes;
using zorvik::test::sampleState;
using Bytes = std::vector<std::uint8_t>;

namespace {

LineScript inOneChunk(Bytes bytes, StreamEnding ending = StreamEnding::Silent) {
    LineScript script;
    script.chunks = {bytes.size()};
    script.actions = {LineAction::None};
    script.bytes = std::move(bytes);
    script.ending = ending;
    return script;
}

Bytes join(std::initializer_list<Bytes> parts) {
    Bytes out;
    for (const Bytes& part : parts)
        out.insert(out.end(), part.begin(), part.end());
    return out;
}

RawSamples samplesOf(const Bytes& frame) {
    RawSamples s{};
    std::copy(frame.begin() + 5, frame.begin() + 133, s.begin());
    return s;
}

std::vector<CycleKind> kinds(const std::vector<CycleRecord>& records) {
    std::vector<CycleKind> out;
    for (const auto& r : records)
        out.push_back(r.kind);
    return out;
}

} // namespace

TEST(NaiveFrameDecoder, BackToBackFramesAreEachASyncThenAShownFrame) {
    const Bytes f1 = frameBytes(sampleState(), 1);
    const Bytes f2 = frameBytes(sampleState(), 2);
    const auto records = naiveDecode(inOneChunk(join({f1, f2})));
    ASSERT_EQ(kinds(records),
              (std::vector{CycleKind::Sync, CycleKind::Frame, CycleKind::Sync, CycleKind::Frame}));
    EXPECT_EQ(records[1].samples, samplesOf(f1));
    EXPECT_EQ(records[3].samples, samplesOf(f2));
    EXPECT_EQ(records[3].state, sampleState());
    EXPECT_TRUE(records[3].show);
    EXPECT_EQ(records[0].nextCount, 137);
    EXPECT_TRUE(records[0].nextTimed);
}

TEST(NaiveFrameDecoder, WaitingMarkerDiscardsWhatHadArrivedWithIt) {
    const Bytes f = frameBytes(sampleState(), 3);
    LineScript script;
    script.bytes = join({{0x7D, 0x7D, 1, 2, 3}, f});
    script.chunks = {5, f.size()};
    script.actions = {LineAction::None, LineAction::None};
    const auto records = naiveDecode(script);
    ASSERT_EQ(kinds(records), (std::vector{CycleKind::Waiting, CycleKind::Sync, CycleKind::Frame}));
    EXPECT_TRUE(records[0].resetInput);
    EXPECT_EQ(records[0].pointer, 300);
    EXPECT_EQ(records[2].samples, samplesOf(f));
}

TEST(NaiveFrameDecoder, SyncInPlace1WithSwitchSetting7DIsRejectedKeepingItsStateBytes) {
    HardwareState s = sampleState();
    s.bytSwitchSetting = 0x7D;
    const auto records = naiveDecode(inOneChunk(join({{0x11, 0x7D}, frameBytes(s, 4)})));
    ASSERT_EQ(kinds(records), (std::vector{CycleKind::Sync, CycleKind::Rejected}));
    // r[1] (0x7D) was stored as bytSwitchSetting before the check failed.
    EXPECT_EQ(records[1].state.bytSwitchSetting, 0x7D);
    EXPECT_EQ(records[1].state.bytTimebaseDef, s.bytTimebaseDef);
    EXPECT_FALSE(records[1].show);
}

TEST(NaiveFrameDecoder, StreamEndingInsideAFrameGivesAShortFrameWithThePartialSamples) {
    Bytes f = frameBytes(sampleState(), 5);
    f.resize(50);
    const auto records = naiveDecode(inOneChunk(f, StreamEnding::Partial));
    ASSERT_EQ(kinds(records), (std::vector{CycleKind::Sync, CycleKind::Short}));
    // 48 bytes of the rest came: the copy stops two bytes before their end (43 samples).
    EXPECT_EQ(records[1].samples[42], f[47]);
    EXPECT_EQ(records[1].samples[43], 0);
    EXPECT_FALSE(records[1].show);
}

TEST(NaiveFrameDecoder, StreamStoppingInsideAFrameTimesOutAndArmsNothing) {
    Bytes f = frameBytes(sampleState(), 6);
    f.resize(70);
    const auto records = naiveDecode(inOneChunk(f, StreamEnding::TimeOut));
    ASSERT_EQ(kinds(records), (std::vector{CycleKind::Sync, CycleKind::TimedOut}));
    EXPECT_EQ(records[1].nextCount, 0);
}

TEST(NaiveFrameDecoder, HoldStopsReadingUntilResumeDiscardsTheBytesHeldBack) {
    const Bytes f1 = frameBytes(sampleState(), 7);
    const Bytes f2 = frameBytes(sampleState(), 8);
    LineScript script;
    script.bytes = join({f1, {9, 9, 9}, f2});
    script.chunks = {f1.size(), 3, f2.size()};
    script.actions = {LineAction::None, LineAction::Hold, LineAction::Resume};
    const auto records = naiveDecode(script);
    ASSERT_EQ(kinds(records),
              (std::vector{CycleKind::Sync, CycleKind::Frame, CycleKind::Sync, CycleKind::Frame}));
    EXPECT_EQ(records[3].samples, samplesOf(f2));
}

TEST(NaiveFrameDecoder, ProbeArrivingWhileAcquisitionIsClearedIsHeldAndArmsNothing) {
    LineScript script;
    script.bytes = {1, 2, 3, 4};
    script.chunks = {2, 2};
    script.actions = {LineAction::None, LineAction::ClearAcquire};
    const auto records = naiveDecode(script);
    ASSERT_EQ(kinds(records), (std::vector{CycleKind::Hunt, CycleKind::Held}));
    EXPECT_EQ(records[1].nextCount, 0);
}

TEST(ReceiveDifferential, ProgramAndReferenceAgreeOnAStreamStartingMidFrame) {
    const Bytes stream = join({frameBytes(sampleState(), 9), frameBytes(sampleState(), 10)});
    const LineScript script = inOneChunk(Bytes(stream.begin() + 61, stream.end()));
    const auto program = runReceiveMachine(script);
    EXPECT_EQ(firstDifference(program, naiveDecode(script)), std::nullopt);
    EXPECT_EQ(program.back().kind, CycleKind::Frame);
}

TEST(ReceiveDifferential, FirstDifferenceNamesTheDecisionThatDiffers) {
    const LineScript script = inOneChunk(frameBytes(sampleState(), 11));
    const auto reference = naiveDecode(script);
    auto program = reference;
    program[1].samples[127] ^= 1;
    const auto difference = firstDifference(program, reference);
    ASSERT_TRUE(difference.has_value());
    EXPECT_NE(difference->find("decision 1 differs"), std::string::npos) << *difference;
    program = reference;
    program.pop_back();
    ASSERT_TRUE(firstDifference(program, reference).has_value());
}

TEST(ReceiveDifferential, FuzzInputHeaderChoosesEndingCutAndActions) {
    const std::uint8_t input[] = {
        static_cast<std::uint8_t>(2 | (15 << 2) | (3 << 6)), 7, 0, 1, 2, 3, 4, 5};
    const LineScript script = lineScriptFromFuzzInput(input, sizeof input);
    EXPECT_EQ(script.ending, StreamEnding::TimeOut);
    EXPECT_EQ(script.bytes, (Bytes{1, 2, 3, 4, 5}));
    EXPECT_EQ(script.chunks, (std::vector<std::size_t>(5, 1))); // single bytes
    EXPECT_EQ(script.actions.size(), 5u);
}
