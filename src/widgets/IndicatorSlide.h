// A read-only slide that mirrors a setting of the probe, with named pointers and state lamps.
#pragma once

#include "support/TextFit.h"

#include <QColor>
#include <QPointer>
#include <QStringList>
#include <QVector>
#include <QWidget>

namespace zorvik {

class ScopeGraph;

/// An indicator the user reads but does not operate (it takes keyboard focus only so that
/// screen readers can reach it).
///
/// Discrete mode shows positions 1..N with labels and a main pointer at value(). Continuous
/// mode is a plain scale from minimum() to maximum(); it shows only the named pointers (its
/// main value is kept but not drawn).
///
/// Named pointers are drawn as coloured tags carrying a short label ("T", "0"), at their
/// value in the indicator's units, and pinned to the nearer end (drawn hollow) when their
/// value lies beyond the scale. A named pointer that has state marks is shown as a lamp
/// instead: each mark ties one pointer value to a lamp text and colour, and while the pointer
/// sits at a marked value the lamp is lit with that text (for example 300 lights an amber
/// "WAIT", 0 a green "TRIG"). At any other value, or while the pointer is hidden, the lamp is
/// dark. A new named pointer has no value yet (NaN) and so shows nothing.
class IndicatorSlide : public QWidget, public FitsText {
    Q_OBJECT

public:
    enum class Mode { Discrete, Continuous };

    explicit IndicatorSlide(QWidget* parent = nullptr);

    Mode mode() const { return m_mode; }

    /// Discrete mode with one position per label (labels are drawn trimmed). A value beyond
    /// the new count is brought to the last position without a signal.
    void setPositionLabels(const QStringList& labels);
    QStringList positionLabels() const { return m_labels; }
    int positionCount() const { return static_cast<int>(m_labels.size()); }

    /// Continuous mode over [minimum, maximum] (swapped if given the wrong way round).
    void setRange(double minimum, double maximum);
    double minimum() const;
    double maximum() const;

    void setOrientation(Qt::Orientation orientation);
    Qt::Orientation orientation() const { return m_orientation; }

    /// The main pointer: a position 1..N in discrete mode, a number in range otherwise.
    double value() const { return m_value; }
    /// False (and nothing changes) for a value that is not a position 1..N (discrete) or lies
    /// outside the range (continuous). Emits valueChanged when the value changes.
    bool setValue(double value);
    void setValueSilently(double value);
    /// The current position's label (trimmed), or the value with two decimals.
    QString valueText() const;

    /// Shows or hides the main pointer (it is hidden while there is no reading to show).
    void setPointerVisible(bool visible);
    bool pointerVisible() const { return m_pointerVisible; }

    /// Adds a named pointer (visible, no value yet). False if the name is empty or taken.
    /// Without a label the tag shows the name; without a colour it is drawn in white.
    bool addPointer(const QString& name, const QString& label = QString(),
                    const QColor& color = QColor());
    QStringList pointerNames() const;
    /// Named-pointer accessors; unknown names are ignored (false, NaN, invalid colour, "").
    /// With strict names (the program's own scales) such a name is a mistake in the program:
    /// it is logged and, in a debug build, stops at an assertion.
    bool setPointerValue(const QString& name, double value);
    [[nodiscard]] double pointerValue(const QString& name) const;
    bool setPointerVisible(const QString& name, bool visible);
    [[nodiscard]] bool pointerVisible(const QString& name) const;
    bool setPointerColor(const QString& name, const QColor& color);
    [[nodiscard]] QColor pointerColor(const QString& name) const;
    [[nodiscard]] QString pointerLabel(const QString& name) const;
    void setStrictNames(bool strict);

    /// Ties `value` of pointer `name` to a lit lamp showing `text` in `color` (replacing an
    /// earlier mark for the same value). False for an unknown pointer or a NaN value.
    bool addPointerStateMark(const QString& name, double value, const QString& text,
                             const QColor& color);
    /// The text of the lamp of pointer `name` as lit now ("" when dark or unknown).
    [[nodiscard]] QString pointerStateText(const QString& name) const;
    /// The colour of that lamp as lit now (invalid when dark or unknown).
    [[nodiscard]] QColor pointerStateColor(const QString& name) const;

    /// Space kept free at the ends of the scale, in pixels: top and bottom of a vertical
    /// indicator, left and right of a horizontal one. Default: about half a line.
    void setTrackInsets(int start, int end);
    /// Lines a continuous vertical scale up with the plot area of `graph`, so that a pointer
    /// value in divisions sits at the same height as that Y value on the graph; the scale
    /// follows the graph when either widget moves or is resized. nullptr undoes it.
    void alignTrackWith(ScopeGraph* graph);

    /// The along-axis pixel where a pointer at `value` is drawn (before pinning to the ends).
    qreal pixelFor(double value) const;

    /// Where the tags of the visible named pointers are drawn, in widget pixels. Tags that
    /// would overlap are moved apart along the scale, so every label stays readable.
    QList<QRectF> tagRects() const;
    /// Where the position labels of a discrete indicator are drawn, in widget pixels (none in
    /// continuous mode); the lit position's label is bold.
    QList<QRectF> labelRects() const;
    /// The position labels lie inside the indicator and clear of each other, even in bold,
    /// and the pointer tags inside it.
    bool textFits() const override;

    /// Text for screen readers: the reading and every lit lamp ("IN+, WAIT"); in continuous
    /// mode the visible pointers with their values ("TrigLvl 1.25, CHa_Zero 0.00").
    QString accessibleValueText() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    void valueChanged(double value);

protected:
    void paintEvent(QPaintEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    struct StateMark {
        double value = 0;
        QString text;
        QColor color;
    };
    struct Pointer {
        QString name;
        QString label;
        QColor color;
        double value;
        bool visible = true;
        QVector<StateMark> marks;
    };
    struct Track {
        qreal start = 0; // along-axis pixel of position 1 / the minimum
        qreal end = 0;   // along-axis pixel of position N / the maximum
        QRectF lamps;    // the strip that holds the state lamps
    };

    struct TagPlace {
        int pointer = 0; // index into m_pointers
        QPointF tip;     // where the tag points
        QRectF box;      // where its label is drawn
        Qt::Edge edge = Qt::RightEdge;
        bool pinned = false; // the value lies beyond the scale
    };

    struct DiscreteLayout {
        qreal dot = 0;   // radius of a position's dot
        qreal arrow = 0; // length of the pointer's arrow
        qreal cross = 0; // across-axis pixel of the track
    };

    ScopeGraph* guide() const;
    DiscreteLayout discreteLayout() const;
    QRectF discreteLabelBox(const DiscreteLayout& d, int k, bool bold) const;
    QVector<TagPlace> tagPlaces(const Track& track) const;
    int indexOf(const QString& name) const;
    int find(const QString& name) const; ///< indexOf, reporting a miss under strict names
    const StateMark* litMark(const Pointer& pointer) const;
    bool hasLamps() const;
    Track track() const;
    void paintDiscrete(QPainter& painter, const Track& track);
    void paintContinuous(QPainter& painter, const Track& track);
    void paintTags(QPainter& painter, const Track& track);
    void paintLamps(QPainter& painter, const Track& track);
    void changed();

    Mode m_mode = Mode::Discrete;
    Qt::Orientation m_orientation = Qt::Vertical;
    Qt::Edge m_edge = Qt::RightEdge;
    bool m_strictNames = false;
    QStringList m_labels;
    double m_minimum = -4.0;
    double m_maximum = 4.0;
    double m_value = 1.0;
    bool m_pointerVisible = true;
    QVector<Pointer> m_pointers;
    int m_insetStart = -1; // -1: about half a line
    int m_insetEnd = -1;
    // Held as a plain widget: the graph's own part is gone before its base class has finished
    // tearing down, and events still arrive through the filter in between.
    QPointer<QWidget> m_guide;
};

} // namespace zorvik
