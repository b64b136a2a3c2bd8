// The scope's graph: named traces, axes in divisions, a graticule and four draggable cursors.
#include "widgets/ScopeGraph.h"

#include "display/GraphNames.h"
#include "widgets/GraphBackdrop.h"
#include "widgets/GraphCursors.h"
#include "widgets/GraticuleLayer.h"
#include "widgets/OpaquePaintBuffer.h"
#include "widgets/PanelLook.h"

#include <QPainter>
#include <QScreen>

#include <cmath>
#include <limits>

namespace zorvik {

namespace {
constexpr int kPlotMargin = 4; // around the plot area, holds the focus frame
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
} // namespace

ScopeGraph::ScopeGraph(QWidget* parent) : QCustomPlot(parent) {
    PanelLook::setUpControl(this);
    setMouseTracking(true);
    axisRect()->setAutoMargins(QCP::msNone);
    axisRect()->setMargins(QMargins(kPlotMargin, kPlotMargin, kPlotMargin, kPlotMargin));
    // The backdrop paints the margin and the plot area at the bottom of one opaque picture;
    // the widget and the axis rect paint no background of their own, and the cursors share
    // that picture instead of keeping a transparent one of their own to blend on top.
    setBackground(Qt::NoBrush);
    axisRect()->setBackground(Qt::NoBrush);
    m_backdrop = new GraphBackdrop(this);
    m_backdrop->setMarginColor(PanelLook::panelColor());
    m_backdrop->setAreaColor(m_plotAreaColor);
    layer(QStringLiteral("overlay"))->setMode(QCPLayer::lmLogical);
    mPaintBuffers.append(QSharedPointer<QCPAbstractPaintBuffer>(
        new OpaquePaintBuffer(viewport().size(), bufferDevicePixelRatio())));
    // QCustomPlot's own axes and legend never show: the graticule is drawn by the graph
    // itself. They are kept from working out tick marks, tick labels and legend texts at every
    // redraw, which would otherwise cost more than drawing the traces.
    for (QCPAxis* axis : {xAxis, yAxis, xAxis2, yAxis2}) {
        axis->setVisible(false);
        axis->grid()->setVisible(false);
        axis->setTicks(false);
        axis->setTickLabels(false);
    }
    setAutoAddPlottableToLegend(false);
    m_xLimits = AxisLimits{xAxis, 0.0, 10.0};
    m_yLimits = AxisLimits{yAxis, -4.0, 4.0};
    xAxis->setRange(0.0, 10.0);
    yAxis->setRange(-4.0, 4.0);

    m_graticule = new GraticuleLayer(this);
    m_cursors = new GraphCursors(this);
    addPlot(names::kPlotCHa, QColor(255, 255, 0));
    addPlot(names::kPlotRef, QColor(0, 200, 255));

    m_redrawTimer.setSingleShot(true);
    connect(&m_redrawTimer, &QTimer::timeout, this, [this] { replot(rpQueuedRefresh); });
    connect(this, &QCustomPlot::afterReplot, this, &ScopeGraph::onReplotted);
}

ScopeGraph::~ScopeGraph() = default;

// ---- plots ----

bool ScopeGraph::addPlot(const QString& name, const QColor& color) {
    if (name.isEmpty() || m_plots.contains(name))
        return false;
    QCPGraph* g = addGraph(xAxis, yAxis);
    g->setName(name);
    // A one-pixel pen: wider antialiased strokes become very slow once a trace runs far
    // beyond the plot area (a large signal at a sensitive V-SCALE setting), which it often does.
    g->setPen(QPen(color, 1.0));
    g->setLineStyle(QCPGraph::lsLine);
    m_plots.insert(name, g);
    m_plotOrder.append(name);
    return true;
}

QStringList ScopeGraph::plotNames() const {
    return m_plotOrder;
}

QCPGraph* ScopeGraph::plot(const QString& name) const {
    QCPGraph* g = m_plots.value(name, nullptr);
    if (!g)
        reportUnknown(name);
    return g;
}

int ScopeGraph::cursorIndex(const QString& name) const {
    const int i = m_cursors->find(name);
    if (i < 0)
        reportUnknown(name);
    return i;
}

void ScopeGraph::setStrictNames(bool strict) {
    m_strictNames = strict;
}

void ScopeGraph::reportUnknown(const QString& name) const {
    if (!m_strictNames)
        return;
    qWarning("%s: no plot, axis or cursor is named \"%s\"", qPrintable(objectName()),
             qPrintable(name));
    Q_ASSERT_X(false, "ScopeGraph", "a name the graph does not know");
}

bool ScopeGraph::plotY(const QString& name, const float* ys, int count, double firstX,
                       double stepX) {
    QCPGraph* g = plot(name);
    if (!g || count < 0 || (count > 0 && !ys) || !std::isfinite(firstX) || !std::isfinite(stepX))
        return false;
    // The container is rewritten in place; it is rebuilt only when the number of points changes.
    const QSharedPointer<QCPGraphDataContainer> data = g->data();
    if (data->size() != count)
        data->set(QVector<QCPGraphData>(count), true);
    auto it = data->begin();
    const bool descending = stepX < 0; // keep the points in ascending X
    for (int i = 0; i < count; ++i) {
        QCPGraphData& point = it[descending ? count - 1 - i : i];
        point.key = firstX + i * stepX;
        point.value = ys[i];
    }
    redraw();
    return true;
}

bool ScopeGraph::plotY(const QString& name, std::span<const float> ys, double firstX,
                       double stepX) {
    if (ys.size() > static_cast<std::size_t>(std::numeric_limits<int>::max()))
        return false;
    return plotY(name, ys.data(), static_cast<int>(ys.size()), firstX, stepX);
}

bool ScopeGraph::clearData(const QString& name) {
    QCPGraph* g = plot(name);
    if (!g)
        return false;
    g->data()->clear();
    redraw();
    return true;
}

void ScopeGraph::clearAllPlots() {
    for (QCPGraph* g : std::as_const(m_plots))
        g->data()->clear();
    redraw();
}

ScopeGraph::PlotData ScopeGraph::plotData(const QString& name) const {
    PlotData out;
    const QCPGraph* g = plot(name);
    if (!g)
        return out;
    const QSharedPointer<QCPGraphDataContainer> data = g->data();
    out.x.reserve(data->size());
    out.y.reserve(data->size());
    for (auto it = data->constBegin(); it != data->constEnd(); ++it) {
        out.x.append(it->key);
        out.y.append(it->value);
    }
    return out;
}

bool ScopeGraph::setPlotVisible(const QString& name, bool visible) {
    QCPGraph* g = plot(name);
    if (!g)
        return false;
    g->setVisible(visible);
    redraw();
    return true;
}

bool ScopeGraph::plotVisible(const QString& name) const {
    const QCPGraph* g = plot(name);
    return g && g->visible();
}

bool ScopeGraph::setPlotColor(const QString& name, const QColor& color) {
    QCPGraph* g = plot(name);
    if (!g || !color.isValid())
        return false;
    QPen pen = g->pen();
    pen.setColor(color);
    g->setPen(pen);
    redraw();
    return true;
}

QColor ScopeGraph::plotColor(const QString& name) const {
    const QCPGraph* g = plot(name);
    return g ? g->pen().color() : QColor();
}

// ---- axes ----

ScopeGraph::AxisLimits* ScopeGraph::axisLimits(const QString& name) {
    if (name == names::kXAxis)
        return &m_xLimits;
    if (name == names::kYAxis)
        return &m_yLimits;
    reportUnknown(name);
    return nullptr;
}

const ScopeGraph::AxisLimits* ScopeGraph::axisLimits(const QString& name) const {
    return const_cast<ScopeGraph*>(this)->axisLimits(name);
}

double ScopeGraph::axisMinimum(const QString& name) const {
    const AxisLimits* a = axisLimits(name);
    return a ? a->minimum : kNaN;
}

double ScopeGraph::axisMaximum(const QString& name) const {
    const AxisLimits* a = axisLimits(name);
    return a ? a->maximum : kNaN;
}

bool ScopeGraph::setAxisMinimum(const QString& name, double value) {
    AxisLimits* a = axisLimits(name);
    if (!a || !std::isfinite(value))
        return false;
    a->minimum = value;
    applyAxis(*a);
    return true;
}

bool ScopeGraph::setAxisMaximum(const QString& name, double value) {
    AxisLimits* a = axisLimits(name);
    if (!a || !std::isfinite(value))
        return false;
    a->maximum = value;
    applyAxis(*a);
    return true;
}

void ScopeGraph::applyAxis(AxisLimits& limits) {
    if (limits.minimum < limits.maximum)
        limits.axis->setRange(limits.minimum, limits.maximum);
    if (limits.axis == yAxis)
        emit plotAreaChanged();
    redraw();
}

// ---- cursors ----

QStringList ScopeGraph::cursorNames() const {
    QStringList names;
    for (int i = 0; i < m_cursors->count(); ++i)
        names.append(m_cursors->at(i).name);
    return names;
}

double ScopeGraph::cursorX(const QString& name) const {
    const int i = cursorIndex(name);
    return i < 0 ? kNaN : m_cursors->at(i).x;
}

double ScopeGraph::cursorY(const QString& name) const {
    const int i = cursorIndex(name);
    return i < 0 ? kNaN : m_cursors->at(i).y;
}

bool ScopeGraph::setCursorX(const QString& name, double x) {
    const int i = cursorIndex(name);
    if (i < 0 || !std::isfinite(x))
        return false;
    m_cursors->at(i).x = x;
    redraw();
    return true;
}

bool ScopeGraph::setCursorY(const QString& name, double y) {
    const int i = cursorIndex(name);
    if (i < 0 || !std::isfinite(y))
        return false;
    m_cursors->at(i).y = y;
    redraw();
    return true;
}

bool ScopeGraph::cursorVisible(const QString& name) const {
    const int i = cursorIndex(name);
    return i >= 0 && m_cursors->at(i).visible;
}

bool ScopeGraph::setCursorVisible(const QString& name, bool visible) {
    const int i = cursorIndex(name);
    if (i < 0)
        return false;
    m_cursors->at(i).visible = visible;
    if (!visible && m_dragging == i)
        m_dragging = -1;
    redraw();
    return true;
}

QColor ScopeGraph::cursorColor(const QString& name) const {
    const int i = cursorIndex(name);
    return i < 0 ? QColor() : m_cursors->at(i).color;
}

bool ScopeGraph::setCursorColor(const QString& name, const QColor& color) {
    const int i = cursorIndex(name);
    if (i < 0 || !color.isValid())
        return false;
    m_cursors->at(i).color = color;
    redraw();
    return true;
}

QString ScopeGraph::selectedCursor() const {
    const int i = m_cursors->selected();
    return i < 0 ? QString() : m_cursors->at(i).name;
}

bool ScopeGraph::selectCursor(const QString& name) {
    const int i = name.isEmpty() ? -1 : cursorIndex(name);
    if (i < 0 && !name.isEmpty())
        return false;
    m_cursors->setSelected(i);
    redraw();
    return true;
}

void ScopeGraph::moveCursorByUser(int index, double value) {
    const double before = m_cursors->position(index);
    m_cursors->moveTo(index, value);
    if (m_cursors->position(index) == before)
        return;
    redraw();
    emit cursorChanged(m_cursors->at(index).name);
}

// ---- look and redraw ----

void ScopeGraph::setPlotAreaColor(const QColor& color) {
    if (!color.isValid())
        return;
    m_plotAreaColor = color;
    m_backdrop->setAreaColor(color);
    redraw();
}

void ScopeGraph::setMarginColor(const QColor& color) {
    if (!color.isValid())
        return;
    m_backdrop->setMarginColor(color);
    redraw();
}

QRect ScopeGraph::plotAreaRect() const {
    return rect().adjusted(kPlotMargin, kPlotMargin, -kPlotMargin, -kPlotMargin);
}

void ScopeGraph::redraw() {
    if (m_redrawTimer.isActive())
        return;
    const int rate = screen() ? qRound(screen()->refreshRate()) : 60;
    const qint64 interval = 1000 / qBound(20, rate, 240);
    const qint64 since = m_sinceReplot.isValid() ? m_sinceReplot.elapsed() : interval;
    m_redrawTimer.start(static_cast<int>(qMax<qint64>(0, interval - since)));
}

void ScopeGraph::onReplotted() {
    ++m_replots;
    m_sinceReplot.restart();
}

QString ScopeGraph::accessibleSummary() const {
    QStringList parts;
    parts.append(QStringLiteral("X %1 to %2 div, Y %3 to %4 div")
                     .arg(m_xLimits.minimum, 0, 'f', 2)
                     .arg(m_xLimits.maximum, 0, 'f', 2)
                     .arg(m_yLimits.minimum, 0, 'f', 2)
                     .arg(m_yLimits.maximum, 0, 'f', 2));
    for (const QString& name : m_plotOrder) {
        const QCPGraph* g = plot(name);
        if (!g->visible())
            parts.append(name + QStringLiteral(" hidden"));
        else if (g->data()->isEmpty())
            parts.append(name + QStringLiteral(" no data"));
        else
            parts.append(name + QStringLiteral(" %1 points").arg(g->data()->size()));
    }
    for (int i = 0; i < m_cursors->count(); ++i) {
        const GraphCursors::Cursor& c = m_cursors->at(i);
        if (!c.visible)
            continue;
        const bool byX = c.line == Qt::Vertical;
        parts.append(QStringLiteral("%1 at %2 %3 div")
                         .arg(c.name, byX ? QStringLiteral("X") : QStringLiteral("Y"))
                         .arg(byX ? c.x : c.y, 0, 'f', 2));
    }
    return parts.join(QStringLiteral("; "));
}

void ScopeGraph::paintEvent(QPaintEvent* event) {
    QCustomPlot::paintEvent(event);
    if (hasFocus()) {
        QPainter p(this);
        PanelLook::drawFocusFrame(p, rect());
    }
}

void ScopeGraph::resizeEvent(QResizeEvent* event) {
    QCustomPlot::resizeEvent(event);
    emit plotAreaChanged();
}

void ScopeGraph::focusInEvent(QFocusEvent* event) {
    update();
    QCustomPlot::focusInEvent(event);
}

void ScopeGraph::focusOutEvent(QFocusEvent* event) {
    update();
    QCustomPlot::focusOutEvent(event);
}

} // namespace zorvik
