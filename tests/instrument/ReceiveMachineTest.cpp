// Tests of the receive cycle: probes, sync cases, waiting marker, guards and holding.
#include "instrument/ReceiveMachine.h"
#include "common/FrameBytes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

using namespace zorvik;
using zorvik::test::frameBytes;
using zorvik::test::sampleState;

namespace {

using Bytes = std::vector<std::uint8_t>;

/// Feeds a stream as a serial port would deliver it when each read finds the bytes it asks
/// for; stops when the stream cannot satisfy a read. Returns every step taken.
std::vector<ReceiveStep> feed(ReceiveMachine& m, const Bytes& stream) {
    std::vector<ReceiveStep> steps;
    std::size_t pos = 0;
    while (m.pending().count > 0) {
        const auto want = static_cast<std::size_t>(m.pending().count);
        if (stream.size() - pos < want)
            break;
        steps.push_back(m.onData(std::span(stream).subspan(pos, want)));
        pos += want;
    }
    return steps;
}

RawSamples samplesOf(const Bytes& frame) {
    RawSamples s{};
    std::copy(frame.begin() + 5, frame.begin() + 133, s.begin());
    return s;
}

ReceiveMachine acquiring() {
    ReceiveMachine m;
    m.blnAcquire = true;
    m.arm();
    return m;
}

} // namespace

TEST(ReceiveMachine, ArmAsksForTheTwoByteProbeWithoutTimeOut) {
    ReceiveMachine m;
    EXPECT_EQ(m.pending(), (ReadRequest{0, false}));
    EXPECT_EQ(m.arm(), (ReadRequest{2, false}));
    EXPECT_EQ(m.pending(), (ReadRequest{2, false}));
}

TEST(ReceiveMachine, SyncInPlace0ReadsThe137ByteRestAndStoresTheFrame) {
    auto m = acquiring();
    const Bytes f = frameBytes(sampleState(), 7);
    auto probe = m.onData(std::span(f).first(2));
    EXPECT_EQ(probe.event, ReceiveEvent::SyncFound);
    EXPECT_EQ(probe.pointer1, kPointerTriggered);
    EXPECT_TRUE(probe.disablePrint);
    EXPECT_FALSE(probe.show);
    EXPECT_EQ(probe.next, (ReadRequest{137, true}));

    auto rest = m.onData(std::span(f).subspan(2));
    EXPECT_EQ(rest.event, ReceiveEvent::Frame);
    EXPECT_TRUE(rest.show);
    EXPECT_FALSE(rest.resetInput);
    EXPECT_EQ(rest.next, (ReadRequest{2, false}));
    EXPECT_EQ(m.state(), sampleState());
    EXPECT_EQ(m.bytRawData(), samplesOf(f));
    EXPECT_EQ(m.intFrameIndex(), 129);
}

TEST(ReceiveMachine, BackToBackFramesStayLocked) {
    auto m = acquiring();
    Bytes stream;
    for (int k = 0; k < 5; ++k) {
        const Bytes f = frameBytes(sampleState(), k);
        stream.insert(stream.end(), f.begin(), f.end());
    }
    const auto steps = feed(m, stream);
    ASSERT_EQ(steps.size(), 10u);
    for (std::size_t i = 0; i < steps.size(); i += 2) {
        EXPECT_EQ(steps[i].event, ReceiveEvent::SyncFound);
        EXPECT_EQ(steps[i + 1].event, ReceiveEvent::Frame);
    }
    EXPECT_EQ(m.bytRawData(), samplesOf(frameBytes(sampleState(), 4)));
}

TEST(ReceiveMachine, StreamStartingMidFrameDropsTwoBytesPerEventThenShowsNextWholeFrame) {
    for (std::size_t start = 1; start < 40; ++start) {
        auto m = acquiring();
        Bytes stream;
        for (int k = 0; k < 6; ++k) {
            const Bytes f = frameBytes(sampleState(), 10 * k);
            stream.insert(stream.end(), f.begin(), f.end());
        }
        stream.erase(stream.begin(), stream.begin() + static_cast<std::ptrdiff_t>(start));
        const auto steps = feed(m, stream);
        // Until the first sync shows, every event is a two-byte hunt.
        std::size_t i = 0;
        while (i < steps.size() && steps[i].event == ReceiveEvent::Hunt) {
            EXPECT_EQ(steps[i].next, (ReadRequest{2, false}));
            EXPECT_EQ(steps[i].pointer1, kPointerWaiting);
            ++i;
        }
        ASSERT_LT(i, steps.size()) << "start " << start;
        EXPECT_EQ(steps[i].event, ReceiveEvent::SyncFound);
        // The first frame shown is a whole frame of the stream, and from then on every
        // frame is shown.
        const auto firstShown =
            std::find_if(steps.begin(), steps.end(), [](const ReceiveStep& s) { return s.show; });
        ASSERT_NE(firstShown, steps.end()) << "start " << start;
        const auto shown =
            std::count_if(steps.begin(), steps.end(), [](const ReceiveStep& s) { return s.show; });
        // Odd start: the sync of frame 1 lands in place 0 and frames 1..5 are shown. Even
        // start: it lands in place 1, the 139-byte read fails its check and eats frame 2's
        // sync, so frames 3..5 are shown.
        EXPECT_EQ(shown, start % 2 == 1 ? 5 : 3) << "start " << start;
        EXPECT_EQ(m.bytRawData(), samplesOf(frameBytes(sampleState(), 50))) << "start " << start;
    }
}

TEST(ReceiveMachine, TwoSyncBytesInARowAreTheWaitingMarkerWithInputReset) {
    auto m = acquiring();
    const Bytes marker{0x7D, 0x7D};
    auto step = m.onData(marker);
    EXPECT_EQ(step.event, ReceiveEvent::Waiting);
    EXPECT_EQ(step.pointer1, kPointerWaiting);
    EXPECT_TRUE(step.resetInput);
    EXPECT_FALSE(step.show);
    EXPECT_EQ(step.next, (ReadRequest{2, false}));
}

TEST(ReceiveMachine, SyncFollowedByFieldOf0x7DIsTakenAsWaitingMarkerNeverAsFrame) {
    auto m = acquiring();
    auto s = sampleState();
    s.bytSwitchSetting = 0x7D;
    const Bytes stream = frameBytes(s, 3);
    const auto steps = feed(m, stream);
    ASSERT_FALSE(steps.empty());
    EXPECT_EQ(steps[0].event, ReceiveEvent::Waiting);
    for (const auto& st : steps)
        EXPECT_FALSE(st.show);
    EXPECT_EQ(m.state(), HardwareState{});
}

TEST(ReceiveMachine, NoSyncInSightDropsTwoBytesWithoutReset) {
    auto m = acquiring();
    auto step = m.onData(Bytes{0x10, 0x20});
    EXPECT_EQ(step.event, ReceiveEvent::Hunt);
    EXPECT_EQ(step.pointer1, kPointerWaiting);
    EXPECT_FALSE(step.resetInput);
    EXPECT_FALSE(step.show);
    EXPECT_EQ(step.next, (ReadRequest{2, false}));
}

TEST(ReceiveMachine, SyncInPlace1ReadsA139ByteFrameThatMustBeginWithSync) {
    auto m = acquiring();
    auto probe = m.onData(Bytes{0x05, 0x7D});
    EXPECT_EQ(probe.event, ReceiveEvent::SyncFound);
    EXPECT_EQ(probe.pointer1, kPointerTriggered);
    EXPECT_EQ(probe.next, (ReadRequest{139, true}));
    const Bytes f = frameBytes(sampleState(), 9);
    auto rest = m.onData(f);
    EXPECT_EQ(rest.event, ReceiveEvent::Frame);
    EXPECT_TRUE(rest.show);
    EXPECT_EQ(m.state(), sampleState());
    EXPECT_EQ(m.bytRawData(), samplesOf(f));
    // The frame handed on: the record and the kind of read that showed it.
    EXPECT_EQ(m.frame(), (DecodedFrame{ReceiveEvent::Frame, sampleState(), samplesOf(f)}));
}

TEST(ReceiveMachine, SyncInPlace1StoresStateBytesBeforeTheCheckAndKeepsThemWhenRejected) {
    auto m = acquiring();
    // A whole frame first: its samples must survive the rejected read.
    const Bytes whole = frameBytes(sampleState(), 99);
    m.onData(Bytes{0x05, 0x7D});
    ASSERT_EQ(m.onData(whole).event, ReceiveEvent::Frame);
    m.onData(Bytes{0x05, 0x7D});
    Bytes r(139, 0);
    r[0] = 0x24; // not a sync: the check fails
    r[1] = 0x11;
    r[2] = 0x22;
    r[3] = 0x33;
    r[4] = 0x44;
    r[134] = 0x55;
    r[135] = 0x66;
    r[136] = 0x77;
    r[137] = 0x88;
    auto step = m.onData(r);
    EXPECT_EQ(step.event, ReceiveEvent::Rejected);
    EXPECT_FALSE(step.show);
    EXPECT_EQ(step.next, (ReadRequest{2, false}));
    HardwareState expected{0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77, 0x88};
    EXPECT_EQ(m.state(), expected);
    EXPECT_EQ(m.bytRawData(), samplesOf(whole));
}

TEST(ReceiveMachine, FrameWithSwitchSetting0x7DInCase4IsRejectedByTheSecondByteCheck) {
    auto m = acquiring();
    m.onData(Bytes{0x00, 0x7D});
    auto s = sampleState();
    s.bytSwitchSetting = 0x7D;
    auto step = m.onData(frameBytes(s, 1));
    EXPECT_EQ(step.event, ReceiveEvent::Rejected);
    EXPECT_EQ(m.state().bytSwitchSetting, 0x7D);
}

TEST(ReceiveMachine, ShortRestIsNotShownAndTheCycleRearms) {
    auto m = acquiring();
    const Bytes f = frameBytes(sampleState(), 2);
    m.onData(std::span(f).first(2));
    auto step = m.onData(std::span(f).subspan(2, 100));
    EXPECT_EQ(step.event, ReceiveEvent::Short);
    EXPECT_FALSE(step.show);
    EXPECT_EQ(step.next, (ReadRequest{2, false}));
    // The copy stops at the guard: samples 0..94 were copied (i = 3..97 of r).
    EXPECT_EQ(m.intFrameIndex(), 96);
}

// The last sample is r[130]; the guard wants two bytes beyond it (highest index - 2), so a
// rest of 132 bytes (r[0..131]) is short and one of 133 bytes (r[0..132]) is whole.
TEST(ReceiveMachine, RestOf132BytesIsShortAnd133IsWhole) {
    const Bytes f = frameBytes(sampleState(), 2);
    auto m = acquiring();
    m.onData(std::span(f).first(2));
    const ReceiveStep shortRest = m.onData(std::span(f).subspan(2, 132));
    EXPECT_EQ(shortRest.event, ReceiveEvent::Short);
    EXPECT_FALSE(shortRest.show);
    EXPECT_EQ(m.intFrameIndex(), 128); // samples 1 to 127 copied, the 128th not
    m.arm();
    m.onData(std::span(f).first(2));
    const ReceiveStep wholeRest = m.onData(std::span(f).subspan(2, 133));
    EXPECT_EQ(wholeRest.event, ReceiveEvent::Frame);
    EXPECT_TRUE(wholeRest.show);
    EXPECT_EQ(m.intFrameIndex(), 129);
    EXPECT_TRUE(std::equal(m.bytRawData().begin(), m.bytRawData().end(), f.begin() + 5));
}

TEST(ReceiveMachine, ProbeWhileAcquisitionHeldStoresValueButArmsNothing) {
    ReceiveMachine m;
    m.arm();
    m.blnAcquire = false;
    auto step = m.onData(Bytes{0x7D, 0x24});
    EXPECT_EQ(step.event, ReceiveEvent::Held);
    EXPECT_EQ(m.Value(), (Bytes{0x7D, 0x24}));
    EXPECT_FALSE(step.show);
    EXPECT_FALSE(step.disablePrint);
    EXPECT_FALSE(step.pointer1.has_value());
    EXPECT_EQ(step.next, (ReadRequest{0, false}));
    EXPECT_EQ(m.pending(), (ReadRequest{0, false}));
}

TEST(ReceiveMachine, ProbeOfOtherThanTwoBytesShowsThePresentRecordAgain) {
    auto m = acquiring();
    const Bytes f = frameBytes(sampleState(), 9);
    m.onData(Bytes{0x05, 0x7D});
    ASSERT_EQ(m.onData(f).event, ReceiveEvent::Frame);
    auto step = m.onData(Bytes{0x7D});
    EXPECT_EQ(step.event, ReceiveEvent::Redraw);
    EXPECT_TRUE(step.show);
    EXPECT_EQ(step.next, (ReadRequest{2, false}));
    // The present record again, handed on as a redraw.
    EXPECT_EQ(m.frame(), (DecodedFrame{ReceiveEvent::Redraw, sampleState(), samplesOf(f)}));
}

TEST(ReceiveMachine, TimeOutOfTheRestTakesTheFailurePath) {
    auto m = acquiring();
    m.onData(Bytes{0x7D, 0x24});
    auto step = m.onTimeout();
    EXPECT_EQ(step.event, ReceiveEvent::TimedOut);
    EXPECT_EQ(m.pending(), (ReadRequest{0, false}));
}

TEST(ReceiveMachine, TimeOutWhileProbingIsIgnored) {
    auto m = acquiring();
    EXPECT_EQ(m.onTimeout().event, ReceiveEvent::Ignored);
    EXPECT_EQ(m.pending(), (ReadRequest{2, false}));
}

TEST(ReceiveMachine, BytesWithNoReadArmedAreIgnored) {
    ReceiveMachine m;
    m.blnAcquire = true;
    auto step = m.onData(Bytes{0x7D, 0x24});
    EXPECT_EQ(step.event, ReceiveEvent::Ignored);
    EXPECT_FALSE(step.show);
}

TEST(ReceiveMachine, StopDropsThePendingFrameRead) {
    auto m = acquiring();
    m.onData(Bytes{0x7D, 0x24});
    m.stop();
    EXPECT_EQ(m.pending(), (ReadRequest{0, false}));
    EXPECT_EQ(m.onData(Bytes(137, 1)).event, ReceiveEvent::Ignored);
}
