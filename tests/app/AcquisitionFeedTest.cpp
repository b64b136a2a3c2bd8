// The frame seam: a window that uses the trace subscribes to the feed the composition root
// makes and sees every frame the main window shows and every change of the acquisition on
// screen, without the main window knowing of it; a loaded file changes the display model, never
// the wire decoder's record.
#include "display/AcquisitionFeed.h"
#include "app/LiveWindowFixture.h"
#include "storage/IniTestSupport.h"
#include "storage/WaveformTestSupport.h"
#include "widgets/Knob.h"
#include "widgets/LitButton.h"

using namespace zorvik;
using namespace zorvik::testing;
using zorvik::test::flatSamples;
using zorvik::test::LiveWindowFixture;
using zorvik::test::rampSamples;
using zorvik::test::stateWith;

namespace {

constexpr float kVpc10V = 0.1587301f; // range bits 0x04

/// A stand-in for a later window: it only ever meets the feed.
struct TraceConsumer {
    explicit TraceConsumer(AcquisitionFeed& feed) {
        QObject::connect(&feed, &AcquisitionFeed::frameDecoded, &context,
                         [this](const DecodedFrame& f) { frames.push_back(f); });
        QObject::connect(&feed, &AcquisitionFeed::acquisitionChanged, &context,
                         [this](const DisplayModel& m) { shown.push_back(m); });
    }
    QObject context;
    std::vector<DecodedFrame> frames;
    std::vector<DisplayModel> shown;
};

using AcquisitionFeedSeam = LiveWindowFixture;

} // namespace

TEST_F(AcquisitionFeedSeam, AConsumerSeesEveryFrameShownAndTheAcquisitionDrawnFromIt) {
    frmMain& w = running();
    TraceConsumer consumer(shared.back()->feed);

    const HardwareState first = stateWith(0x04, 0x04);
    feed(first, rampSamples());
    const HardwareState second = stateWith(0x04, 0x06, 20);
    feed(second, flatSamples(40));

    ASSERT_EQ(consumer.frames.size(), 2u);
    EXPECT_EQ(consumer.frames[0], (DecodedFrame{ReceiveEvent::Frame, first, rampSamples()}));
    EXPECT_EQ(consumer.frames[1], (DecodedFrame{ReceiveEvent::Frame, second, flatSamples(40)}));
    // Each frame shown is drawn once: the consumer saw the acquisition after each.
    ASSERT_EQ(consumer.shown.size(), 2u);
    EXPECT_EQ(consumer.shown[0].sngChaVolts, voltsOf(rampSamples(), kVpc10V));
    EXPECT_EQ(consumer.shown[1].state, second);
    EXPECT_EQ(consumer.shown[1].sngChaVolts, voltsOf(flatSamples(40), kVpc10V));
    EXPECT_EQ(consumer.shown[1].sngChaVolts, w.model().sngChaVolts);
    EXPECT_EQ(consumer.shown[1].sngChaPlot, w.model().sngChaPlot);
    EXPECT_TRUE(consumer.shown[1].blnLiveData);

    // A knob turned redraws the traces: the consumer hears of it with the new gain.
    const std::size_t before = consumer.shown.size();
    ASSERT_TRUE(w.panel().CWKChaLvl->setValue(3));
    ASSERT_GT(consumer.shown.size(), before);
    EXPECT_EQ(consumer.shown.back().sngChaGain, 0.2f);
    EXPECT_EQ(consumer.shown.back().sngChaPlot, w.model().sngChaPlot);
}

TEST_F(AcquisitionFeedSeam, ALoadedFileWritesTheDisplayModelAndLeavesTheWireDecoderAlone) {
    frmMain& w = running();
    const HardwareState live = stateWith(0x04, 0x04);
    feed(live, rampSamples());
    TraceConsumer consumer(shared.back()->feed);

    const QString path = dir.filePath("bench.wdf");
    writeBytes(path.toStdString(), readBytes(wdfFixture("windows-style.wdf")));
    w.openWaveformFile(path);
    ASSERT_TRUE(messages.empty());

    // The file's probe settings are what the display shows now ...
    EXPECT_EQ(w.model().state.bytSwitchSetting, 32);
    EXPECT_EQ(w.model().state.bytTimebaseDef, 4);
    EXPECT_EQ(w.model().state.bytTriggerDef, 64);
    EXPECT_TRUE(w.model().blnRefLoaded);
    // ... while the receive cycle's record still holds what came over the wire.
    EXPECT_EQ(w.link().machine().state(), live);
    EXPECT_EQ(w.link().machine().bytRawData(), rampSamples());
    // No frame was decoded, but the acquisition on screen changed, reference and all.
    EXPECT_TRUE(consumer.frames.empty());
    ASSERT_FALSE(consumer.shown.empty());
    EXPECT_TRUE(consumer.shown.back().blnRefLoaded);
    EXPECT_EQ(consumer.shown.back().sngRefSampleInterval, 5e-6f);
    EXPECT_EQ(consumer.shown.back().sngRefVolts, w.model().sngRefVolts);
}
