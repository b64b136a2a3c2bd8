// The Spectrum window: the magnitude spectrum of the trace on screen and, while it is shown, of
// the reference, with a choice of window function, unit, zero padding and averaging, and a
// marker on the strongest tone.
#pragma once

#include "analysis/AnalysisWindow.h"
#include "analysis/Spectrum.h"
#include "display/DisplayModel.h"

class QCheckBox;
class QComboBox;
class QCPGraph;
class QCPItemTracer;
class QCustomPlot;
class QLabel;
class QSpinBox;

namespace zorvik {

class AcquisitionFeed;

class frmSpectrum : public AnalysisWindow {
    Q_OBJECT
public:
    frmSpectrum(frmMain& window, AcquisitionFeed& feed, const AnalysisSettings& settings);

    SpectrumWindow window() const;
    SpectrumUnit unit() const;
    std::size_t padding() const;
    std::size_t averaging() const;
    void setWindow(SpectrumWindow w);
    void setUnit(SpectrumUnit u);
    void setPadding(std::size_t padding);
    void setAveraging(std::size_t frames);

    /// The live spectrum as it is shown (averaged), and the reference's; empty when there is
    /// none.
    const SpectrumResult& live() const { return live_; }
    const SpectrumResult& reference() const { return reference_; }
    /// How many frames the live spectrum's average holds.
    std::size_t averaged() const { return average_.count(); }

    QCustomPlot* plot() const { return plot_; }
    /// "Peak: 1.250 kHz, -3.01 dBV" (the live trace's), "Peak: —" without one.
    QString peakText() const;

protected:
    void showEvent(QShowEvent* event) override;
    void showNow() override;

private:
    void onFrameDecoded(const DecodedFrame& frame);
    void onAcquisitionChanged(const DisplayModel& model);
    void onChoiceChanged();
    void addLive(const TraceArray& volts, float sampleInterval);
    void updateReference(const DisplayModel& model);
    void draw();

    AcquisitionFeed& feed_;
    QComboBox* cboWindow_ = nullptr;
    QComboBox* cboUnit_ = nullptr;
    QComboBox* cboPadding_ = nullptr;
    QSpinBox* spnAverage_ = nullptr;
    QLabel* lblPeak_ = nullptr;
    QLabel* lblReferencePeak_ = nullptr;
    QCustomPlot* plot_ = nullptr;
    QCPGraph* liveGraph_ = nullptr;
    QCPGraph* referenceGraph_ = nullptr;
    QCPItemTracer* marker_ = nullptr;

    SpectrumAnalyzer analyzer_;
    SpectrumAverage average_;
    SpectrumResult live_;
    SpectrumResult reference_;
    /// The latest live trace, kept so a new choice of window or padding shows at once.
    TraceArray lastVolts_{};
    float lastInterval_ = 0.0f;
    bool haveLive_ = false;
    DisplayModel decoder_;
    bool referenceChanged_ = false;
    /// The reference whose spectrum is shown.
    bool referenceShown_ = false;
    TraceArray referenceVolts_{};
    float referenceInterval_ = 0.0f;
};

} // namespace zorvik
