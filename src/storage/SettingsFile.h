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

/// Where the settings are read from and written to.
struct SettingsLocation {
    /// The file the settings are written to.
    std::filesystem::path file;
    /// When `file` is the per-user copy: the ZORVIK.INI beside the program, which is read
    /// until the copy exists and which the copy starts from. Empty otherwise.
    std::filesystem::path original;

    /// The file read at start-up: `file` once it exists (or when there is no original), until
    /// then the original.
    std::filesystem::path readPath() const;
};

class SettingsFile {
public:
    static constexpr const char* kFileName = "ZORVIK.INI";

    /// The program folder's ZORVIK.INI when that folder can be written. Otherwise, the way
    /// Windows redirects the writes of a protected program folder: ZORVIK.INI in the per-user
    /// configuration folder is written, and until it exists the file beside the program is
    /// read; the first save makes the per-user copy from that file. Nothing is created here.
    static SettingsLocation location(const std::filesystem::path& programFolder,
                                     const std::filesystem::path& userConfigFolder);

    /// Writes the thirteen keys in the order SETTINGS (Hscaleindex, Vscaleindex, Chaoffset),
    /// COLORS (Cursor1..Cursor4, Display, Primarytrace, Referencetrace), BUTTONS (Hcursors,
    /// Vcursors, Invert). Sets Path, Section and Key of `ini`. An error in one key (a value
    /// that does not convert, a failed write) skips that key only.
    static void write(cInifile& ini, const std::string& path, const SettingsPanel& panel);
    /// The same into `where.file`. When that file does not exist yet and an original does, the
    /// new file starts as a copy of the original (its PORTS section, comments and keys the
    /// program does not know carry over); its folder is made as needed.
    static void write(cInifile& ini, const SettingsLocation& where, const SettingsPanel& panel);

    /// Reads the same keys in the same order and applies each one that is present and not
    /// empty. An error in one key (a value that does not convert, a control that refuses it)
    /// skips that key only; what was applied stays applied.
    static void read(cInifile& ini, const std::string& path, SettingsPanel& panel);

    /// Keys COM1..COM8 of the section "PORTS": port number -> device path. Keys that are
    /// missing or empty are left out. The program never writes this section.
    static std::map<int, std::string> readPorts(const std::string& path);
};

} // namespace zorvik
