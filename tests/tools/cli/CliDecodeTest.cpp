// zorvik-cli --help, --version and the frame lines of decode: state bytes, decoded values,
// indicator positions, counts and volts.
#include "CliRunner.h"

#include <gtest/gtest.h>

using namespace zorvik;
using namespace zorvik::test;

namespace {

/// The line of an accepted frame of sampleState() up to its "raw" array.
const QByteArray kSampleFramePrefix =
    R"({"event":"frame","index":0,"bytSwitchSetting":36,"bytTimebaseDef":6,"bytTriggerDef":64,)"
    R"("bytTriggerLvl":16,"bytDVM100":1,"bytDVM10":2,"bytDVM1":3,"bytDVMflags":4,)"
    R"("sngVoltsPerCount":0.1587301,"sngSampleInterval":5e-05,"strSampleRate":"20Ks/s",)"
    R"("sngTrigLevel":0.5,"range":2,"coupling":3,"trigger":2,"raw":[)";

CliResult decode(const Bytes& stream, QStringList extra = {}) {
    QTemporaryDir dir;
    const QString path = writeFile(dir, "stream.bin", stream);
    return runCli(QStringList{"decode", path} + extra);
}

} // namespace

TEST(CliHelp, VersionPrintsProgramNameAndProjectVersion) {
    const CliResult r = runCli({"--version"});
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_EQ(r.out, QByteArray("zorvik-cli 1.1.1\n"));
    EXPECT_EQ(r.out, QByteArray("zorvik-cli " ZORVIK_CLI_VERSION "\n"));
    EXPECT_TRUE(r.err.isEmpty());
}

// The overview fits a screen: each command on one line, then where the rest is.
TEST(CliHelp, HelpListsEachCommandOnOneLineAndFitsAScreen) {
    const CliResult r = runCli({"--help"});
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_TRUE(r.err.isEmpty());
    const QList<QByteArray> lines = r.lines();
    EXPECT_LE(lines.size(), 24);
    for (const QByteArray& line : lines)
        EXPECT_LE(line.size(), 90) << line.toStdString();
    for (const char* text :
         {"Usage: zorvik-cli COMMAND [OPTIONS] [FILE]",
          "  decode FILE       print the frames of a recorded byte stream",
          "  capture           print the frames the probe sends on a serial port",
          "  wdf FILE          print what a Waveform Data File holds",
          "  measure FILE      print the automatic measurements of each frame",
          "  spectrum FILE     print the magnitude spectrum of each frame",
          "  ports             list COM1 to COM8 and the serial devices present",
          "Run \"zorvik-cli COMMAND --help\" for a command's options and output, and\n"
          "\"zorvik-cli --version\" for the version.",
          "Exit status: 0 done, 1 failed, 2 usage error"})
        EXPECT_TRUE(r.out.contains(text)) << text;
    EXPECT_EQ(runCli({"-h"}).out, r.out);
    EXPECT_EQ(runCli({"help"}).out, r.out);
}

TEST(CliHelp, CommandHelpShowsItsOptionsOutputAndExitStatus) {
    const CliResult r = runCli({"capture", "--help"});
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_TRUE(r.err.isEmpty());
    for (const char* text : {"zorvik-cli capture [-p|--port COMn|DEVICE] [-n|--frames N] "
                             "[-s|--seconds S]",
                             "[-f|--format jsonl|csv] [--events] [--raw FILE] [-o|--output OUT]",
                             "-p, --port COMn",
                             "-p, --port DEVICE",
                             "-n, --frames N",
                             "-s, --seconds S",
                             "--raw FILE",
                             "--events",
                             "-o, --output OUT",
                             R"({"event":"frame","index":N,"bytSwitchSetting":B,)",
                             R"({"event":"waiting"})",
                             R"({"event":"hunt"})",
                             R"({"event":"rejected",)",
                             R"({"event":"short"})",
                             "frame,sample,time_s,count,volts",
                             "N counts the accepted frames from 0",
                             "0    done",
                             "1    failed",
                             "2    usage error",
                             "130  interrupted",
                             "141  the output was closed by its reader",
                             "143  terminated",
                             "Unable to Communicate with Instrument - Check Port Connection!",
                             "permission denied"})
        EXPECT_TRUE(r.out.contains(text)) << text;
}

TEST(CliHelp, CommandHelpShowsThatCommandOnly) {
    const CliResult r = runCli({"decode", "--help"});
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_TRUE(r.out.startsWith(
        "Usage:\n  zorvik-cli decode FILE [-f|--format jsonl|csv] [--events] [-o|--output OUT]\n"));
    EXPECT_FALSE(r.out.contains("zorvik-cli capture"));
    EXPECT_TRUE(r.out.contains("frame,sample,time_s,count,volts"));
    EXPECT_EQ(runCli({"decode", "-h"}).out, r.out);
}

TEST(CliDecode, AcceptedFrameLineHasStateBytesDecodedValuesAndPositionsInOrder) {
    const CliResult r = decode(frame(sampleState(), 0));
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_TRUE(r.err.isEmpty()) << r.err.toStdString();
    ASSERT_EQ(r.lines().size(), 1);

    QByteArray expected = kSampleFramePrefix;
    QByteArrayList raw;
    QByteArrayList volts;
    for (int i = 0; i < 128; ++i) {
        const int count = i % 63;
        raw << QByteArray::number(count);
        volts << shortest(static_cast<float>(count - 31) * 0.1587301f);
    }
    expected += raw.join(',') + R"(],"volts":[)" + volts.join(',') + "]}";
    EXPECT_EQ(r.lines().front(), expected);
}

TEST(CliDecode, VoltsAreCountMinus31TimesVoltsPerCountInShortestSingleText) {
    // Sample i of seed 0 has the count i % 63: sample 62 is count 62, sample 0 count 0.
    const CliResult r = decode(frame(sampleState(), 0));
    ASSERT_EQ(r.lines().size(), 1);
    const QList<QByteArray> volts = arrayItems(r.lines().front(), "volts");
    ASSERT_EQ(volts.size(), 128);
    EXPECT_EQ(volts[62], "4.9206333"); // 31 x 0.1587301f
    EXPECT_EQ(volts[0], "-4.9206333");
    EXPECT_EQ(volts[31], "0");
    EXPECT_EQ(volts[32], "0.1587301");
    EXPECT_EQ(volts[30], "-0.1587301");
    EXPECT_EQ(volts[57], "4.1269827");
    for (int i = 0; i < 128; ++i) {
        const float expected = static_cast<float>(i % 63 - 31) * 0.1587301f;
        EXPECT_EQ(std::strtof(volts[i].constData(), nullptr), expected) << "sample " << i;
    }
}

TEST(CliDecode, VoltsFollowTheRangeOfEachFrame) {
    const Bytes stream =
        join({frame(stateWith(0x28, 6, 0x40, 16), 0), frame(stateWith(0x20, 6, 0x40, 16), 0)});
    const CliResult r = decode(stream);
    ASSERT_EQ(r.lines().size(), 2);
    const QByteArray range100 = r.lines()[0];
    const QByteArray range1 = r.lines()[1];
    EXPECT_TRUE(range100.contains(R"("sngVoltsPerCount":1.587301,)"));
    EXPECT_TRUE(range100.contains(R"("sngTrigLevel":5,"range":1,)"));
    EXPECT_EQ(arrayItems(range100, "volts")[62], "49.206333");
    EXPECT_EQ(arrayItems(range100, "volts")[0], "-49.206333");
    EXPECT_TRUE(range1.contains(R"("sngVoltsPerCount":0.01587301,)"));
    EXPECT_TRUE(range1.contains(R"("sngTrigLevel":0.05,"range":3,)"));
    EXPECT_EQ(arrayItems(range1, "volts")[62], "0.49206328");
}

TEST(CliDecode, BeforeAnyDefinedCodeValuesAreStartUpValuesAndPositionsNull) {
    // Range bits 12, coupling bits 48, time-base code 11, trigger mode 1, level code 2: no
    // table defines them, so the window's start-up values stand.
    const CliResult r = decode(frame(stateWith(0x3C, 11, 1, 2), 0));
    ASSERT_EQ(r.exitCode, 0);
    ASSERT_EQ(r.lines().size(), 1);
    const QByteArray line = r.lines().front();
    EXPECT_TRUE(line.contains(
        R"("bytSwitchSetting":60,"bytTimebaseDef":11,"bytTriggerDef":1,"bytTriggerLvl":2,)"));
    EXPECT_TRUE(line.contains(R"("sngVoltsPerCount":0,"sngSampleInterval":0,"strSampleRate":"",)"
                              R"("sngTrigLevel":0,"range":null,"coupling":null,"trigger":null,)"));
    const QList<QByteArray> volts = arrayItems(line, "volts");
    EXPECT_EQ(volts[0], "-0"); // -31 x 0
    EXPECT_EQ(volts[62], "0");
}

TEST(CliDecode, UndefinedCodesKeepTheValuesAndPositionsOfTheLastFrame) {
    const Bytes stream = join({frame(sampleState(), 0), frame(stateWith(0x3C, 11, 3, 2), 1)});
    const CliResult r = decode(stream);
    ASSERT_EQ(r.lines().size(), 2);
    EXPECT_TRUE(r.lines()[1].contains(
        R"("sngVoltsPerCount":0.1587301,"sngSampleInterval":5e-05,"strSampleRate":"20Ks/s",)"
        R"("sngTrigLevel":0.5,"range":2,"coupling":3,"trigger":2,)"));
    // Seed 1: sample 61 has the count 62.
    EXPECT_EQ(arrayItems(r.lines()[1], "volts")[61], "4.9206333");
}

TEST(CliDecode, TriggerModeAndCouplingPositionsFollowTheirMasks) {
    // 0xC0 masks to 0x40 (IN+, 2); 2 masks to 0 (FR, 1); 0x11 is EX+ (4); coupling 0x10 is AC.
    const Bytes stream =
        join({frame(stateWith(0x14, 0, 0xC0, 0), 0), frame(stateWith(0x04, 10, 2, 64), 0),
              frame(stateWith(0x00, 10, 0x11, 8), 0)});
    const CliResult r = decode(stream);
    ASSERT_EQ(r.lines().size(), 3);
    EXPECT_TRUE(
        r.lines()[0].contains(R"("sngSampleInterval":5e-08,"strSampleRate":"20Ms/s",)"
                              R"("sngTrigLevel":-2.5,"range":2,"coupling":2,"trigger":2,)"));
    EXPECT_TRUE(
        r.lines()[1].contains(R"("sngSampleInterval":0.002,"strSampleRate":"500s/s",)"
                              R"("sngTrigLevel":-1.5,"range":2,"coupling":1,"trigger":1,)"));
    EXPECT_TRUE(
        r.lines()[2].contains(R"("sngTrigLevel":0.15,"range":3,"coupling":1,"trigger":4,)"));
}

TEST(CliDecode, FramesAreCountedFromZeroInTheOrderTheyWereAccepted) {
    // A waiting marker and a hunt between frames do not count.
    const Bytes stream = join({frame(sampleState(), 0),
                               {0x7D, 0x7D},
                               frame(sampleState(), 1),
                               {0x01, 0x02},
                               frame(sampleState(), 2)});
    const CliResult r = decode(stream, {"--events"});
    ASSERT_EQ(r.exitCode, 0);
    const QList<QByteArray> lines = r.lines();
    ASSERT_EQ(lines.size(), 5);
    EXPECT_TRUE(lines[0].startsWith(R"({"event":"frame","index":0,)"));
    EXPECT_EQ(lines[1], R"({"event":"waiting"})");
    EXPECT_TRUE(lines[2].startsWith(R"({"event":"frame","index":1,)"));
    EXPECT_EQ(lines[3], R"({"event":"hunt"})");
    EXPECT_TRUE(lines[4].startsWith(R"({"event":"frame","index":2,)"));
    EXPECT_EQ(arrayItems(lines[4], "raw")[0], "2");
}
