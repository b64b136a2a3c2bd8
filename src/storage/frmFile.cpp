// frmFile: the File form, its menu handlers and the file dialogs behind them.
#include "storage/frmFile.h"

#include "storage/WaveformFile.h"
#include "storage/cInifile.h"
#include "support/MessageBox.h"

#include <QAction>
#include <QFile>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

namespace zorvik {

namespace {

constexpr int kFormWidth = 320;
constexpr int kFormHeight = 120;

/// A path as the file functions take it: the file system's own encoding.
std::string localPath(const QString& path) {
    return QFile::encodeName(path).toStdString();
}

} // namespace

frmFile::frmFile(std::unique_ptr<FileFormHost> host, QWidget* parent)
    : QDialog(parent), host_(std::move(host)), openChooser_(&frmFile::defaultOpenChooser),
      saveChooser_(&frmFile::defaultSaveChooser) {
    setObjectName("frmFile");
    setWindowTitle("File");
    setAccessibleName("File");
    createControls();
}

frmFile::~frmFile() = default;

void frmFile::createControls() {
    auto* layout = new QVBoxLayout(this);
    menuBar = new QMenuBar(this);
    menuBar->setObjectName("menuBar");
    // The menu bar stays in the form on every desktop (no global menu bar for a dialog).
    menuBar->setNativeMenuBar(false);
    layout->setMenuBar(menuBar);

    mnuFile = menuBar->addMenu("&File");
    mnuFile->setObjectName("mnuFile");
    auto item = [this](QMenu* menu, const char* name, const QString& caption) {
        QAction* a = menu->addAction(caption);
        a->setObjectName(name);
        return a;
    };
    mnuFileOpen = item(mnuFile, "mnuFileOpen", "&Open...");
    mnuFileOpen->setShortcut(QKeySequence::Open);
    mnuFileSave = item(mnuFile, "mnuFileSave", "&Save");
    mnuFileSave->setShortcut(QKeySequence::Save);
    mnuFileSaveAs = item(mnuFile, "mnuFileSaveAs", "Save &As...");
    mnuFileSaveAs->setShortcut(QKeySequence::SaveAs);
    mnuFile->addSeparator();
    mnuFileExit = item(mnuFile, "mnuFileExit", "E&xit");
    mnuAbout = menuBar->addAction("&About");
    mnuAbout->setObjectName("mnuAbout");

    connect(mnuFileOpen, &QAction::triggered, this, &frmFile::mnuFileOpen_Click);
    connect(mnuFileSave, &QAction::triggered, this, &frmFile::mnuFileSave_Click);
    connect(mnuFileSaveAs, &QAction::triggered, this, &frmFile::mnuFileSaveAs_Click);
    connect(mnuFileExit, &QAction::triggered, this, &frmFile::mnuFileExit_Click);
    connect(mnuAbout, &QAction::triggered, this, &frmFile::mnuAbout_Click);

    layout->addStretch(1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    OKButton = new QPushButton("OK", this);
    OKButton->setObjectName("OKButton");
    OKButton->setAccessibleName("OK");
    // Enter closes the form through OK; Escape through Cancel (the dialog's reject).
    OKButton->setDefault(true);
    CancelButton = new QPushButton("Cancel", this);
    CancelButton->setObjectName("CancelButton");
    CancelButton->setAccessibleName("Cancel");
    buttons->addWidget(OKButton);
    buttons->addWidget(CancelButton);
    layout->addLayout(buttons);
    connect(OKButton, &QPushButton::clicked, this, &frmFile::OKButton_Click);
    connect(CancelButton, &QPushButton::clicked, this, &frmFile::CancelButton_Click);

    resize(kFormWidth, kFormHeight);
}

std::optional<QString> frmFile::defaultOpenChooser(QWidget* parent, const QString& filter,
                                                   const QString& fileName) {
    const QString chosen = QFileDialog::getOpenFileName(parent, "Open", fileName, filter);
    if (chosen.isEmpty())
        return std::nullopt;
    return chosen;
}

std::optional<QString> frmFile::defaultSaveChooser(QWidget* parent, const QString& filter,
                                                   const QString& fileName) {
    QFileDialog dialog(parent, "Save As", QString(), filter);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setDefaultSuffix("wdf");
    if (!fileName.isEmpty())
        dialog.selectFile(fileName);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return std::nullopt;
    return dialog.selectedFiles().constFirst();
}

void frmFile::setOpenChooser(FileChooser chooser) {
    openChooser_ = chooser ? std::move(chooser) : FileChooser(&frmFile::defaultOpenChooser);
}

void frmFile::setSaveChooser(FileChooser chooser) {
    saveChooser_ = chooser ? std::move(chooser) : FileChooser(&frmFile::defaultSaveChooser);
}

void frmFile::Form_Load() {
    const QScreen* s = parentWidget() ? parentWidget()->screen() : screen();
    if (!s)
        return;
    const QRect g = s->geometry();
    move(g.x() + (g.width() - width()) / 2, g.y() + (g.height() - height()) / 2);
}

QWidget* frmFile::messageParent() {
    // A file named on the command line is opened while the form is not on screen.
    return isVisible() || !parentWidget() ? static_cast<QWidget*>(this) : parentWidget();
}

bool frmFile::LoadWaveformFile(const QString& path) {
    const std::string local = localPath(path);
    if (!WaveformFile::hasWaveformExtension(local))
        return false;
    // The current file is the one being read from here on.
    sCurrentFile = path;
    const WaveformLoadResult result =
        WaveformFile::LoadWaveformFile(host_->profile(), local, host_->waveform());
    if (result == WaveformLoadResult::NotForThisApplication) {
        MessageBoxes::show(messageParent(), MsgIcon::Critical,
                           WaveformFile::kNotForThisApplicationTitle,
                           WaveformFile::kNotForThisApplicationText);
    }
    return result == WaveformLoadResult::Loaded;
}

bool frmFile::SaveWaveformFile(const QString& path) {
    return WaveformFile::SaveWaveformFile(host_->profile(), localPath(path), host_->waveform());
}

bool frmFile::openFile(const QString& fileName) {
    if (LoadWaveformFile(fileName)) {
        host_->setRefLoaded(true);
        host_->FormatDispData();
        host_->ChartA();
        host_->CWBRef_ValueChanged(true);
        return true;
    }
    sCurrentFile.clear();
    MessageBoxes::show(messageParent(), MsgIcon::Exclamation, WaveformFile::kLoadErrorTitle,
                       WaveformFile::kLoadErrorText);
    return false;
}

void frmFile::mnuFileOpen_Click() {
    const std::optional<QString> chosen = openChooser_(this, kFilter, dialogFileName_);
    if (!chosen)
        return;
    dialogFileName_ = *chosen;
    openFile(*chosen);
}

void frmFile::mnuFileSave_Click() {
    if (host_->referenceShown() && !sCurrentFile.isEmpty()) {
        SaveWaveformFile(sCurrentFile);
    } else if (!host_->referenceShown()) {
        MessageBoxes::show(this, MsgIcon::Information, WaveformFile::kNoDataTitle,
                           WaveformFile::kNoDataText);
    } else {
        mnuFileSaveAs_Click();
    }
}

// Cancelling the Save dialog does not cancel the save: the dialog then still holds the name
// it was opened with, the current file, and the reference is saved there. With no current
// file that name is empty, and saving to an empty name writes nothing and says nothing.
void frmFile::mnuFileSaveAs_Click() {
    if (!host_->referenceShown()) {
        MessageBoxes::show(this, MsgIcon::Information, WaveformFile::kNoDataTitle,
                           WaveformFile::kNoDataText);
        return;
    }
    dialogFileName_ = sCurrentFile;
    if (const std::optional<QString> chosen = saveChooser_(this, kFilter, dialogFileName_))
        dialogFileName_ = *chosen;
    if (SaveWaveformFile(dialogFileName_))
        sCurrentFile = dialogFileName_;
}

void frmFile::mnuFileExit_Click() {
    close();
}

void frmFile::mnuAbout_Click() {
    host_->About(this);
}

void frmFile::OKButton_Click() {
    close();
}

void frmFile::CancelButton_Click() {
    close();
}

} // namespace zorvik
