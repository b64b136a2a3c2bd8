// What cInifile needs of a window to save and restore its position: geometry in twips, the
// window state and the screen. Any member may throw to say "this form has no such
// property"; SaveFormPosition and LoadFormPosition then end quietly.
#pragma once

#include <cstdint>

namespace zorvik {

class FormGeometry {
public:
    enum class WindowState { Normal, Minimised, Maximised };

    virtual ~FormGeometry() = default;

    /// Outer position and size of the window, in twips.
    virtual std::int32_t left() const = 0;
    virtual std::int32_t top() const = 0;
    virtual std::int32_t width() const = 0;
    virtual std::int32_t height() const = 0;
    /// Moves and sizes the window in one step (twips).
    virtual void move(std::int32_t left, std::int32_t top, std::int32_t width,
                      std::int32_t height) = 0;

    virtual WindowState windowState() const = 0;
    virtual void setWindowState(WindowState state) = 0;

    /// Size of the screen the window is on, in twips, and the twips of one pixel.
    virtual std::int32_t screenWidth() const = 0;
    virtual std::int32_t screenHeight() const = 0;
    virtual std::int32_t twipsPerPixelX() const = 0;
    virtual std::int32_t twipsPerPixelY() const = 0;
};

} // namespace zorvik
