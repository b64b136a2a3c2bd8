// The main window's print control: page settings, page composition, printing and preview pages.
#pragma once

#include "printing/PageComposer.h"

#include <QImage>
#include <QPointer>
#include <QPrinter>
#include <QString>
#include <QStringList>
#include <array>
#include <functional>

class QLineEdit;
class QWidget;

namespace zorvik {

class PictureHolder;

/// The page image a preview asks for: `PrintPage(&target)` draws the page into it.
struct PreviewTarget {
    QImage page;
};

/// Settings and printing of one page: the captured picture between a header and a footer, inside
/// margins, at a scale.
///
/// Starting values: no header or footer, margins of 2.00 cm on every side (the usual margin of a
/// metric page, and about the 0.8 inch most printers can reach), unit centimetres, scale 100 %,
/// mode 2 (scaled), and the system's default printer (the PDF file when none is installed).
///
/// The printer used is the program's current printer (`currentPrinter`); `PrinterName` is the
/// name the page-setup dialog shows and keeps in step with it. With no printer installed, the
/// current printer is a PDF file: printing asks where to save it.
class PrintControl {
public:
    static constexpr int kUnitInches = 5;
    static constexpr int kUnitCentimeters = 7;
    /// `PrintMode` 1: the picture is stretched (proportions kept) to fill the space inside the
    /// margins and the scale is not used.
    static constexpr int kModeFitToPage = 1;
    /// `PrintMode` 2: the picture is printed at `PrintScale` per cent of its natural size,
    /// shrunk only when it would not fit inside the margins. Any other value prints as 2.
    static constexpr int kModeScaled = 2;
    static constexpr float kDefaultMarginCentimeters = 2.0f;

    /// Said instead of printing when the margins leave no room for the picture.
    static constexpr const char* kNoRoomText =
        "The margins leave no room for the picture on this paper.  Make them smaller in Page "
        "Setup.";

    /// The printer list's row for the PDF file, shown when no printer is installed.
    static QString pdfPrinterName();

    PrintControl();
    PrintControl(const PrintControl&) = delete;
    PrintControl& operator=(const PrintControl&) = delete;

    const QString& PrinterName() const { return m_printerName; }
    void setPrinterName(const QString& name) { m_printerName = name; }
    const QString& Header() const { return m_header; }
    void setHeader(const QString& text) { m_header = text; }
    const QString& Footer() const { return m_footer; }
    void setFooter(const QString& text) { m_footer = text; }

    /// Margin `i` (1 left, 2 right, 3 top, 4 bottom) in the current unit; other indexes read 0.
    float Margin(int i) const;
    void setMargin(int i, float value);
    /// 5 inches or 7 centimetres; changing the unit converts the four margins into it.
    /// Other codes are ignored.
    int MarginUnits() const { return m_marginUnits; }
    void setMarginUnits(int units);

    float PrintScale() const { return m_printScale; }
    void setPrintScale(float percent) { m_printScale = percent; }
    int PrintMode() const { return m_printMode; }
    void setPrintMode(int mode) { m_printMode = mode; }
    /// True when the last print was cancelled (or a dialog said so).
    bool Cancel() const { return m_cancel; }
    void setCancel(bool cancel) { m_cancel = cancel; }

    /// The holder whose picture is printed; not owned.
    PictureHolder* PrintPicture() const { return m_printPicture; }
    void setPrintPicture(PictureHolder* holder) { m_printPicture = holder; }

    /// Width and height in pixels of the page image the last preview render made (the page at
    /// 100 % zoom on this screen, in device pixels); 0 before the first one.
    int PageMetric1() const { return m_pageMetric1; }
    int PageMetric2() const { return m_pageMetric2; }

    /// Puts the current footer and header texts into the two boxes.
    void LoadHeaderFooter(QLineEdit* footerBox, QLineEdit* headerBox) const;

    /// Without a target: prints the page on the current printer and returns false when printing
    /// failed; `Cancel` tells whether the user cancelled. With a target: draws the page image for
    /// the preview into it and returns false when it could not be made.
    bool PrintPage(PreviewTarget* target = nullptr);

    /// Device names of the installed printers, in the system's order.
    QStringList installedPrinters() const;
    /// The program's current printer (a name from `installedPrinters`).
    const QString& currentPrinter() const { return m_currentPrinter; }
    void setCurrentPrinter(const QString& deviceName);
    /// The current printer's device, for the printer set-up dialog.
    QPrinter& printer();

    /// Paper size of the current printer in inches, in its orientation.
    QSizeF paperInches();
    /// Parent of the save dialog.
    void setDialogParent(QWidget* parent) { m_dialogParent = parent; }

    /// Asks where to write the PDF file; an empty answer cancels the print.
    using PdfPathChooser = std::function<QString(QWidget* parent, const QString& suggested)>;
    /// Test hook: answers the save dialog (an empty function restores the dialog).
    static void setPdfPathChooser(PdfPathChooser chooser);
    /// Test hook: the installed printers (an empty function asks the system again).
    static void setPrinterLister(std::function<QStringList()> lister);

private:
    PageContent content();
    static bool pictureHasRoom(const PageContent& page);
    void applyCurrentPrinter();

    QString m_printerName;
    QString m_currentPrinter;
    QString m_header;
    QString m_footer;
    std::array<float, 4> m_margins{};
    int m_marginUnits = kUnitCentimeters;
    float m_printScale = 100.0f;
    int m_printMode = kModeScaled;
    bool m_cancel = false;
    PictureHolder* m_printPicture = nullptr;
    int m_pageMetric1 = 0;
    int m_pageMetric2 = 0;
    QString m_lastPdfPath;
    QPointer<QWidget> m_dialogParent;
    QPrinter m_printer{QPrinter::HighResolution};
};

} // namespace zorvik
