// zorvik-cli capture on a pseudo-terminal that streams frames like the probe: frame and time
// limits, CSV, the raw recording, a port that vanishes or stays silent, a stalled frame,
// SIGINT and SIGTERM.
#include "CliRunner.h"
#include "FrameFeeder.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <gtest/gtest.h>
#include <signal.h>

using namespace zorvik;
using namespace zorvik::test;

namespace {

QList<QByteArray> frameLines(const QList<QByteArray>& lines) {
    QList<QByteArray> frames;
    for (const QByteArray& line : lines) {
        if (line.startsWith(R"({"event":"frame")"))
            frames << line;
    }
    return frames;
}

/// Collects the program's standard output until `count` frame lines have arrived.
bool waitForFrames(QProcess& cli, QByteArray& out, int count, int deadlineMs = 10000) {
    return QTest::qWaitFor(
        [&] {
            out += cli.readAllStandardOutput();
            return out.count(R"({"event":"frame")") >= count;
        },
        deadlineMs);
}

} // namespace

TEST(CliCapture, PrintsTheRequestedNumberOfFramesAndStops) {
    FrameFeeder feeder;
    ASSERT_TRUE(feeder.pty().ok());
    feeder.start();
    const CliResult r = runCli({"capture", "--port", feeder.path(), "--frames", "3"});
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_TRUE(r.err.isEmpty()) << r.err.toStdString();
    const QList<QByteArray> frames = frameLines(r.lines());
    ASSERT_EQ(frames.size(), 3);
    EXPECT_EQ(r.lines().back(), frames.back()) << "nothing is printed after the last frame";
    const int first = arrayItems(frames[0], "raw")[0].toInt();
    for (int k = 0; k < 3; ++k) {
        EXPECT_TRUE(frames[k].startsWith(QByteArray(R"({"event":"frame","index":)") +
                                         QByteArray::number(k) + R"(,"bytSwitchSetting":36,)"));
        EXPECT_TRUE(frames[k].contains(R"("strSampleRate":"20Ks/s","sngTrigLevel":0.5,)"));
        EXPECT_EQ(arrayItems(frames[k], "raw")[0].toInt(), (first + k) % 63);
    }
}

TEST(CliCapture, CsvPrintsHeaderAndTheRowsOfEachFrame) {
    FrameFeeder feeder;
    feeder.start();
    const CliResult r =
        runCli({"capture", "--port", feeder.path(), "--frames", "2", "--format", "csv"});
    ASSERT_EQ(r.exitCode, 0);
    const QList<QByteArray> lines = r.lines();
    ASSERT_EQ(lines.size(), 1 + 2 * 128);
    EXPECT_EQ(lines[0], "frame,sample,time_s,count,volts");
    EXPECT_TRUE(lines[1].startsWith("0,0,0,"));
    EXPECT_TRUE(lines[256].startsWith("1,127,0.00635,"));
}

TEST(CliCapture, RawRecordingDecodesToTheSameLines) {
    FrameFeeder feeder;
    feeder.start();
    QTemporaryDir dir;
    const QString raw = dir.filePath("capture.bin");
    const CliResult captured =
        runCli({"capture", "--port", feeder.path(), "--frames", "5", "--raw", raw});
    ASSERT_EQ(captured.exitCode, 0);
    EXPECT_EQ(frameLines(captured.lines()).size(), 5);
    EXPECT_GE(QFileInfo(raw).size(), 5 * 139);
    const CliResult decoded = runCli({"decode", raw});
    EXPECT_EQ(decoded.exitCode, 0);
    EXPECT_EQ(decoded.out, captured.out);
}

TEST(CliCapture, SecondsLimitEndsReceptionWithStatus0) {
    FrameFeeder feeder;
    feeder.start();
    QElapsedTimer clock;
    clock.start();
    const CliResult r = runCli({"capture", "--port", feeder.path(), "--seconds", "0.5"});
    const qint64 elapsed = clock.elapsed();
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_TRUE(r.err.isEmpty());
    EXPECT_GE(elapsed, 500);
    EXPECT_LT(elapsed, 5000);
    EXPECT_GE(frameLines(r.lines()).size(), 1);
    EXPECT_TRUE(r.out.endsWith("]}\n"));
}

TEST(CliCapture, VanishedPortExitsWithStatus1AndTheCommunicationMessage) {
    FrameFeeder feeder;
    feeder.start();
    auto cli = startCli({"capture", "--port", feeder.path()});
    QByteArray out;
    ASSERT_TRUE(waitForFrames(*cli, out, 1));
    feeder.stop();
    feeder.pty().closeAll();
    const CliResult r = finishCli(*cli, 10000, out);
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, kFailureStatus);
    // The message, then why: the port failed while frames came in.
    EXPECT_TRUE(
        r.err.startsWith(kCommunicationError + feeder.path().toUtf8() + ": the port failed"))
        << r.err.toStdString();
    EXPECT_EQ(r.err.count('\n'), 2);
    EXPECT_TRUE(r.out.endsWith("\n"));
}

TEST(CliCapture, MissingDeviceExitsWithStatus1AndTheCommunicationMessage) {
    const CliResult r = runCli({"capture", "--port", "/nonexistent/zorvik-tty", "--frames", "1"});
    EXPECT_EQ(r.exitCode, kFailureStatus);
    EXPECT_TRUE(r.out.isEmpty());
    EXPECT_EQ(r.err, kCommunicationError + "/nonexistent/zorvik-tty: not present\n");
}

TEST(CliCapture, SilentPortFailsAfterTheOneSecondProbe) {
    PtyPair silent;
    QElapsedTimer clock;
    clock.start();
    const CliResult r = runCli({"capture", "--port", QString::fromStdString(silent.path())});
    EXPECT_GE(clock.elapsed(), 950);
    EXPECT_EQ(r.exitCode, kFailureStatus);
    EXPECT_TRUE(r.out.isEmpty());
    EXPECT_EQ(r.err, kCommunicationError + QByteArray::fromStdString(silent.path()) +
                         ": no answer within 1 second (is the probe connected and switched "
                         "on?)\n");
}

TEST(CliCapture, FrameThatStallsTimesOutAfterThreeSeconds) {
    FrameFeeder feeder;
    feeder.start();
    auto cli = startCli({"capture", "--port", feeder.path()});
    QByteArray out;
    ASSERT_TRUE(waitForFrames(*cli, out, 1));
    feeder.stop();
    const Bytes half = frame(sampleState(), 0);
    feeder.pty().write(Bytes(half.begin(), half.begin() + 60));
    QElapsedTimer clock;
    clock.start();
    const CliResult r = finishCli(*cli, 10000, out);
    ASSERT_TRUE(r.finished);
    EXPECT_GE(clock.elapsed(), 2900);
    EXPECT_EQ(r.exitCode, kFailureStatus);
    EXPECT_EQ(r.err, kCommunicationError + feeder.path().toUtf8() +
                         ": the rest of a frame did not come within 3 seconds\n");
}

TEST(CliCapture, InterruptEndsWithStatus130AndAWholeRecording) {
    FrameFeeder feeder;
    feeder.start();
    QTemporaryDir dir;
    const QString raw = dir.filePath("capture.bin");
    auto cli = startCli({"capture", "--port", feeder.path(), "--raw", raw});
    QByteArray out;
    ASSERT_TRUE(waitForFrames(*cli, out, 2));
    ::kill(static_cast<pid_t>(cli->processId()), SIGINT);
    const CliResult r = finishCli(*cli, 10000, out);
    ASSERT_TRUE(r.finished);
    EXPECT_FALSE(r.crashed);
    EXPECT_EQ(r.exitCode, 130);
    EXPECT_EQ(r.err, "zorvik-cli: interrupted\n");
    EXPECT_TRUE(r.out.endsWith("]}\n"));
    const CliResult decoded = runCli({"decode", raw});
    EXPECT_EQ(decoded.out, r.out);
}

// Stopped while the rest of a frame is awaited: the recording ends with that frame's sync
// probe, and decoding it prints exactly what the capture printed, no line more.
TEST(CliCapture, ARecordingStoppedWhileAFrameWasAwaitedDecodesToTheSameLines) {
    FrameFeeder feeder;
    feeder.start();
    QTemporaryDir dir;
    const QString raw = dir.filePath("capture.bin");
    auto cli = startCli({"capture", "--port", feeder.path(), "--raw", raw});
    QByteArray out;
    ASSERT_TRUE(waitForFrames(*cli, out, 2));
    feeder.stop();
    const Bytes next = frame(sampleState(), 40);
    feeder.pty().write(Bytes(next.begin(), next.begin() + 60));
    // The probe of that frame is in the recording once the capture has taken it.
    const qint64 whole = QFileInfo(raw).size();
    ASSERT_TRUE(QTest::qWaitFor([&] { return QFileInfo(raw).size() % 139 == 2; }, 5000)) << whole;
    ::kill(static_cast<pid_t>(cli->processId()), SIGINT);
    const CliResult r = finishCli(*cli, 10000, out);
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 130);
    const CliResult decoded = runCli({"decode", raw});
    EXPECT_EQ(decoded.exitCode, 0);
    EXPECT_EQ(decoded.out, r.out);
}

TEST(CliCapture, TerminateEndsWithStatus143) {
    FrameFeeder feeder;
    feeder.start();
    auto cli = startCli({"capture", "--port", feeder.path(), "--format", "csv"});
    QByteArray out;
    ASSERT_TRUE(QTest::qWaitFor(
        [&] {
            out += cli->readAllStandardOutput();
            return out.count('\n') > 10;
        },
        10000));
    cli->terminate();
    const CliResult r = finishCli(*cli, 10000, out);
    EXPECT_EQ(r.exitCode, 143);
    EXPECT_EQ(r.err, "zorvik-cli: terminated\n");
    EXPECT_TRUE(r.out.startsWith("frame,sample,time_s,count,volts\n"));
    EXPECT_TRUE(r.out.endsWith("\n"));
}

TEST(CliCapture, ClosedOutputPipeEndsQuietlyWithStatus141AndOneLine) {
    FrameFeeder feeder;
    feeder.start();
    QProcess shell;
    shell.start("/bin/bash", {"-c", R"("$0" capture --port "$1" | head -1; exit ${PIPESTATUS[0]})",
                              QStringLiteral(ZORVIK_CLI), feeder.path()});
    ASSERT_TRUE(QTest::qWaitFor([&] { return shell.state() == QProcess::NotRunning; }, 10000));
    EXPECT_EQ(shell.exitCode(), 141);
    EXPECT_EQ(shell.readAllStandardOutput().count('\n'), 1);
    EXPECT_EQ(shell.readAllStandardError(), ""); // quietly, as Unix tools end
}

TEST(CliCapture, SearchWithoutPortFailsWithTheMessageWhenNoPortAnswers) {
    // COM1..COM8 stand for serial devices that, on a test machine, have no probe on them:
    // each existing one is probed for a second and none answers.
    const CliResult r = runCli({"capture", "--frames", "1"}, 15000);
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, kFailureStatus);
    EXPECT_TRUE(r.out.isEmpty());
    // The message, then a line for each of COM1 to COM8: what happened on it.
    const QList<QByteArray> lines = r.err.split('\n');
    ASSERT_EQ(lines.size(), 10) << r.err.toStdString();
    EXPECT_EQ(lines[0] + "\n", kCommunicationError);
    for (int n = 1; n <= 8; ++n) {
        EXPECT_TRUE(lines[n].startsWith("COM" + QByteArray::number(n) + " (/dev/"))
            << lines[n].toStdString();
        EXPECT_TRUE(lines[n].endsWith(": not present") || lines[n].contains(": no answer") ||
                    lines[n].contains(": permission denied") || lines[n].contains(": busy"))
            << lines[n].toStdString();
    }
}
