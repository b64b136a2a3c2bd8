// The application settings file: location, writer and reader with a resume-next policy.
#include "storage/SettingsFile.h"

#include "storage/AtomicFile.h"
#include "storage/VbConvert.h"

#include <exception>
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
    ini.setPath(path);

    ini.setSection("SETTINGS");
    writeKey(ini, "Hscaleindex", [&] { return longToText(roundToLong(panel.timeRangeValue())); });
    writeKey(ini, "Vscaleindex", [&] { return longToText(roundToLong(panel.chaLevelValue())); });
    // The offset keeps its fraction: the shortest '.' text that reads back to the same number.
    writeKey(ini, "Chaoffset", [&] { return doubleToText(panel.chaOffsetValue()); });

    ini.setSection("COLORS");
    for (const auto& [key, colour] : kColours)
        writeKey(ini, key, [&] { return longToText(panel.colour(colour)); });

    ini.setSection("BUTTONS");
    for (const auto& [key, button] : kButtons)
        writeKey(ini, key, [&] { return booleanToText(panel.button(button)); });
}

void SettingsFile::read(cInifile& ini, const std::string& path, SettingsPanel& panel) {
    ini.setPath(path);

    ini.setSection("SETTINGS");
    readKey(ini, "Hscaleindex",
            [&](const std::string& t) { panel.applyTimeRange(wholeNumber(t)); });
    readKey(ini, "Vscaleindex", [&](const std::string& t) { panel.applyChaLevel(wholeNumber(t)); });
    readKey(ini, "Chaoffset", [&](const std::string& t) { panel.applyChaOffset(t); });

    ini.setSection("COLORS");
    for (const auto& [key, colour] : kColours)
        readKey(ini, key, [&](const std::string& t) { panel.setColour(colour, wholeNumber(t)); });

    ini.setSection("BUTTONS");
    for (const auto& [key, button] : kButtons) {
        readKey(ini, key, [&](const std::string& t) {
            panel.applyButton(button, VbConvert::textToBoolean(t));
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
