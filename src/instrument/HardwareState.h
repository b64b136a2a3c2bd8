// The probe's own settings as carried by every data frame, and the frame's samples.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace zorvik {

/// Number of samples in one data frame.
inline constexpr std::size_t kSamplesPerFrame = 128;
/// Bytes in one data frame on the wire, sync byte included.
inline constexpr std::size_t kFrameBytes = 139;
/// The sync byte that starts a frame; two of them in a row are the waiting marker.
inline constexpr std::uint8_t kSyncByte = 0x7D;

/// The hardware-state record, the eight bytes in their declared order.
struct HardwareState {
    std::uint8_t bytSwitchSetting = 0;
    std::uint8_t bytTimebaseDef = 0;
    std::uint8_t bytTriggerDef = 0;
    std::uint8_t bytTriggerLvl = 0;
    std::uint8_t bytDVM100 = 0;
    std::uint8_t bytDVM10 = 0;
    std::uint8_t bytDVM1 = 0;
    std::uint8_t bytDVMflags = 0;

    friend bool operator==(const HardwareState&, const HardwareState&) = default;
};

/// Raw samples of the latest frame; count 31 is 0 V.
using RawSamples = std::array<std::uint8_t, kSamplesPerFrame>;

} // namespace zorvik
