// What a Waveform Data File is saved from and loaded into: the front-panel values stored with
// the reference trace, the probe's settings bytes and the reference store itself. The main
// window implements it over its controls; WaveformRecord is a plain record of the same values.
#pragma once

#include "display/TraceArrays.h"
#include "instrument/HardwareState.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace zorvik {

class WaveformTarget {
public:
    virtual ~WaveformTarget() = default;

    // --- What a save writes ------------------------------------------------------------

    /// Value of the time-range knob CWKTimeRange.
    virtual double timeRangeValue() const = 0;
    /// Value of the channel A volts-per-division knob CWKChaLvl.
    virtual double chaLevelValue() const = 0;
    /// varGraphOffset: left edge of the visible window, in divisions.
    virtual double graphOffset() const = 0;
    /// Value of the channel A offset slide CWSCHaOffset.
    virtual double chaOffsetValue() const = 0;
    /// Value of the channel A inversion button CWBChaInv.
    virtual bool invertValue() const = 0;
    /// The hardware-state record (only its range, trigger level, time base and trigger
    /// definition go into the file).
    virtual HardwareState hardware() const = 0;
    /// sngRefVolts: the 128 reference samples, in volts.
    virtual TraceArray refVolts() const = 0;
    /// sngRefSampleInterval: seconds between two reference samples.
    virtual float refSampleInterval() const = 0;

    // --- What a load applies -----------------------------------------------------------
    // None of these runs a control's change handler. A control that refuses a value throws
    // an exception derived from std::exception, which ends the load.

    /// Sets CWKTimeRange to a position.
    virtual void setTimeRange(std::int32_t position) = 0;
    /// Sets CWKChaLvl to a position.
    virtual void setChaLevel(std::int32_t position) = 0;
    /// Hands the file's text to CWSCHaOffset as its value (the slide converts it).
    virtual void setChaOffset(const std::string& text) = 0;
    /// Sets CWBChaInv.
    virtual void setInvert(bool value) = 0;
    /// Sets CWBRef, the button that shows the reference trace.
    virtual void setReference(bool value) = 0;
    /// Replaces the hardware-state record (nothing is sent to the probe).
    virtual void setHardware(const HardwareState& state) = 0;
    /// Stores sample `index` (0 to 127) of sngRefVolts.
    virtual void setRefSample(std::size_t index, float volts) = 0;
    /// Sets sngRefSampleInterval.
    virtual void setRefSampleInterval(float seconds) = 0;
};

} // namespace zorvik
