// A main window that is switched on and receiving from the scripted link, with helpers that
// build frames of chosen samples and wait until the window has shown them.
#pragma once

#include "app/MainWindowFixture.h"
#include "common/FrameBytes.h"
#include "display/ChartA.h"
#include "widgets/LitButton.h"
#include "widgets/ScopeGraph.h"

#include <QTest>
#include <array>
#include <cstdint>
#include <vector>

namespace zorvik::test {

/// One 139-byte frame carrying `samples` and the settings of `s`.
inline std::vector<std::uint8_t> frameWithSamples(const HardwareState& s,
                                                  const RawSamples& samples) {
    std::vector<std::uint8_t> f = frameBytes(s);
    std::copy(samples.begin(), samples.end(), f.begin() + 5);
    return f;
}

/// Every sample at the same count.
inline RawSamples flatSamples(std::uint8_t count) {
    RawSamples r{};
    r.fill(count);
    return r;
}

/// Samples that climb 0, 1, ..., 62 and start again: every count of the 1 V ... 100 V scale.
inline RawSamples rampSamples() {
    RawSamples r{};
    for (std::size_t i = 0; i < r.size(); ++i)
        r[i] = static_cast<std::uint8_t>(i % 63);
    return r;
}

/// A state with the given range bits (0x00, 0x04, 0x08, 0x0C) and time-base code.
inline HardwareState stateWith(std::uint8_t range, std::uint8_t timebase, std::uint8_t level = 16) {
    HardwareState s = sampleState();
    s.bytSwitchSetting = static_cast<std::uint8_t>(0x20 | range);
    s.bytTimebaseDef = timebase;
    s.bytTriggerLvl = level;
    return s;
}

class LiveWindowFixture : public MainWindowFixture {
protected:
    /// POWER on with the instrument answering on COM1; returns once the two-byte read is armed.
    frmMain& running() {
        fake.openable.insert(device(1));
        frmMain& w = start({1});
        QObject::connect(&w.link(), &InstrumentLink::received, &w, [this](const ReceiveStep& s) {
            if (s.event == ReceiveEvent::Frame)
                ++framesShown;
        });
        w.panel().CWBPwr->setValue(true);
        EXPECT_TRUE(QTest::qWaitFor([&] { return fake.pendingCount() == 1; }, 2000));
        fake.feed(QByteArray(1, '\x7D'));
        EXPECT_TRUE(QTest::qWaitFor([&] { return w.model().blnLiveData; }, 2000));
        EXPECT_TRUE(QTest::qWaitFor([&] { return fake.pendingCount() == 2; }, 2000));
        return w;
    }

    /// Feeds one frame and waits until the window has shown it and armed the next probe.
    void feed(const std::vector<std::uint8_t>& frame) {
        const int before = framesShown;
        fake.feed(frame);
        ASSERT_TRUE(QTest::qWaitFor(
            [&] { return framesShown == before + 1 && fake.pendingCount() == 2; }, 2000));
    }
    void feed(const HardwareState& s, const RawSamples& samples) {
        feed(frameWithSamples(s, samples));
    }

    /// The Y values the display core gives for these volts with the window's present scale.
    TraceArray expectedY(const TraceArray& volts) const {
        const auto y = plotValues(volts, window->model().sngChaGain, window->model().sngChaOffset,
                                  window->panel().CWBChaInv->value());
        EXPECT_TRUE(y.has_value());
        return y.value_or(TraceArray{});
    }

    /// Volts of raw counts: (count - 31) x volts per count, in single precision.
    static TraceArray voltsOf(const RawSamples& counts, float voltsPerCount) {
        TraceArray v{};
        for (std::size_t i = 0; i < counts.size(); ++i)
            v[i] = static_cast<float>(static_cast<int>(counts[i]) - 31) * voltsPerCount;
        return v;
    }

    /// Checks that plot `name` holds 128 points at X = i x step with the Y values `y`.
    static void expectPlot(const ScopeGraph& graph, const char* name, double step,
                           const TraceArray& y) {
        const ScopeGraph::PlotData d = graph.plotData(name);
        ASSERT_EQ(d.x.size(), 128) << name;
        ASSERT_EQ(d.y.size(), 128) << name;
        for (int i = 0; i < 128; ++i) {
            EXPECT_EQ(d.x[i], i * step) << name << " X of point " << i;
            EXPECT_EQ(d.y[i], static_cast<double>(y[static_cast<std::size_t>(i)]))
                << name << " Y of point " << i;
        }
    }

    int framesShown = 0;
};

} // namespace zorvik::test
