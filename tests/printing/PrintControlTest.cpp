// The print control: starting values, margin units, page composition, PDF output.
#include "printing/PrintControl.h"
#include "printing/PageComposer.h"
#include "printing/PictureHolder.h"
#include "printing/PrintingTestSupport.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QLineEdit>
#include <QPageSize>
#include <QScreen>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace zorvik::test {
namespace {

class PrintControlTest : public PrintingTest {};

const QColor kBlock(20, 200, 60);

double screenDpi() {
    return QGuiApplication::primaryScreen()->logicalDotsPerInchX();
}

TEST_F(PrintControlTest, StartsWithEmptyTextsTwoCentimetreMarginsFullScaleAndThePdfFile) {
    PrintControl control;
    EXPECT_EQ(control.Header(), QString());
    EXPECT_EQ(control.Footer(), QString());
    EXPECT_EQ(control.MarginUnits(), 7);
    for (int i = 1; i <= 4; ++i)
        EXPECT_FLOAT_EQ(control.Margin(i), 2.0f) << i;
    EXPECT_FLOAT_EQ(control.PrintScale(), 100.0f);
    EXPECT_EQ(control.PrintMode(), 2);
    EXPECT_FALSE(control.Cancel());
    EXPECT_EQ(control.PrinterName(), QStringLiteral("PDF file"));
    EXPECT_EQ(control.currentPrinter(), QStringLiteral("PDF file"));
    EXPECT_EQ(control.installedPrinters(), QStringList{QStringLiteral("PDF file")});
    EXPECT_EQ(control.PageMetric1(), 0);
    EXPECT_EQ(control.PageMetric2(), 0);
    EXPECT_EQ(control.printer().outputFormat(), QPrinter::PdfFormat);
}

TEST_F(PrintControlTest, InstalledPrintersAreListedAndTheFirstIsTakenWithoutADefault) {
    setPrinters({QStringLiteral("Alpha"), QStringLiteral("Beta")});
    PrintControl control;
    EXPECT_EQ(control.installedPrinters(),
              (QStringList{QStringLiteral("Alpha"), QStringLiteral("Beta")}));
    EXPECT_EQ(control.PrinterName(), QStringLiteral("Alpha"));
}

TEST_F(PrintControlTest, MarginsRoundTripBetweenCentimetresAndInches) {
    PrintControl control;
    control.setMargin(1, 2.54f);
    control.setMargin(2, 5.08f);
    control.setMargin(3, 1.27f);
    control.setMargin(4, 0.0f);
    control.setMarginUnits(5);
    EXPECT_EQ(control.MarginUnits(), 5);
    EXPECT_FLOAT_EQ(control.Margin(1), 1.00f);
    EXPECT_FLOAT_EQ(control.Margin(2), 2.00f);
    EXPECT_FLOAT_EQ(control.Margin(3), 0.50f);
    EXPECT_FLOAT_EQ(control.Margin(4), 0.00f);
    control.setMarginUnits(7);
    EXPECT_FLOAT_EQ(control.Margin(1), 2.54f);
    EXPECT_FLOAT_EQ(control.Margin(2), 5.08f);
    EXPECT_FLOAT_EQ(control.Margin(3), 1.27f);
}

TEST_F(PrintControlTest, SettingTheSameUnitOrAnUnknownUnitLeavesMarginsAlone) {
    PrintControl control;
    control.setMargin(1, 3.0f);
    control.setMarginUnits(7);
    control.setMarginUnits(3);
    EXPECT_EQ(control.MarginUnits(), 7);
    EXPECT_FLOAT_EQ(control.Margin(1), 3.0f);
}

TEST_F(PrintControlTest, MarginIndexesOutsideOneToFourReadZeroAndAreNotStored) {
    PrintControl control;
    control.setMargin(0, 9.0f);
    control.setMargin(5, 9.0f);
    EXPECT_FLOAT_EQ(control.Margin(0), 0.0f);
    EXPECT_FLOAT_EQ(control.Margin(5), 0.0f);
}

TEST_F(PrintControlTest, LoadHeaderFooterFillsFooterAndHeaderBoxes) {
    PrintControl control;
    control.setHeader(QStringLiteral("Bench 4"));
    control.setFooter(QStringLiteral("Probe test"));
    QLineEdit footer;
    QLineEdit header;
    control.LoadHeaderFooter(&footer, &header);
    EXPECT_EQ(footer.text(), QStringLiteral("Probe test"));
    EXPECT_EQ(header.text(), QStringLiteral("Bench 4"));
}

PageContent letterPage() {
    PageContent page;
    page.paper = QSizeF(8.5, 11);
    page.left = page.right = page.top = page.bottom = 1.0;
    page.picture = solidPicture(480, 240, kBlock);
    page.pictureDpiX = page.pictureDpiY = 96;
    return page;
}

TEST_F(PrintControlTest, PictureAtFullScaleHasItsScreenSizeCentredAtTheTopMargin) {
    const PageGeometry geometry = PageComposer::layout(letterPage(), 0.2);
    EXPECT_DOUBLE_EQ(geometry.picture.width(), 5.0);
    EXPECT_DOUBLE_EQ(geometry.picture.height(), 2.5);
    EXPECT_DOUBLE_EQ(geometry.picture.left(), 1.75);
    EXPECT_DOUBLE_EQ(geometry.picture.top(), 1.0);
    EXPECT_TRUE(geometry.header.isEmpty());
    EXPECT_TRUE(geometry.footer.isEmpty());
}

TEST_F(PrintControlTest, PictureAtHalfScaleIsHalfItsScreenSize) {
    PageContent page = letterPage();
    page.scalePercent = 50;
    const PageGeometry geometry = PageComposer::layout(page, 0.2);
    EXPECT_DOUBLE_EQ(geometry.picture.width(), 2.5);
    EXPECT_DOUBLE_EQ(geometry.picture.height(), 1.25);
    EXPECT_DOUBLE_EQ(geometry.picture.left(), 3.0);
}

TEST_F(PrintControlTest, PictureTooLargeForTheMarginsIsShrunkKeepingItsProportions) {
    PageContent page = letterPage();
    page.scalePercent = 150; // 7.5 in wide, but only 6.5 in lie between the margins
    const PageGeometry geometry = PageComposer::layout(page, 0.2);
    EXPECT_DOUBLE_EQ(geometry.picture.width(), 6.5);
    EXPECT_DOUBLE_EQ(geometry.picture.height(), 3.25);
    EXPECT_DOUBLE_EQ(geometry.picture.left(), 1.0);
}

TEST_F(PrintControlTest, FitToPageModeStretchesThePictureToTheMargins) {
    PageContent page = letterPage();
    page.fitToPage = true;
    page.scalePercent = 10;
    const PageGeometry geometry = PageComposer::layout(page, 0.2);
    EXPECT_DOUBLE_EQ(geometry.picture.width(), 6.5);
    EXPECT_DOUBLE_EQ(geometry.picture.height(), 3.25);
}

TEST_F(PrintControlTest, HeaderSitsOnTheTopMarginAndFooterHangsBelowTheBottomMargin) {
    PageContent page = letterPage();
    page.header = QStringLiteral("H");
    page.footer = QStringLiteral("F");
    const PageGeometry geometry = PageComposer::layout(page, 0.2);
    EXPECT_DOUBLE_EQ(geometry.header.bottom(), 1.0 - PageComposer::kTextGapInches);
    EXPECT_DOUBLE_EQ(geometry.header.height(), 0.2);
    EXPECT_DOUBLE_EQ(geometry.footer.top(), 10.0 + PageComposer::kTextGapInches);
    EXPECT_DOUBLE_EQ(geometry.header.left(), 1.0);
    EXPECT_DOUBLE_EQ(geometry.header.width(), 6.5);
    EXPECT_DOUBLE_EQ(geometry.picture.top(), 1.0);
}

TEST_F(PrintControlTest, TopMarginTooSmallForTheHeaderPushesThePictureDown) {
    PageContent page = letterPage();
    page.top = 0.1;
    page.header = QStringLiteral("H");
    const PageGeometry geometry = PageComposer::layout(page, 0.2);
    EXPECT_DOUBLE_EQ(geometry.header.top(), 0.0);
    EXPECT_DOUBLE_EQ(geometry.picture.top(), 0.2 + PageComposer::kTextGapInches);
}

TEST_F(PrintControlTest, PreviewPageIsDrawnAtTheScreenResolutionWithThePicture) {
    PrintControl control;
    control.printer().setPageSize(QPageSize(QPageSize::A4));
    PictureHolder holder;
    holder.setPicture(solidPicture(480, 240, kBlock));
    control.setPrintPicture(&holder);
    PreviewTarget target;
    ASSERT_TRUE(control.PrintPage(&target));
    const double dpi = screenDpi();
    const double ratio = QGuiApplication::primaryScreen()->devicePixelRatio();
    // A4 is 595 x 842 points.
    EXPECT_EQ(control.PageMetric1(), qRound(595 / 72.0 * dpi * ratio));
    EXPECT_EQ(control.PageMetric2(), qRound(842 / 72.0 * dpi * ratio));
    EXPECT_EQ(target.page.width(), control.PageMetric1());
    EXPECT_EQ(target.page.height(), control.PageMetric2());
    const QRect block = colourBox(target.page, kBlock, 8);
    const double margin = 2.0 / 2.54 * dpi * ratio;
    EXPECT_NEAR(block.top(), margin, 2);
    EXPECT_NEAR(block.width(), 480 * ratio, 2);
    EXPECT_NEAR(block.left(), (target.page.width() - 480 * ratio) / 2, 2);
}

TEST_F(PrintControlTest, PrintWithoutPrinterWritesPdfWithHeaderFooterAndScaledPicture) {
    if (popplerTool("pdftotext").isEmpty() || popplerTool("pdftoppm").isEmpty())
        FAIL() << "poppler-utils (pdftotext, pdftoppm) is required: run scripts/install-deps.sh";
    QTemporaryDir folder;
    const QString pdf = QDir(folder.path()).filePath(QStringLiteral("page.pdf"));
    QString suggested;
    PrintControl::setPdfPathChooser([&](QWidget*, const QString& offered) {
        suggested = offered;
        return pdf;
    });
    PrintControl control;
    control.printer().setPageSize(QPageSize(QPageSize::A4));
    for (int i = 1; i <= 4; ++i)
        control.setMargin(i, 2.54f);
    control.setHeader(QStringLiteral("Zorvik header line"));
    control.setFooter(QStringLiteral("Zorvik footer line"));
    control.setPrintScale(50);
    PictureHolder holder;
    // 480 x 240 screen pixels: 5 x 2.5 inches at 96 dots per inch, printed at half that size.
    holder.setPicture(solidPicture(qRound(5 * screenDpi()), qRound(2.5 * screenDpi()), kBlock));
    control.setPrintPicture(&holder);

    ASSERT_TRUE(control.PrintPage());
    EXPECT_FALSE(control.Cancel());
    EXPECT_TRUE(suggested.endsWith(QStringLiteral("Zorvik.pdf")));
    ASSERT_TRUE(QFile::exists(pdf));

    const QString text = pdfText(pdf);
    EXPECT_TRUE(text.contains(QStringLiteral("Zorvik header line"))) << text.toStdString();
    EXPECT_TRUE(text.contains(QStringLiteral("Zorvik footer line"))) << text.toStdString();

    const QImage page = pdfPage(pdf, 50);
    ASSERT_FALSE(page.isNull());
    EXPECT_NEAR(page.width(), 8.27 * 50, 2);
    EXPECT_NEAR(page.height(), 11.69 * 50, 2);
    const QRect block = colourBox(page, kBlock);
    // 2.5 x 1.25 inches, centred between 1-inch side margins, at the 1-inch top margin.
    EXPECT_NEAR(block.width(), 2.5 * 50, 2);
    EXPECT_NEAR(block.height(), 1.25 * 50, 2);
    EXPECT_NEAR(block.left(), (210 / 25.4 - 2.5) / 2 * 50, 2);
    EXPECT_NEAR(block.top(), 1.0 * 50, 2);
}

TEST_F(PrintControlTest, PdfPrintAtFullScaleFillsFiveInchesOfThePage) {
    if (popplerTool("pdftoppm").isEmpty())
        FAIL() << "poppler-utils (pdftoppm) is required: run scripts/install-deps.sh";
    QTemporaryDir folder;
    const QString pdf = QDir(folder.path()).filePath(QStringLiteral("full.pdf"));
    PrintControl::setPdfPathChooser([&](QWidget*, const QString&) { return pdf; });
    PrintControl control;
    control.printer().setPageSize(QPageSize(QPageSize::Letter));
    control.setMarginUnits(5);
    for (int i = 1; i <= 4; ++i)
        control.setMargin(i, 1.5f);
    PictureHolder holder;
    holder.setPicture(solidPicture(qRound(5 * screenDpi()), qRound(2.5 * screenDpi()), kBlock));
    control.setPrintPicture(&holder);
    ASSERT_TRUE(control.PrintPage());
    const QImage page = pdfPage(pdf, 50);
    const QRect block = colourBox(page, kBlock);
    EXPECT_NEAR(block.width(), 5 * 50, 2);
    EXPECT_NEAR(block.left(), 1.75 * 50, 2);
    EXPECT_NEAR(block.top(), 1.5 * 50, 2);
}

TEST_F(PrintControlTest, CancellingTheSaveDialogCancelsThePrint) {
    bool asked = false;
    PrintControl::setPdfPathChooser([&](QWidget*, const QString&) {
        asked = true;
        return QString();
    });
    PrintControl control;
    EXPECT_TRUE(control.PrintPage());
    EXPECT_TRUE(asked);
    EXPECT_TRUE(control.Cancel());
}

TEST_F(PrintControlTest, PrintToAnUnwritablePlaceFailsAndANewPrintClearsCancel) {
    PrintControl::setPdfPathChooser(
        [](QWidget*, const QString&) { return QStringLiteral("/nonexistent-folder/x/page.pdf"); });
    PrintControl control;
    control.setCancel(true);
    EXPECT_FALSE(control.PrintPage());
    EXPECT_FALSE(control.Cancel());
}

// Side margins that meet leave no room for the picture: instead of a sheet with only its
// header, the user is told, and the print counts as cancelled (no file is asked for).
TEST_F(PrintControlTest, MarginsThatLeaveNoRoomForThePictureAreReportedInsteadOfPrinted) {
    PrintControl control;
    control.setMarginUnits(PrintControl::kUnitInches);
    const double width = control.paperInches().width();
    control.setMargin(1, static_cast<float>(width / 2));
    control.setMargin(2, static_cast<float>(width / 2));
    control.setHeader(QStringLiteral("Header"));
    PictureHolder holder;
    holder.setPicture(solidPicture(480, 240, kBlock));
    control.setPrintPicture(&holder);
    bool asked = false;
    PrintControl::setPdfPathChooser([&](QWidget*, const QString&) {
        asked = true;
        return QString();
    });
    EXPECT_TRUE(control.PrintPage());
    EXPECT_TRUE(control.Cancel());
    EXPECT_FALSE(asked);
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_EQ(messages[0].text, QStringLiteral("The margins leave no room for the picture on this "
                                               "paper.  Make them smaller in Page Setup."));
    EXPECT_EQ(messages[0].title, QStringLiteral("Zorvik"));
    EXPECT_EQ(messages[0].icon, MsgIcon::Exclamation);
    EXPECT_EQ(messages[0].buttons, QMessageBox::Ok);

    // A top and bottom margin that meet do the same; margins with room print again.
    control.setMargin(1, 1.0f);
    control.setMargin(2, 1.0f);
    control.setMargin(3, static_cast<float>(control.paperInches().height() - 0.5));
    EXPECT_TRUE(control.PrintPage());
    EXPECT_EQ(messages.size(), 2u);
    control.setMargin(3, 1.0f);
    EXPECT_TRUE(control.PrintPage());
    EXPECT_TRUE(asked);
    EXPECT_EQ(messages.size(), 2u);
}

// The PDF file is first offered in the Documents folder, or in the home folder when there is
// no Documents folder.
TEST_F(PrintControlTest, ThePdfFileIsOfferedInDocumentsOrElseInTheHomeFolder) {
    QTemporaryDir home;
    const QByteArray oldHome = qgetenv("HOME");
    const QByteArray oldConfig = qgetenv("XDG_CONFIG_HOME");
    qputenv("HOME", home.path().toLocal8Bit());
    qputenv("XDG_CONFIG_HOME", home.filePath(".config").toLocal8Bit());
    QString offered;
    PrintControl::setPdfPathChooser([&](QWidget*, const QString& suggested) {
        offered = suggested;
        return QString();
    });
    {
        PrintControl control;
        control.PrintPage();
        EXPECT_EQ(offered, QDir(home.path()).filePath("Zorvik.pdf"));
    }
    ASSERT_TRUE(QDir(home.path()).mkdir("Documents"));
    {
        PrintControl control;
        control.PrintPage();
        EXPECT_EQ(offered, QDir(home.path()).filePath("Documents/Zorvik.pdf"));
    }
    qputenv("HOME", oldHome);
    if (oldConfig.isNull())
        qunsetenv("XDG_CONFIG_HOME");
    else
        qputenv("XDG_CONFIG_HOME", oldConfig);
}

} // namespace
} // namespace zorvik::test
