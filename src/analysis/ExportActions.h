// Export of what the graph shows: its picture copied to the clipboard (Ctrl+C) or saved as PNG
// or SVG at a chosen size in the screen's or light colours (Ctrl+G), and the live trace and the
// reference saved as CSV (Ctrl+D). All of them are also in the graph's context menu.
#pragma once

#include "analysis/AnalysisSettings.h"
#include "analysis/GraphPicture.h"
#include "analysis/TraceText.h"

#include <QObject>
#include <QSize>
#include <functional>

class QAction;
class QDialog;
class QWidget;

namespace zorvik {

class frmMain;

/// Asks for the name of a file to write: the dialog's title, a suggested path and the filters
/// ("PNG image (*.png);;SVG drawing (*.svg)"); "" when the user cancels.
using AskSaveFile = std::function<QString(QWidget* parent, const QString& title,
                                          const QString& suggested, const QString& filters)>;

class ExportActions : public QObject {
    Q_OBJECT
public:
    ExportActions(frmMain& window, const AnalysisSettings& settings);

    QAction* copyImageAction() const { return copyImage_; }
    QAction* saveImageAction() const { return saveImage_; }
    QAction* saveDataAction() const { return saveData_; }

    /// The picture's size and colours: those chosen last, at first the graph's size on screen
    /// and its own colours.
    QSize pictureSize() const;
    PictureTheme pictureTheme() const;
    void setPicture(QSize size, PictureTheme theme);

    /// Copies the picture to the clipboard.
    void copyImage();
    /// Asks for size and colours (the "Graph Image" dialog), then for the file; true once
    /// saved.
    bool saveImage();
    /// Asks for the file, then saves the traces as CSV; true once saved.
    bool saveData();
    /// Saves the traces as CSV to `path` at once (the file appears whole or not at all).
    bool saveDataTo(const QString& path, QString& error) const;

    /// What the CSV holds now: the live trace while frames are shown, the reference while one
    /// is held (stored or loaded), and the facts of the acquisition.
    TraceTable table() const;

    /// Test hook: replaces the file dialog.
    void setAskSaveFile(AskSaveFile ask) { ask_ = std::move(ask); }

private:
    QString ask(const QString& title, const QString& name, const QString& filters);
    void failed(const QString& what, const QString& path, const QString& why) const;

    frmMain& window_;
    AnalysisSettings settings_;
    QAction* copyImage_ = nullptr;
    QAction* saveImage_ = nullptr;
    QAction* saveData_ = nullptr;
    AskSaveFile ask_;
};

} // namespace zorvik
