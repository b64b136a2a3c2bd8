// A manual demo of every panel widget on a dark 800 x 600 panel, with a moving trace.
// Run it to look at the widgets; --quit-after MS closes it by itself (for screenshots).
#include "widgets/IndicatorSlide.h"
#include "widgets/Knob.h"
#include "widgets/Led.h"
#include "widgets/LitButton.h"
#include "widgets/ScopeGraph.h"
#include "widgets/Slide.h"

#include <QApplication>
#include <QLabel>
#include <QTimer>

#include <array>
#include <cmath>

using namespace zorvik;

namespace {

QLabel* caption(const QString& text, QWidget* parent, QRect geometry) {
    auto* label = new QLabel(text, parent);
    label->setGeometry(geometry);
    label->setAlignment(Qt::AlignCenter);
    label->setStyleSheet("color: rgb(236, 236, 228);");
    return label;
}

} // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QWidget panel;
    panel.setWindowTitle("Zorvik widget gallery");
    QPalette pal = panel.palette();
    pal.setColor(QPalette::Window, QColor(38, 41, 46));
    panel.setPalette(pal);
    panel.setAutoFillBackground(true);
    panel.resize(800, 600);

    auto* graph = new ScopeGraph(&panel);
    graph->setGeometry(50, 20, 480, 384);
    auto* side = new IndicatorSlide(&panel);
    side->setRange(-4, 4);
    side->addPointer("TrigLvl", "T", QColor(255, 150, 0));
    side->addPointer("CHa_Zero", "0", QColor(255, 255, 0));
    side->setPointerValue("TrigLvl", 1.0);
    side->setPointerValue("CHa_Zero", 0.0);
    side->setGeometry(14, 10, 36, 404);
    side->alignTrackWith(graph);

    auto* pan = new Slide(Qt::Horizontal, &panel);
    pan->setRange(0, 100);
    pan->setSteps(1, 10);
    pan->setGeometry(50, 412, 480, 50);
    QObject::connect(pan, &Slide::valueChanged, graph, [graph](double v) {
        graph->setAxisMinimum("XAxis", v / 10.0);
        graph->setAxisMaximum("XAxis", graph->axisMinimum("XAxis") + 10.0);
    });

    auto* hscale = new Knob(&panel);
    hscale->setHeading("H-SCALE sec./ div.");
    hscale->setPositionLabels({"200n", "500n", "1u", "2u", "5u", "10u", "20u", "50u", "100u",
                               "200u", "500u", "1m", "2m", "5m", "10m", "20m"});
    hscale->setValue(3);
    hscale->setGeometry(550, 10, 190, 200);

    auto* vscale = new Knob(&panel);
    vscale->setHeading("V-SCALE volts / div.");
    vscale->setPositionLabels({" 20", " 10", " 5", " 2", " 1", " .5", " .2"});
    vscale->setGeometry(550, 220, 150, 160);
    auto* offset = new Slide(Qt::Vertical, &panel);
    offset->setRange(-4, 4);
    offset->setSteps(0.1, 1);
    offset->setGeometry(705, 220, 70, 180);
    QObject::connect(offset, &Slide::valueChanged, side,
                     [side](double v) { side->setPointerValue("CHa_Zero", v); });

    auto* range = new IndicatorSlide(&panel);
    range->setPositionLabels({"100", "10", "1"});
    range->setValue(2);
    range->setGeometry(550, 420, 70, 100);
    caption("RANGE", &panel, QRect(550, 520, 70, 18));
    auto* coupling = new IndicatorSlide(&panel);
    coupling->setPositionLabels({"GND", "AC", "DC"});
    coupling->setValue(3);
    coupling->setGeometry(625, 420, 70, 100);
    caption("COUPLING", &panel, QRect(620, 520, 80, 18));
    auto* trigger = new IndicatorSlide(&panel);
    trigger->setPositionLabels({"FR", "IN+", "IN-", "EX+", "EX-"});
    trigger->addPointer("Pointer-1");
    trigger->addPointerStateMark("Pointer-1", 300, "WAIT", QColor(255, 176, 0));
    trigger->addPointerStateMark("Pointer-1", 0, "TRIG", QColor(0, 230, 60));
    trigger->setValue(2);
    trigger->setGeometry(705, 410, 80, 145);
    caption("TRIGGER", &panel, QRect(705, 556, 80, 18));

    const QStringList names = {"FILE", "HELP", "MENU", "PRINT", "V-CURS", "H-CURS", "REF"};
    for (int i = 0; i < names.size(); ++i) {
        const bool latching = i >= 4;
        auto* b = new LitButton(
            names[i], latching ? LitButton::Mode::Toggle : LitButton::Mode::Momentary, &panel);
        b->setGeometry(20 + i * 74, 475, 70, 44);
        if (names[i] == "V-CURS")
            QObject::connect(b, &LitButton::valueChanged, graph, [graph](bool on) {
                const double m = graph->axisMinimum("XAxis");
                graph->setCursorX("Cursor1", m + 1);
                graph->setCursorX("Cursor2", m + 2);
                graph->setCursorVisible("Cursor1", on);
                graph->setCursorVisible("Cursor2", on);
            });
        if (names[i] == "H-CURS")
            QObject::connect(b, &LitButton::valueChanged, graph, [graph](bool on) {
                const double m = graph->axisMinimum("YAxis-1");
                graph->setCursorY("Cursor3", m + 1);
                graph->setCursorY("Cursor4", m + 2);
                graph->setCursorVisible("Cursor3", on);
                graph->setCursorVisible("Cursor4", on);
            });
    }
    auto* power = new LitButton("POWER", LitButton::Mode::Toggle, &panel);
    power->setLampVisible(false);
    power->setGeometry(20, 530, 70, 44);
    auto* powerLed = new Led(&panel);
    powerLed->setGeometry(96, 538, 28, 28);
    QObject::connect(power, &LitButton::valueChanged, powerLed, [powerLed](bool on) {
        powerLed->setOnColor(QColor(0, 255, 0));
        powerLed->setValue(on);
    });
    auto* store = new LitButton("STORE", LitButton::Mode::Toggle, &panel);
    store->setEnabled(false);
    store->setGeometry(140, 530, 70, 44);

    // A live trace at 50 frames a second and a trigger lamp that waits now and then.
    int frame = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        std::array<float, 128> ys{};
        for (int i = 0; i < 128; ++i)
            ys[i] =
                static_cast<float>(2.5 * std::sin((i + frame) * 2 * M_PI / 40.0) + offset->value());
        graph->plotY("CHa", ys.data(), 128, 0.0, 0.25);
        trigger->setPointerValue("Pointer-1", (frame / 50) % 3 == 2 ? 300 : 0);
        ++frame;
    });
    timer.start(20);

    const int quit = app.arguments().indexOf("--quit-after");
    if (quit > 0 && quit + 1 < app.arguments().size())
        QTimer::singleShot(app.arguments().at(quit + 1).toInt(), &app, &QApplication::quit);
    panel.show();
    return app.exec();
}
