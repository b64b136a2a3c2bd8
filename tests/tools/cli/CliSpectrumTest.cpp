// zorvik-cli spectrum: each frame of a recording through the Spectrum window's arithmetic, one
// JSON object (or one CSV row a bin) a frame; windows, units, padding and averaging; a .wdf's
// reference trace; the usual failures.
#include "CliRunner.h"
#include "analysis/Spectrum.h"
#include "display/FormatDispData.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

using namespace zorvik;
using namespace zorvik::test;

namespace {

/// A frame of sampleState() (10 V range, 20 Ks/s) holding a sine of `counts` peak with
/// `cycles` periods in the 128 samples, about the middle count 128.
Bytes sineFrame(double counts, int cycles) {
    Bytes f = frame(sampleState(), 0);
    for (int i = 0; i < 128; ++i)
        f[static_cast<std::size_t>(5 + i)] = static_cast<std::uint8_t>(std::lround(
            128.0 + counts * std::sin(2.0 * std::numbers::pi * cycles * i / 128.0 + 0.2)));
    return f;
}

RawSamples samplesOf(const Bytes& f) {
    RawSamples r{};
    std::copy(f.begin() + 5, f.begin() + 133, r.begin());
    return r;
}

SpectrumResult asTheWindowWorksItOut(const Bytes& f, SpectrumWindow w, std::size_t padding = 1) {
    AcquisitionValues values;
    const auto shown = FormatDispData(sampleState(), samplesOf(f), values);
    SpectrumAnalyzer analyzer;
    return analyzer.analyse(shown.sngChaVolts.data(), shown.sngChaVolts.size(),
                            values.sngSampleInterval, w, padding);
}

QJsonObject object(const QByteArray& line) {
    return QJsonDocument::fromJson(line).object();
}

} // namespace

TEST(CliSpectrum, EachFrameGivesTheWindowsSpectrumAndItsPeak) {
    const Bytes first = sineFrame(60.0, 8);
    const Bytes second = sineFrame(30.0, 20);
    QTemporaryDir dir;
    const CliResult r = runCli({"spectrum", writeFile(dir, "rec.bin", join({first, second}))});
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 0) << r.err.toStdString();
    EXPECT_TRUE(r.err.isEmpty());
    const QList<QByteArray> lines = r.lines();
    ASSERT_EQ(lines.size(), 2);
    for (int n = 0; n < 2; ++n) {
        const QJsonObject o = object(lines[n]);
        ASSERT_EQ(o.size(), 5);
        EXPECT_TRUE(
            lines[n].startsWith("{\"index\":" + QByteArray::number(n) + ",\"frequency\":["));
        EXPECT_EQ(o.value("index").toInt(-1), n);
        // Hann and dBV unless told otherwise: the same numbers as the window's.
        const SpectrumResult expected =
            asTheWindowWorksItOut(n == 0 ? first : second, SpectrumWindow::Hann);
        const QJsonArray freq = o.value("frequency").toArray();
        const QJsonArray mag = o.value("magnitude").toArray();
        ASSERT_EQ(freq.size(), 65);
        ASSERT_EQ(mag.size(), 65);
        const std::vector<double> db = expected.magnitude(SpectrumUnit::DBV);
        for (int k = 0; k < 65; ++k) {
            EXPECT_EQ(freq[k].toDouble(), expected.frequency[static_cast<std::size_t>(k)]);
            EXPECT_EQ(mag[k].toDouble(), db[static_cast<std::size_t>(k)]);
        }
        EXPECT_EQ(o.value("peak_frequency").toDouble(), *expected.peakFrequency());
        EXPECT_EQ(o.value("peak_magnitude").toDouble(), *expected.peakMagnitude(SpectrumUnit::DBV));
    }
    // 20 Ks/s: bins 156.25 Hz apart; 8 periods in 128 samples = 1250 Hz, 20 = 3125 Hz (the
    // interval is a single, 5e-5 to seven digits).
    const QJsonObject o = object(lines[0]);
    EXPECT_NEAR(o.value("frequency").toArray()[1].toDouble(), 156.25, 156.25 * 1e-6);
    EXPECT_NEAR(o.value("frequency").toArray()[64].toDouble(), 10000.0, 10000.0 * 1e-6);
    EXPECT_NEAR(o.value("peak_frequency").toDouble(), 1250.0, 1250.0 * 1e-6);
    EXPECT_NEAR(object(lines[1]).value("peak_frequency").toDouble(), 3125.0, 3125.0 * 1e-6);
}

TEST(CliSpectrum, TheFlatTopWindowInVoltsReadsTheSinesRmsLevel) {
    const Bytes f = sineFrame(60.0, 12);
    QTemporaryDir dir;
    const CliResult r =
        runCli({"spectrum", "--window", "flattop", "-u", "volts", writeFile(dir, "sine.bin", f)});
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    const QJsonObject o = object(r.lines().value(0));
    // 60 counts of 0.1587301 V peak: 9.524 V, RMS 6.734 V; within the rounding of the counts.
    const double rms = 60.0 * 0.1587301 / std::sqrt(2.0);
    EXPECT_NEAR(o.value("peak_magnitude").toDouble(), rms, rms * 0.01);
    EXPECT_NEAR(o.value("peak_frequency").toDouble(), 12 * 156.25, 12 * 156.25 * 1e-6);
    const SpectrumResult expected = asTheWindowWorksItOut(f, SpectrumWindow::FlatTop);
    EXPECT_EQ(o.value("peak_magnitude").toDouble(), *expected.peakMagnitude(SpectrumUnit::Volts));
}

TEST(CliSpectrum, PaddingLengthensTheListsAndAveragingMeansTheFrames) {
    const Bytes a = sineFrame(60.0, 8);
    const Bytes b = sineFrame(20.0, 8);
    QTemporaryDir dir;
    const QString file = writeFile(dir, "rec.bin", join({a, b}));
    const CliResult padded = runCli({"spectrum", "-p", "4", "-w", "rectangular", file});
    ASSERT_EQ(padded.exitCode, 0) << padded.err.toStdString();
    const QJsonObject p = object(padded.lines().value(0));
    EXPECT_EQ(p.value("magnitude").toArray().size(), 257);
    EXPECT_NEAR(p.value("frequency").toArray()[1].toDouble(), 156.25 / 4, 1e-4);
    EXPECT_NEAR(p.value("peak_frequency").toDouble(), 1250.0, 1250.0 * 1e-6);

    const CliResult averaged = runCli({"spectrum", "--average", "2", "-u", "volts", file});
    ASSERT_EQ(averaged.exitCode, 0) << averaged.err.toStdString();
    const QList<QByteArray> lines = averaged.lines();
    ASSERT_EQ(lines.size(), 2);
    const SpectrumResult ra = asTheWindowWorksItOut(a, SpectrumWindow::Hann);
    const SpectrumResult rb = asTheWindowWorksItOut(b, SpectrumWindow::Hann);
    const double first = object(lines[0]).value("magnitude").toArray()[8].toDouble();
    const double second = object(lines[1]).value("magnitude").toArray()[8].toDouble();
    EXPECT_EQ(first, ra.volts[8]);
    EXPECT_NEAR(second, std::sqrt((ra.volts[8] * ra.volts[8] + rb.volts[8] * rb.volts[8]) / 2),
                1e-12);
}

TEST(CliSpectrum, CsvHasOneRowABinAndMarksThePeak) {
    const Bytes f = sineFrame(40.0, 5);
    QTemporaryDir dir;
    const CliResult r = runCli({"spectrum", "-f", "csv", writeFile(dir, "s.bin", join({f, f}))});
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    const QList<QByteArray> lines = r.lines();
    ASSERT_EQ(lines.size(), 1 + 2 * 65);
    EXPECT_EQ(lines[0], "index,frequency,magnitude,peak");
    const SpectrumResult expected = asTheWindowWorksItOut(f, SpectrumWindow::Hann);
    const std::vector<double> db = expected.magnitude(SpectrumUnit::DBV);
    int peaks = 0;
    for (int row = 0; row < 130; ++row) {
        const QList<QByteArray> fields = lines[1 + row].split(',');
        ASSERT_EQ(fields.size(), 4);
        const int k = row % 65;
        EXPECT_EQ(fields[0].toInt(), row / 65);
        EXPECT_NEAR(fields[1].toDouble(), k * 156.25, 1e-3);
        EXPECT_EQ(fields[2].toDouble(), db[static_cast<std::size_t>(k)]);
        EXPECT_EQ(fields[3], k == 5 ? "1" : "0");
        peaks += fields[3] == "1";
    }
    EXPECT_EQ(peaks, 2);
}

TEST(CliSpectrum, AWaveformFileGivesTheSpectrumOfItsReferenceTrace) {
    // The file written by an older Windows build: a sine of 0.4761903 V peak, 64 samples a
    // period at 5 us: two periods in the frame, 3125 Hz, on bin 2.
    const CliResult r = runCli({"spectrum", "-w", "rectangular", "-u", "volts",
                                QStringLiteral(ZORVIK_TEST_DATA "/wdf/windows-style.wdf")});
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    const QList<QByteArray> lines = r.lines();
    ASSERT_EQ(lines.size(), 1);
    const QJsonObject o = object(lines[0]);
    EXPECT_EQ(o.value("index").toInt(-1), 0);
    EXPECT_NEAR(o.value("peak_frequency").toDouble(), 3125.0, 1e-3);
    EXPECT_NEAR(o.value("peak_magnitude").toDouble(), 0.4761903 / std::sqrt(2.0), 0.01);
}

TEST(CliSpectrum, FailuresAndBadOptionsSayWhy) {
    QTemporaryDir dir;
    const CliResult missing = runCli({"spectrum", dir.filePath("nothing.bin")});
    EXPECT_EQ(missing.exitCode, kFailureStatus);
    EXPECT_EQ(missing.err, "zorvik-cli: " + dir.filePath("nothing.bin").toUtf8() +
                               ": No such file or directory\n");
    const QString file = writeFile(dir, "ok.bin", sineFrame(10.0, 3));
    const CliResult window = runCli({"spectrum", "-w", "kaiser", file});
    EXPECT_EQ(window.exitCode, kUsageStatus);
    EXPECT_TRUE(window.err.contains("--window must be rectangular, hann, hamming, "
                                    "blackman-harris or flattop, not 'kaiser'"))
        << window.err.toStdString();
    EXPECT_EQ(runCli({"spectrum", "-u", "dB", file}).exitCode, kUsageStatus);
    EXPECT_EQ(runCli({"spectrum", "-p", "3", file}).exitCode, kUsageStatus);
    EXPECT_EQ(runCli({"spectrum", "-p", "32", file}).exitCode, kUsageStatus);
    EXPECT_EQ(runCli({"spectrum", "-a", "0", file}).exitCode, kUsageStatus);
    EXPECT_EQ(runCli({"spectrum"}).exitCode, kUsageStatus);
    const CliResult help = runCli({"spectrum", "--help"});
    EXPECT_EQ(help.exitCode, 0);
    EXPECT_TRUE(help.out.contains("blackman-harris")) << help.out.toStdString();
}
