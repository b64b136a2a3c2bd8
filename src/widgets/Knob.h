// A rotary knob with labelled click-stop positions 1..N (the scale selectors of the front panel).
#pragma once

#include "support/TextFit.h"

#include <QFont>
#include <QStringList>
#include <QVector>
#include <QWidget>

namespace zorvik {

/// A metal knob with discrete positions 1..N, each labelled around the dial, a needle that
/// points at the current position and a heading above the dial. The user turns it by dragging
/// the dial round (the needle follows the pointer's angle), with the wheel, or from the
/// keyboard: Left/Down/PageDown previous, Right/Up/PageUp next, Home first, End last.
class Knob : public QWidget, public FitsText {
    Q_OBJECT

public:
    explicit Knob(QWidget* parent = nullptr);

    /// Sets one label per position; the count of labels is the number of positions N.
    /// Labels are drawn trimmed. A value beyond the new N is brought back to N without a signal.
    void setPositionLabels(const QStringList& labels);
    QStringList positionLabels() const { return m_labels; }
    int positionCount() const { return static_cast<int>(m_labels.size()); }

    /// The current position, 1..N (0 while the knob has no positions).
    int value() const { return m_value; }
    /// Moves to `position`; false (and nothing changes) outside 1..N. Emits valueChanged when
    /// the position changes.
    bool setValue(int position);
    /// Moves to `position` without emitting valueChanged (positions outside 1..N are ignored).
    void setValueSilently(int position);

    /// The label of the current position, trimmed ("" without positions).
    QString valueText() const;

    void setHeading(const QString& heading);
    QString heading() const { return m_heading; }

    /// The needle's name (for example "ChaLvlSel").
    void setNeedleName(const QString& name) { m_needleName = name; }
    QString needleName() const { return m_needleName; }

    /// The position whose label lies nearest the angle of `point` (widget coordinates) seen
    /// from the dial's centre; 0 without positions.
    int positionAt(const QPointF& point) const;
    /// The dial's centre and radius in widget coordinates (for tests and tools).
    QPointF dialCenter() const;
    qreal dialRadius() const;
    /// Where the label of `position` is drawn (empty outside 1..N).
    QRectF labelRect(int position) const;
    /// The font the labels are drawn in: the widget's font, or up to a third smaller when the
    /// labels of neighbouring positions would otherwise run into each other.
    QFont labelFont() const;
    /// Where the heading is drawn (empty without a heading).
    QRectF headingRect() const;
    /// The heading fits on one line and the labels inside the knob, clear of each other.
    bool textFits() const override;
    /// The angle (degrees, counter-clockwise from three o'clock) of `position`'s tick.
    qreal positionAngle(int position) const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    void valueChanged(int position);

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
        QRectF headingRect;
        QPointF center;
        qreal radius = 0;
        QFont labelFont;        // the widget's font, or smaller when labels would collide
        QVector<QRectF> labels; // where each position's label is drawn
    };
    Geometry geometry() const;
    qreal sweep() const;
    void applyUserValue(int position);
    void notifyAccessibility();

    QStringList m_labels;
    QString m_heading;
    QString m_needleName;
    int m_value = 0;
    bool m_dragging = false;
    int m_wheelRemainder = 0;
};

} // namespace zorvik
