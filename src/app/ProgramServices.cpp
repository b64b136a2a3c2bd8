// The services the program's windows share.
#include "app/ProgramServices.h"

#include "app/frmMain.h"

namespace zorvik {

bool comPortExists(const PortMap& ports, const std::function<bool(const QString&)>& deviceExists,
                   int n) {
    const std::string device = ports.devicePath(n);
    if (device.empty() || !deviceExists)
        return false;
    return deviceExists(QString::fromStdString(device));
}

ProgramServices::ProgramServices(SerialLink& serial, const PortMap& ports,
                                 std::function<bool(const QString&)> deviceExists)
    : link(serial, ports,
           [&ports, deviceExists](int n) { return comPortExists(ports, deviceExists, n); }),
      serial_(serial), ports_(ports), deviceExists_(std::move(deviceExists)) {
    feed.listenTo(link);
}

void ProgramServices::handTo(MainWindowServices& s) {
    s.serial = &serial_;
    s.ports = const_cast<PortMap*>(&ports_);
    s.deviceExists = deviceExists_;
    s.ini = &ini;
    s.printing = &printing;
    s.link = &link;
    s.feed = &feed;
}

} // namespace zorvik
