// What every analysis window shares: it belongs to the main window (on top of it, closed with
// it), it keeps its place on the screen in the [ANALYSIS] section of the settings file under
// its own name, and it costs nothing while it is hidden.
#pragma once

#include "analysis/AnalysisSettings.h"

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

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

    frmMain& main_;

private:
    void savePlace();

    AnalysisSettings settings_;
    std::string name_;
    bool placed_ = false;
};

} // namespace zorvik
