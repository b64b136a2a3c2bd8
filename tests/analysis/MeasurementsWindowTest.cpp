// The Measurements window on the real main window: M opens it, every frame shown updates the
// current values and the statistics, Reset starts them again, the reference gets its own
// column while it is shown, and an undefined value reads "—".
#include "AnalysisWindows.h"
#include "analysis/AnalysisActions.h"
#include "analysis/frmMeasurements.h"
#include "app/LiveWindowFixture.h"
#include "widgets/Knob.h"
#include "widgets/LitButton.h"

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>

using namespace zorvik;
using zorvik::test::LiveWindowFixture;
using zorvik::test::squareCounts;
using zorvik::test::stateWith;

namespace {

class MeasurementsWindow : public zorvik::test::AnalysisWindowFixture {
protected:
    frmMeasurements& open(frmMain& w) {
        new AnalysisActions(w, shared.back()->feed);
        // The key works in the main window when it is the active one, as under a desktop.
        QApplication::setActiveWindow(&w);
        EXPECT_EQ(QApplication::activeWindow(), &w);
        QTest::keyClick(&w, Qt::Key_M);
        auto* window = w.findChild<frmMeasurements*>("frmMeasurements");
        EXPECT_NE(window, nullptr);
        return *window;
    }
    static QString cell(const frmMeasurements& f, Measure m, frmMeasurements::Column c) {
        return f.table()->item(static_cast<int>(m), c)->text();
    }
};

} // namespace

TEST_F(MeasurementsWindow, MOpensItAndEveryFrameShownIsMeasuredAndCounted) {
    frmMain& w = running();
    frmMeasurements& f = open(w);
    EXPECT_TRUE(f.isVisible());
    EXPECT_EQ(f.windowTitle(), "Measurements");
    // Nothing shown yet: every value is undefined.
    EXPECT_EQ(cell(f, Measure::Frequency, frmMeasurements::Current), "\u2014");
    EXPECT_EQ(cell(f, Measure::Frequency, frmMeasurements::Count), "\u2014");

    // 10 V range, 1 Ms/s: 40 samples a period are 25 kHz; 20 counts are 3.175 V.
    feed(stateWith(0x04, 3), squareCounts(21, 41));
    EXPECT_EQ(cell(f, Measure::Frequency, frmMeasurements::Current), "25.00 kHz");
    EXPECT_EQ(cell(f, Measure::Period, frmMeasurements::Current), "40.00 \u00b5s");
    EXPECT_EQ(cell(f, Measure::Amplitude, frmMeasurements::Current), "3.175 V");
    EXPECT_EQ(cell(f, Measure::DutyCycle, frmMeasurements::Current), "50.0 %");
    EXPECT_EQ(cell(f, Measure::RiseTime, frmMeasurements::Current), "800.0 ns");
    EXPECT_EQ(cell(f, Measure::Frequency, frmMeasurements::Count), "1");
    EXPECT_EQ(f.findChild<QLabel*>("lblFrames")->text(), "Frames measured: 1");

    // A second frame twice as high: the statistics hold both.
    feed(stateWith(0x04, 3), squareCounts(11, 51));
    EXPECT_EQ(cell(f, Measure::Amplitude, frmMeasurements::Current), "6.349 V");
    EXPECT_EQ(cell(f, Measure::Amplitude, frmMeasurements::Minimum), "3.175 V");
    EXPECT_EQ(cell(f, Measure::Amplitude, frmMeasurements::Maximum), "6.349 V");
    EXPECT_EQ(cell(f, Measure::Amplitude, frmMeasurements::Mean), "4.762 V");
    EXPECT_EQ(cell(f, Measure::Amplitude, frmMeasurements::StdDev), "1.587 V");
    EXPECT_EQ(cell(f, Measure::Amplitude, frmMeasurements::Count), "2");
    EXPECT_EQ(f.statistics(Measure::Frequency).count, 2u);

    // A knob turned redraws the trace but brings no new frame: nothing more is counted.
    ASSERT_TRUE(w.panel().CWKChaLvl->setValue(3));
    EXPECT_EQ(cell(f, Measure::Amplitude, frmMeasurements::Count), "2");

    // Reset: the statistics start again with the next frame.
    f.findChild<QPushButton*>("cmdReset")->click();
    EXPECT_EQ(cell(f, Measure::Amplitude, frmMeasurements::Count), "\u2014");
    EXPECT_EQ(f.findChild<QLabel*>("lblFrames")->text(), "Frames measured: 0");
    feed(stateWith(0x04, 3), squareCounts(21, 41));
    EXPECT_EQ(cell(f, Measure::Amplitude, frmMeasurements::Count), "1");
    EXPECT_EQ(cell(f, Measure::Amplitude, frmMeasurements::Mean), "3.175 V");
}

TEST_F(MeasurementsWindow, TheReferenceHasItsColumnWhileItIsShown) {
    frmMain& w = running();
    frmMeasurements& f = open(w);
    feed(stateWith(0x04, 3), squareCounts(21, 41));
    EXPECT_EQ(cell(f, Measure::Frequency, frmMeasurements::Reference), "\u2014");
    w.panel().CWBStoreRef->setValue(true);
    w.panel().CWBRef->setValue(true);
    EXPECT_EQ(cell(f, Measure::Frequency, frmMeasurements::Reference), "25.00 kHz");
    EXPECT_EQ(cell(f, Measure::Amplitude, frmMeasurements::Reference), "3.175 V");
    w.panel().CWBRef->setValue(false);
    EXPECT_EQ(cell(f, Measure::Frequency, frmMeasurements::Reference), "\u2014");
}

TEST_F(MeasurementsWindow, AClosedWindowMeasuresNothingAndShowsTheTraceAgainWhenOpened) {
    frmMain& w = running();
    frmMeasurements& f = open(w);
    feed(stateWith(0x04, 3), squareCounts(21, 41));
    ASSERT_EQ(f.statistics(Measure::Amplitude).count, 1u);
    f.close();
    feed(stateWith(0x04, 3), squareCounts(11, 51));
    feed(stateWith(0x04, 3), squareCounts(11, 51));
    EXPECT_EQ(f.statistics(Measure::Amplitude).count, 1u);
    // Opened again (M in the main window), it shows the trace on screen at once.
    QApplication::setActiveWindow(&w);
    QTest::keyClick(&w, Qt::Key_M);
    ASSERT_TRUE(f.isVisible());
    EXPECT_EQ(cell(f, Measure::Amplitude, frmMeasurements::Current), "6.349 V");
    EXPECT_EQ(f.statistics(Measure::Amplitude).count, 1u);
    feed(stateWith(0x04, 3), squareCounts(11, 51));
    EXPECT_EQ(f.statistics(Measure::Amplitude).count, 2u);
}

TEST_F(MeasurementsWindow, ADcLevelShowsItsLevelsAndADashForItsTiming) {
    frmMain& w = running();
    frmMeasurements& f = open(w);
    RawSamples flat{};
    flat.fill(41);
    feed(stateWith(0x04, 3), flat);
    EXPECT_EQ(cell(f, Measure::Mean, frmMeasurements::Current), "1.587 V");
    EXPECT_EQ(cell(f, Measure::PeakToPeak, frmMeasurements::Current), "0.000 V");
    EXPECT_EQ(cell(f, Measure::Frequency, frmMeasurements::Current), "\u2014");
    EXPECT_EQ(cell(f, Measure::RiseTime, frmMeasurements::Current), "\u2014");
    // Counted for the levels, not for what is undefined.
    EXPECT_EQ(cell(f, Measure::Mean, frmMeasurements::Count), "1");
    EXPECT_EQ(cell(f, Measure::Frequency, frmMeasurements::Count), "\u2014");
}
