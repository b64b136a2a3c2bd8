// Compare mode: every frame shown is compared with the reference inside a tolerance band the
// user sets; the graph shows the band about the reference and marks the live samples outside
// it, the window counts passed and failed frames, gives the largest deviation and the RMS
// difference, and can hold the display on the first failing frame.
#pragma once

#include "analysis/AnalysisWindow.h"
#include "analysis/Compare.h"

#include <QPointer>
#include <optional>

class QCheckBox;
class QCPGraph;
class QDoubleSpinBox;
class QLabel;
class QPushButton;

namespace zorvik {

class AcquisitionFeed;
class ScopeGraph;
struct DecodedFrame;
struct DisplayModel;

class frmCompare : public AnalysisWindow {
    Q_OBJECT
public:
    frmCompare(frmMain& window, AcquisitionFeed& feed, const AnalysisSettings& settings);
    ~frmCompare() override;

    ToleranceBand band() const;
    void setBand(const ToleranceBand& band);
    bool holdOnFailure() const;
    void setHoldOnFailure(bool hold);

    const CompareCounts& counts() const { return counts_; }
    /// The comparison of the last frame shown (none without a reference).
    const std::optional<CompareResult>& last() const { return last_; }
    /// True while the display is held on a failing frame.
    bool holding() const;

    /// Starts the counts again.
    void reset();
    /// Lets frames reach the display again after a hold.
    void resume();

    /// The band and the marks drawn on the main graph (for tests): the band's upper and lower
    /// edges and the marked samples.
    QCPGraph* bandUpper() const { return upper_; }
    QCPGraph* bandLower() const { return lower_; }
    QCPGraph* marks() const { return marks_; }

signals:
    void compareEnded();

protected:
    void showEvent(QShowEvent* event) override;
    void showNow() override;
    void hideEvent(QHideEvent* event) override;

private:
    void onFrameShown(const DecodedFrame& frame);
    void onAcquisitionChanged(const DisplayModel& model);
    std::optional<CompareResult> compareNow() const;
    void compareAgain();
    void saveChoices();
    void showResult();
    void drawOnGraph();
    void removeFromGraph();

    AcquisitionFeed& feed_;
    // (a pointer that clears: the graph may go before this window when the program ends)
    QPointer<ScopeGraph> graph_;
    QDoubleSpinBox* spnVolts_ = nullptr;
    QDoubleSpinBox* spnPercent_ = nullptr;
    QCheckBox* chkHold_ = nullptr;
    QLabel* lblResult_ = nullptr;
    QLabel* lblCounts_ = nullptr;
    QLabel* lblLargest_ = nullptr;
    QLabel* lblRms_ = nullptr;
    QLabel* lblState_ = nullptr;
    QPushButton* cmdReset_ = nullptr;
    QPushButton* cmdResume_ = nullptr;
    QCPGraph* upper_ = nullptr;
    QCPGraph* lower_ = nullptr;
    QCPGraph* marks_ = nullptr;

    CompareCounts counts_;
    std::optional<CompareResult> last_;
    bool heldHere_ = false;
    /// The traces on screen changed since the last comparison shown.
    bool changed_ = false;
};

} // namespace zorvik
