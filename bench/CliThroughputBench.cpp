// How fast zorvik-cli decode turns a recording into text: a recording of 50 000 frames (about
// an hour of the probe at the line rate) decoded to CSV and to JSON Lines, each timed against
// `wc -l` reading the same output, the yardstick measured in the same run. Prints frames per
// second and that ratio (the goal: within 10 times). Not a test: it never fails on a slow
// machine.
//
// Usage: zorvik_cli_bench [--frames N] [--runs R] [--cli PATH]
#include "probe/FrameGenerator.h"
#include "probe/ProbeStream.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

namespace {

/// Runs `args` with standard input from `in` (may be empty) and output to `out`; returns the
/// wall time in seconds, or a negative number when the program failed.
double timed(const std::vector<std::string>& args, const std::string& out) {
    std::vector<char*> argv;
    for (const std::string& a : args)
        argv.push_back(const_cast<char*>(a.c_str()));
    argv.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    const auto start = Clock::now();
    pid_t pid = 0;
    if (posix_spawnp(&pid, argv[0], &actions, nullptr, argv.data(), environ) != 0)
        return -1;
    int status = 0;
    ::waitpid(pid, &status, 0);
    const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
    posix_spawn_file_actions_destroy(&actions);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? seconds : -1;
}

double median(std::vector<double> v) {
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

} // namespace

int main(int argc, char** argv) {
    long frames = 50000;
    int runs = 5;
    std::string cli = (fs::path(argv[0]).parent_path() / "zorvik-cli").string();
    for (int i = 1; i + 1 < argc; i += 2) {
        const std::string name = argv[i];
        if (name == "--frames")
            frames = std::atol(argv[i + 1]);
        else if (name == "--runs")
            runs = std::atoi(argv[i + 1]);
        else if (name == "--cli")
            cli = argv[i + 1];
    }
    const fs::path dir =
        fs::temp_directory_path() / ("zorvik-cli-bench-" + std::to_string(::getpid()));
    fs::create_directories(dir);
    const std::string recording = (dir / "recording.bin").string();
    {
        // The virtual probe's sine, frame after frame, as a capture --raw recording holds it.
        const auto bytes =
            zorvik::makeProbeBytes(zorvik::ProbeSettings{}, static_cast<std::uint64_t>(frames), 0);
        std::ofstream out(recording, std::ios::binary);
        out.write(reinterpret_cast<const char*>(bytes.data()),
                  static_cast<std::streamsize>(bytes.size()));
    }
    std::printf("zorvik-cli decode of %ld frames (%ld bytes), median of %d runs\n", frames,
                frames * 139, runs);
    std::printf("%-11s %10s %10s %14s %10s %8s\n", "format", "decode s", "frames/s", "output MB",
                "wc -l s", "ratio");
    bool ok = true;
    for (const char* format : {"csv", "jsonl"}) {
        const std::string out = (dir / (std::string("out.") + format)).string();
        std::vector<double> decode;
        std::vector<double> count;
        for (int r = 0; r < runs; ++r) {
            decode.push_back(timed({cli, "decode", recording, "--format", format}, out));
            count.push_back(timed({"wc", "-l", out}, (dir / "wc.txt").string()));
        }
        const double d = median(decode);
        const double w = median(count);
        ok = ok && d > 0 && w > 0;
        std::printf("%-11s %10.3f %10.0f %14.1f %10.4f %8.1f\n", format, d, frames / d,
                    static_cast<double>(fs::file_size(out)) / 1e6, w, d / w);
    }
    fs::remove_all(dir);
    return ok ? 0 : 2;
}
