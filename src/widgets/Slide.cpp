// A continuous slide with a thumb and a scale.
#include "widgets/Slide.h"

#include "widgets/PanelLook.h"

#include <QAccessible>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include <cmath>

namespace zorvik {

namespace {
constexpr qreal kFrameMargin = 3.0;
} // namespace

Slide::Slide(Qt::Orientation orientation, QWidget* parent)
    : QWidget(parent), m_orientation(orientation) {
    PanelLook::setUpControl(this);
}

void Slide::setOrientation(Qt::Orientation orientation) {
    m_orientation = orientation;
    updateGeometry();
    update();
}

void Slide::setRange(double minimum, double maximum) {
    if (std::isnan(minimum) || std::isnan(maximum))
        return;
    if (maximum < minimum)
        std::swap(minimum, maximum);
    m_minimum = minimum;
    m_maximum = maximum;
    const double clamped = qBound(m_minimum, m_value, m_maximum);
    if (clamped != m_value) {
        m_value = clamped;
        notifyAccessibility();
        emit positionChanged(m_value);
    }
    update();
}

bool Slide::setValue(double value) {
    if (std::isnan(value) || value < m_minimum || value > m_maximum)
        return false;
    if (value != m_value) {
        m_value = value;
        update();
        notifyAccessibility();
        emit positionChanged(value);
        emit valueChanged(value);
    }
    return true;
}

void Slide::setValueSilently(double value) {
    if (std::isnan(value) || value < m_minimum || value > m_maximum || value == m_value)
        return;
    m_value = value;
    update();
    notifyAccessibility();
    emit positionChanged(value);
}

void Slide::setSteps(double smallStep, double largeStep) {
    m_smallStep = smallStep > 0.0 ? smallStep : 0.0;
    m_largeStep = largeStep > 0.0 ? largeStep : 0.0;
}

double Slide::smallStep() const {
    return m_smallStep > 0.0 ? m_smallStep : (m_maximum - m_minimum) / 100.0;
}

double Slide::largeStep() const {
    return m_largeStep > 0.0 ? m_largeStep : (m_maximum - m_minimum) / 10.0;
}

QString Slide::valueText() const {
    return QString::number(m_value, 'f', 2);
}

Slide::Geometry Slide::geometry() const {
    Geometry g;
    const QFontMetricsF fm(font());
    const QRectF area =
        QRectF(rect()).adjusted(kFrameMargin, kFrameMargin, -kFrameMargin, -kFrameMargin);
    const bool vertical = m_orientation == Qt::Vertical;
    const qreal alongLen = vertical ? area.height() : area.width();
    const qreal crossLen = vertical ? area.width() : area.height();
    g.thumbLength = qMax<qreal>(8.0, fm.height() * 0.8);
    // The ends keep room for half the thumb and for half the number printed there.
    const auto endRoom = [&](double v) {
        const qreal half = vertical ? fm.height() / 2.0
                                    : fm.horizontalAdvance(PanelLook::scaleNumber(v, 1.0)) / 2 + 1;
        return qMax(g.thumbLength / 2.0, half);
    };
    const qreal alongStart = vertical ? area.top() : area.left();
    const qreal first = alongStart + endRoom(vertical ? m_maximum : m_minimum);
    const qreal last = alongStart + alongLen - endRoom(vertical ? m_minimum : m_maximum);
    g.minPos = vertical ? last : first;
    g.maxPos = vertical ? first : last;

    const qreal trackPixels = std::abs(g.maxPos - g.minPos);
    const double span = m_maximum - m_minimum;
    // Marks far enough apart for their numbers: a line height on a vertical scale, the widest
    // number and a blank on a horizontal one.
    const QString widest = PanelLook::scaleNumber(
        std::abs(m_minimum) > std::abs(m_maximum) ? m_minimum : m_maximum, 1.0);
    const qreal labelW = fm.horizontalAdvance(widest + QLatin1Char('0'));
    const qreal spacing = vertical ? fm.height() * 1.1 : labelW + fm.height() * 0.5;
    g.tickStep = PanelLook::scaleStep(span, trackPixels, spacing);

    // Across the slide: numbers, ticks, then the thumb riding on the groove.
    const qreal tickLen = fm.height() * 0.4;
    // A vertical scale keeps room for its widest number at the step chosen ("-3.5" is wider
    // than "-4"), and for the blank between number and tick.
    qreal widestAtStep = labelW;
    if (vertical) {
        for (double v : tickValues(g.tickStep))
            widestAtStep = qMax(widestAtStep,
                                fm.horizontalAdvance(PanelLook::scaleNumber(v, g.tickStep)) + 4.0);
    }
    const qreal labelExtent = vertical ? widestAtStep : fm.height();
    // The thumb is up to 2.2 lines wide; it gives up width for the numbers down to one line,
    // and below that the numbers are left out.
    const qreal beside = tickLen + 3.0;
    g.thumbWidth = qMin(fm.height() * 2.2, crossLen - labelExtent - beside);
    if (g.thumbWidth < fm.height()) {
        g.labels = false;
        g.thumbWidth = qMax<qreal>(6.0, qMin(fm.height() * 2.2, crossLen - beside));
    }
    const qreal total = (g.labels ? labelExtent : 0.0) + beside + g.thumbWidth;
    const qreal crossStart = vertical ? area.left() : area.top();
    const qreal offset = (crossLen - total) / 2.0;
    if (vertical)
        g.cross = crossStart + offset + total - g.thumbWidth / 2.0; // numbers on the left
    else
        g.cross = crossStart + offset + g.thumbWidth / 2.0; // numbers below
    return g;
}

QRectF Slide::thumbRect(const Geometry& g, double value) const {
    const double span = m_maximum - m_minimum;
    const qreal f = span > 0 ? (value - m_minimum) / span : 0.0;
    const qreal pos = g.minPos + f * (g.maxPos - g.minPos);
    if (m_orientation == Qt::Vertical)
        return QRectF(g.cross - g.thumbWidth / 2, pos - g.thumbLength / 2, g.thumbWidth,
                      g.thumbLength);
    return QRectF(pos - g.thumbLength / 2, g.cross - g.thumbWidth / 2, g.thumbLength, g.thumbWidth);
}

QPointF Slide::thumbCenterFor(double value) const {
    return thumbRect(geometry(), value).center();
}

qreal Slide::along(const QPointF& point) const {
    return m_orientation == Qt::Vertical ? point.y() : point.x();
}

double Slide::valueAtAlong(const Geometry& g, qreal pos) const {
    const qreal len = g.maxPos - g.minPos;
    if (len == 0)
        return m_minimum;
    const double f = qBound<qreal>(0.0, (pos - g.minPos) / len, 1.0);
    return m_minimum + f * (m_maximum - m_minimum);
}

double Slide::valueAt(const QPointF& point) const {
    return valueAtAlong(geometry(), along(point));
}

// The nearest whole multiple of the small step. For steps such as 0.1 or 0.25 the multiple is
// formed as k / (1 / step), which gives the decimal value itself (3 * 0.1 would give
// 0.30000000000000004, and a slide stepped down from there would never read exactly 0).
double Slide::snapped(double value) const {
    const double step = smallStep();
    if (!(step > 0.0))
        return value;
    const double perUnit = 1.0 / step;
    if (std::abs(perUnit - std::round(perUnit)) < 1e-9 * perUnit)
        return std::round(value * std::round(perUnit)) / std::round(perUnit);
    return std::round(value / step) * step;
}

bool Slide::onGrid(double value) const {
    const double step = smallStep();
    return step > 0.0 && std::abs(snapped(value) - value) <= step * 1e-6;
}

void Slide::applyUserValue(double value, bool snap) {
    if (snap)
        value = snapped(value);
    setValue(qBound(m_minimum, value, m_maximum));
}

void Slide::notifyAccessibility() {
    if (!QAccessible::isActive())
        return;
    QAccessibleValueChangeEvent event(this, m_value);
    QAccessible::updateAccessibility(&event);
}

QVector<double> Slide::tickValues(double step) const {
    QVector<double> values;
    if (step <= 0 || m_maximum <= m_minimum)
        return values;
    const double first = std::ceil(m_minimum / step - 1e-9) * step;
    for (int i = 0;; ++i) {
        const double v = first + i * step;
        if (v > m_maximum + step * 1e-9)
            break;
        values.append(v);
    }
    return values;
}

QVector<Slide::Tick> Slide::ticks(const Geometry& g) const {
    QVector<Tick> ticks;
    const double span = m_maximum - m_minimum;
    for (double v : tickValues(g.tickStep))
        ticks.append({v, g.minPos + (v - m_minimum) / span * (g.maxPos - g.minPos)});
    return ticks;
}

QVector<Slide::ScaleLabel> Slide::scaleLabels(const Geometry& g) const {
    QVector<ScaleLabel> labels;
    if (!g.labels)
        return labels;
    const bool vertical = m_orientation == Qt::Vertical;
    const QFontMetricsF fm(font());
    const qreal tickLen = fm.height() * 0.4;
    const qreal tickFrom =
        vertical ? g.cross - g.thumbWidth / 2 - 3.0 : g.cross + g.thumbWidth / 2 + 3.0;
    for (const Tick& tick : ticks(g)) {
        const qreal pos = tick.pos;
        ScaleLabel label;
        label.text = PanelLook::scaleNumber(tick.value, g.tickStep);
        const qreal w = fm.horizontalAdvance(label.text);
        if (vertical)
            label.box =
                QRectF(tickFrom - tickLen - 2 - w - 2, pos - fm.height() / 2, w + 2, fm.height());
        else
            label.box = QRectF(pos - w / 2 - 1, tickFrom + tickLen, w + 2, fm.height());
        labels << label;
    }
    return labels;
}

QList<QRectF> Slide::scaleLabelRects() const {
    QList<QRectF> rects;
    for (const ScaleLabel& label : scaleLabels(geometry()))
        rects << label.box;
    return rects;
}

bool Slide::textFits() const {
    const QVector<ScaleLabel> labels = scaleLabels(geometry());
    const QRectF inside(rect());
    for (int k = 0; k < labels.size(); ++k) {
        if (!inside.contains(labels.at(k).box))
            return false;
        if (k > 0 && labels.at(k - 1).box.intersects(labels.at(k).box))
            return false;
    }
    return true;
}

void Slide::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing, true);
    const Geometry g = geometry();
    const bool vertical = m_orientation == Qt::Vertical;
    const bool on = isEnabled();
    const QFontMetricsF fm(font());
    const auto point = [vertical](qreal along, qreal cross) {
        return vertical ? QPointF(cross, along) : QPointF(along, cross);
    };

    // Groove.
    const qreal groove = qMax<qreal>(4.0, g.thumbWidth * 0.18);
    const QRectF grooveRect =
        vertical ? QRectF(g.cross - groove / 2, g.maxPos, groove, g.minPos - g.maxPos)
                 : QRectF(g.minPos, g.cross - groove / 2, g.maxPos - g.minPos, groove);
    p.setPen(QPen(QColor(90, 92, 96), 1.0));
    p.setBrush(QColor(10, 10, 12));
    p.drawRoundedRect(grooveRect.adjusted(-1, -1, 1, 1), groove / 2, groove / 2);

    // Scale: a mark at every step, numbered where there is room.
    const qreal tickEnd = g.cross - g.thumbWidth / 2 - 3.0;
    const qreal tickLen = fm.height() * 0.4;
    const qreal sign = vertical ? -1.0 : 1.0; // ticks left of a vertical groove, below otherwise
    const qreal tickFrom = vertical ? tickEnd : g.cross + g.thumbWidth / 2 + 3.0;
    const QColor scale = on ? PanelLook::scaleColor() : PanelLook::disabledTextColor();
    p.setPen(QPen(scale, 1.0));
    for (const Tick& tick : ticks(g))
        p.drawLine(point(tick.pos, tickFrom), point(tick.pos, tickFrom + sign * tickLen));
    p.setPen(on ? PanelLook::dimTextColor() : PanelLook::disabledTextColor());
    for (const ScaleLabel& label : scaleLabels(g))
        p.drawText(label.box, Qt::AlignCenter, label.text);

    // Thumb with its index line.
    const QRectF thumb = thumbRect(g, m_value);
    PanelLook::drawMetalCap(p, thumb, m_dragging);
    p.setPen(QPen(on ? QColor(30, 30, 34) : QColor(90, 90, 90), 2.0));
    if (vertical)
        p.drawLine(QPointF(thumb.left() + 2, thumb.center().y()),
                   QPointF(thumb.right() - 2, thumb.center().y()));
    else
        p.drawLine(QPointF(thumb.center().x(), thumb.top() + 2),
                   QPointF(thumb.center().x(), thumb.bottom() - 2));

    if (hasFocus())
        PanelLook::drawFocusFrame(p, rect());
}

void Slide::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    const Geometry g = geometry();
    const QRectF thumb = thumbRect(g, m_value);
    m_dragging = true;
    if (thumb.contains(event->position())) {
        // Keep the spot where the thumb was taken under the pointer.
        m_grabOffset = along(event->position()) - along(thumb.center());
        update();
    } else {
        m_grabOffset = 0;
        applyUserValue(valueAtAlong(g, along(event->position())), true);
    }
}

void Slide::mouseMoveEvent(QMouseEvent* event) {
    if (!m_dragging)
        return;
    applyUserValue(valueAtAlong(geometry(), along(event->position()) - m_grabOffset), true);
}

void Slide::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    m_dragging = false;
    update();
}

void Slide::wheelEvent(QWheelEvent* event) {
    const QPoint d = event->angleDelta();
    m_wheelRemainder += (d.y() != 0) ? d.y() : -d.x();
    const int steps = m_wheelRemainder / 120;
    m_wheelRemainder -= steps * 120;
    if (steps != 0)
        applyUserValue(m_value + steps * smallStep(), onGrid(m_value));
    event->accept();
}

void Slide::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Down:
        applyUserValue(m_value - smallStep(), onGrid(m_value));
        break;
    case Qt::Key_Right:
    case Qt::Key_Up:
        applyUserValue(m_value + smallStep(), onGrid(m_value));
        break;
    case Qt::Key_PageDown:
        applyUserValue(m_value - largeStep(), onGrid(m_value));
        break;
    case Qt::Key_PageUp:
        applyUserValue(m_value + largeStep(), onGrid(m_value));
        break;
    case Qt::Key_Home:
        applyUserValue(m_minimum, false);
        break;
    case Qt::Key_End:
        applyUserValue(m_maximum, false);
        break;
    default:
        QWidget::keyPressEvent(event);
        return;
    }
    event->accept();
}

void Slide::focusInEvent(QFocusEvent* event) {
    update();
    QWidget::focusInEvent(event);
}

void Slide::focusOutEvent(QFocusEvent* event) {
    update();
    QWidget::focusOutEvent(event);
}

QSize Slide::sizeHint() const {
    const QFontMetrics fm(font());
    return m_orientation == Qt::Vertical ? QSize(fm.height() * 5, fm.height() * 14)
                                         : QSize(fm.height() * 20, fm.height() * 3);
}

QSize Slide::minimumSizeHint() const {
    const QFontMetrics fm(font());
    return m_orientation == Qt::Vertical ? QSize(fm.height() * 2, fm.height() * 4)
                                         : QSize(fm.height() * 4, fm.height() * 2);
}

} // namespace zorvik
