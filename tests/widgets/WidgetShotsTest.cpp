// Writes a picture of every panel widget at 100 % to build/widget-shots/ for a person to check,
// and checks that each picture shows a drawn widget: many colours, most of them not the
// panel's, inside the widget's place, and the panel's colour around it.
#include "PanelTestSupport.h"
#include "widgets/IndicatorSlide.h"
#include "widgets/Knob.h"
#include "widgets/Led.h"
#include "widgets/LitButton.h"
#include "widgets/ScopeGraph.h"
#include "widgets/Slide.h"

#include <QDir>
#include <QSet>
#include <gtest/gtest.h>

#include <array>
#include <cmath>

using namespace zorvik;

namespace {

// Shows `widget` on a dark panel with a 10 px border, grabs the panel and saves it as `name`.
// With `focused`, the widget has the keyboard focus in the picture.
void shoot(const QString& name, std::unique_ptr<QWidget> panel, QWidget* widget, QSize size,
           bool focused = false) {
    panel->resize(size + QSize(20, 20));
    widget->setGeometry(10, 10, size.width(), size.height());
    ASSERT_TRUE(test::showAndWait(panel.get()));
    panel->activateWindow();
    if (focused)
        widget->setFocus();
    else
        panel->setFocus(); // a new window gives its first control the focus: take it away
    ASSERT_TRUE(QTest::qWaitFor([&] { return widget->hasFocus() == focused; }, 2000));
    if (auto* graph = qobject_cast<ScopeGraph*>(widget)) {
        ASSERT_TRUE(QTest::qWaitFor([&] { return !graph->redrawPending(); }, 2000));
    }
    ASSERT_TRUE(QDir().mkpath(ZORVIK_WIDGET_SHOTS));
    const QString path = QString(ZORVIK_WIDGET_SHOTS) + QLatin1Char('/') + name;
    const QImage image = panel->grab().toImage();
    ASSERT_TRUE(image.save(path));
    const QImage back(path);
    EXPECT_EQ(back.size(), size + QSize(20, 20)) << name.toStdString();
    // The border around the widget is the panel's colour; inside, the widget drew itself.
    const QRgb panelColour = image.pixel(2, 2);
    EXPECT_EQ(image.pixel(image.width() - 3, image.height() - 3), panelColour)
        << name.toStdString();
    QSet<QRgb> colours;
    qsizetype drawn = 0;
    for (int y = 10; y < 10 + size.height(); ++y) {
        for (int x = 10; x < 10 + size.width(); ++x) {
            const QRgb c = image.pixel(x, y);
            colours.insert(c);
            drawn += c != panelColour ? 1 : 0;
        }
    }
    EXPECT_GE(colours.size(), 8) << name.toStdString() << ": the widget looks blank";
    EXPECT_GE(drawn, qsizetype(size.width()) * size.height() / 20)
        << name.toStdString() << ": the widget drew almost nothing";
}

} // namespace

TEST(WidgetShots, Knobs) {
    {
        auto panel = test::makePanel();
        auto* knob = new Knob(panel.get());
        knob->setHeading("H-SCALE sec./ div.");
        knob->setPositionLabels({"200n", "500n", "1u", "2u", "5u", "10u", "20u", "50u", "100u",
                                 "200u", "500u", "1m", "2m", "5m", "10m", "20m"});
        knob->setValue(3);
        shoot("knob-hscale.png", std::move(panel), knob, QSize(190, 210));
    }
    {
        auto panel = test::makePanel();
        auto* knob = new Knob(panel.get());
        knob->setHeading("V-SCALE volts / div.");
        knob->setNeedleName("ChaLvlSel");
        knob->setPositionLabels({" 20", " 10", " 5", " 2", " 1", " .5", " .2"});
        knob->setValue(5);
        shoot("knob-vscale-focused.png", std::move(panel), knob, QSize(150, 170), true);
    }
}

TEST(WidgetShots, Slides) {
    {
        auto panel = test::makePanel();
        auto* slide = new Slide(Qt::Vertical, panel.get());
        slide->setRange(-4.0, 4.0);
        slide->setValue(1.5);
        shoot("slide-offset.png", std::move(panel), slide, QSize(70, 240));
    }
    {
        auto panel = test::makePanel();
        auto* pan = new Slide(Qt::Horizontal, panel.get());
        pan->setRange(0.0, 100.0);
        pan->setValue(30.0);
        shoot("slide-pan.png", std::move(panel), pan, QSize(420, 56));
    }
}

TEST(WidgetShots, Indicators) {
    const QColor amber(255, 176, 0);
    const QColor green(0, 230, 60);
    for (double state : {300.0, 0.0}) {
        auto panel = test::makePanel();
        auto* trigger = new IndicatorSlide(panel.get());
        trigger->setPositionLabels({"FR", "IN+", "IN-", "EX+", "EX-"});
        trigger->addPointer("Pointer-1");
        trigger->addPointerStateMark("Pointer-1", 300, "WAIT", amber);
        trigger->addPointerStateMark("Pointer-1", 0, "TRIG", green);
        trigger->setValue(2);
        trigger->setPointerValue("Pointer-1", state);
        shoot(state == 300.0 ? "indicator-trigger-wait.png" : "indicator-trigger-trig.png",
              std::move(panel), trigger, QSize(80, 170));
    }
    {
        auto panel = test::makePanel();
        auto* range = new IndicatorSlide(panel.get());
        range->setPositionLabels({"100", "10", "1"});
        range->setValue(2);
        shoot("indicator-range.png", std::move(panel), range, QSize(80, 110));
    }
    {
        auto panel = test::makePanel();
        auto* coupling = new IndicatorSlide(panel.get());
        coupling->setOrientation(Qt::Horizontal);
        coupling->setPositionLabels({"GND", "AC", "DC"});
        coupling->setValue(3);
        shoot("indicator-coupling-horizontal.png", std::move(panel), coupling, QSize(170, 60));
    }
    {
        auto panel = test::makePanel();
        auto* side = new IndicatorSlide(panel.get());
        side->setRange(-4, 4);
        side->addPointer("TrigLvl", "T", QColor(255, 150, 0));
        side->addPointer("CHa_Zero", "0", QColor(255, 255, 0));
        side->setPointerValue("TrigLvl", 1.25);
        side->setPointerValue("CHa_Zero", -0.5);
        shoot("indicator-side-scale.png", std::move(panel), side, QSize(36, 260));
    }
}

TEST(WidgetShots, ButtonsAndLamps) {
    auto panel = test::makePanel();
    auto* row = new QWidget(panel.get());
    auto* on = new LitButton("V-CURS", LitButton::Mode::Toggle, row);
    on->setGeometry(0, 0, 80, 44);
    on->setValue(true);
    auto* off = new LitButton("H-CURS", LitButton::Mode::Toggle, row);
    off->setGeometry(88, 0, 80, 44);
    auto* disabled = new LitButton("STORE", LitButton::Mode::Toggle, row);
    disabled->setGeometry(176, 0, 80, 44);
    disabled->setEnabled(false);
    auto* power = new LitButton("POWER", LitButton::Mode::Toggle, row);
    power->setGeometry(264, 0, 80, 44);
    power->setLampVisible(false);
    const std::array<QColor, 3> colours{QColor(255, 255, 0), QColor(0, 255, 0), QColor(0, 255, 0)};
    for (int i = 0; i < 3; ++i) {
        auto* led = new Led(row);
        led->setOnColor(colours[i]);
        led->setValue(i < 2);
        led->setGeometry(352 + i * 34, 8, 28, 28);
    }
    shoot("buttons-and-lamps.png", std::move(panel), row, QSize(456, 44));
}

TEST(WidgetShots, Graph) {
    auto panel = test::makePanel();
    auto* graph = new ScopeGraph(panel.get());
    std::array<float, 128> live{};
    std::array<float, 128> ref{};
    for (int i = 0; i < 128; ++i) {
        live[i] = static_cast<float>(2.5 * std::sin(i * 2 * M_PI / 40.0) + 0.5);
        ref[i] = static_cast<float>(i % 40 < 20 ? -1.5 : -3.0);
    }
    graph->plotY("CHa", live.data(), 128, 0.0, 10.0 / 127.0);
    graph->plotY("Ref", ref.data(), 128, 0.0, 10.0 / 127.0);
    graph->setCursorX("Cursor1", 1.0);
    graph->setCursorX("Cursor2", 6.0);
    graph->setCursorY("Cursor3", -3.0);
    graph->setCursorY("Cursor4", 3.0);
    for (const char* c : {"Cursor1", "Cursor2", "Cursor3", "Cursor4"})
        graph->setCursorVisible(c, true);
    graph->selectCursor("Cursor2");
    shoot("graph.png", std::move(panel), graph, QSize(500, 400));
}
