// The four measuring cursors of the scope graph: their state, hit testing and drawing.
#pragma once

#include <QColor>
#include <QString>
#include <QVector>
#include <qcustomplot.h>

namespace zorvik {

/// The graph's cursors: "Cursor1" and "Cursor2" are vertical lines placed by their X position,
/// "Cursor3" and "Cursor4" horizontal lines placed by their Y position. Every cursor keeps both
/// an X and a Y position (only one of them places its line). A cursor outside the visible axis
/// range is not drawn and cannot be taken with the mouse.
class GraphCursors : public QCPLayerable {
public:
    struct Cursor {
        QString name;
        Qt::Orientation line = Qt::Vertical; // Vertical: placed by X
        double x = 0.0;
        double y = 0.0;
        bool visible = false;
        QColor color;
    };

    explicit GraphCursors(QCustomPlot* plot);

    int count() const { return static_cast<int>(m_cursors.size()); }
    int find(const QString& name) const;
    Cursor& at(int index) { return m_cursors[index]; }
    const Cursor& at(int index) const { return m_cursors.at(index); }

    /// The cursor drawn highlighted (taken with the mouse or chosen from the keyboard); -1: none.
    int selected() const { return m_selected; }
    void setSelected(int index) { m_selected = index; }

    /// Whether a cursor is visible and inside the visible axis range.
    bool shown(int index) const;
    /// The shown cursor whose line is nearest to `pos` within `tolerance` pixels; -1: none.
    int hitTest(const QPointF& pos, double tolerance) const;
    /// The position (X for a vertical line, Y for a horizontal one) under `pos`, clamped to the
    /// visible axis range.
    double positionAt(int index, const QPointF& pos) const;
    /// Moves a cursor's placing position to `value`, clamped to the visible axis range.
    void moveTo(int index, double value);
    /// The placing position of a cursor (X or Y).
    double position(int index) const;

protected:
    void applyDefaultAntialiasingHint(QCPPainter* painter) const override;
    void draw(QCPPainter* painter) override;
    QRect clipRect() const override;

private:
    QCPAxis* axisOf(int index) const;

    QVector<Cursor> m_cursors;
    int m_selected = -1;
};

} // namespace zorvik
