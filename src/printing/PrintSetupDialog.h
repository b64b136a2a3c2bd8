// The "Print Setup" dialog: which printer, which paper (size and source) and which way round.
#pragma once

#include <QDialog>
#include <QPageLayout>
#include <QPageSize>
#include <QPrinter>

class QComboBox;
class QLabel;
class QRadioButton;

namespace zorvik {

class PrintControl;

/// Chooses the printer, the paper size and source, and the orientation of the print control's
/// printer. Margins belong to Page Setup, which owns them, so this dialog has none. OK applies
/// the choice to the print control; Cancel leaves everything as it was.
class PrintSetupDialog : public QDialog {
    Q_OBJECT
public:
    explicit PrintSetupDialog(PrintControl& settings, QWidget* parent = nullptr);

    /// The choices shown, for the OK button and for tests.
    QString printerName() const;
    QPageSize pageSize() const;
    QPrinter::PaperSource paperSource() const;
    QPageLayout::Orientation orientation() const;

    void accept() override;

    QComboBox* cboName = nullptr;
    QLabel* lblWhere = nullptr;
    QComboBox* cboSize = nullptr;
    QComboBox* cboSource = nullptr;
    QRadioButton* optPortrait = nullptr;
    QRadioButton* optLandscape = nullptr;

private:
    void fillPapers(const QString& printer);

    PrintControl& m_settings;
};

} // namespace zorvik
