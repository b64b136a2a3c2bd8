// Export of what the graph shows.
#include "analysis/ExportActions.h"

#include "app/frmMain.h"
#include "storage/AtomicFile.h"
#include "support/MessageBox.h"
#include "support/ModalRunner.h"
#include "widgets/IndicatorSlide.h"
#include "widgets/LitButton.h"
#include "widgets/ScopeGraph.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QDateTime>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QSpinBox>

namespace zorvik {

namespace {

constexpr int kMinSide = 64;
constexpr int kMaxSide = 8000;

std::string single(float v) {
    std::string s;
    appendSingle(s, v);
    return s;
}

/// The "Graph Image" dialog: colours and size of the picture.
class GraphImageDialog : public QDialog {
public:
    GraphImageDialog(QWidget* parent, QSize size, PictureTheme theme) : QDialog(parent) {
        setObjectName("dlgGraphImage");
        setWindowTitle(tr("Graph Image"));
        theme_ = new QComboBox(this);
        theme_->setObjectName("cboTheme");
        theme_->setAccessibleName(tr("Colours"));
        theme_->addItem(tr("Screen colours"));
        theme_->addItem(tr("Light (for documents)"));
        theme_->setCurrentIndex(theme == PictureTheme::Light ? 1 : 0);
        width_ = new QSpinBox(this);
        width_->setObjectName("spnWidth");
        height_ = new QSpinBox(this);
        height_->setObjectName("spnHeight");
        for (QSpinBox* box : {width_, height_}) {
            box->setRange(kMinSide, kMaxSide);
            box->setSuffix(tr(" pixels"));
        }
        width_->setAccessibleName(tr("Width"));
        height_->setAccessibleName(tr("Height"));
        width_->setValue(size.width());
        height_->setValue(size.height());
        auto* buttons =
            new QDialogButtonBox(QDialogButtonBox::Save | QDialogButtonBox::Cancel, this);
        connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
        connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
        auto* form = new QFormLayout(this);
        form->addRow(tr("&Colours:"), theme_);
        form->addRow(tr("&Width:"), width_);
        form->addRow(tr("&Height:"), height_);
        form->addRow(buttons);
    }
    QSize size() const { return {width_->value(), height_->value()}; }
    PictureTheme theme() const {
        return theme_->currentIndex() == 1 ? PictureTheme::Light : PictureTheme::Screen;
    }

private:
    QComboBox* theme_ = nullptr;
    QSpinBox* width_ = nullptr;
    QSpinBox* height_ = nullptr;
};

} // namespace

ExportActions::ExportActions(frmMain& window, const AnalysisSettings& settings)
    : QObject(&window), window_(window), settings_(settings) {
    copyImage_ = new QAction(tr("&Copy Graph Image"), this);
    copyImage_->setObjectName("actCopyImage");
    copyImage_->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_C));
    connect(copyImage_, &QAction::triggered, this, &ExportActions::copyImage);
    saveImage_ = new QAction(tr("Save Graph &Image..."), this);
    saveImage_->setObjectName("actSaveImage");
    saveImage_->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_G));
    connect(saveImage_, &QAction::triggered, this, [this] { saveImage(); });
    saveData_ = new QAction(tr("Save Traces as &CSV..."), this);
    saveData_->setObjectName("actSaveData");
    saveData_->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_D));
    connect(saveData_, &QAction::triggered, this, [this] { saveData(); });
    for (QAction* a : {copyImage_, saveImage_, saveData_}) {
        a->setShortcutContext(Qt::WindowShortcut);
        window.addAction(a);
    }
}

QSize ExportActions::pictureSize() const {
    const QSize screen = window_.panel().CWGraph1->size();
    return {static_cast<int>(settings_.number("ImageWidth", kMinSide, kMaxSide, screen.width())),
            static_cast<int>(settings_.number("ImageHeight", kMinSide, kMaxSide, screen.height()))};
}

PictureTheme ExportActions::pictureTheme() const {
    return settings_.text("ImageColours").value_or("screen") == "light" ? PictureTheme::Light
                                                                        : PictureTheme::Screen;
}

void ExportActions::setPicture(QSize size, PictureTheme theme) {
    settings_.write({{"ImageWidth", std::to_string(size.width())},
                     {"ImageHeight", std::to_string(size.height())},
                     {"ImageColours", theme == PictureTheme::Light ? "light" : "screen"}});
}

void ExportActions::copyImage() {
    QApplication::clipboard()->setImage(
        graphImage(*window_.panel().CWGraph1, pictureSize(), pictureTheme()));
}

QString ExportActions::ask(const QString& title, const QString& name, const QString& filters) {
    // The folder used last, at first the home folder, as for the printer's PDF files.
    const QString folder = QString::fromStdString(
        settings_.text("ExportFolder").value_or(QDir::homePath().toStdString()));
    const QString suggested = QDir(folder).filePath(name);
    const QString path = ask_ ? ask_(&window_, title, suggested, filters)
                              : QFileDialog::getSaveFileName(&window_, title, suggested, filters);
    if (!path.isEmpty())
        settings_.write({{"ExportFolder", QFileInfo(path).absolutePath().toStdString()}});
    return path;
}

void ExportActions::failed(const QString& what, const QString& path, const QString& why) const {
    MessageBoxes::show(&window_, MsgIcon::Exclamation, tr("Zorvik"),
                       tr("The %1 could not be saved to \"%2\": %3").arg(what, path, why));
}

bool ExportActions::saveImage() {
    GraphImageDialog dialog(&window_, pictureSize(), pictureTheme());
    if (runModal(dialog) != QDialog::Accepted)
        return false;
    setPicture(dialog.size(), dialog.theme());
    QString path = ask(tr("Save Graph Image"), QStringLiteral("graph.png"),
                       tr("PNG image (*.png);;SVG drawing (*.svg)"));
    if (path.isEmpty())
        return false;
    if (QFileInfo(path).suffix().isEmpty())
        path += QStringLiteral(".png");
    QString error;
    if (!saveGraphPicture(*window_.panel().CWGraph1, dialog.size(), dialog.theme(), path, error)) {
        failed(tr("graph image"), path, error);
        return false;
    }
    return true;
}

bool ExportActions::saveData() {
    const TraceTable t = table();
    if (!t.live && !t.reference) {
        MessageBoxes::show(&window_, MsgIcon::Information, tr("Zorvik"),
                           tr("There is no trace to save: switch POWER on, or load a "
                              "reference with FILE."));
        return false;
    }
    QString path = ask(tr("Save Traces as CSV"), QStringLiteral("traces.csv"),
                       tr("CSV file (*.csv);;All files (*)"));
    if (path.isEmpty())
        return false;
    if (QFileInfo(path).suffix().isEmpty())
        path += QStringLiteral(".csv");
    QString error;
    if (!saveDataTo(path, error)) {
        failed(tr("traces"), path, error);
        return false;
    }
    return true;
}

bool ExportActions::saveDataTo(const QString& path, QString& error) const {
    if (!AtomicFile::replace(path.toStdString(), tracesCsv(table()))) {
        error = tr("the file or its folder cannot be written");
        return false;
    }
    return true;
}

TraceTable ExportActions::table() const {
    const DisplayModel& m = window_.model();
    const FrontPanel& p = window_.panel();
    TraceTable t;
    const QDateTime now = QDateTime::currentDateTime();
    t.facts.emplace_back(
        "Saved", now.toOffsetFromUtc(now.offsetFromUtc()).toString(Qt::ISODate).toStdString());
    if (m.blnLiveData) {
        t.facts.emplace_back("Sample rate", m.acquisition.strSampleRate);
        t.facts.emplace_back("Sample interval", single(m.acquisition.sngSampleInterval) + " s");
        t.facts.emplace_back("Volts per count", single(m.acquisition.sngVoltsPerCount) + " V");
        t.facts.emplace_back("Range", p.CWSRange->valueText().toStdString());
        t.facts.emplace_back("Coupling", p.CWSCoupling->valueText().toStdString());
        t.facts.emplace_back("Trigger", p.CWSTrigger->valueText().toStdString() + ", level " +
                                            single(m.acquisition.sngTrigLevel) + " V");
        t.live = TraceColumn{m.sngChaVolts, m.acquisition.sngSampleInterval};
    } else {
        t.facts.emplace_back("Live trace", "none");
    }
    const bool stored = p.CWBStoreRef->value();
    if (stored || m.blnRefLoaded) {
        t.facts.emplace_back("Reference", stored ? "stored from the live trace"
                                                 : "loaded from a Waveform Data File");
        t.facts.emplace_back("Reference sample interval", single(m.sngRefSampleInterval) + " s");
        t.reference = TraceColumn{m.sngRefVolts, m.sngRefSampleInterval};
    } else {
        t.facts.emplace_back("Reference", "none");
    }
    return t;
}

} // namespace zorvik
