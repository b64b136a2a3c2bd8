// The analysis features beside the front panel, reached from the graph's context menu and by
// keyboard shortcuts of their own: Autoset (A) fits the trace on screen to the graph.
#pragma once

#include <QObject>

class QAction;
class QMenu;

namespace zorvik {

class frmMain;

class AnalysisActions : public QObject {
    Q_OBJECT
public:
    /// Adds the actions to `window` (their shortcuts work anywhere in it) and gives its graph a
    /// context menu that holds them.
    explicit AnalysisActions(frmMain& window);

    /// Autoset: turns H-SCALE, V-SCALE and the offset through their own handlers so that the
    /// trace on screen fills the graph (the live trace, or the reference while STORE holds it or
    /// while only a loaded reference is shown). False, changing nothing, when no trace is shown.
    bool Autoset();

    QAction* autosetAction() const { return autoset_; }
    /// The graph's context menu as it opens (owned by the caller).
    QMenu* contextMenu(QWidget* parent) const;

private:
    frmMain& window_;
    QAction* autoset_ = nullptr;
};

} // namespace zorvik
