// Pictures of the graph.
#include "analysis/GraphPicture.h"

#include "display/GraphNames.h"
#include "widgets/ScopeGraph.h"

#include <QBuffer>
#include <QPainter>
#include <QSaveFile>
#include <QSvgGenerator>
#include <memory>

namespace zorvik {

namespace {

// The light colours: a white page, the live trace dark blue, the reference dark orange, the
// time cursors purple, the voltage cursors dark green and other marks dark grey, all of which stay
// apart from one another and from the grey graticule in print and on a projector.
const QColor kLightArea(255, 255, 255);
const QColor kLightLive(0, 0, 170);
const QColor kLightReference(200, 90, 0);
const QColor kLightTimeCursor(150, 0, 150);
const QColor kLightVoltCursor(0, 120, 0);
const QColor kLightMarker(80, 80, 80);

/// A graph of its own that shows what `graph` shows, in `theme`, at `size`.
std::unique_ptr<ScopeGraph> copyOf(const ScopeGraph& graph, QSize size, PictureTheme theme) {
    auto copy = std::make_unique<ScopeGraph>();
    copy->setAttribute(Qt::WA_DontShowOnScreen);
    copy->resize(size);
    for (const char* axis : {names::kXAxis, names::kYAxis}) {
        (void)copy->setAxisMinimum(axis, graph.axisMinimum(axis));
        (void)copy->setAxisMaximum(axis, graph.axisMaximum(axis));
    }
    const bool light = theme == PictureTheme::Light;
    for (const QString& name : graph.plotNames()) {
        if (!copy->plotNames().contains(name))
            (void)copy->addPlot(name, graph.plotColor(name));
        const ScopeGraph::PlotData data = graph.plotData(name);
        QVector<float> ys(data.y.size());
        for (qsizetype i = 0; i < data.y.size(); ++i)
            ys[i] = static_cast<float>(data.y[i]);
        const double first = data.x.isEmpty() ? 0.0 : data.x.first();
        const double step = data.x.size() > 1 ? data.x[1] - data.x[0] : 1.0;
        (void)copy->plotY(name, ys.constData(), static_cast<int>(ys.size()), first, step);
        (void)copy->setPlotVisible(name, graph.plotVisible(name));
        QColor colour = graph.plotColor(name);
        if (light)
            colour = name == QLatin1String(names::kPlotRef) ? kLightReference : kLightLive;
        (void)copy->setPlotColor(name, colour);
    }
    for (const QString& name : graph.cursorNames()) {
        (void)copy->setCursorX(name, graph.cursorX(name));
        (void)copy->setCursorY(name, graph.cursorY(name));
        (void)copy->setCursorVisible(name, graph.cursorVisible(name));
        QColor colour = graph.cursorColor(name);
        if (light) {
            if (name == QLatin1String(names::kCursor1) || name == QLatin1String(names::kCursor2))
                colour = kLightTimeCursor;
            else if (name == QLatin1String(names::kCursor3) ||
                     name == QLatin1String(names::kCursor4))
                colour = kLightVoltCursor;
            else
                colour = kLightMarker;
        }
        (void)copy->setCursorColor(name, colour);
    }
    copy->setPlotAreaColor(light ? kLightArea : graph.plotAreaColor());
    if (light)
        copy->setMarginColor(kLightArea);
    return copy;
}

} // namespace

QImage graphImage(const ScopeGraph& graph, QSize size, PictureTheme theme) {
    const std::unique_ptr<ScopeGraph> copy = copyOf(graph, size, theme);
    return copy->toPixmap(size.width(), size.height()).toImage();
}

bool saveGraphPicture(const ScopeGraph& graph, QSize size, PictureTheme theme, const QString& path,
                      QString& error) {
    QByteArray bytes;
    if (path.endsWith(QLatin1String(".svg"), Qt::CaseInsensitive)) {
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        QSvgGenerator svg;
        svg.setOutputDevice(&buffer);
        svg.setSize(size);
        svg.setViewBox(QRect(QPoint(0, 0), size));
        svg.setTitle(QStringLiteral("Zorvik graph"));
        const std::unique_ptr<ScopeGraph> copy = copyOf(graph, size, theme);
        QCPPainter painter(&svg);
        copy->toPainter(&painter, size.width(), size.height());
        painter.end();
    } else {
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        if (!graphImage(graph, size, theme).save(&buffer, "PNG")) {
            error = QStringLiteral("The picture could not be made.");
            return false;
        }
    }
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit()) {
        error = file.errorString();
        return false;
    }
    return true;
}

} // namespace zorvik
