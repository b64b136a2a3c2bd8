// Colours and drawing helpers shared by the front-panel widgets.
#include "widgets/PanelLook.h"

#include "widgets/PanelAccessibility.h"

#include <QLinearGradient>
#include <QPainter>
#include <QRadialGradient>
#include <QWidget>

#include <cmath>

namespace zorvik::PanelLook {

QColor panelColor() {
    return QColor(38, 41, 46);
}
QColor textColor() {
    return QColor(236, 236, 228);
}
QColor dimTextColor() {
    return QColor(150, 152, 150);
}
QColor disabledTextColor() {
    return QColor(98, 100, 102);
}
QColor scaleColor() {
    return QColor(170, 172, 170);
}
QColor focusColor() {
    return QColor(80, 170, 255);
}

// A rounded outline two pixels wide just inside `rect`. The straight sides are filled as bars
// and only the four small corners are stroked with antialiasing: stroking the whole outline
// costs time in proportion to its size, which tells on a large graph redrawn with every frame.
void drawFocusFrame(QPainter& painter, const QRectF& rect) {
    constexpr qreal kWidth = 2.0;
    constexpr qreal kRadius = 4.0;
    const QRectF r = rect.adjusted(1.0, 1.0, -1.0, -1.0);
    const QColor color = focusColor();
    if (r.width() < 2 * kRadius || r.height() < 2 * kRadius) {
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing, true);
        painter.setPen(QPen(color, kWidth));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(r, kRadius, kRadius);
        painter.restore();
        return;
    }
    const qreal half = kWidth / 2;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, false);
    const qreal straightW = r.width() - 2 * kRadius;
    const qreal straightH = r.height() - 2 * kRadius;
    painter.fillRect(QRectF(r.left() + kRadius, r.top() - half, straightW, kWidth), color);
    painter.fillRect(QRectF(r.left() + kRadius, r.bottom() - half, straightW, kWidth), color);
    painter.fillRect(QRectF(r.left() - half, r.top() + kRadius, kWidth, straightH), color);
    painter.fillRect(QRectF(r.right() - half, r.top() + kRadius, kWidth, straightH), color);
    painter.setRenderHint(QPainter::Antialiasing, true);
    painter.setPen(QPen(color, kWidth, Qt::SolidLine, Qt::FlatCap));
    painter.setBrush(Qt::NoBrush);
    const qreal d = 2 * kRadius;
    painter.drawArc(QRectF(r.left(), r.top(), d, d), 90 * 16, 90 * 16);
    painter.drawArc(QRectF(r.right() - d, r.top(), d, d), 0, 90 * 16);
    painter.drawArc(QRectF(r.left(), r.bottom() - d, d, d), 180 * 16, 90 * 16);
    painter.drawArc(QRectF(r.right() - d, r.bottom() - d, d, d), 270 * 16, 90 * 16);
    painter.restore();
}

namespace {

// The colour of an unlit lamp: the same hue, dark and greyish, as coloured glass with no light.
QColor darkGlass(const QColor& onColor) {
    QColor c = onColor.toHsv();
    return QColor::fromHsv(c.hsvHue() < 0 ? 0 : c.hsvHue(), qMin(c.hsvSaturation(), 120), 58);
}

QColor washedOut(const QColor& c) {
    const int grey = qGray(c.rgb());
    return QColor((c.red() + 2 * grey) / 3 / 2, (c.green() + 2 * grey) / 3 / 2,
                  (c.blue() + 2 * grey) / 3 / 2);
}

} // namespace

void drawRoundLamp(QPainter& painter, const QRectF& rect, const QColor& onColor, bool lit,
                   bool enabled) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, true);
    const qreal side = qMin(rect.width(), rect.height());
    const QRectF r(rect.center().x() - side / 2, rect.center().y() - side / 2, side, side);
    // Bezel.
    QLinearGradient bezel(r.topLeft(), r.bottomRight());
    bezel.setColorAt(0.0, QColor(20, 20, 22));
    bezel.setColorAt(1.0, QColor(120, 122, 126));
    painter.setPen(Qt::NoPen);
    painter.setBrush(bezel);
    painter.drawEllipse(r);
    const QRectF glass = r.adjusted(side * 0.12, side * 0.12, -side * 0.12, -side * 0.12);
    QRadialGradient g(glass.center() - QPointF(glass.width() * 0.15, glass.height() * 0.15),
                      glass.width() * 0.65);
    if (lit && enabled) {
        g.setColorAt(0.0, QColor(255, 255, 255));
        g.setColorAt(0.25, onColor.lighter(130));
        g.setColorAt(0.8, onColor);
        g.setColorAt(1.0, onColor.darker(160));
    } else {
        const QColor dark = enabled ? darkGlass(onColor) : washedOut(darkGlass(onColor));
        g.setColorAt(0.0, dark.lighter(170));
        g.setColorAt(0.5, dark);
        g.setColorAt(1.0, dark.darker(170));
    }
    painter.setBrush(g);
    painter.drawEllipse(glass);
    painter.restore();
}

void drawBarLamp(QPainter& painter, const QRectF& rect, const QColor& onColor, bool lit,
                 const QString& text, bool enabled) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, true);
    const qreal radius = qMin(rect.height() / 2.0, 4.0);
    painter.setPen(QPen(QColor(14, 14, 16), 1.0));
    painter.setBrush(QColor(16, 16, 18));
    painter.drawRoundedRect(rect, radius, radius);
    const QRectF glass = rect.adjusted(1.5, 1.5, -1.5, -1.5);
    QRadialGradient g(glass.center(), qMax(glass.width(), glass.height()) * 0.6);
    QColor textPen;
    if (lit && enabled) {
        g.setColorAt(0.0, onColor.lighter(150));
        g.setColorAt(0.6, onColor);
        g.setColorAt(1.0, onColor.darker(140));
        textPen = QColor(qGray(onColor.rgb()) > 110 ? QColor(10, 10, 10) : QColor(250, 250, 250));
    } else {
        const QColor dark = enabled ? darkGlass(onColor) : washedOut(darkGlass(onColor));
        g.setColorAt(0.0, dark.lighter(140));
        g.setColorAt(1.0, dark.darker(150));
        textPen = QColor(140, 140, 140);
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(g);
    painter.drawRoundedRect(glass, radius - 1.0, radius - 1.0);
    if (!text.isEmpty()) {
        QFont f = painter.font();
        f.setBold(true);
        painter.setFont(f);
        painter.setPen(textPen);
        painter.drawText(rect, Qt::AlignCenter, text);
    }
    painter.restore();
}

void drawMetalCap(QPainter& painter, const QRectF& rect, bool sunken) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, true);
    QLinearGradient g(rect.topLeft(), rect.bottomLeft());
    if (sunken) {
        g.setColorAt(0.0, QColor(120, 124, 128));
        g.setColorAt(1.0, QColor(170, 174, 178));
    } else {
        g.setColorAt(0.0, QColor(222, 224, 226));
        g.setColorAt(0.45, QColor(176, 180, 184));
        g.setColorAt(1.0, QColor(118, 122, 128));
    }
    painter.setPen(QPen(QColor(20, 20, 22), 1.0));
    painter.setBrush(g);
    painter.drawRoundedRect(rect, 2.5, 2.5);
    painter.restore();
}

double scaleStep(double span, double pixels, double minSpacing) {
    if (!(span > 0.0) || !(pixels > 0.0))
        return 0.0;
    const double minStep = span * qMax(minSpacing, 1.0) / pixels;
    double decade = std::pow(10.0, std::floor(std::log10(minStep)));
    for (;;) {
        for (double m : {1.0, 2.0, 2.5, 5.0}) {
            if (m * decade >= minStep * (1.0 - 1e-9))
                return m * decade;
        }
        decade *= 10.0;
    }
}

QString scaleNumber(double value, double step) {
    if (std::abs(value) < std::abs(step) * 1e-6)
        return QStringLiteral("0");
    return QString::number(value, 'g', 6);
}

QString colorWord(const QColor& color) {
    const QColor hsv = color.toHsv();
    if (hsv.hsvSaturation() < 60)
        return hsv.value() > 128 ? QStringLiteral("white") : QStringLiteral("grey");
    const int h = hsv.hsvHue();
    if (h < 15 || h >= 340)
        return QStringLiteral("red");
    if (h < 45)
        return QStringLiteral("amber");
    if (h < 70)
        return QStringLiteral("yellow");
    if (h < 170)
        return QStringLiteral("green");
    if (h < 200)
        return QStringLiteral("cyan");
    if (h < 260)
        return QStringLiteral("blue");
    return QStringLiteral("magenta");
}

void setUpControl(QWidget* widget) {
    installPanelAccessibility();
    widget->setFocusPolicy(Qt::StrongFocus);
}

} // namespace zorvik::PanelLook
