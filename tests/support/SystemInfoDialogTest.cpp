// The system-information window: its report, the serial-port rows from the caller, copying.
#include "support/SystemInfoDialog.h"

#include <QApplication>
#include <QClipboard>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSysInfo>
#include <gtest/gtest.h>

namespace zorvik::test {
namespace {

SystemFacts facts() {
    SystemFacts f;
    f.program = "Zorvik 1.1.1";
    f.osName = "Debian GNU/Linux 12 (bookworm)";
    f.osVersion = "12";
    f.kernel = "linux 6.1.0-18-amd64";
    f.cpuArchitecture = "x86_64";
    f.buildArchitecture = "x86_64";
    f.qtRuntime = "6.4.2";
    f.qtBuild = "6.4.2";
    return f;
}

TEST(SystemInfoReport, ListsTheSystemAndEverySerialPort) {
    const QString report = SystemInfoDialog::composeReport(
        facts(), {{"COM1", "/dev/ttyUSB0", true, true, "FT232R USB UART, FTDI, 0403:6001"},
                  {"COM2", "/dev/ttyUSB1", true, false, ""},
                  {"COM3", "/dev/ttyACM0", false, false, ""},
                  {"", "/dev/ttyUSB2", true, true, "CP2102, 10c4:ea60; add COM3=/dev/ttyUSB2"}});
    EXPECT_EQ(report, "Program           Zorvik 1.1.1\n"
                      "Operating system  Debian GNU/Linux 12 (bookworm)\n"
                      "OS version        12\n"
                      "Kernel            linux 6.1.0-18-amd64\n"
                      "CPU architecture  x86_64\n"
                      "Qt version        6.4.2\n"
                      "\n"
                      "Serial ports\n"
                      "  Port   Device        Present  Access  System\n"
                      "  COM1   /dev/ttyUSB0  yes      yes     FT232R USB UART, FTDI, 0403:6001\n"
                      "  COM2   /dev/ttyUSB1  yes      no\n"
                      "  COM3   /dev/ttyACM0  no       -\n"
                      "\n"
                      "Other serial devices\n"
                      "  Port   Device        Present  Access  System\n"
                      "         /dev/ttyUSB2  yes      yes     CP2102, 10c4:ea60; add "
                      "COM3=/dev/ttyUSB2");
}

TEST(SystemInfoReport, SaysSoWhenNoPortIsMapped) {
    const QString report = SystemInfoDialog::composeReport(facts(), {});
    EXPECT_TRUE(report.endsWith("Serial ports\n  No serial ports are mapped."));
}

TEST(SystemInfoReport, NamesTheBuildWhenItDiffersFromTheRunningSystem) {
    SystemFacts f = facts();
    f.buildArchitecture = "i386";
    f.qtBuild = "6.4.0";
    const QString report = SystemInfoDialog::composeReport(f, {});
    EXPECT_TRUE(report.contains("CPU architecture  x86_64 (program built for i386)\n"));
    EXPECT_TRUE(report.contains("Qt version        6.4.2 (program built with 6.4.0)\n"));
}

TEST(SystemInfoFacts, AreThoseOfThisComputer) {
    const SystemFacts f = SystemFacts::current();
    EXPECT_EQ(f.osName, QSysInfo::prettyProductName());
    EXPECT_EQ(f.cpuArchitecture, QSysInfo::currentCpuArchitecture());
    EXPECT_EQ(f.qtRuntime, QString(qVersion()));
    EXPECT_TRUE(f.program.startsWith("Zorvik "));
}

TEST(SystemInfoDialogWindow, ShowsReadOnlyCopyableTextWithTheCallersPorts) {
    SystemInfoDialog dialog({{"COM2", "/dev/ttyUSB1", true, true, {}}});
    EXPECT_EQ(dialog.windowTitle(), "System Information");
    EXPECT_TRUE(dialog.txtReport->isReadOnly());
    EXPECT_TRUE(dialog.txtReport->textInteractionFlags().testFlag(Qt::TextSelectableByMouse));
    EXPECT_TRUE(dialog.reportText().contains("  COM2   /dev/ttyUSB1  yes"));
    EXPECT_EQ(dialog.reportText(),
              SystemInfoDialog::composeReport(SystemFacts::current(),
                                              {{"COM2", "/dev/ttyUSB1", true, true, {}}}));

    dialog.setSerialPorts({{"COM4", "/dev/ttyACM1", false, false, {}}});
    EXPECT_FALSE(dialog.reportText().contains("COM2"));
    EXPECT_TRUE(dialog.reportText().contains("  COM4   /dev/ttyACM1  no"));

    dialog.cmdCopy->click();
    EXPECT_EQ(QApplication::clipboard()->text(), dialog.reportText());
}

TEST(SystemInfoDialogWindow, CloseButtonClosesTheWindow) {
    SystemInfoDialog dialog;
    dialog.show();
    ASSERT_TRUE(dialog.isVisible());
    dialog.cmdClose->click();
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(dialog.result(), QDialog::Rejected);
}

} // namespace
} // namespace zorvik::test
