// Compare mode on the real main window: K turns it on, each frame shown is compared with the
// reference REF shows (here one kept by STORE, then STORE released), the band is drawn about
// the reference and the samples outside it are marked, passes and failures are counted, the
// display can be held on the first failing frame while frames are still taken in, and closing
// the window leaves the graph and the display as they were. The band is kept in [ANALYSIS].
#include "AnalysisWindows.h"
#include "analysis/AnalysisActions.h"
#include "analysis/frmCompare.h"
#include "app/LiveWindowFixture.h"
#include "widgets/LitButton.h"
#include "widgets/ScopeGraph.h"

#include <QApplication>
#include <QCheckBox>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QPushButton>
#include <qcustomplot.h>

using namespace zorvik;
using zorvik::test::LiveWindowFixture;
using zorvik::test::squareCounts;
using zorvik::test::stateWith;

namespace {

class CompareOnTheWindow : public zorvik::test::AnalysisWindowFixture {
protected:
    /// A live trace kept as the reference by STORE, STORE released, then K.
    frmCompare& compareMode(frmMain& w) {
        actions = &analysisOn(w);
        feed(stateWith(0x04, 3), squareCounts(21, 41));
        w.panel().CWBStoreRef->setValue(true);
        w.panel().CWBStoreRef->setValue(false);
        EXPECT_TRUE(w.panel().CWBRef->value());
        graphsBefore = w.panel().CWGraph1->graphCount();
        QApplication::setActiveWindow(&w);
        QTest::keyClick(&w, Qt::Key_K);
        auto* f = w.findChild<frmCompare*>("frmCompare");
        EXPECT_NE(f, nullptr);
        return *f;
    }
    AnalysisActions* actions = nullptr;
    int graphsBefore = 0;
};

} // namespace

TEST_F(CompareOnTheWindow, KTurnsItOnAndAFrameInsideTheBandPasses) {
    frmMain& w = running();
    frmCompare& f = compareMode(w);
    EXPECT_TRUE(f.isVisible());
    EXPECT_EQ(f.windowTitle(), "Compare with Reference");
    EXPECT_TRUE(actions->compareAction()->isChecked());
    // At first +-0.1 V and +-5 % of the reference's peak-to-peak (3.175 V): +-0.2587 V.
    EXPECT_DOUBLE_EQ(f.band().volts, 0.1);
    EXPECT_DOUBLE_EQ(f.band().percent, 5.0);
    feed(stateWith(0x04, 3), squareCounts(21, 41));
    ASSERT_TRUE(f.last().has_value());
    EXPECT_TRUE(f.last()->passed);
    EXPECT_NEAR(f.last()->halfWidth, 0.1 + 0.05 * 20 * 0.1587301, 1e-6);
    EXPECT_EQ(f.counts().passed, 1u);
    EXPECT_EQ(f.counts().failed, 0u);
    EXPECT_EQ(f.findChild<QLabel*>("lblResult")->text(), "PASS");
    EXPECT_EQ(f.findChild<QLabel*>("lblCounts")->text(), "Passed: 1    Failed: 0");
    EXPECT_EQ(f.findChild<QLabel*>("lblRms")->text(), "RMS difference: 0.000 V");
    // The band about the reference, in divisions: the reference +- half-width x gain.
    ASSERT_NE(f.bandUpper(), nullptr);
    EXPECT_EQ(w.panel().CWGraph1->graphCount(), graphsBefore + 3);
    const ScopeGraph::PlotData ref = w.panel().CWGraph1->plotData("Ref");
    ASSERT_EQ(f.bandUpper()->data()->size(), ref.y.size());
    const double half = f.last()->halfWidth * w.model().sngChaGain;
    EXPECT_NEAR(f.bandUpper()->data()->at(3)->value, ref.y[3] + half, 1e-9);
    EXPECT_NEAR(f.bandLower()->data()->at(3)->value, ref.y[3] - half, 1e-9);
    EXPECT_EQ(f.marks()->data()->size(), 0);
}

TEST_F(CompareOnTheWindow, AFrameOutsideTheBandFailsAndItsSamplesAreMarked) {
    frmMain& w = running();
    frmCompare& f = compareMode(w);
    // Two counts higher on top: 0.3175 V, outside +-0.2587 V, on the high samples: 5 to 24,
    // 45 to 64, 85 to 104 and 125 to 127.
    feed(stateWith(0x04, 3), squareCounts(21, 43));
    ASSERT_TRUE(f.last().has_value());
    EXPECT_FALSE(f.last()->passed);
    EXPECT_EQ(f.last()->samplesOutside, 63u);
    EXPECT_EQ(f.last()->largestAt, 5u);
    EXPECT_NEAR(f.last()->largestDeviation, 2 * 0.1587301, 1e-6);
    EXPECT_EQ(f.counts().failed, 1u);
    EXPECT_EQ(f.findChild<QLabel*>("lblResult")->text(), "FAIL");
    EXPECT_EQ(f.findChild<QLabel*>("lblLargest")->text().toStdString(),
              "Largest deviation: 317.5 mV at 5.000 \u00b5s (band \u00b1 258.7 mV)");
    EXPECT_EQ(f.marks()->data()->size(), 63);
    // A wider band takes it in: the same frame, compared again, is not counted twice.
    f.findChild<QDoubleSpinBox*>("spnVolts")->setValue(0.2);
    EXPECT_TRUE(f.last()->passed);
    EXPECT_EQ(f.counts().failed, 1u);
    EXPECT_EQ(f.counts().passed, 0u);
    EXPECT_EQ(iniValue("CompareVolts"), "0.2");
    EXPECT_EQ(iniValue("ComparePercent"), "5");
    f.findChild<QPushButton*>("cmdReset")->click();
    EXPECT_EQ(f.findChild<QLabel*>("lblCounts")->text(), "Passed: 0    Failed: 0");
}

TEST_F(CompareOnTheWindow, HoldKeepsTheFailingFrameOnScreenWhileFramesAreStillTakenIn) {
    frmMain& w = running();
    frmCompare& f = compareMode(w);
    f.findChild<QCheckBox*>("chkHold")->setChecked(true);
    EXPECT_EQ(iniValue("CompareHold"), "1");
    feed(stateWith(0x04, 3), squareCounts(21, 41)); // passes
    feed(stateWith(0x04, 3), squareCounts(21, 45)); // fails: held
    EXPECT_TRUE(f.holding());
    const TraceArray held = w.model().sngChaVolts;
    feed(stateWith(0x04, 3), squareCounts(21, 41));
    feed(stateWith(0x04, 3), squareCounts(11, 51));
    // Taken in (the fixture counts the frames received) but not shown, not compared.
    EXPECT_EQ(w.model().sngChaVolts, held);
    EXPECT_EQ(f.counts().passed, 1u);
    EXPECT_EQ(f.counts().failed, 1u);
    EXPECT_TRUE(f.findChild<QPushButton*>("cmdResume")->isEnabled());
    EXPECT_TRUE(f.findChild<QLabel*>("lblState")->text().startsWith("The display is held"));
    f.findChild<QPushButton*>("cmdResume")->click();
    EXPECT_FALSE(f.holding());
    feed(stateWith(0x04, 3), squareCounts(21, 41));
    EXPECT_NE(w.model().sngChaVolts, held);
    EXPECT_EQ(f.counts().passed, 2u);
}

TEST_F(CompareOnTheWindow, ClosingTheWindowEndsCompareModeAndLeavesTheGraphAsItWas) {
    frmMain& w = running();
    frmCompare& f = compareMode(w);
    f.findChild<QCheckBox*>("chkHold")->setChecked(true);
    feed(stateWith(0x04, 3), squareCounts(21, 45));
    ASSERT_TRUE(f.holding());
    QApplication::setActiveWindow(&w);
    QTest::keyClick(&w, Qt::Key_K); // K again: off
    EXPECT_FALSE(f.isVisible());
    EXPECT_FALSE(actions->compareAction()->isChecked());
    EXPECT_FALSE(shared.back()->feed.held());
    EXPECT_EQ(w.panel().CWGraph1->graphCount(), graphsBefore);
    feed(stateWith(0x04, 3), squareCounts(21, 41));
    EXPECT_EQ(w.model().sngChaVolts[15], static_cast<float>(10 * 0.1587301f));
}

TEST_F(CompareOnTheWindow, WithoutTheReferenceOnTheGraphNothingIsCompared) {
    frmMain& w = running();
    frmCompare& f = compareMode(w);
    w.panel().CWBRef->setValue(false);
    feed(stateWith(0x04, 3), squareCounts(21, 45));
    EXPECT_FALSE(f.last().has_value());
    EXPECT_EQ(f.counts().failed, 0u);
    EXPECT_EQ(f.findChild<QLabel*>("lblResult")->text(), "\u2014");
    EXPECT_TRUE(f.findChild<QLabel*>("lblState")->text().startsWith("No reference on the graph"));
    EXPECT_EQ(w.panel().CWGraph1->graphCount(), graphsBefore);
}
