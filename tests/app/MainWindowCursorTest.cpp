// The cursors on the main window's graph and the VOLTS, TIME and FREQUENCY readouts they give,
// with the cursors placed on the graph and the scales set with the knobs.
#include "app/MainWindowFixture.h"
#include "widgets/Knob.h"
#include "widgets/LitButton.h"
#include "widgets/ScopeGraph.h"
#include "widgets/Slide.h"

#include <QSignalSpy>
#include <QTest>

using namespace zorvik;
using zorvik::test::MainWindowFixture;

namespace {

class MainWindowCursors : public MainWindowFixture {
protected:
    /// Puts the time pair at X positions `x1` and `x2`, then sets H-SCALE to `position` the
    /// way a user does, by turning the knob (from a neighbouring position when it is there
    /// already), so the readouts are worked out for the cursors where they stand.
    void timePair(frmMain& w, double x1, double x2, int position) {
        if (!w.panel().CWBVCursors->value())
            w.panel().CWBVCursors->setValue(true);
        ASSERT_TRUE(w.panel().CWGraph1->setCursorX("Cursor1", x1));
        ASSERT_TRUE(w.panel().CWGraph1->setCursorX("Cursor2", x2));
        if (w.panel().CWKTimeRange->value() == position) {
            ASSERT_TRUE(w.panel().CWKTimeRange->setValue(position == 1 ? 2 : position - 1));
        }
        ASSERT_TRUE(w.panel().CWKTimeRange->setValue(position));
    }
    /// Same for the voltage pair and the V-SCALE knob.
    void voltagePair(frmMain& w, double y3, double y4, int position) {
        if (!w.panel().CWBHCursors->value())
            w.panel().CWBHCursors->setValue(true);
        ASSERT_TRUE(w.panel().CWGraph1->setCursorY("Cursor3", y3));
        ASSERT_TRUE(w.panel().CWGraph1->setCursorY("Cursor4", y4));
        if (w.panel().CWKChaLvl->value() == position) {
            ASSERT_TRUE(w.panel().CWKChaLvl->setValue(position == 1 ? 2 : position - 1));
        }
        ASSERT_TRUE(w.panel().CWKChaLvl->setValue(position));
    }
    /// The pixel of the graph where X position `x` lies, halfway up the plot area.
    static QPoint pixelAtX(const ScopeGraph& g, double x) {
        return QPoint(qRound(g.xAxis->coordToPixel(x)), g.plotAreaRect().center().y());
    }
};

} // namespace

TEST_F(MainWindowCursors, VCursStartsOneDivisionApartAtTheWindowsLeftEdge) {
    frmMain& w = start();
    w.panel().CWSPan->setValue(4.5);
    w.panel().CWBVCursors->setValue(true);
    EXPECT_EQ(w.panel().CWGraph1->cursorX("Cursor1"), 5.5);
    EXPECT_EQ(w.panel().CWGraph1->cursorX("Cursor2"), 6.5);
    EXPECT_TRUE(w.panel().CWGraph1->cursorVisible("Cursor1"));
    EXPECT_TRUE(w.panel().CWGraph1->cursorVisible("Cursor2"));
    EXPECT_EQ(w.panel().lblCTime->text(), "1.000 uSec"); // 1 us/div at start-up
    EXPECT_EQ(w.panel().lblCFrequency->text(), "1.000 MHz");
    w.panel().CWBHCursors->setValue(true);
    EXPECT_EQ(w.panel().CWGraph1->cursorY("Cursor3"), -3.0);
    EXPECT_EQ(w.panel().CWGraph1->cursorY("Cursor4"), -2.0);
    EXPECT_EQ(w.panel().lblCVoltage->text(), "20.00 V"); // 20 V/div at start-up
}

TEST_F(MainWindowCursors, SixDivisionsAt200nsReadOnePointTwoMicroseconds) {
    frmMain& w = start();
    timePair(w, 2.0, 8.0, 1);
    EXPECT_EQ(w.model().lngDivPerSec, 5000000);
    EXPECT_EQ(w.model().intTimeUnit, 0);
    EXPECT_EQ(w.panel().lblCTime->text(), "1.200 uSec");
    EXPECT_EQ(w.panel().lblCFrequency->text(), "833.333 KHz");
}

TEST_F(MainWindowCursors, FourPointNineDivisionsAt200nsRead980Nanoseconds) {
    frmMain& w = start();
    timePair(w, 1.0, 5.9, 1);
    EXPECT_EQ(w.panel().lblCTime->text(), "980.00 nSec");
    EXPECT_EQ(w.panel().lblCFrequency->text(), "1.020 MHz");
}

TEST_F(MainWindowCursors, HalfAMicrosecondInTheMicrosecondRangeReadsInNanoseconds) {
    frmMain& w = start();
    timePair(w, 3.0, 2.5, 3); // 1 us/div
    EXPECT_EQ(w.model().intTimeUnit, 1);
    EXPECT_EQ(w.panel().lblCTime->text(), "500.00 nSec");
    EXPECT_EQ(w.panel().lblCFrequency->text(), "2.000 MHz");
}

TEST_F(MainWindowCursors, HalfAMillisecondInTheMillisecondRangeReadsInMicroseconds) {
    frmMain& w = start();
    timePair(w, 1.0, 1.5, 12); // 1 ms/div
    EXPECT_EQ(w.model().intTimeUnit, 2);
    EXPECT_EQ(w.panel().lblCTime->text(), "500.000 uSec");
    EXPECT_EQ(w.panel().lblCFrequency->text(), "2.000 KHz");
}

TEST_F(MainWindowCursors, TwoMillisecondsRead500Hertz) {
    frmMain& w = start();
    timePair(w, 1.0, 3.0, 12);
    EXPECT_EQ(w.panel().lblCTime->text(), "2.000 mSec");
    EXPECT_EQ(w.panel().lblCFrequency->text(), "500.0 Hz");
}

TEST_F(MainWindowCursors, AQuarterMicrosecondReadsFourMegahertz) {
    frmMain& w = start();
    timePair(w, 1.0, 1.25, 3);
    EXPECT_EQ(w.panel().lblCTime->text(), "250.00 nSec");
    EXPECT_EQ(w.panel().lblCFrequency->text(), "4.000 MHz");
}

TEST_F(MainWindowCursors, KnobsReworkTheReadoutsForCursorsThatStayPut) {
    frmMain& w = start();
    timePair(w, 1.0, 3.0, 12); // 2 ms
    EXPECT_EQ(w.panel().lblCTime->text(), "2.000 mSec");
    // Turned one click from the keyboard: 2 ms/div makes the same two divisions 4 ms.
    w.panel().CWKTimeRange->setFocus();
    QTest::keyClick(w.panel().CWKTimeRange, Qt::Key_Right);
    EXPECT_EQ(w.panel().CWKTimeRange->value(), 13);
    EXPECT_EQ(w.panel().lblCTime->text(), "4.000 mSec");
    EXPECT_EQ(w.panel().lblCFrequency->text(), "250.0 Hz");
    voltagePair(w, -1.0, 1.5, 5); // 2.5 divisions at 1 V/div
    EXPECT_EQ(w.panel().lblCVoltage->text(), "2.50 V");
    w.panel().CWKChaLvl->setFocus();
    QTest::keyClick(w.panel().CWKChaLvl, Qt::Key_Right); // .5 V/div
    EXPECT_EQ(w.panel().CWKChaLvl->value(), 6);
    EXPECT_EQ(w.panel().lblCVoltage->text(), "1.25 V");
    QTest::keyClick(w.panel().CWKChaLvl, Qt::Key_Right); // .2 V/div
    EXPECT_EQ(w.panel().lblCVoltage->text(), "0.500 V");
}

TEST_F(MainWindowCursors, VoltagesOf100And1ShowOneAndTwoDecimals) {
    frmMain& w = start();
    voltagePair(w, -2.0, 3.0, 1); // five divisions at 20 V/div
    EXPECT_EQ(w.panel().lblCVoltage->text(), "100.0 V");
    voltagePair(w, -2.0, -1.0, 5); // one division at 1 V/div
    EXPECT_EQ(w.panel().lblCVoltage->text(), "1.00 V");
    voltagePair(w, 0.0, 0.5, 7); // half a division at .2 V/div
    EXPECT_EQ(w.panel().lblCVoltage->text(), "0.100 V");
}

TEST_F(MainWindowCursors, CursorsOnTopOfEachOtherShowZeroTimeAndKeepTheFrequency) {
    frmMain& w = start();
    timePair(w, 1.0, 1.5, 12);
    ASSERT_EQ(w.panel().lblCFrequency->text(), "2.000 KHz");
    timePair(w, 4.0, 4.0, 12);
    EXPECT_EQ(w.panel().lblCTime->text(), "0.000 uSec");
    EXPECT_EQ(w.panel().lblCFrequency->text(), "2.000 KHz");
    timePair(w, 4.0, 4.0, 3);
    EXPECT_EQ(w.panel().lblCTime->text(), "0.00 nSec");
    EXPECT_EQ(w.panel().lblCFrequency->text(), "2.000 KHz");
    timePair(w, 4.0, 4.0, 1);
    EXPECT_EQ(w.panel().lblCTime->text(), "0.00 nSec");
    EXPECT_EQ(w.panel().lblCFrequency->text(), "2.000 KHz");
}

TEST_F(MainWindowCursors, CursorsSteppedOntoEachOtherFromTheKeyboardMeasureZero) {
    frmMain& w = start();
    w.panel().CWKTimeRange->setValue(12);
    w.panel().CWBVCursors->setValue(true); // Cursor1 at 1, Cursor2 at 2: 1 ms, 1 KHz
    ASSERT_EQ(w.panel().lblCFrequency->text(), "1.000 KHz");
    w.panel().CWGraph1->setFocus();
    QTest::keyClick(w.panel().CWGraph1, Qt::Key_2);
    for (int i = 0; i < 5; ++i)
        QTest::keyClick(w.panel().CWGraph1, Qt::Key_Left); // five fifths of a division
    EXPECT_EQ(w.panel().CWGraph1->cursorX("Cursor2"), w.panel().CWGraph1->cursorX("Cursor1"));
    EXPECT_EQ(w.panel().lblCTime->text(), "0.000 uSec");
    // The frequency keeps what the last step before showed: a fifth of a division, 0.2 ms.
    EXPECT_EQ(w.panel().lblCFrequency->text(), "5.000 KHz");
    for (int i = 0; i < 7; ++i)
        QTest::keyClick(w.panel().CWGraph1, Qt::Key_Right);
    EXPECT_EQ(w.panel().CWGraph1->cursorX("Cursor2"), 2.4);
    EXPECT_EQ(w.panel().lblCTime->text(), "1.400 mSec");
}

TEST_F(MainWindowCursors, SwitchingVCursOffEmptiesTimeAndFrequencyAtOnce) {
    frmMain& w = start();
    timePair(w, 1.0, 3.0, 12);
    voltagePair(w, 0.0, 1.0, 5);
    ASSERT_FALSE(w.panel().lblCTime->text().isEmpty());
    w.panel().CWBVCursors->setValue(false);
    EXPECT_EQ(w.panel().lblCTime->text(), "");
    EXPECT_EQ(w.panel().lblCFrequency->text(), "");
    EXPECT_EQ(w.panel().lblCVoltage->text(), "1.00 V");
    EXPECT_FALSE(w.panel().CWGraph1->cursorVisible("Cursor1"));
    EXPECT_FALSE(w.panel().CWGraph1->cursorVisible("Cursor2"));
    // The positions are kept while hidden.
    EXPECT_EQ(w.panel().CWGraph1->cursorX("Cursor2"), 3.0);
}

TEST_F(MainWindowCursors, SwitchingHCursOffEmptiesTheVoltageAtOnce) {
    frmMain& w = start();
    timePair(w, 1.0, 3.0, 12);
    voltagePair(w, 0.0, 1.0, 5);
    QTest::mouseClick(w.panel().CWBHCursors, Qt::LeftButton, {},
                      w.panel().CWBHCursors->rect().center());
    EXPECT_FALSE(w.panel().CWBHCursors->value());
    EXPECT_EQ(w.panel().lblCVoltage->text(), "");
    EXPECT_EQ(w.panel().lblCTime->text(), "2.000 mSec");
    EXPECT_EQ(w.panel().lblCFrequency->text(), "500.0 Hz");
    EXPECT_FALSE(w.panel().CWGraph1->cursorVisible("Cursor3"));
}

TEST_F(MainWindowCursors, DraggingACursorWithTheMouseUpdatesTheReadouts) {
    frmMain& w = start();
    w.panel().CWKTimeRange->setValue(12); // 1 ms/div
    QTest::mouseClick(w.panel().CWBVCursors, Qt::LeftButton, {},
                      w.panel().CWBVCursors->rect().center());
    ASSERT_TRUE(w.panel().CWBVCursors->value());
    ASSERT_EQ(w.panel().lblCTime->text(), "1.000 mSec");
    ScopeGraph& g = *w.panel().CWGraph1;
    QSignalSpy changes(&g, &ScopeGraph::cursorChanged);

    const QPoint from = pixelAtX(g, 2.0);
    const QPoint to = pixelAtX(g, 6.0);
    QTest::mousePress(&g, Qt::LeftButton, {}, from);
    QTest::mouseMove(&g, to);
    QTest::mouseRelease(&g, Qt::LeftButton, {}, to);

    ASSERT_GE(changes.count(), 1);
    EXPECT_EQ(changes.last().at(0).toString(), "Cursor2");
    const double x2 = g.cursorX("Cursor2");
    EXPECT_NEAR(x2, 6.0, 10.0 / g.plotAreaRect().width()); // within a pixel
    // The readouts follow the cursor where the mouse left it.
    const double ms = (x2 - 1.0) * 1.0;
    EXPECT_EQ(w.panel().lblCTime->text(), QString::number(ms, 'f', 3) + " mSec");
    EXPECT_EQ(w.panel().lblCFrequency->text(), QString::number(1000.0 / ms, 'f', 1) + " Hz");
    EXPECT_EQ(g.cursorX("Cursor1"), 1.0);
}
