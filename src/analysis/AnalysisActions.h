// The analysis features beside the front panel, reached from the graph's context menu and by
// keyboard shortcuts of their own: Autoset (A) fits the trace on screen to the graph,
// Measurements (M) opens the window of automatic measurements, Spectrum (F) that of the
// spectrum, Compare (K) compares each frame with the reference inside a tolerance band,
// Record (R) starts and stops a recording; the export of the graph's picture and of
// the traces (ExportActions) is in the same menu.
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
class frmRecording;
class frmCompare;
class ExportActions;

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
    /// The Recording window (made on first use), shown and in front.
    frmRecording& showRecording();
    /// Compare mode on (the Compare window shown, the band on the graph) or off.
    frmCompare* setCompare(bool on);
    /// Record: starts a recording (showing the Recording window) or stops the one running.
    void toggleRecording();

    QAction* autosetAction() const { return autoset_; }
    QAction* measurementsAction() const { return measurements_; }
    QAction* spectrumAction() const { return spectrum_; }
    QAction* recordAction() const { return record_; }
    QAction* compareAction() const { return compare_; }
    ExportActions& exports() const { return *exports_; }
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
    QAction* record_ = nullptr;
    QAction* compare_ = nullptr;
    ExportActions* exports_ = nullptr;
    QPointer<frmMeasurements> measurementsWindow_;
    QPointer<frmSpectrum> spectrumWindow_;
    QPointer<frmRecording> recordingWindow_;
    QPointer<frmCompare> compareWindow_;
};

} // namespace zorvik
