// The print preview: controls, zoom, fitting, scroll bars, drawing, toolbar and closing.
#include "printing/PreviewPictureBox.h"
#include "printing/PrintingServices.h"
#include "printing/PrintingTestSupport.h"
#include "printing/frmPreview.h"
#include "support/ModalRunner.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QFrame>
#include <QGuiApplication>
#include <QPageSize>
#include <QScreen>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QToolBar>
#include <gtest/gtest.h>

namespace zorvik::test {
namespace {

const QColor kBlock(20, 200, 60);

class PreviewTest : public PrintingTest {
protected:
    void SetUp() override {
        PrintingTest::SetUp();
        services = std::make_unique<PrintingServices>();
        services->EasyPrint1().printer().setPageSize(QPageSize(QPageSize::A4));
        services->pictureHolder().setPicture(solidPicture(480, 240, kBlock));
    }
    void TearDown() override {
        services.reset();
        PrintingTest::TearDown();
    }

    template <typename T> static T* child(QWidget& form, const char* name) {
        return form.findChild<T*>(QString::fromLatin1(name));
    }
    static void chooseZoomRow(frmPreview& preview, int row) {
        auto* list = child<QComboBox>(preview, "cboZoom");
        list->setCurrentIndex(row);
        emit list->activated(row);
    }
    static QAction* toolbarButton(frmPreview& preview, const char* key) {
        return child<QToolBar>(preview, "tb")->findChild<QAction*>(QString::fromLatin1(key));
    }
    /// Width and height of the A4 sheet on this screen at `zoom` per cent.
    static QSize sheetAt(int zoom) {
        const QScreen* screen = QGuiApplication::primaryScreen();
        return QSize(qRound(595 / 72.0 * screen->logicalDotsPerInchX() * zoom / 100.0),
                     qRound(842 / 72.0 * screen->logicalDotsPerInchY() * zoom / 100.0));
    }

    std::unique_ptr<PrintingServices> services;
};

TEST_F(PreviewTest, ShowsTheToolbarZoomListPictureBoxAndScrollBars) {
    frmPreview preview(*services);
    EXPECT_EQ(preview.objectName(), QStringLiteral("frmPreview"));
    EXPECT_EQ(preview.windowTitle(), QStringLiteral("Print Preview"));
    EXPECT_TRUE(preview.isModal());
    ASSERT_NE(toolbarButton(preview, "Print"), nullptr);
    ASSERT_NE(toolbarButton(preview, "PSetup"), nullptr);
    ASSERT_NE(child<QFrame>(preview, "fraZoom"), nullptr);
    auto* list = child<QComboBox>(preview, "cboZoom");
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->parentWidget(), child<QFrame>(preview, "fraZoom"));
    QStringList rows;
    for (int i = 0; i < list->count(); ++i)
        rows << list->itemText(i);
    EXPECT_EQ(rows, (QStringList{"25%", "50%", "75%", "100%"}));
    EXPECT_NE(child<PreviewPictureBox>(preview, "pb"), nullptr);
    EXPECT_NE(child<QScrollBar>(preview, "hsc"), nullptr);
    EXPECT_NE(child<QScrollBar>(preview, "vsc"), nullptr);
}

TEST_F(PreviewTest, LoadingHandsThePictureAndLeftMarginToThePrintControlAndRestoresThePointer) {
    services->setKeptMargin(1, 1.5f);
    QApplication::setOverrideCursor(Qt::WaitCursor);
    frmPreview preview(*services);
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    PrintControl& control = services->EasyPrint1();
    EXPECT_EQ(control.PrintPicture(), &services->pictureHolder());
    EXPECT_FLOAT_EQ(control.Margin(1), 1.5f);
    EXPECT_GT(control.PageMetric1(), 0);
    EXPECT_EQ(preview.previewTarget().page.width(), control.PageMetric1());
    EXPECT_EQ(preview.zoom(), 100);
    EXPECT_EQ(preview.keptZoomRow(), 3);
    EXPECT_EQ(child<QComboBox>(preview, "cboZoom")->currentText(), QStringLiteral("100%"));
}

TEST_F(PreviewTest, PageIsDrawnAtItsRealSizeWithThePictureOnIt) {
    frmPreview preview(*services);
    preview.resize(1000, 1400);
    preview.show();
    const QImage drawn = preview.pictureBox()->image();
    const QRect sheet = colourBox(drawn, Qt::white, 0);
    EXPECT_NEAR(sheet.width(), sheetAt(100).width() * drawn.devicePixelRatio(), 2);
    EXPECT_NEAR(sheet.height(), sheetAt(100).height() * drawn.devicePixelRatio(), 2);
    const QRect block = colourBox(drawn, kBlock, 8);
    EXPECT_NEAR(block.width(), 480 * drawn.devicePixelRatio(), 2);
    EXPECT_TRUE(sheet.contains(block));
}

TEST_F(PreviewTest, ChoosingTheZoomRowAlreadyCurrentChangesNothing) {
    frmPreview preview(*services);
    preview.show();
    const QSize size = preview.pictureBox()->size();
    const qint64 image = preview.pictureBox()->image().cacheKey();
    chooseZoomRow(preview, 3);
    EXPECT_EQ(preview.zoom(), 100);
    EXPECT_EQ(preview.pictureBox()->size(), size);
    EXPECT_EQ(preview.pictureBox()->image().cacheKey(), image);
}

TEST_F(PreviewTest, HalfZoomDrawsTheSheetAtHalfSize) {
    frmPreview preview(*services);
    preview.show();
    chooseZoomRow(preview, 1);
    EXPECT_EQ(preview.zoom(), 50);
    EXPECT_EQ(preview.keptZoomRow(), 1);
    const QImage drawn = preview.pictureBox()->image();
    const QRect sheet = colourBox(drawn, Qt::white, 0);
    EXPECT_NEAR(sheet.width(), sheetAt(50).width() * drawn.devicePixelRatio(), 2);
}

TEST_F(PreviewTest, SmallBoxIsEnlargedToTheViewportAndZoomRecordedAs100WithoutAFurtherResize) {
    frmPreview preview(*services);
    preview.resize(1000, 1400);
    preview.show();
    chooseZoomRow(preview, 1);
    ASSERT_EQ(preview.zoom(), 50);
    preview.pictureBox()->resize(300, 200);
    preview.FitPage();
    // Exactly the viewport: a resize at the recorded zoom would have doubled the box.
    EXPECT_EQ(preview.pictureBox()->size(), QSize(1000, 1400 - preview.toolbarHeight()));
    EXPECT_EQ(preview.zoom(), 100);
    EXPECT_EQ(child<QComboBox>(preview, "cboZoom")->currentText(), QStringLiteral("100%"));
    EXPECT_EQ(preview.keptZoomRow(), 1);
}

// Below 100 % the sheet is smaller than the window: it stands in the middle of the viewport,
// not in its top-left corner, and no scroll bar shows.
TEST_F(PreviewTest, AtLowZoomTheSheetStandsCentredInTheViewport) {
    frmPreview preview(*services);
    preview.resize(1000, 1400);
    preview.show();
    for (int row : {1, 0, 2}) {
        chooseZoomRow(preview, row);
        const QSize viewport(1000, 1400 - preview.toolbarHeight());
        EXPECT_EQ(preview.pictureBox()->size(), viewport) << row;
        EXPECT_EQ(preview.pictureBox()->pos(), QPoint(0, preview.toolbarHeight())) << row;
        EXPECT_FALSE(child<QScrollBar>(preview, "hsc")->isVisibleTo(&preview)) << row;
        EXPECT_FALSE(child<QScrollBar>(preview, "vsc")->isVisibleTo(&preview)) << row;
        const QImage drawn = preview.pictureBox()->image();
        const QRectF sheet = QRectF(colourBox(drawn, Qt::white, 0));
        const QPointF centre = sheet.center() / drawn.devicePixelRatio();
        EXPECT_NEAR(centre.x(), viewport.width() / 2.0, 2.0) << row;
        EXPECT_NEAR(centre.y(), viewport.height() / 2.0, 2.0) << row;
    }
}

// Turning the page to landscape makes it wider and lower: the picture box follows the page,
// so the sheet starts just below the toolbar and no vertical scroll bar is left over from the
// taller portrait page.
TEST_F(PreviewTest, AfterTurningToLandscapeThePictureBoxIsSizedToThePage) {
    frmPreview preview(*services);
    preview.resize(700, 600);
    preview.show();
    const QSize portrait = preview.pictureBox()->size();
    ASSERT_GT(portrait.height(), 600); // the A4 sheet at 100 % needs the vertical bar

    services->EasyPrint1().printer().setPageOrientation(QPageLayout::Landscape);
    preview.PreviewRefresh();

    const QSize sheet = sheetAt(100).transposed();
    const QSize box = preview.pictureBox()->size();
    EXPECT_LT(box.height(), portrait.height());
    EXPECT_GT(box.width(), portrait.width());
    // The box is the sheet with its grey border (the landscape A4 sheet is wider and taller
    // than this window, so both scroll bars show), and scrolled to the top it begins with the
    // sheet's border, not with a band of grey.
    EXPECT_NEAR(box.width(), sheet.width() + 2 * frmPreview::kSheetPad, 1);
    EXPECT_NEAR(box.height(), sheet.height() + 2 * frmPreview::kSheetPad, 1);
    child<QScrollBar>(preview, "vsc")->setValue(0);
    const QImage drawn = preview.pictureBox()->image();
    const QRect white = colourBox(drawn, Qt::white, 0);
    EXPECT_NEAR(white.top() / drawn.devicePixelRatio(), frmPreview::kSheetPad, 2);
    EXPECT_NEAR(white.height() / drawn.devicePixelRatio(), sheet.height(), 2);
}

TEST_F(PreviewTest, MinimisedPreviewNeitherFitsNorRedraws) {
    frmPreview preview(*services);
    preview.show();
    preview.showMinimized();
    ASSERT_TRUE(preview.isMinimized());
    preview.pictureBox()->resize(10, 10);
    const qint64 image = preview.pictureBox()->image().cacheKey();
    preview.Form_Resize();
    EXPECT_EQ(preview.pictureBox()->size(), QSize(10, 10));
    EXPECT_EQ(preview.pictureBox()->image().cacheKey(), image);

    const qint64 page = preview.previewTarget().page.cacheKey();
    services->EasyPrint1().setHeader(QStringLiteral("changed"));
    preview.PreviewRefresh();
    EXPECT_NE(preview.previewTarget().page.cacheKey(), page); // the page is made again
    EXPECT_EQ(preview.pictureBox()->size(), QSize(10, 10));   // but not fitted or drawn
    EXPECT_EQ(preview.pictureBox()->image().cacheKey(), image);
}

TEST_F(PreviewTest, PageWiderButNotTallerThanTheViewportShowsOnlyTheHorizontalBar) {
    frmPreview preview(*services);
    preview.resize(400, 1400);
    preview.show();
    EXPECT_EQ(preview.layoutCode(), 2);
    auto* hsc = child<QScrollBar>(preview, "hsc");
    auto* vsc = child<QScrollBar>(preview, "vsc");
    EXPECT_TRUE(hsc->isVisibleTo(&preview));
    EXPECT_FALSE(vsc->isVisibleTo(&preview));
    EXPECT_EQ(hsc->geometry(), QRect(0, 1400 - hsc->height(), 400, hsc->height()));
    EXPECT_EQ(preview.pictureBox()->y(), preview.toolbarHeight());
}

TEST_F(PreviewTest, PageTallerButNotWiderShowsOnlyTheVerticalBar) {
    frmPreview preview(*services);
    preview.resize(1000, 500);
    preview.show();
    EXPECT_EQ(preview.layoutCode(), 1);
    EXPECT_TRUE(child<QScrollBar>(preview, "vsc")->isVisibleTo(&preview));
    EXPECT_FALSE(child<QScrollBar>(preview, "hsc")->isVisibleTo(&preview));
}

TEST_F(PreviewTest, PageLargerBothWaysShowsBothBarsAndTheyMoveThePictureBox) {
    frmPreview preview(*services);
    preview.resize(400, 500);
    preview.show();
    EXPECT_EQ(preview.layoutCode(), 3);
    auto* hsc = child<QScrollBar>(preview, "hsc");
    auto* vsc = child<QScrollBar>(preview, "vsc");
    EXPECT_TRUE(hsc->isVisibleTo(&preview));
    EXPECT_TRUE(vsc->isVisibleTo(&preview));
    vsc->setValue(50);
    EXPECT_EQ(preview.pictureBox()->y(), preview.toolbarHeight() - 50 * preview.verticalStep());
    hsc->setValue(30);
    EXPECT_EQ(preview.pictureBox()->x(), -30 * preview.horizontalStep());
}

TEST_F(PreviewTest, HugeBoxScrollsInPowerOfTwoStepsWithinTheBarsRange) {
    frmPreview preview(*services);
    preview.resize(400, 500);
    preview.show();
    preview.pictureBox()->resize(500, 70000);
    preview.SetScrollBars(1);
    EXPECT_EQ(preview.verticalStep(), 4);
    EXPECT_LE(child<QScrollBar>(preview, "vsc")->maximum(), 32767);
    preview.pictureBox()->resize(140000, 500);
    preview.SetScrollBars(2);
    EXPECT_EQ(preview.horizontalStep(), 8);
    EXPECT_LE(child<QScrollBar>(preview, "hsc")->maximum(), 32767);
}

TEST_F(PreviewTest, ClosingCopiesTheFourMarginsBackForTheNextPrint) {
    frmPreview preview(*services);
    preview.show();
    for (int i = 1; i <= 4; ++i)
        services->EasyPrint1().setMargin(i, 0.5f * i);
    preview.close();
    for (int i = 1; i <= 4; ++i)
        EXPECT_FLOAT_EQ(services->keptMargin(i), 0.5f * i) << i;
}

TEST_F(PreviewTest, PageImageTooLargeShowsTheMessageAndLeavesThePreviewAsItIs) {
    frmPreview preview(*services);
    preview.show();
    const qint64 image = preview.pictureBox()->image().cacheKey();
    const QSize size = preview.pictureBox()->size();
    frmPreview::setMaxPageImageBytes(1000);
    EXPECT_FALSE(preview.DrawPage());
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_EQ(
        messages[0].text,
        QStringLiteral("Picture too large.  Try reducing picture size or PreviewZoom Level."));
    EXPECT_EQ(messages[0].buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
    EXPECT_EQ(messages[0].icon, MsgIcon::None);
    EXPECT_EQ(preview.pictureBox()->image().cacheKey(), image);
    EXPECT_EQ(preview.pictureBox()->size(), size);
    EXPECT_TRUE(preview.isVisible());
}

TEST_F(PreviewTest, ToolbarPrintPrintsThePageAndClosesThePreview) {
    QTemporaryDir folder;
    const QString pdf = QDir(folder.path()).filePath(QStringLiteral("toolbar.pdf"));
    PrintControl::setPdfPathChooser([&](QWidget*, const QString&) { return pdf; });
    frmPreview preview(*services);
    preview.show();
    toolbarButton(preview, "Print")->trigger();
    EXPECT_TRUE(QFile::exists(pdf));
    EXPECT_FALSE(preview.isVisible());
}

TEST_F(PreviewTest, FailedToolbarPrintSetsCancelAndKeepsThePreviewOpen) {
    PrintControl::setPdfPathChooser(
        [](QWidget*, const QString&) { return QStringLiteral("/nonexistent-folder/x/p.pdf"); });
    frmPreview preview(*services);
    preview.show();
    toolbarButton(preview, "Print")->trigger();
    EXPECT_TRUE(services->EasyPrint1().Cancel());
    EXPECT_TRUE(preview.isVisible());
    EXPECT_TRUE(messages.empty());
}

TEST_F(PreviewTest, ToolbarPageSetupOpensThePageSetupModally) {
    QStringList opened;
    QWidget* owner = nullptr;
    setModalRunner([&](QDialog& dialog) {
        opened << dialog.objectName();
        owner = dialog.parentWidget();
        return 0;
    });
    frmPreview preview(*services);
    preview.show();
    toolbarButton(preview, "PSetup")->trigger();
    EXPECT_EQ(opened, QStringList{QStringLiteral("frmPageSetup")});
    EXPECT_EQ(owner, &preview);
    EXPECT_TRUE(preview.isVisible());
}

TEST_F(PreviewTest, RefreshDrawsTheNewSettingsAndRestoresTheChosenZoom) {
    frmPreview preview(*services);
    preview.resize(1000, 1400);
    preview.show();
    chooseZoomRow(preview, 1);
    const qint64 page = preview.previewTarget().page.cacheKey();
    services->EasyPrint1().setPrintScale(50);
    preview.PreviewRefresh();
    EXPECT_NE(preview.previewTarget().page.cacheKey(), page);
    EXPECT_EQ(preview.zoom(), 50);
    EXPECT_EQ(child<QComboBox>(preview, "cboZoom")->currentText(), QStringLiteral("50%"));
    const QImage drawn = preview.pictureBox()->image();
    EXPECT_NEAR(colourBox(drawn, kBlock, 8).width(), 480 / 4 * drawn.devicePixelRatio(), 2);
}

} // namespace
} // namespace zorvik::test
