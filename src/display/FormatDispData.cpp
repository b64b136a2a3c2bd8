// Turns a received frame into the display's acquisition values and the live volts.
#include "display/FormatDispData.h"

#include "instrument/DecodeTables.h"

namespace zorvik {

FormatDispDataResult FormatDispData(const HardwareState& state, const RawSamples& bytRawData,
                                    AcquisitionValues& values) {
    FormatDispDataResult result;

    // Range first: the trigger level below is read within this range.
    if (const auto voltsPerCount = rangeVoltsPerCount(state.bytSwitchSetting))
        values.sngVoltsPerCount = *voltsPerCount;

    if (const auto level = triggerLevel(state.bytSwitchSetting, state.bytTriggerLvl))
        values.sngTrigLevel = *level;

    if (const auto base = timeBase(state.bytTimebaseDef)) {
        values.sngSampleInterval = base->sngSampleInterval;
        values.strSampleRate = std::string(base->strSampleRate);
    }

    result.CWSCoupling = couplingPosition(state.bytSwitchSetting);
    result.CWSRange = rangePosition(state.bytSwitchSetting);
    result.CWSTrigger = triggerPosition(state.bytTriggerDef);

    result.sbrSampleRate = "Sample Rate: " + values.strSampleRate;

    // Count 31 is 0 V. The product is rounded to single precision, as the volts are kept.
    // The scale and the samples are taken into locals first: nothing the loop writes can then
    // change what it reads, so it works on whole vectors of samples at a time.
    const float voltsPerCount = values.sngVoltsPerCount;
    const RawSamples counts = bytRawData;
    for (std::size_t i = 0; i < kSamplesPerFrame; ++i)
        result.sngChaVolts[i] =
            static_cast<float>(static_cast<int>(counts[i]) - 31) * voltsPerCount;
    return result;
}

} // namespace zorvik
