// The acquisition the display shows: the record of the frame on screen, the values decoded
// from it, the scale the knobs set, the plotted traces and the reference store. The main window
// draws from it, a loaded Waveform Data File writes into it, and every window that uses the
// trace reads it.
#pragma once

#include "display/FormatDispData.h"
#include "display/TraceArrays.h"
#include "instrument/DecodedFrame.h"

#include <cstdint>

namespace zorvik {

struct DisplayModel {
    // The record on screen: the last frame shown, or the probe settings of a loaded file.
    HardwareState state;
    RawSamples bytRawData{};

    /// True while the probe is on and frames arrive.
    bool blnLiveData = false;
    AcquisitionValues acquisition; ///< sngVoltsPerCount, sngSampleInterval, strSampleRate, ...
    float sngChaGain = 0.0f;       ///< divisions per volt of the V-SCALE knob
    float sngChaOffset = 0.0f;     ///< divisions of the offset slide
    std::int32_t lngDivPerSec = 0; ///< divisions per second of the H-SCALE knob
    std::int16_t intTimeUnit = 0;  ///< the time unit of the cursor readouts
    double varGraphOffset = 0.0;   ///< left edge of the visible window, in divisions
    TraceArray sngChaVolts{};      ///< live samples in volts
    TraceArray sngChaPlot{};       ///< live trace as plotted, in divisions
    TraceArray sngRefPlot{};       ///< reference trace as plotted, in divisions

    // The reference store.
    TraceArray sngRefVolts{};
    float sngRefVoltsPerCount = 0.0f;
    float sngRefSampleInterval = 0.0f;
    bool blnRefLoaded = false;

    /// Takes a decoded frame's record as the one on screen.
    void take(const DecodedFrame& frame) {
        state = frame.state;
        bytRawData = frame.bytRawData;
    }

    /// Decodes the record on screen: the acquisition values and the live volts follow; the
    /// result says what the panel's indicators and status bar show.
    FormatDispDataResult decode() {
        FormatDispDataResult r = zorvik::FormatDispData(state, bytRawData, acquisition);
        sngChaVolts = r.sngChaVolts;
        return r;
    }
};

} // namespace zorvik
