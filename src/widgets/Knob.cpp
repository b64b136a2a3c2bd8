// A rotary knob with labelled click-stop positions 1..N.
#include "widgets/Knob.h"

#include "widgets/PanelLook.h"

#include <QAccessible>
#include <QConicalGradient>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QRadialGradient>
#include <QWheelEvent>
#include <QtMath>

namespace zorvik {

namespace {
// Margin kept free around the drawing for the focus frame.
constexpr qreal kFrameMargin = 3.0;
// Proportions of the dial, relative to its radius: the skirt's edge and the tick length.
constexpr qreal kRim = 1.02;
constexpr qreal kTick = 0.14;
// Gap between tick and label, relative to the font height.
constexpr qreal kLabelGap = 0.2;
} // namespace

Knob::Knob(QWidget* parent) : QWidget(parent) {
    PanelLook::setUpControl(this);
}

void Knob::setPositionLabels(const QStringList& labels) {
    m_labels = labels;
    const int n = positionCount();
    if (n == 0)
        m_value = 0;
    else
        m_value = qBound(1, m_value, n);
    updateGeometry();
    update();
}

bool Knob::setValue(int position) {
    if (position < 1 || position > positionCount())
        return false;
    if (position != m_value) {
        m_value = position;
        update();
        notifyAccessibility();
        emit valueChanged(position);
    }
    return true;
}

void Knob::setValueSilently(int position) {
    if (position < 1 || position > positionCount() || position == m_value)
        return;
    m_value = position;
    update();
    notifyAccessibility();
}

QString Knob::valueText() const {
    if (m_value < 1 || m_value > positionCount())
        return QString();
    return m_labels.at(m_value - 1).trimmed();
}

void Knob::setHeading(const QString& heading) {
    m_heading = heading;
    updateGeometry();
    update();
}

// The labels spread over at most three quarters of a turn, centred on twelve o'clock, so the
// dead zone at the bottom separates the first position from the last.
qreal Knob::sweep() const {
    const int n = positionCount();
    return n < 2 ? 0.0 : qMin<qreal>(270.0, (n - 1) * 40.0);
}

qreal Knob::positionAngle(int position) const {
    const int n = positionCount();
    if (n < 2)
        return 90.0;
    return 90.0 + sweep() / 2.0 - (position - 1) * sweep() / (n - 1);
}

namespace {

QFont scaledFont(const QFont& font, qreal scale) {
    QFont f = font;
    if (f.pointSizeF() > 0)
        f.setPointSizeF(f.pointSizeF() * scale);
    else if (f.pixelSize() > 0)
        f.setPixelSize(qMax(1, qRound(f.pixelSize() * scale)));
    return f;
}

bool neighboursOverlap(const QVector<QRectF>& rects) {
    for (int k = 1; k < rects.size(); ++k) {
        if (rects.at(k - 1).adjusted(-1, -1, 1, 1).intersects(rects.at(k)))
            return true;
    }
    return false;
}

} // namespace

// The dial takes what room the heading and the labels leave. When the labels of neighbouring
// positions would run into each other (many positions on a small knob), they are drawn in a
// smaller type, down to two thirds of the widget's font, rather than on top of one another.
Knob::Geometry Knob::geometry() const {
    Geometry g;
    const QFontMetricsF fm(font());
    const QRectF area =
        QRectF(rect()).adjusted(kFrameMargin, kFrameMargin, -kFrameMargin, -kFrameMargin);
    qreal top = area.top();
    if (!m_heading.isEmpty()) {
        const QRectF text = fm.boundingRect(area, Qt::AlignHCenter | Qt::TextWordWrap, m_heading);
        g.headingRect = QRectF(area.left(), area.top(), area.width(), text.height());
        top = g.headingRect.bottom() + fm.height() * 0.25;
    }
    const QRectF dialArea(area.left(), top, area.width(), area.bottom() - top);
    for (qreal scale = 1.0; scale > 0.64; scale -= 0.05) {
        g.labelFont = scaledFont(font(), scale);
        const QFontMetricsF lm(g.labelFont);
        qreal labelW = 0;
        for (const QString& l : m_labels)
            labelW = qMax(labelW, lm.horizontalAdvance(l.trimmed()));
        const qreal labelH = lm.height();
        const qreal gap = labelH * kLabelGap;
        // Above the centre the ring reaches the skirt, the ticks, the gap and a whole label;
        // below it, the skirt and about half a label (the bottom has no labels).
        const qreal outer = kRim + kTick;
        const qreal fromWidth = (dialArea.width() / 2.0 - gap - labelW) / outer;
        const qreal fromHeight = (dialArea.height() - gap - 1.5 * labelH) / (outer + 1.0);
        g.radius = qMax<qreal>(6.0, qMin(fromWidth, fromHeight));
        const qreal used = (outer + 1.0) * g.radius + gap + 1.5 * labelH;
        g.center =
            QPointF(dialArea.center().x(), dialArea.top() + (dialArea.height() - used) / 2.0 +
                                               outer * g.radius + gap + labelH);
        g.labels.clear();
        for (int k = 1; k <= positionCount(); ++k) {
            const qreal a = qDegreesToRadians(positionAngle(k));
            const QPointF u(std::cos(a), -std::sin(a));
            const QString label = m_labels.at(k - 1).trimmed();
            const qreal w = lm.horizontalAdvance(label);
            const qreal dist =
                g.radius * outer + gap + std::abs(u.x()) * w / 2 + std::abs(u.y()) * labelH / 2;
            const QPointF c = g.center + u * dist;
            g.labels.append(QRectF(c.x() - w / 2 - 1, c.y() - labelH / 2, w + 2, labelH));
        }
        if (!neighboursOverlap(g.labels))
            break;
    }
    return g;
}

QRectF Knob::labelRect(int position) const {
    const Geometry g = geometry();
    return (position >= 1 && position <= g.labels.size()) ? g.labels.at(position - 1) : QRectF();
}

QRectF Knob::headingRect() const {
    return geometry().headingRect;
}

// The heading stands on one line; every label lies inside the knob, below the heading and clear
// of its neighbours.
bool Knob::textFits() const {
    const Geometry g = geometry();
    const QRectF inside(rect());
    if (!m_heading.isEmpty() &&
        QFontMetricsF(font()).horizontalAdvance(m_heading) > inside.width() - 2 * kFrameMargin)
        return false;
    for (const QRectF& label : g.labels) {
        if (!inside.contains(label) || label.top() < g.headingRect.bottom())
            return false;
    }
    return !neighboursOverlap(g.labels);
}

QFont Knob::labelFont() const {
    return geometry().labelFont;
}

QPointF Knob::dialCenter() const {
    return geometry().center;
}
qreal Knob::dialRadius() const {
    return geometry().radius;
}

int Knob::positionAt(const QPointF& point) const {
    const int n = positionCount();
    if (n == 0)
        return 0;
    if (n == 1)
        return 1;
    const QPointF c = dialCenter();
    const qreal angle = qRadiansToDegrees(std::atan2(-(point.y() - c.y()), point.x() - c.x()));
    const qreal fromFirst = std::fmod(positionAngle(1) - angle + 720.0, 360.0);
    const qreal step = sweep() / (n - 1);
    if (fromFirst <= sweep() + step / 2.0)
        return qBound(1, qRound(fromFirst / step) + 1, n);
    // In the dead zone: the nearer end.
    return (fromFirst - sweep() < 360.0 - fromFirst) ? n : 1;
}

void Knob::applyUserValue(int position) {
    if (positionCount() == 0)
        return;
    setValue(qBound(1, position, positionCount()));
}

void Knob::notifyAccessibility() {
    if (!QAccessible::isActive())
        return;
    QAccessibleValueChangeEvent event(this, m_value);
    QAccessible::updateAccessibility(&event);
}

void Knob::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing, true);
    p.setRenderHint(QPainter::TextAntialiasing, true);
    const Geometry g = geometry();
    const bool on = isEnabled();
    const QColor text = on ? PanelLook::textColor() : PanelLook::disabledTextColor();
    const QColor dim = on ? PanelLook::dimTextColor() : PanelLook::disabledTextColor();

    if (!m_heading.isEmpty()) {
        p.setPen(text);
        p.drawText(g.headingRect, Qt::AlignHCenter | Qt::TextWordWrap, m_heading);
    }

    const qreal r = g.radius;
    const QPointF c = g.center;

    // Ticks and labels around the dial.
    p.setFont(g.labelFont);
    for (int k = 1; k <= positionCount(); ++k) {
        const qreal a = qDegreesToRadians(positionAngle(k));
        const QPointF u(std::cos(a), -std::sin(a));
        const bool current = (k == m_value);
        p.setPen(QPen(current ? text : PanelLook::scaleColor(), current ? 2.0 : 1.2));
        p.drawLine(c + u * (r * kRim), c + u * (r * (kRim + kTick)));
        p.setPen(current ? text : dim);
        p.drawText(g.labels.at(k - 1), Qt::AlignCenter, m_labels.at(k - 1).trimmed());
    }
    p.setFont(font());

    // Skirt, knurled metal body and cap.
    p.setPen(QPen(QColor(12, 12, 14), 1.0));
    QRadialGradient skirt(c, r);
    skirt.setColorAt(0.0, QColor(70, 72, 76));
    skirt.setColorAt(0.9, QColor(28, 29, 32));
    skirt.setColorAt(1.0, QColor(10, 10, 12));
    p.setBrush(skirt);
    p.drawEllipse(c, r, r);
    const qreal body = r * 0.84;
    QConicalGradient metal(c, 45.0);
    const QColor light = on ? QColor(226, 228, 230) : QColor(150, 152, 154);
    const QColor shade = on ? QColor(120, 124, 130) : QColor(96, 98, 100);
    for (int i = 0; i <= 8; ++i)
        metal.setColorAt(i / 8.0, (i % 2 == 0) ? light : shade);
    p.setBrush(metal);
    p.drawEllipse(c, body, body);
    QRadialGradient cap(c - QPointF(body * 0.2, body * 0.2), body * 0.8);
    cap.setColorAt(0.0, on ? QColor(238, 240, 242) : QColor(160, 160, 160));
    cap.setColorAt(1.0, on ? QColor(150, 154, 160) : QColor(110, 110, 110));
    p.setBrush(cap);
    p.setPen(QPen(QColor(90, 92, 96), 1.0));
    p.drawEllipse(c, body * 0.68, body * 0.68);

    // The needle.
    if (m_value >= 1) {
        const qreal a = qDegreesToRadians(positionAngle(m_value));
        const QPointF u(std::cos(a), -std::sin(a));
        p.setPen(QPen(on ? QColor(210, 30, 20) : QColor(120, 70, 70), qMax<qreal>(2.0, r * 0.1),
                      Qt::SolidLine, Qt::RoundCap));
        p.drawLine(c + u * (body * 0.15), c + u * (body * 0.95));
    }

    if (hasFocus())
        PanelLook::drawFocusFrame(p, rect());
}

void Knob::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || positionCount() == 0) {
        event->ignore();
        return;
    }
    const Geometry g = geometry();
    if (g.headingRect.contains(event->position()))
        return;
    m_dragging = true;
    const QPointF d = event->position() - g.center;
    if (std::hypot(d.x(), d.y()) > g.radius * 0.15)
        applyUserValue(positionAt(event->position()));
}

void Knob::mouseMoveEvent(QMouseEvent* event) {
    if (!m_dragging)
        return;
    const Geometry g = geometry();
    const QPointF d = event->position() - g.center;
    // Near the centre the angle is meaningless: hold the position until the pointer moves out.
    if (std::hypot(d.x(), d.y()) > g.radius * 0.15)
        applyUserValue(positionAt(event->position()));
}

void Knob::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton)
        m_dragging = false;
}

void Knob::wheelEvent(QWheelEvent* event) {
    if (positionCount() == 0) {
        event->ignore();
        return;
    }
    const QPoint d = event->angleDelta();
    m_wheelRemainder += (d.y() != 0) ? d.y() : -d.x();
    const int steps = m_wheelRemainder / 120;
    m_wheelRemainder -= steps * 120;
    if (steps != 0)
        applyUserValue(m_value + steps);
    event->accept();
}

void Knob::keyPressEvent(QKeyEvent* event) {
    const int n = positionCount();
    switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Down:
    case Qt::Key_PageDown:
        applyUserValue(m_value - 1);
        break;
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_PageUp:
        applyUserValue(m_value + 1);
        break;
    case Qt::Key_Home:
        applyUserValue(1);
        break;
    case Qt::Key_End:
        applyUserValue(n);
        break;
    default:
        QWidget::keyPressEvent(event);
        return;
    }
    event->accept();
}

void Knob::focusInEvent(QFocusEvent* event) {
    update();
    QWidget::focusInEvent(event);
}

void Knob::focusOutEvent(QFocusEvent* event) {
    update();
    QWidget::focusOutEvent(event);
}

QSize Knob::sizeHint() const {
    const QFontMetrics fm(font());
    return QSize(fm.height() * 9, fm.height() * 9);
}

QSize Knob::minimumSizeHint() const {
    const QFontMetrics fm(font());
    return QSize(fm.height() * 5, fm.height() * 5);
}

} // namespace zorvik
