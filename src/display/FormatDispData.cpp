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
    for (std::size_t i = 0; i < kSamplesPerFrame; ++i) {
        const auto counts = static_cast<float>(static_cast<int>(bytRawData[i]) - 31);
        result.sngChaVolts[i] = counts * values.sngVoltsPerCount;
    }
    return result;
}

} // namespace zorvik
