// The services the program's windows share, made once by the composition root and handed to
// the main window: the INI object every file goes through, the instrument link on the serial
// control, the feed of decoded frames and the printing services.
#pragma once

#include "display/AcquisitionFeed.h"
#include "instrument/InstrumentLink.h"
#include "printing/PrintingServices.h"
#include "storage/cInifile.h"

#include <QString>
#include <functional>

namespace zorvik {

struct MainWindowServices;

/// True when COMn names a device that exists (`deviceExists` looks without opening it).
bool comPortExists(const PortMap& ports, const std::function<bool(const QString&)>& deviceExists,
                   int n);

class ProgramServices {
public:
    /// The link drives `serial` on the devices `ports` names. Every read of the receive cycle
    /// that carries a frame goes out through `feed`.
    ProgramServices(SerialLink& serial, const PortMap& ports,
                    std::function<bool(const QString&)> deviceExists);
    ProgramServices(const ProgramServices&) = delete;
    ProgramServices& operator=(const ProgramServices&) = delete;

    /// Puts these services, the serial control, the ports and `deviceExists` into `s`.
    void handTo(MainWindowServices& s);

    cInifile ini;
    PrintingServices printing;
    InstrumentLink link;
    AcquisitionFeed feed;

private:
    SerialLink& serial_;
    const PortMap& ports_;
    std::function<bool(const QString&)> deviceExists_;
};

} // namespace zorvik
