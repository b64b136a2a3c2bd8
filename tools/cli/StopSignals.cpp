// SIGINT, SIGTERM and SIGPIPE for zorvik-cli: a stop request that the commands poll or watch.
#include "StopSignals.h"

#include "ExitStatus.h"

#include <csignal>

#ifndef _WIN32
#include <fcntl.h>
#include <unistd.h>
#endif

namespace zorvik::cli {

namespace {

volatile std::sig_atomic_t g_stopStatus = 0;
#ifndef _WIN32
int g_pipe[2] = {-1, -1};
#endif

extern "C" void onStopSignal(int signal) {
    if (g_stopStatus == 0)
        g_stopStatus = signal == SIGINT ? kExitInterrupted : kExitTerminated;
#ifndef _WIN32
    if (g_pipe[1] >= 0) {
        const char byte = 1;
        // Async-signal-safe wake-up of an event loop; a full pipe already wakes it.
        [[maybe_unused]] const auto ignored = ::write(g_pipe[1], &byte, 1);
    }
#endif
}

} // namespace

void installStopSignals() {
    static bool installed = false;
    if (installed)
        return;
    installed = true;
#ifdef _WIN32
    std::signal(SIGINT, onStopSignal);
    std::signal(SIGTERM, onStopSignal);
#else
    if (::pipe(g_pipe) == 0) {
        for (const int fd : g_pipe) {
            ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) | O_NONBLOCK);
            ::fcntl(fd, F_SETFD, FD_CLOEXEC);
        }
    }
    struct sigaction action {};
    action.sa_handler = onStopSignal;
    sigemptyset(&action.sa_mask);
    // No restart: a write blocked on a stalled reader returns, so that Ctrl+C always ends
    // the program (LineOutput then drops the line it had not begun to write).
    action.sa_flags = 0;
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);

    struct sigaction ignore {};
    ignore.sa_handler = SIG_IGN;
    sigemptyset(&ignore.sa_mask);
    sigaction(SIGPIPE, &ignore, nullptr);
#endif
}

int stopRequested() {
    return static_cast<int>(g_stopStatus);
}

int stopSignalDescriptor() {
#ifdef _WIN32
    return -1;
#else
    return g_pipe[0];
#endif
}

} // namespace zorvik::cli
