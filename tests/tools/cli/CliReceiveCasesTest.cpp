// zorvik-cli decode through the cases of the receive cycle: waiting markers, hunting, a sync
// byte in second place, rejected and short frames, and a stream with dropped bytes.
#include "CliRunner.h"
#include "instrument/ReceiveMachine.h"

#include <gtest/gtest.h>

using namespace zorvik;
using namespace zorvik::test;

namespace {

/// decode --events: every read's outcome, one line each.
CliResult decode(const Bytes& stream, QStringList extra = {}) {
    QTemporaryDir dir;
    const QString path = writeFile(dir, "stream.bin", stream);
    return runCli(QStringList{"decode", path, "--events"} + extra);
}

int countOf(const QList<QByteArray>& lines, const QByteArray& line) {
    return static_cast<int>(std::count(lines.begin(), lines.end(), line));
}

const QByteArray kHunt = R"({"event":"hunt"})";

} // namespace

// Without --events only the frames are printed: the rejected frame, the hunts and the waiting
// markers of the same stream leave no line.
TEST(CliReceiveCases, WithoutEventsOnlyTheFramesArePrinted) {
    QTemporaryDir dir;
    const Bytes stream = join({{0x7D, 0x7D},
                               {0x01},
                               frame(sampleState(), 0),
                               frame(sampleState(), 1),
                               frame(sampleState(), 2)});
    const CliResult r = runCli({"decode", writeFile(dir, "stream.bin", stream)});
    ASSERT_EQ(r.exitCode, 0);
    const QList<QByteArray> lines = r.lines();
    ASSERT_EQ(lines.size(), 1);
    EXPECT_TRUE(lines[0].startsWith(R"({"event":"frame","index":0,)"));
    EXPECT_EQ(arrayItems(lines[0], "raw")[0], "2");
    // The same with --events: the waiting marker, the rejected frame, 69 hunts, the frame.
    const CliResult all = decode(stream);
    ASSERT_EQ(all.lines().size(), 72);
    EXPECT_EQ(all.lines()[71], lines[0]);
}

TEST(CliReceiveCases, WaitingMarkerPrintsWaitingAndTheNextFrameFollows) {
    const CliResult r = decode(join({{0x7D, 0x7D}, {0x7D, 0x7D}, frame(sampleState(), 5)}));
    ASSERT_EQ(r.exitCode, 0);
    const QList<QByteArray> lines = r.lines();
    ASSERT_EQ(lines.size(), 3);
    EXPECT_EQ(lines[0], R"({"event":"waiting"})");
    EXPECT_EQ(lines[1], R"({"event":"waiting"})");
    EXPECT_TRUE(lines[2].startsWith(R"({"event":"frame","index":0,)"));
    EXPECT_EQ(arrayItems(lines[2], "raw")[0], "5");
}

TEST(CliReceiveCases, StreamStartingMidFrameHuntsTwoBytesAtATimeUntilTheNextFrame) {
    // 128 bytes of a frame's tail without a sync byte: 64 hunts, then the next frame.
    const Bytes first = frame(sampleState(), 0);
    const Bytes tail(first.begin() + 11, first.end());
    ASSERT_EQ(tail.size(), 128u);
    const CliResult r = decode(join({tail, frame(sampleState(), 7)}));
    ASSERT_EQ(r.exitCode, 0);
    const QList<QByteArray> lines = r.lines();
    ASSERT_EQ(lines.size(), 65);
    EXPECT_EQ(countOf(lines, kHunt), 64);
    EXPECT_TRUE(lines[64].startsWith(R"({"event":"frame","index":0,)"));
    EXPECT_EQ(arrayItems(lines[64], "raw")[0], "7");
}

TEST(CliReceiveCases, SyncInSecondPlaceFollowedByAWholeFrameIsAccepted) {
    const CliResult r = decode(join({{0x01, 0x7D}, frame(sampleState(), 3)}));
    ASSERT_EQ(r.exitCode, 0);
    ASSERT_EQ(r.lines().size(), 1);
    EXPECT_TRUE(r.lines()[0].startsWith(R"({"event":"frame","index":0,"bytSwitchSetting":36,)"));
    EXPECT_EQ(arrayItems(r.lines()[0], "raw")[0], "3");
}

TEST(CliReceiveCases, RejectedFrameShowsTheStateBytesStoredBeforeTheCheck) {
    // The probe (0x01, 0x7D) takes the sync byte; the 139 bytes read after it begin with the
    // frame's switch setting, so the check fails. The fields were stored one place on:
    // switch = time base 6, time base = trigger 64, trigger = level 16, level = sample 0,
    // DVM100..DVMflags = DVM10, DVM1, DVMflags, reserved.
    const Bytes stream =
        join({{0x01}, frame(sampleState(), 0), frame(sampleState(), 1), frame(sampleState(), 2)});
    const CliResult r = decode(stream);
    ASSERT_EQ(r.exitCode, 0);
    const QList<QByteArray> lines = r.lines();
    ASSERT_EQ(lines.size(), 71);
    EXPECT_EQ(lines[0], R"({"event":"rejected","bytSwitchSetting":6,"bytTimebaseDef":64,)"
                        R"("bytTriggerDef":16,"bytTriggerLvl":0,"bytDVM100":2,"bytDVM10":3,)"
                        R"("bytDVM1":4,"bytDVMflags":0})");
    // The read also took the next frame's sync byte: its other 138 bytes are 69 hunts.
    EXPECT_EQ(countOf(lines, kHunt), 69);
    EXPECT_TRUE(lines[70].startsWith(R"({"event":"frame","index":0,"bytSwitchSetting":36,)"));
    EXPECT_EQ(arrayItems(lines[70], "raw")[0], "2");
}

TEST(CliReceiveCases, FrameWithSwitchSetting0x7DAfterASyncInSecondPlaceIsRejected) {
    HardwareState s = sampleState();
    s.bytSwitchSetting = 0x7D;
    const CliResult r = decode(join({{0x01, 0x7D}, frame(s, 0)}));
    ASSERT_EQ(r.lines().size(), 1);
    EXPECT_EQ(r.lines()[0], R"({"event":"rejected","bytSwitchSetting":125,"bytTimebaseDef":6,)"
                            R"("bytTriggerDef":64,"bytTriggerLvl":16,"bytDVM100":1,"bytDVM10":2,)"
                            R"("bytDVM1":3,"bytDVMflags":4})");
    // Nothing but a rejected frame: no frame and no waiting marker, so no probe data.
    EXPECT_EQ(r.exitCode, kFailureStatus);
}

TEST(CliReceiveCases, SyncFollowedBy0x7DIsAWaitingMarkerNeverAFrame) {
    HardwareState s = sampleState();
    s.bytSwitchSetting = 0x7D;
    // 137 bytes after the marker: 68 hunts and a trailing byte that ends the stream.
    const CliResult r = decode(frame(s, 0));
    ASSERT_EQ(r.exitCode, 0);
    const QList<QByteArray> lines = r.lines();
    ASSERT_EQ(lines.size(), 69);
    EXPECT_EQ(lines[0], R"({"event":"waiting"})");
    EXPECT_EQ(countOf(lines, kHunt), 68);
}

TEST(CliReceiveCases, StreamEndingInsideAFramePrintsShort) {
    const Bytes second = frame(sampleState(), 1);
    const Bytes stream =
        join({frame(sampleState(), 0), Bytes(second.begin(), second.begin() + 60)});
    const CliResult r = decode(stream);
    ASSERT_EQ(r.exitCode, 0);
    ASSERT_EQ(r.lines().size(), 2);
    EXPECT_TRUE(r.lines()[0].startsWith(R"({"event":"frame","index":0,)"));
    EXPECT_EQ(r.lines()[1], R"({"event":"short"})");
    EXPECT_TRUE(r.err.isEmpty());
}

// A capture stopped while it awaited the rest of a frame leaves its recording ending with the
// frame's sync probe: the read of the rest never completed, and nothing is printed for it.
TEST(CliReceiveCases, StreamEndingRightAfterASyncProbeEndsSilently) {
    const CliResult r = decode(join({frame(sampleState(), 0), {0x7D, 0x24}}));
    ASSERT_EQ(r.exitCode, 0);
    ASSERT_EQ(r.lines().size(), 1);
    EXPECT_TRUE(r.lines()[0].startsWith(R"({"event":"frame","index":0,)"));
    EXPECT_TRUE(r.err.isEmpty());
}

// The same after a probe that finds the sync byte in its second place (the whole frame is
// then read): no rejected frame is made up for it.
TEST(CliReceiveCases, StreamEndingRightAfterASecondPlaceSyncProbeEndsSilently) {
    const CliResult r = decode(join({frame(sampleState(), 0), {0x05, 0x7D}}));
    ASSERT_EQ(r.exitCode, 0);
    ASSERT_EQ(r.lines().size(), 1);
    EXPECT_TRUE(r.lines()[0].startsWith(R"({"event":"frame","index":0,)"));
}

TEST(CliReceiveCases, TrailingSingleByteWhileHuntingEndsTheStreamSilently) {
    const CliResult r = decode(join({frame(sampleState(), 0), {0x05}}));
    ASSERT_EQ(r.exitCode, 0);
    ASSERT_EQ(r.lines().size(), 1);
    EXPECT_TRUE(r.lines()[0].startsWith(R"({"event":"frame","index":0,)"));
    EXPECT_TRUE(r.err.isEmpty());
}

TEST(CliReceiveCases, StreamWithDroppedBytesDecodesToTheFramesTheReceiveCycleAccepts) {
    // Ten frames; sample 10 of frames 3 and 6 is lost on the way. The read of frame 3's rest
    // then ends on frame 4's sync byte, so frame 3 is shown with its samples moved up one
    // place, and frame 4 goes by in 69 hunts; the same happens to frames 6 and 7.
    Bytes stream;
    for (int seed = 0; seed < 10; ++seed) {
        Bytes f = frame(sampleState(), seed);
        if (seed == 3 || seed == 6)
            f.erase(f.begin() + 5 + 10);
        stream.insert(stream.end(), f.begin(), f.end());
    }
    const CliResult r = decode(stream);
    ASSERT_EQ(r.exitCode, 0);
    QList<QByteArray> frames;
    for (const QByteArray& line : r.lines()) {
        if (line.startsWith(R"({"event":"frame")"))
            frames << line;
    }
    EXPECT_EQ(countOf(r.lines(), kHunt), 2 * 69);
    ASSERT_EQ(frames.size(), 8);
    const int seeds[] = {0, 1, 2, 3, 5, 6, 8, 9};
    for (int k = 0; k < 8; ++k) {
        EXPECT_TRUE(frames[k].startsWith(QByteArray(R"({"event":"frame","index":)") +
                                         QByteArray::number(k) + ","));
        EXPECT_EQ(arrayItems(frames[k], "raw")[0], QByteArray::number(seeds[k]));
    }
    // Frame 3 as shown: samples 0..9, 11..127, then the reserved byte 0; the DVM fields
    // moved one place too.
    const QList<QByteArray> raw3 = arrayItems(frames[3], "raw");
    EXPECT_EQ(raw3[9], "12");
    EXPECT_EQ(raw3[10], "14");
    EXPECT_EQ(raw3[127], "0");
    EXPECT_TRUE(frames[3].contains(R"("bytDVM100":2,"bytDVM10":3,"bytDVM1":4,"bytDVMflags":0,)"));

    // The same stream through the program's receive cycle gives the same samples.
    ReceiveMachine machine;
    machine.blnAcquire = true;
    machine.arm();
    std::size_t at = 0;
    int shown = 0;
    while (at + static_cast<std::size_t>(machine.pending().count) <= stream.size()) {
        const auto n = static_cast<std::size_t>(machine.pending().count);
        const ReceiveStep step = machine.onData(std::span(stream.data() + at, n));
        at += n;
        if (step.event != ReceiveEvent::Frame)
            continue;
        ASSERT_LT(shown, frames.size());
        const QList<QByteArray> raw = arrayItems(frames[shown++], "raw");
        for (std::size_t i = 0; i < kSamplesPerFrame; ++i)
            EXPECT_EQ(raw[static_cast<int>(i)], QByteArray::number(machine.bytRawData()[i]));
    }
    EXPECT_EQ(shown, 8);
}
