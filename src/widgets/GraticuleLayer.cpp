// The graph's graticule: division grid, centre lines with fifth-division marks, and the frame.
#include "widgets/GraticuleLayer.h"

#include <cmath>

namespace zorvik {

namespace {
constexpr double kMaxDivisions = 200.0;
} // namespace

GraticuleLayer::GraticuleLayer(QCustomPlot* plot) : QCPLayerable(plot, QStringLiteral("grid")) {}

void GraticuleLayer::applyDefaultAntialiasingHint(QCPPainter* painter) const {
    // Straight lines on whole pixels stay crisp without antialiasing.
    painter->setAntialiasing(false);
}

QRect GraticuleLayer::clipRect() const {
    return mParentPlot->axisRect()->rect();
}

void GraticuleLayer::draw(QCPPainter* painter) {
    QCPAxis* x = mParentPlot->xAxis;
    QCPAxis* y = mParentPlot->yAxis;
    const QRect area = mParentPlot->axisRect()->rect();
    const QCPRange xr = x->range();
    const QCPRange yr = y->range();
    // The graticule is drawn in divisions; a range of hundreds of divisions has no use for it.
    if (area.isEmpty() || xr.size() <= 0 || yr.size() <= 0 || xr.size() > kMaxDivisions ||
        yr.size() > kMaxDivisions)
        return;

    QPen grid(m_color, 1.0, Qt::DotLine);
    painter->setPen(grid);
    // One line per division from the minimum; the frame takes the outermost ones.
    for (int k = 1; xr.lower + k < xr.upper - 1e-9; ++k) {
        const double px = std::round(x->coordToPixel(xr.lower + k));
        painter->drawLine(QLineF(px, area.top(), px, area.bottom()));
    }
    for (int k = 1; yr.lower + k < yr.upper - 1e-9; ++k) {
        const double py = std::round(y->coordToPixel(yr.lower + k));
        painter->drawLine(QLineF(area.left(), py, area.right(), py));
    }

    // Centre lines with a mark every fifth of a division.
    const double cx = std::round(x->coordToPixel(xr.center()));
    const double cy = std::round(y->coordToPixel(yr.center()));
    QPen centre(m_color.lighter(125), 1.0, Qt::SolidLine);
    painter->setPen(centre);
    const double tick = qMax(2.0, area.height() / 100.0);
    for (int k = 1; k < static_cast<int>(std::round(xr.size() * 5)); ++k) {
        if (k % 5 == 0)
            continue;
        const double px = std::round(x->coordToPixel(xr.lower + k / 5.0));
        painter->drawLine(QLineF(px, cy - tick, px, cy + tick));
    }
    for (int k = 1; k < static_cast<int>(std::round(yr.size() * 5)); ++k) {
        if (k % 5 == 0)
            continue;
        const double py = std::round(y->coordToPixel(yr.lower + k / 5.0));
        painter->drawLine(QLineF(cx - tick, py, cx + tick, py));
    }
    painter->setPen(QPen(m_color.lighter(110), 1.0, Qt::DotLine));
    painter->drawLine(QLineF(cx, area.top(), cx, area.bottom()));
    painter->drawLine(QLineF(area.left(), cy, area.right(), cy));

    // Frame.
    painter->setPen(QPen(m_color.lighter(120), 1.0));
    painter->setBrush(Qt::NoBrush);
    painter->drawRect(QRectF(area).adjusted(0, 0, -1, -1));
}

} // namespace zorvik
