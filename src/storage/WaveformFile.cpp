// Saving and loading the Waveform Data File.
#include "storage/WaveformFile.h"

#include "storage/ProfileDocument.h"
#include "storage/ProfileKeys.h"
#include "storage/VbConvert.h"
#include "storage/WaveformSamples.h"

#include <algorithm>
#include <exception>
#include <optional>

namespace zorvik {

namespace {

/// Every key of the file, in file order, into `contents`; `ini` is set to each section and key
/// in turn.
void writeKeys(cInifile& ini, ProfileDocument& contents, const WaveformTarget& source) {
    using namespace VbConvert;
    auto key = [&](const char* name, auto makeText) {
        ini.setKey(name);
        contents.write(ini, makeText());
    };

    ini.setSection("APPLICATION");
    key("Name", [] { return std::string(WaveformFile::kName); });
    key("Version", [] { return std::string(WaveformFile::kVersion); });

    ini.setSection("SETTINGS");
    key("Hscaleindex", [&] { return longToText(roundToLong(source.timeRangeValue())); });
    key("Vscaleindex", [&] { return longToText(roundToLong(source.chaLevelValue())); });
    // The pan position and the offset as they stand: the shortest text of the same number.
    key("Graphoffset", [&] { return doubleToText(source.graphOffset()); });
    key("Chaoffset", [&] { return doubleToText(source.chaOffsetValue()); });

    ini.setSection("BUTTONS");
    key("Invert", [&] { return booleanToText(source.invertValue()); });
    // A file is only ever saved from a reference on screen.
    key("Reference", [] { return booleanToText(true); });

    ini.setSection("ANALOGTRACE");
    const TraceArray volts = source.refVolts();
    for (int line = 1; line <= WaveformSamples::kLineCount; ++line) {
        const std::string name = "Reftrace" + std::to_string(line);
        key(name.c_str(), [&] { return WaveformSamples::line(volts, line); });
    }
    key("Tadj", [&] { return singleToText(source.refSampleInterval()); });

    ini.setSection("HARDWARE");
    const HardwareState s = source.hardware();
    key("Range", [&] { return longToText(s.bytSwitchSetting); });
    key("Triggerlevel", [&] { return longToText(s.bytTriggerLvl); });
    key("Timebase", [&] { return longToText(s.bytTimebaseDef); });
    key("Triggerdef", [&] { return longToText(s.bytTriggerDef); });
}

/// A hardware byte: a whole number (halves to even) from 0 to 255.
std::uint8_t toByte(const std::string& text) {
    const std::int32_t value = VbConvert::textToLong(text);
    if (value < 0 || value > 255)
        throw ConversionError(ConversionError::Kind::Overflow, "not a byte: " + text);
    return static_cast<std::uint8_t>(value);
}

void readHardwareByte(cInifile& ini, const char* key, WaveformTarget& target,
                      std::uint8_t HardwareState::*field) {
    readKey(ini, key, [&](const std::string& t) {
        HardwareState s = target.hardware();
        s.*field = toByte(t);
        target.setHardware(s);
    });
}

void readSamples(cInifile& ini, WaveformTarget& target) {
    std::string joined;
    for (int line = 1; line <= WaveformSamples::kLineCount; ++line) {
        ini.setKey("Reftrace" + std::to_string(line));
        joined += ini.Value();
    }
    const auto pieces = WaveformSamples::split(joined);
    for (std::size_t i = 0; i < kSamplesPerFrame; ++i) {
        if (i >= pieces.size())
            throw ConversionError(ConversionError::Kind::TypeMismatch, "fewer than 128 samples");
        target.setRefSample(i, WaveformSamples::read(pieces[i]));
    }
}

} // namespace

bool WaveformFile::hasWaveformExtension(std::string_view path) {
    if (path.size() < 3)
        return false;
    std::string last(path.substr(path.size() - 3));
    for (char& c : last) {
        if (c >= 'a' && c <= 'z')
            c = static_cast<char>(c - 'a' + 'A');
    }
    return last == "WDF";
}

// The new contents are built in memory from the file as it stands and then put in its place in
// one atomic step, made safe on disk once, so a save that fails half-way (a read-only file or
// folder, a full disk, the program killed) leaves the file exactly as it was: never half old
// and half new.
bool WaveformFile::SaveWaveformFile(cInifile& ini, const std::string& path,
                                    const WaveformTarget& source) {
    ini.setPath(path);
    if (path.empty())
        return false;
    try {
        std::optional<ProfileDocument> contents = ProfileDocument::read(path);
        if (!contents)
            return false;
        writeKeys(ini, *contents, source);
        const bool written = contents->commit(path);
        ini.setLastReturnCode(written ? 1 : 0);
        return written;
    } catch (const std::exception&) {
        return false;
    }
}

WaveformLoadResult WaveformFile::LoadWaveformFile(cInifile& ini, const std::string& path,
                                                  WaveformTarget& target) {
    if (!hasWaveformExtension(path))
        return WaveformLoadResult::NotWaveformFile;
    ini.setPath(path);
    ini.setSection("APPLICATION");
    ini.setKey("Name");
    if (ini.Value() != kName)
        return WaveformLoadResult::NotForThisApplication;
    try {
        ini.setSection("SETTINGS");
        readKey(ini, "Hscaleindex", [&](const auto& t) { target.setTimeRange(wholeNumber(t)); });
        readKey(ini, "Vscaleindex", [&](const auto& t) { target.setChaLevel(wholeNumber(t)); });
        readKey(ini, "Chaoffset", [&](const auto& t) { target.setChaOffset(t); });

        ini.setSection("BUTTONS");
        readKey(ini, "Invert",
                [&](const auto& t) { target.setInvert(VbConvert::textToBoolean(t)); });
        readKey(ini, "Reference",
                [&](const auto& t) { target.setReference(VbConvert::textToBoolean(t)); });

        ini.setSection("HARDWARE");
        readHardwareByte(ini, "Range", target, &HardwareState::bytSwitchSetting);
        readHardwareByte(ini, "Triggerlevel", target, &HardwareState::bytTriggerLvl);
        readHardwareByte(ini, "Timebase", target, &HardwareState::bytTimebaseDef);
        readHardwareByte(ini, "Triggerdef", target, &HardwareState::bytTriggerDef);

        ini.setSection("ANALOGTRACE");
        readSamples(ini, target);
        readKey(ini, "Tadj",
                [&](const auto& t) { target.setRefSampleInterval(VbConvert::textToSingle(t)); });
    } catch (const std::exception&) {
        return WaveformLoadResult::Failed;
    }
    return WaveformLoadResult::Loaded;
}

} // namespace zorvik
