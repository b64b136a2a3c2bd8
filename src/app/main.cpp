// Composition root of the zorvik program: creates the port mapping, the serial control, the
// services the windows share (INI object, instrument link, frame feed, printing) and the main
// window, wires what uses the trace to the frame feed, and runs the event loop.
#include "analysis/AnalysisActions.h"
#include "app/ApplicationSetup.h"
#include "app/ProgramServices.h"
#include "app/frmMain.h"
#include "instrument/PortMap.h"
#include "instrument/QtSerialLink.h"
#include "storage/SettingsFile.h"
#include "support/SessionEnd.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTimer>
#include <QUrl>
#include <memory>
#include <system_error>

#ifdef ZORVIK_HAVE_VIRTUAL_PROBE
#include "probe/DemoTour.h"
#include "probe/PtyProbe.h"
#endif

using namespace zorvik;

int main(int argc, char** argv) {
    // A logout, a shutdown or a kill that comes while the program starts waits for the window
    // and then closes it the normal way.
    SessionEnd::catchSignals();
    QApplication app(argc, argv);
    setUpApplication();

    QCommandLineParser parser;
    parser.setApplicationDescription("Front panel for the Zorvik hand-held probe oscilloscope.");
    parser.addHelpOption();
    parser.addVersionOption();
    QCommandLineOption demo("demo", "Start with a virtual probe on COM1 (no hardware needed).");
    parser.addOption(demo);
    parser.addPositionalArgument(
        "file", "A Waveform Data File (.wdf) to show as the reference trace.", "[file]");
    parser.process(app);

    // The settings file lives beside the program, or in the user's configuration folder when
    // the program's folder cannot be written (an installed program): until that copy exists
    // the file beside the program is read, and the first save starts the copy from it.
    const QString programFolder = QApplication::applicationDirPath();
    const SettingsLocation settings = SettingsFile::location(
        programFolder.toStdString(),
        QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation).toStdString());

    // COM1..COM8 name the devices of the "PORTS" section, or the system's defaults.
    PortMap ports;
    for (const auto& [n, device] : SettingsFile::readPorts(settings.readPath().string()))
        ports.setDevice(n, device);
    QtSerialLink serial;

#ifdef ZORVIK_HAVE_VIRTUAL_PROBE
    // A demo run serves a virtual probe on a pseudo-terminal and maps COM1 to it for this run
    // only; nothing of it reaches the settings file.
    std::unique_ptr<PtyProbe> probe;
    const auto tour = std::make_shared<DemoTour>();
    if (parser.isSet(demo)) {
        try {
            // The tour of DemoTour.h: at the start-up knob positions the first trace after
            // POWER already fills most of the graph, and the signal then changes every few
            // seconds so that every part of the panel has something to show.
            probe = std::make_unique<PtyProbe>(
                ProbeStream(demoSettings(0), DemoTour::streamOptions(tour)));
            probe->start();
            ports.setDevice(1, probe->devicePath());
        } catch (const std::system_error& e) {
            qWarning("zorvik: the virtual probe could not start: %s", e.what());
        }
    }
#else
    if (parser.isSet(demo))
        qWarning("zorvik: this build has no virtual probe");
#endif

    // The INI object, the instrument link on the serial control, the feed that hands every
    // decoded frame to whatever uses the trace, and the printing services.
    ProgramServices shared(serial, ports,
                           [](const QString& device) { return QFileInfo::exists(device); });
    MainWindowServices services;
    shared.handTo(services);
    services.programFolder = programFolder;
    services.settingsPath = QString::fromStdString(settings.file.string());
    services.settingsOriginal = QString::fromStdString(settings.original.string());

    frmMain window(services);
    // Beside the panel: Autoset (A), Measurements (M), Spectrum (F) and the graph's context
    // menu; their windows keep their places and choices in the settings file's [ANALYSIS].
    new AnalysisActions(window, shared.feed, AnalysisSettings(settings));
    window.Form_Load();
    window.show();

#ifdef ZORVIK_HAVE_VIRTUAL_PROBE
    // Each time POWER finds the demo probe, its tour starts again from the still sine.
    if (probe) {
        QObject::connect(&shared.link, &InstrumentLink::searchFinished, &window,
                         [tour](bool answered, int) {
                             if (answered)
                                 tour->restart();
                         });
    }
#endif

    // The system asks the program to end (SIGTERM, SIGHUP, SIGINT, the session ending): the
    // window closes as when the user closes it, so the port is closed and the settings file
    // written, once; every other window closes with it.
    SessionEnd sessionEnd;
    QObject::connect(&sessionEnd, &SessionEnd::requested, &window, [&window] {
        window.close();
        QApplication::quit();
    });

    // A file named on the command line (a file manager opening a .wdf) is loaded once the
    // window is up, by the same rules and with the same messages as File -> Open.
    if (!parser.positionalArguments().isEmpty()) {
        QString file = parser.positionalArguments().constFirst();
        if (file.startsWith("file:"))
            file = QUrl(file).toLocalFile();
        file = QFileInfo(file).absoluteFilePath();
        QTimer::singleShot(0, &window, [&window, file] { window.openWaveformFile(file); });
    }
    return QApplication::exec();
}
