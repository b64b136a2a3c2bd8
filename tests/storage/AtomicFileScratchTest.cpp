// Scratch files a save that died left beside its file: the next save removes those of its own
// file whose writer is gone, never one that a running program is writing.
#include "IniTestSupport.h"
#include "storage/AtomicFile.h"

#include <gtest/gtest.h>

#include <chrono>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace zorvik;
using namespace zorvik::testing;
namespace fs = std::filesystem;

namespace {

/// The number of a process that has ended (a child that was waited for).
long endedProcess() {
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(0);
    int status = 0;
    ::waitpid(child, &status, 0);
    return child;
}

void makeOld(const fs::path& file) {
    fs::last_write_time(file, fs::file_time_type::clock::now() - std::chrono::minutes(5));
}

TEST(AtomicFileScratch, ASaveRemovesTheStaleScratchFilesOfItsOwnFileOnly) {
    TempDir dir;
    const fs::path target = dir.path() / "trace.wdf";
    const long gone = endedProcess();
    const fs::path deadWriter = dir.path() / (".trace.wdf.tmp-" + std::to_string(gone) + "-7-1");
    const fs::path olderBuild = dir.path() / ".trace.wdf.tmp-12345-3"; // no process number
    const fs::path youngOlderBuild = dir.path() / ".trace.wdf.tmp-12345-4";
    const fs::path otherFile = dir.path() / (".other.wdf.tmp-" + std::to_string(gone) + "-7-1");
    const fs::path living = dir.path() / (".trace.wdf.tmp-" + std::to_string(::getppid()) + "-7-2");
    for (const fs::path& p : {deadWriter, olderBuild, youngOlderBuild, otherFile, living})
        writeBytes(p, "half a file");
    makeOld(olderBuild);

    ASSERT_TRUE(AtomicFile::replace(target, "new"));
    EXPECT_EQ(readBytes(target), "new");
    EXPECT_FALSE(fs::exists(deadWriter));
    EXPECT_FALSE(fs::exists(olderBuild));
    // Young, of a running process, or of another file: left alone.
    EXPECT_TRUE(fs::exists(youngOlderBuild));
    EXPECT_TRUE(fs::exists(living));
    EXPECT_TRUE(fs::exists(otherFile));
    // The save itself leaves nothing behind.
    int scratch = 0;
    for (const auto& entry : fs::directory_iterator(dir.path()))
        scratch += entry.path().filename().string().rfind(".trace.wdf.tmp-", 0) == 0 ? 1 : 0;
    EXPECT_EQ(scratch, 2);
}

// A program writing its scratch file holds a lock on it: even when the file looks stale by
// its name and age, it is not touched while the lock is held.
TEST(AtomicFileScratch, AScratchFileAProgramHoldsLockedIsNeverRemoved) {
    TempDir dir;
    const fs::path target = dir.path() / "ZORVIK.INI";
    const fs::path busy =
        dir.path() / (".ZORVIK.INI.tmp-" + std::to_string(endedProcess()) + "-1-1");
    writeBytes(busy, "being written");
    makeOld(busy);
    const int fd = ::open(busy.c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_GE(fd, 0);
    ASSERT_EQ(::flock(fd, LOCK_EX), 0);
    ASSERT_TRUE(AtomicFile::replace(target, "[A]\r\nk=1\r\n"));
    EXPECT_TRUE(fs::exists(busy));
    ::close(fd);
    ASSERT_TRUE(AtomicFile::replace(target, "[A]\r\nk=2\r\n"));
    EXPECT_FALSE(fs::exists(busy));
}

} // namespace
