// zorvik-cli wdf on files that load: the JSON object and the CSV rows of a file saved by the
// program and of files written by older Windows builds, keys the file leaves out, and --help.
#include "CliRunner.h"
#include "WdfFiles.h"

#include <gtest/gtest.h>

using namespace zorvik;
using namespace zorvik::test;

namespace {

/// The samples of saveProgramFile() as the JSON array's items.
QByteArray patternSamples() {
    QByteArrayList items;
    for (int i = 0; i < 128; ++i)
        items << kPatternVolts[i % 4];
    return items.join(',');
}

CliResult wdfOf(const QByteArray& text, const QString& name, QStringList extra = {}) {
    QTemporaryDir dir;
    return runCli(QStringList{"wdf", writeText(dir, name, text)} + extra);
}

} // namespace

TEST(CliWdf, FileSavedByTheProgramPrintsItsValuesAsOneJsonObject) {
    QTemporaryDir dir;
    const QString path = dir.filePath("bench.wdf");
    ASSERT_TRUE(saveProgramFile(path));
    const CliResult r = runCli({"wdf", path});
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_TRUE(r.err.isEmpty()) << r.err.toStdString();
    EXPECT_EQ(r.out,
              R"({"Hscaleindex":7,"Vscaleindex":3,"Chaoffset":-1.25,"Invert":true,)"
              R"("Reference":true,"bytSwitchSetting":36,"bytTriggerLvl":16,"bytTimebaseDef":6,)"
              R"("bytTriggerDef":64,"Tadj":5e-05,"samples":[)" +
                  patternSamples() + "]}\n");
}

TEST(CliWdf, FormatJsonIsTheDefault) {
    QTemporaryDir dir;
    const QString path = dir.filePath("bench.wdf");
    ASSERT_TRUE(saveProgramFile(path));
    const CliResult plain = runCli({"wdf", path});
    const CliResult json = runCli({"wdf", path, "--format", "json"});
    EXPECT_EQ(json.exitCode, 0);
    EXPECT_FALSE(json.out.isEmpty());
    EXPECT_EQ(json.out, plain.out);
}

TEST(CliWdf, FileSavedByTheProgramPrintsCsvRowsOfSampleTimeAndVolts) {
    QTemporaryDir dir;
    const QString path = dir.filePath("bench.wdf");
    ASSERT_TRUE(saveProgramFile(path));
    const CliResult r = runCli({"wdf", path, "--format", "csv"});
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_TRUE(r.err.isEmpty()) << r.err.toStdString();
    const QList<QByteArray> lines = r.lines();
    ASSERT_EQ(lines.size(), 129);
    EXPECT_EQ(lines[0], "sample,time_s,volts");
    EXPECT_EQ(lines[1], "0,0,4.920633");
    EXPECT_EQ(lines[2], "1,5e-05,0");
    EXPECT_EQ(lines[3], "2,1e-04,-4.920633");
    EXPECT_EQ(lines[4], "3,0.00015,0.1587301");
    EXPECT_EQ(lines[128], "127,0.00635,0.1587301");
    for (int i = 0; i < 128; ++i) {
        // time_s is the sample's number times Tadj's decimal value, as the nearest single.
        EXPECT_EQ(lines[1 + i], QByteArray::number(i) + ',' +
                                    shortest(static_cast<float>(i * 0.00005)) + ',' +
                                    kPatternVolts[i % 4]);
    }
}

TEST(CliWdf, WindowsStyleFilePrintsItsSamplesAsJson) {
    // CRLF lines, a comment, keys in mixed case, 7-digit exponent and leading-dot numbers.
    const CliResult r = wdfOf(wdfFixture("windows-style.wdf"), "windows-style.wdf");
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_TRUE(r.err.isEmpty()) << r.err.toStdString();
    EXPECT_EQ(r.out, kWindowsStyleJson);
}

TEST(CliWdf, WindowsStyleFilePrintsCsvWithTadjTimes) {
    const CliResult r =
        wdfOf(wdfFixture("windows-style.wdf"), "windows-style.wdf", {"--format", "csv"});
    ASSERT_EQ(r.exitCode, 0);
    const QList<QByteArray> lines = r.lines();
    ASSERT_EQ(lines.size(), 129);
    EXPECT_EQ(lines[0], "sample,time_s,volts");
    EXPECT_EQ(lines[1], "0,0,0");
    EXPECT_EQ(lines[2], "1,5e-06,0.04761903");
    EXPECT_EQ(lines[3], "2,1e-05,0.09523806");
    EXPECT_EQ(lines[4], "3,1.5e-05,0.1428571");
    EXPECT_EQ(lines[128], "127,0.000635,-0.04761903");
    const QList<QByteArray> samples = kWindowsStyleSamples.split(',');
    for (int i = 0; i < 128; ++i)
        EXPECT_TRUE(lines[1 + i].endsWith(',' + samples[i])) << i;
}

TEST(CliWdf, OlderNumberFormsPrintAsTheLoadAppliesThem) {
    // Hscaleindex "2.5" rounds to even, Vscaleindex "3.5abc" is its leading number rounded,
    // Chaoffset ".25", Invert "false", Reference "1".
    const CliResult r = wdfOf(wdfFixture("older-forms.wdf"), "older-forms.wdf");
    ASSERT_EQ(r.exitCode, 0);
    EXPECT_TRUE(r.out.startsWith(
        R"({"Hscaleindex":2,"Vscaleindex":4,"Chaoffset":0.25,"Invert":false,"Reference":true,)"
        R"("bytSwitchSetting":4,"bytTriggerLvl":8,"bytTimebaseDef":1,"bytTriggerDef":0,)"
        R"("Tadj":1e-07,"samples":[0.5,-0.25,0,355.5554,5e-08,-0.4920633,1e-07,-0.01587301,)"
        R"(0.5,-0.25,)"));
    EXPECT_EQ(arrayItems(r.out, "samples").size(), 128);
}

TEST(CliWdf, UpperCaseExtensionLoads) {
    const CliResult r = wdfOf(wdfFixture("windows-style.wdf"), "TRACE.WDF");
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_EQ(r.out, kWindowsStyleJson);
}

TEST(CliWdf, NameThatMerelyEndsInTheLettersWdfLoads) {
    const CliResult r = wdfOf(wdfFixture("windows-style.wdf"), "notes_wdf");
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_EQ(r.out, kWindowsStyleJson);
}

TEST(CliWdf, KeysTheFileLeavesOutOrEmptyPrintNull) {
    QByteArray text = wdfFixture("windows-style.wdf");
    for (const char* key : {"Hscaleindex=9\r\n", "INVERT=True\r\n", "Range=32\r\n",
                            "Timebase=4\r\n", "Reference=True\r\n"})
        text = edited(text, key, "");
    text = edited(text, "Chaoffset=-1.5", "Chaoffset=");
    const CliResult r = wdfOf(text, "sparse.wdf");
    ASSERT_EQ(r.exitCode, 0);
    EXPECT_TRUE(r.out.startsWith(
        R"({"Hscaleindex":null,"Vscaleindex":4,"Chaoffset":null,"Invert":null,)"
        R"("Reference":null,"bytSwitchSetting":null,"bytTriggerLvl":16,"bytTimebaseDef":null,)"
        R"("bytTriggerDef":64,"Tadj":5e-06,"samples":[0,0.04761903,)"));
}

TEST(CliWdf, EmptyOrMissingTadjPrintsNullAndLeavesTheCsvTimesEmpty) {
    for (const QByteArray& replacement : {QByteArray("TADJ=\r\n"), QByteArray()}) {
        const QByteArray text =
            edited(wdfFixture("windows-style.wdf"), "TADJ=5E-06\r\n", replacement);
        const CliResult json = wdfOf(text, "no-tadj.wdf");
        ASSERT_EQ(json.exitCode, 0);
        EXPECT_TRUE(json.out.contains(R"("bytTriggerDef":64,"Tadj":null,"samples":[0,)"));
        const CliResult csv = wdfOf(text, "no-tadj.wdf", {"--format", "csv"});
        ASSERT_EQ(csv.exitCode, 0);
        const QList<QByteArray> lines = csv.lines();
        ASSERT_EQ(lines.size(), 129);
        EXPECT_EQ(lines[2], "1,,0.04761903");
        EXPECT_EQ(lines[128], "127,,-0.04761903");
    }
}

TEST(CliWdf, HelpDescribesTheCommandAndBothFormats) {
    const CliResult full = runCli({"--help"});
    ASSERT_EQ(full.exitCode, 0);
    EXPECT_TRUE(full.out.contains("  wdf FILE          print what a Waveform Data File holds\n"));
    const CliResult r = runCli({"wdf", "--help"});
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_TRUE(r.out.startsWith(
        "Usage:\n  zorvik-cli wdf FILE [-f|--format json|csv] [-o|--output OUT]\n"));
    for (const char* text :
         {R"({"Hscaleindex":I,"Vscaleindex":I,"Chaoffset":D,"Invert":L,"Reference":L,)",
          R"("bytSwitchSetting":B,"bytTriggerLvl":B,"bytTimebaseDef":B,"bytTriggerDef":B,)",
          R"("Tadj":F,"samples":[128 F]})", "sample,time_s,volts",
          "File is not for this application!", "Please Select a Waveform Data File (*.wdf)!",
          "1    failed: a file could not be read",
          "zorvik-cli: FILE: File is not for this application!"})
        EXPECT_TRUE(r.out.contains(text)) << text;
    // The frame output of decode and capture is not part of it.
    EXPECT_FALSE(r.out.contains("frame,sample,time_s,count,volts"));
}

TEST(CliWdf, UsageErrorsExitWithStatus2) {
    QTemporaryDir dir;
    const QString path = dir.filePath("bench.wdf");
    ASSERT_TRUE(saveProgramFile(path));
    const struct {
        QStringList args;
        QByteArray err;
    } cases[] = {
        {{"wdf"}, "zorvik-cli: wdf: no FILE given (see zorvik-cli wdf --help)\n"},
        {{"wdf", path, path},
         "zorvik-cli: wdf: more than one FILE given (see zorvik-cli wdf --help)\n"},
        {{"wdf", path, "--format", "jsonl"},
         "zorvik-cli: wdf: --format must be json or csv, not 'jsonl' (see zorvik-cli wdf "
         "--help)\n"},
        {{"wdf", path, "--frames", "2"},
         "zorvik-cli: wdf: unknown option --frames (see zorvik-cli wdf --help)\n"},
        {{"wdf", path, "-n", "2"},
         "zorvik-cli: wdf: unknown option -n (see zorvik-cli wdf --help)\n"},
    };
    for (const auto& c : cases) {
        const CliResult r = runCli(c.args);
        EXPECT_EQ(r.exitCode, kUsageStatus) << c.args.join(' ').toStdString();
        EXPECT_TRUE(r.out.isEmpty());
        EXPECT_EQ(r.err, c.err);
    }
}
