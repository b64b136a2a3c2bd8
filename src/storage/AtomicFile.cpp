// Whole-file reading and atomic replacement (temporary file in the same folder + rename).
#include "storage/AtomicFile.h"

#include <atomic>
#include <fstream>
#include <optional>
#include <random>

#if defined(__unix__) || defined(__APPLE__)
#include <fcntl.h>
#include <unistd.h>
#define ZORVIK_HAVE_FSYNC 1
#endif

namespace fs = std::filesystem;

namespace zorvik {

namespace {

constexpr fs::perms kAnyWrite =
    fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;

bool hasWriteBit(const fs::file_status& status) {
    return (status.permissions() & kAnyWrite) != fs::perms::none;
}

// Pushes the data of a file (or the entry list of a folder) to the disk, so that the rename
// that follows can never be seen before the new contents. Without POSIX this is left to the
// system.
void flushToDisk([[maybe_unused]] const fs::path& path, [[maybe_unused]] bool folder) {
#ifdef ZORVIK_HAVE_FSYNC
    const int fd = ::open(path.c_str(), folder ? (O_RDONLY | O_DIRECTORY) : O_RDONLY);
    if (fd >= 0) {
        ::fsync(fd);
        ::close(fd);
    }
#endif
}

fs::path uniqueSibling(const fs::path& folder, const fs::path& name) {
    static std::atomic<unsigned> counter{0};
    static const unsigned seed = std::random_device{}();
    for (;;) {
        const unsigned n = counter.fetch_add(1) + 1;
        fs::path candidate = folder / ("." + name.string() + ".tmp-" + std::to_string(seed) + "-" +
                                       std::to_string(n));
        std::error_code ec;
        if (!fs::exists(fs::symlink_status(candidate, ec)))
            return candidate;
    }
}

bool writeNewFile(const fs::path& path, std::string_view bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    if (!out)
        return false;
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    out.flush();
    const bool ok = static_cast<bool>(out);
    out.close();
    return ok && !out.fail();
}

} // namespace

AtomicFile::Contents AtomicFile::read(const fs::path& path) {
    Contents contents;
    if (path.empty())
        return contents;
    std::error_code ec;
    const fs::file_status status = fs::status(path, ec);
    if (status.type() == fs::file_type::not_found || status.type() == fs::file_type::none)
        return contents;
    if (ec || status.type() != fs::file_type::regular) {
        contents.status = Status::NotAFile;
        return contents;
    }
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        contents.status = Status::NotAFile;
        return contents;
    }
    in.seekg(0, std::ios::end);
    const std::streamoff size = in.tellg();
    in.seekg(0, std::ios::beg);
    if (size < 0) {
        contents.status = Status::NotAFile;
        return contents;
    }
    contents.bytes.resize(static_cast<std::size_t>(size));
    in.read(contents.bytes.data(), size);
    contents.bytes.resize(static_cast<std::size_t>(in.gcount()));
    contents.status = Status::Read;
    return contents;
}

namespace {

// What replace() writes to: the file itself (a symbolic link followed), its folder, whether it
// exists and its status. Nothing when the file may not be replaced.
struct Target {
    fs::path file;
    fs::path folder;
    bool exists = false;
    fs::file_status status;
};

std::optional<Target> replaceTarget(const fs::path& path) {
    if (path.empty())
        return std::nullopt;
    std::error_code ec;
    Target t;
    t.file = path;
    if (fs::is_symlink(fs::symlink_status(t.file, ec))) {
        t.file = fs::weakly_canonical(t.file, ec);
        if (ec)
            return std::nullopt;
    }
    t.folder = t.file.parent_path();
    if (t.folder.empty())
        t.folder = ".";
    const fs::file_status folderStatus = fs::status(t.folder, ec);
    if (ec || !fs::is_directory(folderStatus) || !hasWriteBit(folderStatus))
        return std::nullopt;

    t.status = fs::status(t.file, ec);
    t.exists = fs::exists(t.status);
    if (t.exists) {
        if (!fs::is_regular_file(t.status) || !hasWriteBit(t.status))
            return std::nullopt;
        // Opening for appending changes nothing but tells whether the system allows a write.
        std::ofstream probe(t.file, std::ios::binary | std::ios::app);
        if (!probe)
            return std::nullopt;
    }
    return t;
}

} // namespace

bool AtomicFile::canReplace(const fs::path& path) {
    return replaceTarget(path).has_value();
}

bool AtomicFile::replace(const fs::path& path, std::string_view bytes) {
    const std::optional<Target> t = replaceTarget(path);
    if (!t)
        return false;
    std::error_code ec;
    const fs::path& target = t->file;
    const fs::path& folder = t->folder;
    const bool exists = t->exists;
    const fs::file_status& targetStatus = t->status;

    const fs::path temp = uniqueSibling(folder, target.filename());
    if (!writeNewFile(temp, bytes)) {
        fs::remove(temp, ec);
        return false;
    }
    flushToDisk(temp, false);
    if (exists)
        fs::permissions(temp, targetStatus.permissions(), fs::perm_options::replace, ec);
    fs::rename(temp, target, ec);
    if (ec) {
        std::error_code ignored;
        fs::remove(temp, ignored);
        return false;
    }
    flushToDisk(folder, true);
    return true;
}

bool AtomicFile::isWritableFolder(const fs::path& folder) {
    std::error_code ec;
    const fs::file_status status = fs::status(folder, ec);
    if (ec || !fs::is_directory(status) || !hasWriteBit(status))
        return false;
    const fs::path probe = uniqueSibling(folder, "zorvik-probe");
    const bool created = writeNewFile(probe, {});
    fs::remove(probe, ec);
    return created;
}

} // namespace zorvik
