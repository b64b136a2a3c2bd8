// A Waveform Data File as zorvik-cli wdf reads it: loaded by the window's own rules into a
// plain record, together with which of the file's values the load took.
#pragma once

#include "display/TraceArrays.h"
#include "storage/WaveformFile.h"

#include <cstdint>
#include <optional>
#include <string>

namespace zorvik::cli {

/// What a load of one file gave. A value the file leaves out (key missing or empty) is
/// empty here: the window keeps its own value for it, so there is nothing to report.
struct LoadedWaveform {
    WaveformLoadResult result = WaveformLoadResult::Failed;

    // SETTINGS, as the load applies them: the knob positions rounded to whole numbers
    // (halves to even), the offset as the number its text reads.
    std::optional<std::int32_t> Hscaleindex;
    std::optional<std::int32_t> Vscaleindex;
    std::optional<double> Chaoffset;
    // BUTTONS
    std::optional<bool> Invert;
    std::optional<bool> Reference;
    // HARDWARE: the probe's settings bytes
    std::optional<std::uint8_t> bytSwitchSetting;
    std::optional<std::uint8_t> bytTriggerLvl;
    std::optional<std::uint8_t> bytTimebaseDef;
    std::optional<std::uint8_t> bytTriggerDef;
    // ANALOGTRACE: Tadj (seconds between samples) and the 128 samples in volts
    std::optional<float> sngRefSampleInterval;
    TraceArray sngRefVolts{};
};

/// Loads `path` with WaveformFile::LoadWaveformFile into a WaveformRecord, through a private
/// cInifile (nothing of the program's shared reader changes). The values are set only when
/// the whole file loaded.
LoadedWaveform loadWaveform(const std::string& path);

} // namespace zorvik::cli
