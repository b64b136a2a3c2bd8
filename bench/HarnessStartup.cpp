// Start-up time to the first painted panel, and the peak memory of a program that has just
// started. Each run is a fresh process (this program again, in its start-up mode), timed from
// just before the process is made, so loading the program and its libraries counts too.
#include "Harness.h"
#include "HarnessApplication.h"
#include "HarnessProgram.h"
#include "HarnessReport.h"
#include "widgets/ScopeGraph.h"

#include <QTemporaryDir>
#include <QTimer>

#include <cstdio>
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace zorvik::harness {

namespace {

struct Run {
    double mainMs = 0;    ///< main() entered
    double loadedMs = 0;  ///< the start-up sequence done, window shown
    double paintedMs = 0; ///< the panel painted and on screen
    double closeMs = 0;   ///< closing the window (settings written) took this long
    double peakMiB = 0;
};

bool spawnRun(const QString& self, const QString& folder, Run& run) {
    int out[2];
    if (::pipe2(out, O_CLOEXEC) != 0)
        return false;
    std::vector<std::string> args{self.toStdString(), "startup-child", "", folder.toStdString()};
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, out[1], STDOUT_FILENO);
    const qint64 t0 = nowNs();
    args[2] = std::to_string(t0);
    std::vector<char*> argv;
    for (std::string& a : args)
        argv.push_back(a.data());
    argv.push_back(nullptr);
    pid_t pid = -1;
    const int rc = ::posix_spawn(&pid, argv[0], &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    ::close(out[1]);
    if (rc != 0) {
        ::close(out[0]);
        return false;
    }
    std::string text;
    char buffer[512];
    ssize_t n = 0;
    while ((n = ::read(out[0], buffer, sizeof buffer)) > 0)
        text.append(buffer, static_cast<std::size_t>(n));
    ::close(out[0]);
    int status = 0;
    rusage usage{};
    ::wait4(pid, &status, 0, &usage);
    run.peakMiB = static_cast<double>(usage.ru_maxrss) / 1024.0;
    return WIFEXITED(status) && WEXITSTATUS(status) == 0 &&
           std::sscanf(text.c_str(), "STARTUP %lf %lf %lf %lf", &run.mainMs, &run.loadedMs,
                       &run.paintedMs, &run.closeMs) == 4;
}

} // namespace

int measureStartup(const Options& options) {
    QTemporaryDir folder;
    std::vector<double> painted, loaded, mains, closes, peaks;
    // The first run has no settings file yet and a colder disk cache; it writes the settings
    // file when it closes, as a first session does. It is reported on its own.
    for (int i = 0; i <= options.runs; ++i) {
        Run run;
        if (!spawnRun(options.self, folder.path(), run)) {
            detail(QStringLiteral("start-up run %1 failed").arg(i));
            return 1;
        }
        detail(QStringLiteral("run %1: main() at %2 ms, window shown at %3 ms, panel painted at "
                              "%4 ms, close %5 ms, peak %6 MiB")
                   .arg(i)
                   .arg(run.mainMs, 0, 'f', 1)
                   .arg(run.loadedMs, 0, 'f', 1)
                   .arg(run.paintedMs, 0, 'f', 1)
                   .arg(run.closeMs, 0, 'f', 1)
                   .arg(run.peakMiB, 0, 'f', 1));
        if (i == 0) {
            result("startup_first_ms", run.paintedMs, "ms",
                   "first start-up (no settings file yet) to the first painted panel");
            continue;
        }
        painted.push_back(run.paintedMs);
        loaded.push_back(run.loadedMs);
        mains.push_back(run.mainMs);
        closes.push_back(run.closeMs);
        peaks.push_back(run.peakMiB);
    }
    const Distribution p = distributionOf(painted);
    result("startup_ms_median", p.median, "ms",
           QStringLiteral("start-up to the first painted panel, median of %1 runs").arg(p.count));
    result("startup_ms_max", p.max, "ms", "start-up to the first painted panel, slowest run");
    result("startup_main_ms_median", distributionOf(mains).median, "ms",
           "of which: loading the program until main() runs");
    result("startup_shown_ms_median", distributionOf(loaded).median, "ms",
           "of which: until the start-up sequence is done and the window shown");
    result("shutdown_ms_median", distributionOf(closes).median, "ms",
           "closing the window: port closed, settings file written");
    result("startup_peak_rss_mib_max", distributionOf(peaks).max, "MiB",
           "peak resident memory of a program that has just started");
    return 0;
}

int startupChild(qint64 startedNs, const QString& folder) {
    const qint64 mainAt = nowNs();
    auto ms = [startedNs](qint64 t) { return static_cast<double>(t - startedNs) / 1e6; };
    int argc = 1;
    char name[] = "zorvik";
    char* argv[] = {name, nullptr};
    HarnessApplication app(argc, argv);
    ProgramUnderTest program(folder, {});
    qint64 paintedAt = 0;
    qint64 closeNs = 0;
    QTimer closer;
    closer.setObjectName(QStringLiteral("harness-close"));
    closer.setSingleShot(true);
    QObject::connect(&closer, &QTimer::timeout, &app, [&] {
        const qint64 t = nowNs();
        program.window().close();
        closeNs = nowNs() - t;
        QCoreApplication::quit();
    });
    app.setPaintWatch(program.window().panel().CWGraph1, [&](qint64 doneNs) {
        if (paintedAt == 0) {
            paintedAt = doneNs;
            closer.start(0);
        }
    });
    program.start();
    const qint64 shownAt = nowNs();
    QCoreApplication::exec();
    std::printf("STARTUP %.3f %.3f %.3f %.3f\n", ms(mainAt), ms(shownAt), ms(paintedAt),
                static_cast<double>(closeNs) / 1e6);
    return paintedAt > 0 ? 0 : 1;
}

} // namespace zorvik::harness
