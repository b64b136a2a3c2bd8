// The analysis features beside the front panel.
#include "analysis/AnalysisActions.h"

#include "analysis/Autoset.h"
#include "analysis/ExportActions.h"
#include "analysis/frmCompare.h"
#include "analysis/frmMeasurements.h"
#include "analysis/frmRecording.h"
#include "analysis/frmSpectrum.h"
#include "app/frmMain.h"
#include "widgets/Knob.h"
#include "widgets/LitButton.h"
#include "widgets/ScopeGraph.h"
#include "widgets/Slide.h"

#include <QAction>
#include <QMenu>

namespace zorvik {

AnalysisActions::AnalysisActions(frmMain& window, AcquisitionFeed& feed, AnalysisSettings settings)
    : QObject(&window), window_(window), feed_(feed), settings_(std::move(settings)) {
    autoset_ = new QAction(tr("&Autoset"), this);
    autoset_->setObjectName("actAutoset");
    autoset_->setShortcut(QKeySequence(Qt::Key_A));
    autoset_->setShortcutContext(Qt::WindowShortcut);
    autoset_->setToolTip(tr("Turn H-SCALE, V-SCALE and OFFSET so that the trace fills the graph"));
    connect(autoset_, &QAction::triggered, this, [this] { Autoset(); });
    window.addAction(autoset_);

    measurements_ = new QAction(tr("&Measurements..."), this);
    measurements_->setObjectName("actMeasurements");
    measurements_->setShortcut(QKeySequence(Qt::Key_M));
    measurements_->setShortcutContext(Qt::WindowShortcut);
    connect(measurements_, &QAction::triggered, this, [this] { showMeasurements(); });
    window.addAction(measurements_);

    spectrum_ = new QAction(tr("&Spectrum..."), this);
    spectrum_->setObjectName("actSpectrum");
    spectrum_->setShortcut(QKeySequence(Qt::Key_F));
    spectrum_->setShortcutContext(Qt::WindowShortcut);
    connect(spectrum_, &QAction::triggered, this, [this] { showSpectrum(); });
    window.addAction(spectrum_);

    compare_ = new QAction(tr("Compare with &Reference"), this);
    compare_->setObjectName("actCompare");
    compare_->setCheckable(true);
    compare_->setShortcut(QKeySequence(Qt::Key_K));
    compare_->setShortcutContext(Qt::WindowShortcut);
    compare_->setToolTip(tr("Compare each frame with the reference inside a tolerance band"));
    connect(compare_, &QAction::triggered, this, [this](bool on) { setCompare(on); });
    window.addAction(compare_);

    record_ = new QAction(tr("&Record"), this);
    record_->setObjectName("actRecord");
    record_->setCheckable(true);
    record_->setShortcut(QKeySequence(Qt::Key_R));
    record_->setShortcutContext(Qt::WindowShortcut);
    record_->setToolTip(tr("Write every frame taken in to a file until Record is pressed again"));
    connect(record_, &QAction::triggered, this, [this] { toggleRecording(); });
    window.addAction(record_);

    exports_ = new ExportActions(window, settings_);

    ScopeGraph* graph = window.panel().CWGraph1;
    graph->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(graph, &QWidget::customContextMenuRequested, this, [this, graph](const QPoint& at) {
        QMenu* menu = contextMenu(graph);
        menu->setAttribute(Qt::WA_DeleteOnClose);
        menu->popup(graph->mapToGlobal(at));
    });
}

QMenu* AnalysisActions::contextMenu(QWidget* parent) const {
    auto* menu = new QMenu(parent);
    menu->setObjectName("mnuGraph");
    menu->addAction(autoset_);
    menu->addAction(measurements_);
    menu->addAction(spectrum_);
    menu->addAction(compare_);
    menu->addSeparator();
    menu->addAction(exports_->copyImageAction());
    menu->addAction(exports_->saveImageAction());
    menu->addAction(exports_->saveDataAction());
    menu->addAction(record_);
    return menu;
}

frmMeasurements& AnalysisActions::showMeasurements() {
    if (!measurementsWindow_)
        measurementsWindow_ = new frmMeasurements(window_, feed_, settings_);
    measurementsWindow_->show();
    measurementsWindow_->raise();
    measurementsWindow_->activateWindow();
    return *measurementsWindow_;
}

frmSpectrum& AnalysisActions::showSpectrum() {
    if (!spectrumWindow_)
        spectrumWindow_ = new frmSpectrum(window_, feed_, settings_);
    spectrumWindow_->show();
    spectrumWindow_->raise();
    spectrumWindow_->activateWindow();
    return *spectrumWindow_;
}

frmRecording& AnalysisActions::showRecording() {
    if (!recordingWindow_) {
        recordingWindow_ = new frmRecording(window_, feed_, settings_);
        // The menu's check mark follows the recording, however it was started or stopped.
        connect(recordingWindow_, &frmRecording::recordingChanged, record_, &QAction::setChecked);
    }
    recordingWindow_->show();
    recordingWindow_->raise();
    recordingWindow_->activateWindow();
    return *recordingWindow_;
}

frmCompare* AnalysisActions::setCompare(bool on) {
    if (on) {
        if (!compareWindow_) {
            compareWindow_ = new frmCompare(window_, feed_, settings_);
            // Closing the window ends compare mode; the menu's check mark follows.
            connect(compareWindow_, &frmCompare::compareEnded, compare_,
                    [this] { compare_->setChecked(false); });
        }
        compareWindow_->show();
        compareWindow_->raise();
        compareWindow_->activateWindow();
    } else if (compareWindow_) {
        compareWindow_->close();
    }
    compare_->setChecked(on);
    return compareWindow_;
}

void AnalysisActions::toggleRecording() {
    frmRecording& recording = showRecording();
    if (recording.recording())
        recording.stop();
    else
        recording.start();
    record_->setChecked(recording.recording());
}

bool AnalysisActions::Autoset() {
    const DisplayModel& m = window_.model();
    const FrontPanel& p = window_.panel();
    // The trace on screen: the held one while STORE holds it, the live one while frames
    // arrive, otherwise a reference loaded from a file and shown.
    const TraceArray* volts = nullptr;
    float interval = 0.0f;
    if (p.CWBStoreRef->value() || (!m.blnLiveData && m.blnRefLoaded && p.CWBRef->value())) {
        volts = &m.sngRefVolts;
        interval = m.sngRefSampleInterval;
    } else if (m.blnLiveData) {
        volts = &m.sngChaVolts;
        interval = m.acquisition.sngSampleInterval;
    }
    if (!volts)
        return false;
    const std::optional<AutosetChoice> choice = autoset(*volts, interval, p.CWBChaInv->value());
    if (!choice)
        return false;
    // Through the controls, so their handlers run as if the user had turned them.
    p.CWKTimeRange->setValue(choice->hScale);
    p.CWKChaLvl->setValue(choice->vScale);
    p.CWSCHaOffset->setValue(choice->offset);
    return true;
}

} // namespace zorvik
