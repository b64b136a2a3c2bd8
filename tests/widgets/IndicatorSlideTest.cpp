// Tests of the indicator slide: positions, named pointers, the trigger lamp and the side scale.
#include "widgets/IndicatorSlide.h"
#include "PanelTestSupport.h"
#include "widgets/ScopeGraph.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

#include <cmath>

using namespace zorvik;

namespace {

const QColor kAmber(255, 176, 0);
const QColor kGreen(0, 230, 60);

// The trigger indicator as the panel sets it up: five positions and a state lamp.
IndicatorSlide* makeTriggerIndicator(QWidget* parent) {
    auto* trigger = new IndicatorSlide(parent);
    trigger->setObjectName("CWSTrigger");
    trigger->setPositionLabels({"FR", "IN+", "IN-", "EX+", "EX-"});
    trigger->addPointer("Pointer-1");
    trigger->addPointerStateMark("Pointer-1", 300, "WAIT", kAmber);
    trigger->addPointerStateMark("Pointer-1", 0, "TRIG", kGreen);
    trigger->setGeometry(10, 10, 90, 200);
    return trigger;
}

} // namespace

TEST(IndicatorSlide, DiscretePositionsShowTheirLabels) {
    IndicatorSlide coupling;
    coupling.setPositionLabels({"GND", "AC", "DC"});
    EXPECT_EQ(coupling.mode(), IndicatorSlide::Mode::Discrete);
    EXPECT_EQ(coupling.positionCount(), 3);
    EXPECT_TRUE(coupling.setValue(2));
    EXPECT_EQ(coupling.value(), 2.0);
    EXPECT_EQ(coupling.valueText(), "AC");
    EXPECT_EQ(coupling.minimum(), 1.0);
    EXPECT_EQ(coupling.maximum(), 3.0);
}

TEST(IndicatorSlide, ValueThatIsNotAPositionIsRefusedAndChangesNothing) {
    IndicatorSlide range;
    range.setPositionLabels({"100", "10", "1"});
    range.setValue(3);
    QSignalSpy spy(&range, &IndicatorSlide::valueChanged);
    EXPECT_FALSE(range.setValue(0));
    EXPECT_FALSE(range.setValue(4));
    EXPECT_FALSE(range.setValue(1.5));
    EXPECT_FALSE(range.setValue(std::nan("")));
    EXPECT_EQ(range.value(), 3.0);
    EXPECT_EQ(range.valueText(), "1");
    EXPECT_EQ(spy.count(), 0);
}

TEST(IndicatorSlide, SetValueEmitsOnChangeAndSilentlyDoesNot) {
    IndicatorSlide range;
    range.setPositionLabels({"100", "10", "1"});
    QSignalSpy spy(&range, &IndicatorSlide::valueChanged);
    range.setValue(2);
    range.setValue(2);
    ASSERT_EQ(spy.count(), 1);
    EXPECT_EQ(spy.at(0).at(0).toDouble(), 2.0);
    range.setValueSilently(3);
    EXPECT_EQ(range.value(), 3.0);
    EXPECT_EQ(spy.count(), 1);
}

TEST(IndicatorSlide, MainPointerCanBeHiddenAndShownAgain) {
    IndicatorSlide coupling;
    coupling.setPositionLabels({"GND", "AC", "DC"});
    coupling.setValue(3);
    EXPECT_TRUE(coupling.pointerVisible());
    EXPECT_EQ(coupling.accessibleValueText(), "DC");
    coupling.setPointerVisible(false);
    EXPECT_FALSE(coupling.pointerVisible());
    EXPECT_EQ(coupling.accessibleValueText(), ""); // no reading while hidden
    EXPECT_EQ(coupling.value(), 3.0);              // the value itself is kept
    coupling.setPointerVisible(true);
    EXPECT_EQ(coupling.accessibleValueText(), "DC");
}

TEST(IndicatorSlide, NamedPointersAreAddedOnceAndUnknownNamesAreIgnored) {
    IndicatorSlide side;
    side.setRange(-4, 4);
    EXPECT_TRUE(side.addPointer("TrigLvl", "T", QColor(255, 160, 0)));
    EXPECT_TRUE(side.addPointer("CHa_Zero", "0"));
    EXPECT_FALSE(side.addPointer("TrigLvl"));
    EXPECT_FALSE(side.addPointer(""));
    EXPECT_EQ(side.pointerNames(), (QStringList{"TrigLvl", "CHa_Zero"}));
    EXPECT_TRUE(std::isnan(side.pointerValue("TrigLvl"))); // no value yet
    EXPECT_TRUE(side.setPointerValue("TrigLvl", 1.25));
    EXPECT_EQ(side.pointerValue("TrigLvl"), 1.25);
    EXPECT_EQ(side.pointerLabel("TrigLvl"), "T");
    EXPECT_EQ(side.pointerColor("CHa_Zero"), QColor(Qt::white));

    EXPECT_FALSE(side.setPointerValue("Nope", 1.0));
    EXPECT_TRUE(std::isnan(side.pointerValue("Nope")));
    EXPECT_FALSE(side.setPointerVisible("Nope", true));
    EXPECT_FALSE(side.pointerVisible("Nope"));
    EXPECT_FALSE(side.setPointerColor("Nope", Qt::red));
    EXPECT_FALSE(side.pointerColor("Nope").isValid());
    EXPECT_EQ(side.pointerStateText("Nope"), "");
    EXPECT_FALSE(side.addPointerStateMark("Nope", 300, "WAIT", kAmber));
}

TEST(IndicatorSlide, NamedPointerVisibilityIsItsOwn) {
    IndicatorSlide side;
    side.setRange(-4, 4);
    side.addPointer("TrigLvl", "T");
    side.addPointer("CHa_Zero", "0");
    EXPECT_TRUE(side.pointerVisible("TrigLvl"));
    EXPECT_TRUE(side.setPointerVisible("TrigLvl", false));
    EXPECT_FALSE(side.pointerVisible("TrigLvl"));
    EXPECT_TRUE(side.pointerVisible("CHa_Zero"));
}

TEST(IndicatorSlide, TriggerPointerAt300ShowsTheWaitingLamp) {
    IndicatorSlide* trigger = makeTriggerIndicator(nullptr);
    std::unique_ptr<IndicatorSlide> owner(trigger);
    EXPECT_EQ(trigger->pointerStateText("Pointer-1"), ""); // no value yet: dark
    EXPECT_TRUE(trigger->setPointerValue("Pointer-1", 300));
    EXPECT_EQ(trigger->pointerStateText("Pointer-1"), "WAIT");
    EXPECT_EQ(trigger->pointerStateColor("Pointer-1"), kAmber);
}

TEST(IndicatorSlide, TriggerPointerAt0ShowsTheTriggeredLamp) {
    std::unique_ptr<IndicatorSlide> trigger(makeTriggerIndicator(nullptr));
    trigger->setPointerValue("Pointer-1", 300);
    trigger->setPointerValue("Pointer-1", 0);
    EXPECT_EQ(trigger->pointerStateText("Pointer-1"), "TRIG");
    EXPECT_EQ(trigger->pointerStateColor("Pointer-1"), kGreen);
}

TEST(IndicatorSlide, TriggerLampIsDarkAtAnUnmarkedValueOrWhileHidden) {
    std::unique_ptr<IndicatorSlide> trigger(makeTriggerIndicator(nullptr));
    trigger->setPointerValue("Pointer-1", 150);
    EXPECT_EQ(trigger->pointerStateText("Pointer-1"), "");
    trigger->setPointerValue("Pointer-1", 300);
    trigger->setPointerVisible("Pointer-1", false);
    EXPECT_EQ(trigger->pointerStateText("Pointer-1"), "");
    EXPECT_FALSE(trigger->pointerStateColor("Pointer-1").isValid());
}

TEST(IndicatorSlide, WaitingAndTriggeredLampsAreDrawnInTheirColours) {
    auto panel = test::makePanel();
    IndicatorSlide* trigger = makeTriggerIndicator(panel.get());
    trigger->setValue(2);
    ASSERT_TRUE(test::showAndWait(panel.get()));
    const auto amberish = [](const QColor& c) { return test::near(c, kAmber, 45); };
    const auto greenish = [](const QColor& c) { return test::near(c, kGreen, 45); };
    const QRect all = trigger->rect();

    trigger->setPointerValue("Pointer-1", 300);
    QImage wait = trigger->grab().toImage();
    EXPECT_GT(test::countPixels(wait, all, amberish), 150);
    EXPECT_EQ(test::countPixels(wait, all, greenish), 0);

    trigger->setPointerValue("Pointer-1", 0);
    QImage trig = trigger->grab().toImage();
    EXPECT_GT(test::countPixels(trig, all, greenish), 150);
    EXPECT_EQ(test::countPixels(trig, all, amberish), 0);
}

TEST(IndicatorSlide, AccessibleTextReadsTheLabelAndTheLitLamp) {
    std::unique_ptr<IndicatorSlide> trigger(makeTriggerIndicator(nullptr));
    trigger->setValue(2);
    trigger->setPointerValue("Pointer-1", 300);
    EXPECT_EQ(trigger->accessibleValueText(), "IN+, WAIT");
    trigger->setPointerValue("Pointer-1", 0);
    EXPECT_EQ(trigger->accessibleValueText(), "IN+, TRIG");
}

TEST(IndicatorSlide, TheUserCannotMoveAnIndicator) {
    auto panel = test::makePanel();
    auto* coupling = new IndicatorSlide(panel.get());
    coupling->setPositionLabels({"GND", "AC", "DC"});
    coupling->setGeometry(10, 10, 80, 150);
    ASSERT_TRUE(test::showAndWait(panel.get()));
    QSignalSpy spy(coupling, &IndicatorSlide::valueChanged);
    coupling->setFocus();
    EXPECT_TRUE(coupling->hasFocus());
    QTest::keyClick(coupling, Qt::Key_Down);
    QTest::keyClick(coupling, Qt::Key_End);
    QTest::mouseClick(coupling, Qt::LeftButton, {}, QPoint(40, 140));
    test::sendWheel(coupling, QPointF(40, 70), -240);
    EXPECT_EQ(coupling->value(), 1.0);
    EXPECT_EQ(spy.count(), 0);
}

TEST(IndicatorSlide, ContinuousScalePlacesPointersInItsUnitsWithTheMinimumAtTheBottom) {
    IndicatorSlide side;
    side.setRange(-4, 4);
    side.setTrackInsets(10, 10);
    side.resize(40, 226); // 3 px frame and 10 px insets: the scale runs from y 13 to y 213
    EXPECT_EQ(side.mode(), IndicatorSlide::Mode::Continuous);
    EXPECT_DOUBLE_EQ(side.pixelFor(-4.0), 213.0);
    EXPECT_DOUBLE_EQ(side.pixelFor(4.0), 13.0);
    EXPECT_DOUBLE_EQ(side.pixelFor(0.0), 113.0);
    EXPECT_DOUBLE_EQ(side.pixelFor(1.0), 88.0);
}

TEST(IndicatorSlide, PointerBeyondTheScaleIsPinnedToTheNearerEnd) {
    auto panel = test::makePanel();
    auto* side = new IndicatorSlide(panel.get());
    side->setRange(-4, 4);
    const QColor orange(255, 140, 0);
    side->addPointer("TrigLvl", "T", orange);
    side->setGeometry(10, 10, 40, 260);
    ASSERT_TRUE(test::showAndWait(panel.get()));
    const auto orangeish = [&](const QColor& c) { return test::near(c, orange, 30); };
    const int top = qRound(side->pixelFor(4.0));
    const int bottom = qRound(side->pixelFor(-4.0));
    const QRect topBand(0, top - 14, 40, 28);
    const QRect bottomBand(0, bottom - 14, 40, 28);

    side->setPointerValue("TrigLvl", 25.0);
    QImage above = side->grab().toImage();
    EXPECT_GT(test::countPixels(above, topBand, orangeish), 10);
    EXPECT_EQ(test::countPixels(above, bottomBand, orangeish), 0);

    side->setPointerValue("TrigLvl", -9.0);
    QImage below = side->grab().toImage();
    EXPECT_GT(test::countPixels(below, bottomBand, orangeish), 10);
    EXPECT_EQ(test::countPixels(below, topBand, orangeish), 0);

    side->setPointerVisible("TrigLvl", false);
    QImage hidden = side->grab().toImage();
    EXPECT_EQ(test::countPixels(hidden, side->rect(), orangeish), 0);
}

TEST(IndicatorSlide, SideScaleAlignedWithTheGraphMatchesItsYAxis) {
    auto panel = test::makePanel(QSize(600, 420));
    auto* graph = new ScopeGraph(panel.get());
    graph->setGeometry(60, 30, 400, 320);
    auto* side = new IndicatorSlide(panel.get());
    side->setRange(-4, 4);
    side->setGeometry(20, 0, 40, 400);
    side->alignTrackWith(graph);
    ASSERT_TRUE(test::showAndWait(panel.get()));
    for (double v : {-4.0, -1.5, 0.0, 2.0, 4.0}) {
        const double onGraph = graph->y() + graph->yAxis->coordToPixel(v);
        EXPECT_NEAR(side->y() + side->pixelFor(v), onGraph, 1e-9) << v;
    }
    graph->setGeometry(60, 50, 400, 250); // the graph moves and shrinks: the scale follows
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return graph->yAxis->coordToPixel(-4.0) == graph->plotAreaRect().bottom(); }));
    EXPECT_NEAR(side->y() + side->pixelFor(2.0), graph->y() + graph->yAxis->coordToPixel(2.0),
                1e-9);
}
