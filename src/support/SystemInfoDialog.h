// The system-information window opened from the About box: operating system, kernel, CPU
// architecture, Qt version and the serial ports the program maps to COM names.
#pragma once

#include <QDialog>
#include <QList>
#include <QString>

class QPlainTextEdit;
class QPushButton;

namespace zorvik {

/// One serial port as the program sees it: its COM name (empty for a device no COM name
/// stands for), the device, whether the device is present and may be opened by this user, and
/// what the system knows of it (a USB adapter's description, maker, serial number, VID:PID).
struct SerialPortRow {
    QString comName;
    QString devicePath;
    bool exists = false;
    bool accessible = false;
    QString system;
};

/// Facts about the computer the program runs on.
struct SystemFacts {
    QString program;           // title and version of the program
    QString osName;            // e.g. "Debian GNU/Linux 12 (bookworm)"
    QString osVersion;         // e.g. "12"
    QString kernel;            // kernel type and version
    QString cpuArchitecture;   // the CPU the program runs on
    QString buildArchitecture; // the CPU the program was built for
    QString qtRuntime;         // Qt version in use
    QString qtBuild;           // Qt version the program was built with

    /// The facts of this computer and this program.
    static SystemFacts current();
};

class SystemInfoDialog : public QDialog {
    Q_OBJECT

public:
    explicit SystemInfoDialog(const QList<SerialPortRow>& ports = {}, QWidget* parent = nullptr);

    /// Replaces the list of serial ports shown.
    void setSerialPorts(const QList<SerialPortRow>& ports);

    /// The text the window shows.
    QString reportText() const;

    /// The report for the given facts and ports, as the window shows it.
    static QString composeReport(const SystemFacts& facts, const QList<SerialPortRow>& ports);

    QPlainTextEdit* txtReport = nullptr;
    QPushButton* cmdCopy = nullptr;
    QPushButton* cmdClose = nullptr;

private:
    void refresh();

    QList<SerialPortRow> m_ports;
};

} // namespace zorvik
