// How fast the main window turns frames into a picture: the time from a frame's bytes reaching
// the serial link to a finished replot of a 1600 x 1200 graph, and the frames per second the
// whole path keeps up with when the virtual probe streams as fast as it can.
//
//   zorvik_display_bench [--frames N] [--stream-frames N] [--graph WxH]
#include "BenchSerialLink.h"
#include "app/ProgramServices.h"
#include "app/frmMain.h"
#include "instrument/PortMap.h"
#include "instrument/QtSerialLink.h"
#include "probe/FrameGenerator.h"
#include "probe/PtyProbe.h"
#include "support/MessageBox.h"
#include "widgets/Knob.h"
#include "widgets/LitButton.h"
#include "widgets/ScopeGraph.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QFile>
#include <QHash>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <vector>

using namespace zorvik;

namespace {

struct Figures {
    double median = 0;
    double p99 = 0;
    double mean = 0;
    double max = 0;
};

/// CPU time of the calling thread in nanoseconds: unlike the wall clock, it does not count the
/// time other programs on a busy machine take the processor away.
qint64 threadCpuNs() {
    timespec t{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return static_cast<qint64>(t.tv_sec) * 1000000000 + t.tv_nsec;
}

Figures figuresOf(std::vector<double> us) {
    Figures f;
    if (us.empty())
        return f;
    std::sort(us.begin(), us.end());
    const std::size_t n = us.size();
    f.median = n % 2 ? us[n / 2] : (us[n / 2 - 1] + us[n / 2]) / 2;
    f.p99 = us[static_cast<std::size_t>(std::ceil(0.99 * static_cast<double>(n))) - 1];
    double sum = 0;
    for (double v : us)
        sum += v;
    f.mean = sum / static_cast<double>(n);
    f.max = us.back();
    return f;
}

void printFigures(const char* what, const Figures& f) {
    std::printf("  %-34s median %8.1f us   p99 %8.1f us   mean %8.1f us   max %8.1f us\n", what,
                f.median, f.p99, f.mean, f.max);
}

/// Waits (running the event loop) until `done` holds or `ms` have passed.
template <typename Pred> bool waitFor(Pred done, int ms) {
    QElapsedTimer t;
    t.start();
    while (!done()) {
        if (t.elapsed() > ms)
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    }
    return true;
}

MainWindowServices servicesFor(ProgramServices& shared, const QString& folder) {
    MainWindowServices s;
    shared.handTo(s);
    s.programFolder = folder;
    s.splashMinDisplayMs = 0;
    return s;
}

/// A panel as a user has it while measuring: 1 V/div, 1 ms/div, both cursor pairs on. The
/// window is enlarged until the elastic layout gives the graph about the size asked for, as
/// when the user enlarges the window, and the graph then gets exactly that size. The graph has
/// the keyboard focus (the user has just dragged a cursor), so its focus frame is drawn too.
void setUpPanel(frmMain& w, QSize graph) {
    const QSize design = w.panel().CWGraph1->size();
    w.resize(static_cast<int>(
                 std::ceil(static_cast<double>(w.width()) * graph.width() / design.width())),
             static_cast<int>(
                 std::ceil(static_cast<double>(w.height()) * graph.height() / design.height())));
    waitFor([] { return false; }, 200); // the layout settles
    w.panel().CWGraph1->resize(graph);
    w.panel().CWKChaLvl->setValue(5);
    w.panel().CWKTimeRange->setValue(12);
    w.panel().CWBVCursors->setValue(true);
    w.panel().CWBHCursors->setValue(true);
    w.panel().CWGraph1->setFocus();
}

/// Frame arrival to finished replot, frame by frame, through the window's own receive cycle.
int latency(int frames, QSize graph, const QString& folder) {
    PortMap ports;
    ports.setDevice(1, "/bench/com1");
    bench::BenchSerialLink serial;
    ProgramServices shared(serial, ports, [](const QString&) { return true; });
    frmMain w(servicesFor(shared, folder));
    w.Form_Load();
    w.show();
    setUpPanel(w, graph);

    // The probe's frames, running free so that each one shows the sine at another phase.
    ProbeSettings settings;
    settings.trigger = 0x00;
    FrameGenerator generator(settings);
    std::vector<QByteArray> wire;
    for (int i = 0; i < 1024; ++i) {
        const std::vector<std::uint8_t> f = generator.next();
        wire.emplace_back(reinterpret_cast<const char*>(f.data()),
                          static_cast<qsizetype>(f.size()));
    }

    w.panel().CWBPwr->setValue(true);
    waitFor([&] { return serial.readPending(); }, 2000);
    serial.arrive(QByteArray(1, '\x24')); // the probe answers the search
    if (!waitFor([&] { return w.model().blnLiveData && serial.readPending(); }, 2000)) {
        std::fprintf(stderr, "latency: the window did not take up the link\n");
        return 1;
    }

    QElapsedTimer clock;
    clock.start();
    qint64 shownAt = 0;
    qint64 doneAt = 0;
    qint64 cpuDoneAt = 0;
    bool shown = false;
    QObject::connect(&w.link(), &InstrumentLink::received, &w, [&](const ReceiveStep& s) {
        if (s.event != ReceiveEvent::Frame)
            return;
        // The window has decoded and plotted the frame; the graph is redrawn now rather than
        // at the next screen refresh, so the picture is complete when the clock stops.
        shownAt = clock.nsecsElapsed();
        w.panel().CWGraph1->replot(QCustomPlot::rpImmediateRefresh);
        doneAt = clock.nsecsElapsed();
        cpuDoneAt = threadCpuNs();
        shown = true;
    });

    // A reference trace as well: one frame, STORE, and back to live.
    serial.arrive(wire[0]);
    waitFor([&] { return shown; }, 2000);
    w.panel().CWBStoreRef->setValue(true);
    w.panel().CWBStoreRef->setValue(false);
    waitFor([&] { return serial.readPending(); }, 2000);

    std::vector<double> total;
    std::vector<double> handling;
    std::vector<double> replot;
    std::vector<double> cpu;
    const int warmUp = 100;
    for (int i = 0; i < frames + warmUp; ++i) {
        shown = false;
        const qint64 cpu0 = threadCpuNs();
        const qint64 t0 = clock.nsecsElapsed();
        serial.arrive(wire[static_cast<std::size_t>(i) % wire.size()]);
        // Only posted events (the completion of the armed read): no timer runs in between,
        // so the window's own paced redraw never lands inside a measurement.
        while (!shown)
            QCoreApplication::sendPostedEvents();
        if (i < warmUp)
            continue;
        total.push_back(static_cast<double>(doneAt - t0) / 1000.0);
        handling.push_back(static_cast<double>(shownAt - t0) / 1000.0);
        replot.push_back(static_cast<double>(doneAt - shownAt) / 1000.0);
        cpu.push_back(static_cast<double>(cpuDoneAt - cpu0) / 1000.0);
    }

    std::printf("Frame to picture, window %dx%d px, graph %dx%d px (CHa, Ref, four cursors), "
                "%d frames:\n",
                w.width(), w.height(), w.panel().CWGraph1->width(), w.panel().CWGraph1->height(),
                frames);
    printFigures("arrival to finished replot", figuresOf(total));
    printFigures("  receive, decode, plot arrays", figuresOf(handling));
    printFigures("  replot of the graph", figuresOf(replot));
    printFigures("processor time, arrival to replot", figuresOf(cpu));
    w.close();
    return 0;
}

/// The virtual probe unpaced on a pseudo-terminal, the real serial port, the whole window.
/// The probe measures noise, so that every frame is different and each frame the window shows
/// can be found in the probe's sequence: a frame the receiver skipped shows as a gap.
int throughput(int frames, QSize graph, const QString& folder) {
    ProbeSettings settings;
    settings.signal.shape = Shape::Noise;
    settings.trigger = 0x00;
    StreamOptions options;
    options.frames = static_cast<std::uint64_t>(frames);

    // The same frames as the probe will send, by their samples.
    QHash<QByteArray, int> sequence;
    FrameGenerator generator(settings, options.seed);
    for (int i = 0; i < frames; ++i) {
        const auto samples = generator.nextSamples();
        if (samples)
            sequence.insert(QByteArray(reinterpret_cast<const char*>(samples->data()),
                                       static_cast<qsizetype>(samples->size())),
                            i);
    }
    if (sequence.size() != frames) {
        std::fprintf(stderr, "throughput: the probe's frames are not all different\n");
        return 1;
    }

    PtyProbe::Options unpaced;
    unpaced.paced = false;
    PtyProbe probe(ProbeStream(settings, options), unpaced);
    probe.start();

    PortMap ports;
    ports.setDevice(1, probe.devicePath());
    QtSerialLink serial;
    ProgramServices shared(serial, ports, [](const QString&) { return true; });
    frmMain w(servicesFor(shared, folder));
    w.Form_Load();
    w.show();
    setUpPanel(w, graph);

    int shown = 0;
    int first = -1;      // the probe's number of the first frame shown
    int last = -1;       // and of the latest
    int skipped = 0;     // frames missing between two frames shown
    int unknown = 0;     // frames shown that the probe did not send
    int otherEvents = 0; // anything but a two-byte probe and a frame once frames flow
    QElapsedTimer clock;
    qint64 lastAt = 0;
    QObject::connect(&w.link(), &InstrumentLink::received, &w, [&](const ReceiveStep& s) {
        if (s.event != ReceiveEvent::Frame) {
            if (first >= 0 && s.event != ReceiveEvent::SyncFound)
                ++otherEvents;
            return;
        }
        const RawSamples& raw = w.link().machine().bytRawData();
        const int n = sequence.value(QByteArray(reinterpret_cast<const char*>(raw.data()),
                                                static_cast<qsizetype>(raw.size())),
                                     -1);
        if (n < 0) {
            ++unknown;
            return;
        }
        if (first < 0) {
            first = n;
            clock.start();
        } else if (n > last + 1) {
            skipped += n - last - 1;
        }
        last = n;
        lastAt = clock.nsecsElapsed();
        ++shown;
    });
    int messages = 0;
    MessageBoxes::setInterceptor([&](const MessageRecord&) {
        ++messages;
        return QMessageBox::Ok;
    });

    const int replotsBefore = w.panel().CWGraph1->replotCount();
    w.panel().CWBPwr->setValue(true);
    // Until the probe's last frame is shown, or nothing more comes for two seconds.
    int seen = -1;
    QElapsedTimer idle;
    idle.start();
    while (last < frames - 1 && idle.elapsed() < 2000 && w.panel().CWBPwr->value()) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        if (shown != seen) {
            seen = shown;
            idle.restart();
        }
    }
    const int replots = w.panel().CWGraph1->replotCount() - replotsBefore;
    MessageBoxes::setInterceptor({});

    const double seconds = static_cast<double>(lastAt) / 1e9;
    const int expected = first < 0 ? 0 : frames - first;
    std::printf("Unpaced virtual probe (noise, free run) over a pseudo-terminal, real serial port, "
                "graph %dx%d px:\n",
                w.panel().CWGraph1->width(), w.panel().CWGraph1->height());
    std::printf("  frames sent %llu; the first %d went before reception was armed (the port is "
                "reset when it opens)\n",
                static_cast<unsigned long long>(probe.streamCounters().framesSent),
                first < 0 ? 0 : first);
    std::printf("  frames sent after that %d, accepted %d, skipped %d, not from the probe %d, "
                "other receive events %d, messages %d\n",
                expected, shown, skipped, unknown, otherEvents, messages);
    std::printf("  %.0f frames per second over %.2f s; %d replots (%.0f per second)\n",
                seconds > 0 ? (shown - 1) / seconds : 0.0, seconds, replots,
                seconds > 0 ? replots / seconds : 0.0);
    w.close();
    probe.stop();
    return shown == expected && skipped == 0 && unknown == 0 && messages == 0 ? 0 : 2;
}

} // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription("Speed of the main window's display path.");
    parser.addHelpOption();
    QCommandLineOption framesOption("frames", "Frames timed one by one (default 3000).", "N",
                                    "3000");
    QCommandLineOption streamOption(
        "stream-frames", "Frames streamed by the unpaced probe (default 50000).", "N", "50000");
    QCommandLineOption graphOption("graph", "Size of the graph in pixels (default 1600x1200).",
                                   "WxH", "1600x1200");
    QCommandLineOption onlyOption("only", "Run one part only: latency or stream.", "part");
    parser.addOptions({framesOption, streamOption, graphOption, onlyOption});
    parser.process(app);

    const QStringList wh = parser.value(graphOption).split('x');
    const QSize graph(wh.value(0).toInt(), wh.value(1).toInt());
    if (graph.isEmpty()) {
        std::fprintf(stderr, "--graph wants WIDTHxHEIGHT\n");
        return 1;
    }
    // The figures depend on what else the machine is doing; say so beside them.
    QFile loadavg("/proc/loadavg");
    if (loadavg.open(QIODevice::ReadOnly))
        std::printf("Load average of the machine: %s", loadavg.readLine().constData());
    std::printf("Display platform: %s\n", qPrintable(QGuiApplication::platformName()));
    QTemporaryDir folder;
    const QString only = parser.value(onlyOption);
    int rc = 0;
    if (only.isEmpty() || only == "latency")
        rc = latency(parser.value(framesOption).toInt(), graph, folder.path());
    std::fflush(stdout);
    if (rc == 0 && (only.isEmpty() || only == "stream"))
        rc = throughput(parser.value(streamOption).toInt(), graph, folder.path());
    return rc;
}
