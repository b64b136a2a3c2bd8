// Meaning of the hardware-state bytes: range, coupling, time base, trigger mode and level.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace zorvik {

/// Volts per count of the three input ranges. Deliberately the rounded decimals
/// (bit patterns 3C82081D, 3E228A25, 3FCB2CAE), not 1/63, 10/63 and 100/63.
inline constexpr float kVoltsPerCount1V = 0.01587301f;
inline constexpr float kVoltsPerCount10V = 0.1587301f;
inline constexpr float kVoltsPerCount100V = 1.587301f;

/// Range bits (switch setting AND 0x0C) -> volts per count; 0x0C leaves it unchanged.
std::optional<float> rangeVoltsPerCount(std::uint8_t bytSwitchSetting);
/// Range bits -> position of the RANGE indicator (1 "100", 2 "10", 3 "1"); 0x0C: unchanged.
std::optional<int> rangePosition(std::uint8_t bytSwitchSetting);
/// Coupling bits (AND 0x30) -> position of the COUPLING indicator (1 GND, 2 AC, 3 DC).
std::optional<int> couplingPosition(std::uint8_t bytSwitchSetting);

struct TimeBase {
    float sngSampleInterval; ///< seconds per sample
    std::string_view strSampleRate;
};
/// Time-base code 0..10 -> sample interval and rate text; other codes: unchanged.
std::optional<TimeBase> timeBase(std::uint8_t bytTimebaseDef);

/// Trigger definition AND 0x7D -> position of the TRIGGER indicator (1 FR .. 5 EX-).
std::optional<int> triggerPosition(std::uint8_t bytTriggerDef);

/// Trigger level in volts for a level code within the frame's range; unknown code or
/// range 0x0C: unchanged.
std::optional<float> triggerLevel(std::uint8_t bytSwitchSetting, std::uint8_t bytTriggerLvl);

/// Position labels of the three indicators, index 0 = position 1.
inline constexpr std::string_view kRangeLabels[] = {"100", "10", "1"};
inline constexpr std::string_view kCouplingLabels[] = {"GND", "AC", "DC"};
inline constexpr std::string_view kTriggerLabels[] = {"FR", "IN+", "IN-", "EX+", "EX-"};

} // namespace zorvik
