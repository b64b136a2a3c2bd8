// The Spectrum window.
#include "analysis/frmSpectrum.h"

#include "analysis/Measurements.h"
#include "app/frmMain.h"
#include "display/AcquisitionFeed.h"
#include "display/GraphNames.h"
#include "widgets/LitButton.h"
#include "widgets/ScopeGraph.h"

#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QSpinBox>
#include <QVBoxLayout>
#include <cmath>
#include <qcustomplot.h>

namespace zorvik {

namespace {

constexpr std::size_t kPaddings[] = {1, 2, 4, 8, 16};

/// Tick labels in hertz with SI prefixes ("0", "2.5k", "1M").
class HertzTicker : public QCPAxisTicker {
protected:
    QString getTickLabel(double tick, const QLocale&, QChar, int) override {
        const double a = std::abs(tick);
        if (a < 1e-12)
            return QStringLiteral("0");
        static const std::pair<double, const char*> prefixes[] = {
            {1e6, "M"}, {1e3, "k"}, {1.0, ""}, {1e-3, "m"}};
        for (const auto& [scale, prefix] : prefixes) {
            if (a >= scale * 0.999 || scale == 1e-3)
                return QString::number(tick / scale, 'g', 4) + QString::fromLatin1(prefix);
        }
        return QString::number(tick, 'g', 4);
    }
};

QString magnitudeText(double v, SpectrumUnit unit) {
    if (unit == SpectrumUnit::DBV)
        return QString::number(v, 'f', 2) + QStringLiteral(" dBV");
    return QString::fromStdString(formatMeasure(v, "V"));
}

} // namespace

frmSpectrum::frmSpectrum(frmMain& window, AcquisitionFeed& feed, const AnalysisSettings& settings)
    : AnalysisWindow(window, settings, "Spectrum"), feed_(feed) {
    setWindowTitle(tr("Spectrum"));

    cboWindow_ = new QComboBox(this);
    cboWindow_->setObjectName("cboWindow");
    for (std::size_t i = 0; i < kSpectrumWindowCount; ++i)
        cboWindow_->addItem(tr(windowName(static_cast<SpectrumWindow>(i))));
    cboUnit_ = new QComboBox(this);
    cboUnit_->setObjectName("cboUnit");
    cboUnit_->addItem(tr("dBV"));
    cboUnit_->addItem(tr("V RMS"));
    cboPadding_ = new QComboBox(this);
    cboPadding_->setObjectName("cboPadding");
    cboPadding_->addItem(tr("None"));
    for (std::size_t i = 1; i < std::size(kPaddings); ++i)
        cboPadding_->addItem(tr("%1 times").arg(kPaddings[i]));
    spnAverage_ = new QSpinBox(this);
    spnAverage_->setObjectName("spnAverage");
    spnAverage_->setRange(1, 100);
    spnAverage_->setSuffix(tr(" frames"));
    spnAverage_->setSpecialValueText(tr("Off"));

    auto* choices = new QHBoxLayout;
    const std::pair<QString, QWidget*> labelled[] = {{tr("&Window:"), cboWindow_},
                                                     {tr("&Unit:"), cboUnit_},
                                                     {tr("Zero &padding:"), cboPadding_},
                                                     {tr("&Average:"), spnAverage_}};
    for (const auto& [text, widget] : labelled) {
        auto* label = new QLabel(text, this);
        label->setBuddy(widget);
        widget->setAccessibleName(QString(text).remove('&').remove(':'));
        choices->addWidget(label);
        choices->addWidget(widget);
        choices->addSpacing(8);
    }
    choices->addStretch(1);

    plot_ = new QCustomPlot(this);
    plot_->setObjectName("plotSpectrum");
    plot_->setAccessibleName(tr("Spectrum graph"));
    plot_->setMinimumSize(480, 260);
    plot_->setBackground(QColor(0, 0, 0));
    // Plain lines draw in a fraction of the time smoothed ones take, and 65 to 1025 points on
    // a dark plot need no smoothing.
    plot_->setNotAntialiasedElements(QCP::aeAll);
    plot_->setPlottingHint(QCP::phFastPolylines, true);
    for (QCPAxis* axis : {plot_->xAxis, plot_->yAxis}) {
        axis->setBasePen(QPen(QColor(160, 160, 160)));
        axis->setTickPen(QPen(QColor(160, 160, 160)));
        axis->setSubTickPen(QPen(QColor(120, 120, 120)));
        axis->setTickLabelColor(QColor(220, 220, 220));
        axis->setLabelColor(QColor(220, 220, 220));
        axis->grid()->setPen(QPen(QColor(60, 60, 60), 0, Qt::DotLine));
        axis->grid()->setZeroLinePen(axis->grid()->pen());
    }
    plot_->xAxis->setTicker(QSharedPointer<QCPAxisTicker>(new HertzTicker));
    plot_->xAxis->setLabel(tr("Frequency (Hz)"));
    // The traces' colours are those of the main graph.
    const ScopeGraph* graph = window.panel().CWGraph1;
    // The curves and the marker on a layer of their own, drawn again alone while the scales
    // stand still.
    plot_->addLayer(QStringLiteral("curves"), plot_->layer(QStringLiteral("main")),
                    QCustomPlot::limAbove);
    plot_->layer(QStringLiteral("curves"))->setMode(QCPLayer::lmBuffered);
    plot_->setCurrentLayer(QStringLiteral("curves"));
    referenceGraph_ = plot_->addGraph();
    referenceGraph_->setPen(QPen(graph->plotColor(names::kPlotRef)));
    referenceGraph_->setName(tr("Reference"));
    liveGraph_ = plot_->addGraph();
    liveGraph_->setPen(QPen(graph->plotColor(names::kPlotCHa)));
    liveGraph_->setName(tr("CH A"));
    marker_ = new QCPItemTracer(plot_);
    marker_->setStyle(QCPItemTracer::tsCircle);
    marker_->setSize(9);
    marker_->setPen(QPen(QColor(255, 80, 80), 1.5));
    marker_->setVisible(false);
    plot_->setCurrentLayer(QStringLiteral("main"));

    lblPeak_ = new QLabel(this);
    lblPeak_->setObjectName("lblPeak");
    // Labels of a fixed size: a new text does not make the window lay itself out again.
    const int peakWidth =
        fontMetrics().horizontalAdvance(QStringLiteral("Reference peak: -999.9 kHz, -199.99 dBV")) +
        8;
    lblPeak_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    lblReferencePeak_ = new QLabel(this);
    lblReferencePeak_->setObjectName("lblReferencePeak");
    lblReferencePeak_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    for (QLabel* l : {lblPeak_, lblReferencePeak_})
        l->setFixedSize(peakWidth, fontMetrics().height() + 4);
    auto* bottom = new QHBoxLayout;
    bottom->addWidget(lblPeak_);
    bottom->addSpacing(16);
    bottom->addWidget(lblReferencePeak_);
    bottom->addStretch(1);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(choices);
    layout->addWidget(plot_, 1);
    layout->addLayout(bottom);
    resize(680, 420);

    // The choices kept from the last time, the usual ones the first time: Hann (a fair
    // compromise between telling tones apart and reading their levels), dBV, no padding, no
    // averaging.
    setWindow(windowFromKey(settings.text(key("Window")).value_or("hann"))
                  .value_or(SpectrumWindow::Hann));
    setUnit(unitFromKey(settings.text(key("Unit")).value_or("dbv")).value_or(SpectrumUnit::DBV));
    setPadding(static_cast<std::size_t>(settings.number(key("Padding"), 1, 16, 1)));
    setAveraging(static_cast<std::size_t>(settings.number(key("Average"), 1, 100, 1)));
    for (QComboBox* box : {cboWindow_, cboUnit_, cboPadding_})
        connect(box, &QComboBox::currentIndexChanged, this, &frmSpectrum::onChoiceChanged);
    connect(spnAverage_, &QSpinBox::valueChanged, this, &frmSpectrum::onChoiceChanged);

    connect(&feed, &AcquisitionFeed::frameDecoded, this, &frmSpectrum::onFrameDecoded);
    connect(&feed, &AcquisitionFeed::acquisitionChanged, this, &frmSpectrum::onAcquisitionChanged);
    connect(window.panel().CWBRef, &LitButton::valueChanged, this, [this] {
        if (!isVisible())
            return;
        updateReference(main_.model());
        draw();
    });
    draw();
}

SpectrumWindow frmSpectrum::window() const {
    return static_cast<SpectrumWindow>(std::max(0, cboWindow_->currentIndex()));
}
SpectrumUnit frmSpectrum::unit() const {
    return cboUnit_->currentIndex() == 1 ? SpectrumUnit::Volts : SpectrumUnit::DBV;
}
std::size_t frmSpectrum::padding() const {
    return kPaddings[static_cast<std::size_t>(std::max(0, cboPadding_->currentIndex()))];
}
std::size_t frmSpectrum::averaging() const {
    return static_cast<std::size_t>(spnAverage_->value());
}
void frmSpectrum::setWindow(SpectrumWindow w) {
    cboWindow_->setCurrentIndex(static_cast<int>(w));
}
void frmSpectrum::setUnit(SpectrumUnit u) {
    cboUnit_->setCurrentIndex(u == SpectrumUnit::Volts ? 1 : 0);
}
void frmSpectrum::setPadding(std::size_t padding) {
    for (std::size_t i = 0; i < std::size(kPaddings); ++i)
        if (kPaddings[i] == padding)
            cboPadding_->setCurrentIndex(static_cast<int>(i));
}
void frmSpectrum::setAveraging(std::size_t frames) {
    spnAverage_->setValue(static_cast<int>(frames));
}

void frmSpectrum::onChoiceChanged() {
    settings().write({{key("Window"), std::string(windowKey(window()))},
                      {key("Unit"), std::string(unitKey(unit()))},
                      {key("Padding"), std::to_string(padding())},
                      {key("Average"), std::to_string(averaging())}});
    // A new window or padding starts the average again from the trace on screen.
    average_.reset();
    average_.setFrames(averaging());
    if (haveLive_)
        addLive(lastVolts_, lastInterval_);
    updateReference(main_.model());
    draw();
}

void frmSpectrum::addLive(const TraceArray& volts, float sampleInterval) {
    lastVolts_ = volts;
    lastInterval_ = sampleInterval;
    haveLive_ = true;
    average_.setFrames(averaging());
    live_ = average_.add(
        analyzer_.analyse(volts.data(), volts.size(), sampleInterval, window(), padding()));
}

void frmSpectrum::updateReference(const DisplayModel& model) {
    referenceChanged_ = false;
    const FrontPanel& panel = main_.panel();
    const bool shown = panel.CWBRef->value() && (model.blnRefLoaded || panel.CWBStoreRef->value());
    referenceShown_ = shown;
    referenceVolts_ = model.sngRefVolts;
    referenceInterval_ = model.sngRefSampleInterval;
    if (shown)
        reference_ = analyzer_.analyse(model.sngRefVolts.data(), model.sngRefVolts.size(),
                                       model.sngRefSampleInterval, window(), padding());
    else
        reference_ = SpectrumResult{};
    if (reference_.peak) {
        QString where =
            reference_.peakFrequency()
                ? QString::fromStdString(formatMeasure(reference_.peakFrequency(), "Hz"))
                : QStringLiteral("\u2014");
        lblReferencePeak_->setText(
            tr("Reference peak: %1, %2")
                .arg(where, magnitudeText(*reference_.peakMagnitude(unit()), unit())));
    } else {
        lblReferencePeak_->setText(shown ? tr("Reference peak: \u2014") : QString());
    }
}

QString frmSpectrum::peakText() const {
    if (!live_.peak)
        return tr("Peak: \u2014");
    const QString where = live_.peakFrequency()
                              ? QString::fromStdString(formatMeasure(live_.peakFrequency(), "Hz"))
                              : QStringLiteral("\u2014");
    return tr("Peak: %1, %2").arg(where, magnitudeText(*live_.peakMagnitude(unit()), unit()));
}

void frmSpectrum::onFrameDecoded(const DecodedFrame& frame) {
    // A closed window costs nothing; the present record shown again is no new frame.
    if (!isVisible())
        return;
    if (frame.kind != ReceiveEvent::Frame) {
        if (referenceChanged_)
            scheduleShow();
        return;
    }
    decoder_.take(frame);
    decoder_.decode();
    addLive(decoder_.sngChaVolts, decoder_.acquisition.sngSampleInterval);
    scheduleShow();
}

void frmSpectrum::onAcquisitionChanged(const DisplayModel& model) {
    if (!isVisible())
        return;
    // Redrawn for every frame shown; the reference's spectrum is worked out again only when
    // the reference itself changed (stored, loaded, shown or hidden).
    const FrontPanel& panel = main_.panel();
    const bool shown = panel.CWBRef->value() && (model.blnRefLoaded || panel.CWBStoreRef->value());
    if (shown == referenceShown_ && (!shown || (model.sngRefVolts == referenceVolts_ &&
                                                model.sngRefSampleInterval == referenceInterval_)))
        return;
    referenceChanged_ = true;
    if (!feed_.showingFrame())
        scheduleShow(); // (a frame's own change is shown with it)
}

void frmSpectrum::showNow() {
    if (referenceChanged_)
        updateReference(main_.model());
    draw();
}

void frmSpectrum::showEvent(QShowEvent* event) {
    AnalysisWindow::showEvent(event);
    // What is on screen now starts the spectrum.
    const DisplayModel& model = main_.model();
    decoder_ = model;
    average_.reset();
    if (model.blnLiveData)
        addLive(model.sngChaVolts, model.acquisition.sngSampleInterval);
    updateReference(model);
    draw();
}

void frmSpectrum::draw() {
    const QString peak = peakText();
    if (lblPeak_->text() != peak)
        lblPeak_->setText(peak);
    const SpectrumUnit u = unit();
    const QCPRange xBefore = plot_->xAxis->range();
    const QCPRange yBefore = plot_->yAxis->range();
    const QString labelBefore = plot_->yAxis->label();
    auto fill = [u](QCPGraph* graph, const SpectrumResult& r) {
        QVector<double> x;
        QVector<double> y;
        if (!r.frequency.empty()) {
            const std::vector<double> m = r.magnitude(u);
            x = QVector<double>(r.frequency.begin(), r.frequency.end());
            y = QVector<double>(m.begin(), m.end());
        }
        graph->setData(x, y, true);
    };
    fill(liveGraph_, live_);
    fill(referenceGraph_, reference_);

    // From 0 Hz to the highest Nyquist frequency shown; levels from the strongest bin down by
    // 100 dB (the 8-bit samples hold about 48 dB, windowing and padding add their own floor),
    // or from 0 V up in volts.
    double top = -1e300;
    double nyquist = 0.0;
    for (const SpectrumResult* r : {&live_, &reference_}) {
        if (r->frequency.empty())
            continue;
        nyquist = std::max(nyquist, r->frequency.back());
        for (double v : r->magnitude(u))
            top = std::max(top, v);
    }
    if (nyquist > 0.0) {
        if (plot_->xAxis->range() != QCPRange(0.0, nyquist))
            plot_->xAxis->setRange(0.0, nyquist);
        // The level scale moves only when the strongest point leaves it (or falls far below
        // its top), so it stands still while the signal does.
        const QCPRange now = plot_->yAxis->range();
        if (u == SpectrumUnit::DBV) {
            const double ceiling = std::ceil((top + 5.0) / 10.0) * 10.0;
            if (top > now.upper || top < now.upper - 30.0 || now.size() != 100.0)
                plot_->yAxis->setRange(ceiling - 100.0, ceiling);
        } else {
            const double upper = top > 0.0 ? top * 1.1 : 1.0;
            if (top > now.upper || top < now.upper * 0.5 || now.lower != 0.0)
                plot_->yAxis->setRange(0.0, upper);
        }
    }
    plot_->yAxis->setLabel(u == SpectrumUnit::DBV ? tr("dBV") : tr("V RMS"));
    const bool marked = live_.peak && live_.peakFrequency();
    marker_->setVisible(marked);
    if (marked)
        marker_->position->setCoords(*live_.peakFrequency(), *live_.peakMagnitude(u));
    if (plot_->xAxis->range() == xBefore && plot_->yAxis->range() == yBefore &&
        plot_->yAxis->label() == labelBefore)
        plot_->layer(QStringLiteral("curves"))->replot();
    else
        plot_->replot(QCustomPlot::rpQueuedReplot);
}

} // namespace zorvik
