// The real zorvik program asked to end by the system (SIGTERM, SIGHUP, SIGINT): it shuts down
// as when the user closes its window, writing the settings file exactly once.
#include "common/ProgramCopy.h"

#include <QFile>
#include <QProcessEnvironment>
#include <QSocketNotifier>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <csignal>
#include <sys/inotify.h>
#include <unistd.h>

using namespace zorvik::test;

namespace {

/// Counts the times a file of a folder is replaced (a new file renamed into its place, which is
/// how the program writes its files).
class FolderWatch {
public:
    FolderWatch(const QString& folder, const QString& name) : name_(name.toStdString()) {
        fd_ = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
        if (fd_ >= 0)
            ::inotify_add_watch(fd_, folder.toLocal8Bit().constData(), IN_MOVED_TO);
    }
    ~FolderWatch() {
        if (fd_ >= 0)
            ::close(fd_);
    }
    FolderWatch(const FolderWatch&) = delete;
    FolderWatch& operator=(const FolderWatch&) = delete;

    /// Replacements of the file seen so far.
    int writes() {
        alignas(inotify_event) char buffer[4096];
        for (;;) {
            const ssize_t n = ::read(fd_, buffer, sizeof buffer);
            if (n <= 0)
                break;
            for (ssize_t at = 0; at < n;) {
                const auto* e = reinterpret_cast<const inotify_event*>(buffer + at);
                if (e->len > 0 && name_ == e->name)
                    ++writes_;
                at += static_cast<ssize_t>(sizeof(inotify_event) + e->len);
            }
        }
        return writes_;
    }

private:
    int fd_ = -1;
    std::string name_;
    int writes_ = 0;
};

QProcessEnvironment offscreen() {
    QProcessEnvironment e = QProcessEnvironment::systemEnvironment();
    e.insert("QT_QPA_PLATFORM", "offscreen");
    return e;
}

const QByteArray kSettings = "; the bench's settings\r\n[SETTINGS]\r\nHscaleindex=7\r\n"
                             "Vscaleindex=4\r\nChaoffset=1.5\r\nOperator=R. Field\r\n"
                             "[BUTTONS]\r\nInvert=True\r\n[PORTS]\r\nCOM3=/dev/ttyS9\r\n";

const QByteArray kWritten = "; the bench's settings\r\n[SETTINGS]\r\nHscaleindex=7\r\n"
                            "Vscaleindex=4\r\nChaoffset=1.5\r\nOperator=R. Field\r\n"
                            "[BUTTONS]\r\nInvert=True\r\nHcursors=False\r\nVcursors=False\r\n"
                            "[PORTS]\r\nCOM3=/dev/ttyS9\r\n[COLORS]\r\nCursor1=16734975\r\n"
                            "Cursor2=16734975\r\nCursor3=10551130\r\nCursor4=10551130\r\n"
                            "Display=0\r\nPrimarytrace=65535\r\nReferencetrace=16762880\r\n";

/// Runs the program until it catches `signal`, sends it `times` times and waits for the end.
struct Ended {
    bool finished = false;
    QProcess::ExitStatus status = QProcess::CrashExit;
    int exitCode = -1;
};
Ended sendAndWait(QProcess& p, int signal, int times) {
    Ended r;
    if (!QTest::qWaitFor([&] { return catchesSignal(p.processId(), signal); }, 10000))
        return r;
    for (int i = 0; i < times; ++i)
        ::kill(static_cast<pid_t>(p.processId()), signal);
    r.finished = p.waitForFinished(20000);
    r.status = p.exitStatus();
    r.exitCode = p.exitCode();
    return r;
}

class ProgramSessionEnd : public ::testing::TestWithParam<int> {};

TEST_P(ProgramSessionEnd, TheSignalRunsTheShutdownAndWritesTheSettingsFileOnce) {
    ProgramCopy copy(QStringLiteral(ZORVIK_PROGRAM));
    ASSERT_TRUE(copy.ok());
    copy.writeSettings(kSettings);
    FolderWatch watch(copy.folder(), "ZORVIK.INI");
    auto p = copy.start({}, offscreen());
    const Ended e = sendAndWait(*p, GetParam(), 1);
    ASSERT_TRUE(e.finished);
    EXPECT_EQ(e.status, QProcess::NormalExit);
    EXPECT_EQ(e.exitCode, 0);
    EXPECT_EQ(watch.writes(), 1);
    // The settings read at start-up are written back, the colours added, everything else kept.
    EXPECT_EQ(copy.settings(), kWritten);
}

INSTANTIATE_TEST_SUITE_P(Signals, ProgramSessionEnd, ::testing::Values(SIGTERM, SIGHUP, SIGINT),
                         [](const ::testing::TestParamInfo<int>& info) {
                             return std::string(info.param == SIGTERM  ? "Sigterm"
                                                : info.param == SIGHUP ? "Sighup"
                                                                       : "Sigint");
                         });

TEST(ProgramSessionEndOnce, ASecondSigtermDuringTheShutdownChangesNothing) {
    ProgramCopy copy(QStringLiteral(ZORVIK_PROGRAM));
    ASSERT_TRUE(copy.ok());
    FolderWatch watch(copy.folder(), "ZORVIK.INI");
    auto p = copy.start({}, offscreen());
    const Ended e = sendAndWait(*p, SIGTERM, 3);
    ASSERT_TRUE(e.finished);
    EXPECT_EQ(e.status, QProcess::NormalExit);
    EXPECT_EQ(e.exitCode, 0);
    EXPECT_EQ(watch.writes(), 1);
    const QByteArray text = copy.settings();
    EXPECT_TRUE(text.startsWith("[SETTINGS]\r\nHscaleindex=3\r\nVscaleindex=1\r\nChaoffset=0\r\n"
                                "[COLORS]\r\n"))
        << text.toStdString();
    EXPECT_TRUE(text.endsWith("[BUTTONS]\r\nHcursors=False\r\nVcursors=False\r\nInvert=False\r\n"))
        << text.toStdString();
}

// An installed program: its folder cannot be written. The file beside it is read, and the
// first save makes the per-user copy from it.
TEST(ProgramSettingsLocation, AReadOnlyProgramFolderIsReadAndTheFirstSaveMakesAPerUserCopy) {
    ProgramCopy copy(QStringLiteral(ZORVIK_PROGRAM));
    ASSERT_TRUE(copy.ok());
    copy.writeSettings(kSettings);
    ASSERT_TRUE(QFile::setPermissions(copy.folder(), QFile::ReadOwner | QFile::ExeOwner |
                                                         QFile::ReadOther | QFile::ExeOther));
    QTemporaryDir config;
    QProcessEnvironment environment = offscreen();
    environment.insert("XDG_CONFIG_HOME", config.path());
    auto p = copy.start({}, environment);
    const Ended e = sendAndWait(*p, SIGTERM, 1);
    QFile::setPermissions(copy.folder(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    ASSERT_TRUE(e.finished);
    EXPECT_EQ(e.exitCode, 0);
    EXPECT_EQ(copy.settings(), kSettings);
    EXPECT_EQ(ProgramCopy::readFile(config.filePath("zorvik/ZORVIK.INI")), kWritten);
}

} // namespace
