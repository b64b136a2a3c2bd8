// The analysis features beside the front panel, reached from the graph's context menu and by
// keyboard shortcuts of their own: Autoset (A) fits the trace on screen to the graph,
// Measurements (M) opens the window of automatic measurements.
#pragma once

#include <QObject>
#include <QPointer>

class QAction;
class QMenu;

namespace zorvik {

class AcquisitionFeed;
class frmMain;
class frmMeasurements;

class AnalysisActions : public QObject {
    Q_OBJECT
public:
    /// Adds the actions to `window` (their shortcuts work anywhere in it) and gives its graph a
    /// context menu that holds them.
    AnalysisActions(frmMain& window, AcquisitionFeed& feed);

    /// Autoset: turns H-SCALE, V-SCALE and the offset through their own handlers so that the
    /// trace on screen fills the graph (the live trace, or the reference while STORE holds it or
    /// while only a loaded reference is shown). False, changing nothing, when no trace is shown.
    bool Autoset();

    /// Shows the Measurements window (made on first use) and brings it to the front.
    frmMeasurements& showMeasurements();

    QAction* autosetAction() const { return autoset_; }
    QAction* measurementsAction() const { return measurements_; }
    /// The graph's context menu as it opens (owned by the caller).
    QMenu* contextMenu(QWidget* parent) const;

private:
    frmMain& window_;
    AcquisitionFeed& feed_;
    QAction* autoset_ = nullptr;
    QAction* measurements_ = nullptr;
    QPointer<frmMeasurements> measurementsWindow_;
};

} // namespace zorvik
