// The virtual probe inside the harness, on a pseudo-terminal: at the line rate, for the time
// from the last byte of each frame on the wire to the painted graph that shows it; and unpaced,
// for the frames per second the whole program takes and the frames it loses. The probe
// measures noise, so every frame is different and each frame shown is found in the probe's
// own sequence: a frame the receiver skipped shows as a gap.
#include "Harness.h"
#include "HarnessApplication.h"
#include "HarnessProgram.h"
#include "HarnessReport.h"
#include "probe/FrameGenerator.h"
#include "probe/PtyProbe.h"
#include "support/MessageBox.h"
#include "widgets/LitButton.h"
#include "widgets/ScopeGraph.h"

#include <QHash>
#include <QTemporaryDir>

#include <atomic>
#include <memory>

namespace zorvik::harness {

namespace {

ProbeSettings noise() {
    ProbeSettings settings;
    settings.signal.shape = Shape::Noise;
    settings.trigger = 0x00; // free run: a frame in every frame period
    return settings;
}

/// Frame number in the probe's sequence, by the frame's samples.
class FrameSequence {
public:
    FrameSequence(const ProbeSettings& settings, std::uint64_t seed, int frames) {
        FrameGenerator generator(settings, seed);
        for (int i = 0; i < frames; ++i) {
            if (const auto samples = generator.nextSamples())
                m_numbers.insert(key(*samples), i);
        }
    }
    int numberOf(const RawSamples& samples) const { return m_numbers.value(key(samples), -1); }
    qsizetype size() const { return m_numbers.size(); }

private:
    static QByteArray key(const RawSamples& s) {
        return QByteArray(reinterpret_cast<const char*>(s.data()),
                          static_cast<qsizetype>(s.size()));
    }
    QHash<QByteArray, int> m_numbers;
};

bool powerOn(frmMain& w) {
    runAsEvent([&] { w.panel().CWBPwr->setValue(true); });
    return runUntil([&] { return w.model().blnLiveData || !w.panel().CWBPwr->value(); }, 5000) &&
           w.model().blnLiveData;
}

} // namespace

int measureLatency(const Options& options) {
    HarnessApplication& app = harnessApp();
    const ProbeSettings settings = noise();
    const StreamOptions stream;
    // The line carries 13.8 frames per second; room for the frames sent before the program
    // arms its reception and for a slow start.
    const int expected = options.latencySeconds * 14 + 400;
    const FrameSequence sequence(settings, stream.seed, expected);

    // The moment the last byte of each frame went onto the wire: taken on the probe thread
    // just before the write, so that a window quicker than the probe thread's return from the
    // write still finds it; bytes the terminal had no room for (before the program opens the
    // port) keep their place in the stream.
    auto lastByteNs = std::make_unique<std::atomic<qint64>[]>(static_cast<std::size_t>(expected));
    std::uint64_t bytesSent = 0;
    PtyProbe::Options paced;
    paced.onDue = [&](const std::uint8_t*, std::size_t count) {
        const qint64 now = nowNs();
        const std::uint64_t before = bytesSent;
        bytesSent += count;
        for (std::uint64_t end = (before / kFrameBytes + 1) * kFrameBytes; end <= bytesSent;
             end += kFrameBytes) {
            const std::uint64_t frame = end / kFrameBytes - 1;
            if (frame < static_cast<std::uint64_t>(expected))
                lastByteNs[frame].store(now, std::memory_order_relaxed);
        }
    };
    PtyProbe probe(ProbeStream(settings, stream), paced);
    probe.start();

    QTemporaryDir folder;
    ProgramUnderTest program(folder.path(), {{1, probe.devicePath()}});
    frmMain& w = program.window();
    std::vector<int> accepted; // frames taken in but not yet rendered by a replot
    std::vector<int> rendered; // frames rendered by the latest replot, not yet on screen
    std::vector<double> latencies;
    int unknown = 0;
    int taken = 0;
    int skipped = 0;
    int lastTaken = -1;
    bool measuring = false;
    QObject::connect(&w.link(), &InstrumentLink::received, &w, [&](const ReceiveStep& s) {
        if (s.event != ReceiveEvent::Frame || !measuring)
            return;
        const int n = sequence.numberOf(w.link().machine().bytRawData());
        if (n < 0) {
            ++unknown;
            return;
        }
        ++taken;
        if (lastTaken >= 0 && n > lastTaken + 1)
            skipped += n - lastTaken - 1;
        lastTaken = n;
        accepted.push_back(n);
    });
    QObject::connect(w.panel().CWGraph1, &QCustomPlot::afterReplot, &w, [&] {
        rendered.insert(rendered.end(), accepted.begin(), accepted.end());
        accepted.clear();
    });
    app.setPaintWatch(w.panel().CWGraph1, [&](qint64 doneNs) {
        for (int n : rendered) {
            const qint64 sent = lastByteNs[static_cast<std::size_t>(n)].load();
            if (sent > 0)
                latencies.push_back(static_cast<double>(doneNs - sent) / 1e6);
        }
        rendered.clear();
    });
    program.start();
    runFor(500);
    if (!powerOn(w)) {
        detail(QStringLiteral("the probe was not found"));
        return 1;
    }
    runFor(500);
    app.setCpuAccounting(true);
    app.resetCounts();
    measuring = true;
    const double cpu0 = threadCpuSeconds();
    const qint64 t0 = nowNs();
    runFor(options.latencySeconds * 1000);
    const double wall = static_cast<double>(nowNs() - t0) / 1e9;
    const double cpu = threadCpuSeconds() - cpu0;
    measuring = false;

    const Distribution d = distributionOf(latencies);
    detail(QStringLiteral("%1 frames taken in, %2 skipped, %3 timed over %4 s, %5 not from the "
                          "probe; graph %6 x %7 px")
               .arg(taken)
               .arg(skipped)
               .arg(d.count)
               .arg(wall, 0, 'f', 1)
               .arg(unknown)
               .arg(w.panel().CWGraph1->width())
               .arg(w.panel().CWGraph1->height()));
    result("latency_ms_median", d.median, "ms",
           "last byte of a frame on the wire to the painted graph, median");
    result("latency_ms_p99", d.p99, "ms", "the same, 99th percentile");
    result("latency_ms_max", d.max, "ms", "the same, slowest frame");
    result("latency_frames_per_s", static_cast<double>(d.count) / wall, "frames/s",
           "frames timed per second (the line carries 13.8)");
    result("latency_ui_thread_cpu_percent", 100.0 * cpu / wall, "%",
           "processor time of the window's thread meanwhile (the probe thread not counted)");
    result("latency_wakeups_per_s", app.wakeUps() / wall, "wake-ups/s",
           "event-loop wake-ups per second meanwhile");
    reportStall("latency_stall_ms", "longest event-loop stall meanwhile");
    runAsEvent([&] { w.panel().CWBPwr->setValue(false); });
    probe.stop();
    return d.count > 0 ? 0 : 1;
}

int measureUnpaced(const Options& options) {
    HarnessApplication& app = harnessApp();
    const ProbeSettings settings = noise();
    StreamOptions stream;
    stream.frames = static_cast<std::uint64_t>(options.unpacedFrames);
    const FrameSequence sequence(settings, stream.seed, options.unpacedFrames);
    if (sequence.size() != options.unpacedFrames) {
        detail(QStringLiteral("the probe's frames are not all different"));
        return 1;
    }
    PtyProbe::Options unpaced;
    unpaced.paced = false;
    PtyProbe probe(ProbeStream(settings, stream), unpaced);
    probe.start();

    QTemporaryDir folder;
    ProgramUnderTest program(folder.path(), {{1, probe.devicePath()}});
    frmMain& w = program.window();
    int shown = 0;
    int first = -1;
    int last = -1;
    int skipped = 0;
    int unknown = 0;
    qint64 firstAt = 0;
    qint64 lastAt = 0;
    QObject::connect(&w.link(), &InstrumentLink::received, &w, [&](const ReceiveStep& s) {
        if (s.event != ReceiveEvent::Frame)
            return;
        const int n = sequence.numberOf(w.link().machine().bytRawData());
        if (n < 0) {
            ++unknown;
            return;
        }
        if (first < 0) {
            first = n;
            firstAt = nowNs();
        } else if (n > last + 1) {
            skipped += n - last - 1;
        }
        last = n;
        lastAt = nowNs();
        ++shown;
    });
    int messages = 0;
    MessageBoxes::setInterceptor([&](const MessageRecord&) {
        ++messages;
        return QMessageBox::Ok;
    });
    program.start();
    runFor(500);
    if (options.analysis && !program.openAnalysis()) {
        detail(QStringLiteral("the recording could not start"));
        return 1;
    }
    app.resetCounts();
    const int replots0 = w.panel().CWGraph1->replotCount();
    const double cpu0 = threadCpuSeconds();
    const qint64 poweredAt = nowNs();
    runAsEvent([&] { w.panel().CWBPwr->setValue(true); });
    // Until the probe's last frame is shown, or nothing more comes for two seconds.
    int seen = -1;
    qint64 quietSince = nowNs();
    while (last < options.unpacedFrames - 1 && nowNs() - quietSince < 2000000000LL &&
           w.panel().CWBPwr->value()) {
        runFor(50);
        if (shown != seen) {
            seen = shown;
            quietSince = nowNs();
        }
    }
    const double cpu = threadCpuSeconds() - cpu0;
    const double running = static_cast<double>(nowNs() - poweredAt) / 1e9;
    const int replots = w.panel().CWGraph1->replotCount() - replots0;
    MessageBoxes::setInterceptor({});
    const double seconds = static_cast<double>(lastAt - firstAt) / 1e9;
    const int expected = first < 0 ? 0 : options.unpacedFrames - first;
    const int lost = expected - shown;
    detail(QStringLiteral("probe sent %1 frames, the first %2 before reception was armed (the "
                          "port is reset when it opens); %3 accepted of the %4 after that, "
                          "%5 not from the probe, %6 messages; graph %7 x %8 px")
               .arg(probe.streamCounters().framesSent)
               .arg(first < 0 ? 0 : first)
               .arg(shown)
               .arg(expected)
               .arg(unknown)
               .arg(messages)
               .arg(w.panel().CWGraph1->width())
               .arg(w.panel().CWGraph1->height()));
    result("unpaced_frames_per_s", seconds > 0 ? (shown - 1) / seconds : 0.0, "frames/s",
           "frames accepted per second, probe unpaced");
    if (options.analysis)
        result("unpaced_frames_not_recorded", shown - program.framesRecorded(), "frames",
               "frames accepted but missing from the recording (Measurements and Spectrum "
               "open)");
    result("unpaced_replots_per_s", seconds > 0 ? replots / seconds : 0.0, "replots/s",
           "graph redraws per second meanwhile (each shows the newest frame)");
    result("unpaced_frames_lost", lost + skipped + unknown, "frames",
           "frames the receiver lost or garbled");
    result("unpaced_ui_thread_cpu_percent", 100.0 * cpu / running, "%",
           "processor time of the window's thread from POWER on to the last frame");
    reportStall("unpaced_stall_ms", "longest event-loop stall while streaming unpaced");
    runAsEvent([&] { w.panel().CWBPwr->setValue(false); });
    probe.stop();
    return lost == 0 && skipped == 0 && unknown == 0 && messages == 0 ? 0 : 2;
}

} // namespace zorvik::harness
