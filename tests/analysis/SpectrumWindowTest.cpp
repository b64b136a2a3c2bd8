// The Spectrum window on the real main window: F opens it, each frame shown gives the spectrum
// the command line gives for it, the peak is marked and named, the choices change the curve and
// are kept in the settings file's [ANALYSIS] section, averaging counts frames, the reference
// has its own curve while it is shown, and a closed window works out nothing.
#include "AnalysisWindows.h"
#include "analysis/AnalysisActions.h"
#include "analysis/frmSpectrum.h"
#include "app/LiveWindowFixture.h"
#include "display/FormatDispData.h"
#include "widgets/LitButton.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QSpinBox>
#include <cmath>
#include <numbers>
#include <qcustomplot.h>

using namespace zorvik;
using zorvik::test::LiveWindowFixture;
using zorvik::test::stateWith;

namespace {

/// A sine of `counts` peak about count 31, `cycles` periods in the frame.
RawSamples sineCounts(double counts, int cycles) {
    RawSamples r{};
    for (std::size_t i = 0; i < r.size(); ++i)
        r[i] = static_cast<std::uint8_t>(std::lround(
            31.0 +
            counts *
                std::sin(2.0 * std::numbers::pi * cycles * static_cast<double>(i) / 128.0 + 0.4)));
    return r;
}

class SpectrumWindow_ : public zorvik::test::AnalysisWindowFixture {
protected:
    frmSpectrum& open(frmMain& w) {
        analysisOn(w);
        QApplication::setActiveWindow(&w);
        QTest::keyClick(&w, Qt::Key_F);
        auto* window = w.findChild<frmSpectrum*>("frmSpectrum");
        EXPECT_NE(window, nullptr);
        return *window;
    }
    /// The spectrum the core (and zorvik-cli spectrum) gives for these counts.
    static SpectrumResult expected(const HardwareState& s, const RawSamples& counts,
                                   zorvik::SpectrumWindow window, std::size_t padding = 1) {
        AcquisitionValues values;
        const auto shown = FormatDispData(s, counts, values);
        SpectrumAnalyzer a;
        return a.analyse(shown.sngChaVolts.data(), shown.sngChaVolts.size(),
                         values.sngSampleInterval, window, padding);
    }
};

} // namespace

TEST_F(SpectrumWindow_, FOpensItAndEachFrameGivesTheSpectrumTheCommandLineGives) {
    frmMain& w = running();
    frmSpectrum& f = open(w);
    EXPECT_TRUE(f.isVisible());
    EXPECT_EQ(f.windowTitle(), "Spectrum");
    EXPECT_EQ(f.window(), zorvik::SpectrumWindow::Hann);
    EXPECT_EQ(f.unit(), SpectrumUnit::DBV);
    EXPECT_EQ(f.peakText(), "Peak: \u2014");

    // 10 V range, 1 Ms/s: 16 periods in 128 us are 125 kHz.
    const RawSamples counts = sineCounts(25.0, 16);
    feed(stateWith(0x04, 3), counts);
    const SpectrumResult e = expected(stateWith(0x04, 3), counts, zorvik::SpectrumWindow::Hann);
    ASSERT_EQ(f.live().volts.size(), 65u);
    EXPECT_EQ(f.live().volts, e.volts);
    EXPECT_EQ(f.live().frequency, e.frequency);
    ASSERT_EQ(f.live().peak, 16u);
    const QString level = QString::number(*e.peakMagnitude(SpectrumUnit::DBV), 'f', 2);
    EXPECT_EQ(f.peakText(), "Peak: 125.0 kHz, " + level + " dBV");
    EXPECT_EQ(f.findChild<QLabel*>("lblPeak")->text(), f.peakText());
    // 25 counts of 0.1587301 V peak: 2.806 V RMS, 8.96 dBV, to the rounding of the counts.
    EXPECT_NEAR(*f.live().peakMagnitude(SpectrumUnit::DBV),
                20 * std::log10(25 * 0.1587301 / std::sqrt(2.0)), 0.3);

    // The graph gets the curve once the screen's pace allows.
    QCPGraph* live = f.plot()->graph(1);
    ASSERT_TRUE(QTest::qWaitFor([&] { return live->data()->size() == 65; }, 2000));
    EXPECT_DOUBLE_EQ(live->data()->at(16)->key, e.frequency[16]);
    EXPECT_NEAR(f.plot()->xAxis->range().upper, 500000.0, 0.01);
}

TEST_F(SpectrumWindow_, TheChoicesChangeTheCurveAndAreKeptInTheirOwnSection) {
    frmMain& w = running();
    frmSpectrum& f = open(w);
    const RawSamples counts = sineCounts(20.0, 10);
    feed(stateWith(0x04, 3), counts);
    EXPECT_EQ(iniValue("SpectrumWindow"), "(none)"); // nothing written until a choice is made

    auto* window = f.findChild<QComboBox*>("cboWindow");
    auto* unit = f.findChild<QComboBox*>("cboUnit");
    auto* padding = f.findChild<QComboBox*>("cboPadding");
    ASSERT_TRUE(window && unit && padding);
    EXPECT_EQ(window->accessibleName(), "Window");
    EXPECT_EQ(window->count(), 5);
    EXPECT_EQ(window->itemText(4), "Flat top");
    window->setCurrentIndex(4);
    unit->setCurrentIndex(1);
    padding->setCurrentIndex(2);
    const SpectrumResult e =
        expected(stateWith(0x04, 3), counts, zorvik::SpectrumWindow::FlatTop, 4);
    EXPECT_EQ(f.live().volts, e.volts); // at once, from the trace on screen
    // 10 periods: bin 10, 40 with the padding; the flat top is flat there within a bin, so the
    // rounding of the counts may put the highest point a quarter bin beside it.
    ASSERT_TRUE(f.live().peak.has_value());
    EXPECT_EQ(f.live().peak, e.peak);
    EXPECT_LE(std::abs(static_cast<int>(*f.live().peak) - 40), 1);
    EXPECT_TRUE(f.peakText().startsWith("Peak: ")) << f.peakText().toStdString();
    EXPECT_TRUE(f.peakText().endsWith(" V")) << f.peakText().toStdString();
    EXPECT_EQ(iniValue("SpectrumWindow"), "flattop");
    EXPECT_EQ(iniValue("SpectrumUnit"), "volts");
    EXPECT_EQ(iniValue("SpectrumPadding"), "4");
    EXPECT_EQ(iniValue("SpectrumAverage"), "1");

    // Closed, it keeps its place; a new window (the next run) starts with the same choices.
    f.move(40, 50);
    f.close();
    EXPECT_FALSE(iniValue("SpectrumPlace").empty());
    EXPECT_NE(iniValue("SpectrumPlace"), "(none)");
    AnalysisActions again(w, shared.back()->feed, AnalysisSettings(settings()));
    frmSpectrum& next = again.showSpectrum();
    EXPECT_EQ(next.window(), zorvik::SpectrumWindow::FlatTop);
    EXPECT_EQ(next.unit(), SpectrumUnit::Volts);
    EXPECT_EQ(next.padding(), 4u);
    next.close();
}

TEST_F(SpectrumWindow_, AveragingCountsFramesAndTheReferenceHasItsOwnCurve) {
    frmMain& w = running();
    frmSpectrum& f = open(w);
    f.findChild<QSpinBox*>("spnAverage")->setValue(3);
    const RawSamples a = sineCounts(25.0, 8);
    const RawSamples b = sineCounts(10.0, 8);
    feed(stateWith(0x04, 3), a);
    feed(stateWith(0x04, 3), b);
    EXPECT_EQ(f.averaged(), 2u);
    const SpectrumResult ea = expected(stateWith(0x04, 3), a, zorvik::SpectrumWindow::Hann);
    const SpectrumResult eb = expected(stateWith(0x04, 3), b, zorvik::SpectrumWindow::Hann);
    EXPECT_NEAR(f.live().volts[8],
                std::sqrt((ea.volts[8] * ea.volts[8] + eb.volts[8] * eb.volts[8]) / 2), 1e-12);
    feed(stateWith(0x04, 3), b);
    feed(stateWith(0x04, 3), b);
    EXPECT_EQ(f.averaged(), 3u);
    EXPECT_NEAR(f.live().volts[8], eb.volts[8], 1e-9);

    // STORE and REF: the held trace gets its own spectrum, named below the graph.
    EXPECT_TRUE(f.reference().volts.empty());
    w.panel().CWBStoreRef->setValue(true);
    w.panel().CWBRef->setValue(true);
    ASSERT_EQ(f.reference().volts.size(), 65u);
    EXPECT_EQ(f.reference().peak, 8u);
    EXPECT_TRUE(
        f.findChild<QLabel*>("lblReferencePeak")->text().startsWith("Reference peak: 62.50 kHz, "));
    w.panel().CWBRef->setValue(false);
    EXPECT_TRUE(f.reference().volts.empty());
    EXPECT_TRUE(f.findChild<QLabel*>("lblReferencePeak")->text().isEmpty());
}

TEST_F(SpectrumWindow_, AClosedWindowWorksOutNothingAndShowsTheTraceOnScreenWhenOpened) {
    frmMain& w = running();
    frmSpectrum& f = open(w);
    f.findChild<QSpinBox*>("spnAverage")->setValue(10);
    feed(stateWith(0x04, 3), sineCounts(25.0, 8));
    EXPECT_EQ(f.averaged(), 1u);
    f.close();
    const RawSamples later = sineCounts(12.0, 20);
    feed(stateWith(0x04, 3), later);
    feed(stateWith(0x04, 3), later);
    EXPECT_EQ(f.averaged(), 1u);
    QApplication::setActiveWindow(&w);
    QTest::keyClick(&w, Qt::Key_F);
    ASSERT_TRUE(f.isVisible());
    EXPECT_EQ(f.averaged(), 1u); // the average starts again from the trace on screen
    EXPECT_EQ(f.live().peak, 20u);
    EXPECT_EQ(f.live().volts,
              expected(stateWith(0x04, 3), later, zorvik::SpectrumWindow::Hann).volts);
}
