// The Recording window: while recording runs, every frame the probe sends (shown or not) is
// written to a new file in the folder chosen, as CSV or JSON Lines, with the frame's
// measurements if chosen, and the count is shown. R in the main window (and Record in the
// graph's menu) starts and stops it.
#pragma once

#include "analysis/AnalysisWindow.h"
#include "analysis/RecordingFile.h"
#include "analysis/TraceText.h"
#include "display/DisplayModel.h"

#include <QElapsedTimer>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace zorvik {

class AcquisitionFeed;

class frmRecording : public AnalysisWindow {
    Q_OBJECT
public:
    frmRecording(frmMain& window, AcquisitionFeed& feed, const AnalysisSettings& settings);
    ~frmRecording() override;

    /// Starts a recording into a new file in folder(); false (with why shown) when the file
    /// cannot be made.
    bool start();
    /// Stops the recording; the file holds every frame taken in until now.
    void stop();
    bool recording() const { return file_.isOpen(); }

    QString folder() const;
    void setFolder(const QString& folder);
    RecordFormat format() const;
    void setFormat(RecordFormat format);
    bool withMeasurements() const;
    void setWithMeasurements(bool with);

    /// The file of the present (or last) recording and the frames written to it.
    QString path() const { return path_; }
    long long frames() const { return frames_; }
    QString statusText() const;

signals:
    void recordingChanged(bool recording);

protected:
    void showNow() override;

private:
    void onFrameDecoded(const DecodedFrame& frame);
    void saveChoices();
    void showStatus();
    QString newFileName() const;

    QLineEdit* txtFolder_ = nullptr;
    QPushButton* cmdBrowse_ = nullptr;
    QComboBox* cboFormat_ = nullptr;
    QCheckBox* chkMeasurements_ = nullptr;
    QPushButton* cmdRecord_ = nullptr;
    QLabel* lblStatus_ = nullptr;

    RecordingFile file_;
    QString path_;
    QString error_;
    long long frames_ = 0;
    QElapsedTimer clock_;
    /// The recording's own decoding of every frame, so each is written once as it came.
    DisplayModel decoder_;
    RecordFormat recordFormat_ = RecordFormat::Csv;
    bool recordMeasurements_ = false;
};

} // namespace zorvik
