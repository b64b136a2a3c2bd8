// Port names COM1..COM8 and the devices they stand for on this system.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace zorvik {

inline constexpr int kFirstComPort = 1;
inline constexpr int kLastComPort = 8;

/// Maps the port names COM1..COM8 to devices. On Windows a port is its own name; elsewhere
/// the settings file's "PORTS" section (or a demo run) names a device for COMn, and without
/// one the defaults are COM1 /dev/ttyUSB0, COM2 /dev/ttyUSB1, COM3 /dev/ttyACM0,
/// COM4 /dev/ttyACM1, COM5..COM8 /dev/ttyS0..3.
class PortMap {
public:
    /// "COM" followed by the number, no blanks.
    static std::string portName(int n);
    /// The system's default device for COMn.
    static std::string defaultDevice(int n);

    /// Names the device for COMn (n outside 1..8 is ignored); an empty path restores the
    /// default.
    void setDevice(int n, const std::string& path);
    /// The device for COMn (empty for n outside 1..8).
    std::string devicePath(int n) const;
    /// True when COMn has a device named by the settings file or a demo run.
    bool isMapped(int n) const;

private:
    std::array<std::optional<std::string>, kLastComPort + 1> overrides_;
};

/// The ports the power button probes, in order. With a fixed port only that port; with the
/// automatic search every existing port from COM1 up to the highest existing one (COM1 when
/// none exists, which is then skipped as missing). `exists[n]` tells whether COMn exists.
std::vector<int> portsToProbe(bool blnAutoPort, int ComPort,
                              const std::array<bool, kLastComPort + 1>& exists);

} // namespace zorvik
