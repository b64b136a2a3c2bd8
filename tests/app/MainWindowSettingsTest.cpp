// The settings file through the main window: restored at start-up, saved at shutdown.
#include "app/MainWindowFixture.h"
#include "widgets/Knob.h"
#include "widgets/LitButton.h"
#include "widgets/ScopeGraph.h"
#include "widgets/Slide.h"

#include <QFile>

using namespace zorvik;
using zorvik::test::MainWindowFixture;

namespace {

class MainWindowSettings : public MainWindowFixture {
protected:
    QByteArray settingsText() const {
        QFile f(settingsPath());
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }
    void writeSettings(const QByteArray& text) const {
        QFile f(settingsPath());
        ASSERT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
        f.write(text);
    }
    void restart() {
        window->close();
        window.reset();
        start();
    }
};

} // namespace

TEST_F(MainWindowSettings, FirstShutdownWritesAllThirteenKeysInThreeSections) {
    start();
    window->close();
    EXPECT_EQ(settingsText().toStdString(), std::string("[SETTINGS]\r\n"
                                                        "Hscaleindex=3\r\n"
                                                        "Vscaleindex=1\r\n"
                                                        "Chaoffset=0\r\n"
                                                        "[COLORS]\r\n"
                                                        "Cursor1=16734975\r\n"
                                                        "Cursor2=16734975\r\n"
                                                        "Cursor3=10551130\r\n"
                                                        "Cursor4=10551130\r\n"
                                                        "Display=0\r\n"
                                                        "Primarytrace=65535\r\n"
                                                        "Referencetrace=16762880\r\n"
                                                        "[BUTTONS]\r\n"
                                                        "Hcursors=False\r\n"
                                                        "Vcursors=False\r\n"
                                                        "Invert=False\r\n"));
}

TEST_F(MainWindowSettings, StartupShutdownStartupRestoresKnobsOffsetColoursAndButtons) {
    frmMain& w = start();
    w.panel().CWKTimeRange->setValue(12);
    w.panel().CWKChaLvl->setValue(5);
    w.panel().CWSCHaOffset->setValue(1.5);
    w.panel().CWGraph1->setCursorColor("Cursor2", QColor(1, 2, 3));
    w.panel().CWGraph1->setPlotAreaColor(QColor(10, 20, 30));
    w.panel().CWGraph1->setPlotColor("Ref", QColor(200, 100, 50));
    w.panel().CWBHCursors->setValue(true);
    w.panel().CWBVCursors->setValue(true);
    w.panel().CWBChaInv->setValue(true);
    restart();
    frmMain& again = *window;
    EXPECT_EQ(again.panel().CWKTimeRange->value(), 12);
    EXPECT_EQ(again.model().lngDivPerSec, 1000);
    EXPECT_EQ(again.model().intTimeUnit, 2);
    EXPECT_EQ(again.panel().CWKChaLvl->value(), 5);
    EXPECT_EQ(again.model().sngChaGain, 1.0f);
    EXPECT_EQ(again.panel().CWSCHaOffset->value(), 1.5);
    EXPECT_EQ(again.model().sngChaOffset, 1.5f);
    EXPECT_EQ(again.panel().CWGraph1->cursorColor("Cursor2"), QColor(1, 2, 3));
    EXPECT_EQ(again.panel().CWGraph1->plotAreaColor(), QColor(10, 20, 30));
    EXPECT_EQ(again.panel().CWGraph1->plotColor("Ref"), QColor(200, 100, 50));
    EXPECT_TRUE(again.panel().CWBHCursors->value());
    EXPECT_TRUE(again.panel().CWBVCursors->value());
    EXPECT_TRUE(again.panel().CWBChaInv->value());
    // The handlers ran: cursors shown, readouts computed, the invert lamp lit.
    EXPECT_TRUE(again.panel().CWGraph1->cursorVisible("Cursor1"));
    EXPECT_TRUE(again.panel().CWGraph1->cursorVisible("Cursor3"));
    EXPECT_EQ(again.panel().lblCTime->text(), "1.000 mSec");
    EXPECT_EQ(again.panel().lblCFrequency->text(), "1.000 KHz");
    EXPECT_EQ(again.panel().lblCVoltage->text(), "1.00 V");
}

TEST_F(MainWindowSettings, NoSettingsFileChangesNothingAtStartUp) {
    frmMain& w = start();
    EXPECT_EQ(w.panel().CWKTimeRange->value(), 3);
    EXPECT_EQ(w.panel().CWKChaLvl->value(), 1);
    EXPECT_EQ(w.panel().CWSCHaOffset->value(), 0.0);
    EXPECT_EQ(w.panel().CWGraph1->plotColor("CHa"), w.panel().defaultColors.primaryTrace);
}

TEST_F(MainWindowSettings, HandEditedWindowsFileIsReadAndKeepsItsEditsThroughShutdown) {
    writeSettings("; Zorvik settings, edited by hand\r\n"
                  "[Settings]\r\n"
                  "Hscaleindex = 3.5\r\n"
                  "; the V-SCALE knob\r\n"
                  "vscaleindex=7 volts\r\n"
                  "Chaoffset=\"-0.5\"\r\n"
                  "\r\n"
                  "[COLORS]\r\n"
                  "Cursor2=\r\n"
                  "Display=255\r\n"
                  "[BUTTONS]\r\n"
                  "Invert=maybe\r\n"
                  "Vcursors=TRUE\r\n");
    frmMain& w = start();
    EXPECT_EQ(w.panel().CWKTimeRange->value(), 4) << "3.5 rounds half to even";
    EXPECT_EQ(w.panel().CWKChaLvl->value(), 7) << "7 followed by letters";
    EXPECT_EQ(w.panel().CWSCHaOffset->value(), -0.5);
    EXPECT_EQ(w.panel().CWGraph1->cursorColor("Cursor2"), w.panel().defaultColors.cursors[1]);
    EXPECT_EQ(w.panel().CWGraph1->plotAreaColor(), QColor(255, 0, 0));
    EXPECT_FALSE(w.panel().CWBChaInv->value()) << "maybe is no boolean";
    EXPECT_TRUE(w.panel().CWBVCursors->value()) << "keys after the bad one are still read";
    window->close();
    const QByteArray text = settingsText();
    EXPECT_TRUE(text.startsWith("; Zorvik settings, edited by hand\r\n[Settings]\r\n"
                                "Hscaleindex = 4\r\n; the V-SCALE knob\r\nvscaleindex=7\r\n"
                                "Chaoffset=-0.5\r\n\r\n[COLORS]\r\n"))
        << text.toStdString();
    EXPECT_TRUE(text.contains("Invert=False\r\n")) << text.toStdString();
    EXPECT_TRUE(text.contains("Vcursors=True\r\n")) << text.toStdString();
}

TEST_F(MainWindowSettings, HalfwayIndexesRoundToEven) {
    writeSettings("[SETTINGS]\r\nHscaleindex=2.5\r\nVscaleindex=3.5\r\n");
    frmMain& w = start();
    EXPECT_EQ(w.panel().CWKTimeRange->value(), 2);
    EXPECT_EQ(w.panel().CWKChaLvl->value(), 4);
}

TEST_F(MainWindowSettings, KnobIndexTheKnobDoesNotHaveLeavesItAndTheRestIsRead) {
    writeSettings("[SETTINGS]\r\nHscaleindex=17\r\nVscaleindex=0\r\nChaoffset=9\r\n"
                  "[COLORS]\r\nPrimarytrace=255\r\n");
    frmMain& w = start();
    EXPECT_EQ(w.panel().CWKTimeRange->value(), 3);
    EXPECT_EQ(w.panel().CWKChaLvl->value(), 1);
    EXPECT_EQ(w.panel().CWSCHaOffset->value(), 0.0);
    EXPECT_EQ(w.panel().CWGraph1->plotColor("CHa"), QColor(255, 0, 0));
}
