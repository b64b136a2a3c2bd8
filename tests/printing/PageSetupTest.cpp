// The "Page Setup" dialog: controls, printer list, margin fields, scale and the five buttons.
#include "printing/PrintSetupDialog.h"
#include "printing/PrintingServices.h"
#include "printing/PrintingTestSupport.h"
#include "printing/frmPageSetup.h"
#include "printing/frmPreview.h"
#include "support/ModalRunner.h"
#include "support/WindowSteps.h"
#include "widgets/UpDown.h"

#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QFocusEvent>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

namespace zorvik::test {
namespace {

class PageSetupTest : public PrintingTest {
protected:
    template <typename T> static T* child(QWidget& form, const char* name) {
        return form.findChild<T*>(QString::fromLatin1(name));
    }
    static QLineEdit* margin(QWidget& form, int i) {
        return form.findChild<QLineEdit*>(QStringLiteral("txtMargin(%1)").arg(i));
    }
    static void leave(QWidget* field) {
        QFocusEvent event(QEvent::FocusOut, Qt::TabFocusReason);
        QApplication::sendEvent(field, &event);
    }
    static void click(QWidget& form, const char* button) {
        child<QPushButton>(form, button)->click();
    }
};

TEST_F(PageSetupTest, ShowsTheControlsWithTheirNamesAndCaptions) {
    PrintingServices services;
    frmPageSetup form(services);
    EXPECT_EQ(form.objectName(), QStringLiteral("frmPageSetup"));
    EXPECT_EQ(form.windowTitle(), QStringLiteral("Page Setup"));
    EXPECT_TRUE(form.isModal());
    ASSERT_NE(child<QComboBox>(form, "cboPrinter"), nullptr);
    EXPECT_EQ(child<QGroupBox>(form, "fraMargins")->title(), QStringLiteral("Margins"));
    EXPECT_EQ(child<QGroupBox>(form, "fraScale")->title(), QStringLiteral("Scale"));
    EXPECT_EQ(child<QRadioButton>(form, "optMargin(7)")->text(), QStringLiteral("Centimeters"));
    EXPECT_EQ(child<QRadioButton>(form, "optMargin(5)")->text(), QStringLiteral("Inches"));
    ASSERT_NE(child<QLabel>(form, "lblScale"), nullptr);
    ASSERT_NE(child<UpDown>(form, "udScale"), nullptr);
    ASSERT_NE(child<QLineEdit>(form, "txtHeader"), nullptr);
    ASSERT_NE(child<QLineEdit>(form, "txtFooter"), nullptr);
    EXPECT_EQ(child<QPushButton>(form, "cmdOK")->text(), QStringLiteral("OK"));
    EXPECT_EQ(child<QPushButton>(form, "cmdCancel")->text(), QStringLiteral("Cancel"));
    EXPECT_EQ(child<QPushButton>(form, "cmdPreview")->text(), QStringLiteral("Preview"));
    EXPECT_EQ(child<QPushButton>(form, "cmdPrint")->text(), QStringLiteral("Print"));
    EXPECT_EQ(child<QPushButton>(form, "cmdPrintSetup")->text(), QStringLiteral("Print Setup"));

    const QStringList captions{
        "Printer:", "Left:", "Right:", "Top:", "Bottom:", "Header:", "Footer:"};
    QStringList buddies;
    for (QLabel* label : form.findChildren<QLabel*>()) {
        if (captions.contains(label->text()) && label->buddy())
            buddies << label->text() + label->buddy()->objectName();
    }
    buddies.sort();
    EXPECT_EQ(buddies, (QStringList{"Bottom:txtMargin(4)", "Footer:txtFooter", "Header:txtHeader",
                                    "Left:txtMargin(1)", "Printer:cboPrinter", "Right:txtMargin(2)",
                                    "Top:txtMargin(3)"}));
}

TEST_F(PageSetupTest, OpensWithThePrintControlsSettings) {
    PrintingServices services;
    PrintControl& control = services.EasyPrint1();
    control.setHeader(QStringLiteral("Head"));
    control.setFooter(QStringLiteral("Foot"));
    control.setMarginUnits(5);
    control.setMargin(1, 0.5f);
    control.setMargin(2, 1.25f);
    control.setMargin(3, 2.0f);
    control.setMargin(4, 10.0f);
    control.setPrintScale(70);
    frmPageSetup form(services);
    EXPECT_EQ(form.pageSettings(), &control);
    EXPECT_EQ(margin(form, 1)->text(), QStringLiteral("0.50"));
    EXPECT_EQ(margin(form, 2)->text(), QStringLiteral("1.25"));
    EXPECT_EQ(margin(form, 3)->text(), QStringLiteral("2.00"));
    EXPECT_EQ(margin(form, 4)->text(), QStringLiteral("10.00"));
    EXPECT_TRUE(child<QRadioButton>(form, "optMargin(5)")->isChecked());
    EXPECT_FALSE(child<QRadioButton>(form, "optMargin(7)")->isChecked());
    EXPECT_EQ(child<QLabel>(form, "lblScale")->text(), QStringLiteral("70"));
    EXPECT_EQ(child<QLineEdit>(form, "txtHeader")->text(), QStringLiteral("Head"));
    EXPECT_EQ(child<QLineEdit>(form, "txtFooter")->text(), QStringLiteral("Foot"));
}

TEST_F(PageSetupTest, WithoutInstalledPrintersListsOneRowForThePdfFile) {
    PrintingServices services;
    frmPageSetup form(services);
    auto* list = child<QComboBox>(form, "cboPrinter");
    ASSERT_EQ(list->count(), 1);
    EXPECT_EQ(list->itemText(0), QStringLiteral("PDF file"));
    EXPECT_EQ(list->currentIndex(), 0);
}

TEST_F(PageSetupTest, PrinterNamedByThePrintControlIsSelectedAndMadeCurrent) {
    setPrinters({QStringLiteral("Alpha"), QStringLiteral("Beta")});
    PrintingServices services;
    services.EasyPrint1().setPrinterName(QStringLiteral("Beta"));
    frmPageSetup form(services);
    auto* list = child<QComboBox>(form, "cboPrinter");
    EXPECT_EQ(list->count(), 2);
    EXPECT_EQ(list->currentIndex(), 1);
    EXPECT_EQ(services.EasyPrint1().currentPrinter(), QStringLiteral("Beta"));
}

TEST_F(PageSetupTest, WithSeveralRowsOfTheSameNameTheLastIsSelected) {
    setPrinters({QStringLiteral("Beta"), QStringLiteral("Alpha"), QStringLiteral("Beta")});
    PrintingServices services;
    services.EasyPrint1().setPrinterName(QStringLiteral("Beta"));
    frmPageSetup form(services);
    EXPECT_EQ(child<QComboBox>(form, "cboPrinter")->currentIndex(), 2);
}

TEST_F(PageSetupTest, NoPrinterOfThatNameSelectsNoRowAndKeepsTheCurrentPrinter) {
    setPrinters({QStringLiteral("Alpha"), QStringLiteral("Beta")});
    PrintingServices services;
    services.EasyPrint1().setCurrentPrinter(QStringLiteral("Beta"));
    services.EasyPrint1().setPrinterName(QStringLiteral("Gamma"));
    frmPageSetup form(services);
    EXPECT_EQ(child<QComboBox>(form, "cboPrinter")->currentIndex(), -1);
    EXPECT_EQ(services.EasyPrint1().currentPrinter(), QStringLiteral("Beta"));
    EXPECT_EQ(services.EasyPrint1().PrinterName(), QStringLiteral("Gamma"));
}

TEST_F(PageSetupTest, ChoosingAPrinterMakesItCurrentAndNamesIt) {
    setPrinters({QStringLiteral("Alpha"), QStringLiteral("Beta")});
    PrintingServices services;
    frmPageSetup form(services);
    auto* list = child<QComboBox>(form, "cboPrinter");
    list->setCurrentIndex(1);
    emit list->activated(1);
    EXPECT_EQ(services.EasyPrint1().currentPrinter(), QStringLiteral("Beta"));
    EXPECT_EQ(services.EasyPrint1().PrinterName(), QStringLiteral("Beta"));
}

TEST_F(PageSetupTest, NumericTextIsALoneDotOrANumber) {
    for (const char* text : {".", "0", "2.54", "1.", ".5", " 3 ", "1e1", "-1"})
        EXPECT_TRUE(frmPageSetup::IsNumericText(QString::fromLatin1(text))) << text;
    for (const char* text : {"", "-", "x", "2,54,", "1.2.3", "1a", "..", "inf", "nan"})
        EXPECT_FALSE(frmPageSetup::IsNumericText(QString::fromLatin1(text))) << text;
}

TEST_F(PageSetupTest, DotTypedIntoAnEmptyMarginIsAcceptedButLeavingKeepsTheStoredMargin) {
    PrintingServices services;
    frmPageSetup form(services);
    QLineEdit* left = margin(form, 1);
    left->selectAll();
    QTest::keyClick(left, '.');
    EXPECT_EQ(left->text(), QStringLiteral("."));
    leave(left);
    EXPECT_FLOAT_EQ(services.EasyPrint1().Margin(1), 2.0f);
    EXPECT_EQ(left->text(), QStringLiteral("."));
}

TEST_F(PageSetupTest, KeystrokeThatIsNotANumberIsUndoneToTheStoredMargin) {
    PrintingServices services;
    frmPageSetup form(services);
    QLineEdit* top = margin(form, 3);
    top->selectAll();
    QTest::keyClicks(top, QStringLiteral("3.5"));
    EXPECT_EQ(top->text(), QStringLiteral("3.5"));
    EXPECT_FLOAT_EQ(services.EasyPrint1().Margin(3), 2.0f); // not stored while typing
    QTest::keyClick(top, 'x');
    EXPECT_EQ(top->text(), QStringLiteral("2.00"));
}

TEST_F(PageSetupTest, LeavingAMarginStoresItAndShowsTwoDecimals) {
    PrintingServices services;
    frmPageSetup form(services);
    QLineEdit* bottom = margin(form, 4);
    bottom->selectAll();
    QTest::keyClicks(bottom, QStringLiteral("3.5"));
    leave(bottom);
    EXPECT_FLOAT_EQ(services.EasyPrint1().Margin(4), 3.5f);
    EXPECT_EQ(bottom->text(), QStringLiteral("3.50"));
}

TEST_F(PageSetupTest, SwitchingUnitsRewritesAllFourFieldsWithTwoDecimals) {
    PrintingServices services;
    PrintControl& control = services.EasyPrint1();
    control.setMargin(1, 2.54f);
    control.setMargin(2, 5.08f);
    control.setMargin(3, 1.27f);
    control.setMargin(4, 0.0f);
    frmPageSetup form(services);
    child<QRadioButton>(form, "optMargin(5)")->click();
    EXPECT_EQ(control.MarginUnits(), 5);
    EXPECT_EQ(margin(form, 1)->text(), QStringLiteral("1.00"));
    EXPECT_EQ(margin(form, 2)->text(), QStringLiteral("2.00"));
    EXPECT_EQ(margin(form, 3)->text(), QStringLiteral("0.50"));
    EXPECT_EQ(margin(form, 4)->text(), QStringLiteral("0.00"));
    child<QRadioButton>(form, "optMargin(7)")->click();
    EXPECT_EQ(control.MarginUnits(), 7);
    EXPECT_EQ(margin(form, 1)->text(), QStringLiteral("2.54"));
    EXPECT_EQ(margin(form, 2)->text(), QStringLiteral("5.08"));
    EXPECT_EQ(margin(form, 3)->text(), QStringLiteral("1.27"));
    EXPECT_EQ(margin(form, 4)->text(), QStringLiteral("0.00"));
}

TEST_F(PageSetupTest, ScaleStepsByTenFromTenToOneHundredFiftyStartingAtOneHundred) {
    PrintingServices services;
    frmPageSetup form(services);
    auto* spinner = child<UpDown>(form, "udScale");
    auto* label = child<QLabel>(form, "lblScale");
    EXPECT_EQ(spinner->value(), 100);
    EXPECT_EQ(spinner->minimum(), 10);
    EXPECT_EQ(spinner->maximum(), 150);
    EXPECT_EQ(spinner->singleStep(), 10);
    EXPECT_EQ(label->text(), QStringLiteral("100"));
    QStringList seen;
    for (int i = 0; i < 6; ++i) {
        spinner->stepUp();
        seen << label->text();
    }
    EXPECT_EQ(seen, (QStringList{"110", "120", "130", "140", "150", "150"}));
    EXPECT_FLOAT_EQ(services.EasyPrint1().PrintScale(), 150.0f);
    for (int i = 0; i < 15; ++i)
        spinner->stepDown();
    EXPECT_EQ(label->text(), QStringLiteral("10"));
    EXPECT_FLOAT_EQ(services.EasyPrint1().PrintScale(), 10.0f);
}

TEST_F(PageSetupTest, ScaleCarriesOnFromTheScaleShown) {
    PrintingServices services;
    services.EasyPrint1().setPrintScale(50);
    frmPageSetup form(services);
    child<UpDown>(form, "udScale")->stepUp();
    EXPECT_EQ(child<QLabel>(form, "lblScale")->text(), QStringLiteral("60"));
    EXPECT_FLOAT_EQ(services.EasyPrint1().PrintScale(), 60.0f);
}

TEST_F(PageSetupTest, EscapeActsAsCancelAndStillApplies) {
    PrintingServices services;
    PrintControl& control = services.EasyPrint1();
    frmPageSetup form(services);
    form.show();
    child<QLineEdit>(form, "txtHeader")->setText(QStringLiteral("Typed header"));
    QTest::keyClick(&form, Qt::Key_Escape);
    EXPECT_TRUE(control.Cancel());
    EXPECT_EQ(control.Header(), QStringLiteral("Typed header"));
    EXPECT_FALSE(form.isVisible());
    EXPECT_EQ(form.result(), QDialog::Rejected);
}

TEST_F(PageSetupTest, CancelStillAppliesScaleHeaderFooterAndUnit) {
    PrintingServices services;
    PrintControl& control = services.EasyPrint1();
    control.setPrintMode(1);
    frmPageSetup form(services);
    form.show();
    child<QLineEdit>(form, "txtHeader")->setText(QStringLiteral("New header"));
    child<QLineEdit>(form, "txtFooter")->setText(QStringLiteral("New footer"));
    child<UpDown>(form, "udScale")->stepDown();
    child<QRadioButton>(form, "optMargin(5)")->click();
    click(form, "cmdCancel");
    EXPECT_TRUE(control.Cancel());
    EXPECT_EQ(control.Header(), QStringLiteral("New header"));
    EXPECT_EQ(control.Footer(), QStringLiteral("New footer"));
    EXPECT_FLOAT_EQ(control.PrintScale(), 90.0f);
    EXPECT_EQ(control.MarginUnits(), 5);
    EXPECT_EQ(control.PrintMode(), 2);
    EXPECT_FALSE(form.isVisible());
    EXPECT_EQ(form.result(), QDialog::Rejected);
    EXPECT_EQ(form.pageSettings(), nullptr);
}

TEST_F(PageSetupTest, OkAppliesTheSettingsAndClosesAnOpenPreviewToo) {
    PrintingServices services;
    frmPreview preview(services);
    preview.show();
    frmPageSetup form(services, &preview);
    form.show();
    child<QLineEdit>(form, "txtHeader")->setText(QStringLiteral("OK header"));
    click(form, "cmdOK");
    EXPECT_EQ(services.EasyPrint1().Header(), QStringLiteral("OK header"));
    EXPECT_EQ(services.EasyPrint1().PrintMode(), 2);
    EXPECT_FALSE(form.isVisible());
    EXPECT_FALSE(preview.isVisible());
}

TEST_F(PageSetupTest, PreviewRefreshesAnOpenPreviewAndCloses) {
    PrintingServices services;
    frmPreview preview(services);
    preview.show();
    const qint64 before = preview.previewTarget().page.cacheKey();
    frmPageSetup form(services, &preview);
    form.show();
    child<QLineEdit>(form, "txtFooter")->setText(QStringLiteral("Refreshed"));
    click(form, "cmdPreview");
    EXPECT_EQ(services.EasyPrint1().Footer(), QStringLiteral("Refreshed"));
    EXPECT_FALSE(form.isVisible());
    EXPECT_TRUE(preview.isVisible());
    EXPECT_NE(preview.previewTarget().page.cacheKey(), before);
}

TEST_F(PageSetupTest, PreviewOpensThePreviewModallyWhenNoneIsOpen) {
    PrintingServices services;
    QStringList opened;
    setModalRunner([&](QDialog& dialog) {
        opened << dialog.objectName();
        return 0;
    });
    frmPageSetup form(services);
    form.show();
    click(form, "cmdPreview");
    EXPECT_EQ(opened, QStringList{QStringLiteral("frmPreview")});
    EXPECT_FALSE(form.isVisible());
}

TEST_F(PageSetupTest, PrintWritesThePageAndClosesTheDialogAndThePreview) {
    QTemporaryDir folder;
    const QString pdf = QDir(folder.path()).filePath(QStringLiteral("setup.pdf"));
    PrintControl::setPdfPathChooser([&](QWidget*, const QString&) { return pdf; });
    PrintingServices services;
    frmPreview preview(services);
    preview.show();
    frmPageSetup form(services, &preview);
    form.show();
    click(form, "cmdPrint");
    EXPECT_TRUE(QFile::exists(pdf));
    EXPECT_FALSE(services.EasyPrint1().Cancel());
    EXPECT_FALSE(form.isVisible());
    EXPECT_FALSE(preview.isVisible());
}

TEST_F(PageSetupTest, CancelledPrintLeavesTheDialogAndThePreviewOpen) {
    PrintControl::setPdfPathChooser([](QWidget*, const QString&) { return QString(); });
    PrintingServices services;
    frmPreview preview(services);
    preview.show();
    frmPageSetup form(services, &preview);
    form.show();
    click(form, "cmdPrint");
    EXPECT_TRUE(services.EasyPrint1().Cancel());
    EXPECT_TRUE(form.isVisible());
    EXPECT_TRUE(preview.isVisible());
}

TEST_F(PageSetupTest, FailedPrintCountsAsCancelledWithoutAMessage) {
    PrintControl::setPdfPathChooser(
        [](QWidget*, const QString&) { return QStringLiteral("/nonexistent-folder/x/p.pdf"); });
    PrintingServices services;
    frmPageSetup form(services);
    form.show();
    click(form, "cmdPrint");
    EXPECT_TRUE(services.EasyPrint1().Cancel());
    EXPECT_TRUE(form.isVisible());
    EXPECT_TRUE(messages.empty());
}

TEST_F(PageSetupTest, PrintSetupOpensThePrinterSetUpDialogAndStaysOpen) {
    PrintingServices services;
    PrintControl* shown = nullptr;
    QWidget* parent = nullptr;
    frmPageSetup::setPrinterSetupDialog([&](PrintControl& settings, QWidget* owner) {
        shown = &settings;
        parent = owner;
    });
    frmPageSetup form(services);
    form.show();
    click(form, "cmdPrintSetup");
    EXPECT_EQ(shown, &services.EasyPrint1());
    EXPECT_EQ(parent, &form);
    EXPECT_TRUE(form.isVisible());
}

// The real one: its own title (so that two "Page Setup" windows never stack), printer, paper
// and orientation, and no margin fields; no warning about non-native printers.
TEST_F(PageSetupTest, PrintSetupIsItsOwnDialogTitledPrintSetupWithoutMargins) {
    PrintControl::setPrinterLister([] { return QStringList(); });
    PrintingServices services;
    frmPageSetup form(services);
    form.show();
    QStringList warnings;
    static QStringList* sink = nullptr;
    sink = &warnings;
    const QtMessageHandler previous = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext&, const QString& text) { sink->append(text); });
    bool seen = false;
    whenVisible<PrintSetupDialog>([&](PrintSetupDialog* dialog) {
        seen = true;
        EXPECT_EQ(dialog->windowTitle(), QStringLiteral("Print Setup"));
        EXPECT_TRUE(dialog->isModal());
        EXPECT_EQ(dialog->parentWidget(), &form);
        EXPECT_TRUE(dialog->findChildren<QLineEdit*>().isEmpty());
        EXPECT_TRUE(dialog->findChildren<QAbstractSpinBox*>().isEmpty());
        EXPECT_EQ(dialog->cboName->currentText(), PrintControl::pdfPrinterName());
        dialog->optLandscape->setChecked(true);
        dialog->cboSize->setCurrentIndex(dialog->cboSize->findText(QStringLiteral("A5")));
        dialog->accept();
    });
    click(form, "cmdPrintSetup");
    qInstallMessageHandler(previous);
    EXPECT_TRUE(seen);
    EXPECT_TRUE(form.isVisible());
    EXPECT_TRUE(warnings.filter(QStringLiteral("QPageSetupDialog")).isEmpty())
        << warnings.join('\n').toStdString();
    const QPageLayout layout = services.EasyPrint1().printer().pageLayout();
    EXPECT_EQ(layout.orientation(), QPageLayout::Landscape);
    EXPECT_EQ(layout.pageSize().id(), QPageSize::A5);
}

TEST_F(PageSetupTest, PrintSetupCancelledChangesNothing) {
    PrintControl::setPrinterLister([] { return QStringList(); });
    PrintingServices services;
    services.EasyPrint1().printer().setPageSize(QPageSize(QPageSize::A4));
    PrintSetupDialog dialog(services.EasyPrint1());
    EXPECT_EQ(dialog.pageSize().id(), QPageSize::A4);
    EXPECT_TRUE(dialog.optPortrait->isChecked());
    dialog.optLandscape->setChecked(true);
    dialog.cboSize->setCurrentIndex(dialog.cboSize->findText(QStringLiteral("Letter")));
    dialog.reject();
    const QPageLayout layout = services.EasyPrint1().printer().pageLayout();
    EXPECT_EQ(layout.orientation(), QPageLayout::Portrait);
    EXPECT_EQ(layout.pageSize().id(), QPageSize::A4);
}

// A printer chosen in Print Setup becomes the program's printer, and Page Setup shows it.
TEST_F(PageSetupTest, APrinterChosenInPrintSetupIsTheOnePageSetupShows) {
    PrintControl::setPrinterLister([] {
        return QStringList{QStringLiteral("Office"), QStringLiteral("Lab")};
    });
    PrintingServices services;
    services.EasyPrint1().setPrinterName(QStringLiteral("Office"));
    frmPageSetup form(services);
    form.show();
    ASSERT_EQ(child<QComboBox>(form, "cboPrinter")->currentText(), QStringLiteral("Office"));
    whenVisible<PrintSetupDialog>([](PrintSetupDialog* dialog) {
        EXPECT_EQ(dialog->cboName->currentText(), QStringLiteral("Office"));
        EXPECT_EQ(dialog->cboSource->itemText(0), QStringLiteral("Automatically Select"));
        dialog->cboName->setCurrentIndex(1);
        dialog->accept();
    });
    click(form, "cmdPrintSetup");
    EXPECT_EQ(services.EasyPrint1().PrinterName(), QStringLiteral("Lab"));
    EXPECT_EQ(services.EasyPrint1().currentPrinter(), QStringLiteral("Lab"));
    EXPECT_EQ(child<QComboBox>(form, "cboPrinter")->currentText(), QStringLiteral("Lab"));
}

} // namespace
} // namespace zorvik::test
