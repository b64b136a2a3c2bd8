// Window geometry of a QWidget in twips for saving and restoring form positions.
#include "storage/QtFormGeometry.h"

#include "support/Twips.h"

#include <QScreen>
#include <QWidget>
#include <stdexcept>

namespace zorvik {

namespace {

QScreen* screenOf(const QWidget* form) {
    QScreen* screen = form->screen();
    if (!screen)
        throw std::runtime_error("the window is on no screen");
    return screen;
}

} // namespace

std::int32_t QtFormGeometry::left() const {
    return pixelsToTwips(m_form->frameGeometry().x());
}
std::int32_t QtFormGeometry::top() const {
    return pixelsToTwips(m_form->frameGeometry().y());
}
std::int32_t QtFormGeometry::width() const {
    return pixelsToTwips(m_form->frameGeometry().width());
}
std::int32_t QtFormGeometry::height() const {
    return pixelsToTwips(m_form->frameGeometry().height());
}

void QtFormGeometry::move(std::int32_t left, std::int32_t top, std::int32_t width,
                          std::int32_t height) {
    // The stored size is the outer one; the widget is sized without its frame.
    const QRect frame = m_form->frameGeometry();
    const QRect inner = m_form->geometry();
    const int frameWidth = frame.width() - inner.width();
    const int frameHeight = frame.height() - inner.height();
    m_form->move(twipsToPixels(left), twipsToPixels(top));
    m_form->resize(twipsToPixels(width) - frameWidth, twipsToPixels(height) - frameHeight);
}

FormGeometry::WindowState QtFormGeometry::windowState() const {
    if (m_form->isMinimized())
        return WindowState::Minimised;
    if (m_form->isMaximized())
        return WindowState::Maximised;
    return WindowState::Normal;
}

void QtFormGeometry::setWindowState(WindowState state) {
    switch (state) {
    case WindowState::Minimised:
        m_form->setWindowState(Qt::WindowMinimized);
        break;
    case WindowState::Maximised:
        m_form->setWindowState(Qt::WindowMaximized);
        break;
    case WindowState::Normal:
        m_form->setWindowState(Qt::WindowNoState);
        break;
    }
}

std::int32_t QtFormGeometry::screenWidth() const {
    return pixelsToTwips(screenOf(m_form)->geometry().width());
}
std::int32_t QtFormGeometry::screenHeight() const {
    return pixelsToTwips(screenOf(m_form)->geometry().height());
}
std::int32_t QtFormGeometry::twipsPerPixelX() const {
    return kTwipsPerPixel;
}
std::int32_t QtFormGeometry::twipsPerPixelY() const {
    return kTwipsPerPixel;
}

} // namespace zorvik
