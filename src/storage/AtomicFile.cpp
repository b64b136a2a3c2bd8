// Whole-file reading and atomic replacement (temporary file in the same folder + rename).
#include "storage/AtomicFile.h"

#include <atomic>
#include <chrono>
#include <fstream>
#include <optional>
#include <random>

#if defined(__unix__) || defined(__APPLE__)
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
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

/// Start of the name of every scratch file made beside `name`: ".NAME.tmp-".
std::string scratchPrefix(const fs::path& name) {
    std::string prefix(1, '.');
    prefix += name.string();
    prefix += ".tmp-";
    return prefix;
}

long processId() {
#ifdef ZORVIK_HAVE_FSYNC
    return static_cast<long>(::getpid());
#else
    return 0;
#endif
}

// A new scratch file beside the target: ".NAME.tmp-PID-SEED-N". The process number tells a
// later save whether the process that made it still runs.
fs::path uniqueSibling(const fs::path& folder, const fs::path& name) {
    static std::atomic<unsigned> counter{0};
    static const unsigned seed = std::random_device{}();
    for (;;) {
        const unsigned n = counter.fetch_add(1) + 1;
        fs::path candidate = folder / (scratchPrefix(name) + std::to_string(processId()) + "-" +
                                       std::to_string(seed) + "-" + std::to_string(n));
        std::error_code ec;
        if (!fs::exists(fs::symlink_status(candidate, ec)))
            return candidate;
    }
}

/// A scratch file being written: created here and now (never an existing file) and, where the
/// system has file locks, locked until it is renamed into place or removed, so that another
/// program's clean-up can tell it from a scratch file a dead save left behind.
class ScratchFile {
public:
    explicit ScratchFile(fs::path path) : path_(std::move(path)) {}
    ~ScratchFile() { close(); }
    ScratchFile(const ScratchFile&) = delete;
    ScratchFile& operator=(const ScratchFile&) = delete;

    bool write(std::string_view bytes) {
#ifdef ZORVIK_HAVE_FSYNC
        fd_ = ::open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (fd_ < 0)
            return false;
        ::flock(fd_, LOCK_EX);
        const char* at = bytes.data();
        std::size_t left = bytes.size();
        while (left > 0) {
            const ssize_t n = ::write(fd_, at, left);
            if (n < 0 && errno == EINTR)
                continue;
            if (n <= 0)
                return false;
            at += n;
            left -= static_cast<std::size_t>(n);
        }
        // On the disk before the rename can be seen.
        return ::fsync(fd_) == 0;
#else
        std::ofstream out(path_, std::ios::binary | std::ios::trunc);
        if (!out)
            return false;
        out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        out.flush();
        const bool ok = static_cast<bool>(out);
        out.close();
        return ok && !out.fail();
#endif
    }
    void close() {
#ifdef ZORVIK_HAVE_FSYNC
        if (fd_ >= 0)
            ::close(fd_);
        fd_ = -1;
#endif
    }
    const fs::path& path() const {
        return path_;
    }

private:
    fs::path path_;
    int fd_ = -1;
};

bool writeNewFile(const fs::path& path, std::string_view bytes) {
    ScratchFile file(path);
    return file.write(bytes);
}

/// The process number in a scratch file's name (".NAME.tmp-PID-SEED-N"); 0 for a name of
/// another form (older builds wrote ".NAME.tmp-SEED-N").
long scratchOwner(std::string_view rest) {
    int dashes = 0;
    for (char c : rest) {
        if (c == '-')
            ++dashes;
        else if (c < '0' || c > '9')
            return 0;
    }
    if (dashes != 2)
        return 0;
    long pid = 0;
    for (char c : rest.substr(0, rest.find('-'))) {
        if (pid > 100000000)
            return 0;
        pid = pid * 10 + (c - '0');
    }
    return pid;
}

// Scratch files of `name` that a save which died left in `folder` (a kill or a crash between
// writing the new file and renaming it). A file is stale when nobody holds its lock and the
// process that made it no longer runs, or, whoever made it, when it is over a minute old (a
// save takes milliseconds). A scratch file another running program is writing is locked and
// young, and is never touched.
void removeStaleScratchFiles(const fs::path& folder, const fs::path& name) {
    const std::string prefix = scratchPrefix(name);
    const auto old = fs::file_time_type::clock::now() - std::chrono::minutes(1);
    std::error_code ec;
    for (fs::directory_iterator it(folder, ec), end; !ec && it != end; it.increment(ec)) {
        const std::string entry = it->path().filename().string();
        if (entry.size() <= prefix.size() || entry.compare(0, prefix.size(), prefix) != 0)
            continue;
        std::error_code statError;
        if (!it->is_regular_file(statError) || statError)
            continue;
        const long owner = scratchOwner(std::string_view(entry).substr(prefix.size()));
        const bool aged = it->last_write_time(statError) < old && !statError;
#ifdef ZORVIK_HAVE_FSYNC
        if (owner == processId())
            continue;
        const int fd = ::open(it->path().c_str(), O_RDONLY | O_CLOEXEC);
        if (fd < 0)
            continue;
        const bool inUse = ::flock(fd, LOCK_EX | LOCK_NB) != 0;
        const bool ownerGone =
            owner > 0 && ::kill(static_cast<pid_t>(owner), 0) != 0 && errno == ESRCH;
        if (!inUse && (ownerGone || aged))
            fs::remove(it->path(), statError);
        ::close(fd);
#else
        if (aged)
            fs::remove(it->path(), statError);
#endif
    }
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

    removeStaleScratchFiles(folder, target.filename());
    ScratchFile temp(uniqueSibling(folder, target.filename()));
    if (!temp.write(bytes)) {
        temp.close();
        fs::remove(temp.path(), ec);
        return false;
    }
    if (exists)
        fs::permissions(temp.path(), targetStatus.permissions(), fs::perm_options::replace, ec);
    fs::rename(temp.path(), target, ec);
    temp.close();
    if (ec) {
        std::error_code ignored;
        fs::remove(temp.path(), ignored);
        return false;
    }
    flushToDisk(folder, true);
    return true;
}

AtomicFile::Writer::Writer(const fs::path& path) {
    const std::optional<Target> t = replaceTarget(path);
    if (!t) {
        error_ = "cannot be written (a read-only file or folder, or no such folder)";
        return;
    }
    target_ = t->file;
    exists_ = t->exists;
    perms_ = t->status.permissions();
    removeStaleScratchFiles(t->folder, target_.filename());
    temp_ = uniqueSibling(t->folder, target_.filename());
#ifdef ZORVIK_HAVE_FSYNC
    fd_ = ::open(temp_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (fd_ < 0) {
        error_ = std::strerror(errno);
        return;
    }
    ::flock(fd_, LOCK_EX);
#else
    std::ofstream(temp_, std::ios::binary | std::ios::trunc);
#endif
    ok_ = true;
}

AtomicFile::Writer::~Writer() {
    if (!done_)
        abandon();
}

bool AtomicFile::Writer::write(std::string_view bytes) {
    if (!ok_)
        return false;
#ifdef ZORVIK_HAVE_FSYNC
    while (!bytes.empty()) {
        const ssize_t n = ::write(fd_, bytes.data(), bytes.size());
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0) {
            error_ = std::strerror(n < 0 ? errno : EIO);
            ok_ = false;
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(n));
    }
#else
    std::ofstream out(temp_, std::ios::binary | std::ios::app);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!out) {
        error_ = "write failed";
        ok_ = false;
        return false;
    }
#endif
    return true;
}

bool AtomicFile::Writer::commit() {
    if (!ok_ || done_)
        return false;
    std::error_code ec;
#ifdef ZORVIK_HAVE_FSYNC
    if (::fsync(fd_) != 0) {
        error_ = std::strerror(errno);
        abandon();
        return false;
    }
#endif
    if (exists_)
        fs::permissions(temp_, perms_, fs::perm_options::replace, ec);
    fs::rename(temp_, target_, ec);
    if (ec) {
        error_ = ec.message();
        abandon();
        return false;
    }
    done_ = true;
#ifdef ZORVIK_HAVE_FSYNC
    ::close(fd_);
    fd_ = -1;
#endif
    flushToDisk(target_.parent_path().empty() ? fs::path(".") : target_.parent_path(), true);
    return true;
}

void AtomicFile::Writer::abandon() {
    done_ = true;
    ok_ = false;
#ifdef ZORVIK_HAVE_FSYNC
    if (fd_ >= 0)
        ::close(fd_);
    fd_ = -1;
#endif
    std::error_code ec;
    if (!temp_.empty())
        fs::remove(temp_, ec);
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
