// zorvik-cli decode's CSV output, its answers to bad input and bad arguments, and how it ends
// when its output is closed or it is interrupted.
#include "CliRunner.h"

#include <QDir>
#include <QFile>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace zorvik;
using namespace zorvik::test;

namespace {

CliResult decode(const Bytes& stream, QStringList extra = {}) {
    QTemporaryDir dir;
    const QString path = writeFile(dir, "stream.bin", stream);
    return runCli(QStringList{"decode", path} + extra);
}

Bytes manyFrames(int n) {
    Bytes stream;
    for (int seed = 0; seed < n; ++seed) {
        const Bytes f = frame(sampleState(), seed);
        stream.insert(stream.end(), f.begin(), f.end());
    }
    return stream;
}

} // namespace

TEST(CliCsv, HeaderThenOneRowPerSampleOfEachAcceptedFrame) {
    const CliResult r = decode(join({frame(sampleState(), 0), frame(stateWith(0x28, 10, 0, 0), 0)}),
                               {"--format", "csv"});
    ASSERT_EQ(r.exitCode, 0);
    const QList<QByteArray> lines = r.lines();
    ASSERT_EQ(lines.size(), 1 + 2 * 128);
    EXPECT_EQ(lines[0], "frame,sample,time_s,count,volts");
    EXPECT_EQ(lines[1], "0,0,0,0,-4.9206333");
    EXPECT_EQ(lines[2], "0,1,5e-05,1,-4.7619033");
    EXPECT_EQ(lines[32], "0,31,0.00155,31,0");
    EXPECT_EQ(lines[63], "0,62,0.0031,62,4.9206333");
    EXPECT_EQ(lines[128], "0,127,0.00635,1,-4.7619033");
    EXPECT_EQ(lines[129], "1,0,0,0,-49.206333");
    EXPECT_EQ(lines[191], "1,62,0.124,62,49.206333");
    EXPECT_EQ(lines[256], "1,127,0.254,1,-47.61903");
}

// The time is the sample's number times the interval's decimal value 5e-05, as the nearest
// single, written as its shortest text: 0.00015, where a product in single precision would
// give 0.00014999999.
TEST(CliCsv, TimeIsTheSampleTimesTheIntervalsDecimalValue) {
    const CliResult r = decode(frame(sampleState(), 0), {"-f", "csv"});
    const QList<QByteArray> lines = r.lines();
    ASSERT_EQ(lines.size(), 129);
    EXPECT_EQ(lines[4], "0,3,0.00015,3,-4.4444427");
    for (int i = 0; i < 128; ++i) {
        const QList<QByteArray> cells = lines[i + 1].split(',');
        ASSERT_EQ(cells.size(), 5);
        EXPECT_EQ(cells[2], shortest(static_cast<float>(i * 0.00005)));
        // Every time reads back as exactly the number it says.
        EXPECT_EQ(cells[2].toFloat(), static_cast<float>(i * 0.00005)) << i;
    }
}

TEST(CliCsv, WaitingHuntAndRejectedPrintNoRows) {
    const Bytes stream = join({{0x7D, 0x7D},
                               {0x01, 0x02},
                               {0x01},
                               frame(sampleState(), 0),
                               frame(sampleState(), 1),
                               frame(sampleState(), 2)});
    const CliResult r = decode(stream, {"--format", "csv"});
    ASSERT_EQ(r.exitCode, 0);
    const QList<QByteArray> lines = r.lines();
    ASSERT_EQ(lines.size(), 129);
    EXPECT_EQ(lines[1], "0,0,0,2,-4.6031733");
}

TEST(CliBadInput, MissingFileFailsWithOneLineAndStatus1) {
    const CliResult r = runCli({"decode", "/nonexistent/zorvik/stream.bin"});
    EXPECT_EQ(r.exitCode, kFailureStatus);
    EXPECT_TRUE(r.out.isEmpty());
    EXPECT_EQ(r.err, "zorvik-cli: /nonexistent/zorvik/stream.bin: No such file or directory\n");
}

TEST(CliBadInput, DirectoryFailsWithOneLineAndStatus1) {
    QTemporaryDir dir;
    const CliResult r = runCli({"decode", dir.path()});
    EXPECT_EQ(r.exitCode, kFailureStatus);
    EXPECT_TRUE(r.out.isEmpty());
    EXPECT_EQ(r.err, "zorvik-cli: " + dir.path().toUtf8() + ": Is a directory\n");
}

TEST(CliBadInput, UnreadableFileFailsWithOneLineAndStatus1) {
    QTemporaryDir dir;
    ASSERT_EQ(::chmod(dir.path().toLocal8Bit().constData(), 0755), 0);
    const QString path = writeFile(dir, "locked.bin", frame(sampleState(), 0));
    ASSERT_EQ(::chmod(path.toLocal8Bit().constData(), 0), 0);
    // The superuser reads any file: the program then runs as the unprivileged user.
    const CliResult r = runCliUnprivileged({"decode", path});
    EXPECT_EQ(r.exitCode, kFailureStatus);
    EXPECT_TRUE(r.out.isEmpty());
    EXPECT_EQ(r.err, "zorvik-cli: " + path.toUtf8() + ": Permission denied\n");
}

TEST(CliBadInput, FileThatFailsToReadFailsWithOneLineAndStatus1) {
    // Opening works, reading fails: offset 0 of the process's memory is never mapped.
    const CliResult r = runCli({"decode", "/proc/self/mem"});
    EXPECT_EQ(r.exitCode, kFailureStatus);
    EXPECT_TRUE(r.out.isEmpty());
    EXPECT_EQ(r.err, "zorvik-cli: /proc/self/mem: cannot be read\n");
}

TEST(CliBadInput, EmptyFileFailsWithOneLineAndStatus1) {
    QTemporaryDir dir;
    const QString path = writeFile(dir, "empty.bin", {});
    const CliResult r = runCli({"decode", path});
    EXPECT_EQ(r.exitCode, kFailureStatus);
    EXPECT_TRUE(r.out.isEmpty());
    EXPECT_EQ(r.err, "zorvik-cli: " + path.toUtf8() + ": is empty\n");
}

TEST(CliBadInput, GarbageWithoutFrameOrWaitingMarkerFailsAfterItsHunts) {
    Bytes garbage;
    for (int i = 0; i < 301; ++i)
        garbage.push_back(static_cast<std::uint8_t>((i * 37 + 11) % 125)); // never 0x7D
    QTemporaryDir dir;
    const QString path = writeFile(dir, "garbage.bin", garbage);
    const CliResult r = runCli({"decode", path, "--events"});
    EXPECT_EQ(r.exitCode, kFailureStatus);
    EXPECT_EQ(r.lines().size(), 150);
    EXPECT_TRUE(r.out.endsWith("{\"event\":\"hunt\"}\n"));
    EXPECT_EQ(r.err, "zorvik-cli: " + path.toUtf8() +
                         ": holds no probe data: no frame and no waiting marker in 301 bytes\n");
    // Without --events: no line at all, the same error.
    const CliResult quiet = runCli({"decode", path});
    EXPECT_EQ(quiet.exitCode, kFailureStatus);
    EXPECT_TRUE(quiet.out.isEmpty());
    EXPECT_EQ(quiet.err, r.err);
}

TEST(CliUsage, BadCommandsAndArgumentsExitWith2AndOneLine) {
    const struct {
        QStringList args;
        QByteArray err;
    } cases[] = {
        {{}, "zorvik-cli: no command given (see zorvik-cli --help)\n"},
        {{"frob"}, "zorvik-cli: unknown command frob (see zorvik-cli --help)\n"},
        {{"--frob"}, "zorvik-cli: unknown option --frob (see zorvik-cli --help)\n"},
        {{"decode"}, "zorvik-cli: decode: no FILE given (see zorvik-cli decode --help)\n"},
        {{"decode", "a", "b"},
         "zorvik-cli: decode: more than one FILE given (see zorvik-cli decode --help)\n"},
        {{"decode", "a", "--format", "xml"},
         "zorvik-cli: decode: --format must be jsonl or csv, not 'xml' (see zorvik-cli decode "
         "--help)\n"},
        {{"decode", "a", "--format"},
         "zorvik-cli: decode: option --format needs a value (see zorvik-cli decode --help)\n"},
        {{"decode", "a", "--raw", "x"},
         "zorvik-cli: decode: unknown option --raw (see zorvik-cli decode --help)\n"},
        {{"capture", "--frames", "0"},
         "zorvik-cli: capture: --frames must be a whole number from 1, not '0' (see zorvik-cli "
         "capture --help)\n"},
        {{"capture", "--frames", "3x"},
         "zorvik-cli: capture: --frames must be a whole number from 1, not '3x' (see zorvik-cli "
         "capture --help)\n"},
        {{"capture", "--seconds", "-1"},
         "zorvik-cli: capture: --seconds must be a number above 0, not '-1' (see zorvik-cli "
         "capture --help)\n"},
        {{"capture", "--port", "COM1", "--port", "COM2"},
         "zorvik-cli: capture: option --port given twice (see zorvik-cli capture --help)\n"},
        {{"capture", "extra"},
         "zorvik-cli: capture: unexpected argument extra (see zorvik-cli capture --help)\n"},
        {{"capture", "-n", "0"},
         "zorvik-cli: capture: --frames must be a whole number from 1, not '0' (see zorvik-cli "
         "capture --help)\n"},
        {{"capture", "-p", "COM9"},
         "zorvik-cli: capture: unknown port COM9: the ports are COM1 to COM8 (or name a device, "
         "such as /dev/ttyUSB0) (see zorvik-cli capture --help)\n"},
        {{"capture", "--port=com12"},
         "zorvik-cli: capture: unknown port com12: the ports are COM1 to COM8 (or name a "
         "device, such as /dev/ttyUSB0) (see zorvik-cli capture --help)\n"},
        {{"decode", "a", "-x"},
         "zorvik-cli: decode: unknown option -x (see zorvik-cli decode --help)\n"},
        {{"decode", "a", "--events=yes"},
         "zorvik-cli: decode: option --events takes no value (see zorvik-cli decode --help)\n"},
        {{"decode", "a", "-o"},
         "zorvik-cli: decode: option --output needs a value (see zorvik-cli decode --help)\n"},
        {{"wdf"}, "zorvik-cli: wdf: no FILE given (see zorvik-cli wdf --help)\n"},
        {{"ports", "-f", "xml"},
         "zorvik-cli: ports: --format must be table or json, not 'xml' (see zorvik-cli ports "
         "--help)\n"},
    };
    for (const auto& c : cases) {
        const CliResult r = runCli(c.args);
        EXPECT_EQ(r.exitCode, kUsageStatus) << c.args.join(' ').toStdString();
        EXPECT_TRUE(r.out.isEmpty());
        EXPECT_EQ(r.err, c.err);
    }
}

TEST(CliEnding, ClosedOutputPipeEndsQuietlyWithStatus141) {
    QTemporaryDir dir;
    const QString path = writeFile(dir, "many.bin", manyFrames(400));
    QProcess shell;
    shell.start("/bin/bash", {"-c", R"("$0" decode "$1" | head -1; exit ${PIPESTATUS[0]})",
                              QStringLiteral(ZORVIK_CLI), path});
    ASSERT_TRUE(QTest::qWaitFor([&] { return shell.state() == QProcess::NotRunning; }, 20000));
    EXPECT_EQ(shell.exitCode(), 141);
    const QByteArray out = shell.readAllStandardOutput();
    EXPECT_TRUE(out.startsWith(R"({"event":"frame","index":0,)"));
    EXPECT_TRUE(out.endsWith("]}\n"));
    EXPECT_EQ(out.count('\n'), 1);
    // Quietly, as Unix tools end when their reader has gone.
    EXPECT_EQ(shell.readAllStandardError(), "");
}

TEST(CliEnding, InterruptWhileTheReaderStallsEndsWithStatus130AndWholeLines) {
    QTemporaryDir dir;
    const QString path = writeFile(dir, "many.bin", manyFrames(2000));
    const QByteArray fifo = dir.filePath("out.fifo").toLocal8Bit();
    ASSERT_EQ(::mkfifo(fifo.constData(), 0600), 0);
    const int reader = ::open(fifo.constData(), O_RDONLY | O_NONBLOCK);
    ASSERT_GE(reader, 0);
    QProcess cli;
    cli.setStandardOutputFile(QString::fromLocal8Bit(fifo));
    cli.start(QStringLiteral(ZORVIK_CLI), {"decode", path});
    ASSERT_TRUE(cli.waitForStarted(5000));

    // Read the first line, then stop reading: the program fills the pipe and blocks.
    QByteArray got;
    char buffer[4096];
    ASSERT_TRUE(QTest::qWaitFor(
        [&] {
            const ssize_t n = ::read(reader, buffer, sizeof buffer);
            if (n > 0)
                got.append(buffer, n);
            return got.contains('\n');
        },
        10000));
    ::kill(static_cast<pid_t>(cli.processId()), SIGINT);
    ASSERT_TRUE(QTest::qWaitFor([&] { return cli.state() == QProcess::NotRunning; }, 10000));
    EXPECT_EQ(cli.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(cli.exitCode(), 130);
    EXPECT_EQ(cli.readAllStandardError(), "zorvik-cli: interrupted\n");

    ssize_t n = 0;
    while ((n = ::read(reader, buffer, sizeof buffer)) > 0)
        got.append(buffer, n);
    ::close(reader);
    EXPECT_TRUE(got.endsWith("]}\n"));
    const QList<QByteArray> lines = got.chopped(1).split('\n');
    EXPECT_LT(lines.size(), 2000);
    for (const QByteArray& line : lines)
        EXPECT_TRUE(line.startsWith(R"({"event":"frame",)") && line.endsWith("]}"));
}

namespace {

QByteArray fileBytes(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

} // namespace

// -o FILE: the same lines as on standard output, in the file, and nothing on standard output.
TEST(CliOutputFile, DecodeWritesTheFileAndNothingElse) {
    QTemporaryDir dir;
    const QString stream = writeFile(dir, "stream.bin", manyFrames(5));
    const CliResult shown = runCli({"decode", stream, "-f", "csv"});
    const QString out = dir.filePath("frames.csv");
    const CliResult r = runCli({"decode", stream, "-f", "csv", "-o", out});
    ASSERT_EQ(r.exitCode, 0);
    EXPECT_TRUE(r.out.isEmpty());
    EXPECT_TRUE(r.err.isEmpty());
    EXPECT_EQ(fileBytes(out), shown.out);
    EXPECT_EQ(runCli({"decode", stream, "--output", out}).exitCode, 0);
    EXPECT_EQ(fileBytes(out), runCli({"decode", stream}).out);
    // Nothing else is left in the folder.
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden),
              QStringList({"frames.csv", "stream.bin"}));
}

// A decoding that fails leaves the file that was there as it was.
TEST(CliOutputFile, AFailedDecodeLeavesTheOldFile) {
    QTemporaryDir dir;
    const QString out = dir.filePath("frames.jsonl");
    ASSERT_EQ(runCli({"decode", writeFile(dir, "good.bin", manyFrames(2)), "-o", out}).exitCode, 0);
    const QByteArray before = fileBytes(out);
    ASSERT_FALSE(before.isEmpty());
    const CliResult r = runCli({"decode", writeFile(dir, "noise.bin", {1, 2, 3, 4, 5}), "-o", out});
    EXPECT_EQ(r.exitCode, kFailureStatus);
    EXPECT_EQ(fileBytes(out), before);
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden),
              QStringList({"frames.jsonl", "good.bin", "noise.bin"}));
}

TEST(CliOutputFile, AFileThatCannotBeWrittenIsAFailureSayingSo) {
    QTemporaryDir dir;
    const QString stream = writeFile(dir, "stream.bin", manyFrames(1));
    const QString out = dir.filePath("missing/frames.jsonl");
    const CliResult r = runCli({"decode", stream, "-o", out});
    EXPECT_EQ(r.exitCode, kFailureStatus);
    EXPECT_TRUE(r.out.isEmpty());
    EXPECT_EQ(r.err, "zorvik-cli: " + out.toUtf8() +
                         ": cannot be written (a read-only file or folder, or no such folder)\n");
}

TEST(CliOutputFile, WdfWritesItsObjectToTheFile) {
    QTemporaryDir dir;
    const QString wdf = dir.filePath("trace.wdf");
    QFile::copy(QStringLiteral(ZORVIK_TEST_DATA "/wdf/windows-style.wdf"), wdf);
    const QString out = dir.filePath("trace.json");
    const CliResult r = runCli({"wdf", wdf, "-o", out});
    ASSERT_EQ(r.exitCode, 0);
    EXPECT_TRUE(r.out.isEmpty());
    EXPECT_EQ(fileBytes(out), runCli({"wdf", wdf}).out);
}
