// zorvik-cli capture and the "PORTS" section of the settings file: COM1..COM8 name the devices
// the section gives them, read from ZORVIK.INI beside the program or, when the program's
// folder cannot be written, from the per-user configuration folder. The program runs from a
// copy in a temporary folder, so that its folder holds the settings file of the test.
#include "CliRunner.h"
#include "FrameFeeder.h"

#include <QFile>
#include <QFileInfo>
#include <QProcessEnvironment>
#include <gtest/gtest.h>

using namespace zorvik;
using namespace zorvik::test;

namespace {

constexpr auto kAllPermissions = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;
constexpr auto kNoWrite = QFile::ReadOwner | QFile::ExeOwner | QFile::ReadOther | QFile::ExeOther |
                          QFile::ReadGroup | QFile::ExeGroup;

/// A program folder of its own: a copy of the built zorvik-cli in a temporary folder.
class ProgramFolder {
public:
    ProgramFolder() {
        program_ = dir_.filePath("zorvik-cli");
        QFile::copy(QStringLiteral(ZORVIK_CLI), program_);
        QFile::setPermissions(program_, kAllPermissions);
    }
    ~ProgramFolder() { QFile::setPermissions(dir_.path(), kAllPermissions); }
    ProgramFolder(const ProgramFolder&) = delete;
    ProgramFolder& operator=(const ProgramFolder&) = delete;

    bool ok() const { return QFileInfo(program_).isExecutable(); }
    QString path() const { return dir_.path(); }
    QString filePath(const QString& name) const { return dir_.filePath(name); }

    /// Writes ZORVIK.INI beside the program.
    void writeSettings(const QByteArray& text) const { writeTo(filePath("ZORVIK.INI"), text); }

    /// Runs the copy with `args` and `environment`.
    CliResult
    run(const QStringList& args,
        const QProcessEnvironment& environment = QProcessEnvironment::systemEnvironment()) const {
        QProcess process;
        process.setProgram(program_);
        process.setArguments(args);
        process.setProcessEnvironment(environment);
        process.start();
        process.waitForStarted(5000);
        return finishCli(process);
    }

    static void writeTo(const QString& path, const QByteArray& text) {
        QFile file(path);
        if (file.open(QIODevice::WriteOnly))
            file.write(text);
    }

private:
    QTemporaryDir dir_;
    QString program_;
};

int frameCount(const CliResult& r) {
    int n = 0;
    for (const QByteArray& line : r.lines())
        n += line.startsWith(R"({"event":"frame")") ? 1 : 0;
    return n;
}

} // namespace

TEST(CliPorts, ComPortTakesTheDeviceThePortsSectionNames) {
    FrameFeeder feeder;
    ASSERT_TRUE(feeder.pty().ok());
    feeder.start();
    ProgramFolder folder;
    ASSERT_TRUE(folder.ok());
    folder.writeSettings(
        "[SETTINGS]\r\nHscaleindex=5\r\n[PORTS]\r\nCOM2=" + feeder.path().toUtf8() + "\r\n");
    const CliResult r = folder.run({"capture", "--port", "COM2", "--frames", "2"});
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_TRUE(r.err.isEmpty()) << r.err.toStdString();
    EXPECT_EQ(frameCount(r), 2);
    EXPECT_TRUE(r.out.startsWith(R"({"event":"frame","index":0,"bytSwitchSetting":36,)"));
}

TEST(CliPorts, PortSearchFindsTheProbeOnTheDeviceThePortsSectionNames) {
    FrameFeeder feeder;
    feeder.start();
    ProgramFolder folder;
    ASSERT_TRUE(folder.ok());
    // COM1 and COM4..COM8 name devices that do not exist, so the search skips them; COM2 is a
    // silent pseudo-terminal, probed for a second without an answer; COM3 is the probe.
    PtyPair silent;
    ASSERT_TRUE(silent.ok());
    QByteArray ports = "[PORTS]\n";
    for (int n : {1, 4, 5, 6, 7, 8})
        ports += "COM" + QByteArray::number(n) + "=/nonexistent/zorvik-tty" +
                 QByteArray::number(n) + "\n";
    ports +=
        "COM2=" + QByteArray(silent.path().c_str()) + "\nCOM3=" + feeder.path().toUtf8() + "\n";
    folder.writeSettings(ports);
    const CliResult r = folder.run({"capture", "--frames", "1"});
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_TRUE(r.err.isEmpty()) << r.err.toStdString();
    EXPECT_EQ(frameCount(r), 1);
}

TEST(CliPorts, ProgramFolderThatCannotBeWrittenTakesThePerUserSettingsFile) {
    FrameFeeder feeder;
    feeder.start();
    ProgramFolder folder;
    ASSERT_TRUE(folder.ok());
    // Beside the program COM2 names nothing; the per-user file names the probe.
    folder.writeSettings("[PORTS]\r\nCOM2=/nonexistent/zorvik-tty\r\n");
    QTemporaryDir config;
    ASSERT_TRUE(QDir(config.path()).mkpath("zorvik"));
    ProgramFolder::writeTo(config.filePath("zorvik/ZORVIK.INI"),
                           "[PORTS]\r\nCOM2=" + feeder.path().toUtf8() + "\r\n");
    ASSERT_TRUE(QFile::setPermissions(folder.path(), kNoWrite));
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_CONFIG_HOME", config.path());
    const CliResult r = folder.run({"capture", "--port", "COM2", "--frames", "1"}, environment);
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_TRUE(r.err.isEmpty()) << r.err.toStdString();
    EXPECT_EQ(frameCount(r), 1);
}

TEST(CliPorts, ComPortTheSectionLeavesEmptyKeepsItsDefaultDevice) {
    if (QFileInfo::exists("/dev/ttyUSB1"))
        GTEST_SKIP() << "COM2's default device /dev/ttyUSB1 exists on this machine";
    FrameFeeder feeder;
    feeder.start();
    ProgramFolder folder;
    ASSERT_TRUE(folder.ok());
    // COM2 is empty and the probe is on COM3: COM2 stays /dev/ttyUSB1, which is not there.
    folder.writeSettings("[PORTS]\r\nCOM2=\r\nCOM3=" + feeder.path().toUtf8() + "\r\n");
    const CliResult r = folder.run({"capture", "--port", "COM2", "--frames", "1"});
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, kFailureStatus);
    EXPECT_TRUE(r.out.isEmpty());
    EXPECT_EQ(r.err, kCommunicationError + "COM2 (/dev/ttyUSB1): not present\n");
    const CliResult com3 = folder.run({"capture", "--port", "COM3", "--frames", "1"});
    EXPECT_EQ(com3.exitCode, 0);
    EXPECT_EQ(frameCount(com3), 1);
}
