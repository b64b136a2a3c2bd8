// Tests of what assistive technology sees of the panel widgets, and of keyboard focus.
#include "PanelTestSupport.h"
#include "widgets/IndicatorSlide.h"
#include "widgets/Knob.h"
#include "widgets/Led.h"
#include "widgets/LitButton.h"
#include "widgets/PanelLook.h"
#include "widgets/ScopeGraph.h"
#include "widgets/Slide.h"

#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QAccessibleValueInterface>
#include <QSignalSpy>
#include <gtest/gtest.h>

using namespace zorvik;

TEST(PanelAccessibility, KnobIsADialWithItsPositionsAsValues) {
    Knob knob;
    knob.setAccessibleName("H-SCALE sec./ div.");
    knob.setPositionLabels({"200n", "500n", "1u", "2u"});
    knob.setValue(3);
    QAccessibleInterface* a = QAccessible::queryAccessibleInterface(&knob);
    ASSERT_NE(a, nullptr);
    EXPECT_EQ(a->role(), QAccessible::Dial);
    EXPECT_EQ(a->text(QAccessible::Name), "H-SCALE sec./ div.");
    EXPECT_EQ(a->text(QAccessible::Value), "1u");
    EXPECT_TRUE(a->state().focusable);
    QAccessibleValueInterface* v = a->valueInterface();
    ASSERT_NE(v, nullptr);
    EXPECT_EQ(v->currentValue().toInt(), 3);
    EXPECT_EQ(v->minimumValue().toInt(), 1);
    EXPECT_EQ(v->maximumValue().toInt(), 4);
    EXPECT_EQ(v->minimumStepSize().toInt(), 1);
    QSignalSpy spy(&knob, &Knob::valueChanged);
    v->setCurrentValue(4);
    EXPECT_EQ(knob.value(), 4);
    EXPECT_EQ(spy.count(), 1);
}

TEST(PanelAccessibility, KnobWithoutAccessibleNameIsNamedByItsHeading) {
    Knob knob;
    knob.setHeading("V-SCALE volts / div.");
    QAccessibleInterface* a = QAccessible::queryAccessibleInterface(&knob);
    ASSERT_NE(a, nullptr);
    EXPECT_EQ(a->text(QAccessible::Name), "V-SCALE volts / div.");
}

TEST(PanelAccessibility, SlideIsASliderWithRangeAndStep) {
    Slide slide;
    slide.setAccessibleName("Offset");
    slide.setRange(-4.0, 4.0);
    slide.setSteps(0.1, 1.0);
    slide.setValue(1.5);
    QAccessibleInterface* a = QAccessible::queryAccessibleInterface(&slide);
    ASSERT_NE(a, nullptr);
    EXPECT_EQ(a->role(), QAccessible::Slider);
    EXPECT_EQ(a->text(QAccessible::Name), "Offset");
    EXPECT_EQ(a->text(QAccessible::Value), "1.50");
    QAccessibleValueInterface* v = a->valueInterface();
    ASSERT_NE(v, nullptr);
    EXPECT_EQ(v->currentValue().toDouble(), 1.5);
    EXPECT_EQ(v->minimumValue().toDouble(), -4.0);
    EXPECT_EQ(v->maximumValue().toDouble(), 4.0);
    EXPECT_EQ(v->minimumStepSize().toDouble(), 0.1);
    v->setCurrentValue(-2.0);
    EXPECT_EQ(slide.value(), -2.0);
}

TEST(PanelAccessibility, IndicatorIsAReadOnlySliderThatReadsItsLabel) {
    IndicatorSlide trigger;
    trigger.setAccessibleName("TRIGGER");
    trigger.setPositionLabels({"FR", "IN+", "IN-", "EX+", "EX-"});
    trigger.addPointer("Pointer-1");
    trigger.addPointerStateMark("Pointer-1", 300, "WAIT", QColor(255, 176, 0));
    trigger.setValue(4);
    trigger.setPointerValue("Pointer-1", 300);
    QAccessibleInterface* a = QAccessible::queryAccessibleInterface(&trigger);
    ASSERT_NE(a, nullptr);
    EXPECT_EQ(a->role(), QAccessible::Slider);
    EXPECT_TRUE(a->state().readOnly);
    EXPECT_EQ(a->text(QAccessible::Name), "TRIGGER");
    EXPECT_EQ(a->text(QAccessible::Value), "EX+, WAIT");
    QAccessibleValueInterface* v = a->valueInterface();
    ASSERT_NE(v, nullptr);
    EXPECT_EQ(v->currentValue().toDouble(), 4.0);
    EXPECT_EQ(v->maximumValue().toDouble(), 5.0);
    v->setCurrentValue(1); // assistive technology cannot move an indicator
    EXPECT_EQ(trigger.value(), 4.0);
}

TEST(PanelAccessibility, SideScaleReadsItsVisiblePointers) {
    IndicatorSlide side;
    side.setRange(-4, 4);
    side.addPointer("TrigLvl", "T");
    side.addPointer("CHa_Zero", "0");
    side.setPointerValue("TrigLvl", 1.25);
    side.setPointerValue("CHa_Zero", 0.0);
    QAccessibleInterface* a = QAccessible::queryAccessibleInterface(&side);
    ASSERT_NE(a, nullptr);
    EXPECT_EQ(a->text(QAccessible::Value), "TrigLvl 1.25, CHa_Zero 0.00");
    side.setPointerVisible("TrigLvl", false);
    EXPECT_EQ(a->text(QAccessible::Value), "CHa_Zero 0.00");
}

TEST(PanelAccessibility, LitButtonIsACheckableButtonCheckedByItsValue) {
    LitButton button("V-CURS", LitButton::Mode::Toggle);
    QAccessibleInterface* a = QAccessible::queryAccessibleInterface(&button);
    ASSERT_NE(a, nullptr);
    EXPECT_EQ(a->role(), QAccessible::Button);
    EXPECT_EQ(a->text(QAccessible::Name), "V-CURS");
    EXPECT_TRUE(a->state().checkable);
    EXPECT_FALSE(a->state().checked);
    button.setValue(true);
    EXPECT_TRUE(a->state().checked);
    QAccessibleActionInterface* act = a->actionInterface();
    ASSERT_NE(act, nullptr);
    EXPECT_TRUE(act->actionNames().contains(QAccessibleActionInterface::pressAction()));
    act->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_FALSE(button.value());
    button.setAccessibleName("Vertical cursors");
    EXPECT_EQ(a->text(QAccessible::Name), "Vertical cursors");
}

TEST(PanelAccessibility, PressActionWorksAMomentaryButtonOnAndOff) {
    LitButton button("HELP", LitButton::Mode::Momentary);
    QSignalSpy spy(&button, &LitButton::valueChanged);
    QAccessibleInterface* a = QAccessible::queryAccessibleInterface(&button);
    ASSERT_NE(a, nullptr);
    a->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    ASSERT_EQ(spy.count(), 2);
    EXPECT_TRUE(spy.at(0).at(0).toBool());
    EXPECT_FALSE(spy.at(1).at(0).toBool());
}

TEST(PanelAccessibility, LedIsAnIndicatorThatSaysItsColour) {
    Led led;
    led.setAccessibleName("POWER lamp");
    QAccessibleInterface* a = QAccessible::queryAccessibleInterface(&led);
    ASSERT_NE(a, nullptr);
    EXPECT_EQ(a->role(), QAccessible::Indicator);
    EXPECT_EQ(a->text(QAccessible::Name), "POWER lamp");
    EXPECT_EQ(a->text(QAccessible::Value), "out");
    led.setOnColor(QColor(255, 255, 0));
    led.setValue(true);
    EXPECT_EQ(a->text(QAccessible::Value), "lit yellow");
    EXPECT_TRUE(a->state().checked);
}

TEST(PanelAccessibility, GraphIsAChartDescribingTracesAndCursors) {
    ScopeGraph graph;
    graph.setAccessibleName("Graph");
    std::array<float, 128> ys{};
    graph.plotY("CHa", ys.data(), 128, 0.0, 0.1);
    graph.setCursorX("Cursor1", 1.0);
    graph.setCursorVisible("Cursor1", true);
    QAccessibleInterface* a = QAccessible::queryAccessibleInterface(&graph);
    ASSERT_NE(a, nullptr);
    EXPECT_EQ(a->role(), QAccessible::Chart);
    EXPECT_EQ(a->text(QAccessible::Name), "Graph");
    EXPECT_EQ(a->text(QAccessible::Description),
              "X 0.00 to 10.00 div, Y -4.00 to 4.00 div; CHa 128 points; Ref no data; "
              "Cursor1 at X 1.00 div");
}

TEST(PanelAccessibility, EveryPanelWidgetTakesFocusWithTab) {
    auto panel = test::makePanel(QSize(700, 300));
    QList<QWidget*> order = {new Knob(panel.get()),
                             new Slide(Qt::Vertical, panel.get()),
                             new IndicatorSlide(panel.get()),
                             new LitButton("FILE", LitButton::Mode::Momentary, panel.get()),
                             new Led(panel.get()),
                             new ScopeGraph(panel.get())};
    int x = 0;
    for (QWidget* w : order) {
        EXPECT_EQ(w->focusPolicy(), Qt::StrongFocus) << w->metaObject()->className();
        w->setGeometry(x, 0, 110, 200);
        x += 115;
    }
    ASSERT_TRUE(test::showAndWait(panel.get()));
    order.first()->setFocus();
    for (int i = 1; i < order.size(); ++i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        EXPECT_TRUE(order.at(i)->hasFocus()) << order.at(i)->metaObject()->className();
    }
}

TEST(PanelAccessibility, FocusedWidgetShowsAFocusFrame) {
    auto panel = test::makePanel(QSize(500, 300));
    QList<QWidget*> widgets = {new Knob(panel.get()),
                               new Slide(Qt::Horizontal, panel.get()),
                               new IndicatorSlide(panel.get()),
                               new LitButton("MENU", LitButton::Mode::Momentary, panel.get()),
                               new Led(panel.get()),
                               new ScopeGraph(panel.get())};
    for (QWidget* w : widgets)
        w->setGeometry(0, 0, 160, 120);
    ASSERT_TRUE(test::showAndWait(panel.get()));
    const auto frame = [](const QColor& c) { return test::near(c, PanelLook::focusColor(), 30); };
    for (QWidget* w : widgets) {
        w->raise();
        panel->setFocus();
        EXPECT_EQ(test::countPixels(w->grab().toImage(), w->rect(), frame), 0)
            << w->metaObject()->className();
        w->setFocus();
        EXPECT_GT(test::countPixels(w->grab().toImage(), w->rect(), frame), 200)
            << w->metaObject()->className();
    }
}
