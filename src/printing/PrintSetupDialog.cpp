#include "printing/PrintSetupDialog.h"

#include "printing/PrintControl.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPrinterInfo>
#include <QRadioButton>
#include <QVBoxLayout>

namespace zorvik {

namespace {

// Paper a PDF file can take, and what a printer that does not list its own is offered.
const QList<QPageSize::PageSizeId> kCommonSizes = {
    QPageSize::A3,     QPageSize::A4,    QPageSize::A5,        QPageSize::B5,
    QPageSize::Letter, QPageSize::Legal, QPageSize::Executive, QPageSize::Tabloid,
};

} // namespace

PrintSetupDialog::PrintSetupDialog(PrintControl& settings, QWidget* parent)
    : QDialog(parent), m_settings(settings) {
    setObjectName(QStringLiteral("PrintSetupDialog"));
    setWindowTitle(QStringLiteral("Print Setup"));
    setModal(true);

    auto* printerBox = new QGroupBox(QStringLiteral("Printer"), this);
    cboName = new QComboBox(printerBox);
    cboName->setObjectName(QStringLiteral("cboName"));
    cboName->setMinimumContentsLength(24);
    lblWhere = new QLabel(printerBox);
    lblWhere->setObjectName(QStringLiteral("lblWhere"));
    auto* printerForm = new QFormLayout(printerBox);
    printerForm->addRow(QStringLiteral("&Name:"), cboName);
    printerForm->addRow(QStringLiteral("Where:"), lblWhere);

    auto* paperBox = new QGroupBox(QStringLiteral("Paper"), this);
    cboSize = new QComboBox(paperBox);
    cboSize->setObjectName(QStringLiteral("cboSize"));
    cboSource = new QComboBox(paperBox);
    cboSource->setObjectName(QStringLiteral("cboSource"));
    auto* paperForm = new QFormLayout(paperBox);
    paperForm->addRow(QStringLiteral("Si&ze:"), cboSize);
    paperForm->addRow(QStringLiteral("&Source:"), cboSource);

    auto* orientationBox = new QGroupBox(QStringLiteral("Orientation"), this);
    optPortrait = new QRadioButton(QStringLiteral("P&ortrait"), orientationBox);
    optPortrait->setObjectName(QStringLiteral("optPortrait"));
    optLandscape = new QRadioButton(QStringLiteral("&Landscape"), orientationBox);
    optLandscape->setObjectName(QStringLiteral("optLandscape"));
    auto* orientationLayout = new QVBoxLayout(orientationBox);
    orientationLayout->addWidget(optPortrait);
    orientationLayout->addWidget(optLandscape);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &PrintSetupDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &PrintSetupDialog::reject);

    auto* lower = new QHBoxLayout;
    lower->addWidget(paperBox, 1);
    lower->addWidget(orientationBox);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(printerBox);
    layout->addLayout(lower);
    layout->addWidget(buttons);

    // What the print control uses now.
    QPrinter& printer = m_settings.printer();
    const QStringList printers = m_settings.installedPrinters();
    cboName->addItems(printers);
    const QString current = m_settings.currentPrinter().isEmpty() ? m_settings.PrinterName()
                                                                  : m_settings.currentPrinter();
    cboName->setCurrentIndex(std::max<qsizetype>(0, printers.indexOf(current)));
    fillPapers(cboName->currentText());
    const QPageSize size = printer.pageLayout().pageSize();
    int sizeRow = cboSize->findData(size.id());
    if (sizeRow < 0) {
        cboSize->addItem(size.name(), size.id());
        sizeRow = cboSize->count() - 1;
    }
    cboSize->setCurrentIndex(sizeRow);
    cboSource->setCurrentIndex(std::max(0, cboSource->findData(printer.paperSource())));
    (printer.pageLayout().orientation() == QPageLayout::Landscape ? optLandscape : optPortrait)
        ->setChecked(true);

    connect(cboName, &QComboBox::currentTextChanged, this, [this](const QString& name) {
        const QPageSize::PageSizeId kept = pageSize().id();
        fillPapers(name);
        const int row = cboSize->findData(kept);
        cboSize->setCurrentIndex(row >= 0 ? row : 0);
    });
}

// The paper sizes and sources of `printer`; the PDF file takes any common size.
void PrintSetupDialog::fillPapers(const QString& printer) {
    const QPrinterInfo info = QPrinterInfo::printerInfo(printer);
    QList<QPageSize> sizes;
    if (!info.isNull())
        sizes = info.supportedPageSizes();
    if (sizes.isEmpty()) {
        for (QPageSize::PageSizeId id : kCommonSizes)
            sizes << QPageSize(id);
    }
    cboSize->clear();
    for (const QPageSize& size : sizes)
        cboSize->addItem(size.name(), size.id());

    // The tray is the printer's own choice: the system's print service does not tell which
    // trays a printer has, so the only source offered is the one that always works.
    cboSource->clear();
    cboSource->addItem(QStringLiteral("Automatically Select"), QPrinter::Auto);
    cboSource->setEnabled(false);
    cboSource->setToolTip(QStringLiteral("The printer takes the paper from the tray its own "
                                         "settings choose."));
    lblWhere->setText(info.isNull() ? QStringLiteral("A PDF file, named when you print")
                      : info.location().isEmpty() ? info.description()
                                                  : info.location());
}

QString PrintSetupDialog::printerName() const {
    return cboName->currentText();
}

QPageSize PrintSetupDialog::pageSize() const {
    return QPageSize(static_cast<QPageSize::PageSizeId>(cboSize->currentData().toInt()));
}

QPrinter::PaperSource PrintSetupDialog::paperSource() const {
    return static_cast<QPrinter::PaperSource>(cboSource->currentData().toInt());
}

QPageLayout::Orientation PrintSetupDialog::orientation() const {
    return optLandscape->isChecked() ? QPageLayout::Landscape : QPageLayout::Portrait;
}

void PrintSetupDialog::accept() {
    if (printerName() != m_settings.currentPrinter()) {
        m_settings.setCurrentPrinter(printerName());
        m_settings.setPrinterName(printerName());
    }
    QPrinter& printer = m_settings.printer();
    printer.setPageSize(pageSize());
    printer.setPageOrientation(orientation());
    QDialog::accept();
}

} // namespace zorvik
