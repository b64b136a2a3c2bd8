// Fuzz target: the Waveform Data File reader (and its writer) on random files and records.
// Byte 0 of the input chooses the test:
// - even: the rest of the input is a file, loaded into a record. The load never changes the
//   file, gives the same outcome and record every time, refuses a name that does not end in
//   "wdf" and a file whose Name is not "Zorvik" without touching the record;
// - odd: the rest of the input makes a record (knobs, offset, buttons, the four probe bytes,
//   128 samples and the sample interval) and an older file to save over. The save either
//   writes every key or leaves the file as it was; a saved file loads (unless a sample line
//   grew past the 254 characters a value is read to) with every value as it was saved; the
//   sections the older file had are kept; and saving the loaded record gives the same file.
#include "FuzzInput.h"
#include "instrument/DecodeTables.h"
#include "storage/ProfileFile.h"
#include "storage/VbConvert.h"
#include "storage/WaveformFile.h"
#include "storage/WaveformRecord.h"
#include "storage/WaveformSamples.h"

#include <clocale>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <locale.h>
#include <optional>
#include <string>
#include <unistd.h>

namespace fs = std::filesystem;
using namespace zorvik;
using namespace zorvik::fuzz;

namespace {

const std::string& scratchFolder() {
    static const std::string folder = [] {
        std::string base = fs::is_directory("/dev/shm") ? "/dev/shm" : fs::temp_directory_path();
        std::string pattern = base + "/zorvik-fuzz-wdf-XXXXXX";
        if (!::mkdtemp(pattern.data()))
            fail("no scratch folder for the waveform file");
        // The save's own scratch copies go here too.
        ::setenv("TMPDIR", pattern.c_str(), 1);
        return pattern;
    }();
    static const bool cleanUp = [] {
        std::atexit([] {
            std::error_code ec;
            fs::remove_all(scratchFolder(), ec);
        });
        return true;
    }();
    (void)cleanUp;
    return folder;
}

std::optional<std::string> fileBytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in)
        return std::nullopt;
    return std::string((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

void writeFile(const std::string& path, const std::string& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

/// Every value of a record, bit for bit, for comparing.
std::string recordText(const WaveformRecord& r) {
    std::string out;
    auto add = [&out](const void* p, std::size_t n) { out.append(static_cast<const char*>(p), n); };
    add(&r.timeRange, sizeof r.timeRange);
    add(&r.chaLevel, sizeof r.chaLevel);
    add(&r.graphOffsetValue, sizeof r.graphOffsetValue);
    add(&r.chaOffset, sizeof r.chaOffset);
    out += r.invert ? 'i' : '-';
    out += r.reference ? 'r' : '-';
    add(&r.state, sizeof r.state);
    add(r.volts.data(), sizeof(float) * r.volts.size());
    add(&r.sampleInterval, sizeof r.sampleInterval);
    return out;
}

WaveformRecord startingRecord() {
    WaveformRecord r;
    r.timeRange = 3;
    r.chaLevel = 4;
    r.graphOffsetValue = 1.5;
    r.chaOffset = -0.25;
    r.state.bytSwitchSetting = 0x24;
    r.volts.fill(0.5f);
    r.sampleInterval = 5e-5f;
    return r;
}

void loadRandomFile(FuzzInput& in, std::uint8_t mode) {
    const std::string name = (mode & 2) ? "fuzz.wdf" : ((mode & 4) ? "fuzz.WdF" : "fuzz.txt");
    const std::string path = scratchFolder() + "/" + name;
    const std::string text = in.rest();
    writeFile(path, text);

    WaveformRecord first = startingRecord();
    cInifile ini;
    const WaveformLoadResult result = WaveformFile::LoadWaveformFile(ini, path, first);
    check(fileBytes(path) == text, "loading changed the file");
    check(ini.Path() == path || result == WaveformLoadResult::NotWaveformFile,
          "the load left another path on the INI object");
    WaveformRecord second = startingRecord();
    check(WaveformFile::LoadWaveformFile(ini, path, second) == result &&
              recordText(first) == recordText(second),
          "loading the same file twice gave different outcomes");

    const bool untouched = recordText(first) == recordText(startingRecord());
    if (!WaveformFile::hasWaveformExtension(path)) {
        check(result == WaveformLoadResult::NotWaveformFile && untouched,
              "a file without the wdf ending was read");
        return;
    }
    const auto name0 = ProfileFile::getPrivateProfileString("APPLICATION", "Name", "", 255, path);
    const bool ours = name0.buffer.substr(0, name0.count) == WaveformFile::kName;
    check(ours || (result == WaveformLoadResult::NotForThisApplication && untouched),
          "a file for another application was applied");
}

float nearestSingle(const std::string& text) {
    static const locale_t c = newlocale(LC_ALL_MASK, "C", locale_t{});
    return strtof_l(text.c_str(), nullptr, c);
}

std::string floatText(float value) {
    char text[64];
    std::snprintf(text, sizeof text, "%.9g", static_cast<double>(value));
    return text;
}

float sampleFrom(FuzzInput& in, std::uint8_t range, bool anyNumber) {
    if (!anyNumber) {
        // What the probe delivers: (count - 31) x volts per count of a range.
        const int count = in.byte() % 63;
        const float perCount = rangeVoltsPerCount(range).value_or(0.1587301f);
        return static_cast<float>(count - 31) * perCount;
    }
    std::uint32_t bits = 0;
    for (int i = 0; i < 4; ++i)
        bits = (bits << 8) | in.byte();
    float value;
    std::memcpy(&value, &bits, sizeof value);
    return std::isfinite(value) ? value : 0.0f;
}

void saveAndLoad(FuzzInput& in, std::uint8_t mode) {
    const std::string path = scratchFolder() + "/saved.wdf";
    std::error_code ec;
    fs::remove(path, ec);

    WaveformRecord saved;
    saved.timeRange = static_cast<std::int8_t>(in.byte()) / 4.0;
    saved.chaLevel = static_cast<std::int8_t>(in.byte()) / 4.0;
    saved.graphOffsetValue = static_cast<std::int16_t>(in.u16()) / 64.0;
    saved.chaOffset = static_cast<std::int16_t>(in.u16()) / 1000.0;
    saved.invert = in.byte() & 1;
    saved.state.bytSwitchSetting = in.byte();
    saved.state.bytTriggerLvl = in.byte();
    saved.state.bytTimebaseDef = in.byte();
    saved.state.bytTriggerDef = in.byte();
    const bool anyNumbers = mode & 2;
    const std::uint8_t range = saved.state.bytSwitchSetting & 0x0C;
    for (float& v : saved.volts)
        v = sampleFrom(in, range, anyNumbers);
    // The probe's sample intervals, or any number.
    const std::uint8_t timebase = in.byte();
    saved.sampleInterval = anyNumbers ? sampleFrom(in, range, true)
                                      : timeBase(timebase % 11).value().sngSampleInterval;
    const std::string older = in.rest();
    if (mode & 4)
        writeFile(path, older);
    const auto sections = [](const std::string& file) {
        const auto list = ProfileFile::getPrivateProfileString(std::nullopt, std::nullopt,
                                                               std::nullopt, 70000, file);
        return list.buffer.substr(0, list.count);
    };
    const std::string olderSections = sections(path);

    const std::optional<std::string> before = fileBytes(path);
    cInifile ini;
    const bool written = WaveformFile::SaveWaveformFile(ini, path, saved);
    const std::optional<std::string> after = fileBytes(path);
    if (!written) {
        check(after == before, "a failed save changed the file");
        return;
    }
    check(after.has_value(), "a successful save left no file");
    // Every section the older file had is still there, in the same order.
    const std::string nowSections = sections(path);
    std::size_t at = 0;
    for (std::size_t start = 0; start < olderSections.size();) {
        const std::size_t end = olderSections.find('\0', start);
        const std::string name = olderSections.substr(start, end - start + 1);
        at = nowSections.find(name, at);
        check(at != std::string::npos, "saving over a file lost one of its sections", name);
        start = end + 1;
    }

    WaveformRecord loaded = startingRecord();
    const WaveformLoadResult result = WaveformFile::LoadWaveformFile(ini, path, loaded);
    bool longLine = false;
    for (int line = 1; line <= WaveformSamples::kLineCount; ++line)
        longLine = longLine || WaveformSamples::line(saved.volts, line).size() > 254;
    if (result != WaveformLoadResult::Loaded) {
        check(longLine && result == WaveformLoadResult::Failed, "a saved file does not load back",
              *after);
        return;
    }
    check(!longLine, "a file with a sample line past 254 characters loaded");
    check(loaded.reference, "a loaded file did not switch the reference on");
    check(loaded.invert == saved.invert, "Invert does not load back");
    check(loaded.state.bytSwitchSetting == saved.state.bytSwitchSetting &&
              loaded.state.bytTriggerLvl == saved.state.bytTriggerLvl &&
              loaded.state.bytTimebaseDef == saved.state.bytTimebaseDef &&
              loaded.state.bytTriggerDef == saved.state.bytTriggerDef,
          "the probe bytes do not load back");
    check(loaded.chaOffset == saved.chaOffset, "Chaoffset does not load back exactly");
    check(loaded.timeRange == std::nearbyint(saved.timeRange) &&
              loaded.chaLevel == std::nearbyint(saved.chaLevel),
          "the knob positions do not load back rounded");
    // Every sample loads as the single nearest to the text it was saved as (the C library's
    // conversion as a second opinion), so at most its last bit differs from the saved one.
    for (std::size_t i = 0; i < saved.volts.size(); ++i) {
        const std::string text = VbConvert::singleToText(saved.volts[i]);
        const float expected = nearestSingle(text);
        check(loaded.volts[i] == expected,
              "a sample does not load as the single nearest to its text",
              "sample " + std::to_string(i) + ": text " + text + ", loaded " +
                  floatText(loaded.volts[i]) + ", expected " + floatText(expected));
    }
    check(loaded.sampleInterval == nearestSingle(VbConvert::singleToText(saved.sampleInterval)),
          "Tadj does not load as the single nearest to its text");
    // Saved once more from what was loaded, the file stays the same (the pan position is
    // never read back, so it is carried over by hand).
    loaded.graphOffsetValue = saved.graphOffsetValue;
    if (!anyNumbers) {
        check(WaveformFile::SaveWaveformFile(ini, path, loaded), "saving again failed");
        check(fileBytes(path) == after, "saving what was loaded changed the file");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzInput in(data, size);
    const std::uint8_t mode = in.byte();
    if (mode & 1)
        saveAndLoad(in, mode);
    else
        loadRandomFile(in, mode);
    return 0;
}
