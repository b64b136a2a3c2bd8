// The four measuring cursors of the scope graph: their state, hit testing and drawing.
#include "widgets/GraphCursors.h"

#include "display/GraphNames.h"

#include <cmath>

namespace zorvik {

GraphCursors::GraphCursors(QCustomPlot* plot) : QCPLayerable(plot, QStringLiteral("overlay")) {
    // Vertical pair in magenta, horizontal pair in light green; the time pair one and two
    // divisions from the left edge, the voltage pair one and two divisions above the bottom.
    m_cursors = {
        {names::kCursor1, Qt::Vertical, 1.0, 0.0, false, QColor(255, 90, 255)},
        {names::kCursor2, Qt::Vertical, 2.0, 0.0, false, QColor(255, 90, 255)},
        {names::kCursor3, Qt::Horizontal, 0.0, -3.0, false, QColor(90, 255, 160)},
        {names::kCursor4, Qt::Horizontal, 0.0, -2.0, false, QColor(90, 255, 160)},
    };
}

int GraphCursors::find(const QString& name) const {
    for (int i = 0; i < m_cursors.size(); ++i) {
        if (m_cursors.at(i).name == name)
            return i;
    }
    return -1;
}

QCPAxis* GraphCursors::axisOf(int index) const {
    return m_cursors.at(index).line == Qt::Vertical ? mParentPlot->xAxis : mParentPlot->yAxis;
}

double GraphCursors::position(int index) const {
    const Cursor& c = m_cursors.at(index);
    return c.line == Qt::Vertical ? c.x : c.y;
}

bool GraphCursors::shown(int index) const {
    const Cursor& c = m_cursors.at(index);
    return c.visible && axisOf(index)->range().contains(position(index));
}

int GraphCursors::hitTest(const QPointF& pos, double tolerance) const {
    const QRect area = mParentPlot->axisRect()->rect();
    if (!QRectF(area).adjusted(-tolerance, -tolerance, tolerance, tolerance).contains(pos))
        return -1;
    int best = -1;
    double bestDistance = tolerance;
    for (int i = 0; i < m_cursors.size(); ++i) {
        if (!shown(i))
            continue;
        const double pixel = axisOf(i)->coordToPixel(position(i));
        const double d =
            std::abs((m_cursors.at(i).line == Qt::Vertical ? pos.x() : pos.y()) - pixel);
        if (d <= bestDistance) {
            bestDistance = d;
            best = i;
        }
    }
    return best;
}

double GraphCursors::positionAt(int index, const QPointF& pos) const {
    QCPAxis* axis = axisOf(index);
    const double v =
        axis->pixelToCoord(m_cursors.at(index).line == Qt::Vertical ? pos.x() : pos.y());
    return qBound(axis->range().lower, v, axis->range().upper);
}

void GraphCursors::moveTo(int index, double value) {
    const QCPRange r = axisOf(index)->range();
    const double v = qBound(r.lower, value, r.upper);
    Cursor& c = m_cursors[index];
    (c.line == Qt::Vertical ? c.x : c.y) = v;
}

void GraphCursors::applyDefaultAntialiasingHint(QCPPainter* painter) const {
    painter->setAntialiasing(false);
}

QRect GraphCursors::clipRect() const {
    return mParentPlot->axisRect()->rect();
}

void GraphCursors::draw(QCPPainter* painter) {
    const QRect area = mParentPlot->axisRect()->rect();
    const QFontMetricsF fm(mParentPlot->font());
    painter->setFont(mParentPlot->font());
    for (int i = 0; i < m_cursors.size(); ++i) {
        if (!shown(i))
            continue;
        const Cursor& c = m_cursors.at(i);
        const bool emphasis = (i == m_selected);
        const double pixel = std::round(axisOf(i)->coordToPixel(position(i)));
        painter->setPen(QPen(c.color, emphasis ? 2.0 : 1.0, Qt::DashLine));
        // A small tab with the cursor's number, at the top (vertical) or right end (horizontal).
        const QString number = c.name.right(1);
        const double w = fm.horizontalAdvance(number) + 6.0;
        const double h = fm.height();
        QRectF tab;
        if (c.line == Qt::Vertical) {
            painter->drawLine(QLineF(pixel, area.top(), pixel, area.bottom()));
            tab = QRectF(pixel + 1.0, area.top() + 1.0, w, h);
            if (tab.right() > area.right())
                tab.moveRight(pixel - 1.0);
        } else {
            painter->drawLine(QLineF(area.left(), pixel, area.right(), pixel));
            tab = QRectF(area.right() - w - 1.0, pixel - h - 1.0, w, h);
            if (tab.top() < area.top())
                tab.moveTop(pixel + 1.0);
        }
        painter->setPen(Qt::NoPen);
        painter->setBrush(c.color);
        painter->drawRect(tab);
        painter->setPen(qGray(c.color.rgb()) > 110 ? QColor(0, 0, 0) : QColor(255, 255, 255));
        painter->drawText(tab, Qt::AlignCenter, number);
    }
}

} // namespace zorvik
