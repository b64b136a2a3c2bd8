// Autoset on the real window: key A (and the graph's context menu) turns H-SCALE, V-SCALE and
// OFFSET through their handlers so the trace on screen fills the graph, for every range and
// time base the probe sends; a loaded reference is fitted when it is what the graph shows; with
// no trace nothing moves.
#include "analysis/AnalysisActions.h"
#include "analysis/Autoset.h"
#include "app/LiveWindowFixture.h"
#include "display/ScaleTables.h"
#include "storage/IniTestSupport.h"
#include "storage/WaveformTestSupport.h"
#include "widgets/Knob.h"
#include "widgets/LitButton.h"
#include "widgets/ScopeGraph.h"
#include "widgets/Slide.h"

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <cmath>

using namespace zorvik;
using namespace zorvik::testing;
using zorvik::test::LiveWindowFixture;
using zorvik::test::stateWith;

namespace {

/// Counts 0..62 along three periods of a sine: the full height of a range.
RawSamples fullSine() {
    RawSamples r{};
    for (std::size_t i = 0; i < r.size(); ++i)
        r[i] = static_cast<std::uint8_t>(
            31 + std::lround(31.0 * std::sin(2.0 * 3.14159265358979 * 3.0 * i / 128.0)));
    return r;
}

class AutosetOnTheWindow : public LiveWindowFixture {
protected:
    /// The actions on `w`, made the active window so that their keys reach them.
    AnalysisActions& actionsOf(frmMain& w) {
        auto* actions = new AnalysisActions(w, shared.back()->feed);
        QApplication::setActiveWindow(&w);
        EXPECT_EQ(QApplication::activeWindow(), &w);
        return *actions;
    }
};

} // namespace

TEST_F(AutosetOnTheWindow, KeyAFitsTheLiveTraceOfEveryRangeAndTimeBase) {
    frmMain& w = running();
    AnalysisActions& actions = actionsOf(w);
    ASSERT_EQ(actions.autosetAction()->shortcut(), QKeySequence("A"));
    // H-SCALE for the time-base codes 0..10 (20 Ms/s .. 500 s/s), V-SCALE for the three ranges.
    const int hScale[] = {3, 4, 6, 7, 9, 10, 12, 13, 15, 16, 16};
    const std::uint8_t ranges[] = {0x00, 0x04, 0x08};
    const int vScale[] = {7, 4, 1};
    for (int r = 0; r < 3; ++r) {
        for (std::uint8_t code = 0; code <= 10; ++code) {
            // Start from elsewhere, so that every knob has to move.
            ASSERT_TRUE(w.panel().CWSCHaOffset->setValue(1.5));
            feed(stateWith(ranges[r], code), fullSine());
            QTest::keyClick(&w, Qt::Key_A);
            EXPECT_EQ(w.panel().CWKTimeRange->value(), hScale[code]) << r << " " << int(code);
            EXPECT_EQ(w.panel().CWKChaLvl->value(), vScale[r]) << r << " " << int(code);
            EXPECT_EQ(w.panel().CWSCHaOffset->value(), 0.0) << r << " " << int(code);
            // The handlers ran: the scale values and the trace follow the knobs.
            EXPECT_EQ(w.model().lngDivPerSec, timeScaleForPosition(hScale[code])->lngDivPerSec);
            EXPECT_EQ(w.model().sngChaGain, *chaGainForPosition(vScale[r]));
            EXPECT_EQ(w.model().sngChaOffset, 0.0f);
            const ScopeGraph::PlotData d = w.panel().CWGraph1->plotData("CHa");
            ASSERT_EQ(d.y.size(), 128);
            const double top = *std::max_element(d.y.begin(), d.y.end());
            const double bottom = *std::min_element(d.y.begin(), d.y.end());
            EXPECT_NEAR(top - bottom, 4.92, 0.01) << r << " " << int(code);
            EXPECT_NEAR(top + bottom, 0.0, 1e-4);
            if (code < 10) {
                EXPECT_NEAR(d.x.back(), 6.35, 1e-4) << int(code);
            }
        }
    }
}

TEST_F(AutosetOnTheWindow, TheGraphsContextMenuHoldsAutoset) {
    frmMain& w = running();
    AnalysisActions& actions = actionsOf(w);
    std::unique_ptr<QMenu> menu(actions.contextMenu(nullptr));
    ASSERT_GE(menu->actions().size(), 3);
    EXPECT_EQ(menu->actions()[0]->text(), "&Autoset");
    EXPECT_EQ(menu->actions()[0]->shortcut(), QKeySequence("A"));
    EXPECT_EQ(menu->actions()[1]->text(), "&Measurements...");
    EXPECT_EQ(menu->actions()[1]->shortcut(), QKeySequence("M"));
    EXPECT_EQ(menu->actions()[2]->text(), "&Spectrum...");
    EXPECT_EQ(menu->actions()[2]->shortcut(), QKeySequence("F"));

    // A right click on the graph opens it there.
    ScopeGraph* graph = w.panel().CWGraph1;
    EXPECT_EQ(graph->contextMenuPolicy(), Qt::CustomContextMenu);
    emit graph->customContextMenuRequested(QPoint(20, 20));
    QMenu* shown = nullptr;
    ASSERT_TRUE(QTest::qWaitFor(
        [&] {
            for (QWidget* top : QApplication::topLevelWidgets()) {
                if (auto* m = qobject_cast<QMenu*>(top);
                    m && m->objectName() == "mnuGraph" && m->isVisible())
                    shown = m;
            }
            return shown != nullptr;
        },
        2000));
    // Choosing it fits the trace, as the key does.
    feed(stateWith(0x04, 3), fullSine());
    shown->actions()[0]->trigger();
    shown->close();
    EXPECT_EQ(w.panel().CWKTimeRange->value(), 7);
    EXPECT_EQ(w.panel().CWKChaLvl->value(), 4);
}

TEST_F(AutosetOnTheWindow, ALoadedReferenceIsFittedWhenItIsTheTraceShown) {
    frmMain& w = start();
    AnalysisActions& actions = actionsOf(w);
    const QString path = dir.filePath("bench.wdf");
    writeBytes(path.toStdString(), readBytes(wdfFixture("windows-style.wdf")));
    w.openWaveformFile(path);
    ASSERT_TRUE(messages.empty());
    ASSERT_TRUE(w.model().blnRefLoaded);
    ASSERT_TRUE(w.panel().CWBRef->value());
    const auto expected =
        autoset(w.model().sngRefVolts, w.model().sngRefSampleInterval, /*inverted=*/true);
    ASSERT_TRUE(expected.has_value());
    ASSERT_TRUE(w.panel().CWBChaInv->value()); // the file turned INVERT on

    EXPECT_TRUE(actions.Autoset());
    EXPECT_EQ(w.panel().CWKTimeRange->value(), expected->hScale);
    EXPECT_EQ(w.panel().CWKChaLvl->value(), expected->vScale);
    EXPECT_EQ(w.panel().CWSCHaOffset->value(), expected->offset);
    // 5 us between samples: 635 us, 6.35 divisions at 100 us/div.
    EXPECT_EQ(expected->hScale, 9);
    const ScopeGraph::PlotData d = w.panel().CWGraph1->plotData("Ref");
    ASSERT_EQ(d.y.size(), 128);
    EXPECT_LE(*std::max_element(d.y.begin(), d.y.end()), 3.75);
    EXPECT_GE(*std::min_element(d.y.begin(), d.y.end()), -3.75);
}

TEST_F(AutosetOnTheWindow, WithNoTraceShownNothingMoves) {
    frmMain& w = start();
    AnalysisActions& actions = actionsOf(w);
    EXPECT_FALSE(actions.Autoset());
    QTest::keyClick(&w, Qt::Key_A);
    EXPECT_EQ(w.panel().CWKTimeRange->value(), 3);
    EXPECT_EQ(w.panel().CWKChaLvl->value(), 1);
    EXPECT_EQ(w.panel().CWSCHaOffset->value(), 0.0);
}
