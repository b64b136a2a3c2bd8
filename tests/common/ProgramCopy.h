// A copy of one of the built programs in a folder of its own, as an installed program stands in
// its program folder: the settings file ZORVIK.INI lives beside it, and the folder lies where
// any user can reach it (the system's temporary folder), wherever the checkout is.
#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>
#include <QTest>
#include <fstream>
#include <memory>
#include <string>

namespace zorvik::test {

class ProgramCopy {
public:
    /// Copies `program` (the path of a built program) into a new folder.
    explicit ProgramCopy(const QString& program) {
        // Readable and enterable by everyone, so a test may run the copy as another user.
        QFile::setPermissions(dir_.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner |
                                               QFile::ReadOther | QFile::ExeOther |
                                               QFile::ReadGroup | QFile::ExeGroup);
        program_ = dir_.filePath(QFileInfo(program).fileName());
        QFile::copy(program, program_);
        QFile::setPermissions(program_, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner |
                                            QFile::ReadOther | QFile::ExeOther | QFile::ReadGroup |
                                            QFile::ExeGroup);
    }
    ProgramCopy(const ProgramCopy&) = delete;
    ProgramCopy& operator=(const ProgramCopy&) = delete;

    bool ok() const { return QFileInfo(program_).isExecutable(); }
    QString program() const { return program_; }
    QString folder() const { return dir_.path(); }
    QString filePath(const QString& name) const { return dir_.filePath(name); }
    QString settingsPath() const { return filePath("ZORVIK.INI"); }

    /// Writes ZORVIK.INI beside the program.
    void writeSettings(const QByteArray& bytes) const { writeFile(settingsPath(), bytes); }
    /// The bytes of ZORVIK.INI; empty when there is none.
    QByteArray settings() const { return readFile(settingsPath()); }

    /// Starts the copy with `args`; the process runs until the caller ends it.
    std::unique_ptr<QProcess>
    start(const QStringList& args = {},
          const QProcessEnvironment& environment = QProcessEnvironment::systemEnvironment()) const {
        auto process = std::make_unique<QProcess>();
        process->setProgram(program_);
        process->setArguments(args);
        process->setProcessEnvironment(environment);
        process->start();
        process->waitForStarted(5000);
        return process;
    }

    static void writeFile(const QString& path, const QByteArray& bytes) {
        QFile file(path);
        if (file.open(QIODevice::WriteOnly))
            file.write(bytes);
    }
    static QByteArray readFile(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

private:
    QTemporaryDir dir_;
    QString program_;
};

/// True once the process `pid` has a handler of its own for `signal` (Linux: the caught-signals
/// mask in /proc/PID/status).
inline bool catchesSignal(qint64 pid, int signal) {
    std::ifstream status("/proc/" + std::to_string(pid) + "/status");
    std::string line;
    while (std::getline(status, line)) {
        if (line.rfind("SigCgt:", 0) == 0)
            return (std::stoull(line.substr(7), nullptr, 16) >> (signal - 1)) & 1u;
    }
    return false;
}

} // namespace zorvik::test
