// The analysis features beside the front panel, reached from the graph's context menu and by
// keyboard shortcuts of their own: Autoset (A) fits the trace on screen to the graph,
// Measurements (M) opens the window of automatic measurements, Spectrum (F) that of the
// spectrum.
#pragma once

#include "analysis/AnalysisSettings.h"

#include <QObject>
#include <QPointer>

class QAction;
class QMenu;

namespace zorvik {

class AcquisitionFeed;
class frmMain;
class frmMeasurements;
class frmSpectrum;

class AnalysisActions : public QObject {
    Q_OBJECT
public:
    /// Adds the actions to `window` (their shortcuts work anywhere in it) and gives its graph a
    /// context menu that holds them. The windows keep their places and choices in `settings`.
    AnalysisActions(frmMain& window, AcquisitionFeed& feed,
                    AnalysisSettings settings = AnalysisSettings());

    /// Autoset: turns H-SCALE, V-SCALE and the offset through their own handlers so that the
    /// trace on screen fills the graph (the live trace, or the reference while STORE holds it or
    /// while only a loaded reference is shown). False, changing nothing, when no trace is shown.
    bool Autoset();

    /// Shows the Measurements window (made on first use) and brings it to the front.
    frmMeasurements& showMeasurements();
    /// Shows the Spectrum window (made on first use) and brings it to the front.
    frmSpectrum& showSpectrum();

    QAction* autosetAction() const { return autoset_; }
    QAction* measurementsAction() const { return measurements_; }
    QAction* spectrumAction() const { return spectrum_; }
    AnalysisSettings& settings() { return settings_; }
    /// The graph's context menu as it opens (owned by the caller).
    QMenu* contextMenu(QWidget* parent) const;

private:
    frmMain& window_;
    AcquisitionFeed& feed_;
    AnalysisSettings settings_;
    QAction* autoset_ = nullptr;
    QAction* measurements_ = nullptr;
    QAction* spectrum_ = nullptr;
    QPointer<frmMeasurements> measurementsWindow_;
    QPointer<frmSpectrum> spectrumWindow_;
};

} // namespace zorvik
