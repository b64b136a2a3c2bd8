// The capture's key events on this platform: Print Screen becomes a grab into the capture holder.
#pragma once

#include "printing/KeyEventSeam.h"

#include <QPointer>

class QImage;
class QWidget;

namespace zorvik {

class CaptureHolder;

/// Key synthesis is not available to a program on every desktop here, so the two keys are
/// interpreted inside the program: Alt is remembered while "held", and the Print Screen key-down
/// takes the picture the system would have taken and puts it in the capture holder.
class QtKeyEventSeam final : public KeyEventSeam {
public:
    explicit QtKeyEventSeam(CaptureHolder& holder) : m_holder(holder) {}

    /// The program's window to photograph when the platform names no active window of this
    /// program (offscreen runs, or the program is not in front).
    void setFallbackWindow(QWidget* window) { m_fallbackWindow = window; }

    bool scanCode(std::uint8_t virtualKey, std::uint16_t& scan) override;
    bool keyEvent(std::uint8_t virtualKey, std::uint8_t scan, std::uint32_t flags) override;
    /// Always the id of the current systems, so Print Screen alone takes the whole screen.
    bool platformId(std::uint32_t& id) override;
    bool yield() override;

    bool altHeld() const { return m_altHeld; }

    /// Picture of the program's active window (or the fallback window); null when there is none.
    QImage grabActiveWindow() const;
    /// Picture of the whole primary screen. Platforms that cannot read the screen (Wayland, some
    /// offscreen set-ups) get the program's own top-level windows drawn at their places instead.
    static QImage grabWholeScreen();

private:
    CaptureHolder& m_holder;
    QPointer<QWidget> m_fallbackWindow;
    bool m_altHeld = false;
};

} // namespace zorvik
