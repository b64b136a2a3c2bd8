// zorvik-cli capture and the "PORTS" section of the settings file: COM1..COM8 name the devices
// the section gives them, read from ZORVIK.INI beside the program or, when the program's
// folder cannot be written, from the per-user configuration folder. The program runs from a
// copy in a temporary folder, so that its folder holds the settings file of the test.
#include "CliRunner.h"
#include "FrameFeeder.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcessEnvironment>
#include <gtest/gtest.h>
#include <sys/stat.h>

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

namespace {

QJsonObject portsJson(const CliResult& r) {
    return QJsonDocument::fromJson(r.out).object();
}

} // namespace

// zorvik-cli ports: COM1 to COM8 with their devices, as the PORTS section maps them.
TEST(CliPortsCommand, ListsTheEightPortsWithTheDeviceEachNamesAndWhetherItIsThere) {
    PtyPair pty;
    ASSERT_TRUE(pty.ok());
    ProgramFolder folder;
    ASSERT_TRUE(folder.ok());
    const QByteArray device = QByteArray::fromStdString(pty.path());
    folder.writeSettings("[PORTS]\r\nCOM2=" + device + "\r\nCOM3=/nonexistent/zorvik-tty\r\n");

    const CliResult table = folder.run({"ports"});
    ASSERT_EQ(table.exitCode, 0);
    EXPECT_TRUE(table.err.isEmpty());
    const QList<QByteArray> lines = table.lines();
    ASSERT_GE(lines.size(), 9);
    EXPECT_TRUE(lines[0].startsWith("PORT  DEVICE"));
    EXPECT_TRUE(lines[0].endsWith("PRESENT  ACCESS  SYSTEM"));
    EXPECT_TRUE(lines[2].startsWith("COM2  " + device));
    EXPECT_TRUE(lines[2].simplified().endsWith(device + " yes yes (from [PORTS])"))
        << lines[2].toStdString();
    EXPECT_TRUE(lines[3].simplified() == "COM3 /nonexistent/zorvik-tty no - (from [PORTS])")
        << lines[3].toStdString();
    EXPECT_TRUE(lines[4].startsWith("COM4  /dev/ttyACM1"));

    const CliResult json = folder.run({"ports", "--format", "json"});
    ASSERT_EQ(json.exitCode, 0);
    EXPECT_EQ(json.lines().size(), 1);
    const QJsonObject o = portsJson(json);
    EXPECT_EQ(o["settings"].toString(), folder.filePath("ZORVIK.INI"));
    const QJsonArray ports = o["ports"].toArray();
    ASSERT_EQ(ports.size(), 8);
    for (int i = 0; i < 8; ++i)
        EXPECT_EQ(ports[i].toObject()["port"].toString(), QString("COM%1").arg(i + 1));
    const QJsonObject com2 = ports[1].toObject();
    EXPECT_EQ(com2["device"].toString(), QString::fromUtf8(device));
    EXPECT_TRUE(com2["mapped"].toBool());
    EXPECT_TRUE(com2["present"].toBool());
    EXPECT_TRUE(com2["access"].toBool());
    EXPECT_TRUE(com2["vid"].isNull());
    const QJsonObject com3 = ports[2].toObject();
    EXPECT_FALSE(com3["present"].toBool());
    EXPECT_FALSE(com3["access"].toBool());
    EXPECT_EQ(ports[3].toObject()["device"].toString(), "/dev/ttyACM1");
    EXPECT_FALSE(ports[3].toObject()["mapped"].toBool());
    EXPECT_TRUE(o["others"].isArray());
    EXPECT_EQ(folder.run({"ports", "-f", "json"}).out, json.out);
}

// A device that is there but that this user may not open shows "no" under ACCESS.
TEST(CliPortsCommand, ADeviceThisUserMayNotOpenIsPresentWithoutAccess) {
    PtyPair pty;
    ASSERT_TRUE(pty.ok());
    ASSERT_EQ(::chmod(pty.path().c_str(), 0), 0);
    const QByteArray device = QByteArray::fromStdString(pty.path());
    const CliResult r =
        runCliUnprivileged({"ports", "-f", "json"}, 20000, "[PORTS]\r\nCOM1=" + device + "\r\n");
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    const QJsonObject com1 = portsJson(r)["ports"].toArray()[0].toObject();
    EXPECT_EQ(com1["device"].toString(), QString::fromUtf8(device));
    EXPECT_TRUE(com1["present"].toBool());
    EXPECT_FALSE(com1["access"].toBool());
}
