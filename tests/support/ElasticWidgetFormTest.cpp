// The elastic layout on real Qt forms: marked widgets, a LineControl and fonts follow the
// form's size; the minimum size, the swallowed first resize and a maximised form at Init.
#include "support/ElasticWidgetForm.h"
#include "support/LineControl.h"
#include "support/TextFit.h"
#include "support/Twips.h"
#include "support/class_Elastic.h"

#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QTest>
#include <QTextEdit>
#include <gtest/gtest.h>
#include <memory>

namespace zorvik::test {
namespace {

QWidget* mark(QWidget* widget) {
    widget->setProperty(ElasticWidgetForm::kControlProperty, true);
    return widget;
}

// A form with an 800 x 600 pixel client area: 12000 x 9400 twips outer, the height counting
// 400 twips for the caption and borders.
class ElasticWidgetFormTest : public ::testing::Test {
protected:
    ElasticWidgetFormTest() {
        form = std::make_unique<QWidget>();
        form->resize(800, 600);
        label = new QLabel("CH A", form.get());
        label->setGeometry(100, 100, 200, 40);
        QFont font = label->font();
        font.setPointSize(8);
        label->setFont(font);
        mark(label);
        line = new LineControl(form.get());
        line->setEndPoints(0, 4000, 12000, 4000);
        mark(line);
        unmarked = new QPushButton("free", form.get());
        unmarked->setGeometry(10, 10, 50, 20);
        adapter = std::make_unique<ElasticWidgetForm>(form.get());
    }

    void initAndSwallow() {
        elastic.Init(*adapter);
        elastic.FormResize(*adapter);
    }

    std::unique_ptr<QWidget> form;
    QLabel* label = nullptr;
    LineControl* line = nullptr;
    QPushButton* unmarked = nullptr;
    std::unique_ptr<ElasticWidgetForm> adapter;
    class_Elastic elastic;
};

TEST_F(ElasticWidgetFormTest, FormSizeAndControlGeometryReadInTwips) {
    EXPECT_EQ(adapter->formWidth(), 12000);
    EXPECT_EQ(adapter->formHeight(), 9400);
    ASSERT_EQ(adapter->controlCount(), 2);
    EXPECT_EQ(adapter->property(0, ElasticProperty::Top), 1500);
    EXPECT_EQ(adapter->property(0, ElasticProperty::Width), 3000);
    EXPECT_EQ(adapter->property(0, ElasticProperty::FontSize), 8);
    EXPECT_TRUE(adapter->isLine(1));
    EXPECT_EQ(adapter->property(1, ElasticProperty::Y1), 4000);
    EXPECT_THROW(adapter->property(0, ElasticProperty::RightMargin), PropertyMissing);
    EXPECT_THROW(adapter->property(0, ElasticProperty::X1), PropertyMissing);
    EXPECT_THROW(adapter->property(1, ElasticProperty::FontSize), PropertyMissing);
    EXPECT_THROW(adapter->property(2, ElasticProperty::Top), PropertyMissing);
}

TEST_F(ElasticWidgetFormTest, EnlargedFormScalesControlsLineAndFont) {
    initAndSwallow();
    form->resize(1000, 750); // 15000 x 11650 twips: both factors 0.8
    elastic.FormResize(*adapter);

    EXPECT_EQ(label->geometry(), QRect(125, 125, 250, 50));
    EXPECT_EQ(label->font().pointSizeF(), 10.0);
    EXPECT_EQ(line->Y1(), 5000);
    EXPECT_EQ(line->X1(), 0);
    EXPECT_EQ(line->X2(), 15000);
    EXPECT_EQ(line->Y2(), 5000);
    EXPECT_EQ(line->startPixel(), QPoint(0, 333));
    EXPECT_EQ(line->endPixel(), QPoint(1000, 333));
    EXPECT_TRUE(line->geometry().contains(QPoint(500, 333)));
    EXPECT_EQ(unmarked->geometry(), QRect(10, 10, 50, 20));
    EXPECT_EQ(form->size(), QSize(1000, 750));
}

TEST_F(ElasticWidgetFormTest, FirstResizeAfterInitLeavesTheControlsAlone) {
    elastic.Init(*adapter);
    form->resize(1000, 750);
    elastic.FormResize(*adapter);

    EXPECT_EQ(label->geometry(), QRect(100, 100, 200, 40));
    EXPECT_EQ(label->font().pointSize(), 8);
    EXPECT_EQ(line->Y1(), 4000);
    EXPECT_TRUE(form->property(ElasticWidgetForm::kAutoRedrawProperty).toBool());
}

TEST_F(ElasticWidgetFormTest, FormNarrowerThanHalfIsWidenedToHalfAndKeepsItsHeight) {
    initAndSwallow();
    form->resize(300, 500);
    elastic.FormResize(*adapter);

    EXPECT_EQ(form->size(), QSize(400, 500));
}

TEST_F(ElasticWidgetFormTest, FormLowerThanHalfIsRaisedToHalfAndKeepsItsWidth) {
    initAndSwallow();
    form->resize(900, 200);
    elastic.FormResize(*adapter);

    // Half of 9400 twips outer is 4700, a client height of 4300 twips.
    EXPECT_EQ(form->size(), QSize(900, 287));
}

TEST_F(ElasticWidgetFormTest, WidgetMarkedAfterInitIsNotManaged) {
    initAndSwallow();
    auto* late = mark(new QLabel("late", form.get()));
    late->setGeometry(300, 300, 100, 20);
    form->resize(1000, 750);
    elastic.FormResize(*adapter);

    EXPECT_EQ(late->geometry(), QRect(300, 300, 100, 20));
    EXPECT_EQ(label->geometry().left(), 125);
}

TEST_F(ElasticWidgetFormTest, ControlsKeepTheirIndexWhenRaisedOrDeleted) {
    ASSERT_EQ(adapter->controls(), (QList<QWidget*>{label, line}));
    label->raise(); // moves the label to the end of the form's children
    auto* late = mark(new QLabel("late", form.get()));
    EXPECT_EQ(adapter->controls(), (QList<QWidget*>{label, line, late}));

    delete label;
    EXPECT_EQ(adapter->controlCount(), 3);
    EXPECT_THROW(adapter->property(0, ElasticProperty::Top), PropertyMissing);
    EXPECT_TRUE(adapter->isLine(1));
}

TEST_F(ElasticWidgetFormTest, NestedControlUsesGeometryRelativeToItsParent) {
    auto* frame = mark(new QWidget(form.get()));
    frame->setGeometry(400, 300, 300, 200);
    auto* inner = mark(new QLabel("inner", frame));
    inner->setGeometry(20, 40, 100, 20);
    initAndSwallow();
    form->resize(1000, 600); // width factor 0.8, height factor 1
    elastic.FormResize(*adapter);

    EXPECT_EQ(frame->geometry(), QRect(500, 300, 375, 200));
    EXPECT_EQ(inner->geometry(), QRect(25, 40, 125, 20));
}

TEST_F(ElasticWidgetFormTest, TextBoxWithFixedWrapWidthHasARightMarginScaledByHeight) {
    auto* text = new QTextEdit(form.get());
    text->setLineWrapMode(QTextEdit::FixedPixelWidth);
    text->setLineWrapColumnOrWidth(200);
    mark(text);
    auto* plain = mark(new QTextEdit(form.get()));
    ASSERT_EQ(adapter->controlCount(), 4);
    EXPECT_EQ(adapter->property(2, ElasticProperty::RightMargin), 3000);
    EXPECT_THROW(adapter->property(3, ElasticProperty::RightMargin), PropertyMissing);

    initAndSwallow();
    form->resize(1000, 750);
    elastic.FormResize(*adapter);
    // 3000 twips over the height factor 0.8: 3750 twips, 250 pixels.
    EXPECT_EQ(text->lineWrapColumnOrWidth(), 250);
    EXPECT_EQ(plain->property("lineWrapColumnOrWidth").toInt(), 0);
}

TEST_F(ElasticWidgetFormTest, FontSizedInPixelsHasNoFontSize) {
    QFont font = label->font();
    font.setPixelSize(12);
    label->setFont(font);
    EXPECT_THROW(adapter->property(0, ElasticProperty::FontSize), PropertyMissing);
}

TEST_F(ElasticWidgetFormTest, NegativeSizesAndZeroFontsAreRefused) {
    EXPECT_THROW(adapter->setProperty(0, ElasticProperty::Width, -15), PropertyInvalid);
    EXPECT_THROW(adapter->setProperty(0, ElasticProperty::FontSize, 0), PropertyInvalid);
    EXPECT_THROW(adapter->setProperty(0, ElasticProperty::Top, 1e12), PropertyInvalid);
    EXPECT_EQ(label->geometry(), QRect(100, 100, 200, 40));
    EXPECT_EQ(label->font().pointSize(), 8);
}

TEST_F(ElasticWidgetFormTest, LayoutAfterTheWindowGetsItsFrameStillFitsTheClientArea) {
    initAndSwallow();
    form->show(); // the window system now draws a frame around the client area
    ASSERT_TRUE(QTest::qWaitForWindowExposed(form.get()));
    form->resize(1000, 750);
    elastic.FormResize(*adapter);
    form->resize(800, 600);
    elastic.FormResize(*adapter);

    EXPECT_EQ(label->geometry(), QRect(100, 100, 200, 40));
    EXPECT_EQ(line->Y1(), 4000);
    EXPECT_EQ(line->X2(), 12000);
}

TEST_F(ElasticWidgetFormTest, OuterSizeIsTheClientSizePlusTheCaptionAllowanceShownOrNot) {
    form->resize(640, 480);
    EXPECT_EQ(adapter->formWidth(), 9600);
    EXPECT_EQ(adapter->formHeight(), 7200 + 400);
    form->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(form.get()));
    EXPECT_EQ(adapter->formWidth(), 9600);
    EXPECT_EQ(adapter->formHeight(), 7200 + 400);

    adapter->setFormWidth(12000);
    adapter->setFormHeight(9400);
    EXPECT_EQ(form->size(), QSize(800, 600));
}

TEST_F(ElasticWidgetFormTest, WindowStatePassedAtInitSizesTheFormToTheScreen) {
    const QRect screen = form->screen()->geometry();
    elastic.Init(*adapter, 2);

    EXPECT_EQ(form->width(), screen.width());
    EXPECT_EQ(form->height(), twipsToPixels(screen.height() * 15 - 400));
    EXPECT_EQ(elastic.designWidth(), screen.width() * 15);
    EXPECT_NEAR(elastic.designHeight(), screen.height() * 15, 8);
}

// A form twice as wide but no taller asks for type twice as large (8 pt becomes 16 pt) in a
// label as tall as before: the label shows the largest type that fits its height, while the
// layout still holds the size it gave.
TEST_F(ElasticWidgetFormTest, TypeTooTallForItsLabelIsShownAsLargeAsFits) {
    label->setGeometry(100, 100, 200, 16);
    ASSERT_LE(QFontMetricsF(label->font()).height(), 16);
    initAndSwallow();
    form->resize(1600, 600);
    elastic.FormResize(*adapter);

    EXPECT_EQ(adapter->property(0, ElasticProperty::FontSize), 16);
    EXPECT_EQ(label->property(ElasticWidgetForm::kFontSizeProperty).toDouble(), 16);
    const double shown = label->font().pointSizeF();
    EXPECT_LT(shown, 16);
    EXPECT_GE(shown, 8);
    // The largest quarter point that fits: a quarter point more would not.
    EXPECT_LE(QFontMetricsF(label->font()).height(), label->contentsRect().height());
    QFont larger = label->font();
    larger.setPointSizeF(shown + 0.25);
    EXPECT_GT(QFontMetricsF(larger).height(), label->contentsRect().height());
}

TEST_F(ElasticWidgetFormTest, TypeThatFitsIsShownAtTheSizeTheLayoutGives) {
    initAndSwallow();
    form->resize(1000, 750);
    elastic.FormResize(*adapter);
    EXPECT_EQ(label->font().pointSizeF(), 10);
    EXPECT_EQ(adapter->property(0, ElasticProperty::FontSize), 10);
}

// A label's widest text counts too: a readout sized for its longest reading.
TEST_F(ElasticWidgetFormTest, ALabelsWidestTextChoosesItsType) {
    label->setProperty(TextFit::kWidestTextProperty, QString(40, QLatin1Char('M')));
    initAndSwallow();
    form->resize(1000, 750);
    elastic.FormResize(*adapter);
    EXPECT_LT(label->font().pointSizeF(), 10);
    EXPECT_LE(QFontMetricsF(label->font()).horizontalAdvance(QString(40, QLatin1Char('M'))),
              label->contentsRect().width());
}

// Neighbours that meet in twips meet in pixels: each edge is rounded, not place and size on
// their own (which at some sizes would make the upper one a pixel too tall).
TEST_F(ElasticWidgetFormTest, NeighboursThatMeetNeverOverlapByAPixel) {
    auto* below = mark(new QLabel("below", form.get()));
    below->setGeometry(100, 140, 200, 40); // starts where `label` ends
    initAndSwallow();
    for (int height = 600; height <= 1400; height += 7) {
        form->resize(800, height);
        elastic.FormResize(*adapter);
        EXPECT_EQ(label->geometry().bottom() + 1, below->geometry().top()) << height;
    }
}

TEST(ElasticWidgetFormShown, FormMaximisedAtInitTakesTheScreenFillingSizeAsDesignSize) {
    QWidget form;
    form.resize(400, 300);
    form.showMaximized();
    const QRect screen = form.screen()->availableGeometry();
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return form.frameGeometry().size() == screen.size(); }, 5000));
    ElasticWidgetForm adapter(&form);
    EXPECT_EQ(adapter.windowState(), ElasticWindowState::Maximized);

    class_Elastic elastic;
    elastic.Init(adapter);

    // The desktop decides a maximised window's size; that size becomes the design size.
    EXPECT_TRUE(form.isMaximized());
    EXPECT_EQ(elastic.designWidth(), form.width() * 15);
    EXPECT_EQ(elastic.designHeight(), form.height() * 15 + 400);
    EXPECT_EQ(form.frameGeometry().size(), screen.size());
}

} // namespace
} // namespace zorvik::test
