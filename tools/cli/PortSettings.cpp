// The port mapping zorvik-cli capture uses, and how it tells that a port exists.
#include "PortSettings.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

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
    const std::string device = ports.devicePath(n);
    return !device.empty() && QFileInfo::exists(QString::fromStdString(device));
}

} // namespace zorvik::cli
