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

    /// A file written piece by piece and put in place in one step: until commit() the file
    /// stays as it was (or absent), and a writer abandoned (destroyed without commit, the
    /// program killed) leaves no trace but a scratch file, which the next save removes.
    class Writer {
    public:
        /// Starts a new version of `path`; ok() is false when it may not be written (the
        /// same rules as replace()).
        explicit Writer(const std::filesystem::path& path);
        ~Writer();
        Writer(const Writer&) = delete;
        Writer& operator=(const Writer&) = delete;

        bool ok() const { return ok_; }
        /// Appends bytes; false (and the writer no longer ok) when the system refuses them.
        bool write(std::string_view bytes);
        /// Makes the file safe on the disk and puts it in place; false when that fails (the
        /// old file then stays).
        bool commit();
        /// The system's text for the last failure.
        const std::string& error() const { return error_; }

    private:
        void abandon();

        std::filesystem::path target_;
        std::filesystem::path temp_;
        std::filesystem::perms perms_ = std::filesystem::perms::unknown;
        bool exists_ = false;
        bool ok_ = false;
        bool done_ = false;
        int fd_ = -1;
        std::string error_;
    };
};

} // namespace zorvik
