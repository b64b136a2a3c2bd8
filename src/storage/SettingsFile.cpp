// The application settings file: location, writer and reader with a resume-next policy.
#include "storage/SettingsFile.h"

#include "storage/AtomicFile.h"
#include "storage/VbConvert.h"

#include <cstdio>
#include <exception>
#include <random>
#include <utility>

namespace zorvik {

namespace {

constexpr std::pair<const char*, SettingsColour> kColours[] = {
    {"Cursor1", SettingsColour::Cursor1},
    {"Cursor2", SettingsColour::Cursor2},
    {"Cursor3", SettingsColour::Cursor3},
    {"Cursor4", SettingsColour::Cursor4},
    {"Display", SettingsColour::Display},
    {"Primarytrace", SettingsColour::Primarytrace},
    {"Referencetrace", SettingsColour::Referencetrace},
};

constexpr std::pair<const char*, SettingsButton> kButtons[] = {
    {"Hcursors", SettingsButton::Hcursors},
    {"Vcursors", SettingsButton::Vcursors},
    {"Invert", SettingsButton::Invert},
};

// One key of the writer: an error while making or writing the text skips this key only.
template <typename MakeText> void writeKey(cInifile& ini, const char* key, MakeText makeText) {
    ini.setKey(key);
    try {
        std::string text = makeText();
        ini.setValue(text);
    } catch (const std::exception&) {
    }
}

// One key of the reader: a missing or empty value changes nothing; an error while converting
// or applying it skips this key only.
template <typename Apply> void readKey(cInifile& ini, const char* key, Apply apply) {
    ini.setKey(key);
    try {
        const std::string text = ini.Value();
        if (text.empty())
            return;
        apply(text);
    } catch (const std::exception&) {
    }
}

std::int32_t wholeNumber(const std::string& text) {
    return VbConvert::roundToLong(VbConvert::leadingNumber(text));
}

// A copy of the settings file in the system's temporary folder that the save writes its keys
// into, key by key as ever; the whole copy then replaces the file in one step. A crash or a
// kill in the middle of the save thus leaves the previous settings whole, never a mixture.
// The copy is removed when the save is done.
class ScratchCopy {
public:
    explicit ScratchCopy(const std::filesystem::path& file) {
        namespace fs = std::filesystem;
        const AtomicFile::Contents contents = AtomicFile::read(file);
        if (contents.status == AtomicFile::Status::NotAFile || !AtomicFile::canReplace(file))
            return; // the save fails key by key, as a direct write does
        m_existed = contents.status == AtomicFile::Status::Read;
        std::error_code ec;
        const fs::path folder = fs::temp_directory_path(ec);
        if (ec)
            return;
        std::random_device random;
        for (int attempt = 0; attempt < 100 && m_path.empty(); ++attempt) {
            const fs::path candidate =
                folder / ("zorvik-settings-" + std::to_string(random()) + ".ini");
            // "x": created here and now, never an existing file.
            if (std::FILE* f = std::fopen(candidate.string().c_str(), "wbx")) {
                const bool written = std::fwrite(contents.bytes.data(), 1, contents.bytes.size(),
                                                 f) == contents.bytes.size();
                if (std::fclose(f) == 0 && written)
                    m_path = candidate;
                else
                    fs::remove(candidate, ec);
            }
        }
    }
    ~ScratchCopy() {
        std::error_code ec;
        if (!m_path.empty())
            std::filesystem::remove(m_path, ec);
    }
    ScratchCopy(const ScratchCopy&) = delete;
    ScratchCopy& operator=(const ScratchCopy&) = delete;

    /// Empty when the save goes straight to the file.
    const std::filesystem::path& path() const { return m_path; }

    /// Replaces `file` with the copy in one step. A file that was not there comes into being
    /// only when at least one key was written.
    bool commit(const std::filesystem::path& file) const {
        const AtomicFile::Contents copy = AtomicFile::read(m_path);
        if (copy.status != AtomicFile::Status::Read || (!m_existed && copy.bytes.empty()))
            return false;
        return AtomicFile::replace(file, copy.bytes);
    }

private:
    std::filesystem::path m_path;
    bool m_existed = false;
};

} // namespace

std::filesystem::path SettingsFile::location(const std::filesystem::path& programFolder,
                                             const std::filesystem::path& userConfigFolder) {
    if (AtomicFile::isWritableFolder(programFolder))
        return programFolder / kFileName;
    std::error_code ec;
    std::filesystem::create_directories(userConfigFolder, ec);
    return userConfigFolder / kFileName;
}

void SettingsFile::write(cInifile& ini, const std::string& path, const SettingsPanel& panel) {
    using namespace VbConvert;
    const ScratchCopy scratch(path);
    ini.setPath(scratch.path().empty() ? path : scratch.path().string());

    ini.setSection("SETTINGS");
    writeKey(ini, "Hscaleindex", [&] { return longToText(roundToLong(panel.timeRangeValue())); });
    writeKey(ini, "Vscaleindex", [&] { return longToText(roundToLong(panel.chaLevelValue())); });
    // The offset keeps its fraction: the shortest '.' text that reads back to the same number.
    writeKey(ini, "Chaoffset", [&] { return doubleToText(panel.chaOffsetValue()); });

    // The loops name their pair's members rather than binding them, so that every C++20
    // compiler (clang 14 too) lets the lambdas use them.
    ini.setSection("COLORS");
    for (const auto& entry : kColours)
        writeKey(ini, entry.first, [&] { return longToText(panel.colour(entry.second)); });

    ini.setSection("BUTTONS");
    for (const auto& entry : kButtons)
        writeKey(ini, entry.first, [&] { return booleanToText(panel.button(entry.second)); });

    if (!scratch.path().empty())
        scratch.commit(path);
    ini.setPath(path);
}

void SettingsFile::read(cInifile& ini, const std::string& path, SettingsPanel& panel) {
    ini.setPath(path);

    ini.setSection("SETTINGS");
    readKey(ini, "Hscaleindex",
            [&](const std::string& t) { panel.applyTimeRange(wholeNumber(t)); });
    readKey(ini, "Vscaleindex", [&](const std::string& t) { panel.applyChaLevel(wholeNumber(t)); });
    readKey(ini, "Chaoffset", [&](const std::string& t) { panel.applyChaOffset(t); });

    ini.setSection("COLORS");
    for (const auto& entry : kColours) {
        readKey(ini, entry.first,
                [&](const std::string& t) { panel.setColour(entry.second, wholeNumber(t)); });
    }

    ini.setSection("BUTTONS");
    for (const auto& entry : kButtons) {
        readKey(ini, entry.first, [&](const std::string& t) {
            panel.applyButton(entry.second, VbConvert::textToBoolean(t));
        });
    }
}

std::map<int, std::string> SettingsFile::readPorts(const std::string& path) {
    // A private reader, so the shared instance's Path, Section and Key stay as they are.
    cInifile ini;
    ini.setPath(path);
    ini.setSection("PORTS");
    std::map<int, std::string> ports;
    for (int n = 1; n <= 8; ++n) {
        ini.setKey("COM" + std::to_string(n));
        std::string device = ini.Value();
        if (!device.empty())
            ports.emplace(n, std::move(device));
    }
    return ports;
}

} // namespace zorvik
