// A line between two end points in the parent's twips, with the widget sized around it.
#include "support/LineControl.h"

#include "support/Twips.h"

#include <QPainter>
#include <algorithm>

namespace zorvik {

namespace {
// Positions far outside any screen are held at this many pixels, which keeps the pixel
// arithmetic in range.
constexpr double kFarPixels = 1 << 24;

int toPixel(double twips) {
    return twipsToPixels(
        std::clamp(twips, -kFarPixels * kTwipsPerPixel, kFarPixels * kTwipsPerPixel));
}
} // namespace

LineControl::LineControl(QWidget* parent) : QWidget(parent) {
    // A line is decoration: clicks go through to whatever lies beneath it.
    setAttribute(Qt::WA_TransparentForMouseEvents);
    followEndPoints();
}

void LineControl::setX1(double twips) {
    m_x1 = twips;
    followEndPoints();
}
void LineControl::setY1(double twips) {
    m_y1 = twips;
    followEndPoints();
}
void LineControl::setX2(double twips) {
    m_x2 = twips;
    followEndPoints();
}
void LineControl::setY2(double twips) {
    m_y2 = twips;
    followEndPoints();
}

void LineControl::setEndPoints(double x1, double y1, double x2, double y2) {
    m_x1 = x1;
    m_y1 = y1;
    m_x2 = x2;
    m_y2 = y2;
    followEndPoints();
}

void LineControl::setBorderColor(const QColor& color) {
    m_color = color;
    update();
}

void LineControl::setBorderWidth(int pixels) {
    m_penWidth = std::max(1, pixels);
    followEndPoints();
}

QPoint LineControl::startPixel() const {
    return {toPixel(m_x1), toPixel(m_y1)};
}
QPoint LineControl::endPixel() const {
    return {toPixel(m_x2), toPixel(m_y2)};
}

void LineControl::followEndPoints() {
    // The widget covers the line's bounding box, widened by the pen on every side so that a
    // horizontal or vertical line still has room to be drawn.
    const QPoint a = startPixel();
    const QPoint b = endPixel();
    const int pad = (m_penWidth + 1) / 2;
    const QPoint topLeft(std::min(a.x(), b.x()) - pad, std::min(a.y(), b.y()) - pad);
    const QPoint bottomRight(std::max(a.x(), b.x()) + pad, std::max(a.y(), b.y()) + pad);
    setGeometry(QRect(topLeft, bottomRight));
    update();
}

void LineControl::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QPoint a = startPixel() - pos();
    const QPoint b = endPixel() - pos();
    // Straight rules stay crisp; slanted lines are smoothed.
    painter.setRenderHint(QPainter::Antialiasing, a.x() != b.x() && a.y() != b.y());
    painter.setPen(QPen(m_color, m_penWidth, Qt::SolidLine, Qt::FlatCap));
    painter.drawLine(a, b);
}

} // namespace zorvik
