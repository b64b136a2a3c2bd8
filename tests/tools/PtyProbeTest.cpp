// Tests of the virtual probe on a pseudo-terminal, read end to end with plain POSIX calls.
#include "probe/PtyProbe.h"
#include "PtyReader.h"

#include <cstdio>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <mutex>
#include <numeric>
#include <thread>

using namespace zorvik;
using namespace zorvik::test;
using namespace std::chrono_literals;

namespace {

PtyProbe::Options unpaced() {
    PtyProbe::Options options;
    options.paced = false;
    return options;
}

StreamOptions frames(std::uint64_t count) {
    StreamOptions options;
    options.frames = count;
    return options;
}

std::chrono::milliseconds timed(const std::function<void()>& action) {
    const auto start = Clock::now();
    action();
    return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start);
}

std::string tempPath(const std::string& name) {
    const auto dir = std::filesystem::temp_directory_path() /
                     ("zorvik-probe-test-" + std::to_string(::getpid()));
    std::filesystem::create_directories(dir);
    return (dir / name).string();
}

} // namespace

TEST(PtyProbe, ReaderGetsWholeFramesExactly) {
    PtyProbe probe{ProbeStream{ProbeSettings{}}};
    probe.start();
    ASSERT_TRUE(pathExists(probe.devicePath()));
    PtyReader reader(probe.devicePath());
    ASSERT_TRUE(reader.isOpen());
    const auto bytes = reader.read(3 * 139, 3s);
    EXPECT_EQ(bytes, makeProbeBytes(ProbeSettings{}, 3));
    EXPECT_TRUE(probe.isRunning());
}

TEST(PtyProbe, EveryByteValuePassesTheTerminalUnchanged) {
    // CR, LF, ^C, ^D, XON/XOFF, DEL and 0xFF would all be touched by a cooked terminal.
    std::vector<std::uint8_t> file(256 * 3);
    std::iota(file.begin(), file.end(), std::uint8_t{0});
    PtyProbe probe(ProbeStream::replay(file, false), unpaced());
    probe.start();
    PtyReader reader(probe.devicePath());
    EXPECT_EQ(reader.read(file.size(), 3s), file);
    ASSERT_TRUE(probe.waitUntilDone(2s));
    EXPECT_EQ(reader.available(), 0u);
    EXPECT_EQ(probe.bytesWritten(), file.size());
}

TEST(PtyProbe, ReplaySendsExactlyTheFileBytesAtTheLineRate) {
    std::vector<std::uint8_t> file(400);
    std::iota(file.begin(), file.end(), std::uint8_t{3});
    PtyProbe probe(ProbeStream::replay(file, false));
    probe.start();
    PtyReader reader(probe.devicePath());
    const auto start = Clock::now();
    EXPECT_EQ(reader.read(file.size(), 3s), file);
    // 400 bytes at 1920 bytes/s: 208 ms.
    EXPECT_GE(Clock::now() - start, 180ms);
    ASSERT_TRUE(probe.waitUntilDone(2s));
    EXPECT_EQ(reader.available(), 0u);
    EXPECT_FALSE(probe.isRunning());
}

TEST(PtyProbe, PacedRateIsTheLineRate) {
    PtyProbe probe{ProbeStream{ProbeSettings{}}};
    probe.start();
    PtyReader reader(probe.devicePath());
    std::vector<std::uint8_t> bytes;
    ASSERT_TRUE(reader.readSome(bytes, 4096, Clock::now() + 2s));
    // Count what arrives over about a second after the first bytes.
    bytes.clear();
    const auto start = Clock::now();
    const auto end = start + 1s;
    while (Clock::now() < end)
        reader.readSome(bytes, 4096, end);
    const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
    const double rate = bytes.size() / seconds;
    EXPECT_NEAR(rate, 1920.0, 1920.0 * 0.05) << bytes.size() << " bytes in " << seconds << " s";
    EXPECT_EQ(probe.bytesDropped(), 0u);
}

TEST(PtyProbe, UnpacedRateIsFarAboveTheLineRate) {
    PtyProbe probe(ProbeStream{ProbeSettings{}}, unpaced());
    probe.start();
    PtyReader reader(probe.devicePath());
    const std::size_t wanted = 200 * 139;
    const auto start = Clock::now();
    const auto bytes = reader.read(wanted, 5s);
    const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
    ASSERT_EQ(bytes.size(), wanted);
    EXPECT_GT(bytes.size() / seconds, 20 * 1920.0);
    EXPECT_EQ(bytes, makeProbeBytes(ProbeSettings{}, 200));
    EXPECT_EQ(probe.bytesDropped(), 0u);
}

TEST(PtyProbe, PacedProbeDropsBytesWhenNobodyReads) {
    PtyProbe::Options options;
    options.bytesPerSecond = 20e6; // fills the terminal's buffer quickly
    PtyProbe probe(ProbeStream{ProbeSettings{}}, options);
    probe.start();
    EXPECT_TRUE(waitFor([&] { return probe.bytesDropped() > 0; }, 10s));
    EXPECT_GT(probe.bytesWritten(), 0u);
}

TEST(PtyProbe, UnpacedProbeWaitsForTheReaderAndLosesNothing) {
    PtyProbe probe(ProbeStream{ProbeSettings{}}, unpaced());
    probe.start();
    // Nobody reads: the writer fills the terminal's buffer and then waits (the count stays put
    // from one look to the next).
    std::uint64_t written = 0;
    ASSERT_TRUE(waitFor(
        [&] {
            const auto before = written;
            written = probe.bytesWritten();
            return written > 0 && written == before;
        },
        10s));
    EXPECT_EQ(probe.bytesDropped(), 0u);
    PtyReader reader(probe.devicePath());
    const auto bytes = reader.read(written, 10s);
    const auto expected = makeProbeBytes(ProbeSettings{}, written / 139 + 1);
    ASSERT_EQ(bytes.size(), written);
    EXPECT_TRUE(std::equal(bytes.begin(), bytes.end(), expected.begin()));
    EXPECT_LT(timed([&] { probe.stop(); }), 100ms);
}

TEST(PtyProbe, StopReturnsPromptly) {
    PtyProbe probe{ProbeStream{ProbeSettings{}}};
    probe.start();
    ASSERT_TRUE(waitFor([&] { return probe.bytesWritten() > 0; }, 2s));
    const DeviceNode node = deviceNode(probe.devicePath());
    EXPECT_LT(timed([&] { probe.stop(); }), 100ms);
    EXPECT_FALSE(probe.isRunning());
    EXPECT_FALSE(stillThere(node));
}

TEST(PtyProbe, StopReturnsPromptlyDuringAStall) {
    StreamOptions options;
    options.stallAfter = 0;
    options.stallFor = 10s;
    PtyProbe probe(ProbeStream(ProbeSettings{}, options));
    probe.start();
    ASSERT_TRUE(waitFor([&] { return probe.bytesWritten() == 69; }, 2s));
    EXPECT_LT(timed([&] { probe.stop(); }), 100ms);
}

TEST(PtyProbe, StallPausesTheLineInTheMiddleOfAFrame) {
    StreamOptions options;
    options.stallAfter = 1;
    options.stallFor = 400ms;
    PtyProbe probe(ProbeStream(ProbeSettings{}, options));
    probe.start();
    PtyReader reader(probe.devicePath());
    const auto before = reader.read(139 + 69, 2s);
    ASSERT_EQ(before.size(), 139u + 69u);
    const auto stalledAt = Clock::now();
    const auto after = reader.read(70, 2s);
    ASSERT_EQ(after.size(), 70u);
    EXPECT_GE(Clock::now() - stalledAt, 350ms);
    auto bytes = before;
    bytes.insert(bytes.end(), after.begin(), after.end());
    EXPECT_EQ(bytes, makeProbeBytes(ProbeSettings{}, 2));
}

TEST(PtyProbe, WaitingMarkerLeavesTheLineQuietForTheRestOfItsFramePeriod) {
    StreamOptions options = frames(2);
    options.waitingBetween = 1;
    PtyProbe probe(ProbeStream(ProbeSettings{}, options));
    probe.start();
    PtyReader reader(probe.devicePath());
    ASSERT_EQ(reader.read(141, 2s).size(), 141u);
    const auto markerAt = Clock::now();
    ASSERT_EQ(reader.read(139, 2s).size(), 139u);
    // 137 byte times of quiet, then the 139 bytes of the frame: 143 ms at 1920 bytes/s.
    EXPECT_GE(Clock::now() - markerAt, 120ms);
}

TEST(PtyProbe, FiniteRunFinishesAndKeepsTheDeviceUntilStopped) {
    PtyProbe probe(ProbeStream(ProbeSettings{}, frames(2)), unpaced());
    probe.start();
    PtyReader reader(probe.devicePath());
    EXPECT_EQ(reader.read(2 * 139, 2s), makeProbeBytes(ProbeSettings{}, 2));
    EXPECT_TRUE(probe.waitUntilDone(2s));
    EXPECT_EQ(probe.framesSent(), 2u);
    EXPECT_EQ(probe.streamCounters().framesSent, 2u);
    EXPECT_TRUE(pathExists(probe.devicePath()));
    EXPECT_FALSE(probe.isDisconnected());
}

TEST(PtyProbe, DisconnectMakesTheDevicePathDisappear) {
    PtyProbe probe{ProbeStream{ProbeSettings{}}};
    probe.start();
    const std::string device = probe.devicePath();
    const DeviceNode node = deviceNode(device);
    PtyReader reader(device);
    ASSERT_EQ(reader.read(139, 2s).size(), 139u);
    EXPECT_LT(timed([&] { probe.disconnect(); }), 100ms);
    EXPECT_TRUE(waitFor([&] { return !stillThere(node); }, 1s));
    EXPECT_TRUE(probe.isDisconnected());
    // The open port fails from now on.
    std::vector<std::uint8_t> rest;
    while (reader.readSome(rest, 4096, Clock::now() + 1s)) {
    }
    EXPECT_TRUE(reader.hungUp());
}

TEST(PtyProbe, DisconnectAfterNFramesRemovesTheDeviceOnceTheReaderHasThem) {
    StreamOptions options;
    options.disconnectAfter = 2;
    PtyProbe probe(ProbeStream(ProbeSettings{}, options));
    probe.start();
    const std::string device = probe.devicePath();
    const DeviceNode node = deviceNode(device);
    PtyReader reader(device);
    std::vector<std::uint8_t> bytes;
    while (reader.readSome(bytes, 4096, Clock::now() + 2s)) {
    }
    EXPECT_EQ(bytes, makeProbeBytes(ProbeSettings{}, 2));
    EXPECT_TRUE(reader.hungUp());
    EXPECT_TRUE(probe.waitUntilDone(1s));
    EXPECT_TRUE(probe.isDisconnected());
    EXPECT_FALSE(stillThere(node));
}

TEST(PtyProbe, LinkPointsToTheDeviceAndIsRemovedOnStop) {
    PtyProbe::Options options;
    options.linkPath = tempPath("ttyProbe");
    PtyProbe probe(ProbeStream{ProbeSettings{}}, options);
    probe.start();
    EXPECT_EQ(std::filesystem::read_symlink(options.linkPath).string(), probe.devicePath());
    PtyReader reader(options.linkPath);
    EXPECT_EQ(reader.read(139, 2s), makeProbeBytes(ProbeSettings{}, 1));
    probe.stop();
    EXPECT_FALSE(pathExists(options.linkPath));
}

TEST(PtyProbe, StaleLinkIsReplacedButAnOrdinaryFileIsKept) {
    const std::string link = tempPath("stale");
    std::filesystem::remove(link);
    std::filesystem::create_symlink("/nonexistent/tty", link);
    PtyProbe::Options options;
    options.linkPath = link;
    PtyProbe probe(ProbeStream{ProbeSettings{}}, options);
    probe.start();
    EXPECT_EQ(std::filesystem::read_symlink(link).string(), probe.devicePath());
    probe.stop();

    const std::string file = tempPath("ordinary");
    std::FILE* f = std::fopen(file.c_str(), "w");
    ASSERT_NE(f, nullptr);
    std::fclose(f);
    options.linkPath = file;
    PtyProbe refused(ProbeStream{ProbeSettings{}}, options);
    EXPECT_THROW(refused.start(), std::system_error);
    EXPECT_FALSE(refused.isRunning());
    EXPECT_TRUE(std::filesystem::is_regular_file(file));
    std::filesystem::remove(file);
}

TEST(PtyProbe, SentBytesAreReportedAsTheyGoOut) {
    std::mutex mutex;
    std::vector<std::uint8_t> reported;
    PtyProbe::Options options = unpaced();
    options.onSent = [&](const std::uint8_t* bytes, std::size_t count) {
        std::lock_guard lock(mutex);
        reported.insert(reported.end(), bytes, bytes + count);
    };
    PtyProbe probe(ProbeStream(ProbeSettings{}, frames(3)), options);
    probe.start();
    PtyReader reader(probe.devicePath());
    const auto bytes = reader.read(3 * 139, 2s);
    ASSERT_TRUE(probe.waitUntilDone(2s));
    std::lock_guard lock(mutex);
    EXPECT_EQ(reported, bytes);
    EXPECT_EQ(probe.bytesWritten(), 3 * 139u);
}

TEST(PtyProbe, DueBytesAreReportedBeforeTheWriteAndIncludeThoseAFullTerminalDrops) {
    std::mutex mutex;
    std::vector<std::uint8_t> due;
    std::vector<std::uint8_t> sent;
    bool sentBeforeDue = false;
    PtyProbe::Options options;
    options.bytesPerSecond = 20e6; // nobody reads: the terminal fills and bytes are dropped
    options.onDue = [&](const std::uint8_t* bytes, std::size_t count) {
        std::lock_guard lock(mutex);
        due.insert(due.end(), bytes, bytes + count);
    };
    options.onSent = [&](const std::uint8_t* bytes, std::size_t count) {
        std::lock_guard lock(mutex);
        // What goes out was reported due first.
        if (due.size() < sent.size() + count)
            sentBeforeDue = true;
        sent.insert(sent.end(), bytes, bytes + count);
    };
    PtyProbe probe(ProbeStream(ProbeSettings{}, frames(400)), options);
    probe.start();
    ASSERT_TRUE(probe.waitUntilDone(10s));
    probe.stop();
    std::lock_guard lock(mutex);
    EXPECT_FALSE(sentBeforeDue);
    EXPECT_GT(probe.bytesDropped(), 0u);
    EXPECT_EQ(due.size(), 400u * 139u) << "every byte of the stream fell due once";
    EXPECT_EQ(due.size(), probe.bytesWritten() + probe.bytesDropped());
    EXPECT_EQ(sent.size(), probe.bytesWritten());
    // The stream starts with whole bytes written before the terminal filled up.
    ASSERT_FALSE(sent.empty());
    EXPECT_TRUE(std::equal(sent.begin(), sent.begin() + 139, due.begin()));
}
