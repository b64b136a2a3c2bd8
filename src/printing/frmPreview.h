// The "Print Preview" window: the page at a zoom, scrolled under a fixed viewport.
#pragma once

#include "printing/PrintControl.h"

#include <QDialog>

class QComboBox;
class QFrame;
class QScrollBar;
class QToolBar;

namespace zorvik {

class PreviewPictureBox;
class PrintingServices;

/// Shows the page the printer will print: the captured picture between header and footer, on
/// the current printer's paper, at 25, 50, 75 or 100 % (100 % is the paper's real size on this
/// screen). The picture box `pb` holds the drawn page and is moved under the window to scroll.
/// The zoom steps and the layout routines are public so that tests can drive them one by one.
class frmPreview : public QDialog {
    Q_OBJECT
public:
    /// Grey border around the sheet inside the picture box, in pixels.
    static constexpr int kSheetPad = 12;

    frmPreview(PrintingServices& services, QWidget* owner = nullptr);

    /// Draws the preview again after the page settings changed.
    void PreviewRefresh();

    void SetZoom(int p);
    void FitPage();
    /// Layout code: 0 no scroll bar, 1 vertical only, 2 horizontal only, 3 both.
    void SetScrollBars(int layout);
    /// Draws the page into `pb`; false (after the "Picture too large" message) when the page
    /// image could not be made.
    bool DrawPage();
    /// The form's resize handler: fits and draws the page unless the window is minimised.
    void Form_Resize();
    /// Which scroll bars the picture box needs in the current window.
    int layoutCode() const;
    /// The part of the window below the toolbar that shows `content`, less the scroll bars
    /// content of that size needs.
    QSize viewportFor(QSize content) const;

    int zoom() const { return m_zoom; }
    int keptZoomRow() const { return m_zoomRow; }
    int horizontalStep() const { return m_hStep; }
    int verticalStep() const { return m_vStep; }
    int toolbarHeight() const { return m_tbHeight; }
    PreviewPictureBox* pictureBox() const { return pb; }
    const PreviewTarget& previewTarget() const { return m_target; }

    /// The largest persistent page image `DrawPage` makes, in bytes.
    static qsizetype maxPageImageBytes();
    /// Test hook: another limit (0 restores the built-in one).
    static void setMaxPageImageBytes(qsizetype bytes);

    void done(int result) override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void Form_Load();
    void buildControls();
    void placeAgainstScreen();
    void cboZoom_Click();
    void tb_ButtonClick(const QString& key);
    void hsc_Change(int value);
    void vsc_Change(int value);
    void recordZoom100();
    QSize pageSizeAtZoom() const;

    PrintingServices& m_services;
    PrintControl* m_printControl = nullptr;
    PreviewTarget m_target;
    QToolBar* tb = nullptr;
    QFrame* fraZoom = nullptr;
    QComboBox* cboZoom = nullptr;
    PreviewPictureBox* pb = nullptr;
    QScrollBar* hsc = nullptr;
    QScrollBar* vsc = nullptr;
    int m_zoom = 0;
    int m_zoomRow = 3;
    int m_hStep = 1;
    int m_vStep = 1;
    int m_tbHeight = 0;
    int m_hscHeight = 0;
    int m_vscWidth = 0;
    bool m_resizing = false;
    bool m_recordOnly = false;
};

} // namespace zorvik
