// A profile file changed key by key in memory, by the same rules as writing each key to the
// file with cInifile, and then put in the file's place in one step: a crash, a full disk or a
// kill in the middle of a save leaves either the old file or the new one, whole. The settings
// file and the Waveform Data File are both saved this way, in the file's own encoding.
#pragma once

#include "storage/ProfileText.h"

#include <filesystem>
#include <optional>
#include <string>

namespace zorvik {

class cInifile;

class ProfileDocument {
public:
    /// The file as it stands now (a missing file is a new, empty document); std::nullopt when
    /// something is there that cannot be read as a file (a folder, no access).
    static std::optional<ProfileDocument> read(const std::filesystem::path& path);

    /// Assigns `value` to the Key in the Section that `ini` is set to, as cInifile's Value
    /// does: NULs are removed first, the key and the section are made as needed.
    void write(const cInifile& ini, std::string value);

    /// True once a write changed the text.
    bool changed() const { return changed_; }
    /// The file's bytes as they are now.
    std::string bytes() const { return text_.encode(); }

    /// Replaces the file with the document in one step; false, leaving the file as it was,
    /// when it cannot be written (a read-only file or folder, a full disk).
    bool commit(const std::filesystem::path& path) const;

private:
    ProfileText text_;
    bool changed_ = false;
};

} // namespace zorvik
