// Compare mode.
#include "analysis/frmCompare.h"

#include "analysis/Measurements.h"
#include "app/frmMain.h"
#include "display/AcquisitionFeed.h"
#include "display/GraphNames.h"
#include "widgets/LitButton.h"
#include "widgets/ScopeGraph.h"

#include <QCheckBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <cmath>
#include <qcustomplot.h>

namespace zorvik {

namespace {

const QColor kBandEdge(0, 170, 0);
const QColor kBandFill(0, 200, 0, 45);
const QColor kMark(255, 60, 60);

QString volts(double v) {
    return QString::fromStdString(formatMeasure(v, "V"));
}

} // namespace

frmCompare::frmCompare(frmMain& window, AcquisitionFeed& feed, const AnalysisSettings& settings)
    : AnalysisWindow(window, settings, "Compare"), feed_(feed), graph_(window.panel().CWGraph1) {
    setWindowTitle(tr("Compare with Reference"));
    spnVolts_ = new QDoubleSpinBox(this);
    spnVolts_->setObjectName("spnVolts");
    spnVolts_->setAccessibleName(tr("Band in volts"));
    spnVolts_->setRange(0.0, 500.0);
    spnVolts_->setDecimals(3);
    spnVolts_->setSingleStep(0.05);
    spnVolts_->setPrefix(QStringLiteral("\u00b1 "));
    spnVolts_->setSuffix(tr(" V"));
    spnPercent_ = new QDoubleSpinBox(this);
    spnPercent_->setObjectName("spnPercent");
    spnPercent_->setAccessibleName(tr("Band in per cent of the reference's peak-to-peak"));
    spnPercent_->setRange(0.0, 100.0);
    spnPercent_->setDecimals(1);
    spnPercent_->setSingleStep(1.0);
    spnPercent_->setPrefix(QStringLiteral("\u00b1 "));
    spnPercent_->setSuffix(tr(" %"));
    chkHold_ = new QCheckBox(tr("&Hold the display at the first failing frame"), this);
    chkHold_->setObjectName("chkHold");

    lblResult_ = new QLabel(this);
    lblResult_->setObjectName("lblResult");
    QFont big = lblResult_->font();
    big.setPointSizeF(big.pointSizeF() * 1.6);
    big.setBold(true);
    lblResult_->setFont(big);
    lblResult_->setMinimumWidth(lblResult_->fontMetrics().horizontalAdvance("FAIL") + 16);
    lblCounts_ = new QLabel(this);
    lblCounts_->setObjectName("lblCounts");
    lblLargest_ = new QLabel(this);
    lblLargest_->setObjectName("lblLargest");
    lblRms_ = new QLabel(this);
    lblRms_->setObjectName("lblRms");
    lblState_ = new QLabel(this);
    lblState_->setObjectName("lblState");
    lblState_->setWordWrap(true);
    lblState_->setMinimumWidth(360);
    for (QLabel* l : {lblCounts_, lblLargest_, lblRms_, lblState_})
        l->setTextInteractionFlags(Qt::TextSelectableByMouse);
    cmdReset_ = new QPushButton(tr("Reset &counts"), this);
    cmdReset_->setObjectName("cmdReset");
    cmdResume_ = new QPushButton(tr("&Resume"), this);
    cmdResume_->setObjectName("cmdResume");

    auto* form = new QFormLayout;
    auto* voltsLabel = new QLabel(tr("Band: &volts"), this);
    voltsLabel->setBuddy(spnVolts_);
    auto* percentLabel = new QLabel(tr("and &per cent of its peak-to-peak"), this);
    percentLabel->setBuddy(spnPercent_);
    form->addRow(voltsLabel, spnVolts_);
    form->addRow(percentLabel, spnPercent_);
    form->addRow(QString(), chkHold_);
    auto* figures = new QVBoxLayout;
    figures->addWidget(lblCounts_);
    figures->addWidget(lblLargest_);
    figures->addWidget(lblRms_);
    auto* result = new QHBoxLayout;
    result->addWidget(lblResult_);
    result->addLayout(figures, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdReset_);
    buttons->addWidget(cmdResume_);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addLayout(result);
    layout->addWidget(lblState_);
    layout->addLayout(buttons);

    // The band set last; at first a tenth of a volt and 5 % of the reference's peak-to-peak.
    setBand(ToleranceBand{this->settings().real(key("Volts"), 0.1),
                          this->settings().real(key("Percent"), 5.0)});
    setHoldOnFailure(this->settings().number(key("Hold"), 0, 1, 0) == 1);
    connect(spnVolts_, &QDoubleSpinBox::valueChanged, this, [this] {
        saveChoices();
        compareAgain();
    });
    connect(spnPercent_, &QDoubleSpinBox::valueChanged, this, [this] {
        saveChoices();
        compareAgain();
    });
    connect(chkHold_, &QCheckBox::toggled, this, [this](bool hold) {
        saveChoices();
        if (!hold)
            resume();
    });
    connect(cmdReset_, &QPushButton::clicked, this, &frmCompare::reset);
    connect(cmdResume_, &QPushButton::clicked, this, &frmCompare::resume);

    connect(&feed, &AcquisitionFeed::frameToShow, this, &frmCompare::onFrameShown);
    connect(&feed, &AcquisitionFeed::acquisitionChanged, this, &frmCompare::onAcquisitionChanged);
    connect(window.panel().CWBRef, &LitButton::valueChanged, this, [this] {
        if (isVisible())
            compareAgain();
    });
    showResult();
}

frmCompare::~frmCompare() {
    if (heldHere_)
        feed_.setHeld(false);
    removeFromGraph();
}

ToleranceBand frmCompare::band() const {
    return ToleranceBand{spnVolts_->value(), spnPercent_->value()};
}
void frmCompare::setBand(const ToleranceBand& band) {
    spnVolts_->setValue(band.volts);
    spnPercent_->setValue(band.percent);
}
bool frmCompare::holdOnFailure() const {
    return chkHold_->isChecked();
}
void frmCompare::setHoldOnFailure(bool hold) {
    chkHold_->setChecked(hold);
}
bool frmCompare::holding() const {
    return heldHere_ && feed_.held();
}

void frmCompare::saveChoices() {
    std::string v;
    std::string p;
    // Whole texts of the numbers as shown, with a '.' whatever the locale.
    v = QString::number(spnVolts_->value(), 'g', 10).toStdString();
    p = QString::number(spnPercent_->value(), 'g', 10).toStdString();
    settings().write(
        {{key("Volts"), v}, {key("Percent"), p}, {key("Hold"), holdOnFailure() ? "1" : "0"}});
}

void frmCompare::reset() {
    counts_ = CompareCounts{};
    showResult();
}

void frmCompare::resume() {
    if (heldHere_) {
        heldHere_ = false;
        feed_.setHeld(false);
    }
    showResult();
}

std::optional<CompareResult> frmCompare::compareNow() const {
    const DisplayModel& m = main_.model();
    const FrontPanel& p = main_.panel();
    // The reference as REF shows it: stored by STORE (and kept when STORE is released, so the
    // live trace runs against it) or loaded from a file.
    if (!m.blnLiveData || !p.CWBRef->value())
        return std::nullopt;
    return compareWithReference(m.sngChaVolts, m.acquisition.sngSampleInterval, m.sngRefVolts,
                                m.sngRefSampleInterval, band());
}

void frmCompare::onFrameShown(const DecodedFrame& frame) {
    // Each new frame shown is compared once (the present record shown again is no new frame).
    if (!isVisible())
        return;
    if (frame.kind != ReceiveEvent::Frame) {
        if (changed_)
            scheduleShow();
        return;
    }
    last_ = compareNow();
    if (last_) {
        counts_.add(*last_);
        if (!last_->passed && holdOnFailure() && !feed_.held()) {
            heldHere_ = true;
            feed_.setHeld(true);
        }
    }
    changed_ = false;
    scheduleShow();
}

void frmCompare::onAcquisitionChanged(const DisplayModel&) {
    if (!isVisible())
        return;
    changed_ = true;
    if (!feed_.showingFrame())
        scheduleShow(); // (a frame's own change is shown with it)
}

void frmCompare::compareAgain() {
    // A knob turned, a reference stored or loaded, the band changed: the frame on screen
    // compared again for the figures and the marks, without counting it twice.
    changed_ = false;
    last_ = compareNow();
    showNow();
}

void frmCompare::showNow() {
    if (changed_) {
        changed_ = false;
        last_ = compareNow();
    }
    showResult();
    drawOnGraph();
}

void frmCompare::showResult() {
    lblCounts_->setText(tr("Passed: %1    Failed: %2").arg(counts_.passed).arg(counts_.failed));
    if (last_) {
        const bool pass = last_->passed;
        lblResult_->setText(pass ? tr("PASS") : tr("FAIL"));
        lblResult_->setStyleSheet(pass ? "color: rgb(0, 140, 0);" : "color: rgb(200, 0, 0);");
        const double t = static_cast<double>(last_->largestAt) *
                         static_cast<double>(main_.model().acquisition.sngSampleInterval);
        lblLargest_->setText(tr("Largest deviation: %1 at %2 (band \u00b1 %3)")
                                 .arg(volts(last_->largestDeviation),
                                      QString::fromStdString(formatMeasure(t, "s")),
                                      volts(last_->halfWidth)));
        lblRms_->setText(tr("RMS difference: %1").arg(volts(last_->rmsDifference)));
    } else {
        lblResult_->setText(QStringLiteral("\u2014"));
        lblResult_->setStyleSheet(QString());
        lblLargest_->setText(tr("Largest deviation: \u2014"));
        lblRms_->setText(tr("RMS difference: \u2014"));
    }
    const DisplayModel& m = main_.model();
    QString state;
    if (holding())
        state = tr("The display is held on the failing frame. Resume lets frames through again.");
    else if (!main_.panel().CWBRef->value())
        state = tr("No reference on the graph: light REF, with a trace kept by STORE or loaded "
                   "with FILE.");
    else if (!m.blnLiveData)
        state = tr("Waiting for frames: switch POWER on.");
    else if (main_.panel().CWBStoreRef->value())
        state = tr("STORE holds the trace: release STORE to compare the frames that follow "
                   "with the one stored.");
    lblState_->setText(state);
    cmdResume_->setEnabled(holding());
}

void frmCompare::drawOnGraph() {
    if (!graph_)
        return;
    const ScopeGraph::PlotData ref = graph_->plotData(names::kPlotRef);
    if (!isVisible() || !last_ || ref.x.isEmpty()) {
        removeFromGraph();
        graph_->redraw();
        return;
    }
    if (!upper_) {
        // Beneath the traces, above the plot area: the band and its edges; the marks on top.
        upper_ = graph_->addGraph();
        lower_ = graph_->addGraph();
        marks_ = graph_->addGraph();
        for (QCPGraph* g : {upper_, lower_}) {
            g->setLayer(QStringLiteral("grid"));
            g->setPen(QPen(kBandEdge, 1));
        }
        upper_->setBrush(QBrush(kBandFill));
        upper_->setChannelFillGraph(lower_);
        marks_->setLineStyle(QCPGraph::lsNone);
        marks_->setScatterStyle(QCPScatterStyle(QCPScatterStyle::ssCircle, kMark, 7));
    }
    const double half = last_->halfWidth * static_cast<double>(main_.model().sngChaGain);
    QVector<double> hi(ref.y.size());
    QVector<double> lo(ref.y.size());
    for (qsizetype i = 0; i < ref.y.size(); ++i) {
        hi[i] = ref.y[i] + half;
        lo[i] = ref.y[i] - half;
    }
    upper_->setData(ref.x, hi, true);
    lower_->setData(ref.x, lo, true);
    const ScopeGraph::PlotData live = graph_->plotData(names::kPlotCHa);
    QVector<double> mx;
    QVector<double> my;
    for (qsizetype i = 0; i < live.x.size() && i < static_cast<qsizetype>(kSamplesPerFrame); ++i) {
        if (last_->outside[static_cast<std::size_t>(i)]) {
            mx.push_back(live.x[i]);
            my.push_back(live.y[i]);
        }
    }
    marks_->setData(mx, my, true);
    graph_->redraw();
}

void frmCompare::removeFromGraph() {
    if (!graph_)
        return;
    for (QCPGraph** g : {&upper_, &lower_, &marks_}) {
        if (*g)
            graph_->removeGraph(*g);
        *g = nullptr;
    }
}

void frmCompare::showEvent(QShowEvent* event) {
    AnalysisWindow::showEvent(event);
    compareAgain();
}

void frmCompare::hideEvent(QHideEvent* event) {
    AnalysisWindow::hideEvent(event);
    if (event->spontaneous())
        return; // minimised: compare mode goes on
    // Closed: compare mode ends, the graph is as it was and the display runs again.
    resume();
    removeFromGraph();
    if (graph_)
        graph_->redraw();
    emit compareEnded();
}

} // namespace zorvik
