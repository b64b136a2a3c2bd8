// Runs the built zorvik-cli as a subprocess for the tests, and builds the byte streams and
// the expected texts they check.
#pragma once

#include "common/FrameBytes.h"
#include "common/ProgramCopy.h"

#include <QByteArray>
#include <QFile>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>
#include <QTest>
#include <charconv>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include <grp.h>
#include <unistd.h>

namespace zorvik::test {

using Bytes = std::vector<std::uint8_t>;

/// What one run of zorvik-cli left behind.
struct CliResult {
    bool finished = false; ///< ended before the deadline
    bool crashed = false;  ///< ended by a signal it did not handle
    int exitCode = -1;
    QByteArray out;
    QByteArray err;

    /// Standard output split into lines (the last line end dropped first).
    QList<QByteArray> lines() const {
        QByteArray text = out;
        if (text.endsWith('\n'))
            text.chop(1);
        return text.isEmpty() ? QList<QByteArray>{} : text.split('\n');
    }
};

/// Starts zorvik-cli with `args`; the caller waits with `finishCli`.
inline std::unique_ptr<QProcess> startCli(const QStringList& args) {
    auto process = std::make_unique<QProcess>();
    process->setProgram(QStringLiteral(ZORVIK_CLI));
    process->setArguments(args);
    process->start();
    process->waitForStarted(5000);
    return process;
}

/// Waits (running the event loop) until the program ended or the deadline passed; a program
/// still running then is killed and reported as not finished.
inline CliResult finishCli(QProcess& process, int deadlineMs = 20000,
                           const QByteArray& outSoFar = {}) {
    CliResult result;
    result.finished =
        QTest::qWaitFor([&] { return process.state() == QProcess::NotRunning; }, deadlineMs);
    if (!result.finished) {
        process.kill();
        process.waitForFinished(2000);
    }
    result.crashed = process.exitStatus() == QProcess::CrashExit;
    result.exitCode = process.exitCode();
    result.out = outSoFar + process.readAllStandardOutput();
    result.err = process.readAllStandardError();
    return result;
}

/// Runs a copy of zorvik-cli with `args` as the unprivileged user "nobody" when the test runs
/// as the administrator (for whom file permissions do not hold), as the test's user otherwise.
/// The copy lies in a folder any user can reach, and runs there, so where the checkout lies
/// does not matter.
inline CliResult runCliUnprivileged(const QStringList& args, int deadlineMs = 20000,
                                    const QByteArray& settings = {}) {
    ProgramCopy copy(QStringLiteral(ZORVIK_CLI));
    if (!settings.isEmpty())
        copy.writeSettings(settings);
    QProcess process;
    process.setProgram(copy.program());
    process.setArguments(args);
    process.setWorkingDirectory(copy.folder());
    if (::geteuid() == 0) {
        process.setChildProcessModifier([] {
            if (::setgroups(0, nullptr) != 0 || ::setgid(65534) != 0 || ::setuid(65534) != 0)
                ::_exit(127);
        });
    }
    process.start();
    process.waitForStarted(5000);
    return finishCli(process, deadlineMs);
}

inline CliResult runCli(const QStringList& args, int deadlineMs = 20000) {
    auto process = startCli(args);
    return finishCli(*process, deadlineMs);
}

/// Writes `bytes` to a file in `dir` and returns its path.
inline QString writeFile(const QTemporaryDir& dir, const QString& name, const Bytes& bytes) {
    const QString path = dir.filePath(name);
    QFile file(path);
    if (file.open(QIODevice::WriteOnly))
        file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<qint64>(bytes.size()));
    return path;
}

/// The pieces one after the other.
inline Bytes join(std::initializer_list<Bytes> pieces) {
    Bytes all;
    for (const Bytes& p : pieces)
        all.insert(all.end(), p.begin(), p.end());
    return all;
}

/// The frame bytes for `state` and `seed`, as FrameBytes.h makes them.
inline Bytes frame(const HardwareState& state, int seed = 0) {
    return frameBytes(state, seed);
}

inline HardwareState stateWith(std::uint8_t sw, std::uint8_t tb, std::uint8_t td, std::uint8_t tl) {
    HardwareState s = sampleState();
    s.bytSwitchSetting = sw;
    s.bytTimebaseDef = tb;
    s.bytTriggerDef = td;
    s.bytTriggerLvl = tl;
    return s;
}

/// The texts between the brackets of the JSON array `key` in one line.
inline QList<QByteArray> arrayItems(const QByteArray& line, const char* key) {
    const QByteArray open = QByteArray("\"") + key + "\":[";
    const qsizetype begin = line.indexOf(open);
    if (begin < 0)
        return {};
    const qsizetype first = begin + open.size();
    const qsizetype end = line.indexOf(']', first);
    return line.mid(first, end - first).split(',');
}

/// The shortest text of a single-precision value, for checking the program's own texts.
inline QByteArray shortest(float value) {
    char buffer[32] = {};
    const auto r = std::to_chars(buffer, buffer + sizeof buffer, value);
    return QByteArray(buffer, static_cast<qsizetype>(r.ptr - buffer));
}

/// Exit statuses shared by zorvik-cli and zorvik-probe: 1 when the work failed (a file, a
/// port, the probe), 2 for a wrong command line.
inline constexpr int kFailureStatus = 1;
inline constexpr int kUsageStatus = 2;

/// The line zorvik-cli prints when the probe cannot be reached.
inline const QByteArray kCommunicationError =
    "Unable to Communicate with Instrument - Check Port Connection!\n";

} // namespace zorvik::test
