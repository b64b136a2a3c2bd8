// zorvik-cli against the virtual probe zorvik-probe: capture from its pseudo-terminal, and
// decode of what it sent with bytes lost on the way.
#include "CliRunner.h"
#include "instrument/ReceiveMachine.h"

#include <QFile>
#include <gtest/gtest.h>

using namespace zorvik;
using namespace zorvik::test;

namespace {

/// zorvik-probe serving on a pseudo-terminal for the length of a test.
class VirtualProbe {
public:
    explicit VirtualProbe(const QStringList& args) {
        process_.start(QStringLiteral(ZORVIK_PROBE_PROGRAM), args);
        // The probe prints its device on the first line once it serves.
        const bool ready =
            QTest::qWaitFor([this] { return process_.canReadLine() || !running(); }, 10000);
        if (ready && process_.canReadLine())
            device_ = QString::fromLocal8Bit(process_.readLine()).trimmed();
    }
    ~VirtualProbe() {
        process_.terminate();
        if (!QTest::qWaitFor([this] { return !running(); }, 5000))
            process_.kill();
        process_.waitForFinished(2000);
    }
    const QString& device() const { return device_; }
    bool running() const { return process_.state() != QProcess::NotRunning; }

private:
    QProcess process_;
    QString device_;
};

} // namespace

TEST(CliWithVirtualProbe, CaptureOf100FramesAsCsvShowsTheProbesDcLevel) {
    // 1 V DC on the 10 V range, free running, 20Ks/s.
    VirtualProbe probe({"--shape", "dc", "--offset", "1", "--range", "0x04", "--trigger", "fr",
                        "--timebase", "6", "--unpaced"});
    ASSERT_FALSE(probe.device().isEmpty());
    const CliResult r =
        runCli({"capture", "--port", probe.device(), "--frames", "100", "--format", "csv"});
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_TRUE(r.err.isEmpty()) << r.err.toStdString();
    const QList<QByteArray> lines = r.lines();
    ASSERT_EQ(lines.size(), 1 + 100 * 128);
    EXPECT_EQ(lines[0], "frame,sample,time_s,count,volts");
    const QByteArray count = lines[1].split(',')[3];
    const float volts = static_cast<float>(count.toInt() - 31) * 0.1587301f;
    EXPECT_NEAR(volts, 1.0f, 0.16f);
    for (int frameIndex = 0; frameIndex < 100; ++frameIndex) {
        for (int sample = 0; sample < 128; ++sample) {
            const QByteArray& row = lines[1 + frameIndex * 128 + sample];
            const QByteArray expected = QByteArray::number(frameIndex) + "," +
                                        QByteArray::number(sample) + "," +
                                        shortest(static_cast<float>(sample * 0.00005)) + "," +
                                        count + "," + shortest(volts);
            ASSERT_EQ(row, expected);
        }
    }
}

TEST(CliWithVirtualProbe, DecodeOfAStreamWithDroppedBytesShowsTheFramesTheWindowWould) {
    QTemporaryDir dir;
    const QString sent = dir.filePath("sent.bin");
    {
        VirtualProbe probe({"--shape", "sine", "--freq", "500", "--trigger", "fr", "--drop",
                            "0.002", "--seed", "7", "--frames", "60", "--unpaced", "--record",
                            sent});
        ASSERT_FALSE(probe.device().isEmpty());
        // The probe sends its 60 frames as fast as they are read, then removes its device.
        const CliResult capture = runCli({"capture", "--port", probe.device(), "--seconds", "5"});
        EXPECT_TRUE(capture.finished);
    }
    QFile file(sent);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    ASSERT_GT(bytes.size(), 50 * 139);
    const Bytes stream(bytes.begin(), bytes.end());

    const CliResult r = runCli({"decode", sent, "--events"});
    ASSERT_EQ(r.exitCode, 0);
    QList<QByteArray> shown;
    for (const QByteArray& line : r.lines()) {
        if (line.startsWith(R"({"event":"frame")"))
            shown << line;
    }

    // The window's receive cycle over the same bytes, read by read.
    ReceiveMachine machine;
    machine.blnAcquire = true;
    machine.arm();
    std::size_t at = 0;
    int frames = 0;
    while (at + static_cast<std::size_t>(machine.pending().count) <= stream.size()) {
        const auto n = static_cast<std::size_t>(machine.pending().count);
        const ReceiveStep step = machine.onData(std::span(stream.data() + at, n));
        at += n;
        if (step.event != ReceiveEvent::Frame)
            continue;
        ASSERT_LT(frames, shown.size());
        const QList<QByteArray> raw = arrayItems(shown[frames++], "raw");
        ASSERT_EQ(raw.size(), 128);
        for (std::size_t i = 0; i < kSamplesPerFrame; ++i)
            EXPECT_EQ(raw[static_cast<int>(i)], QByteArray::number(machine.bytRawData()[i]));
    }
    EXPECT_EQ(frames, shown.size());
    EXPECT_GT(frames, 30);
    EXPECT_TRUE(r.out.contains(R"({"event":"hunt"})")) << "bytes were lost on the way";
}
