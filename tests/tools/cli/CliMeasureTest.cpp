// zorvik-cli measure: each frame of a recording measured as the Measurements window measures
// it, one JSON object (or CSV row) a frame; a .wdf's reference trace; the usual failures.
#include "CliRunner.h"
#include "analysis/Measurements.h"
#include "display/FormatDispData.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <charconv>
#include <gtest/gtest.h>

using namespace zorvik;
using namespace zorvik::test;

namespace {

const char* const kKeys[] = {
    "max",       "min",      "peak_to_peak",   "mean",           "rms",
    "ac_rms",    "top",      "base",           "amplitude",      "overshoot",
    "frequency", "period",   "positive_width", "negative_width", "duty_cycle",
    "rise_time", "fall_time"};

RawSamples samplesOf(const Bytes& f) {
    RawSamples r{};
    std::copy(f.begin() + 5, f.begin() + 133, r.begin());
    return r;
}

QJsonObject object(const QByteArray& line) {
    return QJsonDocument::fromJson(line).object();
}

/// The keys of one frame as the window's arithmetic gives them.
void expectSameAsTheWindow(const QJsonObject& o, const MeasureValues& v) {
    ASSERT_EQ(o.size(), 18);
    for (std::size_t i = 0; i < kMeasureCount; ++i) {
        const QJsonValue j = o.value(kKeys[i]);
        if (!v[i]) {
            EXPECT_TRUE(j.isNull()) << kKeys[i];
        } else {
            EXPECT_EQ(j.toDouble(), *v[i]) << kKeys[i];
        }
    }
}

} // namespace

TEST(CliMeasure, EachFrameIsMeasuredAsTheWindowMeasuresIt) {
    // Two frames of the 10 V range at 20 Ks/s: saw teeth of counts 0..62 (seeds 0 and 9).
    const Bytes first = frame(sampleState(), 0);
    const Bytes second = frame(sampleState(), 9);
    QTemporaryDir dir;
    const CliResult r = runCli({"measure", writeFile(dir, "rec.bin", join({first, second}))});
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 0) << r.err.toStdString();
    EXPECT_TRUE(r.err.isEmpty());
    const QList<QByteArray> lines = r.lines();
    ASSERT_EQ(lines.size(), 2);
    AcquisitionValues values;
    for (int n = 0; n < 2; ++n) {
        const QJsonObject o = object(lines[n]);
        EXPECT_EQ(o.value("index").toInt(-1), n);
        EXPECT_TRUE(lines[n].startsWith("{\"index\":" + QByteArray::number(n) + ",\"max\":"));
        const auto shown =
            FormatDispData(sampleState(), samplesOf(n == 0 ? first : second), values);
        expectSameAsTheWindow(o, measure(shown.sngChaVolts, values.sngSampleInterval));
    }
    // A saw tooth of 63 samples at 50 us: 317.46 Hz; from -31 to 31 counts of 0.1587301 V.
    const QJsonObject o = object(lines[0]);
    EXPECT_NEAR(o.value("frequency").toDouble(), 1.0 / (63 * 5e-5), 1e-3);
    EXPECT_EQ(o.value("max").toDouble(), static_cast<double>(31.0f * 0.1587301f));
    EXPECT_EQ(o.value("min").toDouble(), static_cast<double>(-31.0f * 0.1587301f));
}

TEST(CliMeasure, CsvHasAHeaderAndAnEmptyFieldForAnUndefinedValue) {
    // A flat frame: a DC level has no timing.
    Bytes f = frame(sampleState(), 0);
    std::fill(f.begin() + 5, f.begin() + 133, std::uint8_t{41});
    QTemporaryDir dir;
    const CliResult r = runCli({"measure", "-f", "csv", writeFile(dir, "dc.bin", f)});
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 0) << r.err.toStdString();
    const QList<QByteArray> lines = r.lines();
    ASSERT_EQ(lines.size(), 2);
    EXPECT_EQ(lines[0], "index,max,min,peak_to_peak,mean,rms,ac_rms,top,base,amplitude,"
                        "overshoot,frequency,period,positive_width,negative_width,duty_cycle,"
                        "rise_time,fall_time");
    const QByteArray level = QByteArray::number(static_cast<double>(10.0f * 0.1587301f), 'g', 17);
    const QList<QByteArray> fields = lines[1].split(',');
    ASSERT_EQ(fields.size(), 18);
    EXPECT_EQ(fields[0], "0");
    EXPECT_EQ(fields[1].toDouble(), static_cast<double>(10.0f * 0.1587301f)) << level.constData();
    EXPECT_EQ(fields[3], "0"); // peak to peak
    for (int i = 10; i < 18; ++i)
        EXPECT_TRUE(fields[i].isEmpty()) << kKeys[i - 1];
}

TEST(CliMeasure, AWaveformFileGivesItsReferenceTrace) {
    // The file written by an older Windows build: a sine of 0.4761903 V peak, 64 samples a
    // period at 5 us (3125 Hz).
    const CliResult r =
        runCli({"measure", QStringLiteral(ZORVIK_TEST_DATA "/wdf/windows-style.wdf")});
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 0) << r.err.toStdString();
    const QList<QByteArray> lines = r.lines();
    ASSERT_EQ(lines.size(), 1);
    const QJsonObject o = object(lines[0]);
    EXPECT_EQ(o.value("index").toInt(-1), 0);
    EXPECT_EQ(o.value("max").toDouble(), static_cast<double>(0.4761903f));
    EXPECT_EQ(o.value("min").toDouble(), static_cast<double>(-0.4761903f));
    EXPECT_NEAR(o.value("frequency").toDouble(), 3125.0, 3125.0 * 1e-6);
    EXPECT_NEAR(o.value("period").toDouble(), 64 * 5e-6, 64 * 5e-6 * 1e-6);
    EXPECT_EQ(o.value("duty_cycle").toDouble(), 50.0);
}

TEST(CliMeasure, FailuresSayWhy) {
    QTemporaryDir dir;
    const CliResult missing = runCli({"measure", dir.filePath("nothing.bin")});
    EXPECT_EQ(missing.exitCode, kFailureStatus);
    EXPECT_EQ(missing.err, "zorvik-cli: " + dir.filePath("nothing.bin").toUtf8() +
                               ": No such file or directory\n");
    const CliResult noFrame = runCli({"measure", writeFile(dir, "junk.bin", Bytes(50, 0x11))});
    EXPECT_EQ(noFrame.exitCode, kFailureStatus);
    EXPECT_TRUE(noFrame.err.contains("holds no frame")) << noFrame.err.toStdString();
    EXPECT_EQ(runCli({"measure"}).exitCode, kUsageStatus);
    EXPECT_EQ(runCli({"measure", "-f", "xml", "x.bin"}).exitCode, kUsageStatus);
}
