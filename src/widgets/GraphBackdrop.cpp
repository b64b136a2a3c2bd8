// The graph's backdrop: margin and plot area colours, painted beneath everything else.
#include "widgets/GraphBackdrop.h"

namespace zorvik {

GraphBackdrop::GraphBackdrop(QCustomPlot* plot)
    : QCPLayerable(plot, QString()), m_margin(plot->palette().color(QPalette::Window)) {
    moveToLayer(plot->layer(QStringLiteral("background")), true);
}

void GraphBackdrop::applyDefaultAntialiasingHint(QCPPainter* painter) const {
    painter->setAntialiasing(false);
}

// The plot clips each layerable to its clip rectangle moved up by one pixel; one more row at
// the bottom lets the backdrop reach the viewport's last row.
QRect GraphBackdrop::clipRect() const {
    return mParentPlot->viewport().adjusted(0, 0, 0, 1);
}

void GraphBackdrop::draw(QCPPainter* painter) {
    const QRect all = mParentPlot->viewport();
    const QRect area = mParentPlot->axisRect()->rect().intersected(all);
    // Each pixel once: the plot area, then the four strips of margin around it.
    painter->fillRect(area, m_area);
    painter->fillRect(QRect(all.left(), all.top(), all.width(), area.top() - all.top()), m_margin);
    painter->fillRect(
        QRect(all.left(), area.bottom() + 1, all.width(), all.bottom() - area.bottom()), m_margin);
    painter->fillRect(QRect(all.left(), area.top(), area.left() - all.left(), area.height()),
                      m_margin);
    painter->fillRect(
        QRect(area.right() + 1, area.top(), all.right() - area.right(), area.height()), m_margin);
}

} // namespace zorvik
