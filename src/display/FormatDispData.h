// Turns a received frame into the display's acquisition values and the live volts.
#pragma once

#include "display/TraceArrays.h"
#include "instrument/HardwareState.h"

#include <optional>
#include <string>

namespace zorvik {

/// The acquisition values the main window keeps between frames. They start as zero and
/// empty text, so a frame whose codes are not in the tables (range bits 12, an unknown
/// time-base code, ...) before any good frame leaves them at that.
struct AcquisitionValues {
    float sngVoltsPerCount = 0.0f;  ///< volts per raw count of the live frame
    float sngSampleInterval = 0.0f; ///< seconds between two live samples
    std::string strSampleRate;      ///< sample-rate text for the status bar
    float sngTrigLevel = 0.0f;      ///< trigger level in volts

    friend bool operator==(const AcquisitionValues&, const AcquisitionValues&) = default;
};

/// What the main window applies after FormatDispData: each indicator slide is either set
/// to the given 1-based position or left where it is (std::nullopt).
struct FormatDispDataResult {
    std::optional<int> CWSCoupling;
    std::optional<int> CWSRange;
    std::optional<int> CWSTrigger;
    /// Text of the status-bar panel "sbrSampleRate": "Sample Rate: " + strSampleRate.
    std::string sbrSampleRate;
    /// Live samples in volts: (count - 31) x sngVoltsPerCount, in single precision.
    TraceArray sngChaVolts{};
};

/// Decodes the frame's state bytes into `values` (range, then the trigger level within that
/// range, then the time base) and converts the samples to volts with the resulting scale.
/// Range bits 12 change neither the volts per count nor the trigger level; an unknown
/// trigger-level or time-base code keeps its previous value, so a frame with an unexpected
/// code still gives volts with the previous scale.
FormatDispDataResult FormatDispData(const HardwareState& state, const RawSamples& bytRawData,
                                    AcquisitionValues& values);

} // namespace zorvik
