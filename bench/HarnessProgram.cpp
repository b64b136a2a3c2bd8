// The program under measurement, event-loop helpers, a silent port and the probe process.
#include "HarnessProgram.h"

#include "analysis/AnalysisActions.h"
#include "analysis/frmMeasurements.h"
#include "analysis/frmRecording.h"
#include "analysis/frmSpectrum.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QFileInfo>
#include <QTimer>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace zorvik::harness {

ProgramUnderTest::ProgramUnderTest(const QString& folder, const std::map<int, std::string>& devices)
    : m_folder(folder) {
    for (int n = kFirstComPort; n <= kLastComPort; ++n) {
        const auto it = devices.find(n);
        m_ports.setDevice(n, it != devices.end()
                                 ? it->second
                                 : "/nonexistent/zorvik-harness/COM" + std::to_string(n));
    }
    m_shared = std::make_unique<ProgramServices>(
        m_serial, m_ports, [](const QString& device) { return QFileInfo::exists(device); });
    MainWindowServices services;
    m_shared->handTo(services);
    services.programFolder = m_folder;
    services.settingsPath = settingsPath();
    services.splashMinDisplayMs = 0;
    m_window = std::make_unique<frmMain>(services);
}

ProgramUnderTest::~ProgramUnderTest() {
    if (m_window)
        m_window->close();
}

void ProgramUnderTest::start() {
    m_window->Form_Load();
    m_window->show();
}

bool ProgramUnderTest::openAnalysis() {
    auto* actions =
        new AnalysisActions(*m_window, m_shared->feed,
                            AnalysisSettings(SettingsLocation{settingsPath().toStdString(), {}}));
    actions->showMeasurements();
    actions->showSpectrum();
    m_recording = &actions->showRecording();
    m_recording->setFolder(m_folder);
    m_recording->setWithMeasurements(true);
    m_window->activateWindow();
    return m_recording->start();
}

long long ProgramUnderTest::framesRecorded() const {
    return m_recording ? m_recording->frames() : 0;
}

QString ProgramUnderTest::settingsPath() const {
    return m_folder + QStringLiteral("/ZORVIK.INI");
}

void runFor(int ms) {
    QEventLoop loop;
    QTimer deadline;
    deadline.setObjectName(QStringLiteral("harness-deadline"));
    deadline.setSingleShot(true);
    deadline.setTimerType(Qt::PreciseTimer);
    QObject::connect(&deadline, &QTimer::timeout, &loop, &QEventLoop::quit);
    deadline.start(ms);
    loop.exec();
}

bool runUntil(const std::function<bool()>& done, int ms) {
    if (done())
        return true;
    QEventLoop loop;
    QTimer poll;
    poll.setObjectName(QStringLiteral("harness-poll"));
    QElapsedTimer waited;
    waited.start();
    QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
        if (done() || waited.elapsed() >= ms)
            loop.quit();
    });
    poll.start(10);
    loop.exec();
    return done();
}

void runAsEvent(const std::function<void()>& action) {
    QEventLoop loop;
    QTimer event;
    event.setObjectName(QStringLiteral("harness-event"));
    event.setSingleShot(true);
    QObject::connect(&event, &QTimer::timeout, &loop, [&] {
        action();
        loop.quit();
    });
    event.start(0);
    loop.exec();
}

SilentPort::SilentPort() {
    m_master = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (m_master < 0 || ::grantpt(m_master) != 0 || ::unlockpt(m_master) != 0)
        throw std::runtime_error("no pseudo-terminal for the silent port");
    m_device = ::ptsname(m_master);
}

SilentPort::~SilentPort() {
    if (m_master >= 0)
        ::close(m_master);
}

ProbeProcess::ProbeProcess(const QString& program, const QStringList& arguments,
                           const QString& link)
    : m_link(link) {
    std::vector<std::string> args{program.toStdString()};
    for (const QString& a : arguments)
        args.push_back(a.toStdString());
    args.push_back("--link");
    args.push_back(link.toStdString());
    std::vector<char*> argv;
    for (std::string& a : args)
        argv.push_back(a.data());
    argv.push_back(nullptr);

    m_pid = ::fork();
    if (m_pid == 0) {
        // The probe ends with the harness, even when the harness is killed or crashes.
        ::prctl(PR_SET_PDEATHSIG, SIGTERM);
        const int devNull = ::open("/dev/null", O_WRONLY);
        ::dup2(devNull, STDOUT_FILENO);
        ::execv(argv[0], argv.data());
        ::_exit(127);
    }
    if (m_pid < 0)
        throw std::runtime_error("cannot start " + args[0]);
    for (int waited = 0; waited < 5000; waited += 10) {
        if (QFileInfo::exists(m_link))
            return;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    ::kill(m_pid, SIGTERM);
    ::waitpid(m_pid, nullptr, 0);
    throw std::runtime_error("the virtual probe did not come up");
}

ProbeProcess::~ProbeProcess() {
    if (m_pid > 0) {
        ::kill(m_pid, SIGTERM);
        int status = 0;
        ::waitpid(m_pid, &status, 0);
    }
}

} // namespace zorvik::harness
