// The Measurements window: the automatic measurements of the trace on screen, updated with
// every frame shown, with statistics since the last reset, and those of the reference while
// it is shown.
#pragma once

#include "analysis/AnalysisWindow.h"
#include "analysis/Measurements.h"
#include "display/DisplayModel.h"

#include <QElapsedTimer>
#include <QTimer>
#include <array>

class QLabel;
class QPushButton;
class QTableWidget;

namespace zorvik {

class AcquisitionFeed;
class frmMeasurements : public AnalysisWindow {
    Q_OBJECT
public:
    /// Columns of the table.
    enum Column { Name, Current, Minimum, Maximum, Mean, StdDev, Count, Reference, ColumnCount };

    /// A window of `window`'s that follows `feed`.
    frmMeasurements(frmMain& window, AcquisitionFeed& feed, const AnalysisSettings& settings);

    /// Forgets the statistics; the next frame starts them again.
    void reset();

    QTableWidget* table() const { return table_; }
    const MeasureStatistics& statistics(Measure m) const {
        return statistics_[static_cast<std::size_t>(m)];
    }

    bool showPending() const override;

protected:
    void showEvent(QShowEvent* event) override;
    void showNow() override;

private:
    void onFrameDecoded(const DecodedFrame& frame);
    void onAcquisitionChanged(const DisplayModel& model);
    void showCurrent(const DisplayModel& model);
    void setCell(Measure m, Column c, const QString& text);
    void showStatistics();

    AcquisitionFeed& feed_;
    QTableWidget* table_ = nullptr;
    QPushButton* cmdReset_ = nullptr;
    QLabel* lblFrames_ = nullptr;
    std::array<MeasureStatistics, kMeasureCount> statistics_{};
    std::size_t frames_ = 0;
    bool currentChanged_ = false;
    bool statisticsChanged_ = false;
    /// The statistics columns follow four times a second: the current values change with each
    /// frame, and repainting the whole table for every frame would cost more than it shows.
    QTimer statisticsTimer_;
    QElapsedTimer statisticsShown_;
    /// The window's own decoding of every frame, for the statistics: each whole frame counts
    /// once, whatever else redraws the traces.
    DisplayModel decoder_;
};

} // namespace zorvik
