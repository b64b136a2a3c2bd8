// The application settings file: location, writer and reader with a resume-next policy.
#include "storage/SettingsFile.h"

#include "storage/AtomicFile.h"
#include "storage/ProfileDocument.h"
#include "storage/ProfileKeys.h"
#include "storage/VbConvert.h"

#include <chrono>
#include <exception>
#include <optional>
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

// One key of the writer: an error while making the text skips this key only.
template <typename MakeText>
void writeKey(cInifile& ini, ProfileDocument& document, const char* key, MakeText makeText) {
    ini.setKey(key);
    try {
        document.write(ini, makeText());
    } catch (const std::exception&) {
    }
}

// Earlier builds saved the settings through a copy in the system's temporary folder,
// "zorvik-settings-NUMBER.ini", which a save that died left behind. A save takes milliseconds,
// so one that is older than ten minutes belongs to no running save: it is removed.
void removeStaleTemporaryCopies() {
    namespace fs = std::filesystem;
    std::error_code ec;
    const fs::path folder = fs::temp_directory_path(ec);
    if (ec)
        return;
    const auto stale = fs::file_time_type::clock::now() - std::chrono::minutes(10);
    for (fs::directory_iterator it(folder, ec), end; !ec && it != end; it.increment(ec)) {
        const std::string name = it->path().filename().string();
        if (name.rfind("zorvik-settings-", 0) != 0 || name.size() < 20 ||
            name.compare(name.size() - 4, 4, ".ini") != 0)
            continue;
        std::error_code statError;
        if (it->is_regular_file(statError) && it->last_write_time(statError) < stale && !statError)
            fs::remove(it->path(), statError);
    }
}

} // namespace

std::filesystem::path SettingsLocation::readPath() const {
    std::error_code ec;
    if (original.empty() || std::filesystem::exists(file, ec))
        return file;
    return original;
}

SettingsLocation SettingsFile::location(const std::filesystem::path& programFolder,
                                        const std::filesystem::path& userConfigFolder) {
    if (AtomicFile::isWritableFolder(programFolder))
        return {programFolder / kFileName, {}};
    return {userConfigFolder / kFileName, programFolder / kFileName};
}

// The keys are written one by one into the file's text in memory, by the rules of writing each
// to the file, and the new text replaces the file in one step: a crash or a kill in the middle
// of the save leaves the previous settings whole, never a mixture. A file that was not there
// comes into being only when at least one key was written.
void SettingsFile::write(cInifile& ini, const std::string& path, const SettingsPanel& panel) {
    write(ini, SettingsLocation{path, {}}, panel);
}

void SettingsFile::write(cInifile& ini, const SettingsLocation& where, const SettingsPanel& panel) {
    using namespace VbConvert;
    removeStaleTemporaryCopies();
    const std::string path = where.file.string();
    ini.setPath(path);
    // The per-user copy starts as the file beside the program, as the first write into a
    // protected program folder does on Windows.
    std::error_code ec;
    const bool firstCopy = !where.original.empty() && !std::filesystem::exists(where.file, ec) &&
                           std::filesystem::exists(where.original, ec);
    std::optional<ProfileDocument> document =
        ProfileDocument::read(firstCopy ? where.original : where.file);
    if (!document)
        return; // something that is no file stands in the way: every key fails

    ini.setSection("SETTINGS");
    writeKey(ini, *document, "Hscaleindex",
             [&] { return longToText(roundToLong(panel.timeRangeValue())); });
    writeKey(ini, *document, "Vscaleindex",
             [&] { return longToText(roundToLong(panel.chaLevelValue())); });
    // The offset keeps its fraction: the shortest '.' text that reads back to the same number.
    writeKey(ini, *document, "Chaoffset", [&] { return doubleToText(panel.chaOffsetValue()); });

    // The loops name their pair's members rather than binding them, so that every C++20
    // compiler (clang 14 too) lets the lambdas use them.
    ini.setSection("COLORS");
    for (const auto& entry : kColours)
        writeKey(ini, *document, entry.first,
                 [&] { return longToText(panel.colour(entry.second)); });

    ini.setSection("BUTTONS");
    for (const auto& entry : kButtons)
        writeKey(ini, *document, entry.first,
                 [&] { return booleanToText(panel.button(entry.second)); });

    if (document->changed() || firstCopy) {
        if (!where.original.empty())
            std::filesystem::create_directories(where.file.parent_path(), ec);
        ini.setLastReturnCode(document->commit(where.file) ? 1 : 0);
    }
}

void SettingsFile::read(cInifile& ini, const std::string& path, SettingsPanel& panel) {
    ini.setPath(path);

    ini.setSection("SETTINGS");
    readKeyOrSkip(ini, "Hscaleindex",
                  [&](const std::string& t) { panel.applyTimeRange(wholeNumber(t)); });
    readKeyOrSkip(ini, "Vscaleindex",
                  [&](const std::string& t) { panel.applyChaLevel(wholeNumber(t)); });
    readKeyOrSkip(ini, "Chaoffset", [&](const std::string& t) { panel.applyChaOffset(t); });

    ini.setSection("COLORS");
    for (const auto& entry : kColours) {
        readKeyOrSkip(ini, entry.first,
                      [&](const std::string& t) { panel.setColour(entry.second, wholeNumber(t)); });
    }

    ini.setSection("BUTTONS");
    for (const auto& entry : kButtons) {
        readKeyOrSkip(ini, entry.first, [&](const std::string& t) {
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
