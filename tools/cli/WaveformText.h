// The texts zorvik-cli wdf prints for a loaded Waveform Data File: one JSON object, or CSV
// rows of the samples.
#pragma once

#include "LoadedWaveform.h"

#include <string>

namespace zorvik::cli {

/// The shortest decimal text that reads back as the same double (std::to_chars): 0.25, -1.5.
std::string doubleText(double value);

/// One line, keys in this order:
/// {"Hscaleindex":I,"Vscaleindex":I,"Chaoffset":D,"Invert":L,"Reference":L,
///  "bytSwitchSetting":B,"bytTriggerLvl":B,"bytTimebaseDef":B,"bytTriggerDef":B,
///  "Tadj":F,"samples":[128 F]}
/// A value the file left out is null.
std::string waveformJson(const LoadedWaveform& waveform);

/// The header sample,time_s,volts and 128 rows, separated by line ends (none after the last
/// row). time_s is the sample's number times Tadj's decimal value, as the nearest single
/// (sampleTime), empty when the file has no Tadj.
std::string waveformCsv(const LoadedWaveform& waveform);

} // namespace zorvik::cli
