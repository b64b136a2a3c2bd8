// The scope's graph: named traces, axes in divisions, a graticule and four draggable cursors.
#pragma once

#include <QElapsedTimer>
#include <QHash>
#include <QTimer>
#include <qcustomplot.h>

#include <span>

namespace zorvik {

class GraphBackdrop;
class GraphCursors;
class GraticuleLayer;

/// The trace display. Both axes work in divisions: "XAxis" is a window of ten divisions
/// (0..10 at first), "YAxis-1" spans -4..4 divisions. The plots "CHa" (live trace) and "Ref"
/// (reference trace) exist from the start. Four cursors ("Cursor1".."Cursor4", see
/// GraphCursors) are dragged with the mouse, or moved from the keyboard while the graph has
/// focus: 1-4 choose a cursor, the arrows move it a fifth of a division (with Shift a fiftieth),
/// Escape lets it go. Every move made by the user emits cursorChanged.
///
/// Every change schedules a redraw; redraws are paced to the screen's refresh rate, so a burst
/// of frames costs one repaint per refresh and the newest data is always the one shown.
/// Names the graph does not know are ignored: setters return false, getters NaN, false, an
/// invalid colour or empty data. With strict names (the program's own graph) such a name is a
/// mistake in the program: it is logged and, in a debug build, stops at an assertion.
class ScopeGraph : public QCustomPlot {
    Q_OBJECT

public:
    struct PlotData {
        QVector<double> x;
        QVector<double> y;
    };

    explicit ScopeGraph(QWidget* parent = nullptr);
    ~ScopeGraph() override;

    // Plots.
    bool addPlot(const QString& name, const QColor& color);
    QStringList plotNames() const;
    /// Plots `count` Y values; point i is drawn at X = firstX + i * stepX (in double).
    bool plotY(const QString& name, const float* ys, int count, double firstX, double stepX);
    bool plotY(const QString& name, std::span<const float> ys, double firstX, double stepX);
    bool clearData(const QString& name);
    void clearAllPlots();
    /// The points of a plot as drawn, in order of X.
    [[nodiscard]] PlotData plotData(const QString& name) const;
    bool setPlotVisible(const QString& name, bool visible);
    [[nodiscard]] bool plotVisible(const QString& name) const;
    bool setPlotColor(const QString& name, const QColor& color);
    [[nodiscard]] QColor plotColor(const QString& name) const;

    // Axes ("XAxis", "YAxis-1"). The values are kept exactly as set: while a new minimum lies
    // above the maximum (for example when the window is moved right in two steps), the axis
    // reports what was set and keeps showing its last valid range until the other end follows.
    [[nodiscard]] double axisMinimum(const QString& name) const;
    [[nodiscard]] double axisMaximum(const QString& name) const;
    bool setAxisMinimum(const QString& name, double value);
    bool setAxisMaximum(const QString& name, double value);

    // Cursors.
    QStringList cursorNames() const;
    [[nodiscard]] double cursorX(const QString& name) const;
    [[nodiscard]] double cursorY(const QString& name) const;
    bool setCursorX(const QString& name, double x);
    bool setCursorY(const QString& name, double y);
    [[nodiscard]] bool cursorVisible(const QString& name) const;
    bool setCursorVisible(const QString& name, bool visible);
    [[nodiscard]] QColor cursorColor(const QString& name) const;
    bool setCursorColor(const QString& name, const QColor& color);
    /// The cursor chosen from the keyboard or taken with the mouse ("" when none).
    QString selectedCursor() const;
    bool selectCursor(const QString& name);

    /// Reports names the graph does not know (see above).
    void setStrictNames(bool strict);

    // Look.
    QColor plotAreaColor() const { return m_plotAreaColor; }
    void setPlotAreaColor(const QColor& color);
    /// The colour of the thin margin around the plot area (the panel's, unless a picture of
    /// the graph is made in other colours).
    void setMarginColor(const QColor& color);
    /// The plot area in widget coordinates.
    QRect plotAreaRect() const;

    // Redrawing.
    /// Schedules a redraw (at most one per screen refresh).
    void redraw();
    bool redrawPending() const { return m_redrawTimer.isActive(); }
    /// Number of redraws done so far (for tests and benchmarks).
    int replotCount() const { return m_replots; }

    /// What a screen reader says about the graph: axes, traces and visible cursors.
    QString accessibleSummary() const;

signals:
    /// The user moved cursor `name` (mouse or keyboard).
    void cursorChanged(const QString& name);
    /// The plot area moved within the widget or the Y range changed.
    void plotAreaChanged();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    struct AxisLimits {
        QCPAxis* axis = nullptr;
        double minimum = 0;
        double maximum = 0;
    };
    QCPGraph* plot(const QString& name) const;
    int cursorIndex(const QString& name) const;
    void reportUnknown(const QString& name) const;
    AxisLimits* axisLimits(const QString& name);
    const AxisLimits* axisLimits(const QString& name) const;
    void applyAxis(AxisLimits& limits);
    void moveCursorByUser(int index, double value);
    double hitTolerance() const;
    void onReplotted();

    GraphBackdrop* m_backdrop = nullptr;
    GraticuleLayer* m_graticule = nullptr;
    GraphCursors* m_cursors = nullptr;
    QHash<QString, QCPGraph*> m_plots;
    QStringList m_plotOrder;
    AxisLimits m_xLimits;
    AxisLimits m_yLimits;
    QColor m_plotAreaColor{0, 0, 0};
    QTimer m_redrawTimer;
    QElapsedTimer m_sinceReplot;
    int m_replots = 0;
    int m_dragging = -1;
    bool m_strictNames = false;
};

} // namespace zorvik
