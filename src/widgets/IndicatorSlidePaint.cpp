// Layout and painting of the indicator slide: positions, scale, pointer tags and state lamps.
#include "widgets/IndicatorSlide.h"

#include "widgets/PanelLook.h"
#include "widgets/ScopeGraph.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace zorvik {

namespace {

constexpr qreal kFrameMargin = 3.0;

// Draws a pointer tag: a label box with an arrow tip at `tip`, pointing towards `edge`.
// A pinned tag (value beyond the scale) is drawn hollow.
/// The box of a tag whose tip is at `tip`, moved `shift` pixels along the scale.
QRectF tagBox(const QFontMetricsF& fm, const QPointF& tip, Qt::Edge edge, const QString& text,
              qreal shift) {
    const qreal h = fm.height() + 2.0;
    const qreal tipLen = h * 0.45;
    const qreal w = fm.horizontalAdvance(text) + h * 0.5;
    switch (edge) {
    case Qt::RightEdge:
        return QRectF(tip.x() - tipLen - w, tip.y() - h / 2 + shift, w, h);
    case Qt::LeftEdge:
        return QRectF(tip.x() + tipLen, tip.y() - h / 2 + shift, w, h);
    case Qt::BottomEdge:
        return QRectF(tip.x() - w / 2 + shift, tip.y() - tipLen - h, w, h);
    default:
        return QRectF(tip.x() - w / 2 + shift, tip.y() + tipLen, w, h);
    }
}

void drawTag(QPainter& p, const QPointF& tip, const QRectF& box, Qt::Edge edge, const QString& text,
             const QColor& color, bool pinned) {
    QPainterPath path;
    switch (edge) {
    case Qt::RightEdge:
        path.moveTo(tip);
        path.lineTo(box.topRight());
        path.lineTo(box.topLeft());
        path.lineTo(box.bottomLeft());
        path.lineTo(box.bottomRight());
        break;
    case Qt::LeftEdge:
        path.moveTo(tip);
        path.lineTo(box.bottomLeft());
        path.lineTo(box.bottomRight());
        path.lineTo(box.topRight());
        path.lineTo(box.topLeft());
        break;
    case Qt::BottomEdge:
        path.moveTo(tip);
        path.lineTo(box.bottomLeft());
        path.lineTo(box.topLeft());
        path.lineTo(box.topRight());
        path.lineTo(box.bottomRight());
        break;
    case Qt::TopEdge:
    default:
        path.moveTo(tip);
        path.lineTo(box.topRight());
        path.lineTo(box.bottomRight());
        path.lineTo(box.bottomLeft());
        path.lineTo(box.topLeft());
        break;
    }
    path.closeSubpath();
    p.save();
    p.setRenderHint(QPainter::Antialiasing, true);
    p.setPen(QPen(pinned ? color : color.darker(180), pinned ? 1.5 : 1.0));
    p.setBrush(pinned ? QBrush(PanelLook::panelColor()) : QBrush(color));
    p.drawPath(path);
    p.setPen(pinned ? color : (qGray(color.rgb()) > 110 ? QColor(8, 8, 8) : QColor(Qt::white)));
    p.drawText(box, Qt::AlignCenter, text);
    p.restore();
}

} // namespace

IndicatorSlide::Track IndicatorSlide::track() const {
    Track t;
    const QFontMetricsF fm(font());
    const bool vertical = m_orientation == Qt::Vertical;
    QRectF area = QRectF(rect()).adjusted(kFrameMargin, kFrameMargin, -kFrameMargin, -kFrameMargin);
    int lampCount = 0;
    qreal lampTextW = 0;
    for (const Pointer& p : m_pointers) {
        if (p.marks.isEmpty())
            continue;
        ++lampCount;
        for (const StateMark& m : p.marks)
            lampTextW = qMax(lampTextW, fm.horizontalAdvance(m.text));
    }
    if (lampCount > 0) {
        const qreal lampH = fm.height() * 1.35;
        if (vertical) {
            t.lamps = QRectF(area.left(), area.top(), area.width(), lampCount * (lampH + 2.0));
            area.setTop(t.lamps.bottom() + fm.height() * 0.3);
        } else {
            const qreal w = lampTextW + fm.height();
            t.lamps = QRectF(area.left(), area.center().y() - lampCount * (lampH + 2.0) / 2, w,
                             lampCount * (lampH + 2.0));
            area.setLeft(t.lamps.right() + fm.height() * 0.5);
        }
    }
    // By default the ends keep half a line free; a horizontal row of positions keeps room for
    // half of its first and last labels, which are centred under their positions.
    qreal defaultStart = fm.height() * 0.6;
    qreal defaultEnd = defaultStart;
    if (m_mode == Mode::Discrete && !vertical && !m_labels.isEmpty()) {
        defaultStart = qMax(defaultStart, fm.horizontalAdvance(m_labels.first().trimmed()) / 2 + 2);
        defaultEnd = qMax(defaultEnd, fm.horizontalAdvance(m_labels.last().trimmed()) / 2 + 2);
    }
    const qreal insetStart = m_insetStart >= 0 ? m_insetStart : defaultStart;
    const qreal insetEnd = m_insetEnd >= 0 ? m_insetEnd : defaultEnd;
    const qreal first = (vertical ? area.top() : area.left()) + insetStart;
    const qreal last = (vertical ? area.bottom() : area.right()) - insetEnd;
    if (m_mode == Mode::Discrete || !vertical) {
        t.start = first;
        t.end = last;
    } else {
        t.start = last; // the minimum at the bottom
        t.end = first;
    }
    const ScopeGraph* graph = guide();
    if (m_mode == Mode::Continuous && vertical && graph) {
        // Use the graph's own mapping of its Y range, brought into this widget's coordinates.
        const QCPRange range = graph->yAxis->range();
        const qreal low = graph->yAxis->coordToPixel(range.lower);
        const qreal high = graph->yAxis->coordToPixel(range.upper);
        const qreal shift = mapFromGlobal(graph->mapToGlobal(QPoint(0, 0))).y();
        t.start = low + shift;
        t.end = high + shift;
    }
    return t;
}

qreal IndicatorSlide::pixelFor(double value) const {
    const Track t = track();
    if (m_mode == Mode::Discrete) {
        const int n = positionCount();
        if (n < 2)
            return (t.start + t.end) / 2.0;
        return t.start + (value - 1.0) * (t.end - t.start) / (n - 1);
    }
    if (const ScopeGraph* graph = guide(); graph && m_orientation == Qt::Vertical) {
        // Pixels follow the graph's Y range; this scale's own range maps onto it.
        const QCPRange range = graph->yAxis->range();
        if (range.size() == 0)
            return t.start;
        return t.start + (value - range.lower) / range.size() * (t.end - t.start);
    }
    const double span = m_maximum - m_minimum;
    return span > 0 ? t.start + (value - m_minimum) / span * (t.end - t.start) : t.start;
}

void IndicatorSlide::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing, true);
    const Track t = track();
    if (m_mode == Mode::Discrete)
        paintDiscrete(p, t);
    else
        paintContinuous(p, t);
    paintTags(p, t);
    paintLamps(p, t);
    if (hasFocus())
        PanelLook::drawFocusFrame(p, rect());
}

// Across a discrete slide: the pointer's arrow, the track with a dot per position, the labels.
IndicatorSlide::DiscreteLayout IndicatorSlide::discreteLayout() const {
    const QFontMetricsF fm(font());
    DiscreteLayout d;
    d.dot = qMax<qreal>(3.0, fm.height() * 0.22);
    d.arrow = fm.height() * 0.8;
    qreal labelW = 0;
    for (const QString& l : m_labels)
        labelW = qMax(labelW, fm.horizontalAdvance(l.trimmed()));
    const QRectF area =
        QRectF(rect()).adjusted(kFrameMargin, kFrameMargin, -kFrameMargin, -kFrameMargin);
    if (m_orientation == Qt::Vertical) {
        const qreal total = d.arrow + 2 * d.dot + fm.height() * 0.4 + labelW;
        d.cross = area.left() + qMax<qreal>(0.0, (area.width() - total) / 2.0) + d.arrow + d.dot;
    } else {
        const qreal total = d.arrow + 2 * d.dot + fm.height() * 1.2;
        d.cross = area.top() + qMax<qreal>(0.0, (area.height() - total) / 2.0) + d.arrow + d.dot;
    }
    return d;
}

// The label of position k, in bold when it is the lit one.
QRectF IndicatorSlide::discreteLabelBox(const DiscreteLayout& d, int k, bool bold) const {
    QFont f = font();
    f.setBold(bold);
    const QFontMetricsF fm(f);
    const qreal w = fm.horizontalAdvance(m_labels.at(k - 1).trimmed());
    const qreal pos = pixelFor(k);
    return m_orientation == Qt::Vertical
               ? QRectF(d.cross + d.dot + fm.height() * 0.4, pos - fm.height() / 2, w + 2,
                        fm.height())
               : QRectF(pos - w / 2 - 1, d.cross + d.dot + fm.height() * 0.15, w + 2, fm.height());
}

QList<QRectF> IndicatorSlide::labelRects() const {
    QList<QRectF> rects;
    if (m_mode != Mode::Discrete)
        return rects;
    const DiscreteLayout d = discreteLayout();
    const int current = m_pointerVisible ? static_cast<int>(m_value) : 0;
    for (int k = 1; k <= positionCount(); ++k)
        rects << discreteLabelBox(d, k, k == current && isEnabled());
    return rects;
}

// Every label lies inside the slide and clear of its neighbours, even in bold (any of them may
// be the lit one), and every tag inside the slide.
bool IndicatorSlide::textFits() const {
    const QRectF inside(rect());
    if (m_mode == Mode::Discrete) {
        const DiscreteLayout d = discreteLayout();
        for (int k = 1; k <= positionCount(); ++k) {
            const QRectF box = discreteLabelBox(d, k, true);
            if (!inside.contains(box))
                return false;
            if (k > 1 && discreteLabelBox(d, k - 1, true).intersects(box))
                return false;
        }
    }
    for (const QRectF& tag : tagRects()) {
        if (!inside.contains(tag))
            return false;
    }
    return true;
}

void IndicatorSlide::paintDiscrete(QPainter& p, const Track& t) {
    const bool vertical = m_orientation == Qt::Vertical;
    const bool on = isEnabled();
    const int n = positionCount();
    const DiscreteLayout d = discreteLayout();
    const qreal dot = d.dot;
    const qreal arrow = d.arrow;
    const qreal cross = d.cross;
    const auto at = [vertical](qreal along, qreal c) {
        return vertical ? QPointF(c, along) : QPointF(along, c);
    };
    p.setPen(QPen(on ? PanelLook::scaleColor() : PanelLook::disabledTextColor(), 1.5));
    if (n > 1)
        p.drawLine(at(t.start, cross), at(t.end, cross));
    const int current = m_pointerVisible ? static_cast<int>(m_value) : 0;
    for (int k = 1; k <= n; ++k) {
        const qreal pos = pixelFor(k);
        const bool lit = (k == current) && on;
        p.setPen(QPen(QColor(12, 12, 14), 1.0));
        p.setBrush(lit ? QColor(255, 200, 60) : QColor(70, 72, 76));
        p.drawEllipse(at(pos, cross), dot, dot);
        QFont f = font();
        f.setBold(lit);
        p.setFont(f);
        p.setPen(lit ? PanelLook::textColor()
                     : (on ? PanelLook::dimTextColor() : PanelLook::disabledTextColor()));
        p.drawText(discreteLabelBox(d, k, lit), Qt::AlignLeft | Qt::AlignVCenter,
                   m_labels.at(k - 1).trimmed());
        p.setFont(font());
    }
    if (current >= 1 && current <= n) {
        const QPointF tip = at(pixelFor(current), cross - dot - 1.0);
        QPainterPath path;
        const qreal a = arrow * 0.9;
        path.moveTo(tip);
        if (vertical) {
            path.lineTo(tip + QPointF(-a, -a * 0.5));
            path.lineTo(tip + QPointF(-a, a * 0.5));
        } else {
            path.lineTo(tip + QPointF(-a * 0.5, -a));
            path.lineTo(tip + QPointF(a * 0.5, -a));
        }
        path.closeSubpath();
        p.setPen(QPen(QColor(20, 20, 20), 1.0));
        p.setBrush(on ? QColor(255, 200, 60) : PanelLook::disabledTextColor());
        p.drawPath(path);
    }
}

void IndicatorSlide::paintContinuous(QPainter& p, const Track& t) {
    const QFontMetricsF fm(font());
    const bool vertical = m_orientation == Qt::Vertical;
    const QRectF area =
        QRectF(rect()).adjusted(kFrameMargin, kFrameMargin, -kFrameMargin, -kFrameMargin);
    qreal line;
    qreal sign; // towards the tags
    switch (m_edge) {
    case Qt::RightEdge:
        line = area.right() - 1.0;
        sign = -1.0;
        break;
    case Qt::LeftEdge:
        line = area.left() + 1.0;
        sign = 1.0;
        break;
    case Qt::TopEdge:
        line = area.top() + 1.0;
        sign = 1.0;
        break;
    default:
        line = area.bottom() - 1.0;
        sign = -1.0;
        break;
    }
    const auto at = [vertical](qreal along, qreal c) {
        return vertical ? QPointF(c, along) : QPointF(along, c);
    };
    const QColor scale = isEnabled() ? PanelLook::scaleColor() : PanelLook::disabledTextColor();
    p.setPen(QPen(scale, 1.0));
    p.drawLine(at(t.start, line), at(t.end, line));
    const double span = m_maximum - m_minimum;
    const double step = PanelLook::scaleStep(
        span, std::abs(pixelFor(m_maximum) - pixelFor(m_minimum)), fm.height() * 0.6);
    if (step <= 0)
        return;
    const double first = std::ceil(m_minimum / step - 1e-9) * step;
    for (int i = 0;; ++i) {
        const double v = first + i * step;
        if (v > m_maximum + step * 1e-9)
            break;
        const qreal pos = pixelFor(v);
        const bool major = std::abs(v - std::round(v)) < 1e-9;
        const qreal len = fm.height() * (major ? 0.45 : 0.25);
        p.drawLine(at(pos, line), at(pos, line + sign * len));
    }
}

QVector<IndicatorSlide::TagPlace> IndicatorSlide::tagPlaces(const Track& t) const {
    const bool vertical = m_orientation == Qt::Vertical;
    const QRectF area =
        QRectF(rect()).adjusted(kFrameMargin, kFrameMargin, -kFrameMargin, -kFrameMargin);
    const qreal low = qMin(t.start, t.end);
    const qreal high = qMax(t.start, t.end);
    Qt::Edge edge = m_edge;
    qreal line = 0;
    if (m_mode == Mode::Discrete) {
        // Tags of a discrete indicator sit in the arrow column and point at the track.
        edge = vertical ? Qt::RightEdge : Qt::BottomEdge;
        line = vertical ? area.left() + QFontMetricsF(font()).height() * 0.8
                        : area.top() + QFontMetricsF(font()).height() * 0.8;
    } else if (edge == Qt::RightEdge) {
        line = area.right() - 1.0;
    } else if (edge == Qt::LeftEdge || edge == Qt::TopEdge) {
        line = (edge == Qt::LeftEdge ? area.left() : area.top()) + 1.0;
    } else {
        line = area.bottom() - 1.0;
    }
    const QFontMetricsF fm(font());
    QVector<TagPlace> places;
    for (int i = 0; i < m_pointers.size(); ++i) {
        const Pointer& ptr = m_pointers.at(i);
        if (!ptr.visible || !ptr.marks.isEmpty() || std::isnan(ptr.value))
            continue;
        const qreal pos = pixelFor(ptr.value);
        TagPlace place;
        place.pointer = i;
        place.edge = edge;
        place.pinned = pos < low - 0.5 || pos > high + 0.5;
        const qreal along = qBound(low, pos, high);
        place.tip = vertical ? QPointF(line, along) : QPointF(along, line);
        place.box = tagBox(fm, place.tip, edge, ptr.label, 0.0);
        places << place;
    }
    // Tags whose boxes would overlap (two pointers a few pixels apart, as the trigger level
    // and the zero line often are) are moved apart along the scale until each box stands
    // free; every tip still points at its own value.
    const auto start = [vertical](const QRectF& r) { return vertical ? r.top() : r.left(); };
    const auto length = [vertical](const QRectF& r) { return vertical ? r.height() : r.width(); };
    std::sort(places.begin(), places.end(), [&](const TagPlace& a, const TagPlace& b) {
        return start(a.box) < start(b.box) ||
               (start(a.box) == start(b.box) && a.pointer < b.pointer);
    });
    for (int pass = 0; pass < places.size(); ++pass) {
        bool moved = false;
        for (int i = 1; i < places.size(); ++i) {
            QRectF& a = places[i - 1].box;
            QRectF& b = places[i].box;
            const qreal overlap = start(a) + length(a) + 1.0 - start(b);
            if (overlap <= 0)
                continue;
            const QPointF half = vertical ? QPointF(0, overlap / 2) : QPointF(overlap / 2, 0);
            a.translate(-half);
            b.translate(half);
            moved = true;
        }
        if (!moved)
            break;
    }
    return places;
}

QList<QRectF> IndicatorSlide::tagRects() const {
    QList<QRectF> rects;
    const QVector<TagPlace> places = tagPlaces(track());
    for (const TagPlace& place : places)
        rects << place.box;
    return rects;
}

void IndicatorSlide::paintTags(QPainter& p, const Track& t) {
    // The zero line's tag is drawn under the others where they still touch.
    for (const TagPlace& place : tagPlaces(t)) {
        const Pointer& ptr = m_pointers.at(place.pointer);
        const QColor color = isEnabled() ? ptr.color : PanelLook::disabledTextColor();
        drawTag(p, place.tip, place.box, place.edge, ptr.label, color, place.pinned);
    }
}

void IndicatorSlide::paintLamps(QPainter& p, const Track& t) {
    if (t.lamps.isEmpty())
        return;
    int count = 0;
    for (const Pointer& ptr : m_pointers)
        count += ptr.marks.isEmpty() ? 0 : 1;
    const qreal h = t.lamps.height() / count;
    int row = 0;
    for (const Pointer& ptr : m_pointers) {
        if (ptr.marks.isEmpty())
            continue;
        const StateMark* mark = litMark(ptr);
        const QRectF r(t.lamps.left(), t.lamps.top() + row * h, t.lamps.width(), h - 2.0);
        PanelLook::drawBarLamp(p, r, mark ? mark->color : ptr.marks.first().color, mark != nullptr,
                               mark ? mark->text : QString(), isEnabled());
        ++row;
    }
}

QSize IndicatorSlide::sizeHint() const {
    const QFontMetrics fm(font());
    const int lamps = hasLamps() ? fm.height() * 2 : 0;
    if (m_mode == Mode::Continuous)
        return m_orientation == Qt::Vertical ? QSize(fm.height() * 3, fm.height() * 14)
                                             : QSize(fm.height() * 14, fm.height() * 3);
    int labelW = 0;
    for (const QString& l : m_labels)
        labelW = qMax(labelW, fm.horizontalAdvance(l.trimmed()));
    const int n = qMax(1, positionCount());
    if (m_orientation == Qt::Vertical)
        return QSize(qMax(fm.height() * 2 + labelW + 8, fm.horizontalAdvance("WAIT") + 16),
                     n * fm.height() * 3 / 2 + lamps + 8);
    return QSize(n * (labelW + fm.height()) + lamps * 2 + 8, fm.height() * 3 + 8);
}

QSize IndicatorSlide::minimumSizeHint() const {
    const QFontMetrics fm(font());
    return QSize(fm.height() * 2, fm.height() * 2);
}

} // namespace zorvik
