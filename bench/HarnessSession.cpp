// A user's session at the real line rate, against the zorvik-probe program in a process of its
// own: idle with POWER off, POWER and the port search (COM1 is a port with nothing on it, the
// probe is on COM2), streaming (processor time, frames, stalls), .wdf saves and loads, POWER
// off and idle again, shutdown, and the peak memory of it all.
#include "Harness.h"
#include "HarnessApplication.h"
#include "HarnessProgram.h"
#include "HarnessReport.h"
#include "storage/frmFile.h"
#include "support/MessageBox.h"
#include "widgets/LitButton.h"
#include "widgets/ScopeGraph.h"

#include <QTemporaryDir>

namespace zorvik::harness {

namespace {

double ms(qint64 ns) {
    return static_cast<double>(ns) / 1e6;
}

/// The program left alone for `seconds`: processor time, timers that fired, wake-ups.
void idle(const QString& key, const QString& when, int seconds) {
    HarnessApplication& app = harnessApp();
    app.resetCounts();
    const double cpu0 = processCpuSeconds();
    const qint64 t0 = nowNs();
    runFor(seconds * 1000);
    const double wall = static_cast<double>(nowNs() - t0) / 1e9;
    const double cpu = processCpuSeconds() - cpu0;
    result(key + QStringLiteral("_cpu_percent"), 100.0 * cpu / wall, "%",
           QStringLiteral("processor time, idle %1 (%2 s)").arg(when).arg(seconds));
    result(key + QStringLiteral("_timer_events"), app.timerEvents(), "events",
           QStringLiteral("timers that fired, idle %1").arg(when));
    // The harness's own end-of-measurement timer wakes the loop once.
    result(key + QStringLiteral("_wakeups"), app.wakeUps() - 1, "wake-ups",
           QStringLiteral("event-loop wake-ups, idle %1").arg(when));
    for (const QString& r : app.timerReceivers())
        detail(QStringLiteral("timer: %1").arg(r));
}

} // namespace

int measureSession(const Options& options) {
    HarnessApplication& app = harnessApp();
    QTemporaryDir folder;
    SilentPort silent;
    ProbeProcess probe(options.probeProgram, {}, folder.filePath(QStringLiteral("probe")));
    ProgramUnderTest program(folder.path(), {{1, silent.devicePath()}, {2, probe.devicePath()}});
    frmMain& w = program.window();
    int messages = 0;
    MessageBoxes::setInterceptor([&](const MessageRecord& m) {
        ++messages;
        detail(QStringLiteral("message: %1").arg(m.text));
        return QMessageBox::Ok;
    });
    int frames = 0;
    QObject::connect(&w.link(), &InstrumentLink::received, &w, [&](const ReceiveStep& s) {
        if (s.event == ReceiveEvent::Frame)
            ++frames;
    });
    program.start();
    runFor(1000);

    idle(QStringLiteral("idle_start"), QStringLiteral("after start-up, POWER off"),
         options.idleSeconds);

    // POWER: COM1 does not answer within its second, COM2 does. The processor time of each
    // event is measured here, not while streaming, where its cost would count as the program's.
    app.setCpuAccounting(true);
    app.resetCounts();
    qint64 t0 = nowNs();
    runAsEvent([&] { w.panel().CWBPwr->setValue(true); });
    runUntil([&] { return w.model().blnLiveData || !w.panel().CWBPwr->value(); }, 5000);
    result("search_ms", ms(nowNs() - t0), "ms",
           "POWER to live link: COM1 silent (1 s time-out), probe on COM2");
    reportStall("search_stall_ms", "longest event-loop stall while searching for the port");
    if (!w.model().blnLiveData) {
        detail(QStringLiteral("the probe was not found"));
        return 1;
    }

    // With --analysis, what a user who analyses the signal has open: the Measurements and
    // Spectrum windows, and a recording with the measurements of each frame.
    if (options.analysis && !program.openAnalysis()) {
        detail(QStringLiteral("the recording could not start"));
        return 1;
    }

    // The real line rate, at the default window size.
    app.setCpuAccounting(options.profileEvents);
    runFor(500);
    app.resetCounts();
    const int frames0 = frames;
    const long long recorded0 = program.framesRecorded();
    const int replots0 = w.panel().CWGraph1->replotCount();
    const double cpu0 = processCpuSeconds();
    t0 = nowNs();
    runFor(options.lineSeconds * 1000);
    const double wall = static_cast<double>(nowNs() - t0) / 1e9;
    const double cpu = processCpuSeconds() - cpu0;
    detail(QStringLiteral("window %1 x %2 px, graph %3 x %4 px")
               .arg(w.width())
               .arg(w.height())
               .arg(w.panel().CWGraph1->width())
               .arg(w.panel().CWGraph1->height()));
    result(
        "line_cpu_percent", 100.0 * cpu / wall, "%",
        QStringLiteral("processor time at the 19200-baud line rate (%1 s)").arg(wall, 0, 'f', 1));
    result("line_frames_per_s", (frames - frames0) / wall, "frames/s",
           "frames accepted at the line rate");
    if (options.analysis)
        detail(QStringLiteral("analysis: Measurements and Spectrum open, %1 frames recorded of "
                              "the %2 accepted meanwhile")
                   .arg(program.framesRecorded() - recorded0)
                   .arg(frames - frames0));
    result("line_replots_per_s", (w.panel().CWGraph1->replotCount() - replots0) / wall, "replots/s",
           "graph redraws at the line rate");
    result("line_wakeups_per_s", app.wakeUps() / wall, "wake-ups/s",
           "event-loop wake-ups per second at the line rate");
    reportStall("line_stall_ms", "longest event-loop stall while streaming at the line rate");
    if (options.profileEvents) {
        detail(QStringLiteral("processor time by event, %1 s at the line rate:").arg(wall));
        for (const QString& line : app.processorTimeByEvent(12))
            detail(QStringLiteral("  ") + line);
    }

    // STORE takes a reference; it is saved to a .wdf and loaded back, over and over.
    runAsEvent([&] { w.panel().CWBStoreRef->setValue(true); });
    const QString wdf = folder.filePath(QStringLiteral("reference.wdf"));
    std::vector<double> saves;
    std::vector<double> loads;
    bool filesOk = true;
    app.setCpuAccounting(true);
    app.resetCounts();
    for (int i = 0; i < options.fileRounds; ++i) {
        runAsEvent([&] {
            const qint64 t = nowNs();
            filesOk = w.fileForm().SaveWaveformFile(wdf) && filesOk;
            saves.push_back(ms(nowNs() - t));
        });
        runFor(20);
        runAsEvent([&] {
            const qint64 t = nowNs();
            filesOk = w.fileForm().openFile(wdf) && filesOk;
            loads.push_back(ms(nowNs() - t));
        });
        runFor(20);
    }
    const Distribution save = distributionOf(saves);
    const Distribution load = distributionOf(loads);
    result("wdf_save_ms_median", save.median, "ms", "File -> Save of the reference, median");
    result("wdf_save_ms_max", save.max, "ms", "File -> Save of the reference, slowest");
    result("wdf_load_ms_median", load.median, "ms", "File -> Open of that file, median");
    result("wdf_load_ms_max", load.max, "ms", "File -> Open of that file, slowest");
    reportStall("files_stall_ms", "longest event-loop stall while saving and loading .wdf files");
    runAsEvent([&] { w.panel().CWBStoreRef->setValue(false); });
    app.setCpuAccounting(false);
    runFor(1000);

    // POWER off, then idle again: nothing of the link may keep running.
    runAsEvent([&] { w.panel().CWBPwr->setValue(false); });
    runFor(1000);
    idle(QStringLiteral("idle_off"), QStringLiteral("after streaming, POWER off"),
         options.idleSeconds);

    t0 = nowNs();
    runAsEvent([&] { w.close(); });
    result("session_shutdown_ms", ms(nowNs() - t0), "ms",
           "closing the window: port closed, settings file written");
    result("session_peak_rss_mib", peakResidentMiB(), "MiB",
           "peak resident memory over the whole session (the harness's own bookkeeping "
           "included)");
    result("session_messages", messages, "boxes", "message boxes shown during the session");
    MessageBoxes::setInterceptor({});
    return filesOk && messages == 0 ? 0 : 2;
}

} // namespace zorvik::harness
