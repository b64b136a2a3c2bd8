// Painting of the splash backdrop and the program emblem.
#include "support/SplashArt.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>
#include <algorithm>
#include <cmath>
#include <numbers>

namespace zorvik {

namespace {

const QColor kPhosphor(120, 255, 150);
const QColor kScreenTop(10, 26, 19);
const QColor kScreenBottom(4, 12, 8);
const QColor kPanelTop(30, 34, 36);
const QColor kPanelBottom(20, 22, 24);

// A damped, slightly distorted sine: what a probe on a ringing edge might show.
QPainterPath tracePath(const QRectF& area) {
    QPainterPath path;
    const int steps = 240;
    for (int i = 0; i <= steps; ++i) {
        const double t = static_cast<double>(i) / steps;
        const double phase = t * 4.5 * 2 * std::numbers::pi;
        const double envelope = 0.25 + 0.75 * std::exp(-2.2 * t);
        const double y = envelope * (std::sin(phase) + 0.18 * std::sin(3 * phase));
        const QPointF point(area.left() + t * area.width(),
                            area.center().y() - y * area.height() * 0.42);
        if (i == 0)
            path.moveTo(point);
        else
            path.lineTo(point);
    }
    return path;
}

void paintGraticule(QPainter& painter, const QRectF& area, int columns, int rows, int alpha) {
    QColor line = kPhosphor;
    line.setAlpha(alpha);
    painter.setPen(QPen(line, 1, Qt::DotLine));
    for (int c = 1; c < columns; ++c) {
        const double x = area.left() + area.width() * c / columns;
        painter.drawLine(QPointF(x, area.top()), QPointF(x, area.bottom()));
    }
    for (int r = 1; r < rows; ++r) {
        const double y = area.top() + area.height() * r / rows;
        painter.drawLine(QPointF(area.left(), y), QPointF(area.right(), y));
    }
}

void paintTrace(QPainter& painter, const QRectF& area, double width) {
    const QPainterPath path = tracePath(area);
    QColor glow = kPhosphor;
    glow.setAlpha(40);
    painter.setPen(QPen(glow, width * 4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(path);
    painter.setPen(QPen(kPhosphor, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(path);
}

} // namespace

void paintSplashBackdrop(QPainter& painter, const QRect& whole, int cut, const QRect& trace) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);

    const QRect screen(whole.left(), whole.top(), whole.width(), cut - whole.top());
    QLinearGradient screenFill(screen.topLeft(), screen.bottomLeft());
    screenFill.setColorAt(0, kScreenTop);
    screenFill.setColorAt(1, kScreenBottom);
    painter.fillRect(screen, screenFill);

    // A faint full-size graticule, then a brighter one behind the trace.
    paintGraticule(painter, screen, 12, 8, 22);
    QRadialGradient halo(trace.center(), trace.width() * 0.6);
    QColor haloColour = kPhosphor;
    haloColour.setAlpha(18);
    halo.setColorAt(0, haloColour);
    halo.setColorAt(1, Qt::transparent);
    painter.fillRect(trace.adjusted(-30, -20, 30, 20), halo);
    paintGraticule(painter, trace, 8, 4, 45);
    paintTrace(painter, trace, 1.6);

    const QRect panel(whole.left(), cut, whole.width(), whole.bottom() - cut + 1);
    QLinearGradient panelFill(panel.topLeft(), panel.bottomLeft());
    panelFill.setColorAt(0, kPanelTop);
    panelFill.setColorAt(1, kPanelBottom);
    painter.fillRect(panel, panelFill);

    painter.restore();
}

QPixmap scopeEmblem(int size) {
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    const double edge = size / 16.0;
    const QRectF body(edge, edge, size - 2 * edge, size - 2 * edge);
    painter.setPen(QPen(QColor(90, 100, 104), edge * 0.8));
    painter.setBrush(QColor(28, 32, 34));
    painter.drawRoundedRect(body, size / 8.0, size / 8.0);
    const QRectF glass = body.adjusted(edge * 1.6, edge * 1.6, -edge * 1.6, -edge * 1.6);
    painter.setPen(Qt::NoPen);
    painter.setBrush(kScreenTop);
    painter.drawRoundedRect(glass, size / 16.0, size / 16.0);
    paintGraticule(painter, glass, 4, 4, 70);
    paintTrace(painter, glass.adjusted(edge, 0, -edge, 0), std::max(1.0, size / 28.0));
    return pixmap;
}

} // namespace zorvik
