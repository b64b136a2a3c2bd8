// Knob positions to display scales: V-SCALE to divisions per volt, H-SCALE to divisions per second.
#pragma once

#include <cstdint>
#include <optional>

namespace zorvik {

/// Divisions per volt for V-SCALE knob position 1..7 (20, 10, 5, 2, 1, .5, .2 volts per
/// division): 0.05, 0.1, 0.2, 0.5, 1, 2, 5. Any other position leaves sngChaGain unchanged.
std::optional<float> chaGainForPosition(int position);

/// One row of the H-SCALE table.
struct TimeScale {
    std::int32_t lngDivPerSec; ///< divisions per second (1 / seconds per division)
    std::int16_t intTimeUnit;  ///< 0 nanosecond, 1 microsecond, 2 millisecond range

    friend bool operator==(const TimeScale&, const TimeScale&) = default;
};

/// H-SCALE knob position 1 (200 ns/div) .. 17 (50 ms/div). The knob stops at 16 (20 ms/div);
/// row 17 is kept in the table all the same. Any other position leaves lngDivPerSec and
/// intTimeUnit unchanged.
std::optional<TimeScale> timeScaleForPosition(int position);

} // namespace zorvik
