// Exit statuses of zorvik-cli, the same for every command and the same as zorvik-probe's.
#pragma once

namespace zorvik::cli {

enum ExitStatus : int {
    kExitOk = 0,             ///< the command did what was asked
    kExitFailure = 1,        ///< a file could not be read or written, or the probe did not answer
    kExitUsage = 2,          ///< unknown command or option, missing or bad argument
    kExitInterrupted = 130,  ///< stopped by SIGINT (Ctrl+C)
    kExitOutputClosed = 141, ///< standard output was closed by its reader (broken pipe)
    kExitTerminated = 143,   ///< stopped by SIGTERM
};

} // namespace zorvik::cli
