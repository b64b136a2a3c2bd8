// Writes the seed corpora of the fuzz targets: probe streams of every kind the receive cycle
// meets (back-to-back frames, waiting markers, a start mid-frame, the sync cases, dropped
// bytes, garbage, a stream ending inside a frame, holds), profile files with operations on
// them, and waveform files to load and records to save. Usage:
// zorvik_fuzz_seeds <corpus folder> <folder of sample INI files> <folder of sample .wdf files>
#include "probe/FrameGenerator.h"
#include "probe/ProbeStream.h"

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

namespace fs = std::filesystem;
using namespace zorvik;
using Bytes = std::vector<std::uint8_t>;

namespace {

void save(const fs::path& file, const std::string& bytes) {
    fs::create_directories(file.parent_path());
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    std::printf("%s (%zu bytes)\n", file.c_str(), bytes.size());
}

// ---- receive cycle -------------------------------------------------------------------------

enum Cut { SmallChunks = 0, LargeChunks = 1, OneChunk = 2, SingleBytes = 3 };
enum Ending { Silent = 0, Partial = 1, TimeOut = 2 };

std::string lineScript(const Bytes& stream, Ending ending, int actionRate, Cut cut,
                       std::uint16_t seed) {
    std::string out;
    out += static_cast<char>(ending | (actionRate << 2) | (cut << 6));
    out += static_cast<char>(seed & 0xFF);
    out += static_cast<char>(seed >> 8);
    out.append(stream.begin(), stream.end());
    return out;
}

Bytes frames(std::uint64_t count, std::size_t waitingBetween = 0) {
    return makeProbeBytes(ProbeSettings{}, count, waitingBetween);
}

Bytes stream(const StreamOptions& options) {
    return ProbeStream(ProbeSettings{}, options).drain();
}

Bytes frameWithSwitch(std::uint8_t switchSetting) {
    HardwareState state;
    state.bytSwitchSetting = switchSetting;
    state.bytTimebaseDef = 6;
    state.bytTriggerDef = 0x40;
    state.bytTriggerLvl = 16;
    RawSamples samples{};
    for (std::size_t i = 0; i < samples.size(); ++i)
        samples[i] = static_cast<std::uint8_t>(i % 63);
    const auto frame = buildFrame(state, samples);
    return Bytes(frame.begin(), frame.end());
}

Bytes join(std::initializer_list<Bytes> parts) {
    Bytes out;
    for (const Bytes& part : parts)
        out.insert(out.end(), part.begin(), part.end());
    return out;
}

void receiveSeeds(const fs::path& folder) {
    save(folder / "frames-small-chunks", lineScript(frames(4), Silent, 0, SmallChunks, 1));
    save(folder / "frames-with-waiting-markers",
         lineScript(frames(4, 2), Silent, 0, LargeChunks, 2));
    const Bytes four = frames(4);
    save(folder / "start-mid-frame",
         lineScript(Bytes(four.begin() + 50, four.end()), Silent, 0, SingleBytes, 3));
    save(
        folder / "sync-in-place-1-accepted",
        lineScript(join({{0x11, 0x7D}, frameWithSwitch(0x24), frames(1)}), Silent, 0, OneChunk, 4));
    save(folder / "sync-in-place-1-switch-7d-rejected",
         lineScript(join({{0x11, 0x7D}, frameWithSwitch(0x7D), frames(2)}), Silent, 0, SmallChunks,
                    5));
    save(folder / "switch-7d-read-as-waiting-marker",
         lineScript(join({frameWithSwitch(0x7D), frames(2)}), Silent, 0, SmallChunks, 6));

    StreamOptions drops;
    drops.frames = 12;
    drops.dropProbability = 0.01;
    drops.seed = 7;
    save(folder / "dropped-bytes", lineScript(stream(drops), Silent, 0, SmallChunks, 7));

    StreamOptions garbageOnly;
    garbageOnly.frames = 4;
    garbageOnly.garbageOnly = true;
    save(folder / "garbage-only", lineScript(stream(garbageOnly), Silent, 0, LargeChunks, 8));

    StreamOptions garbage;
    garbage.frames = 6;
    garbage.garbageBytes = 40;
    garbage.garbageEvery = 2;
    save(folder / "garbage-between-frames", lineScript(stream(garbage), Silent, 0, SmallChunks, 9));

    Bytes cut = frames(2);
    cut.resize(cut.size() - 70);
    save(folder / "ends-inside-frame-partial", lineScript(cut, Partial, 0, SmallChunks, 10));
    save(folder / "ends-inside-frame-timeout", lineScript(cut, TimeOut, 0, SmallChunks, 11));
    Bytes cut139 = join({{0x11, 0x7D}, frameWithSwitch(0x24)});
    cut139.resize(cut139.size() - 3);
    save(folder / "ends-inside-whole-frame-partial", lineScript(cut139, Partial, 0, OneChunk, 12));
    save(folder / "one-byte-probe-redraw", lineScript({0x42}, Partial, 0, OneChunk, 13));
    save(folder / "held-and-resumed", lineScript(frames(6, 1), Silent, 15, SmallChunks, 14));
    save(folder / "empty", lineScript({}, Silent, 0, SmallChunks, 0));
}

// ---- profile engine ------------------------------------------------------------------------

enum Op { ReadValue, ReadKeys, ReadSections, Write, DeleteKey, DeleteSection, IniWrite, Remove };

/// Appends a text whose length byte allows `maxLength` (nothing: a length byte meaning none).
void text(std::string& out, const std::optional<std::string>& value, std::size_t maxLength) {
    std::size_t n = 15;
    if (value) {
        n = value->size();
        while (n % 16 == 15)
            n += maxLength + 1; // the same length modulo maxLength + 1, not read as "none"
    }
    out += static_cast<char>(n & 0xFF);
    if (maxLength > 255)
        out += static_cast<char>(n >> 8);
    if (value)
        out += *value;
}

struct Script {
    std::string bytes;
    Script(std::optional<std::string> file) {
        bytes += static_cast<char>(file ? 1 : 0);
        const std::string content = file.value_or("");
        bytes += static_cast<char>(content.size() & 0xFF);
        bytes += static_cast<char>(content.size() >> 8);
        bytes += content;
    }
    Script& op(Op code, std::optional<std::string> section, std::optional<std::string> key,
               std::optional<std::string> value, std::uint16_t size = 255) {
        bytes += static_cast<char>(code);
        text(bytes, section, 40);
        text(bytes, key, 40);
        text(bytes, value, 300);
        bytes += static_cast<char>(size & 0xFF);
        bytes += static_cast<char>(size >> 8);
        return *this;
    }
};

std::string readFile(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

void profileSeeds(const fs::path& folder, const fs::path& samples) {
    const std::string settings = "[SETTINGS]\r\nHscaleindex=5\r\nVscaleindex=3\r\n"
                                 "Chaoffset=0.25\r\n[COLORS]\r\nCursor1=255\r\n; note\r\n"
                                 "[BUTTONS]\r\nInvert=False\r\n";
    save(folder / "settings-write-read",
         Script(settings)
             .op(Write, "SETTINGS", "Hscaleindex", "7")
             .op(ReadValue, "settings", "HSCALEINDEX", "none")
             .op(Write, "COLORS", "Cursor2", "  \"65280\"  ")
             .op(Write, "NEW", "Key", "value")
             .op(ReadKeys, "SETTINGS", std::nullopt, std::nullopt, 12)
             .op(ReadSections, std::nullopt, std::nullopt, std::nullopt, 16)
             .bytes);
    save(folder / "delete-key-and-section",
         Script(settings)
             .op(DeleteKey, "SETTINGS", "Vscaleindex", std::nullopt)
             .op(DeleteSection, "COLORS", std::nullopt, std::nullopt)
             .op(DeleteKey, "SETTINGS", "Absent", std::nullopt)
             .op(ReadKeys, "COLORS", std::nullopt, "default", 40)
             .bytes);
    save(folder / "missing-file",
         Script(std::nullopt)
             .op(ReadSections, std::nullopt, std::nullopt, std::nullopt, 10)
             .op(DeleteKey, "A", "b", std::nullopt)
             .op(Remove, std::nullopt, std::nullopt, std::nullopt)
             .op(Write, " App ", " key ", "string")
             .op(Write, std::nullopt, "k", "v")
             .bytes);
    save(folder / "cinifile-long-value-and-nul",
         Script(settings)
             .op(IniWrite, "SETTINGS", "Long", std::string(280, 'x'))
             .op(IniWrite, "SETTINGS", "Nul", std::string("a\0b\0c", 5))
             .op(ReadValue, "SETTINGS", "Long", std::nullopt, 255)
             .bytes);
    save(folder / "no-final-line-break", Script("[s]\nk=v\n[t]\nlast=1")
                                             .op(Write, "t", "added", "2")
                                             .op(Write, "u", "x", "y")
                                             .op(Write, "s", "k", "''quoted''")
                                             .bytes);
    save(folder / "odd-lines",
         Script("top=before\r\n[ sec   \r\n\tname = value \r\n=empty\r\nnokey\r\n;c=1\r\n"
                "[sec]\r\nname=second\r\n[s]k=v\r\n[]\r\n=x\r\n")
             .op(Write, "sec", "name", "new")
             .op(Write, "", "", "z")
             .op(ReadKeys, "sec", std::nullopt, std::nullopt, 3)
             .op(DeleteSection, "sec", std::nullopt, std::nullopt)
             .bytes);
    for (const auto& entry : fs::directory_iterator(samples)) {
        if (!entry.is_regular_file())
            continue;
        save(folder / ("sample-" + entry.path().stem().string()),
             Script(readFile(entry.path()))
                 .op(ReadSections, std::nullopt, std::nullopt, std::nullopt, 300)
                 .op(Write, "SETTINGS", "Hscaleindex", "9")
                 .op(DeleteKey, "COLORS", "Cursor1", std::nullopt)
                 .bytes);
    }
}

// ---- waveform files ------------------------------------------------------------------------

/// A record to save: knobs, offset, buttons, the four probe bytes, 128 sample bytes (counts of
/// the range, or raw bits of any number), the time base, then an older file to save over.
std::string recordScript(std::uint8_t mode, std::uint8_t range, std::uint8_t firstCount,
                         std::uint8_t timebase, const std::string& older) {
    std::string out;
    out += static_cast<char>(mode);
    out += {static_cast<char>(18), static_cast<char>(-7)};     // knobs 4.5 and -1.75
    out += {static_cast<char>(0x40), static_cast<char>(0x01)}; // pan 320 / 64
    out += {static_cast<char>(0x0C), static_cast<char>(0xFE)}; // offset -0.5
    out += static_cast<char>(1);                               // inverted
    out += {static_cast<char>(0x20 | range), static_cast<char>(16), static_cast<char>(timebase),
            static_cast<char>(0x40)};
    const std::size_t perSample = (mode & 2) ? 4 : 1;
    for (std::size_t i = 0; i < 128 * perSample; ++i)
        out += static_cast<char>(firstCount + i * 7);
    if (mode & 2)
        out += {static_cast<char>(0x38), static_cast<char>(0x51), static_cast<char>(0xB7),
                static_cast<char>(0x17)}; // about 5e-5
    else
        out += static_cast<char>(timebase);
    out += older;
    return out;
}

void waveformSeeds(const fs::path& folder, const fs::path& samples) {
    for (const auto& entry : fs::directory_iterator(samples)) {
        if (!entry.is_regular_file())
            continue;
        const std::string file = readFile(entry.path());
        save(folder / ("load-" + entry.path().stem().string()), std::string(1, '\x02') + file);
        save(folder / ("save-over-" + entry.path().stem().string()),
             recordScript(5, 0x04, 3, 6, file));
    }
    save(folder / "load-wrong-ending", std::string(1, '\x00') + "[APPLICATION]\r\nName=Zorvik\r\n");
    save(folder / "load-upper-case-ending",
         std::string(1, '\x04') + "[APPLICATION]\r\nName=zorvik\r\n");
    save(folder / "save-new-probe-samples", recordScript(1, 0x00, 0, 0, ""));
    save(folder / "save-new-any-numbers", recordScript(3, 0x08, 11, 10, ""));
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        std::fprintf(stderr,
                     "usage: %s <corpus folder> <folder of sample INI files> "
                     "<folder of sample waveform files>\n",
                     argv[0]);
        return 2;
    }
    const fs::path corpus(argv[1]);
    receiveSeeds(corpus / "receive");
    profileSeeds(corpus / "profile", argv[2]);
    waveformSeeds(corpus / "waveform", argv[3]);
    return 0;
}
