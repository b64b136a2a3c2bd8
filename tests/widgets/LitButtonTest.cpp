// Tests of the lit button (toggle and momentary) and of the separate panel lamp.
#include "widgets/LitButton.h"
#include "PanelTestSupport.h"
#include "widgets/Led.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

using namespace zorvik;

namespace {

QList<bool> values(const QSignalSpy& spy) {
    QList<bool> out;
    for (const auto& args : spy)
        out.append(args.at(0).toBool());
    return out;
}

struct ButtonOnPanel {
    std::unique_ptr<QWidget> panel = test::makePanel();
    LitButton* button;
    explicit ButtonOnPanel(LitButton::Mode mode)
        : button(new LitButton("V-CURS", mode, panel.get())) {
        button->setGeometry(20, 20, 90, 50);
    }
};

} // namespace

TEST(LitButton, ToggleButtonFlipsItsValueOnEachClick) {
    ButtonOnPanel b(LitButton::Mode::Toggle);
    ASSERT_TRUE(test::showAndWait(b.panel.get()));
    QSignalSpy spy(b.button, &LitButton::valueChanged);
    QTest::mouseClick(b.button, Qt::LeftButton);
    EXPECT_TRUE(b.button->value());
    QTest::mouseClick(b.button, Qt::LeftButton);
    EXPECT_FALSE(b.button->value());
    EXPECT_EQ(values(spy), (QList<bool>{true, false}));
}

TEST(LitButton, ToggleButtonChangesOnReleaseNotOnPress) {
    ButtonOnPanel b(LitButton::Mode::Toggle);
    ASSERT_TRUE(test::showAndWait(b.panel.get()));
    QTest::mousePress(b.button, Qt::LeftButton);
    EXPECT_FALSE(b.button->value());
    QTest::mouseRelease(b.button, Qt::LeftButton);
    EXPECT_TRUE(b.button->value());
}

TEST(LitButton, MomentaryButtonIsOnWhilePressedAndOffWhenReleased) {
    ButtonOnPanel b(LitButton::Mode::Momentary);
    ASSERT_TRUE(test::showAndWait(b.panel.get()));
    QSignalSpy spy(b.button, &LitButton::valueChanged);
    QTest::mousePress(b.button, Qt::LeftButton);
    EXPECT_TRUE(b.button->value());
    EXPECT_EQ(values(spy), (QList<bool>{true}));
    QTest::mouseRelease(b.button, Qt::LeftButton);
    EXPECT_FALSE(b.button->value());
    EXPECT_EQ(values(spy), (QList<bool>{true, false}));
}

TEST(LitButton, MomentaryButtonGoesOffWhenThePointerSlidesOffTheKey) {
    ButtonOnPanel b(LitButton::Mode::Momentary);
    ASSERT_TRUE(test::showAndWait(b.panel.get()));
    QTest::mousePress(b.button, Qt::LeftButton, {}, QPoint(45, 25));
    ASSERT_TRUE(b.button->value());
    QTest::mouseMove(b.button, QPoint(300, 200));
    EXPECT_FALSE(b.button->value());
    QTest::mouseRelease(b.button, Qt::LeftButton, {}, QPoint(300, 200));
    EXPECT_FALSE(b.button->value());
}

TEST(LitButton, SetValueEmitsOnChangeAndSilentlyDoesNotInBothModes) {
    for (LitButton::Mode mode : {LitButton::Mode::Toggle, LitButton::Mode::Momentary}) {
        LitButton button("REF", mode);
        QSignalSpy spy(&button, &LitButton::valueChanged);
        button.setValue(true);
        button.setValue(true);
        EXPECT_TRUE(button.value());
        EXPECT_EQ(values(spy), (QList<bool>{true}));
        button.setValueSilently(false);
        EXPECT_FALSE(button.value());
        button.setValueSilently(true);
        EXPECT_TRUE(button.value());
        EXPECT_EQ(spy.count(), 1);
        button.setValue(false);
        EXPECT_EQ(values(spy), (QList<bool>{true, false}));
    }
}

TEST(LitButton, SpaceWorksAMomentaryButtonDownAndUp) {
    ButtonOnPanel b(LitButton::Mode::Momentary);
    ASSERT_TRUE(test::showAndWait(b.panel.get()));
    b.button->setFocus();
    QSignalSpy spy(b.button, &LitButton::valueChanged);
    QTest::keyPress(b.button, Qt::Key_Space);
    EXPECT_TRUE(b.button->value());
    QTest::keyRelease(b.button, Qt::Key_Space);
    EXPECT_FALSE(b.button->value());
    EXPECT_EQ(values(spy), (QList<bool>{true, false}));
}

TEST(LitButton, EnterAndReturnWorkAMomentaryButtonLikeSpace) {
    ButtonOnPanel b(LitButton::Mode::Momentary);
    ASSERT_TRUE(test::showAndWait(b.panel.get()));
    b.button->setFocus();
    for (Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
        QSignalSpy spy(b.button, &LitButton::valueChanged);
        QTest::keyPress(b.button, key);
        EXPECT_TRUE(b.button->value());
        QTest::keyRelease(b.button, key);
        EXPECT_FALSE(b.button->value());
        EXPECT_EQ(values(spy), (QList<bool>{true, false}));
    }
}

TEST(LitButton, SpaceAndReturnFlipAToggleButtonOncePerKeystroke) {
    ButtonOnPanel b(LitButton::Mode::Toggle);
    ASSERT_TRUE(test::showAndWait(b.panel.get()));
    b.button->setFocus();
    QTest::keyClick(b.button, Qt::Key_Space);
    EXPECT_TRUE(b.button->value());
    QTest::keyClick(b.button, Qt::Key_Return);
    EXPECT_FALSE(b.button->value());
}

TEST(LitButton, DisabledButtonIgnoresMouseAndKeys) {
    ButtonOnPanel b(LitButton::Mode::Toggle);
    ASSERT_TRUE(test::showAndWait(b.panel.get()));
    b.button->setEnabled(false);
    QSignalSpy spy(b.button, &LitButton::valueChanged);
    QTest::mouseClick(b.button, Qt::LeftButton);
    QTest::keyClick(b.button, Qt::Key_Space);
    EXPECT_FALSE(b.button->value());
    EXPECT_EQ(spy.count(), 0);
}

TEST(LitButton, ChangingTheModeKeepsTheValue) {
    LitButton button("STORE", LitButton::Mode::Momentary);
    button.setValue(true);
    QSignalSpy spy(&button, &LitButton::valueChanged);
    button.setMode(LitButton::Mode::Toggle);
    EXPECT_TRUE(button.value());
    EXPECT_TRUE(button.isChecked());
    button.setMode(LitButton::Mode::Momentary);
    EXPECT_TRUE(button.value());
    EXPECT_EQ(spy.count(), 0);
}

TEST(LitButton, LampIsLitWhileTheValueIsOn) {
    ButtonOnPanel b(LitButton::Mode::Toggle);
    b.button->setLampColor(QColor(80, 255, 80));
    ASSERT_TRUE(test::showAndWait(b.panel.get()));
    const auto lit = [](const QColor& c) { return test::near(c, QColor(80, 255, 80), 50); };
    EXPECT_EQ(test::countPixels(b.button->grab().toImage(), b.button->rect(), lit), 0);
    b.button->setValue(true);
    EXPECT_GT(test::countPixels(b.button->grab().toImage(), b.button->rect(), lit), 40);
}

TEST(Led, LightsInItsColourAndIsDarkWhenOut) {
    auto panel = test::makePanel();
    auto* led = new Led(panel.get());
    led->setGeometry(10, 10, 30, 30);
    ASSERT_TRUE(test::showAndWait(panel.get()));
    QSignalSpy spy(led, &Led::valueChanged);
    const QPoint middle(15, 15);

    led->setOnColor(QColor(255, 255, 0)); // searching for the probe
    led->setValue(true);
    EXPECT_TRUE(led->value());
    EXPECT_EQ(led->stateText(), "lit yellow");
    QColor c = led->grab().toImage().pixelColor(middle + QPoint(3, 3));
    EXPECT_GT(c.red(), 200);
    EXPECT_GT(c.green(), 200);
    EXPECT_LT(c.blue(), 120);

    led->setOnColor(QColor(0, 255, 0)); // running
    EXPECT_EQ(led->stateText(), "lit green");
    c = led->grab().toImage().pixelColor(middle + QPoint(3, 3));
    EXPECT_LT(c.red(), 120);
    EXPECT_GT(c.green(), 200);

    led->setValue(false);
    EXPECT_EQ(led->stateText(), "out");
    c = led->grab().toImage().pixelColor(middle + QPoint(3, 3));
    EXPECT_LT(qMax(c.red(), qMax(c.green(), c.blue())), 110);
    EXPECT_EQ(values(spy), (QList<bool>{true, false}));
}
