// zorvik-cli measure: the automatic measurements of each frame of a recording, or of the
// reference trace of a Waveform Data File.
#pragma once

#include "Commands.h"

namespace zorvik::cli {

const Command& measureCommand();
int runMeasure(const ParsedArgs& args);

} // namespace zorvik::cli
