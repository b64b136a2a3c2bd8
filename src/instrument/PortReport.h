// What happened on each port the program tried, told in words a user can act on: the details
// of the message "Unable to Communicate with Instrument - Check Port Connection!" and the
// lines zorvik-cli capture prints with it.
#pragma once

#include <string>
#include <vector>

namespace zorvik {

/// What one port did when the program tried it.
enum class PortOutcome {
    NotPresent,       ///< its device does not exist
    PermissionDenied, ///< this user may not open the device
    Busy,             ///< another program holds the device
    NotASerialDevice, ///< the device is there but is no serial port (a file, /dev/null)
    OpenFailed,       ///< the device would not open for another reason (detail says which)
    NoAnswer,         ///< opened, but no byte came within the probe time
    Answered,         ///< the probe answered: the port is in use
    PortFailed,       ///< the port failed while frames were being received (detail says how)
    FrameTimedOut,    ///< the rest of a frame did not come within the frame time
};

struct PortReport {
    int port = 0;       ///< n of COMn; 0 for a device named directly
    std::string device; ///< the device the port stands for
    PortOutcome outcome = PortOutcome::NotPresent;
    /// PermissionDenied: the group that may open the device ("dialout"); Busy: the program
    /// that holds it ("minicom (process 4711)"), empty when unknown; OpenFailed, PortFailed:
    /// the system's text.
    std::string detail;
};

/// One line for one port: "COM1 (/dev/ttyUSB0): not present", "COM3 (/dev/ttyACM0):
/// permission denied. Only members of the group dialout may open it; add yourself with
/// sudo usermod -aG dialout $USER, then log out and in again", ...
std::string describePort(const PortReport& report);

/// The lines of every port tried, one per line, each ending with a line break.
std::string describePorts(const std::vector<PortReport>& reports);

} // namespace zorvik
