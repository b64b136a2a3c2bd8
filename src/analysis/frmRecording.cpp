// The Recording window.
#include "analysis/frmRecording.h"

#include "app/frmMain.h"
#include "display/AcquisitionFeed.h"
#include "support/MessageBox.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateTime>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace zorvik {

frmRecording::frmRecording(frmMain& window, AcquisitionFeed& feed, const AnalysisSettings& settings)
    : AnalysisWindow(window, settings, "Recording") {
    setWindowTitle(tr("Recording"));
    // The count goes up four times a second: as fast as it can be read.
    setShowInterval(250);
    txtFolder_ = new QLineEdit(this);
    txtFolder_->setObjectName("txtFolder");
    txtFolder_->setAccessibleName(tr("Folder"));
    cmdBrowse_ = new QPushButton(tr("&Browse..."), this);
    cmdBrowse_->setObjectName("cmdBrowse");
    cboFormat_ = new QComboBox(this);
    cboFormat_->setObjectName("cboFormat");
    cboFormat_->setAccessibleName(tr("Format"));
    cboFormat_->addItem(tr("CSV"));
    cboFormat_->addItem(tr("JSON Lines"));
    chkMeasurements_ = new QCheckBox(tr("Include the &measurements of each frame"), this);
    chkMeasurements_->setObjectName("chkMeasurements");
    cmdRecord_ = new QPushButton(tr("&Start recording"), this);
    cmdRecord_->setObjectName("cmdRecord");
    lblStatus_ = new QLabel(this);
    lblStatus_->setObjectName("lblStatus");
    lblStatus_->setWordWrap(true);
    lblStatus_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    // Of a fixed size (three lines), so the count going up does not lay the window out again.
    lblStatus_->setFixedSize(440, 3 * lblStatus_->fontMetrics().lineSpacing() + 4);
    lblStatus_->setAlignment(Qt::AlignLeft | Qt::AlignTop);

    auto* folderRow = new QHBoxLayout;
    folderRow->addWidget(txtFolder_, 1);
    folderRow->addWidget(cmdBrowse_);
    auto* form = new QFormLayout;
    auto* folderLabel = new QLabel(tr("&Folder:"), this);
    folderLabel->setBuddy(txtFolder_);
    form->addRow(folderLabel, folderRow);
    auto* formatLabel = new QLabel(tr("F&ormat:"), this);
    formatLabel->setBuddy(cboFormat_);
    form->addRow(formatLabel, cboFormat_);
    form->addRow(QString(), chkMeasurements_);
    auto* bottom = new QHBoxLayout;
    bottom->addWidget(lblStatus_, 1);
    bottom->addWidget(cmdRecord_, 0, Qt::AlignTop);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addLayout(bottom);

    // What was chosen last; at first the home folder, CSV, without measurements.
    setFolder(QString::fromStdString(
        this->settings().text(key("Folder")).value_or(QDir::homePath().toStdString())));
    setFormat(this->settings().text(key("Format")).value_or("csv") == "jsonl" ? RecordFormat::Jsonl
                                                                              : RecordFormat::Csv);
    setWithMeasurements(this->settings().number(key("Measurements"), 0, 1, 0) == 1);
    connect(txtFolder_, &QLineEdit::editingFinished, this, &frmRecording::saveChoices);
    connect(cboFormat_, &QComboBox::currentIndexChanged, this, &frmRecording::saveChoices);
    connect(chkMeasurements_, &QCheckBox::toggled, this, &frmRecording::saveChoices);
    connect(cmdBrowse_, &QPushButton::clicked, this, [this] {
        const QString chosen =
            QFileDialog::getExistingDirectory(this, tr("Folder for Recordings"), folder());
        if (!chosen.isEmpty()) {
            setFolder(chosen);
            saveChoices();
        }
    });
    connect(cmdRecord_, &QPushButton::clicked, this, [this] {
        if (recording())
            stop();
        else
            start();
    });

    connect(&feed, &AcquisitionFeed::frameDecoded, this, &frmRecording::onFrameDecoded);
    showStatus();
}

frmRecording::~frmRecording() {
    file_.close();
}

QString frmRecording::folder() const {
    return txtFolder_->text();
}
void frmRecording::setFolder(const QString& folder) {
    txtFolder_->setText(folder);
}
RecordFormat frmRecording::format() const {
    return cboFormat_->currentIndex() == 1 ? RecordFormat::Jsonl : RecordFormat::Csv;
}
void frmRecording::setFormat(RecordFormat format) {
    cboFormat_->setCurrentIndex(format == RecordFormat::Jsonl ? 1 : 0);
}
bool frmRecording::withMeasurements() const {
    return chkMeasurements_->isChecked();
}
void frmRecording::setWithMeasurements(bool with) {
    chkMeasurements_->setChecked(with);
}

void frmRecording::saveChoices() {
    settings().write({{key("Folder"), folder().toStdString()},
                      {key("Format"), format() == RecordFormat::Jsonl ? "jsonl" : "csv"},
                      {key("Measurements"), withMeasurements() ? "1" : "0"}});
}

QString frmRecording::newFileName() const {
    // A new file each time, named after the moment it starts, so a recording never replaces
    // another one.
    const QString stamp = QDateTime::currentDateTime().toString("yyyyMMdd-HHmmss");
    const QString extension = format() == RecordFormat::Jsonl ? "jsonl" : "csv";
    const QDir dir(folder());
    QString name = QStringLiteral("zorvik-recording-%1.%2").arg(stamp, extension);
    for (int n = 2; QFileInfo::exists(dir.filePath(name)); ++n)
        name = QStringLiteral("zorvik-recording-%1-%2.%3").arg(stamp).arg(n).arg(extension);
    return dir.filePath(name);
}

bool frmRecording::start() {
    if (recording())
        return true;
    error_.clear();
    const QString dirText = folder().trimmed();
    if (dirText.isEmpty() || !QFileInfo(dirText).isDir()) {
        error_ = tr("The folder \"%1\" does not exist.").arg(dirText);
        showStatus();
        return false;
    }
    saveChoices();
    path_ = newFileName();
    recordFormat_ = format();
    recordMeasurements_ = withMeasurements();
    if (!file_.create(path_.toStdString()) ||
        !file_.write(recordingHeader(recordFormat_, recordMeasurements_))) {
        error_ =
            tr("\"%1\" could not be made: %2").arg(path_, QString::fromStdString(file_.error()));
        file_.close();
        showStatus();
        return false;
    }
    frames_ = 0;
    decoder_ = main_.model();
    clock_.start();
    for (QWidget* w :
         std::initializer_list<QWidget*>{txtFolder_, cmdBrowse_, cboFormat_, chkMeasurements_})
        w->setEnabled(false);
    cmdRecord_->setText(tr("&Stop recording"));
    showStatus();
    emit recordingChanged(true);
    return true;
}

void frmRecording::stop() {
    if (!recording())
        return;
    file_.close();
    for (QWidget* w :
         std::initializer_list<QWidget*>{txtFolder_, cmdBrowse_, cboFormat_, chkMeasurements_})
        w->setEnabled(true);
    cmdRecord_->setText(tr("&Start recording"));
    showStatus();
    emit recordingChanged(false);
}

void frmRecording::onFrameDecoded(const DecodedFrame& frame) {
    // Every frame taken in, whether the window is open or not; the present record shown again
    // is no new frame.
    if (!recording() || frame.kind != ReceiveEvent::Frame)
        return;
    decoder_.take(frame);
    decoder_.decode();
    RecordedFrame f;
    f.index = frames_;
    f.seconds = static_cast<double>(clock_.nsecsElapsed()) * 1e-9;
    f.sampleInterval = decoder_.acquisition.sngSampleInterval;
    f.voltsPerCount = decoder_.acquisition.sngVoltsPerCount;
    f.volts = decoder_.sngChaVolts;
    if (recordMeasurements_)
        f.measurements = measure(f.volts, f.sampleInterval);
    if (!file_.write(recordingLine(recordFormat_, f))) {
        error_ = tr("Recording stopped: \"%1\" could not be written: %2")
                     .arg(path_, QString::fromStdString(file_.error()));
        stop();
        return;
    }
    ++frames_;
    scheduleShow();
}

void frmRecording::showNow() {
    showStatus();
}

QString frmRecording::statusText() const {
    if (!error_.isEmpty())
        return error_;
    const QString count = frames_ == 1 ? tr("1 frame") : tr("%1 frames").arg(frames_);
    if (recording())
        return tr("Recording: %1 to \"%2\"").arg(count, path_);
    if (!path_.isEmpty())
        return tr("Stopped: %1 in \"%2\"").arg(count, path_);
    return tr("Not recording. Press Start recording (or R in the main window).");
}

void frmRecording::showStatus() {
    const QString text = statusText();
    if (lblStatus_->text() != text)
        lblStatus_->setText(text);
}

} // namespace zorvik
