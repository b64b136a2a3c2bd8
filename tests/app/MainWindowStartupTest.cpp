// Start-up, resizing and shutdown of the main window.
#include "app/MainWindowFixture.h"
#include "dialogs/frmOptions.h"
#include "printing/frmPreview.h"
#include "support/ModalRunner.h"
#include "support/WindowSteps.h"
#include "widgets/IndicatorSlide.h"
#include "widgets/Knob.h"
#include "widgets/Led.h"
#include "widgets/LitButton.h"
#include "widgets/ScopeGraph.h"

#include <QApplication>
#include <QCoreApplication>
#include <QDialog>
#include <QFile>
#include <QPointer>
#include <QResizeEvent>
#include <QScreen>
#include <QTest>

using namespace zorvik;
using zorvik::test::MainWindowFixture;

using MainWindowStartup = MainWindowFixture;

// Measured by the outer frame, as the minimum size is (this platform draws a frame of 2 pixels
// around each window).
TEST_F(MainWindowStartup, WindowIs12000By9000TwipsCentredOnTheScreen) {
    frmMain& w = start();
    ASSERT_TRUE(QTest::qWaitFor([&] { return w.frameGeometry().size() == QSize(800, 600); }, 5000))
        << w.frameGeometry().width() << " x " << w.frameGeometry().height();
    const QRect screen = w.screen()->geometry();
    EXPECT_EQ(w.frameGeometry().x(), screen.x() + (screen.width() - 800) / 2);
    EXPECT_EQ(w.frameGeometry().y(), screen.y() + (screen.height() - 600) / 2);
}

TEST_F(MainWindowStartup, DefaultsOfTheLinkAndTheScales) {
    frmMain& w = start();
    EXPECT_EQ(w.lngBaudRate, 19200);
    EXPECT_EQ(w.ComPort, 1);
    EXPECT_TRUE(w.blnAutoPort);
    EXPECT_FALSE(w.model().blnLiveData);
    EXPECT_FALSE(w.model().blnRefLoaded);
    EXPECT_EQ(w.panel().CWKTimeRange->value(), 3);
    EXPECT_EQ(w.model().lngDivPerSec, 1000000);
    EXPECT_EQ(w.model().intTimeUnit, 1);
    EXPECT_EQ(w.panel().CWKChaLvl->value(), 1);
    EXPECT_EQ(w.model().sngChaGain, 0.05f);
    EXPECT_FALSE(w.panel().CWBStoreRef->isEnabled());
    EXPECT_FALSE(w.panel().CWBPwr->value());
}

TEST_F(MainWindowStartup, VScaleKnobGetsItsSevenLabels) {
    frmMain& w = start();
    EXPECT_EQ(w.panel().CWKChaLvl->positionLabels(),
              QStringList({"20 ", "10 ", "5 ", "2 ", "1 ", ".5 ", ".2 "}));
}

TEST_F(MainWindowStartup, HScaleKnobHasSixteenLabelledPositions) {
    frmMain& w = start();
    EXPECT_EQ(w.panel().CWKTimeRange->positionLabels(),
              QStringList({"200n", "500n", "1u", "2u", "5u", "10u", "20u", "50u", "100u", "200u",
                           "500u", "1m", "2m", "5m", "10m", "20m"}));
}

TEST_F(MainWindowStartup, StatusBarPanelsHoldTheBareLabels) {
    frmMain& w = start();
    EXPECT_EQ(w.panel().sbrBaudRate->text(), "Baud: ");
    EXPECT_EQ(w.panel().sbrComPort->text(), "Com: ");
    EXPECT_EQ(w.panel().sbrSampleRate->text(), "Sample Rate: ");
    EXPECT_EQ(w.panel().sbrBaudRate->objectName(), "sbrBaudRate");
    EXPECT_EQ(w.panel().sbrComPort->objectName(), "sbrComPort");
    EXPECT_EQ(w.panel().sbrSampleRate->objectName(), "sbrSampleRate");
}

TEST_F(MainWindowStartup, IndicatorPointersAreHidden) {
    frmMain& w = start();
    EXPECT_FALSE(w.panel().CWSTrigger->pointerVisible());
    EXPECT_FALSE(w.panel().CWSCoupling->pointerVisible());
    EXPECT_FALSE(w.panel().CWSRange->pointerVisible());
    EXPECT_FALSE(w.panel().CWSTrigInd->pointerVisible("TrigLvl"));
}

TEST_F(MainWindowStartup, DesignColoursAreRecordedAsDefaults) {
    frmMain& w = start();
    EXPECT_EQ(w.panel().defaultColors.display, w.panel().CWGraph1->plotAreaColor());
    EXPECT_EQ(w.panel().defaultColors.primaryTrace, w.panel().CWGraph1->plotColor("CHa"));
    EXPECT_EQ(w.panel().defaultColors.referenceTrace, w.panel().CWGraph1->plotColor("Ref"));
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(w.panel().defaultColors.cursors[static_cast<std::size_t>(i)],
                  w.panel().CWGraph1->cursorColor(QString("Cursor%1").arg(i + 1)));
}

TEST_F(MainWindowStartup, InstrumentIsNotContactedAtStartUp) {
    start({1, 2, 3});
    EXPECT_TRUE(fake.calls.isEmpty());
}

TEST_F(MainWindowStartup, EveryControlCarriesItsNameAndCaption) {
    frmMain& w = start();
    const std::pair<const char*, const char*> buttons[] = {
        {"CWBFile", "FILE"},     {"CWBHelp", "HELP"},       {"CWBMenu", "MENU"},
        {"CWBPrint", "PRINT"},   {"CWBVCursors", "V-CURS"}, {"CWBHCursors", "H-CURS"},
        {"CWBRef", "REF"},       {"CWBStoreRef", "STORE"},  {"CWBPwr", "POWER"},
        {"CWBChaInv", "INVERT"}, {"CWBCHaCal", "CALX"},
    };
    for (const auto& [name, caption] : buttons) {
        auto* b = w.findChild<LitButton*>(name);
        ASSERT_NE(b, nullptr) << name;
        EXPECT_EQ(b->text(), caption) << name;
        EXPECT_EQ(b->accessibleName(), caption) << name;
    }
    EXPECT_EQ(w.panel().CWKTimeRange->heading(), "H-SCALE sec./ div.");
    EXPECT_EQ(w.panel().CWKChaLvl->heading(), "V-SCALE volts / div.");
    EXPECT_EQ(w.panel().CWKChaLvl->needleName(), "ChaLvlSel");
    for (const char* name :
         {"CWGraph1",     "CWSTrigInd",   "CWSPan",       "CWBPwrLed", "CWSRange",
          "CWSCoupling",  "CWSTrigger",   "CWKTimeRange", "CWKChaLvl", "CWSCHaOffset",
          "CWBChaInvLed", "CWBChaCalLed", "lblCVoltage",  "lblCTime",  "lblCFrequency",
          "fraStore",     "fraRange",     "fraCoupling",  "fraTrig",   "fraStatus",
          "fraCHA",       "StatusBar1"})
        EXPECT_NE(w.findChild<QWidget*>(name), nullptr) << name;
    EXPECT_EQ(w.panel().CWSRange->positionLabels(), QStringList({"100", "10", "1"}));
    EXPECT_EQ(w.panel().CWSCoupling->positionLabels(), QStringList({"GND", "AC", "DC"}));
    EXPECT_EQ(w.panel().CWSTrigger->positionLabels(),
              QStringList({"FR", "IN+", "IN-", "EX+", "EX-"}));
    // Start-up computes the vertical scale, which ends with the readouts: both cursor pairs
    // are off, so no measurement is shown.
    EXPECT_EQ(w.panel().lblCVoltage->text(), "");
    EXPECT_EQ(w.panel().lblCTime->text(), "");
    EXPECT_EQ(w.panel().lblCFrequency->text(), "");
    EXPECT_EQ(w.panel().lblCVoltage->accessibleDescription(), "VOLTS");
    EXPECT_EQ(w.panel().lblCTime->accessibleDescription(), "TIME");
    EXPECT_EQ(w.panel().lblCFrequency->accessibleDescription(), "FREQUENCY");
}

// The sizes the window goes through after a resize, by its outer frame (the measure of the
// minimum), recorded from its resize events.
class OuterSizes : public QObject {
public:
    explicit OuterSizes(QWidget& w) : w_(w) { w.installEventFilter(this); }
    QList<QSize> sizes;

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Resize)
            sizes << static_cast<QResizeEvent*>(event)->size() +
                         (w_.frameGeometry().size() - w_.geometry().size());
        return false;
    }

private:
    QWidget& w_;
};

TEST_F(MainWindowStartup, NarrowerThan12000TwipsSnapsWidthBackWithoutTouchingHeight) {
    frmMain& w = start();
    const QSize frame = w.frameGeometry().size() - w.size();
    w.resize(QSize(1000, 700) - frame);
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return w.frameGeometry().size() == QSize(1000, 700); }, 5000));
    OuterSizes seen(w);
    w.resize(QSize(600, 700) - frame);
    ASSERT_TRUE(QTest::qWaitFor([&] { return w.frameGeometry().width() == 800; }, 5000))
        << w.frameGeometry().width();
    EXPECT_EQ(w.frameGeometry().height(), 700);
    EXPECT_EQ(seen.sizes, QList<QSize>({{600, 700}, {800, 700}}));
}

// The width is put right first; the resize that causes brings the height check, so a window
// both too narrow and too low reaches the minimum in two passes.
TEST_F(MainWindowStartup, TooNarrowAndTooLowReachesMinimumInTwoPasses) {
    frmMain& w = start();
    const QSize frame = w.frameGeometry().size() - w.size();
    OuterSizes seen(w);
    w.resize(QSize(500, 400) - frame);
    ASSERT_TRUE(QTest::qWaitFor([&] { return w.frameGeometry().size() == QSize(800, 600); }, 5000))
        << w.frameGeometry().width() << " x " << w.frameGeometry().height();
    EXPECT_EQ(seen.sizes, QList<QSize>({{500, 400}, {800, 400}, {800, 600}}));
}

// A resize that reaches the window while it is minimised neither corrects its size nor lays
// it out: a control moved by hand stays where it was put.
TEST_F(MainWindowStartup, MinimisedWindowIsNotCorrected) {
    frmMain& w = start();
    w.resize(1000, 700);
    ASSERT_TRUE(QTest::qWaitFor([&] { return w.size() == QSize(1000, 700); }, 5000));
    const QRect laidOut = w.panel().CWBPwr->geometry();
    w.panel().CWBPwr->move(3, 4);
    w.setWindowState(Qt::WindowMinimized);
    ASSERT_TRUE(w.isMinimized());
    QResizeEvent tiny(QSize(160, 30), w.size());
    QCoreApplication::sendEvent(&w, &tiny);
    for (int pass = 0; pass < 3; ++pass)
        QCoreApplication::processEvents();
    EXPECT_EQ(w.panel().CWBPwr->pos(), QPoint(3, 4));
    EXPECT_EQ(w.size(), QSize(1000, 700));
    // Back to normal, the layout puts the control in its place again.
    w.setWindowState(Qt::WindowNoState);
    ASSERT_TRUE(QTest::qWaitFor([&] { return w.panel().CWBPwr->geometry() == laidOut; }, 5000));
}

TEST_F(MainWindowStartup, ShutdownWritesTheSettingsFile) {
    start();
    ASSERT_FALSE(QFile::exists(settingsPath()));
    window->close();
    ASSERT_TRUE(QFile::exists(settingsPath()));
    QFile f(settingsPath());
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    const QByteArray text = f.readAll();
    EXPECT_TRUE(text.startsWith("[SETTINGS]\r\nHscaleindex=3\r\nVscaleindex=1\r\nChaoffset=0\r\n"))
        << text.toStdString();
}

// Closing the main window while the real Options window is open (MENU) closes it too, and
// the settings are written.
TEST_F(MainWindowStartup, ClosingWithTheOptionsWindowOpenClosesItToo) {
    frmMain& w = start();
    QPointer<frmOptions> options;
    bool closedFromInside = false;
    test::whenVisible<frmOptions>([&](frmOptions* form) {
        options = form;
        w.close();
        closedFromInside = true;
    });
    w.panel().CWBMenu->setValue(true);
    ASSERT_TRUE(QTest::qWaitFor([&] { return closedFromInside; }, 5000));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !options || !options->isVisible(); }, 5000));
    EXPECT_FALSE(w.isVisible());
    EXPECT_TRUE(QFile::exists(settingsPath()));
}

// The same with the real print preview open (PRINT with a stored reference).
TEST_F(MainWindowStartup, ClosingWithThePrintPreviewOpenClosesItToo) {
    frmMain& w = start();
    QPointer<frmPreview> preview;
    bool closedFromInside = false;
    setModalRunner({});
    test::whenVisible<frmPreview>([&](frmPreview* form) {
        preview = form;
        w.close();
        closedFromInside = true;
    });
    w.CWBPrint_ValueChanged(false);
    ASSERT_TRUE(QTest::qWaitFor([&] { return closedFromInside; }, 5000));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !preview || !preview->isVisible(); }, 5000));
    EXPECT_FALSE(w.isVisible());
    EXPECT_TRUE(QFile::exists(settingsPath()));
}

// A new user's first question is where to begin: POWER says what it does (the focus it has
// when the window opens is checked on a real desktop, tests/desktop).
TEST_F(MainWindowStartup, PowerSaysWhatItDoes) {
    frmMain& w = start();
    EXPECT_EQ(w.panel().CWBPwr->toolTip(),
              "Switch the probe on: Zorvik looks for it on COM1 to COM8 (the lamp is yellow), "
              "then shows its live trace (the lamp is green). Press again to switch off.");
    EXPECT_EQ(w.panel().CWBPwr->accessibleDescription(), w.panel().CWBPwr->toolTip());
}
