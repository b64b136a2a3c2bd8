// A Waveform Data File's contents as a plain record, without a window: what tests and the
// command-line tools load a file into and save a file from.
#pragma once

#include "storage/WaveformTarget.h"

namespace zorvik {

struct WaveformRecord final : WaveformTarget {
    double timeRange = 0.0;        ///< CWKTimeRange position
    double chaLevel = 0.0;         ///< CWKChaLvl position
    double graphOffsetValue = 0.0; ///< varGraphOffset
    double chaOffset = 0.0;        ///< CWSCHaOffset
    bool invert = false;           ///< CWBChaInv
    bool reference = false;        ///< CWBRef
    HardwareState state;           ///< the hardware-state record
    TraceArray volts{};            ///< sngRefVolts
    float sampleInterval = 0.0f;   ///< sngRefSampleInterval

    double timeRangeValue() const override { return timeRange; }
    double chaLevelValue() const override { return chaLevel; }
    double graphOffset() const override { return graphOffsetValue; }
    double chaOffsetValue() const override { return chaOffset; }
    bool invertValue() const override { return invert; }
    HardwareState hardware() const override { return state; }
    TraceArray refVolts() const override { return volts; }
    float refSampleInterval() const override { return sampleInterval; }

    /// The record takes any position: it has no knob to limit it.
    void setTimeRange(std::int32_t position) override { timeRange = position; }
    void setChaLevel(std::int32_t position) override { chaLevel = position; }
    /// The text must be a number (VbConvert::textToDouble); otherwise ConversionError.
    void setChaOffset(const std::string& text) override;
    void setInvert(bool value) override { invert = value; }
    void setReference(bool value) override { reference = value; }
    void setHardware(const HardwareState& s) override { state = s; }
    /// An index beyond 127 throws std::out_of_range.
    void setRefSample(std::size_t index, float v) override { volts.at(index) = v; }
    void setRefSampleInterval(float seconds) override { sampleInterval = seconds; }
};

} // namespace zorvik
