// The page-setup dialog: reading the print control, the field rules and the five buttons.
#include "printing/frmPageSetup.h"

#include "printing/PrintControl.h"
#include "printing/PrintSetupDialog.h"
#include "printing/PrintingServices.h"
#include "printing/frmPreview.h"
#include "support/ModalRunner.h"
#include "support/OpenForms.h"
#include "widgets/UpDown.h"

#include <QComboBox>
#include <QEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>
#include <cmath>
#include <optional>
#include <utility>

namespace zorvik {

namespace {
frmPageSetup::PrinterSetupDialog& printerSetupDialog() {
    static frmPageSetup::PrinterSetupDialog dialog;
    return dialog;
}

// Margins are shown with two decimals after a decimal point on every system ("#0.00").
QString formatMargin(float value) {
    return QLocale::c().toString(double(value), 'f', 2);
}

std::optional<float> readNumber(const QString& text) {
    bool ok = false;
    const double value = QLocale::c().toDouble(text.trimmed(), &ok);
    if (!ok || !std::isfinite(value))
        return std::nullopt;
    return static_cast<float>(value);
}

QString scaleText(float percent) {
    return QString::number(double(percent), 'g', 7);
}

constexpr std::array<const char*, 4> kMarginCaptions{"Left:", "Right:", "Top:", "Bottom:"};
} // namespace

frmPageSetup::frmPageSetup(PrintingServices& services, QWidget* parent)
    : QDialog(parent), m_services(services) {
    setObjectName(QStringLiteral("frmPageSetup"));
    setWindowTitle(QStringLiteral("Page Setup"));
    setModal(true);
    buildControls();
    Form_Load();
}

void frmPageSetup::buildControls() {
    auto* lblPrinter = new QLabel(QStringLiteral("Printer:"), this);
    cboPrinter = new QComboBox(this);
    cboPrinter->setObjectName(QStringLiteral("cboPrinter"));
    cboPrinter->setMinimumContentsLength(24);
    lblPrinter->setBuddy(cboPrinter);

    auto* fraMargins = new QGroupBox(QStringLiteral("Margins"), this);
    fraMargins->setObjectName(QStringLiteral("fraMargins"));
    auto* marginGrid = new QGridLayout(fraMargins);
    for (int i = 1; i <= 4; ++i) {
        auto* field = new QLineEdit(fraMargins);
        field->setObjectName(QStringLiteral("txtMargin(%1)").arg(i));
        field->setMaximumWidth(80);
        field->installEventFilter(this);
        auto* caption = new QLabel(QString::fromLatin1(kMarginCaptions[i - 1]), fraMargins);
        caption->setBuddy(field);
        const int row = (i - 1) / 2;
        const int column = ((i - 1) % 2) * 2;
        marginGrid->addWidget(caption, row, column);
        marginGrid->addWidget(field, row, column + 1);
        txtMargin[static_cast<std::size_t>(i - 1)] = field;
        connect(field, &QLineEdit::textChanged, this, [this, i] { txtMargin_Change(i); });
    }
    optMarginCentimeters = new QRadioButton(QStringLiteral("Centimeters"), fraMargins);
    optMarginCentimeters->setObjectName(QStringLiteral("optMargin(7)"));
    optMarginInches = new QRadioButton(QStringLiteral("Inches"), fraMargins);
    optMarginInches->setObjectName(QStringLiteral("optMargin(5)"));
    marginGrid->addWidget(optMarginCentimeters, 2, 0, 1, 2);
    marginGrid->addWidget(optMarginInches, 2, 2, 1, 2);
    connect(optMarginCentimeters, &QRadioButton::clicked, this,
            [this] { optMargin_Click(PrintControl::kUnitCentimeters); });
    connect(optMarginInches, &QRadioButton::clicked, this,
            [this] { optMargin_Click(PrintControl::kUnitInches); });

    auto* fraScale = new QGroupBox(QStringLiteral("Scale"), this);
    fraScale->setObjectName(QStringLiteral("fraScale"));
    auto* scaleRow = new QHBoxLayout(fraScale);
    lblScale = new QLabel(fraScale);
    lblScale->setObjectName(QStringLiteral("lblScale"));
    lblScale->setMinimumWidth(32);
    lblScale->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    udScale = new UpDown(fraScale);
    udScale->setObjectName(QStringLiteral("udScale"));
    udScale->setRange(10, 150);
    udScale->setSingleStep(10);
    udScale->setValue(100);
    udScale->setBuddy(lblScale);
    scaleRow->addWidget(lblScale);
    scaleRow->addWidget(new QLabel(QStringLiteral("%"), fraScale));
    scaleRow->addWidget(udScale);
    scaleRow->addStretch();
    connect(udScale, &UpDown::Change, this, &frmPageSetup::udScale_Change);

    txtHeader = new QLineEdit(this);
    txtHeader->setObjectName(QStringLiteral("txtHeader"));
    txtFooter = new QLineEdit(this);
    txtFooter->setObjectName(QStringLiteral("txtFooter"));
    auto* lblHeader = new QLabel(QStringLiteral("Header:"), this);
    lblHeader->setBuddy(txtHeader);
    auto* lblFooter = new QLabel(QStringLiteral("Footer:"), this);
    lblFooter->setBuddy(txtFooter);

    auto makeButton = [this](const char* name, const char* caption) {
        auto* button = new QPushButton(QString::fromLatin1(caption), this);
        button->setObjectName(QString::fromLatin1(name));
        button->setAutoDefault(false);
        return button;
    };
    cmdOK = makeButton("cmdOK", "OK");
    cmdOK->setDefault(true);
    cmdCancel = makeButton("cmdCancel", "Cancel");
    cmdPreview = makeButton("cmdPreview", "Preview");
    cmdPrint = makeButton("cmdPrint", "Print");
    cmdPrintSetup = makeButton("cmdPrintSetup", "Print Setup");
    connect(cmdOK, &QPushButton::clicked, this, &frmPageSetup::cmdOK_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &frmPageSetup::cmdCancel_Click);
    connect(cmdPreview, &QPushButton::clicked, this, &frmPageSetup::cmdPreview_Click);
    connect(cmdPrint, &QPushButton::clicked, this, &frmPageSetup::cmdPrint_Click);
    connect(cmdPrintSetup, &QPushButton::clicked, this, &frmPageSetup::cmdPrintSetup_Click);
    connect(cboPrinter, &QComboBox::activated, this, &frmPageSetup::cboPrinter_Click);

    auto* settings = new QGridLayout;
    settings->addWidget(lblPrinter, 0, 0);
    settings->addWidget(cboPrinter, 0, 1);
    auto* frames = new QHBoxLayout;
    frames->addWidget(fraMargins);
    frames->addWidget(fraScale);
    settings->addLayout(frames, 1, 0, 1, 2);
    settings->addWidget(lblHeader, 2, 0);
    settings->addWidget(txtHeader, 2, 1);
    settings->addWidget(lblFooter, 3, 0);
    settings->addWidget(txtFooter, 3, 1);
    auto* buttons = new QVBoxLayout;
    for (QPushButton* button : {cmdOK, cmdCancel, cmdPreview, cmdPrint, cmdPrintSetup})
        buttons->addWidget(button);
    buttons->addStretch();
    auto* outer = new QHBoxLayout(this);
    outer->addLayout(settings, 1);
    outer->addLayout(buttons);
    setSizeGripEnabled(false);
}

void frmPageSetup::Form_Load() {
    m_pageSettings = &m_services.EasyPrint1();
    PrintControl& settings = *m_pageSettings;

    const QStringList printers = settings.installedPrinters();
    {
        const QSignalBlocker quiet(cboPrinter);
        cboPrinter->addItems(printers);
        cboPrinter->setCurrentIndex(-1);
    }
    // Every row equal to the printer name is selected in turn and becomes the current printer;
    // with no such row nothing is selected and the current printer stays as it was.
    for (int i = 0; i < printers.size(); ++i) {
        if (printers.at(i) == settings.PrinterName()) {
            const QSignalBlocker quiet(cboPrinter);
            cboPrinter->setCurrentIndex(i);
            settings.setCurrentPrinter(printers.at(i));
        }
    }

    lblScale->setText(scaleText(settings.PrintScale()));
    settings.LoadHeaderFooter(txtFooter, txtHeader);
    FillMargins();
    (settings.MarginUnits() == PrintControl::kUnitInches ? optMarginInches : optMarginCentimeters)
        ->setChecked(true);
}

void frmPageSetup::FillMargins() {
    if (!m_pageSettings)
        return;
    for (int i = 1; i <= 4; ++i)
        txtMargin[static_cast<std::size_t>(i - 1)]->setText(
            formatMargin(m_pageSettings->Margin(i)));
}

void frmPageSetup::ApplySettings() {
    PrintControl& settings = *m_pageSettings;
    settings.setPrintMode(PrintControl::kModeScaled);
    settings.setPrintScale(std::floor(readNumber(lblScale->text()).value_or(100.0f)));
    settings.setHeader(txtHeader->text());
    settings.setFooter(txtFooter->text());
    settings.setMarginUnits(optMarginCentimeters->isChecked() ? PrintControl::kUnitCentimeters
                                                              : PrintControl::kUnitInches);
}

bool frmPageSetup::IsNumericText(const QString& text) {
    return text == QStringLiteral(".") || readNumber(text).has_value();
}

void frmPageSetup::cboPrinter_Click(int row) {
    if (!m_pageSettings || row < 0)
        return;
    const QString name = cboPrinter->itemText(row);
    m_pageSettings->setCurrentPrinter(name);
    m_pageSettings->setPrinterName(name);
}

void frmPageSetup::optMargin_Click(int units) {
    if (!m_pageSettings)
        return;
    m_pageSettings->setMarginUnits(units);
    FillMargins();
}

void frmPageSetup::udScale_Change() {
    if (!m_pageSettings)
        return;
    m_pageSettings->setPrintScale(readNumber(lblScale->text()).value_or(100.0f));
    lblScale->setText(scaleText(m_pageSettings->PrintScale()));
}

void frmPageSetup::txtMargin_Change(int i) {
    QLineEdit* field = txtMargin[static_cast<std::size_t>(i - 1)];
    // A keystroke that does not leave a number (or a lone ".") is undone at once, back to the
    // stored margin; an accepted text is stored only when the field is left.
    if (m_pageSettings && !IsNumericText(field->text()))
        field->setText(formatMargin(m_pageSettings->Margin(i)));
}

void frmPageSetup::txtMargin_LostFocus(int i) {
    if (!m_pageSettings)
        return;
    QLineEdit* field = txtMargin[static_cast<std::size_t>(i - 1)];
    // A text that does not read as a number (a lone ".") leaves the stored margin and the field
    // as they are.
    const std::optional<float> value = readNumber(field->text());
    if (!value)
        return;
    m_pageSettings->setMargin(i, *value);
    field->setText(formatMargin(m_pageSettings->Margin(i)));
}

void frmPageSetup::storeFocusedMargin() {
    // A button pressed from the keyboard does not take the focus from a margin field, so the
    // margin being typed is stored here just as leaving the field would.
    for (int i = 1; i <= 4; ++i) {
        if (txtMargin[static_cast<std::size_t>(i - 1)]->hasFocus())
            txtMargin_LostFocus(i);
    }
}

bool frmPageSetup::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::FocusOut) {
        for (int i = 1; i <= 4; ++i) {
            if (watched == txtMargin[static_cast<std::size_t>(i - 1)])
                txtMargin_LostFocus(i);
        }
    }
    return QDialog::eventFilter(watched, event);
}

void frmPageSetup::cmdOK_Click() {
    QWidget* preview = findOpenForm(QStringLiteral("frmPreview"));
    storeFocusedMargin();
    ApplySettings();
    accept();
    // Closing the preview as well is deliberate: OK ends the whole printing session.
    if (preview)
        preview->close();
}

void frmPageSetup::cmdCancel_Click() {
    storeFocusedMargin();
    m_pageSettings->setCancel(true);
    // The settings made so far are still applied on purpose: Cancel only tells the caller that
    // the user did not ask to print.
    ApplySettings();
    reject();
}

void frmPageSetup::cmdPreview_Click() {
    QWidget* preview = findOpenForm(QStringLiteral("frmPreview"));
    storeFocusedMargin();
    ApplySettings();
    QWidget* owner = parentWidget() ? parentWidget() : m_services.mainWindow();
    accept();
    if (auto* open = qobject_cast<frmPreview*>(preview))
        open->PreviewRefresh();
    else
        m_services.openPreview(owner);
}

void frmPageSetup::cmdPrint_Click() {
    QWidget* preview = findOpenForm(QStringLiteral("frmPreview"));
    storeFocusedMargin();
    ApplySettings();
    // A failed print counts as cancelled, without a message: the dialog stays open.
    if (!m_pageSettings->PrintPage())
        m_pageSettings->setCancel(true);
    if (m_pageSettings->Cancel())
        return;
    accept();
    if (preview)
        preview->close();
}

void frmPageSetup::cmdPrintSetup_Click() {
    if (printerSetupDialog()) {
        printerSetupDialog()(*m_pageSettings, this);
    } else {
        PrintSetupDialog dialog(*m_pageSettings, this);
        dialog.exec();
    }
    // A printer chosen there is the one this dialog shows too.
    const int row = cboPrinter->findText(m_pageSettings->PrinterName());
    if (row >= 0 && row != cboPrinter->currentIndex()) {
        const QSignalBlocker quiet(cboPrinter);
        cboPrinter->setCurrentIndex(row);
    }
    // Back to this dialog, which stays open.
    raise();
    activateWindow();
}

void frmPageSetup::reject() {
    if (m_cancelling || !m_pageSettings) {
        QDialog::reject();
        return;
    }
    m_cancelling = true;
    cmdCancel_Click();
    m_cancelling = false;
}

void frmPageSetup::done(int result) {
    QDialog::done(result);
    m_pageSettings = nullptr;
}

void frmPageSetup::setPrinterSetupDialog(PrinterSetupDialog dialog) {
    printerSetupDialog() = std::move(dialog);
}

} // namespace zorvik
