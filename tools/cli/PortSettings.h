// The port mapping zorvik-cli capture uses, and how it tells that a port exists.
#pragma once

#include "instrument/PortMap.h"

#include <string>

namespace zorvik::cli {

/// The settings file the window uses: ZORVIK.INI in the folder of the running executable when
/// that folder can be written, otherwise ZORVIK.INI in the per-user configuration folder of
/// the application "zorvik" (created if needed, as the window does). Needs the application
/// object, named "zorvik".
std::string settingsFilePath();

/// Takes the devices named in the "PORTS" section of the settings file (keys COM1..COM8,
/// each a device path) into `ports`; ports the section does not name keep their defaults.
/// A missing file or section changes nothing.
void applyPortsSection(PortMap& ports, const std::string& settingsFile);

/// The defaults of the port mapping with the settings file's "PORTS" section applied.
PortMap capturePortMap();

/// True when the device of COMn exists; the port is not opened.
bool comPortExists(const PortMap& ports, int n);

} // namespace zorvik::cli
