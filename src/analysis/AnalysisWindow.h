// What every analysis window shares: it belongs to the main window (on top of it, closed with
// it), it keeps its place on the screen in the [ANALYSIS] section of the settings file under
// its own name, and it costs nothing while it is hidden.
#pragma once

#include "analysis/AnalysisSettings.h"

#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>

namespace zorvik {

class frmMain;

class AnalysisWindow : public QWidget {
    Q_OBJECT
public:
    /// `name` is the window's object name and the start of its keys in the settings file
    /// ("Spectrum" keeps "SpectrumPlace").
    AnalysisWindow(frmMain& window, const AnalysisSettings& settings, const char* name);

    AnalysisSettings& settings() { return settings_; }
    const AnalysisSettings& settings() const { return settings_; }
    /// The key `name` of this window ("Spectrum" + "Window" = "SpectrumWindow").
    std::string key(const char* name) const;

    /// True while a showing asked for by scheduleShow() is still to come.
    virtual bool showPending() const { return showTimer_.isActive(); }

    /// How often at most a window shows what changed: about a screen's frame.
    static constexpr int kShowInterval = 30;

protected:
    /// Asks for showNow(): at once when the window last showed at least its interval ago,
    /// otherwise when that time is up. Frames that arrive faster than a screen shows them are
    /// all taken in by the window's arithmetic, and shown once.
    void scheduleShow();
    /// The interval of scheduleShow() (kShowInterval unless set).
    void setShowInterval(int ms) { showInterval_ = ms; }
    /// Puts what changed on screen (labels, tables, curves).
    virtual void showNow() {}

    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

    frmMain& main_;

private:
    void savePlace();

    AnalysisSettings settings_;
    std::string name_;
    bool placed_ = false;
    QTimer showTimer_;
    QElapsedTimer lastShown_;
    int showInterval_ = kShowInterval;
};

} // namespace zorvik
