// zorvik_perf_harness: runs the zorvik program's own window, serial port and virtual probe and
// prints the figures a user feels (see docs/PERFORMANCE.md; scripts/perf-harness.sh runs it).
//
//   zorvik_perf_harness startup|session|latency|unpaced [options]
//
// Options: --runs N (start-ups, default 10), --idle-seconds N (10), --line-seconds N (30),
// --latency-seconds N (60), --unpaced-frames N (50000), --file-rounds N (20),
// --probe PATH (zorvik-probe; default: beside this program), --profile-events (the session
// prints which events take the processor time while streaming; this costs some itself),
// --analysis (the Measurements and Spectrum windows open and a recording running throughout).
// The display is offscreen unless QT_QPA_PLATFORM says otherwise.
#include "Harness.h"
#include "HarnessApplication.h"
#include "HarnessReport.h"

#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <string>

using namespace zorvik::harness;

namespace {

int usage() {
    std::fprintf(stderr, "usage: zorvik_perf_harness startup|session|latency|unpaced [--runs N] "
                         "[--idle-seconds N] [--line-seconds N] [--latency-seconds N] "
                         "[--unpaced-frames N] [--file-rounds N] [--probe PATH] [--profile-events] "
                         "[--analysis]\n");
    return 64;
}

} // namespace

int main(int argc, char** argv) {
    if (argc >= 4 && std::strcmp(argv[1], "startup-child") == 0)
        return startupChild(std::atoll(argv[2]), QString::fromLocal8Bit(argv[3]));
    if (argc < 2)
        return usage();
    const std::string mode = argv[1];
    Options options;
    const QString self = QFileInfo(QString::fromLocal8Bit(argv[0])).absoluteFilePath();
    options.self = self;
    options.probeProgram = QFileInfo(self).dir().filePath(QStringLiteral("zorvik-probe"));
    for (int i = 2; i < argc; ++i) {
        const std::string name = argv[i];
        if (name == "--analysis") {
            options.analysis = true;
            continue;
        }
        if (name == "--profile-events") {
            options.profileEvents = true;
            continue;
        }
        if (i + 1 >= argc)
            return usage();
        const char* value = argv[++i];
        if (name == "--probe") {
            options.probeProgram = QString::fromLocal8Bit(value);
            continue;
        }
        const int n = std::atoi(value);
        if (n <= 0)
            return usage();
        if (name == "--runs")
            options.runs = n;
        else if (name == "--idle-seconds")
            options.idleSeconds = n;
        else if (name == "--line-seconds")
            options.lineSeconds = n;
        else if (name == "--latency-seconds")
            options.latencySeconds = n;
        else if (name == "--unpaced-frames")
            options.unpacedFrames = n;
        else if (name == "--file-rounds")
            options.fileRounds = n;
        else
            return usage();
    }
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");

    HarnessApplication app(argc, argv);
    detail(QStringLiteral("mode %1, display platform %2, load average %3")
               .arg(QString::fromStdString(mode), QGuiApplication::platformName(), loadAverage()));
    try {
        if (mode == "startup")
            return measureStartup(options);
        if (mode == "session")
            return measureSession(options);
        if (mode == "latency")
            return measureLatency(options);
        if (mode == "unpaced")
            return measureUnpaced(options);
    } catch (const std::exception& e) {
        std::fprintf(stderr, "zorvik_perf_harness: %s\n", e.what());
        return 1;
    }
    return usage();
}
