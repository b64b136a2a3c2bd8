// The port mapping zorvik-cli capture uses, and how it tells that a port exists.
#include "PortSettings.h"

#include "storage/SettingsFile.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QSerialPortInfo>
#include <QStandardPaths>

namespace zorvik::cli {

std::string settingsFilePath() {
    // The file the window reads: beside the program, or in the per-user configuration folder
    // when the program's folder cannot be written (an installed program), where until the
    // window first saves its copy the file beside the program still counts.
    const QString userFolder = QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation);
    return SettingsFile::location(QCoreApplication::applicationDirPath().toStdString(),
                                  userFolder.toStdString())
        .readPath()
        .string();
}

void applyPortsSection(PortMap& ports, const std::string& settingsFile) {
    for (const auto& [n, device] : SettingsFile::readPorts(settingsFile))
        ports.setDevice(n, device);
}

PortMap capturePortMap() {
    PortMap ports;
    applyPortsSection(ports, settingsFilePath());
    return ports;
}

bool comPortExists(const PortMap& ports, int n) {
    const QString device = QString::fromStdString(ports.devicePath(n));
    if (device.isEmpty())
        return false;
#ifdef _WIN32
    // Windows ports have no device node: a port exists when the system lists it.
    for (const QSerialPortInfo& info : QSerialPortInfo::availablePorts()) {
        if (info.portName().compare(device, Qt::CaseInsensitive) == 0)
            return true;
    }
    return false;
#else
    return QFileInfo::exists(device);
#endif
}

} // namespace zorvik::cli
