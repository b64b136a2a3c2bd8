// The capture routine: Alt press, Print Screen, two yields, Alt release, in this order.
#include "printing/cQVXScreenCapture.h"

namespace zorvik {

bool cQVXScreenCapture::CaptureScreen(bool ActiveWindow) {
    // A failure thrown from below (for example no memory for the picture) stops the routine just
    // as a failing operation does.
    try {
        return sendKeys(ActiveWindow);
    } catch (...) {
        return false;
    }
}

bool cQVXScreenCapture::sendKeys(bool ActiveWindow) {
    std::uint16_t altScan = 0;
    if (!m_keys.scanCode(kVirtualKeyAlt, altScan))
        return false;
    if (ActiveWindow &&
        !m_keys.keyEvent(kVirtualKeyAlt, static_cast<std::uint8_t>(altScan), kKeyEventKeyDown))
        return false;

    std::uint32_t platform = 0;
    if (!m_keys.platformId(platform))
        return false;
    // On the old consumer systems a scan code of 1 makes Print Screen take the whole screen.
    const std::uint8_t printScan = (!ActiveWindow && platform == kPlatformConsumer) ? 1 : 0;

    if (!m_keys.yield())
        return false;
    // Only the key-down of Print Screen is sent; the system acts on it alone.
    if (!m_keys.keyEvent(kVirtualKeyPrintScreen, printScan, kKeyEventKeyDown))
        return false;
    // Lets the picture arrive before the caller looks for it.
    if (!m_keys.yield())
        return false;

    if (ActiveWindow &&
        !m_keys.keyEvent(kVirtualKeyAlt, static_cast<std::uint8_t>(altScan), kKeyEventKeyUp))
        return false;
    return true;
}

} // namespace zorvik
