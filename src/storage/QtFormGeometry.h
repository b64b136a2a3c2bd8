// FormGeometry for a Qt top-level widget, so that cInifile can save and restore the
// position of a window. Geometry is the outer (frame) rectangle, in twips.
#pragma once

#include "storage/FormGeometry.h"

class QWidget;

namespace zorvik {

class QtFormGeometry : public FormGeometry {
public:
    explicit QtFormGeometry(QWidget* form) : m_form(form) {}

    std::int32_t left() const override;
    std::int32_t top() const override;
    std::int32_t width() const override;
    std::int32_t height() const override;
    void move(std::int32_t left, std::int32_t top, std::int32_t width,
              std::int32_t height) override;

    WindowState windowState() const override;
    void setWindowState(WindowState state) override;

    /// Throws std::runtime_error when the widget is on no screen.
    std::int32_t screenWidth() const override;
    std::int32_t screenHeight() const override;
    std::int32_t twipsPerPixelX() const override;
    std::int32_t twipsPerPixelY() const override;

private:
    QWidget* m_form;
};

} // namespace zorvik
