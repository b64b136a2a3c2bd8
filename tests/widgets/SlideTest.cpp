// Tests of the continuous slide: range, value and signal rules, mouse, wheel and keys.
#include "widgets/Slide.h"
#include "PanelTestSupport.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

#include <cmath>

using namespace zorvik;

namespace {

// The offset slide of the panel: -4..4 divisions, steps of a tenth and a whole division.
Slide* makeOffsetSlide(QWidget* parent) {
    auto* slide = new Slide(Qt::Vertical, parent);
    slide->setRange(-4.0, 4.0);
    slide->setSteps(0.1, 1.0);
    slide->setGeometry(10, 10, 70, 260);
    return slide;
}

} // namespace

TEST(Slide, ValueOutsideTheRangeIsRefusedAndChangesNothing) {
    Slide slide;
    slide.setRange(-4.0, 4.0);
    ASSERT_TRUE(slide.setValue(1.5));
    QSignalSpy spy(&slide, &Slide::valueChanged);
    EXPECT_FALSE(slide.setValue(4.01));
    EXPECT_FALSE(slide.setValue(-4.5));
    EXPECT_FALSE(slide.setValue(std::nan("")));
    EXPECT_EQ(slide.value(), 1.5);
    EXPECT_EQ(spy.count(), 0);
    EXPECT_TRUE(slide.setValue(4.0)); // the ends belong to the range
    EXPECT_TRUE(slide.setValue(-4.0));
}

TEST(Slide, SetValueEmitsOnlyOnChangeAndSilentlyNever) {
    Slide slide;
    slide.setRange(-4.0, 4.0);
    QSignalSpy spy(&slide, &Slide::valueChanged);
    EXPECT_TRUE(slide.setValue(2.25));
    EXPECT_TRUE(slide.setValue(2.25));
    ASSERT_EQ(spy.count(), 1);
    EXPECT_EQ(spy.at(0).at(0).toDouble(), 2.25);
    slide.setValueSilently(-1.0);
    EXPECT_EQ(slide.value(), -1.0);
    slide.setValueSilently(9.0); // out of range: ignored
    EXPECT_EQ(slide.value(), -1.0);
    EXPECT_EQ(spy.count(), 1);
}

TEST(Slide, NarrowerRangeBringsTheValueToItsEndWithoutSignal) {
    Slide slide;
    slide.setRange(0.0, 100.0);
    slide.setValue(80.0);
    QSignalSpy spy(&slide, &Slide::valueChanged);
    slide.setRange(50.0, 10.0); // given the wrong way round
    EXPECT_EQ(slide.minimum(), 10.0);
    EXPECT_EQ(slide.maximum(), 50.0);
    EXPECT_EQ(slide.value(), 50.0);
    EXPECT_EQ(spy.count(), 0);
}

TEST(Slide, StepsDefaultToAHundredthAndATenthOfTheRange) {
    Slide slide;
    slide.setRange(0.0, 100.0);
    EXPECT_EQ(slide.smallStep(), 1.0);
    EXPECT_EQ(slide.largeStep(), 10.0);
}

TEST(Slide, KeysMoveBySmallAndLargeStepsAndToTheEnds) {
    auto panel = test::makePanel();
    Slide* slide = makeOffsetSlide(panel.get());
    ASSERT_TRUE(test::showAndWait(panel.get()));
    slide->setFocus();
    QTest::keyClick(slide, Qt::Key_Up);
    EXPECT_EQ(slide->value(), 0.1);
    QTest::keyClick(slide, Qt::Key_Right);
    EXPECT_EQ(slide->value(), 0.2);
    QTest::keyClick(slide, Qt::Key_Up);
    EXPECT_EQ(slide->value(), 0.3);
    QTest::keyClick(slide, Qt::Key_PageUp);
    EXPECT_EQ(slide->value(), 1.3);
    QTest::keyClick(slide, Qt::Key_PageDown);
    QTest::keyClick(slide, Qt::Key_Down);
    QTest::keyClick(slide, Qt::Key_Left);
    QTest::keyClick(slide, Qt::Key_Down);
    EXPECT_EQ(slide->value(), 0.0); // back on exactly zero
    QTest::keyClick(slide, Qt::Key_End);
    EXPECT_EQ(slide->value(), 4.0);
    QTest::keyClick(slide, Qt::Key_PageUp); // at the end already
    EXPECT_EQ(slide->value(), 4.0);
    QTest::keyClick(slide, Qt::Key_Home);
    EXPECT_EQ(slide->value(), -4.0);
}

TEST(Slide, WheelMovesOneSmallStepPerNotch) {
    auto panel = test::makePanel();
    Slide* slide = makeOffsetSlide(panel.get());
    ASSERT_TRUE(test::showAndWait(panel.get()));
    QSignalSpy spy(slide, &Slide::valueChanged);
    test::sendWheel(slide, QPointF(30, 100), 120);
    EXPECT_EQ(slide->value(), 0.1);
    test::sendWheel(slide, QPointF(30, 100), -360);
    EXPECT_EQ(slide->value(), -0.2);
    EXPECT_EQ(spy.count(), 2);
}

TEST(Slide, DraggingTheThumbSetsTheValueUnderThePointer) {
    auto panel = test::makePanel();
    Slide* slide = makeOffsetSlide(panel.get());
    ASSERT_TRUE(test::showAndWait(panel.get()));
    QSignalSpy spy(slide, &Slide::valueChanged);
    const QPoint grab = slide->thumbCenterFor(0.0).toPoint();
    QTest::mousePress(slide, Qt::LeftButton, {}, grab);
    EXPECT_EQ(slide->value(), 0.0); // taking the thumb does not move it
    QTest::mouseMove(slide, slide->thumbCenterFor(2.0).toPoint());
    EXPECT_EQ(slide->value(), 2.0);
    QTest::mouseMove(slide, QPoint(grab.x(), -200)); // far above: stops at the maximum
    EXPECT_EQ(slide->value(), 4.0);
    QTest::mouseMove(slide, slide->thumbCenterFor(-3.0).toPoint());
    QTest::mouseRelease(slide, Qt::LeftButton, {}, slide->thumbCenterFor(-3.0).toPoint());
    EXPECT_EQ(slide->value(), -3.0);
    ASSERT_EQ(spy.count(), 3);
    EXPECT_EQ(spy.at(2).at(0).toDouble(), -3.0);
}

TEST(Slide, ThumbTakenOffCentreKeepsThatSpotUnderThePointer) {
    auto panel = test::makePanel();
    Slide* slide = makeOffsetSlide(panel.get());
    ASSERT_TRUE(test::showAndWait(panel.get()));
    const QPoint offCentre = slide->thumbCenterFor(0.0).toPoint() + QPoint(0, 3);
    QTest::mousePress(slide, Qt::LeftButton, {}, offCentre);
    QTest::mouseMove(slide, offCentre + QPoint(1, 0)); // sideways only
    EXPECT_EQ(slide->value(), 0.0);
    QTest::mouseMove(slide, slide->thumbCenterFor(1.0).toPoint() + QPoint(0, 3));
    QTest::mouseRelease(slide, Qt::LeftButton);
    EXPECT_EQ(slide->value(), 1.0);
}

TEST(Slide, PressBesideTheThumbBringsItUnderThePointer) {
    auto panel = test::makePanel();
    auto* pan = new Slide(Qt::Horizontal, panel.get());
    pan->setRange(0.0, 100.0);
    pan->setGeometry(10, 10, 360, 60);
    ASSERT_TRUE(test::showAndWait(panel.get()));
    EXPECT_EQ(pan->value(), 0.0);
    QTest::mouseClick(pan, Qt::LeftButton, {}, pan->thumbCenterFor(50.0).toPoint());
    EXPECT_EQ(pan->value(), 50.0);
    EXPECT_NEAR(pan->valueAt(pan->thumbCenterFor(25.0)), 25.0, 1e-9);
}

TEST(Slide, VerticalSlideHasItsMaximumAtTheTop) {
    auto panel = test::makePanel();
    Slide* slide = makeOffsetSlide(panel.get());
    ASSERT_TRUE(test::showAndWait(panel.get()));
    EXPECT_LT(slide->thumbCenterFor(4.0).y(), slide->thumbCenterFor(-4.0).y());
    EXPECT_EQ(slide->valueAt(QPointF(30, 0)), 4.0);
    EXPECT_EQ(slide->valueAt(QPointF(30, 1000)), -4.0);
}
