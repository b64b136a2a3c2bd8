// The port mapping zorvik-cli capture uses, and how it tells that a port exists.
#include "PortSettings.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QSerialPortInfo>

namespace zorvik::cli {

std::string settingsFilePath() {
    return QDir(QCoreApplication::applicationDirPath()).filePath("ZORVIK.INI").toStdString();
}

void applyPortsSection(PortMap& ports, const std::string& settingsFile) {
    // TODO: read keys COM1..COM8 of section "PORTS" with the program's profile engine once it
    // is part of the core: for each key with a non-empty value, ports.setDevice(n, value).
    // Until then every port keeps its default device.
    static_cast<void>(ports);
    static_cast<void>(settingsFile);
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
