// Benchmarks of the files in the core: the settings file written at shutdown and read at
// start-up, one INI value read, and a Waveform Data File saved and loaded. The files live in
// a fresh folder under the system's temporary folder (or under $ZORVIK_BENCH_DIR), so the
// figures include the file system's cost of making each write safe on disk.
#include "storage/SettingsFile.h"
#include "storage/WaveformFile.h"
#include "storage/WaveformRecord.h"
#include "storage/cInifile.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <stdexcept>

namespace {

using namespace zorvik;
namespace fs = std::filesystem;

/// A folder of its own for one benchmark, removed afterwards.
class BenchFolder {
public:
    BenchFolder() {
        const char* base = std::getenv("ZORVIK_BENCH_DIR");
        const fs::path parent = base && *base ? fs::path(base) : fs::temp_directory_path();
        path_ = parent / ("zorvik-bench-" + std::to_string(std::random_device{}()));
        fs::create_directories(path_);
    }
    ~BenchFolder() {
        std::error_code ec;
        fs::remove_all(path_, ec);
    }
    BenchFolder(const BenchFolder&) = delete;
    BenchFolder& operator=(const BenchFolder&) = delete;

    std::string file(const char* name) const { return (path_ / name).string(); }

private:
    fs::path path_;
};

/// A front panel as the settings file sees it, with the values of a panel in use.
class BenchPanel final : public SettingsPanel {
public:
    double timeRangeValue() const override { return 12; }
    double chaLevelValue() const override { return 5; }
    double chaOffsetValue() const override { return 0.4; }
    std::int32_t colour(SettingsColour which) const override {
        return 0x00FFFF + static_cast<std::int32_t>(which);
    }
    bool button(SettingsButton which) const override { return which != SettingsButton::Invert; }

    void applyTimeRange(std::int32_t v) override { applied += v; }
    void applyChaLevel(std::int32_t v) override { applied += v; }
    void applyChaOffset(const std::string& text) override {
        applied += static_cast<std::int64_t>(text.size());
    }
    void setColour(SettingsColour, std::int32_t rgb) override { applied += rgb; }
    void applyButton(SettingsButton, bool value) override { applied += value ? 1 : 0; }

    std::int64_t applied = 0;
};

/// A reference trace as STORE takes it, with the settings it was taken with.
WaveformRecord reference() {
    WaveformRecord r;
    r.timeRange = 12;
    r.chaLevel = 5;
    r.graphOffsetValue = 0;
    r.chaOffset = 0.4;
    r.reference = true;
    r.state = HardwareState{0x24, 6, 0x40, 16, '0', '1', '2', 0x44};
    for (std::size_t i = 0; i < r.volts.size(); ++i)
        r.volts[i] = 0.1587301f * std::round(6.3f * std::sin(0.05f * static_cast<float>(i)));
    r.sampleInterval = 5e-5f;
    return r;
}

/// The settings writer at shutdown: thirteen keys in three sections.
void BM_SettingsFileWrite(benchmark::State& state) {
    BenchFolder folder;
    const std::string path = folder.file(SettingsFile::kFileName);
    cInifile ini;
    BenchPanel panel;
    for (auto _ : state)
        SettingsFile::write(ini, path, panel);
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()));
}
BENCHMARK(BM_SettingsFileWrite)->Unit(benchmark::kMillisecond)->UseRealTime();

/// The settings reader at start-up: the same thirteen keys read and applied.
void BM_SettingsFileRead(benchmark::State& state) {
    BenchFolder folder;
    const std::string path = folder.file(SettingsFile::kFileName);
    cInifile ini;
    BenchPanel panel;
    SettingsFile::write(ini, path, panel);
    for (auto _ : state)
        SettingsFile::read(ini, path, panel);
    benchmark::DoNotOptimize(panel.applied);
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()));
}
BENCHMARK(BM_SettingsFileRead)->Unit(benchmark::kMicrosecond)->UseRealTime();

/// One value of the settings file through cInifile (the file is read afresh every time).
void BM_IniValueRead(benchmark::State& state) {
    BenchFolder folder;
    const std::string path = folder.file(SettingsFile::kFileName);
    cInifile ini;
    BenchPanel panel;
    SettingsFile::write(ini, path, panel);
    ini.setPath(path);
    ini.setSection("BUTTONS");
    ini.setKey("Invert");
    for (auto _ : state) {
        std::string value = ini.Value();
        benchmark::DoNotOptimize(value);
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()));
}
BENCHMARK(BM_IniValueRead)->Unit(benchmark::kMicrosecond)->UseRealTime();

/// One value written through cInifile: the file is updated and replaced as a whole.
void BM_IniValueWrite(benchmark::State& state) {
    BenchFolder folder;
    const std::string path = folder.file(SettingsFile::kFileName);
    cInifile ini;
    BenchPanel panel;
    SettingsFile::write(ini, path, panel);
    ini.setPath(path);
    ini.setSection("BUTTONS");
    ini.setKey("Invert");
    for (auto _ : state) {
        std::string value = "True";
        ini.setValue(value);
    }
    if (!ini.Success())
        state.SkipWithError("the write failed");
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()));
}
BENCHMARK(BM_IniValueWrite)->Unit(benchmark::kMillisecond)->UseRealTime();

/// File -> Save over an existing file: every key of the file, replaced in one piece.
void BM_WdfSave(benchmark::State& state) {
    BenchFolder folder;
    const std::string path = folder.file("bench.wdf");
    cInifile ini;
    const WaveformRecord source = reference();
    for (auto _ : state) {
        if (!WaveformFile::SaveWaveformFile(ini, path, source)) {
            state.SkipWithError("the save failed");
            break;
        }
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()));
}
BENCHMARK(BM_WdfSave)->Unit(benchmark::kMillisecond)->UseRealTime();

/// File -> Open of that file: settings, buttons, probe bytes, 128 samples and Tadj.
void BM_WdfLoad(benchmark::State& state) {
    BenchFolder folder;
    const std::string path = folder.file("bench.wdf");
    cInifile ini;
    if (!WaveformFile::SaveWaveformFile(ini, path, reference()))
        throw std::runtime_error("cannot save the benchmark's file");
    for (auto _ : state) {
        WaveformRecord target;
        if (WaveformFile::LoadWaveformFile(ini, path, target) != WaveformLoadResult::Loaded) {
            state.SkipWithError("the load failed");
            break;
        }
        benchmark::DoNotOptimize(target);
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()));
}
BENCHMARK(BM_WdfLoad)->Unit(benchmark::kMicrosecond)->UseRealTime();

} // namespace
