// The few keyboard and system operations the screen capture routine works through.
#pragma once

#include <cstdint>

namespace zorvik {

/// Virtual-key codes, key-event flags and platform ids the capture routine uses.
inline constexpr std::uint8_t kVirtualKeyAlt = 18;
inline constexpr std::uint8_t kVirtualKeyPrintScreen = 44;
inline constexpr std::uint32_t kKeyEventKeyDown = 0;
inline constexpr std::uint32_t kKeyEventKeyUp = 2;
/// Platform id of the old consumer systems on which a Print Screen with scan code 1 photographs
/// the whole screen rather than the active window.
inline constexpr std::uint32_t kPlatformConsumer = 1;
/// Platform id of every current system.
inline constexpr std::uint32_t kPlatformCurrent = 2;

/// Synthesised key events and the system queries behind `cQVXScreenCapture::CaptureScreen`.
/// Every operation returns false when it fails; the routine then stops at once.
class KeyEventSeam {
public:
    virtual ~KeyEventSeam() = default;

    /// Hardware scan code of a virtual key.
    virtual bool scanCode(std::uint8_t virtualKey, std::uint16_t& scan) = 0;
    /// Sends one key event: flags 0 presses the key, flags 2 releases it.
    virtual bool keyEvent(std::uint8_t virtualKey, std::uint8_t scan, std::uint32_t flags) = 0;
    /// The operating-system platform id (1 old consumer systems, 2 current systems).
    virtual bool platformId(std::uint32_t& id) = 0;
    /// Lets the program's pending window events run, then returns.
    virtual bool yield() = 0;
};

} // namespace zorvik
