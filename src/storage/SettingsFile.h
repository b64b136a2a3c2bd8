// The application settings file: where it lives, the writer run at shutdown and the reader
// run at start-up (front-panel scales and offset, seven colours, three buttons), plus the
// optional PORTS section that maps COM1..COM8 to device paths.
#pragma once

#include "storage/SettingsPanel.h"
#include "storage/cInifile.h"

#include <filesystem>
#include <map>
#include <string>

namespace zorvik {

class SettingsFile {
public:
    static constexpr const char* kFileName = "ZORVIK.INI";

    /// The program folder's ZORVIK.INI when that folder can be written; otherwise
    /// ZORVIK.INI in the per-user configuration folder, which is created if needed (the
    /// way Windows redirects writes to a protected program folder).
    static std::filesystem::path location(const std::filesystem::path& programFolder,
                                          const std::filesystem::path& userConfigFolder);

    /// Writes the thirteen keys in the order SETTINGS (Hscaleindex, Vscaleindex, Chaoffset),
    /// COLORS (Cursor1..Cursor4, Display, Primarytrace, Referencetrace), BUTTONS (Hcursors,
    /// Vcursors, Invert). Sets Path, Section and Key of `ini`. An error in one key (a value
    /// that does not convert, a failed write) skips that key only.
    static void write(cInifile& ini, const std::string& path, const SettingsPanel& panel);

    /// Reads the same keys in the same order and applies each one that is present and not
    /// empty. An error in one key (a value that does not convert, a control that refuses it)
    /// skips that key only; what was applied stays applied.
    static void read(cInifile& ini, const std::string& path, SettingsPanel& panel);

    /// Keys COM1..COM8 of the section "PORTS": port number -> device path. Keys that are
    /// missing or empty are left out. The program never writes this section.
    static std::map<int, std::string> readPorts(const std::string& path);
};

} // namespace zorvik
