// zorvik-cli ports: the serial ports COM1 to COM8 and the other serial devices present.
#pragma once

#include "Commands.h"

namespace zorvik::cli {

const Command& portsCommand();
int runPorts(const ParsedArgs& args);

} // namespace zorvik::cli
