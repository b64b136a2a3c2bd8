// frmFile: the File form that FILE opens. Its File menu opens a Waveform Data File as the
// reference trace and saves the reference (with the panel and probe settings) to one.
#pragma once

#include "storage/FileFormHost.h"

#include <QDialog>
#include <QString>
#include <functional>
#include <memory>
#include <optional>

class QAction;
class QMenu;
class QMenuBar;
class QPushButton;

namespace zorvik {

class frmFile : public QDialog {
    Q_OBJECT
public:
    /// Asks the user for a file. `fileName` is the name the dialog starts with; the result is
    /// the name chosen, or std::nullopt when the user cancelled.
    using FileChooser = std::function<std::optional<QString>(QWidget* parent, const QString& filter,
                                                             const QString& fileName)>;

    /// The one file type the dialogs offer.
    static constexpr const char* kFilter = "Waveform Data Files (*.wdf)";

    explicit frmFile(std::unique_ptr<FileFormHost> host, QWidget* parent = nullptr);
    ~frmFile() override;

    /// The desktop's Open dialog: an existing file only.
    static std::optional<QString> defaultOpenChooser(QWidget* parent, const QString& filter,
                                                     const QString& fileName);
    /// The desktop's Save dialog: asks before replacing an existing file; a name typed
    /// without an extension gets ".wdf".
    static std::optional<QString> defaultSaveChooser(QWidget* parent, const QString& filter,
                                                     const QString& fileName);
    void setOpenChooser(FileChooser chooser);
    void setSaveChooser(FileChooser chooser);

    /// The file last opened or saved; empty until then, and again after an open that failed.
    QString sCurrentFile;

    /// Centres the form on the screen.
    void Form_Load();

    /// Reads a Waveform Data File into the panel and the reference store. False when the name
    /// does not end in "wdf", when the file is not one of this program's (after saying so),
    /// or when a value in it is wrong; what was applied before that stays.
    bool LoadWaveformFile(const QString& path);
    /// Saves the reference and the settings; true when the whole file was written.
    bool SaveWaveformFile(const QString& path);

    /// Loads `fileName` and shows it as the reference; a failed load says so. What Open does
    /// with the file chosen, and what the program does with a file named on its command line.
    bool openFile(const QString& fileName);

    // Handlers of the menu and the buttons.
    void mnuFileOpen_Click();
    void mnuFileSave_Click();
    void mnuFileSaveAs_Click();
    void mnuFileExit_Click();
    void mnuAbout_Click();
    void OKButton_Click();
    void CancelButton_Click();

    // Controls.
    QMenuBar* menuBar = nullptr;
    QMenu* mnuFile = nullptr;
    QAction* mnuFileOpen = nullptr;
    QAction* mnuFileSave = nullptr;
    QAction* mnuFileSaveAs = nullptr;
    QAction* mnuFileExit = nullptr;
    QAction* mnuAbout = nullptr;
    QPushButton* OKButton = nullptr;
    QPushButton* CancelButton = nullptr;

private:
    void createControls();
    QWidget* messageParent();

    std::unique_ptr<FileFormHost> host_;
    FileChooser openChooser_;
    FileChooser saveChooser_;
    /// The name the file dialogs start with; like the dialog's own file name it keeps the
    /// last name chosen from one use to the next.
    QString dialogFileName_;
};

} // namespace zorvik
