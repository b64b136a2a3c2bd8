// Tests of the knob: positions, value and signal rules, and turning it by mouse, wheel and keys.
#include "widgets/Knob.h"
#include "PanelTestSupport.h"

#include <QSignalSpy>
#include <QtMath>
#include <gtest/gtest.h>

using namespace zorvik;

namespace {

const QStringList kTimeLabels = {"200n", "500n", "1u",   "2u", "5u", "10u", "20u", "50u",
                                 "100u", "200u", "500u", "1m", "2m", "5m",  "10m", "20m"};

// A point on the dial at `angle` degrees (counter-clockwise from three o'clock).
QPoint pointAtAngle(const Knob& knob, qreal angle) {
    const qreal a = qDegreesToRadians(angle);
    const QPointF p =
        knob.dialCenter() + QPointF(std::cos(a), -std::sin(a)) * knob.dialRadius() * 0.8;
    return p.toPoint();
}

} // namespace

TEST(Knob, TakesOnePositionPerLabelAndStartsAtTheFirst) {
    Knob knob;
    EXPECT_EQ(knob.value(), 0);
    knob.setPositionLabels(kTimeLabels);
    EXPECT_EQ(knob.positionCount(), 16);
    EXPECT_EQ(knob.value(), 1);
    EXPECT_EQ(knob.valueText(), "200n");
}

TEST(Knob, LabelsWithBlanksAreShownTrimmed) {
    Knob knob;
    knob.setPositionLabels({" 20", " 10", " 5", " 2", " 1", " .5", " .2"});
    ASSERT_TRUE(knob.setValue(6));
    EXPECT_EQ(knob.valueText(), ".5");
    EXPECT_EQ(knob.positionLabels().at(5), " .5"); // kept as given
}

TEST(Knob, SetValueOutsideThePositionsIsRefusedAndChangesNothing) {
    Knob knob;
    knob.setPositionLabels(kTimeLabels);
    ASSERT_TRUE(knob.setValue(3));
    QSignalSpy spy(&knob, &Knob::valueChanged);
    EXPECT_FALSE(knob.setValue(0));
    EXPECT_FALSE(knob.setValue(17));
    EXPECT_FALSE(knob.setValue(-1));
    EXPECT_EQ(knob.value(), 3);
    EXPECT_EQ(spy.count(), 0);
}

TEST(Knob, SetValueEmitsValueChangedOnlyWhenThePositionChanges) {
    Knob knob;
    knob.setPositionLabels(kTimeLabels);
    QSignalSpy spy(&knob, &Knob::valueChanged);
    EXPECT_TRUE(knob.setValue(12));
    ASSERT_EQ(spy.count(), 1);
    EXPECT_EQ(spy.at(0).at(0).toInt(), 12);
    EXPECT_TRUE(knob.setValue(12));
    EXPECT_EQ(spy.count(), 1);
}

TEST(Knob, SetValueSilentlyMovesWithoutSignal) {
    Knob knob;
    knob.setPositionLabels(kTimeLabels);
    QSignalSpy spy(&knob, &Knob::valueChanged);
    knob.setValueSilently(5);
    EXPECT_EQ(knob.value(), 5);
    knob.setValueSilently(40);
    EXPECT_EQ(knob.value(), 5);
    EXPECT_EQ(spy.count(), 0);
}

TEST(Knob, FewerLabelsBringTheValueBackToTheLastPositionWithoutSignal) {
    Knob knob;
    knob.setPositionLabels(kTimeLabels);
    knob.setValue(16);
    QSignalSpy spy(&knob, &Knob::valueChanged);
    knob.setPositionLabels({"a", "b", "c"});
    EXPECT_EQ(knob.value(), 3);
    EXPECT_EQ(spy.count(), 0);
}

TEST(Knob, KeysStepThroughThePositionsAndStopAtTheEnds) {
    auto panel = test::makePanel();
    auto* knob = new Knob(panel.get());
    knob->setPositionLabels(kTimeLabels);
    knob->setGeometry(0, 0, 200, 200);
    ASSERT_TRUE(test::showAndWait(panel.get()));
    knob->setFocus();
    QSignalSpy spy(knob, &Knob::valueChanged);

    QTest::keyClick(knob, Qt::Key_Right);
    EXPECT_EQ(knob->value(), 2);
    QTest::keyClick(knob, Qt::Key_Up);
    EXPECT_EQ(knob->value(), 3);
    QTest::keyClick(knob, Qt::Key_PageUp);
    EXPECT_EQ(knob->value(), 4);
    QTest::keyClick(knob, Qt::Key_Left);
    EXPECT_EQ(knob->value(), 3);
    QTest::keyClick(knob, Qt::Key_Down);
    EXPECT_EQ(knob->value(), 2);
    QTest::keyClick(knob, Qt::Key_PageDown);
    EXPECT_EQ(knob->value(), 1);
    QTest::keyClick(knob, Qt::Key_Left); // already at the first position
    EXPECT_EQ(knob->value(), 1);
    QTest::keyClick(knob, Qt::Key_End);
    EXPECT_EQ(knob->value(), 16);
    QTest::keyClick(knob, Qt::Key_Right); // already at the last position
    EXPECT_EQ(knob->value(), 16);
    QTest::keyClick(knob, Qt::Key_Home);
    EXPECT_EQ(knob->value(), 1);

    QList<int> seen;
    for (const auto& args : spy)
        seen.append(args.at(0).toInt());
    EXPECT_EQ(seen, (QList<int>{2, 3, 4, 3, 2, 1, 16, 1}));
}

TEST(Knob, WheelTurnsOnePositionPerNotch) {
    auto panel = test::makePanel();
    auto* knob = new Knob(panel.get());
    knob->setPositionLabels(kTimeLabels);
    knob->setGeometry(0, 0, 200, 200);
    ASSERT_TRUE(test::showAndWait(panel.get()));
    const QPointF c = knob->dialCenter();
    test::sendWheel(knob, c, 120);
    EXPECT_EQ(knob->value(), 2);
    test::sendWheel(knob, c, 240);
    EXPECT_EQ(knob->value(), 4);
    test::sendWheel(knob, c, 60); // half a notch: not yet
    EXPECT_EQ(knob->value(), 4);
    test::sendWheel(knob, c, 60);
    EXPECT_EQ(knob->value(), 5);
    test::sendWheel(knob, c, -120);
    EXPECT_EQ(knob->value(), 4);
}

TEST(Knob, DraggingRoundTheDialFollowsThePointersAngle) {
    auto panel = test::makePanel();
    auto* knob = new Knob(panel.get());
    knob->setHeading("H-SCALE sec./ div.");
    knob->setPositionLabels(kTimeLabels);
    knob->setGeometry(0, 0, 220, 240);
    ASSERT_TRUE(test::showAndWait(panel.get()));
    QSignalSpy spy(knob, &Knob::valueChanged);

    QTest::mousePress(knob, Qt::LeftButton, {}, pointAtAngle(*knob, knob->positionAngle(1)));
    EXPECT_EQ(knob->value(), 1);
    QTest::mouseMove(knob, pointAtAngle(*knob, knob->positionAngle(5) + 3.0));
    EXPECT_EQ(knob->value(), 5);
    QTest::mouseMove(knob, pointAtAngle(*knob, knob->positionAngle(12) - 4.0));
    EXPECT_EQ(knob->value(), 12);
    QTest::mouseRelease(knob, Qt::LeftButton, {}, pointAtAngle(*knob, knob->positionAngle(12)));
    QTest::mouseMove(knob, pointAtAngle(*knob, knob->positionAngle(3)));
    EXPECT_EQ(knob->value(), 12); // released: moving no longer turns it
    ASSERT_EQ(spy.count(), 2);
    EXPECT_EQ(spy.at(1).at(0).toInt(), 12);
}

TEST(Knob, PointerInTheDeadZoneTurnsToTheNearerEnd) {
    Knob knob;
    knob.setPositionLabels(kTimeLabels);
    knob.resize(200, 200);
    // Sixteen positions spread over 270 degrees from 225 (first) to -45 (last).
    EXPECT_DOUBLE_EQ(knob.positionAngle(1), 225.0);
    EXPECT_DOUBLE_EQ(knob.positionAngle(16), -45.0);
    EXPECT_EQ(knob.positionAt(pointAtAngle(knob, 260.0)), 1);
    EXPECT_EQ(knob.positionAt(pointAtAngle(knob, 280.0)), 16);
}

TEST(Knob, ClickOnTheHeadingDoesNotTurnTheKnob) {
    auto panel = test::makePanel();
    auto* knob = new Knob(panel.get());
    knob->setHeading("H-SCALE sec./ div.");
    knob->setPositionLabels(kTimeLabels);
    knob->setGeometry(0, 0, 220, 240);
    ASSERT_TRUE(test::showAndWait(panel.get()));
    knob->setValue(4);
    QTest::mouseClick(knob, Qt::LeftButton, {}, QPoint(110, 5));
    EXPECT_EQ(knob->value(), 4);
}

TEST(Knob, KeepsHeadingAndNeedleName) {
    Knob knob;
    knob.setHeading("V-SCALE volts / div.");
    knob.setNeedleName("ChaLvlSel");
    EXPECT_EQ(knob.heading(), "V-SCALE volts / div.");
    EXPECT_EQ(knob.needleName(), "ChaLvlSel");
}

TEST(Knob, LabelsOfNeighbouringPositionsNeverOverlap) {
    Knob knob;
    knob.setHeading("H-SCALE sec./ div.");
    knob.setPositionLabels(kTimeLabels);
    knob.resize(190, 210);
    for (int k = 2; k <= 16; ++k)
        EXPECT_FALSE(knob.labelRect(k - 1).intersects(knob.labelRect(k))) << k;
    // Sixteen labels on so small a knob need a smaller type, but no less than two thirds.
    EXPECT_LT(knob.labelFont().pointSizeF(), knob.font().pointSizeF());
    EXPECT_GE(knob.labelFont().pointSizeF(), knob.font().pointSizeF() * 2.0 / 3.0);
    for (int k = 1; k <= 16; ++k)
        EXPECT_TRUE(QRectF(knob.rect()).contains(knob.labelRect(k))) << k;
}

TEST(Knob, LabelsKeepTheWidgetsFontWhenThereIsRoom) {
    Knob knob;
    knob.setPositionLabels({" 20", " 10", " 5", " 2", " 1", " .5", " .2"});
    knob.resize(200, 200);
    EXPECT_EQ(knob.labelFont().pointSizeF(), knob.font().pointSizeF());
    EXPECT_EQ(knob.labelRect(0), QRectF());
    EXPECT_EQ(knob.labelRect(8), QRectF());
}
