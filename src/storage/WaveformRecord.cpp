// A Waveform Data File's contents as a plain record.
#include "storage/WaveformRecord.h"

#include "storage/VbConvert.h"

namespace zorvik {

void WaveformRecord::setChaOffset(const std::string& text) {
    chaOffset = VbConvert::textToDouble(text);
}

} // namespace zorvik
