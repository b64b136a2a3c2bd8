// Why a serial device would not open, found out without disturbing it: missing, not for this
// user, held by another program, or no serial port at all.
#pragma once

#include "instrument/PortReport.h"

#include <string>

namespace zorvik {

/// The outcome for COMn (`port`, 0 for a device named directly) whose `device` could not be
/// opened; `systemText` is the error the opening reported, kept as the detail when nothing
/// more precise is found.
PortReport diagnoseDevice(int port, const std::string& device, const std::string& systemText);

/// The program that holds `device` open or locked, as "NAME (process PID)"; empty when none
/// is found (or this user may not see it).
std::string deviceHolder(const std::string& device);

/// True when this user may open `device` for reading and writing (the permissions only;
/// nothing is opened).
bool deviceAccessible(const std::string& device);

} // namespace zorvik
