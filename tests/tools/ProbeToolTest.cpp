// Tests of the zorvik-probe program itself: first line, exit status, signals, record/replay.
#include "PtyReader.h"
#include "probe/ProbeStream.h"

#include <csignal>
#include <cstdio>
#include <filesystem>
#include <gtest/gtest.h>
#include <spawn.h>
#include <string>
#include <sys/wait.h>

extern char** environ;

using namespace zorvik;
using namespace zorvik::test;
using namespace std::chrono_literals;

namespace {

// zorvik-probe running in a child process, its stdout and stderr on pipes.
class ProbeProcess {
public:
    explicit ProbeProcess(std::vector<std::string> args) {
        std::string program = ZORVIK_PROBE_EXE;
        std::vector<char*> argv{program.data()};
        for (auto& arg : args)
            argv.push_back(arg.data());
        argv.push_back(nullptr);
        int out[2], err[2];
        if (::pipe(out) != 0 || ::pipe(err) != 0)
            return;
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, out[1], 1);
        posix_spawn_file_actions_adddup2(&actions, err[1], 2);
        posix_spawn_file_actions_addclose(&actions, out[0]);
        posix_spawn_file_actions_addclose(&actions, err[0]);
        if (posix_spawn(&m_pid, argv[0], &actions, nullptr, argv.data(), environ) != 0)
            m_pid = -1;
        posix_spawn_file_actions_destroy(&actions);
        ::close(out[1]);
        ::close(err[1]);
        m_out = out[0];
        m_err = err[0];
    }
    ~ProbeProcess() {
        if (m_pid > 0 && !m_exited) {
            ::kill(m_pid, SIGKILL);
            ::waitpid(m_pid, nullptr, 0);
        }
        ::close(m_out);
        ::close(m_err);
    }

    /// The first line on stdout, without its newline.
    std::string firstLine(std::chrono::milliseconds timeout) {
        std::string line;
        const auto deadline = Clock::now() + timeout;
        char c = 0;
        while (Clock::now() < deadline) {
            pollfd p{m_out, POLLIN, 0};
            if (::poll(&p, 1, 50) > 0) {
                if (::read(m_out, &c, 1) != 1 || c == '\n')
                    break;
                line += c;
            }
        }
        return line;
    }

    /// Everything on stderr up to the end of the process.
    std::string errors() {
        std::string text;
        char buffer[512];
        ssize_t n = 0;
        while ((n = ::read(m_err, buffer, sizeof buffer)) > 0)
            text.append(buffer, static_cast<std::size_t>(n));
        return text;
    }

    /// Exit status once the process has ended, or -1 when it is still running at the deadline.
    int exitStatus(std::chrono::milliseconds timeout) {
        const auto deadline = Clock::now() + timeout;
        int status = 0;
        while (::waitpid(m_pid, &status, WNOHANG) == 0) {
            if (Clock::now() >= deadline)
                return -1;
            std::this_thread::sleep_for(5ms);
        }
        m_exited = true;
        return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }

    void signal(int number) { ::kill(m_pid, number); }

private:
    pid_t m_pid = -1;
    int m_out = -1;
    int m_err = -1;
    bool m_exited = false;
};

} // namespace

TEST(ProbeTool, PrintsTheDeviceFirstAndEndsAFiniteRunWithStatus0) {
    ProbeProcess probe({"--frames", "3"});
    const std::string device = probe.firstLine(3s);
    ASSERT_EQ(device.rfind("/dev/", 0), 0u) << device;
    const DeviceNode node = deviceNode(device);
    PtyReader reader(device);
    ASSERT_TRUE(reader.isOpen());
    EXPECT_EQ(reader.read(3 * 139, 3s), makeProbeBytes(ProbeSettings{}, 3));
    EXPECT_EQ(probe.exitStatus(3s), 0);
    EXPECT_FALSE(stillThere(node));
}

TEST(ProbeTool, SignalAndSwitchOptionsReachTheFrames) {
    ProbeProcess probe({"--frames", "1", "--shape", "dc", "--offset", "1", "--trigger", "fr",
                        "--range", "0x00", "--coupling", "dc", "--timebase", "9"});
    PtyReader reader(probe.firstLine(3s));
    const auto bytes = reader.read(139, 3s);
    ASSERT_EQ(bytes.size(), 139u);
    EXPECT_EQ(bytes[1], 0x20);
    EXPECT_EQ(bytes[2], 9);
    EXPECT_EQ(bytes[3], 0x00);
    EXPECT_EQ(bytes[5], 62); // 1 V is beyond the 1 V range's top count
    EXPECT_EQ(probe.exitStatus(3s), 0);
}

TEST(ProbeTool, BadOptionGivesOneLineErrorAndStatus2) {
    ProbeProcess probe({"--freq", "abc"});
    EXPECT_EQ(probe.exitStatus(3s), 2);
    EXPECT_EQ(probe.errors(), "zorvik-probe: --freq: 'abc' is not a frequency above 0\n");
}

TEST(ProbeTool, HelpAndVersionExitWithStatus0) {
    ProbeProcess help({"--help"});
    EXPECT_EQ(help.firstLine(3s), "Usage: zorvik-probe [options]");
    EXPECT_EQ(help.exitStatus(3s), 0);
    ProbeProcess version({"--version"});
    EXPECT_EQ(version.firstLine(3s).rfind("zorvik-probe ", 0), 0u);
    EXPECT_EQ(version.exitStatus(3s), 0);
}

TEST(ProbeTool, SigtermEndsAnEndlessRunCleanly) {
    for (const int number : {SIGTERM, SIGINT}) {
        ProbeProcess probe({});
        const std::string device = probe.firstLine(3s);
        ASSERT_TRUE(pathExists(device)) << device;
        const DeviceNode node = deviceNode(device);
        probe.signal(number);
        EXPECT_EQ(probe.exitStatus(2s), 0) << number;
        EXPECT_FALSE(stillThere(node));
    }
}

TEST(ProbeTool, MissingReplayFileIsAOneLineErrorWithStatus1) {
    ProbeProcess probe({"--replay", "/nonexistent/capture.bin"});
    EXPECT_EQ(probe.exitStatus(3s), 1);
    EXPECT_EQ(probe.errors(),
              "zorvik-probe: cannot read /nonexistent/capture.bin: No such file or directory\n");
}

TEST(ProbeTool, RecordedBytesReplayUnchanged) {
    const auto dir = std::filesystem::temp_directory_path();
    const std::string file = (dir / ("zorvik-probe-record-" + std::to_string(::getpid()))).string();
    std::vector<std::uint8_t> sent;
    {
        ProbeProcess probe(
            {"--frames", "4", "--unpaced", "--waiting", "1", "--garbage", "3", "--record", file});
        PtyReader reader(probe.firstLine(3s));
        sent = reader.read(4 * 139 + 3 * 2 + 3 * 3, 3s);
        ASSERT_EQ(probe.exitStatus(3s), 0);
    }
    ASSERT_EQ(std::filesystem::file_size(file), sent.size());
    ProbeProcess replay({"--replay", file, "--unpaced"});
    PtyReader reader(replay.firstLine(3s));
    EXPECT_EQ(reader.read(sent.size() + 1, 3s), sent);
    EXPECT_EQ(replay.exitStatus(3s), 0);
    std::filesystem::remove(file);
}
