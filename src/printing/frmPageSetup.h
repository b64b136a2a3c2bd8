// The "Page Setup" dialog: printer, margins and their unit, scale, header and footer.
#pragma once

#include <QDialog>
#include <array>
#include <functional>

class QComboBox;
class QLabel;
class QLineEdit;
class QPrinter;
class QPushButton;
class QRadioButton;

namespace zorvik {

class PrintControl;
class PrintingServices;
class UpDown;

/// Edits the print control's page settings. It keeps nothing of its own: it reads the control
/// when it opens and writes back through `ApplySettings` and the fields' own handlers.
class frmPageSetup : public QDialog {
    Q_OBJECT
public:
    frmPageSetup(PrintingServices& services, QWidget* parent = nullptr);

    /// True when the text is "." (a number being started) or reads as a number.
    static bool IsNumericText(const QString& text);

    /// Opens the "Print Setup" dialog (printer, paper, orientation) for the print control.
    using PrinterSetupDialog = std::function<void(PrintControl& settings, QWidget* parent)>;
    /// Test hook: replaces the printer set-up dialog (an empty function restores it).
    static void setPrinterSetupDialog(PrinterSetupDialog dialog);

    /// The page-settings object, or nullptr once the dialog has closed.
    PrintControl* pageSettings() const { return m_pageSettings; }

    void done(int result) override;
    /// Escape and the window's close button act as the Cancel button.
    void reject() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void buildControls();
    void Form_Load();
    void FillMargins();
    void ApplySettings();
    void storeFocusedMargin();
    void cboPrinter_Click(int row);
    void optMargin_Click(int units);
    void udScale_Change();
    void txtMargin_Change(int i);
    void txtMargin_LostFocus(int i);
    void cmdOK_Click();
    void cmdCancel_Click();
    void cmdPreview_Click();
    void cmdPrint_Click();
    void cmdPrintSetup_Click();

    PrintingServices& m_services;
    PrintControl* m_pageSettings = nullptr;
    QComboBox* cboPrinter = nullptr;
    std::array<QLineEdit*, 4> txtMargin{};
    QRadioButton* optMarginCentimeters = nullptr;
    QRadioButton* optMarginInches = nullptr;
    QLabel* lblScale = nullptr;
    UpDown* udScale = nullptr;
    QLineEdit* txtHeader = nullptr;
    QLineEdit* txtFooter = nullptr;
    QPushButton* cmdOK = nullptr;
    QPushButton* cmdCancel = nullptr;
    QPushButton* cmdPreview = nullptr;
    QPushButton* cmdPrint = nullptr;
    QPushButton* cmdPrintSetup = nullptr;
    bool m_cancelling = false;
};

} // namespace zorvik
