// One run of zorvik-cli capture: the port search, the receive cycle and the printed frames.
#include "CaptureSession.h"

#include "Commands.h"
#include "ExitStatus.h"
#include "PortSettings.h"
#include "StopSignals.h"

#include <QSocketNotifier>
#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>

#ifndef _WIN32
#include <unistd.h>
#endif

namespace zorvik::cli {

namespace {

/// What the window shows when the probe cannot be reached or the port fails.
constexpr const char* kCommunicationError =
    "Unable to Communicate with Instrument - Check Port Connection!";

} // namespace

CaptureSession::CaptureSession(CaptureOptions options, PortMap ports, OutputSink& out,
                               QObject* parent)
    : QObject(parent), options_(std::move(options)), ports_(std::move(ports)),
      link_(serial_, ports_, [this](int n) { return comPortExists(ports_, n); }), out_(out),
      reporter_(options_.format, options_.events, out) {
    connect(&link_, &InstrumentLink::searchFinished, this, &CaptureSession::onSearchFinished);
    connect(&link_, &InstrumentLink::received, this, &CaptureSession::onReceived);
    connect(&link_, &InstrumentLink::failed, this, &CaptureSession::onFailed);
    limit_.setSingleShot(true);
    limit_.setTimerType(Qt::PreciseTimer);
    connect(&limit_, &QTimer::timeout, this, [this] { finish(kExitOk); });
    if (const int fd = stopSignalDescriptor(); fd >= 0) {
        stopNotifier_ = new QSocketNotifier(fd, QSocketNotifier::Read, this);
        connect(stopNotifier_, &QSocketNotifier::activated, this, &CaptureSession::onStopSignal);
    }
}

CaptureSession::~CaptureSession() {
    link_.close();
}

void CaptureSession::start() {
    if (!options_.rawPath.empty()) {
        raw_.open(options_.rawPath, std::ios::binary | std::ios::trunc);
        if (!raw_) {
            finishWithError(kExitFailure,
                            "cannot write " + options_.rawPath + ": " + std::strerror(errno));
            return;
        }
    }
    if (const int status = stopRequested()) {
        finish(stopFailure(status));
        return;
    }
    if (!options_.device.empty()) {
        // A device path named on the command line stands in for COM1 during this run.
        ports_.setDevice(kFirstComPort, options_.device);
        link_.startSearch(false, kFirstComPort);
    } else if (options_.comPort != 0) {
        link_.startSearch(false, options_.comPort);
    } else {
        link_.startSearch(true, kFirstComPort);
    }
}

void CaptureSession::onSearchFinished(bool answered, int /*port*/) {
    if (done_)
        return;
    if (!answered) {
        fail(link_.lastSearch());
        return;
    }
    started_ = true;
    if (!reporter_.start()) {
        finish(outputFailure(out_));
        return;
    }
    // Reception as after POWER: acquisition on, input reset, the two-byte probe armed. The
    // time limit counts from here, so a slow port search does not eat into it.
    link_.machine().blnAcquire = true;
    link_.resetAndArm();
    if (options_.seconds) {
        const double ms = std::ceil(*options_.seconds * 1000.0);
        limit_.start(static_cast<int>(std::min(ms, 2147483647.0)));
    }
}

void CaptureSession::onReceived(const ReceiveStep& step) {
    if (done_)
        return;
    if (raw_.is_open()) {
        const auto& bytes = link_.machine().Value();
        raw_.write(reinterpret_cast<const char*>(bytes.data()),
                   static_cast<std::streamsize>(bytes.size()));
        raw_.flush();
        if (!raw_) {
            finishWithError(kExitFailure, "cannot write " + options_.rawPath);
            return;
        }
    }
    // Each read's lines go out at once: capture is watched as it runs.
    if (!reporter_.report(step.event, link_.machine()) || !out_.flush()) {
        finish(outputFailure(out_));
        return;
    }
    if (options_.frames && reporter_.framesAccepted() >= *options_.frames)
        finish(kExitOk);
}

void CaptureSession::onFailed() {
    fail({link_.lastFailure()});
}

void CaptureSession::fail(std::vector<PortReport> reports) {
    if (done_)
        return;
    // The window's message, then why: one line for each port tried, as the message's
    // details in the window.
    std::string text = kCommunicationError;
    text += '\n';
    for (PortReport& r : reports) {
        // A device named on the command line is no COMn.
        if (!options_.device.empty())
            r.port = 0;
        text += describePort(r);
        text += '\n';
    }
    std::fputs(text.c_str(), stderr);
    std::fflush(stderr);
    finish(kExitFailure);
}

void CaptureSession::onStopSignal() {
#ifndef _WIN32
    char drained[16];
    while (::read(stopSignalDescriptor(), drained, sizeof drained) > 0) {
    }
#endif
    if (done_)
        return;
    if (const int status = stopRequested())
        finish(stopFailure(status));
}

void CaptureSession::finish(int status) {
    if (done_)
        return;
    done_ = true;
    limit_.stop();
    link_.close();
    if (raw_.is_open())
        raw_.close();
    // The frames taken so far are the capture's result, also after Ctrl+C or a port that
    // failed later: an output file is put in place. When the probe was never reached, or the
    // output itself failed, nothing is.
    if (started_ && !out_.failed() && !out_.finish() && status == kExitOk) {
        if (!options_.outputPath.empty() && !out_.closedByReader()) {
            printError(options_.outputPath + ": " + out_.errorText());
            status = kExitFailure;
        } else {
            status = outputFailure(out_);
        }
    }
    emit finished(status);
}

void CaptureSession::finishWithError(int status, const std::string& text) {
    printError(text);
    finish(status);
}

} // namespace zorvik::cli
