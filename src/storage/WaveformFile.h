// The Waveform Data File (.wdf): a reference trace saved with the front-panel and probe
// settings it was taken with, in an INI-style text file read and written through cInifile.
#pragma once

#include "storage/WaveformTarget.h"
#include "storage/cInifile.h"

#include <string>
#include <string_view>

namespace zorvik {

/// How a load ended.
enum class WaveformLoadResult {
    Loaded,                ///< the whole file was applied
    NotWaveformFile,       ///< the name does not end in "wdf" (any letter case); nothing read
    NotForThisApplication, ///< Name in APPLICATION is not "Zorvik"; nothing applied
    Failed,                ///< a value did not convert or was refused; what came before stays
};

class WaveformFile {
public:
    /// What every file says in APPLICATION.
    static constexpr const char* kName = "Zorvik";
    static constexpr const char* kVersion = "1.1.1";

    /// The messages of the File form, with their titles.
    static constexpr const char* kNotForThisApplicationText = "File is not for this application!";
    static constexpr const char* kNotForThisApplicationTitle = "File Format";
    static constexpr const char* kLoadErrorText = "Please Select a Waveform Data File (*.wdf)!";
    static constexpr const char* kLoadErrorTitle = "File Load Error";
    static constexpr const char* kNoDataText = "No data to save - Acquire reference waveform.";
    static constexpr const char* kNoDataTitle = "File Save Error";

    /// True when the last three characters of `path`, in upper case, are "WDF" (so a name
    /// that merely ends in the letters, "notes_wdf", passes too).
    static bool hasWaveformExtension(std::string_view path);

    /// Writes the file in this order: APPLICATION (Name, Version), SETTINGS (Hscaleindex,
    /// Vscaleindex, Graphoffset, Chaoffset), BUTTONS (Invert, Reference "True"), ANALOGTRACE
    /// (Reftrace1 to Reftrace7, Tadj), HARDWARE (Range, Triggerlevel, Timebase, Triggerdef).
    /// An existing file is updated in place: its other keys and sections stay. Either every
    /// key is written or the file is left exactly as it was; false then. Leaves `ini` with
    /// Path `path`.
    static bool SaveWaveformFile(cInifile& ini, const std::string& path,
                                 const WaveformTarget& source);

    /// Reads the file into `target`: settings, buttons, hardware bytes, the 128 samples and
    /// Tadj, in that order, each only when present and not empty (the samples always). The
    /// first value that does not convert or is refused ends the load (Failed); the values
    /// applied before it stay applied. Leaves `ini` with Path `path`.
    static WaveformLoadResult LoadWaveformFile(cInifile& ini, const std::string& path,
                                               WaveformTarget& target);
};

} // namespace zorvik
