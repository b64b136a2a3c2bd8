// SIGINT, SIGTERM and SIGPIPE for zorvik-cli: a stop request that the commands poll or watch.
#pragma once

namespace zorvik::cli {

/// Installs the handlers once: SIGINT and SIGTERM only record a stop request (the running
/// command ends after a whole line, closes its files and exits with 130 or 143),
/// and SIGPIPE is ignored so that a closed standard output shows up as a failed write.
void installStopSignals();

/// 0 while no stop was requested; otherwise the exit status the signal asks for.
int stopRequested();

/// A descriptor that becomes readable once a stop is requested, for an event loop to watch;
/// -1 where the system offers none.
int stopSignalDescriptor();

} // namespace zorvik::cli
