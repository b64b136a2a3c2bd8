// Tests of the virtual probe's byte schedule: frame periods, waiting markers, faults, replay.
#include "probe/ProbeStream.h"

#include <gtest/gtest.h>
#include <numeric>

using namespace zorvik;
using namespace std::chrono_literals;

namespace {

std::vector<StreamChunk> allChunks(ProbeStream& stream) {
    std::vector<StreamChunk> chunks;
    while (auto chunk = stream.next())
        chunks.push_back(std::move(*chunk));
    return chunks;
}

std::vector<std::uint8_t> join(const std::vector<StreamChunk>& chunks) {
    std::vector<std::uint8_t> bytes;
    for (const auto& chunk : chunks)
        bytes.insert(bytes.end(), chunk.bytes.begin(), chunk.bytes.end());
    return bytes;
}

StreamOptions frames(std::uint64_t count) {
    StreamOptions options;
    options.frames = count;
    return options;
}

std::vector<std::uint8_t> fileBytes(std::size_t size) {
    std::vector<std::uint8_t> bytes(size);
    std::iota(bytes.begin(), bytes.end(), std::uint8_t{0});
    return bytes;
}

} // namespace

TEST(ProbeStream, FramesFollowBackToBack) {
    ProbeStream stream(ProbeSettings{}, frames(5));
    const auto chunks = allChunks(stream);
    ASSERT_EQ(chunks.size(), 5u);
    const auto frame = FrameGenerator{ProbeSettings{}}.next();
    for (const auto& chunk : chunks) {
        EXPECT_EQ(chunk.bytes, frame);
        EXPECT_EQ(chunk.lineBytes, 139u);
        EXPECT_EQ(chunk.stallAfter, 0ms);
        EXPECT_TRUE(chunk.endsFrame);
    }
    EXPECT_EQ(stream.end(), StreamEnd::Finished);
    const auto& c = stream.counters();
    EXPECT_EQ(c.framePeriods, 5u);
    EXPECT_EQ(c.framesSent, 5u);
    EXPECT_EQ(c.framesIntact, 5u);
    EXPECT_EQ(c.bytesSent, 695u);
    EXPECT_EQ(c.bytesDropped, 0u);
    EXPECT_EQ(c.waitingMarkers, 0u);
}

TEST(ProbeStream, WaitingMarkersBetweenFramesTakeAFramePeriodEach) {
    StreamOptions options = frames(3);
    options.waitingBetween = 2;
    ProbeStream stream(ProbeSettings{}, options);
    const auto chunks = allChunks(stream);
    ASSERT_EQ(chunks.size(), 7u);
    const std::vector<std::uint8_t> marker = {0x7D, 0x7D};
    for (const std::size_t i : {1u, 2u, 4u, 5u}) {
        EXPECT_EQ(chunks[i].bytes, marker) << i;
        EXPECT_EQ(chunks[i].lineBytes, 139u) << i;
        EXPECT_FALSE(chunks[i].endsFrame) << i;
    }
    for (const std::size_t i : {0u, 3u, 6u})
        EXPECT_EQ(chunks[i].bytes.size(), 139u) << i;
    EXPECT_EQ(stream.counters().waitingMarkers, 4u);
    EXPECT_EQ(stream.counters().framesSent, 3u);
}

TEST(ProbeStream, MarkersSentInPlaceOfFramesCountAsFramePeriods) {
    ProbeSettings s;
    s.signal.amplitude = 0.2; // never reaches the 0.5 V trigger level
    ProbeStream stream(s, frames(4));
    const auto chunks = allChunks(stream);
    ASSERT_EQ(chunks.size(), 4u);
    for (const auto& chunk : chunks) {
        EXPECT_EQ(chunk.bytes, (std::vector<std::uint8_t>{0x7D, 0x7D}));
        EXPECT_EQ(chunk.lineBytes, 139u);
    }
    EXPECT_EQ(stream.counters().waitingMarkers, 4u);
    EXPECT_EQ(stream.counters().framesSent, 0u);
}

TEST(ProbeStream, DropsAreDeterministicForASeed) {
    StreamOptions options = frames(100);
    options.dropProbability = 0.1;
    options.seed = 5;
    ProbeStream a(ProbeSettings{}, options), b(ProbeSettings{}, options);
    options.seed = 6;
    ProbeStream c(ProbeSettings{}, options);
    const auto bytesA = a.drain();
    EXPECT_EQ(bytesA, b.drain());
    EXPECT_NE(bytesA, c.drain());

    const auto& counts = a.counters();
    EXPECT_EQ(bytesA.size() + counts.bytesDropped, 100 * 139u);
    EXPECT_GT(counts.bytesDropped, 100 * 139u / 20);
    EXPECT_LT(counts.bytesDropped, 100 * 139u * 3 / 20);
    EXPECT_EQ(counts.framesSent, 100u);
    EXPECT_LT(counts.framesIntact, 5u); // 0.9^139: hardly a frame survives whole
    EXPECT_EQ(counts.bytesSent, bytesA.size());
}

TEST(ProbeStream, DroppedBytesKeepTheirLineTime) {
    StreamOptions options = frames(3);
    options.dropProbability = 0.5;
    ProbeStream stream(ProbeSettings{}, options);
    for (const auto& chunk : allChunks(stream)) {
        EXPECT_EQ(chunk.lineBytes, 139u);
        EXPECT_LT(chunk.bytes.size(), 139u);
    }
}

TEST(ProbeStream, DropProbabilityOneLosesEveryByte) {
    StreamOptions options = frames(3);
    options.dropProbability = 1.0;
    ProbeStream stream(ProbeSettings{}, options);
    EXPECT_TRUE(stream.drain().empty());
    EXPECT_EQ(stream.counters().bytesDropped, 417u);
    EXPECT_EQ(stream.counters().framesIntact, 0u);
}

TEST(ProbeStream, StallStopsTheLineInTheMiddleOfTheFrameAfterK) {
    StreamOptions options = frames(4);
    options.stallAfter = 2;
    options.stallFor = 300ms;
    ProbeStream stream(ProbeSettings{}, options);
    const auto chunks = allChunks(stream);
    ASSERT_EQ(chunks.size(), 5u);
    EXPECT_EQ(chunks[1].stallAfter, 0ms);
    EXPECT_EQ(chunks[2].bytes.size(), 69u);
    EXPECT_EQ(chunks[2].lineBytes, 69u);
    EXPECT_EQ(chunks[2].stallAfter, 300ms);
    EXPECT_FALSE(chunks[2].endsFrame);
    EXPECT_EQ(chunks[3].bytes.size(), 70u);
    EXPECT_EQ(chunks[3].lineBytes, 70u);
    EXPECT_EQ(chunks[3].stallAfter, 0ms);
    EXPECT_TRUE(chunks[3].endsFrame);
    EXPECT_EQ(chunks[4].stallAfter, 0ms);
    EXPECT_EQ(join(chunks), makeProbeBytes(ProbeSettings{}, 4));
    EXPECT_EQ(stream.counters().stalls, 1u);
    EXPECT_EQ(stream.counters().framesIntact, 4u);
}

TEST(ProbeStream, StallAfterZeroStallsTheFirstFrame) {
    StreamOptions options = frames(1);
    options.stallAfter = 0;
    ProbeStream stream(ProbeSettings{}, options);
    const auto chunks = allChunks(stream);
    ASSERT_EQ(chunks.size(), 2u);
    EXPECT_EQ(chunks[0].bytes.size(), 69u);
    EXPECT_EQ(chunks[0].stallAfter, 500ms);
}

TEST(ProbeStream, GarbageIsInjectedAfterEveryKFrames) {
    StreamOptions options = frames(6);
    options.garbageBytes = 5;
    options.garbageEvery = 2;
    options.seed = 9;
    ProbeStream stream(ProbeSettings{}, options);
    const auto chunks = allChunks(stream);
    // F F G F F G F F
    ASSERT_EQ(chunks.size(), 8u);
    const auto frame = FrameGenerator{ProbeSettings{}}.next();
    for (const std::size_t i : {0u, 1u, 3u, 4u, 6u, 7u})
        EXPECT_EQ(chunks[i].bytes, frame) << i;
    for (const std::size_t i : {2u, 5u}) {
        EXPECT_EQ(chunks[i].bytes.size(), 5u) << i;
        EXPECT_EQ(chunks[i].lineBytes, 5u) << i;
        EXPECT_FALSE(chunks[i].endsFrame) << i;
    }
    EXPECT_NE(chunks[2].bytes, chunks[5].bytes);
    EXPECT_EQ(stream.counters().garbageBytes, 10u);
    EXPECT_EQ(stream.counters().framesSent, 6u);

    ProbeStream again(ProbeSettings{}, options);
    EXPECT_EQ(again.drain(), join(chunks));
}

TEST(ProbeStream, GarbageOnlyStreamSendsRandomBytesInFramePeriods) {
    StreamOptions options = frames(3);
    options.garbageOnly = true;
    options.seed = 4;
    ProbeStream stream(ProbeSettings{}, options);
    const auto chunks = allChunks(stream);
    ASSERT_EQ(chunks.size(), 3u);
    for (const auto& chunk : chunks) {
        EXPECT_EQ(chunk.bytes.size(), 139u);
        EXPECT_FALSE(chunk.endsFrame);
    }
    EXPECT_NE(chunks[0].bytes, chunks[1].bytes);
    EXPECT_EQ(stream.counters().garbageBytes, 417u);
    EXPECT_EQ(stream.counters().framesSent, 0u);
    ProbeStream again(ProbeSettings{}, options);
    EXPECT_EQ(again.drain(), join(chunks));
}

TEST(ProbeStream, FaultsLeaveTheSamplesOfTheFramesAlone) {
    StreamOptions options = frames(3);
    options.garbageBytes = 7;
    options.stallAfter = 1;
    ProbeSettings s;
    s.signal.shape = Shape::Noise;
    s.trigger = 0x00;
    ProbeStream clean(s, frames(3)), faulty(s, options);
    auto bytes = faulty.drain();
    bytes.erase(bytes.begin() + 139, bytes.begin() + 146);
    bytes.erase(bytes.begin() + 278, bytes.begin() + 285);
    EXPECT_EQ(bytes, clean.drain());
}

TEST(ProbeStream, DisconnectAfterNFramesEndsTheStreamAsADisconnect) {
    StreamOptions options;
    options.disconnectAfter = 3;
    ProbeStream stream(ProbeSettings{}, options);
    EXPECT_TRUE(stream.isFinite());
    EXPECT_EQ(stream.end(), StreamEnd::Running);
    EXPECT_EQ(stream.drain().size(), 3 * 139u);
    EXPECT_EQ(stream.end(), StreamEnd::Disconnected);
    EXPECT_FALSE(stream.next().has_value());

    options.frames = 2;
    ProbeStream shorter(ProbeSettings{}, options);
    EXPECT_EQ(shorter.drain().size(), 2 * 139u);
    EXPECT_EQ(shorter.end(), StreamEnd::Finished);
}

TEST(ProbeStream, ReplaySendsExactlyTheFileBytes) {
    const auto file = fileBytes(300);
    ProbeStream stream = ProbeStream::replay(file, false);
    const auto chunks = allChunks(stream);
    ASSERT_EQ(chunks.size(), 3u);
    EXPECT_EQ(chunks[0].bytes.size(), 139u);
    EXPECT_EQ(chunks[1].bytes.size(), 139u);
    EXPECT_EQ(chunks[2].bytes.size(), 22u);
    EXPECT_EQ(chunks[2].lineBytes, 22u);
    EXPECT_EQ(join(chunks), file);
    EXPECT_EQ(stream.end(), StreamEnd::Finished);
}

TEST(ProbeStream, LoopedReplayRepeatsTheFile) {
    const auto file = fileBytes(200);
    ProbeStream stream = ProbeStream::replay(file, true, frames(5));
    std::vector<std::uint8_t> expected = file;
    expected.insert(expected.end(), file.begin(), file.end());
    expected.insert(expected.end(), file.begin(), file.begin() + 139);
    EXPECT_EQ(stream.drain(), expected);
}

TEST(ProbeStream, EmptyReplayEndsAtOnceEvenLooped) {
    ProbeStream stream = ProbeStream::replay({}, true);
    EXPECT_TRUE(stream.isFinite());
    EXPECT_FALSE(stream.next().has_value());
    EXPECT_EQ(stream.end(), StreamEnd::Finished);
}

TEST(ProbeStream, DrainOfAnEndlessStreamIsRefused) {
    ProbeStream stream{ProbeSettings{}};
    EXPECT_FALSE(stream.isFinite());
    EXPECT_THROW(stream.drain(), std::logic_error);
    EXPECT_THROW(ProbeStream::replay(fileBytes(10), true).drain(), std::logic_error);
}
