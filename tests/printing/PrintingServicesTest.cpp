// The PRINT button's routine: capture of the main window, kept margins, the preview, printing.
#include "printing/PrintingServices.h"
#include "printing/CaptureHolder.h"
#include "printing/PrintingTestSupport.h"
#include "printing/frmPreview.h"
#include "support/ModalRunner.h"
#include "support/OpenForms.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QPageSize>
#include <QPalette>
#include <QScreen>
#include <QTemporaryDir>
#include <QToolBar>
#include <gtest/gtest.h>

namespace zorvik::test {
namespace {

const QColor kPanel(200, 30, 40);

class PrintingServicesTest : public PrintingTest {
protected:
    void SetUp() override {
        PrintingTest::SetUp();
        mainWindow.setObjectName(QStringLiteral("frmMain"));
        mainWindow.setAutoFillBackground(true);
        QPalette palette = mainWindow.palette();
        palette.setColor(QPalette::Window, kPanel);
        mainWindow.setPalette(palette);
        mainWindow.resize(480, 240);
        mainWindow.show();
    }

    QWidget mainWindow;
};

TEST_F(PrintingServicesTest, KeptMarginsStartAtThePrintControlsMargins) {
    PrintingServices services;
    for (int i = 1; i <= 4; ++i)
        EXPECT_FLOAT_EQ(services.keptMargin(i), services.EasyPrint1().Margin(i)) << i;
}

TEST_F(PrintingServicesTest, PrintCapturesTheMainWindowAndOpensThePreviewWithTheKeptMargins) {
    PrintingServices services;
    for (int i = 1; i <= 4; ++i)
        services.setKeptMargin(i, 1.0f * i);
    EXPECT_EQ(services.capture(), nullptr);

    int runs = 0;
    setModalRunner([&](QDialog& dialog) {
        ++runs;
        EXPECT_EQ(dialog.objectName(), QStringLiteral("frmPreview"));
        EXPECT_EQ(dialog.parentWidget(), &mainWindow);
        EXPECT_EQ(QApplication::overrideCursor(), nullptr); // restored by the preview
        const QImage& picture = services.pictureHolder().Picture();
        EXPECT_EQ(picture.size(), QSize(480, 240) * mainWindow.devicePixelRatio());
        EXPECT_EQ(QColor(picture.pixel(5, 5)), kPanel);
        for (int i = 1; i <= 4; ++i)
            EXPECT_FLOAT_EQ(services.EasyPrint1().Margin(i), 1.0f * i) << i;
        EXPECT_EQ(services.EasyPrint1().PrintPicture(), &services.pictureHolder());
        return 0;
    });
    services.printButtonReleased(&mainWindow);
    EXPECT_EQ(runs, 1);
    EXPECT_NE(services.capture(), nullptr);
    EXPECT_FALSE(services.captureHolder().hasPicture());
}

TEST_F(PrintingServicesTest, PrintDoesNothingWhileAPreviewIsOpen) {
    PrintingServices services;
    frmPreview open(services);
    open.show();
    ASSERT_TRUE(formOpen(QStringLiteral("frmPreview")));
    int runs = 0;
    setModalRunner([&](QDialog&) { return ++runs; });
    services.printButtonReleased(&mainWindow);
    EXPECT_EQ(runs, 0);
    EXPECT_EQ(services.capture(), nullptr);
    EXPECT_TRUE(services.pictureHolder().isEmpty());
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    open.close();
    EXPECT_FALSE(formOpen(QStringLiteral("frmPreview")));
}

TEST_F(PrintingServicesTest, MarginsLeftInThePreviewAreWhereTheNextPrintStarts) {
    PrintingServices services;
    int runs = 0;
    setModalRunner([&](QDialog& dialog) {
        ++runs;
        if (runs == 1) {
            dialog.show();
            for (int i = 1; i <= 4; ++i)
                services.EasyPrint1().setMargin(i, 0.25f * i);
            dialog.close();
        } else {
            for (int i = 1; i <= 4; ++i)
                EXPECT_FLOAT_EQ(services.EasyPrint1().Margin(i), 0.25f * i) << i;
        }
        return 0;
    });
    services.printButtonReleased(&mainWindow);
    services.EasyPrint1().setMargin(2, 9.0f); // changed behind the preview's back
    services.printButtonReleased(&mainWindow);
    EXPECT_EQ(runs, 2);
}

TEST_F(PrintingServicesTest, PrintFromThePreviewPutsTheMainWindowOnThePdfPage) {
    if (popplerTool("pdftoppm").isEmpty())
        FAIL() << "poppler-utils (pdftoppm) is required: run scripts/install-deps.sh";
    QTemporaryDir folder;
    const QString pdf = QDir(folder.path()).filePath(QStringLiteral("window.pdf"));
    PrintControl::setPdfPathChooser([&](QWidget*, const QString&) { return pdf; });
    PrintingServices services;
    services.EasyPrint1().printer().setPageSize(QPageSize(QPageSize::A4));
    for (int i = 1; i <= 4; ++i)
        services.setKeptMargin(i, 2.54f);
    setModalRunner([](QDialog& dialog) {
        dialog.show();
        dialog.findChild<QToolBar*>(QStringLiteral("tb"))
            ->findChild<QAction*>(QStringLiteral("Print"))
            ->trigger();
        return dialog.result();
    });
    services.printButtonReleased(&mainWindow);
    const QImage page = pdfPage(pdf, 50);
    ASSERT_FALSE(page.isNull());
    const QRect block = colourBox(page, kPanel);
    const double inchesWide = 480.0 / mainWindow.screen()->logicalDotsPerInchX();
    EXPECT_NEAR(block.width(), inchesWide * 50, 2);
    EXPECT_NEAR(block.left(), (595 / 72.0 - inchesWide) / 2 * 50, 2);
    EXPECT_NEAR(block.top(), 50, 2);
}

} // namespace
} // namespace zorvik::test
