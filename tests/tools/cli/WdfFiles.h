// Waveform Data Files for the zorvik-cli wdf tests: the fixtures of tests/data/wdf, edited
// copies of them, and files saved by the program's own writer.
#pragma once

#include "storage/WaveformFile.h"
#include "storage/WaveformRecord.h"
#include "storage/cInifile.h"

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QTemporaryDir>

namespace zorvik::test {

/// The bytes of a fixture in tests/data/wdf.
inline QByteArray wdfFixture(const char* name) {
    QFile file(QStringLiteral(ZORVIK_TEST_DATA "/wdf/") + QString::fromLatin1(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Writes `bytes` as `name` in `dir` and returns its path.
inline QString writeText(const QTemporaryDir& dir, const QString& name, const QByteArray& bytes) {
    const QString path = dir.filePath(name);
    QFile file(path);
    if (file.open(QIODevice::WriteOnly))
        file.write(bytes);
    return path;
}

/// `text` with the first `from` replaced by `to`; empty when `from` is not in it, so that a
/// test whose edit went wrong fails instead of passing on an unedited file.
inline QByteArray edited(QByteArray text, const QByteArray& from, const QByteArray& to) {
    const qsizetype at = text.indexOf(from);
    if (at < 0)
        return {};
    return text.replace(at, from.size(), to);
}

/// The counts of a pattern that repeats every four samples, and their volts at range code 0x04
/// (0.1587301 V per count) as a saved file gives them back: the 7-digit texts (31 counts are
/// 4.9206333 V in the window and "4.920633" in the file).
inline constexpr int kPatternCounts[4] = {62, 31, 0, 32};
inline const char* const kPatternVolts[4] = {"4.920633", "0", "-4.920633", "0.1587301"};

/// A reference as the window would hold it, saved with SaveWaveformFile: knobs 7 and 3,
/// offset -1.25, inverted, the probe bytes 36/16/6/64, samples of kPatternCounts at range
/// 0x04, 5e-05 s between samples.
inline bool saveProgramFile(const QString& path) {
    WaveformRecord r;
    r.timeRange = 7;
    r.chaLevel = 3;
    r.chaOffset = -1.25;
    r.invert = true;
    r.state.bytSwitchSetting = 0x24;
    r.state.bytTriggerLvl = 16;
    r.state.bytTimebaseDef = 6;
    r.state.bytTriggerDef = 0x40;
    for (std::size_t i = 0; i < r.volts.size(); ++i)
        r.volts[i] = static_cast<float>(kPatternCounts[i % 4] - 31) * 0.1587301f;
    r.sampleInterval = 5e-05f;
    cInifile ini;
    return WaveformFile::SaveWaveformFile(ini, path.toStdString(), r);
}

/// The samples of tests/data/wdf/windows-style.wdf once loaded, as their shortest texts: each
/// the single nearest to its 7-digit text in the file, so the file's own numbers come back.
inline const QByteArray kWindowsStyleSamples =
    "0,0.04761903,0.09523806,0.1428571,0.1746031,0.2222221,0.2698412,0.3015872,0.3333332,"
    "0.3650792,0.3968252,0.4126982,0.4444443,0.4603173,0.4603173,0.4761903,0.4761903,0.4761903,"
    "0.4603173,0.4603173,0.4444443,0.4126982,0.3968252,0.3650792,0.3333332,0.3015872,0.2698412,"
    "0.2222221,0.1746031,0.1428571,0.09523806,0.04761903,0,-0.04761903,-0.09523806,-0.1428571,"
    "-0.1746031,-0.2222221,-0.2698412,-0.3015872,-0.3333332,-0.3650792,-0.3968252,-0.4126982,"
    "-0.4444443,-0.4603173,-0.4603173,-0.4761903,-0.4761903,-0.4761903,-0.4603173,-0.4603173,"
    "-0.4444443,-0.4126982,-0.3968252,-0.3650792,-0.3333332,-0.3015872,-0.2698412,-0.2222221,"
    "-0.1746031,-0.1428571,-0.09523806,-0.04761903,0,0.04761903,0.09523806,0.1428571,0.1746031,"
    "0.2222221,0.2698412,0.3015872,0.3333332,0.3650792,0.3968252,0.4126982,0.4444443,0.4603173,"
    "0.4603173,0.4761903,0.4761903,0.4761903,0.4603173,0.4603173,0.4444443,0.4126982,0.3968252,"
    "0.3650792,0.3333332,0.3015872,0.2698412,0.2222221,0.1746031,0.1428571,0.09523806,0.04761903,"
    "0,-0.04761903,-0.09523806,-0.1428571,-0.1746031,-0.2222221,-0.2698412,-0.3015872,-0.3333332,"
    "-0.3650792,-0.3968252,-0.4126982,-0.4444443,-0.4603173,-0.4603173,-0.4761903,-0.4761903,"
    "-0.4761903,-0.4603173,-0.4603173,-0.4444443,-0.4126982,-0.3968252,-0.3650792,-0.3333332,"
    "-0.3015872,-0.2698412,-0.2222221,-0.1746031,-0.1428571,-0.09523806,-0.04761903";

/// The JSON line of tests/data/wdf/windows-style.wdf.
inline const QByteArray kWindowsStyleJson =
    R"({"Hscaleindex":9,"Vscaleindex":4,"Chaoffset":-1.5,"Invert":true,"Reference":true,)"
    R"("bytSwitchSetting":32,"bytTriggerLvl":16,"bytTimebaseDef":4,"bytTriggerDef":64,)"
    R"("Tadj":5e-06,"samples":[)" +
    kWindowsStyleSamples + "]}\n";

} // namespace zorvik::test
