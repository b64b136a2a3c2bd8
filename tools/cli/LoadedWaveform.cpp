// A Waveform Data File as zorvik-cli wdf reads it.
#include "LoadedWaveform.h"

#include "storage/WaveformRecord.h"
#include "storage/cInifile.h"

namespace zorvik::cli {

LoadedWaveform loadWaveform(const std::string& path) {
    LoadedWaveform loaded;
    cInifile ini;
    WaveformRecord record;
    loaded.result = WaveformFile::LoadWaveformFile(ini, path, record);
    if (loaded.result != WaveformLoadResult::Loaded)
        return loaded;

    // The load applies a key only when its value is not empty; the same reader, asked the
    // same way, tells which keys those were.
    const auto given = [&ini](const char* section, const char* key) {
        ini.setSection(section);
        ini.setKey(key);
        return !ini.Value().empty();
    };
    if (given("SETTINGS", "Hscaleindex"))
        loaded.Hscaleindex = static_cast<std::int32_t>(record.timeRange);
    if (given("SETTINGS", "Vscaleindex"))
        loaded.Vscaleindex = static_cast<std::int32_t>(record.chaLevel);
    if (given("SETTINGS", "Chaoffset"))
        loaded.Chaoffset = record.chaOffset;
    if (given("BUTTONS", "Invert"))
        loaded.Invert = record.invert;
    if (given("BUTTONS", "Reference"))
        loaded.Reference = record.reference;
    if (given("HARDWARE", "Range"))
        loaded.bytSwitchSetting = record.state.bytSwitchSetting;
    if (given("HARDWARE", "Triggerlevel"))
        loaded.bytTriggerLvl = record.state.bytTriggerLvl;
    if (given("HARDWARE", "Timebase"))
        loaded.bytTimebaseDef = record.state.bytTimebaseDef;
    if (given("HARDWARE", "Triggerdef"))
        loaded.bytTriggerDef = record.state.bytTriggerDef;
    if (given("ANALOGTRACE", "Tadj"))
        loaded.sngRefSampleInterval = record.sampleInterval;
    loaded.sngRefVolts = record.volts;
    return loaded;
}

} // namespace zorvik::cli
