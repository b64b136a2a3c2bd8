// The Measurements window.
#include "analysis/frmMeasurements.h"

#include "app/frmMain.h"
#include "display/AcquisitionFeed.h"
#include "widgets/LitButton.h"

#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

namespace zorvik {

namespace {
const char* const kHeadings[frmMeasurements::ColumnCount] = {
    "Measurement", "Current", "Minimum", "Maximum", "Mean", "Std dev", "Count", "Reference"};

QString text(std::optional<double> value, Measure m) {
    return QString::fromStdString(formatMeasure(value, measureUnit(m)));
}
} // namespace

frmMeasurements::frmMeasurements(frmMain& window, AcquisitionFeed& feed,
                                 const AnalysisSettings& settings)
    : AnalysisWindow(window, settings, "Measurements"), feed_(feed) {
    statisticsTimer_.setSingleShot(true);
    connect(&statisticsTimer_, &QTimer::timeout, this, &frmMeasurements::showNow);
    // Every frame the line brings (about 14 a second) is shown; frames that come faster are
    // all counted in the statistics and shown at most 20 times a second, more than the eye
    // reads.
    setShowInterval(50);
    setWindowTitle(tr("Measurements"));
    table_ = new QTableWidget(static_cast<int>(kMeasureCount), ColumnCount, this);
    table_->setObjectName("tblMeasurements");
    table_->setAccessibleName(tr("Measurements"));
    table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table_->verticalHeader()->hide();
    for (int c = 0; c < ColumnCount; ++c)
        table_->setHorizontalHeaderItem(c, new QTableWidgetItem(tr(kHeadings[c])));
    for (std::size_t i = 0; i < kMeasureCount; ++i) {
        const auto m = static_cast<Measure>(i);
        table_->setItem(static_cast<int>(i), Name, new QTableWidgetItem(tr(measureName(m))));
        for (int c = Current; c < ColumnCount; ++c) {
            auto* item = new QTableWidgetItem(QStringLiteral("\u2014"));
            item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
            table_->setItem(static_cast<int>(i), c, item);
        }
    }
    // The names take what they need, the values share the rest evenly, so the columns keep
    // still while the values change; every row is in sight without scrolling.
    table_->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    table_->horizontalHeader()->setSectionResizeMode(Name, QHeaderView::ResizeToContents);
    table_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    table_->resizeRowsToContents();
    table_->setMinimumHeight(table_->horizontalHeader()->sizeHint().height() +
                             table_->verticalHeader()->length() + 2 * table_->frameWidth());
    const int valueWidth =
        table_->fontMetrics().horizontalAdvance(QStringLiteral("-999.9 mV")) + 16;
    table_->setMinimumWidth(table_->horizontalHeader()->sectionSize(Name) +
                            (ColumnCount - 1) * valueWidth + 2 * table_->frameWidth());
    lblFrames_ = new QLabel(tr("Frames measured: 0"), this);
    lblFrames_->setObjectName("lblFrames");
    // Of a fixed size: the count going up does not make the window lay itself out again.
    lblFrames_->setFixedSize(
        lblFrames_->fontMetrics().horizontalAdvance(tr("Frames measured: 9999999999")) + 8,
        lblFrames_->sizeHint().height());
    cmdReset_ = new QPushButton(tr("&Reset statistics"), this);
    cmdReset_->setObjectName("cmdReset");
    connect(cmdReset_, &QPushButton::clicked, this, &frmMeasurements::reset);

    auto* bottom = new QHBoxLayout;
    bottom->addWidget(lblFrames_);
    bottom->addStretch(1);
    bottom->addWidget(cmdReset_);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(table_, 1);
    layout->addLayout(bottom);
    resize(sizeHint());

    connect(&feed, &AcquisitionFeed::frameDecoded, this, &frmMeasurements::onFrameDecoded);
    connect(&feed, &AcquisitionFeed::acquisitionChanged, this,
            &frmMeasurements::onAcquisitionChanged);
    // REF shows or hides the reference without drawing the traces anew.
    connect(window.panel().CWBRef, &LitButton::valueChanged, this, [this] {
        if (isVisible())
            showCurrent(main_.model());
    });
}

void frmMeasurements::reset() {
    statistics_ = {};
    frames_ = 0;
    lblFrames_->setText(tr("Frames measured: 0"));
    for (std::size_t i = 0; i < kMeasureCount; ++i) {
        for (int c = Minimum; c <= Count; ++c)
            setCell(static_cast<Measure>(i), static_cast<Column>(c), QStringLiteral("\u2014"));
    }
}

void frmMeasurements::onFrameDecoded(const DecodedFrame& frame) {
    // A closed window costs nothing: the frames it did not see are not counted.
    if (!isVisible())
        return;
    if (frame.kind != ReceiveEvent::Frame) {
        // The present record shown again is no new frame; what it redrew is shown.
        if (currentChanged_)
            scheduleShow();
        return;
    }
    decoder_.take(frame);
    decoder_.decode();
    const MeasureValues values =
        measure(decoder_.sngChaVolts, decoder_.acquisition.sngSampleInterval);
    ++frames_;
    for (std::size_t i = 0; i < kMeasureCount; ++i)
        statistics_[i].add(values[i]);
    statisticsChanged_ = true;
    scheduleShow();
}

void frmMeasurements::showNow() {
    if (currentChanged_)
        showCurrent(main_.model());
    if (!statisticsChanged_ || statisticsTimer_.isActive())
        return;
    constexpr qint64 kStatisticsInterval = 250;
    const qint64 since =
        statisticsShown_.isValid() ? statisticsShown_.elapsed() : kStatisticsInterval;
    if (since < kStatisticsInterval) {
        statisticsTimer_.start(static_cast<int>(kStatisticsInterval - since));
        return;
    }
    statisticsShown_.start();
    statisticsChanged_ = false;
    lblFrames_->setText(tr("Frames measured: %1").arg(frames_));
    showStatistics();
}

bool frmMeasurements::showPending() const {
    return AnalysisWindow::showPending() || statisticsTimer_.isActive();
}

void frmMeasurements::showStatistics() {
    for (std::size_t i = 0; i < kMeasureCount; ++i) {
        const auto m = static_cast<Measure>(i);
        const MeasureStatistics& s = statistics_[i];
        if (s.count == 0)
            continue;
        setCell(m, Minimum, text(s.minimum, m));
        setCell(m, Maximum, text(s.maximum, m));
        setCell(m, Mean, text(s.mean, m));
        setCell(m, StdDev, text(s.standardDeviation, m));
        setCell(m, Count, QString::number(s.count));
    }
}

void frmMeasurements::onAcquisitionChanged(const DisplayModel&) {
    if (!isVisible())
        return;
    currentChanged_ = true;
    // A frame on its way to the display is shown with its statistics, when it reaches this
    // window; anything else (a knob, a file, STORE) at once.
    if (!feed_.showingFrame())
        scheduleShow();
}

void frmMeasurements::showCurrent(const DisplayModel& model) {
    currentChanged_ = false;
    const FrontPanel& panel = main_.panel();

    MeasureValues live{};
    if (model.blnLiveData)
        live = measure(model.sngChaVolts, model.acquisition.sngSampleInterval);
    MeasureValues reference{};
    const bool referenceShown =
        panel.CWBRef->value() && (model.blnRefLoaded || panel.CWBStoreRef->value());
    if (referenceShown)
        reference = measure(model.sngRefVolts, model.sngRefSampleInterval);

    for (std::size_t i = 0; i < kMeasureCount; ++i) {
        const auto m = static_cast<Measure>(i);
        setCell(m, Current, text(live[i], m));
        setCell(m, Reference, text(reference[i], m));
    }
}

void frmMeasurements::showEvent(QShowEvent* event) {
    AnalysisWindow::showEvent(event);
    // What is on screen now; the window's own decoding starts from the acquisition's scale.
    decoder_ = main_.model();
    showCurrent(main_.model());
}

void frmMeasurements::setCell(Measure m, Column c, const QString& value) {
    QTableWidgetItem* item = table_->item(static_cast<int>(m), c);
    if (item->text() != value)
        item->setText(value);
}

} // namespace zorvik
