// The serial ports of this computer: COM1 to COM8 and the others, with what the system knows.
#include "instrument/PortInventory.h"

#include "instrument/PortDiagnosis.h"

#include <QFileInfo>
#include <QSerialPortInfo>

#include <algorithm>
#include <cstdio>

namespace zorvik {

namespace {

/// A device's path with symbolic links followed (/dev/serial/by-id/... is /dev/ttyUSB0).
QString canonical(const QString& path) {
    const QString target = QFileInfo(path).canonicalFilePath();
    return target.isEmpty() ? path : target;
}

void takeSystemFacts(PortEntry& e, const QSerialPortInfo& info) {
    e.description = info.description().toStdString();
    e.manufacturer = info.manufacturer().toStdString();
    e.serialNumber = info.serialNumber().toStdString();
    if (info.hasVendorIdentifier())
        e.vendorId = info.vendorIdentifier();
    if (info.hasProductIdentifier())
        e.productId = info.productIdentifier();
}

} // namespace

std::vector<PortEntry> portInventory(const PortMap& ports) {
    const QList<QSerialPortInfo> system = QSerialPortInfo::availablePorts();
    std::vector<PortEntry> entries;
    std::vector<QString> named;
    for (int n = kFirstComPort; n <= kLastComPort; ++n) {
        PortEntry e;
        e.port = n;
        e.device = ports.devicePath(n);
        e.mapped = ports.isMapped(n);
        const QString device = QString::fromStdString(e.device);
        e.present = QFileInfo::exists(device);
        e.accessible = e.present && deviceAccessible(e.device);
        const QString real = canonical(device);
        named.push_back(real);
        for (const QSerialPortInfo& info : system) {
            if (canonical(info.systemLocation()) == real)
                takeSystemFacts(e, info);
        }
        entries.push_back(std::move(e));
    }
    // The first COMn whose own device is not there can name another device without hiding
    // one that is.
    std::string freePort;
    for (const PortEntry& e : entries) {
        if (!e.present) {
            freePort = PortMap::portName(e.port);
            break;
        }
    }
    std::vector<PortEntry> others;
    for (const QSerialPortInfo& info : system) {
        const QString real = canonical(info.systemLocation());
        if (std::find(named.begin(), named.end(), real) != named.end())
            continue;
        PortEntry e;
        e.device = info.systemLocation().toStdString();
        e.present = QFileInfo::exists(info.systemLocation());
        e.accessible = e.present && deviceAccessible(e.device);
        takeSystemFacts(e, info);
        if (!freePort.empty())
            e.portsLine = freePort + "=" + e.device;
        others.push_back(std::move(e));
    }
    std::sort(others.begin(), others.end(),
              [](const PortEntry& a, const PortEntry& b) { return a.device < b.device; });
    entries.insert(entries.end(), others.begin(), others.end());
    return entries;
}

std::string usbIds(const PortEntry& e) {
    if (!e.vendorId || !e.productId)
        return {};
    char text[16];
    std::snprintf(text, sizeof text, "%04x:%04x", *e.vendorId, *e.productId);
    return text;
}

std::string usbSummary(const PortEntry& e) {
    std::string text;
    auto add = [&text](const std::string& part) {
        if (part.empty())
            return;
        if (!text.empty())
            text += ", ";
        text += part;
    };
    add(e.description);
    add(e.manufacturer);
    if (!e.serialNumber.empty())
        add("serial " + e.serialNumber);
    add(usbIds(e));
    return text;
}

} // namespace zorvik
