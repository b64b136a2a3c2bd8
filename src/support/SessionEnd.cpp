// Signals and the session's end turned into one request to shut down, on the window's thread.
#include "support/SessionEnd.h"

#include <QGuiApplication>
#include <QSessionManager>
#include <QSocketNotifier>

#if defined(__unix__) || defined(__APPLE__)
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>
#define ZORVIK_HAVE_POSIX_SIGNALS 1
#endif

namespace zorvik {

namespace {

#ifdef ZORVIK_HAVE_POSIX_SIGNALS
// Read and write ends of the pipe the signal handler writes to.
int signalPipe[2] = {-1, -1};

extern "C" void onSignal(int) {
    const int saved = errno;
    const char byte = 1;
    // A full pipe already holds a request: nothing is lost by a write that fails.
    [[maybe_unused]] const ssize_t n = ::write(signalPipe[1], &byte, 1);
    errno = saved;
}
#endif

} // namespace

void SessionEnd::catchSignals() {
#ifdef ZORVIK_HAVE_POSIX_SIGNALS
    if (signalPipe[0] >= 0)
        return;
    if (::pipe(signalPipe) != 0)
        return;
    for (int fd : signalPipe) {
        ::fcntl(fd, F_SETFD, FD_CLOEXEC);
        ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) | O_NONBLOCK);
    }
    struct sigaction action = {};
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    for (int signal : {SIGTERM, SIGHUP, SIGINT})
        ::sigaction(signal, &action, nullptr);
#endif
}

SessionEnd::SessionEnd(QObject* parent) : QObject(parent) {
#ifdef ZORVIK_HAVE_POSIX_SIGNALS
    if (signalPipe[0] >= 0) {
        notifier_ = new QSocketNotifier(signalPipe[0], QSocketNotifier::Read, this);
        connect(notifier_, &QSocketNotifier::activated, this, [this] {
            char bytes[64];
            while (::read(signalPipe[0], bytes, sizeof bytes) > 0) {
            }
            request();
        });
    }
#endif
    // The desktop session ends (logout): the session manager asks for the data first.
    if (auto* app = qobject_cast<QGuiApplication*>(QCoreApplication::instance())) {
        connect(app, &QGuiApplication::commitDataRequest, this,
                [this](QSessionManager&) { request(); });
    }
}

SessionEnd::~SessionEnd() = default;

void SessionEnd::request() {
    if (ending_)
        return;
    ending_ = true;
    emit requested();
}

} // namespace zorvik
