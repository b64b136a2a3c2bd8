// The graph's backdrop: the panel colour around the plot area and the plot area's own colour,
// painted as the first thing of every replot so that the graph's picture is fully opaque.
#pragma once

#include <QColor>
#include <qcustomplot.h>

namespace zorvik {

/// Paints every pixel of the graph's viewport: the margin in the panel colour and the plot
/// area in its colour. Because nothing is left transparent, the graph keeps its picture in an
/// opaque buffer that is neither cleared before a replot nor blended onto the screen after it
/// (see OpaquePaintBuffer); this is what keeps a large graph quick to redraw.
class GraphBackdrop : public QCPLayerable {
public:
    /// Placed first on the plot's "background" layer, beneath everything else.
    explicit GraphBackdrop(QCustomPlot* plot);

    void setMarginColor(const QColor& color) { m_margin = color; }
    QColor marginColor() const { return m_margin; }
    void setAreaColor(const QColor& color) { m_area = color; }
    QColor areaColor() const { return m_area; }

protected:
    void applyDefaultAntialiasingHint(QCPPainter* painter) const override;
    void draw(QCPPainter* painter) override;
    QRect clipRect() const override;

private:
    QColor m_margin;
    QColor m_area{0, 0, 0};
};

} // namespace zorvik
