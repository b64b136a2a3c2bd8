// The two file operations behind the profile engine: reading a whole file, and replacing a
// file atomically so that a crash or power loss leaves either the old or the new file.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace zorvik {

class AtomicFile {
public:
    enum class Status {
        Read,     ///< the file's bytes are in `bytes`
        Missing,  ///< nothing is there (or a folder on the way is missing or not a folder)
        NotAFile, ///< something is there but cannot be read as a file (a folder, no access)
    };
    struct Contents {
        Status status = Status::Missing;
        std::string bytes;
    };

    /// Reads the whole file as bytes, unchanged.
    static Contents read(const std::filesystem::path& path);

    /// Writes `bytes` to a new file beside `path` and renames it over `path`. A symbolic
    /// link is followed, so the link stays and the file it points to is replaced. An existing
    /// file keeps its permissions. Returns false, leaving everything as it was, when the path
    /// is empty, its folder is missing or read-only, or the file is read-only. Read-only means
    /// "no write permission bit set" as well as "the system refuses the write", so a file or
    /// folder the user marked read-only is left alone even for the administrator.
    static bool replace(const std::filesystem::path& path, std::string_view bytes);
    /// True when replace() would be allowed to write `path` (nothing is written).
    static bool canReplace(const std::filesystem::path& path);

    /// True when `folder` is a folder with a write permission bit in which a new file can
    /// actually be created (tried with a short-lived probe file).
    static bool isWritableFolder(const std::filesystem::path& folder);
};

} // namespace zorvik
