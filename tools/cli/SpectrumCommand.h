// zorvik-cli spectrum: the magnitude spectrum of each frame of a recording, or of the reference
// trace of a Waveform Data File.
#pragma once

#include "Commands.h"

namespace zorvik::cli {

const Command& spectrumCommand();
int runSpectrum(const ParsedArgs& args);

} // namespace zorvik::cli
