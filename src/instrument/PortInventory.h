// The serial ports of this computer as the program sees them: COM1 to COM8 with the device each
// names, whether it is there and may be opened, what the system knows of it (a USB adapter's
// description, maker, serial number, vendor and product), and the other serial devices present
// that no COMn names. Shown by zorvik-cli ports, the System Information window and the Options
// window's port list.
#pragma once

#include "instrument/PortMap.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace zorvik {

struct PortEntry {
    int port = 0;             ///< n of COMn; 0 for a device no COMn names
    std::string device;       ///< the device path
    bool mapped = false;      ///< COMn's device comes from the PORTS section (or a demo run)
    bool present = false;     ///< the device exists
    bool accessible = false;  ///< present, and this user may open it for reading and writing
    std::string description;  ///< the system's description ("FT232R USB UART"), may be empty
    std::string manufacturer; ///< may be empty
    std::string serialNumber; ///< may be empty
    std::optional<std::uint16_t> vendorId;
    std::optional<std::uint16_t> productId;
    /// For a device no COMn names: the PORTS line that would name it ("COM2=/dev/ttyUSB3",
    /// the first COMn whose own device is not present); empty when every COMn's is.
    std::string portsLine;
};

/// COM1..COM8 in order, then the other serial devices present, sorted by device.
std::vector<PortEntry> portInventory(const PortMap& ports);

/// "0403:6001" for a USB adapter, empty otherwise.
std::string usbIds(const PortEntry& entry);
/// The USB facts in one text: "FT232R USB UART, FTDI, serial A9012345, 0403:6001"; empty for a
/// device the system knows nothing of.
std::string usbSummary(const PortEntry& entry);

} // namespace zorvik
