// Grabs behind the synthesised Print Screen key.
#include "printing/QtKeyEventSeam.h"

#include "printing/CaptureHolder.h"

#include <QApplication>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <QScreen>
#include <QWidget>

namespace zorvik {

namespace {
// Scan codes of a PC keyboard (set 1) for the keys the capture uses.
constexpr std::uint16_t kScanAlt = 0x38;
constexpr std::uint16_t kScanPrintScreen = 0x37;
} // namespace

bool QtKeyEventSeam::scanCode(std::uint8_t virtualKey, std::uint16_t& scan) {
    switch (virtualKey) {
    case kVirtualKeyAlt:
        scan = kScanAlt;
        return true;
    case kVirtualKeyPrintScreen:
        scan = kScanPrintScreen;
        return true;
    default:
        scan = 0;
        return true;
    }
}

bool QtKeyEventSeam::keyEvent(std::uint8_t virtualKey, std::uint8_t scan, std::uint32_t flags) {
    const bool keyUp = (flags & kKeyEventKeyUp) != 0;
    if (virtualKey == kVirtualKeyAlt) {
        m_altHeld = !keyUp;
        return true;
    }
    if (virtualKey == kVirtualKeyPrintScreen && !keyUp) {
        // As on the systems this routine was made for: with Alt held the active window, else
        // (and always with scan code 1) the whole screen. No picture leaves the holder as it was.
        const QImage picture = (m_altHeld && scan != 1) ? grabActiveWindow() : grabWholeScreen();
        if (!picture.isNull())
            m_holder.setPicture(picture);
    }
    return true;
}

bool QtKeyEventSeam::platformId(std::uint32_t& id) {
    id = kPlatformCurrent;
    return true;
}

bool QtKeyEventSeam::yield() {
    QCoreApplication::processEvents();
    return true;
}

QImage QtKeyEventSeam::grabActiveWindow() const {
    QWidget* window = QApplication::activeWindow();
    if (!window)
        window = m_fallbackWindow.data();
    if (!window)
        return {};
    // QWidget::grab draws the widget itself, so it works offscreen and under any X server.
    return window->grab().toImage();
}

QImage QtKeyEventSeam::grabWholeScreen() {
    QScreen* screen = QGuiApplication::primaryScreen();
    if (!screen)
        return {};
    QImage shot = screen->grabWindow(0).toImage();
    if (!shot.isNull())
        return shot;

    const QRect area = screen->geometry();
    shot = QImage(area.size(), QImage::Format_RGB32);
    if (shot.isNull())
        return {};
    shot.fill(Qt::black);
    QPainter painter(&shot);
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (!window->isVisible() || window->isMinimized())
            continue;
        painter.drawPixmap(window->geometry().topLeft() - area.topLeft(), window->grab());
    }
    return shot;
}

} // namespace zorvik
