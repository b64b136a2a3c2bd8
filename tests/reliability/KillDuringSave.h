// Kills a process in the middle of saving a file: a child process saves over and over, the
// test kills it with SIGKILL after a random delay, and checks the file after every kill.
// Scratch copies that killed saves leave behind are kept inside the test's own folder.
#pragma once

#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <optional>
#include <random>
#include <string>
#include <sys/mman.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace zorvik::test {

/// Points the system's temporary folder (TMPDIR) at `folder` for the life of the object, so
/// that scratch copies of killed saves stay inside the test's own folder.
class TemporaryFolder {
public:
    explicit TemporaryFolder(const std::filesystem::path& folder) {
        if (const char* old = std::getenv("TMPDIR"))
            m_old = old;
        std::filesystem::create_directory(folder);
        ::setenv("TMPDIR", folder.c_str(), 1);
    }
    ~TemporaryFolder() {
        if (m_old)
            ::setenv("TMPDIR", m_old->c_str(), 1);
        else
            ::unsetenv("TMPDIR");
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

private:
    std::optional<std::string> m_old;
};

/// How the kills fell.
struct KillReport {
    int kills = 0;
    int midSave = 0;          ///< kills that hit a save after it began and before it ended
    std::uint64_t saves = 0;  ///< saves the children completed in all
    std::uint64_t checks = 0; ///< checks of the file that passed
};

/// Runs `save(n)` with n = 0, 1, 2, ... in a forked child until it is killed; kills it after a
/// delay drawn evenly from [0, maxDelay]; then calls `check()`, which returns false to stop
/// early (the caller has recorded a failure). Repeats `kills` times.
inline KillReport killDuringSaves(int kills, std::chrono::microseconds maxDelay,
                                  const std::function<void(std::uint64_t)>& save,
                                  const std::function<bool()>& check, std::uint32_t seed = 1) {
    struct Progress {
        volatile std::uint64_t started;
        volatile std::uint64_t finished;
    };
    void* shared = ::mmap(nullptr, sizeof(Progress), PROT_READ | PROT_WRITE,
                          MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (shared == MAP_FAILED)
        std::abort();
    auto* progress = static_cast<Progress*>(shared);
    std::mt19937 random(seed);
    std::uniform_int_distribution<long> delay(0, maxDelay.count());
    KillReport report;
    std::uint64_t next = 0;
    for (int k = 0; k < kills; ++k) {
        progress->started = next;
        progress->finished = next;
        const pid_t child = ::fork();
        if (child == 0) {
            for (std::uint64_t n = next;; ++n) {
                progress->started = n + 1;
                save(n);
                progress->finished = n + 1;
            }
        }
        if (child < 0)
            std::abort();
        // The delay counts from the child's first save, not from the fork: on a busy machine
        // a new process may wait a while for a processor before it runs at all.
        const auto forked = std::chrono::steady_clock::now();
        while (progress->started == next &&
               std::chrono::steady_clock::now() - forked < std::chrono::seconds(5))
            std::this_thread::yield();
        std::this_thread::sleep_for(std::chrono::microseconds(delay(random)));
        ::kill(child, SIGKILL);
        int status = 0;
        ::waitpid(child, &status, 0);
        ++report.kills;
        if (progress->started != progress->finished)
            ++report.midSave;
        report.saves += progress->finished - next;
        // The next child goes on with the version after the last one that was begun.
        next = progress->started;
        if (!check())
            break;
        ++report.checks;
    }
    ::munmap(shared, sizeof(Progress));
    return report;
}

} // namespace zorvik::test
