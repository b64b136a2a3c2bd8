// Faults on the line, end to end: the real main window reads a virtual probe over a
// pseudo-terminal while the probe drops bytes, sends only garbage or stalls in the middle of
// a frame. The window must show exactly the frames the frame rules recover from what was sent,
// never hang, and take the defined error path when the line stops.
#include "NaiveFrameDecoder.h"
#include "ProbeSession.h"
#include "support/MessageBox.h"
#include "widgets/IndicatorSlide.h"
#include "widgets/Led.h"
#include "widgets/LitButton.h"

#include <QElapsedTimer>
#include <cstdio>
#include <random>
#include <set>
#include <string>

using namespace zorvik;
using namespace zorvik::test;

namespace {

const char* const kText = "Unable to Communicate with Instrument - Check Port Connection!";

/// Noise in free run: every frame differs from every other, so a frame is known by its bytes.
ProbeSettings noiseFreeRun() {
    ProbeSettings settings;
    settings.signal.shape = Shape::Noise;
    settings.trigger = 0x00;
    return settings;
}

/// The frames the frame rules take from `bytes` when reading starts at its first byte.
std::vector<ShownFrame> framesByTheRules(std::vector<std::uint8_t> bytes, int* waiting) {
    fuzz::LineScript script;
    script.chunks = {bytes.size()};
    script.actions = {fuzz::LineAction::None};
    script.bytes = std::move(bytes);
    std::vector<ShownFrame> frames;
    for (const fuzz::CycleRecord& r : fuzz::naiveDecode(script)) {
        if (r.kind == fuzz::CycleKind::Frame)
            frames.push_back({r.state, r.samples});
        *waiting += r.kind == fuzz::CycleKind::Waiting ? 1 : 0;
    }
    return frames;
}

/// The frame whose sync byte is at `p`, as the window would take it.
ShownFrame frameAt(const std::vector<std::uint8_t>& bytes, std::size_t p) {
    const std::uint8_t* f = bytes.data() + p;
    ShownFrame frame;
    frame.state = {f[1], f[2], f[3], f[4], f[134], f[135], f[136], f[137]};
    std::copy(f + 5, f + 133, frame.samples.begin());
    return frame;
}

std::string key(const ShownFrame& frame) {
    const HardwareState& s = frame.state;
    std::string bytes{static_cast<char>(s.bytSwitchSetting), static_cast<char>(s.bytTimebaseDef),
                      static_cast<char>(s.bytTriggerDef),    static_cast<char>(s.bytTriggerLvl),
                      static_cast<char>(s.bytDVM100),        static_cast<char>(s.bytDVM10),
                      static_cast<char>(s.bytDVM1),          static_cast<char>(s.bytDVMflags)};
    bytes.append(frame.samples.begin(), frame.samples.end());
    return bytes;
}

/// Frames of the probe's stream as they would have gone out with nothing dropped.
std::vector<ShownFrame> intactFrames(const ProbeSettings& settings, StreamOptions options) {
    options.dropProbability = 0.0;
    const std::vector<std::uint8_t> bytes = ProbeStream(settings, options).drain();
    std::vector<ShownFrame> frames;
    for (std::size_t p = 0; p + kFrameBytes <= bytes.size(); p += kFrameBytes)
        frames.push_back(frameAt(bytes, p));
    return frames;
}

class FaultInjection : public ProbeSession {};

class DroppedBytes : public ProbeSession, public ::testing::WithParamInterface<double> {};

} // namespace

TEST_P(DroppedBytes, WindowShowsEveryFrameTheFrameRulesRecoverFromWhatWasSent) {
    const double rate = GetParam();
    const ProbeSettings settings = noiseFreeRun();
    StreamOptions options;
    options.seed = 11;
    options.frames = soakRun() ? 10000 : 200;
    options.dropProbability = rate;
    PtyProbe::Options line;
    line.bytesPerSecond = (soakRun() ? 8 : 4) * kLineBytesPerSecond;
    frmMain& w = powerOn(ProbeStream(settings, options), line);
    const auto lineMs =
        static_cast<int>(*options.frames * kFrameBytes * 1000 / line.bytesPerSecond);
    ASSERT_TRUE(waitFor([&] { return !probe->isRunning(); }, lineMs + 10000));

    // The window's cycle began wherever its input was reset after the port search; from its
    // first frame on, the frame rules decide every further frame from the bytes sent.
    const std::vector<std::uint8_t> sent = sentBytes();
    ASSERT_FALSE(shown.empty());
    const std::int64_t first = findFrame(sent, shown[0]);
    ASSERT_GE(first, 0) << "the first frame shown is not a piece of what was sent";
    int waiting = 0;
    std::vector<ShownFrame> expected = framesByTheRules(
        std::vector<std::uint8_t>(sent.begin() + first + kFrameBytes, sent.end()), &waiting);
    expected.insert(expected.begin(), shown[0]);
    ASSERT_EQ(waiting, 0) << "dropped bytes never make a waiting marker of frame bytes";
    ASSERT_TRUE(waitFor([&] { return shown.size() >= expected.size(); }, 10000));
    // Off at once: the last frame may have lost bytes, and its read would run out of time.
    w.panel().CWBPwr->setValue(false);

    ASSERT_EQ(shown.size(), expected.size());
    for (std::size_t i = 0; i < shown.size(); ++i)
        ASSERT_TRUE(shown[i] == expected[i]) << "frame " << i << " differs from the frame rules";
    EXPECT_EQ(probe->bytesDropped(), 0u) << "the window fell behind the line";
    EXPECT_TRUE(messages.empty());
    EXPECT_EQ(steps(ReceiveEvent::Waiting), 0);

    // Figures: how many of the frames that went out whole came back. Noise makes every frame
    // unique, so a frame is known by its bytes.
    std::set<std::string> intact;
    for (const ShownFrame& frame : intactFrames(settings, options))
        intact.insert(key(frame));
    std::size_t intactAfterStart = 0;
    for (std::size_t p = static_cast<std::size_t>(first); p + kFrameBytes <= sent.size(); ++p) {
        if (sent[p] == kSyncByte && intact.count(key(frameAt(sent, p))))
            ++intactAfterStart;
    }
    std::size_t intactShown = 0;
    for (const ShownFrame& frame : shown)
        intactShown += intact.count(key(frame));
    const StreamCounters counts = probe->streamCounters();
    std::printf("drop rate %g: %llu frames sent, %llu intact, %llu bytes dropped; from the "
                "window's first frame on: %zu intact frames sent, %zu frames the frame rules "
                "recover, %zu shown (%zu intact, %zu damaged yet accepted by the rules); intact "
                "frames lost while the reader found its way back: %zu; longest stall %.1f ms "
                "(%.1f ms of it the window's own); %s\n",
                rate, static_cast<unsigned long long>(counts.framesSent),
                static_cast<unsigned long long>(counts.framesIntact),
                static_cast<unsigned long long>(counts.bytesDropped), intactAfterStart,
                expected.size(), shown.size(), intactShown, shown.size() - intactShown,
                intactAfterStart - intactShown, meter.longestGapMs(), meter.longestOwnGapMs(),
                longestSteps().c_str());
    EXPECT_LT(meter.longestOwnGapMs(), kMaxStallMs);
}

INSTANTIATE_TEST_SUITE_P(Rates, DroppedBytes, ::testing::Values(1e-4, 1e-3, 1e-2),
                         [](const ::testing::TestParamInfo<double>& info) {
                             return "OneIn" + std::to_string(std::lround(1.0 / info.param));
                         });

TEST_F(FaultInjection, GarbageWithoutSyncBytesShowsNoFrameAndTheWindowKeepsHunting) {
    std::mt19937 random(5);
    std::vector<std::uint8_t> garbage(50 * kFrameBytes);
    for (auto& byte : garbage) {
        do {
            byte = static_cast<std::uint8_t>(random());
        } while (byte == kSyncByte || byte == 0);
    }
    PtyProbe::Options line;
    line.bytesPerSecond = 4 * kLineBytesPerSecond;
    frmMain& w = powerOn(ProbeStream::replay(garbage, true), line);
    const int hunts = soakRun() ? 100000 : 2000;
    ASSERT_TRUE(waitFor([&] { return steps(ReceiveEvent::Hunt) >= hunts; }, 60000 + hunts));
    EXPECT_TRUE(shown.empty());
    EXPECT_EQ(steps(ReceiveEvent::SyncFound), 0);
    EXPECT_EQ(w.panel().CWSTrigger->pointerValue("Pointer-1"), 300);
    EXPECT_TRUE(w.panel().CWBPwr->value());
    EXPECT_TRUE(messages.empty());
    std::printf("garbage without sync bytes: %d two-byte probes, no frame; longest stall %.1f ms "
                "(%.1f ms own)\n",
                steps(ReceiveEvent::Hunt), meter.longestGapMs(), meter.longestOwnGapMs());
    EXPECT_LT(meter.longestOwnGapMs(), kMaxStallMs);
}

TEST_F(FaultInjection, GarbageOnlyStreamShowsOnlyFramesTheFrameRulesCutFromIt) {
    StreamOptions options;
    options.garbageOnly = true;
    options.seed = 3;
    ASSERT_NE(ProbeStream(ProbeSettings{}, options).next()->bytes.at(0), 0)
        << "the port search needs a first byte other than 0";
    PtyProbe::Options line;
    line.bytesPerSecond = 4 * kLineBytesPerSecond;
    frmMain& w = powerOn(ProbeStream(ProbeSettings{}, options), line);
    const std::size_t frames = soakRun() ? 500 : 5;
    ASSERT_TRUE(waitFor([&] { return shown.size() >= frames; }, 60000 + 200 * frames));
    w.panel().CWBPwr->setValue(false);

    // Random bytes hold a sync byte followed by another byte about once in 256 probes, and the
    // frame rules read the 137 bytes after it as a frame without a check: such frames are
    // shown, and each must be 139 bytes sent in a row, in the order they were sent.
    const std::vector<std::uint8_t> sent = sentBytes();
    std::size_t from = 0;
    for (std::size_t i = 0; i < shown.size(); ++i) {
        const std::int64_t at = findFrame(sent, shown[i], from);
        ASSERT_GE(at, 0) << "frame " << i << " is not a piece of what was sent";
        from = static_cast<std::size_t>(at) + kFrameBytes;
    }
    EXPECT_TRUE(messages.empty());
    std::printf("garbage only: %zu bytes sent, %d probes, %d waiting markers, %zu frames cut by "
                "the rules; longest stall %.1f ms (%.1f ms own); %s\n",
                sent.size(),
                steps(ReceiveEvent::Hunt) + steps(ReceiveEvent::SyncFound) +
                    steps(ReceiveEvent::Waiting),
                steps(ReceiveEvent::Waiting), shown.size(), meter.longestGapMs(),
                meter.longestOwnGapMs(), longestSteps().c_str());
    EXPECT_LT(meter.longestOwnGapMs(), kMaxStallMs);
}

TEST_F(FaultInjection, StallMidFrameTakesTheErrorPathWhileTheWindowKeepsAnswering) {
    // Frames flow for two seconds first, so that the window is reading them when the line stops.
    StreamOptions options;
    options.stallAfter = 30;
    options.stallFor = std::chrono::milliseconds(5000);
    frmMain& w = powerOn(ProbeStream(ProbeSettings{}, options));
    QElapsedTimer sinceSync;
    QObject::connect(&w.link(), &InstrumentLink::received, &w, [&](const ReceiveStep& step) {
        if (step.event == ReceiveEvent::SyncFound)
            sinceSync.start();
    });
    ASSERT_TRUE(waitFor([&] { return messages.size() == 1; }, 15000));
    const qint64 waited = sinceSync.elapsed();
    EXPECT_EQ(messages[0].icon, MsgIcon::Critical);
    EXPECT_EQ(messages[0].title, "Communication Error");
    EXPECT_EQ(messages[0].text, kText);
    EXPECT_FALSE(w.panel().CWBPwr->value());
    EXPECT_FALSE(w.panel().CWBPwrLed->value());
    EXPECT_FALSE(w.model().blnLiveData);
    EXPECT_FALSE(serial.isOpen());
    EXPECT_EQ(w.panel().sbrBaudRate->text(), "Baud: ");
    EXPECT_EQ(w.panel().sbrComPort->text(), "Com: ");
    EXPECT_EQ(w.panel().sbrSampleRate->text(), "Sample Rate: ");
    EXPECT_GE(steps(ReceiveEvent::Frame), 1);
    // The rest of the stalled frame is waited for 3 seconds.
    EXPECT_GE(waited, 2900);
    EXPECT_LT(waited, 4500);
    std::printf("stall mid-frame: error path %lld ms after the frame's sync; longest stall "
                "%.1f ms (%.1f ms own)\n",
                static_cast<long long>(waited), meter.longestGapMs(), meter.longestOwnGapMs());
    EXPECT_LT(meter.longestOwnGapMs(), kMaxStallMs);
}
