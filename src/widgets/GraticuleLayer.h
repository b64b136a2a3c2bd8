// The graph's graticule: division grid, centre lines with fifth-division marks, and the frame.
#pragma once

#include <QColor>
#include <qcustomplot.h>

namespace zorvik {

/// Draws the screen graticule of the scope graph in the plot area. The lines are fixed to the
/// screen like the graticule of a real scope: one line per division from each axis's minimum,
/// and the two centre lines carry a short mark every fifth of a division.
class GraticuleLayer : public QCPLayerable {
public:
    explicit GraticuleLayer(QCustomPlot* plot);

protected:
    void applyDefaultAntialiasingHint(QCPPainter* painter) const override;
    void draw(QCPPainter* painter) override;
    QRect clipRect() const override;

private:
    QColor m_color{128, 128, 128};
};

} // namespace zorvik
