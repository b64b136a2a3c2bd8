// The front panel of the main window: every control with its name, caption and place.
//
// Controls sit at fixed places of an 800 x 600 pixel (12000 x 9000 twips) design; the
// elastic layout scales them with the window.
#include "app/frmMain.h"

#include "display/GraphNames.h"
#include "instrument/DecodeTables.h"
#include "support/TextFit.h"
#include "widgets/IndicatorSlide.h"
#include "widgets/Knob.h"
#include "widgets/Led.h"
#include "widgets/LitButton.h"
#include "widgets/PanelLook.h"
#include "widgets/ScopeGraph.h"
#include "widgets/Slide.h"

#include <QEvent>
#include <QGroupBox>
#include <QPointer>
#include <QStatusBar>

namespace zorvik {

namespace {

/// Gives the status bar and its panels the font of `source` whenever that changes. The elastic
/// layout scales the fonts of the panel's controls with the window; the status bar, which the
/// main window lays out itself, follows a caption of the panel designed in the same type.
class FollowFont : public QObject {
public:
    FollowFont(QWidget* source, QWidget* target)
        : QObject(target), source_(source), target_(target) {
        source->installEventFilter(this);
    }
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (watched == source_ && event->type() == QEvent::FontChange && target_) {
            target_->setFont(source_->font());
            for (QLabel* panel : target_->findChildren<QLabel*>())
                panel->setFont(source_->font());
        }
        return false;
    }

private:
    QPointer<QWidget> source_;
    QPointer<QWidget> target_;
};

/// Keeps a frame's caption sitting across the frame's top line at every type size: the space
/// above the frame and the caption's indent follow the frame's font, which the elastic layout
/// scales with the window.
class CaptionFollowsFont : public QObject {
public:
    explicit CaptionFollowsFont(QGroupBox* frame) : QObject(frame), frame_(frame) {
        frame->installEventFilter(this);
        apply();
    }
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (watched == frame_ && event->type() == QEvent::FontChange)
            apply();
        return false;
    }

private:
    void apply() {
        const int half = (QFontMetrics(frame_->font()).height() + 1) / 2;
        if (half == applied_)
            return; // the style sheet below leaves the font alone, so this does not recur
        applied_ = half;
        frame_->setStyleSheet(QString("QGroupBox { margin-top: %1px; }"
                                      " QGroupBox::title { left: %2px; padding: 0 %3px; }")
                                  .arg(half)
                                  .arg(half + 2)
                                  .arg(qMax(3, half / 3)));
    }

    QGroupBox* frame_;
    int applied_ = -1;
};

/// Gives a control its name and accessible name, places it and marks it for the elastic
/// layout.
template <typename W> W* place(W* w, const char* name, const QString& accessible, QRect r) {
    w->setObjectName(name);
    if (!accessible.isEmpty())
        w->setAccessibleName(accessible);
    w->setGeometry(r);
    w->setProperty("elasticControl", true);
    return w;
}

QGroupBox* frame(QWidget* parent, const char* name, const QString& title, QRect r) {
    auto* f = place(new QGroupBox(title, parent), name, title, r);
    f->setFlat(false);
    new CaptionFollowsFont(f);
    return f;
}

QLabel* label(QWidget* parent, const char* name, const QString& text, QRect r,
              Qt::Alignment align = Qt::AlignCenter) {
    auto* l = place(new QLabel(text, parent), name, QString(), r);
    l->setAlignment(align);
    return l;
}

/// The dark front panel: panel colour, light captions, framed groups, lit readouts. Only
/// colours are set here: the elastic layout scales each control's own font.
void applyPanelLook(QWidget* panel) {
    QPalette pal = panel->palette();
    pal.setColor(QPalette::Window, PanelLook::panelColor());
    pal.setColor(QPalette::WindowText, PanelLook::textColor());
    panel->setPalette(pal);
    panel->setAutoFillBackground(true);
    panel->setStyleSheet(
        "QGroupBox { color: rgb(236,236,228); border: 1px solid rgb(96,100,108);"
        " border-radius: 6px; }"
        "QGroupBox::title { subcontrol-origin: margin; }"
        "QLabel { color: rgb(236,236,228); }"
        "QLabel[readout=\"true\"] { color: rgb(120,255,120); background: rgb(8,20,10);"
        " border: 1px solid rgb(70,74,80); border-radius: 3px; }");
}

QStringList toList(const auto& labels) {
    QStringList out;
    for (const auto& l : labels)
        out << QString::fromUtf8(l.data(), static_cast<qsizetype>(l.size()));
    return out;
}

} // namespace

void frmMain::buildPanel() {
    auto* panel = new QWidget(this);
    panel->setObjectName("panel");
    setCentralWidget(panel);
    applyPanelLook(panel);

    // The graph with its side scale and the pan slide below it.
    CWGraph1 = place(new ScopeGraph(panel), "CWGraph1", "Trace display", {10, 10, 496, 330});
    CWGraph1->setAccessibleDescription("Oscilloscope graph: 10 divisions wide");
    // The panel addresses its graph and scales by the names of GraphNames.h only: a name they
    // do not know is a mistake, reported instead of passing unnoticed.
    CWGraph1->setStrictNames(true);
    CWSTrigInd = place(new IndicatorSlide(panel), "CWSTrigInd", "Trigger level and zero",
                       {508, 10, 38, 330});
    CWSTrigInd->setStrictNames(true);
    CWSTrigInd->setRange(-4, 4);
    CWSTrigInd->addPointer(names::kTrigLvl, "T");
    CWSTrigInd->addPointer(names::kChaZero, "0");
    CWSTrigInd->alignTrackWith(CWGraph1);
    CWSPan = place(new Slide(Qt::Horizontal, panel), "CWSPan", "PAN", {10, 342, 496, 32});
    CWSPan->setRange(0, 100);
    CWSPan->setSteps(0.5, 10);
    QLabel* lblPan =
        label(panel, "lblPan", "PAN", {510, 350, 40, 16}, Qt::AlignLeft | Qt::AlignVCenter);

    // Cursor readouts.
    const char* headings[] = {"VOLTS", "TIME", "FREQUENCY"};
    const char* headingNames[] = {"lblVoltsHeading", "lblTimeHeading", "lblFrequencyHeading"};
    QLabel** readouts[] = {&lblCVoltage, &lblCTime, &lblCFrequency};
    const char* readoutNames[] = {"lblCVoltage", "lblCTime", "lblCFrequency"};
    const char* designCaptions[] = {"Volts", "Time", "Freq."};
    for (int i = 0; i < 3; ++i) {
        const int x = 10 + i * 168;
        label(panel, headingNames[i], headings[i], {x, 378, 160, 16});
        QLabel* r = label(panel, readoutNames[i], designCaptions[i], {x, 394, 160, 30});
        r->setProperty("readout", true);
        QFont f("DejaVu Sans Mono");
        f.setStyleHint(QFont::Monospace);
        f.setPointSize(12);
        f.setBold(true);
        r->setFont(f);
        // The type of a readout is chosen for the longest reading it shows.
        r->setProperty(TextFit::kWidestTextProperty, "-999.999 mSec");
        r->setAccessibleName(designCaptions[i]);
        r->setAccessibleDescription(headings[i]);
        *readouts[i] = r;
    }

    // Control buttons.
    struct ButtonDef {
        LitButton** target;
        const char* name;
        const char* caption;
        LitButton::Mode mode;
    };
    const ButtonDef buttons[] = {
        {&CWBFile, "CWBFile", "FILE", LitButton::Mode::Momentary},
        {&CWBHelp, "CWBHelp", "HELP", LitButton::Mode::Momentary},
        {&CWBMenu, "CWBMenu", "MENU", LitButton::Mode::Momentary},
        {&CWBPrint, "CWBPrint", "PRINT", LitButton::Mode::Momentary},
        {&CWBVCursors, "CWBVCursors", "V-CURS", LitButton::Mode::Toggle},
        {&CWBHCursors, "CWBHCursors", "H-CURS", LitButton::Mode::Toggle},
        {&CWBRef, "CWBRef", "REF", LitButton::Mode::Toggle},
    };
    for (int i = 0; i < 7; ++i) {
        const auto& b = buttons[i];
        *b.target = place(new LitButton(b.caption, b.mode, panel), b.name, b.caption,
                          {10 + i * 71, 432, 65, 44});
        (*b.target)->setLampVisible(b.mode == LitButton::Mode::Toggle);
    }
    CWBPrint->setEnabled(false);

    // POWER with its lamp, and STORE.
    auto* fraStatus = frame(panel, "fraStatus", QString(), {560, 6, 112, 78});
    CWBPwr = place(new LitButton("POWER", LitButton::Mode::Toggle, fraStatus), "CWBPwr", "POWER",
                   {8, 14, 66, 54});
    CWBPwr->setLampVisible(false);
    // Where a new user starts: the tool tip says what POWER does, and the button has the
    // keyboard focus when the window opens, so Space switches the probe on too.
    const QString powerHint =
        "Switch the probe on: Zorvik looks for it on COM1 to COM8 (the lamp is yellow), then "
        "shows its live trace (the lamp is green). Press again to switch off.";
    CWBPwr->setToolTip(powerHint);
    CWBPwr->setAccessibleDescription(powerHint);
    CWBPwrLed = place(new Led(fraStatus), "CWBPwrLed", "POWER lamp", {80, 29, 24, 24});
    auto* fraStore = frame(panel, "fraStore", QString(), {678, 6, 112, 78});
    CWBStoreRef = place(new LitButton("STORE", LitButton::Mode::Toggle, fraStore), "CWBStoreRef",
                        "STORE", {10, 14, 92, 54});

    // H-SCALE.
    CWKTimeRange = place(new Knob(panel), "CWKTimeRange", "H-SCALE", {560, 88, 230, 220});
    CWKTimeRange->setHeading("H-SCALE sec./ div.");
    CWKTimeRange->setPositionLabels({"200n", "500n", "1u", "2u", "5u", "10u", "20u", "50u", "100u",
                                     "200u", "500u", "1m", "2m", "5m", "10m", "20m"});

    // Channel A: V-SCALE, offset, invert and calibration.
    auto* fraCHA = frame(panel, "fraCHA", "CH A", {560, 312, 230, 262});
    CWKChaLvl = place(new Knob(fraCHA), "CWKChaLvl", "V-SCALE", {4, 20, 154, 170});
    CWKChaLvl->setHeading("V-SCALE volts / div.");
    CWKChaLvl->setNeedleName("ChaLvlSel");
    CWKChaLvl->setPositionLabels({" 20", " 10", " 5", " 2", " 1", " .5", " .2"});
    CWSCHaOffset =
        place(new Slide(Qt::Vertical, fraCHA), "CWSCHaOffset", "OFFSET", {164, 20, 58, 160});
    CWSCHaOffset->setRange(-4, 4);
    CWSCHaOffset->setSteps(0.1, 1);
    label(fraCHA, "lblOffset", "OFFSET", {160, 182, 66, 14});
    CWBChaInv = place(new LitButton("INVERT", LitButton::Mode::Toggle, fraCHA), "CWBChaInv",
                      "INVERT", {6, 214, 76, 34});
    CWBChaInv->setLampVisible(false);
    CWBChaInvLed = place(new Led(fraCHA), "CWBChaInvLed", "INVERT lamp", {86, 223, 16, 16});
    CWBCHaCal = place(new LitButton("CALX", LitButton::Mode::Momentary, fraCHA), "CWBCHaCal",
                      "CALX", {118, 214, 76, 34});
    CWBCHaCal->setLampVisible(false);
    CWBChaCalLed = place(new Led(fraCHA), "CWBChaCalLed", "CALX lamp", {198, 223, 16, 16});
    CWBChaCalLed->setOnColor(QColor(255, 60, 40));

    // The probe's switches, shown as they are reported.
    auto* fraRange = frame(panel, "fraRange", "RANGE", {10, 484, 150, 90});
    CWSRange = place(new IndicatorSlide(fraRange), "CWSRange", "RANGE", {6, 22, 138, 62});
    CWSRange->setOrientation(Qt::Horizontal);
    CWSRange->setPositionLabels(toList(kRangeLabels));
    auto* fraCoupling = frame(panel, "fraCoupling", "COUPLING", {168, 484, 150, 90});
    CWSCoupling =
        place(new IndicatorSlide(fraCoupling), "CWSCoupling", "COUPLING", {6, 22, 138, 62});
    CWSCoupling->setOrientation(Qt::Horizontal);
    CWSCoupling->setPositionLabels(toList(kCouplingLabels));
    auto* fraTrig = frame(panel, "fraTrig", "TRIGGER", {326, 484, 220, 90});
    CWSTrigger = place(new IndicatorSlide(fraTrig), "CWSTrigger", "TRIGGER", {6, 22, 208, 62});
    CWSTrigger->setStrictNames(true);
    CWSTrigger->setOrientation(Qt::Horizontal);
    CWSTrigger->setPositionLabels(toList(kTriggerLabels));
    CWSTrigger->addPointer(names::kPointer1);
    CWSTrigger->setPointerVisible(names::kPointer1, false);
    CWSTrigger->addPointerStateMark(names::kPointer1, kPointerWaiting, "WAIT", QColor(255, 176, 0));
    CWSTrigger->addPointerStateMark(names::kPointer1, kPointerTriggered, "TRIG", QColor(0, 230, 0));

    // Status bar with its three keyed panels.
    auto* bar = new QStatusBar(this);
    bar->setObjectName("StatusBar1");
    bar->setSizeGripEnabled(false);
    bar->setStyleSheet("QStatusBar { background: rgb(28,30,33); }"
                       "QStatusBar QLabel { color: rgb(236,236,228); padding: 0 6px; }");
    setStatusBar(bar);
    new FollowFont(lblPan, bar);
    QLabel** panels[] = {&sbrBaudRate, &sbrComPort, &sbrSampleRate};
    const char* keys[] = {"sbrBaudRate", "sbrComPort", "sbrSampleRate"};
    for (int i = 0; i < 3; ++i) {
        auto* p = new QLabel(bar);
        p->setObjectName(keys[i]);
        p->setMinimumWidth(i == 2 ? 200 : 120);
        bar->addWidget(p, i == 2 ? 1 : 0);
        *panels[i] = p;
    }
}

void frmMain::connectPanel() {
    connect(CWBPwr, &LitButton::valueChanged, this, &frmMain::CWBPwr_ValueChanged);
    connect(CWKTimeRange, &Knob::valueChanged, this, &frmMain::CWKTimeRange_ValueChanged);
    connect(CWKChaLvl, &Knob::valueChanged, this, &frmMain::CWKChaLvl_ValueChanged);
    connect(CWSCHaOffset, &Slide::valueChanged, this, &frmMain::CWSCHaOffset_ValueChanged);
    // The "0" pointer beside the graph marks where the offset puts 0 V: it stands at the
    // offset slide's value from the start and follows the slide whenever it is set, also when
    // a waveform file sets it without running its handler.
    CWSTrigInd->setPointerValue(names::kChaZero, CWSCHaOffset->value());
    connect(CWSCHaOffset, &Slide::positionChanged, this,
            [this](double value) { CWSTrigInd->setPointerValue(names::kChaZero, value); });
    connect(CWBCHaCal, &LitButton::valueChanged, this, &frmMain::CWBCHaCal_ValueChanged);
    connect(CWBChaInv, &LitButton::valueChanged, this, &frmMain::CWBChaInv_ValueChanged);
    connect(CWSPan, &Slide::valueChanged, this, &frmMain::CWSPan_ValueChanged);
    connect(CWBVCursors, &LitButton::valueChanged, this, &frmMain::CWBVCursors_ValueChanged);
    connect(CWBHCursors, &LitButton::valueChanged, this, &frmMain::CWBHCursors_ValueChanged);
    connect(CWBStoreRef, &LitButton::valueChanged, this, &frmMain::CWBStoreRef_ValueChanged);
    connect(CWBRef, &LitButton::valueChanged, this, &frmMain::CWBRef_ValueChanged);
    connect(CWBFile, &LitButton::valueChanged, this, &frmMain::CWBFile_ValueChanged);
    connect(CWBMenu, &LitButton::valueChanged, this, &frmMain::CWBMenu_ValueChanged);
    connect(CWBHelp, &LitButton::valueChanged, this, &frmMain::CWBHelp_ValueChanged);
    connect(CWBPrint, &LitButton::valueChanged, this, &frmMain::CWBPrint_ValueChanged);
    connect(CWGraph1, &ScopeGraph::cursorChanged, this, &frmMain::CWGraph1_CursorChange);
}

} // namespace zorvik
