// zorvik-probe: the virtual probe as a program of its own. Serves the probe on a
// pseudo-terminal, prints the device path on the first line and runs until interrupted.
#include "probe/ProbeOptions.h"
#include "probe/PtyProbe.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

namespace {

volatile std::sig_atomic_t g_interrupted = 0;

void onSignal(int) {
    g_interrupted = 1;
}

int fail(const std::string& message) {
    std::fprintf(stderr, "zorvik-probe: %s\n", message.c_str());
    return 1;
}

} // namespace

int main(int argc, char** argv) {
    using namespace zorvik;
    const auto parsed = parseProbeCommand(std::vector<std::string>(argv + 1, argv + argc));
    if (!parsed.command) {
        std::fprintf(stderr, "zorvik-probe: %s\n", parsed.error.c_str());
        return 2;
    }
    const ProbeCommand& command = *parsed.command;
    if (command.help) {
        std::fputs(probeHelpText().c_str(), stdout);
        return 0;
    }
    if (command.version) {
        std::printf("zorvik-probe %s\n", ZORVIK_VERSION);
        return 0;
    }

    std::optional<ProbeStream> stream;
    if (!command.replayPath.empty()) {
        std::ifstream file(command.replayPath, std::ios::binary);
        if (!file)
            return fail("cannot read " + command.replayPath + ": " + std::strerror(errno));
        std::vector<std::uint8_t> bytes{std::istreambuf_iterator<char>(file), {}};
        if (bytes.empty())
            return fail(command.replayPath + " is empty: nothing to replay");
        stream = ProbeStream::replay(std::move(bytes), command.loop, command.stream);
    } else {
        stream.emplace(command.settings, command.stream);
    }

    std::FILE* record = nullptr;
    if (!command.recordPath.empty()) {
        record = std::fopen(command.recordPath.c_str(), "wb");
        if (!record)
            return fail("cannot write " + command.recordPath + ": " + std::strerror(errno));
    }

    PtyProbe::Options options;
    options.paced = command.paced;
    options.linkPath = command.linkPath;
    if (record) {
        options.onSent = [record](const std::uint8_t* bytes, std::size_t count) {
            std::fwrite(bytes, 1, count, record);
        };
    }

    struct sigaction action {};
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);

    PtyProbe probe(std::move(*stream), options);
    try {
        probe.start();
    } catch (const std::system_error& error) {
        if (record)
            std::fclose(record);
        return fail(std::string("cannot serve the probe: ") + error.what());
    }
    std::printf("%s\n", probe.devicePath().c_str());
    std::fflush(stdout);

    while (!g_interrupted && !probe.waitUntilDone(std::chrono::milliseconds(50))) {
    }
    probe.stop();
    if (record)
        std::fclose(record);

    const auto counts = probe.streamCounters();
    std::fprintf(stderr,
                 "zorvik-probe: %llu frames sent (%llu intact), %llu waiting markers, %llu bytes "
                 "written, %llu dropped on request, %llu lost to a full buffer%s\n",
                 static_cast<unsigned long long>(counts.framesSent),
                 static_cast<unsigned long long>(counts.framesIntact),
                 static_cast<unsigned long long>(counts.waitingMarkers),
                 static_cast<unsigned long long>(probe.bytesWritten()),
                 static_cast<unsigned long long>(counts.bytesDropped),
                 static_cast<unsigned long long>(probe.bytesDropped()),
                 probe.isDisconnected() ? ", then disconnected" : "");
    return 0;
}
