// A continuous slide with a thumb and a scale (the vertical offset and the horizontal pan).
#pragma once

#include "support/TextFit.h"

#include <QList>
#include <QRectF>
#include <QVector>
#include <QWidget>

namespace zorvik {

/// A slide over a continuous range [minimum, maximum]. Vertical slides have the maximum at the
/// top, horizontal ones at the right. The user drags the thumb (a press beside the thumb brings
/// it under the pointer first), turns the wheel (one small step per notch), or uses the keys:
/// arrows one small step, PageUp/PageDown one large step, Home the minimum, End the maximum.
/// Values set with the mouse fall on whole multiples of the small step, and keys and the wheel
/// keep a value that lies on those multiples exactly on them, so the user can always bring the
/// slide back to exactly 0 (a value set off the grid by the program moves by whole steps).
class Slide : public QWidget, public FitsText {
    Q_OBJECT

public:
    explicit Slide(Qt::Orientation orientation = Qt::Vertical, QWidget* parent = nullptr);

    void setOrientation(Qt::Orientation orientation);
    Qt::Orientation orientation() const { return m_orientation; }

    /// Sets the range (swapped if given the wrong way round). A value outside the new range is
    /// brought to its nearer end without a signal.
    void setRange(double minimum, double maximum);
    double minimum() const { return m_minimum; }
    double maximum() const { return m_maximum; }

    double value() const { return m_value; }
    /// Moves the thumb; false (and nothing changes) outside the range or for NaN. Emits
    /// valueChanged when the value changes.
    bool setValue(double value);
    /// Moves the thumb without emitting valueChanged (values outside the range are ignored).
    void setValueSilently(double value);

    /// Keyboard and wheel steps. Until they are set, a hundredth and a tenth of the range.
    void setSteps(double smallStep, double largeStep);
    double smallStep() const;
    double largeStep() const;

    /// The value as a screen reader says it (two decimals).
    QString valueText() const;

    /// The widget point at the centre of the thumb when the slide shows `value`.
    QPointF thumbCenterFor(double value) const;
    /// The unrounded value under widget point `point` (clamped to the range).
    double valueAt(const QPointF& point) const;

    /// Where the numbers of the scale are drawn, in widget pixels (none when the slide is too
    /// narrow for them).
    QList<QRectF> scaleLabelRects() const;
    /// The numbers lie inside the slide and clear of each other.
    bool textFits() const override;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    void valueChanged(double value);
    /// The thumb moved, whoever moved it (setValueSilently too): for what shows the slide's
    /// value elsewhere.
    void positionChanged(double value);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    struct Geometry {
        qreal minPos = 0; // along-axis pixel of the minimum
        qreal maxPos = 0; // along-axis pixel of the maximum
        qreal cross = 0;  // across-axis pixel of the groove's centre line
        qreal thumbLength = 0;
        qreal thumbWidth = 0;
        qreal tickStep = 0; // scale step in value units
        bool labels = true; // room for the scale numbers
    };
    struct ScaleLabel {
        QString text;
        QRectF box;
    };
    Geometry geometry() const;
    /// A step of the scale: its value and its place along the groove.
    struct Tick {
        double value;
        qreal pos;
    };
    /// The values of the scale's steps from minimum to maximum.
    QVector<double> tickValues(double step) const;
    QVector<Tick> ticks(const Geometry& g) const;
    QVector<ScaleLabel> scaleLabels(const Geometry& g) const;
    QRectF thumbRect(const Geometry& g, double value) const;
    qreal along(const QPointF& point) const;
    double valueAtAlong(const Geometry& g, qreal pos) const;
    double snapped(double value) const;
    bool onGrid(double value) const;
    void applyUserValue(double value, bool snap);
    void notifyAccessibility();

    Qt::Orientation m_orientation;
    double m_minimum = 0.0;
    double m_maximum = 100.0;
    double m_value = 0.0;
    double m_smallStep = 0.0; // 0: a hundredth of the range
    double m_largeStep = 0.0; // 0: a tenth of the range
    bool m_dragging = false;
    qreal m_grabOffset = 0;
    int m_wheelRemainder = 0;
};

} // namespace zorvik
