// The display model: it takes a decoded frame's record and decodes it into the acquisition
// values and the live volts, keeping the scale and the reference store it holds.
#include "display/DisplayModel.h"

#include "instrument/DecodeTables.h"

#include <gtest/gtest.h>

using namespace zorvik;

namespace {

DecodedFrame frameOf(std::uint8_t sw, std::uint8_t timebase, std::uint8_t count) {
    DecodedFrame f;
    f.state.bytSwitchSetting = sw;
    f.state.bytTimebaseDef = timebase;
    f.state.bytTriggerDef = 64;
    f.state.bytTriggerLvl = 8;
    f.bytRawData.fill(count);
    return f;
}

} // namespace

TEST(DisplayModel, TakesTheRecordOfAFrameAndDecodesIt) {
    DisplayModel m;
    m.sngChaGain = 0.5f;
    m.sngRefVolts.fill(2.0f);
    m.blnRefLoaded = true;
    const DecodedFrame f = frameOf(0x08 | 0x20, 4, 41);
    m.take(f);
    EXPECT_EQ(m.state, f.state);
    EXPECT_EQ(m.bytRawData, f.bytRawData);

    const FormatDispDataResult r = m.decode();
    EXPECT_EQ(m.acquisition.sngVoltsPerCount, 1.587301f);
    EXPECT_EQ(m.acquisition.sngSampleInterval, 5e-6f);
    EXPECT_EQ(m.acquisition.strSampleRate, "200Ks/s");
    EXPECT_EQ(r.sbrSampleRate, "Sample Rate: 200Ks/s");
    // (41 - 31) x 1.587301 in single precision, in the model and in the result alike.
    EXPECT_EQ(m.sngChaVolts[0], 10.0f * 1.587301f);
    EXPECT_EQ(m.sngChaVolts[127], 10.0f * 1.587301f);
    EXPECT_EQ(r.sngChaVolts, m.sngChaVolts);
    // The scale and the reference store are the model's own: a frame leaves them.
    EXPECT_EQ(m.sngChaGain, 0.5f);
    EXPECT_EQ(m.sngRefVolts[5], 2.0f);
    EXPECT_TRUE(m.blnRefLoaded);
}

TEST(DisplayModel, AFrameWithUnknownCodesKeepsThePreviousScale) {
    DisplayModel m;
    m.take(frameOf(0x04, 4, 31));
    m.decode();
    ASSERT_EQ(m.acquisition.sngVoltsPerCount, kVoltsPerCount10V);
    // Range bits 12 and an unknown time-base code: volts with the scale of the frame before.
    m.take(frameOf(0x0C, 0xEE, 33));
    m.decode();
    EXPECT_EQ(m.acquisition.sngVoltsPerCount, kVoltsPerCount10V);
    EXPECT_EQ(m.acquisition.sngSampleInterval, 5e-6f);
    EXPECT_EQ(m.sngChaVolts[0], 2.0f * kVoltsPerCount10V);
}
