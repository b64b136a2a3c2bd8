// STORE and REF on the main window: holding the display, the reference drawn with its own
// sample interval and the present vertical settings, and when PRINT is available.
#include "ReferenceRig.h"
#include "display/ScaleTables.h"
#include "instrument/DecodeTables.h"
#include "widgets/Knob.h"
#include "widgets/ScopeGraph.h"
#include "widgets/Slide.h"

#include <QSignalSpy>

using namespace zorvik;
using zorvik::test::ReferenceRig;
using zorvik::test::sampleState;

namespace {

using MainWindowReference = ReferenceRig;

/// The Y values ChartA gives a sample: volts x gain, negated when inverted, plus the offset.
float plotted(float volts, float gain, bool invert, float offset) {
    float y = volts * gain;
    if (invert)
        y = -y;
    return y + offset;
}

TEST_F(MainWindowReference, StoreWithRefAlreadyOnDoesNotToggleRef) {
    frmMain& w = running();
    w.panel().CWBRef->setValue(true);
    QSignalSpy refChanges(w.panel().CWBRef, &LitButton::valueChanged);
    w.panel().CWBStoreRef->setValue(true);
    EXPECT_EQ(refChanges.count(), 0);
    EXPECT_TRUE(w.panel().CWBRef->value());
    EXPECT_TRUE(w.panel().CWBPrint->isEnabled());
    EXPECT_FALSE(w.panel().CWGraph1->plotVisible("CHa"));
    EXPECT_TRUE(w.panel().CWGraph1->plotVisible("Ref"));
}

TEST_F(MainWindowReference, StoreWithRefOffSwitchesRefOnThroughItsHandler) {
    frmMain& w = running();
    QSignalSpy refChanges(w.panel().CWBRef, &LitButton::valueChanged);
    w.panel().CWBStoreRef->setValue(true);
    ASSERT_EQ(refChanges.count(), 1);
    EXPECT_TRUE(refChanges.at(0).at(0).toBool());
    EXPECT_TRUE(w.panel().CWGraph1->plotVisible("Ref"));
    EXPECT_FALSE(w.link().machine().blnAcquire);
    EXPECT_FALSE(w.model().blnRefLoaded);
    EXPECT_EQ(w.model().sngRefVolts, w.model().sngChaVolts);
    EXPECT_EQ(w.model().sngRefVoltsPerCount, kVoltsPerCount10V);
    EXPECT_EQ(w.model().sngRefSampleInterval, 5e-5f);
}

TEST_F(MainWindowReference, StoreWhilePowerIsOffStoresTheZerosAndTouchesNoSerialOperation) {
    frmMain& w = running(5);
    ASSERT_NE(w.model().sngChaVolts[0], 0.0f);
    w.panel().CWBPwr->setValue(false); // power-off erases the live volts
    fake.calls.clear();
    w.panel().CWBStoreRef->setValue(true);
    EXPECT_TRUE(fake.calls.isEmpty()) << fake.calls.join(", ").toStdString();
    for (float v : w.model().sngRefVolts)
        EXPECT_EQ(v, 0.0f);
    EXPECT_TRUE(w.panel().CWBRef->value());
    EXPECT_TRUE(w.panel().CWBPrint->isEnabled());
    w.panel().CWBStoreRef->setValue(false);
    EXPECT_TRUE(fake.calls.isEmpty()) << fake.calls.join(", ").toStdString();
    EXPECT_FALSE(w.panel().CWBPrint->isEnabled());
}

TEST_F(MainWindowReference,
       TurningRefOffWhileStoreIsPressedDisablesPrintAndAcquisitionStaysStopped) {
    frmMain& w = running();
    w.panel().CWBStoreRef->setValue(true);
    ASSERT_TRUE(w.panel().CWBPrint->isEnabled());
    fake.calls.clear();
    w.panel().CWBRef->setValue(false);
    EXPECT_FALSE(w.panel().CWBPrint->isEnabled());
    EXPECT_FALSE(w.panel().CWGraph1->plotVisible("Ref"));
    EXPECT_TRUE(w.panel().CWBStoreRef->value());
    EXPECT_FALSE(w.link().machine().blnAcquire);
    EXPECT_TRUE(fake.calls.isEmpty()) << fake.calls.join(", ").toStdString();
    // REF on again brings PRINT back, STORE being pressed.
    w.panel().CWBRef->setValue(true);
    EXPECT_TRUE(w.panel().CWBPrint->isEnabled());
}

TEST_F(MainWindowReference, VScaleOffsetAndInvertWhileStoreIsPressedRescaleTheReference) {
    frmMain& w = running(7);
    w.panel().CWBStoreRef->setValue(true);
    const TraceArray ref = w.model().sngRefVolts;
    auto expectRef = [&](float gain, bool invert, float offset) {
        const ScopeGraph::PlotData d = w.panel().CWGraph1->plotData("Ref");
        ASSERT_EQ(d.y.size(), 128);
        for (int i = 0; i < 128; ++i)
            EXPECT_FLOAT_EQ(static_cast<float>(d.y[i]),
                            plotted(ref[static_cast<std::size_t>(i)], gain, invert, offset))
                << i;
    };
    expectRef(0.05f, false, 0.0f);
    w.panel().CWKChaLvl->setValue(3); // 5 V per division
    expectRef(0.2f, false, 0.0f);
    w.panel().CWSCHaOffset->setValue(1.5);
    expectRef(0.2f, false, 1.5f);
    w.panel().CWBChaInv->setValue(true);
    expectRef(0.2f, true, 1.5f);
    EXPECT_EQ(w.model().sngRefVolts, ref);
    EXPECT_FALSE(w.link().machine().blnAcquire);
}

TEST_F(MainWindowReference, HScaleRestretchesTheReferenceWithItsOwnSampleInterval) {
    frmMain& w = running(3); // 5e-5 s per sample
    w.panel().CWBStoreRef->setValue(true);
    auto step = [&](const char* plot) {
        const ScopeGraph::PlotData d = w.panel().CWGraph1->plotData(plot);
        EXPECT_GE(d.x.size(), 2);
        EXPECT_EQ(d.x.value(0), 0.0);
        return d.x.size() < 2 ? 0.0 : d.x[1] - d.x[0];
    };
    EXPECT_NEAR(step("Ref"), double(5e-5f) * 1000000, 1e-9); // position 3: 1 us per division
    w.panel().CWKTimeRange->setValue(10);                    // 200 us per division
    EXPECT_NEAR(step("Ref"), double(5e-5f) * 5000, 1e-12);

    // Released, and the probe now samples 100 times faster: the reference keeps its spacing.
    w.panel().CWBStoreRef->setValue(false);
    HardwareState fast = sampleState();
    fast.bytTimebaseDef = 2;
    feedFrame(4, fast);
    EXPECT_NEAR(step("CHa"), double(5e-7f) * 5000, 1e-12);
    EXPECT_NEAR(step("Ref"), double(5e-5f) * 5000, 1e-12);
    w.panel().CWKTimeRange->setValue(12); // 1 ms per division
    EXPECT_NEAR(step("CHa"), double(5e-7f) * 1000, 1e-12);
    EXPECT_NEAR(step("Ref"), double(5e-5f) * 1000, 1e-12);
}

} // namespace
