// Port names and their devices; the order in which the port search probes them.
#include "instrument/PortMap.h"

namespace zorvik {

std::string PortMap::portName(int n) {
    return "COM" + std::to_string(n);
}

std::string PortMap::defaultDevice(int n) {
    if (n < kFirstComPort || n > kLastComPort)
        return {};
#ifdef _WIN32
    return portName(n);
#else
    static const char* const devices[] = {"/dev/ttyUSB0", "/dev/ttyUSB1", "/dev/ttyACM0",
                                          "/dev/ttyACM1", "/dev/ttyS0",   "/dev/ttyS1",
                                          "/dev/ttyS2",   "/dev/ttyS3"};
    return devices[n - 1];
#endif
}

void PortMap::setDevice(int n, const std::string& path) {
    if (n < kFirstComPort || n > kLastComPort)
        return;
    if (path.empty())
        overrides_[static_cast<std::size_t>(n)].reset();
    else
        overrides_[static_cast<std::size_t>(n)] = path;
}

std::string PortMap::devicePath(int n) const {
    if (n < kFirstComPort || n > kLastComPort)
        return {};
    const auto& o = overrides_[static_cast<std::size_t>(n)];
    return o ? *o : defaultDevice(n);
}

bool PortMap::isMapped(int n) const {
    return n >= kFirstComPort && n <= kLastComPort &&
           overrides_[static_cast<std::size_t>(n)].has_value();
}

std::vector<int> portsToProbe(bool blnAutoPort, int ComPort,
                              const std::array<bool, kLastComPort + 1>& exists) {
    if (!blnAutoPort)
        return {ComPort};
    int highest = 1;
    for (int n = kFirstComPort; n <= kLastComPort; ++n) {
        if (exists[static_cast<std::size_t>(n)])
            highest = n;
    }
    std::vector<int> ports;
    for (int n = kFirstComPort; n <= highest; ++n) {
        if (exists[static_cast<std::size_t>(n)])
            ports.push_back(n);
    }
    return ports;
}

} // namespace zorvik
