// Helpers for the panel widget tests: a dark host panel, wheel events and pixel counting.
#pragma once

#include <QApplication>
#include <QImage>
#include <QWheelEvent>
#include <QWidget>
#include <QtTest>

#include <functional>
#include <memory>

namespace zorvik::test {

/// A dark top-level panel of the given size that hosts widgets under test.
inline std::unique_ptr<QWidget> makePanel(QSize size = QSize(400, 300)) {
    auto panel = std::make_unique<QWidget>();
    QPalette pal = panel->palette();
    pal.setColor(QPalette::Window, QColor(38, 41, 46));
    panel->setPalette(pal);
    panel->setAutoFillBackground(true);
    panel->resize(size);
    return panel;
}

/// Shows the panel and waits until the window system has exposed it.
inline bool showAndWait(QWidget* panel) {
    panel->show();
    return QTest::qWaitForWindowExposed(panel);
}

/// Sends one wheel event with the given vertical angle delta (120 = one notch) at `pos`.
inline void sendWheel(QWidget* widget, QPointF pos, int angleY) {
    QWheelEvent event(pos, widget->mapToGlobal(pos), QPoint(), QPoint(0, angleY), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(widget, &event);
}

/// Counts the pixels of `image` inside `area` that satisfy `match`.
inline int countPixels(const QImage& image, const QRect& area,
                       const std::function<bool(const QColor&)>& match) {
    int n = 0;
    const QRect r = area.intersected(image.rect());
    for (int y = r.top(); y <= r.bottom(); ++y) {
        for (int x = r.left(); x <= r.right(); ++x) {
            if (match(image.pixelColor(x, y)))
                ++n;
        }
    }
    return n;
}

/// Whether `c` is within `tolerance` of `target` in every channel.
inline bool near(const QColor& c, const QColor& target, int tolerance = 40) {
    return std::abs(c.red() - target.red()) <= tolerance &&
           std::abs(c.green() - target.green()) <= tolerance &&
           std::abs(c.blue() - target.blue()) <= tolerance;
}

} // namespace zorvik::test
