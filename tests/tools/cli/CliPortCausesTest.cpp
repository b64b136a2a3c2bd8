// zorvik-cli capture on ports that cannot be used, on real pseudo-terminals and files: after
// the window's message, one line says why: not present, permission denied (with the command
// that grants it), busy, not a serial device, no answer.
#include "CliRunner.h"
#include "common/PtyPair.h"

#include <QFile>
#include <gtest/gtest.h>

#include <grp.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

using namespace zorvik;
using namespace zorvik::test;

namespace {

QByteArray groupOf(const std::string& device) {
    struct stat st {};
    if (::stat(device.c_str(), &st) != 0)
        return {};
    const group* g = ::getgrgid(st.st_gid);
    return g ? QByteArray(g->gr_name) : QByteArray::number(st.st_gid);
}

} // namespace

TEST(CliPortCauses, ARegularFileIsNotASerialDevice) {
    QTemporaryDir dir;
    const QString file = writeFile(dir, "notes.txt", {'h', 'i'});
    const CliResult r = runCli({"capture", "-p", file});
    EXPECT_EQ(r.exitCode, kFailureStatus);
    EXPECT_TRUE(r.out.isEmpty());
    EXPECT_EQ(r.err, kCommunicationError + file.toUtf8() + ": not a serial device\n");
}

TEST(CliPortCauses, ACharacterDeviceThatIsNoTerminalIsNotASerialDevice) {
    const CliResult r = runCli({"capture", "-p", "/dev/null"});
    EXPECT_EQ(r.exitCode, kFailureStatus);
    EXPECT_EQ(r.err, kCommunicationError + "/dev/null: not a serial device\n");
}

// A terminal no one may open (mode 000) as an ordinary user: permission denied, naming the
// device's group and the command that makes the user a member of it.
TEST(CliPortCauses, ADeviceThisUserMayNotOpenIsPermissionDenied) {
    PtyPair pty;
    ASSERT_TRUE(pty.ok());
    ASSERT_EQ(::chmod(pty.path().c_str(), 0), 0);
    const QByteArray group = groupOf(pty.path());
    // As the administrator the program runs as "nobody", for whom permissions hold.
    const CliResult r =
        runCliUnprivileged({"capture", "--port", QString::fromStdString(pty.path())});
    EXPECT_EQ(r.exitCode, kFailureStatus);
    EXPECT_TRUE(r.out.isEmpty());
    EXPECT_EQ(r.err, kCommunicationError + QByteArray::fromStdString(pty.path()) +
                         ": permission denied. Only members of the group " + group +
                         " may open it; add yourself with sudo usermod -aG " + group +
                         " $USER, then log out and in again\n");
}

// A terminal another program holds exclusively (TIOCEXCL, as serial programs do): busy.
TEST(CliPortCauses, ADeviceAnotherProgramHoldsIsBusy) {
    PtyPair pty;
    ASSERT_TRUE(pty.ok());
    ASSERT_EQ(::chmod(pty.path().c_str(), 0666), 0);
    const int holder = ::open(pty.path().c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    ASSERT_GE(holder, 0);
    ASSERT_EQ(::ioctl(holder, TIOCEXCL), 0);
    // The exclusive hold keeps out everyone but the administrator: the program runs as
    // "nobody" when the test runs as the administrator.
    const CliResult r =
        runCliUnprivileged({"capture", "--port", QString::fromStdString(pty.path())});
    ::close(holder);
    EXPECT_EQ(r.exitCode, kFailureStatus);
    const QByteArray prefix =
        kCommunicationError + QByteArray::fromStdString(pty.path()) + ": busy: held by ";
    EXPECT_TRUE(r.err.startsWith(prefix)) << r.err.toStdString();
    EXPECT_TRUE(r.err.endsWith("another program\n") || r.err.endsWith(")\n"))
        << r.err.toStdString();
    EXPECT_EQ(r.err.count('\n'), 2);
}

TEST(CliPortCauses, AMappedPortWhoseDeviceIsGoneIsNotPresent) {
    QTemporaryDir dir;
    const CliResult r = runCli({"capture", "--port", dir.filePath("gone")});
    EXPECT_EQ(r.err, kCommunicationError + dir.filePath("gone").toUtf8() + ": not present\n");
}
