// The port search and the receive cycle on the serial link.
#include "instrument/InstrumentLink.h"

#include <array>
#include <span>

namespace zorvik {

InstrumentLink::InstrumentLink(SerialLink& serial, const PortMap& ports,
                               std::function<bool(int)> comPortExists, QObject* parent)
    : QObject(parent), serial_(serial), ports_(ports), comPortExists_(std::move(comPortExists)) {
    connect(&serial_, &SerialLink::dataReceived, this, &InstrumentLink::onData);
    connect(&serial_, &SerialLink::readTimedOut, this, &InstrumentLink::onTimedOut);
    connect(&serial_, &SerialLink::portError, this, &InstrumentLink::onPortError);
}

void InstrumentLink::startSearch(bool blnAutoPort, int ComPort) {
    cancelSearch();
    machine_.stop();
    serial_.close();
    serial_.setBaudRate(kBaudRate);
    std::array<bool, kLastComPort + 1> exists{};
    if (blnAutoPort) {
        for (int n = kFirstComPort; n <= kLastComPort; ++n)
            exists[static_cast<std::size_t>(n)] = comPortExists_ && comPortExists_(n);
    }
    searchPorts_ = portsToProbe(blnAutoPort, ComPort, exists);
    searchReport_.clear();
    const int first = blnAutoPort ? kFirstComPort : ComPort;
    const int last = blnAutoPort ? kLastComPort : ComPort;
    for (int n = first; n <= last; ++n) {
        PortReport r;
        r.port = n;
        r.device = ports_.devicePath(n);
        r.outcome = PortOutcome::NotPresent;
        searchReport_.push_back(std::move(r));
    }
    searchIndex_ = 0;
    searching_ = true;
    probeNext();
}

void InstrumentLink::cancelSearch() {
    if (!searching_)
        return;
    searching_ = false;
    probing_ = 0;
    serial_.close();
}

bool InstrumentLink::openPort(int n) {
    serial_.setBaudRate(kBaudRate);
    port_ = n;
    const std::string device = ports_.devicePath(n);
    if (serial_.open(QString::fromStdString(device)))
        return true;
    failure_ = serial_.openFailure();
    failure_.port = n;
    failure_.device = device;
    return false;
}

PortReport* InstrumentLink::reportOf(int port) {
    for (PortReport& r : searchReport_) {
        if (r.port == port)
            return &r;
    }
    return nullptr;
}

void InstrumentLink::probeNext() {
    while (searchIndex_ < searchPorts_.size()) {
        const int n = searchPorts_[searchIndex_++];
        // A port that cannot be opened simply does not answer; why is kept for the user.
        if (!openPort(n)) {
            if (PortReport* r = reportOf(n))
                *r = failure_;
            continue;
        }
        serial_.resetInput();
        probing_ = n;
        serial_.read(1, kProbeTimeoutMs);
        return;
    }
    searching_ = false;
    probing_ = 0;
    serial_.close();
    emit searchFinished(false, 0);
}

void InstrumentLink::probeAnswered(bool answered) {
    const int port = probing_;
    probing_ = 0;
    if (PortReport* r = reportOf(port))
        r->outcome = answered ? PortOutcome::Answered : PortOutcome::NoAnswer;
    if (answered) {
        searching_ = false;
        emit searchFinished(true, port);
        return;
    }
    serial_.close();
    // The next port is probed from the event loop, never from inside a serial signal.
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (searching_)
                probeNext();
        },
        Qt::QueuedConnection);
}

void InstrumentLink::resetAndArm() {
    serial_.resetInput();
    const ReadRequest r = machine_.arm();
    serial_.read(r.count, r.timed ? kFrameTimeoutMs : 0);
}

void InstrumentLink::stopReception() {
    machine_.stop();
    serial_.cancelRead();
}

void InstrumentLink::close() {
    cancelSearch();
    machine_.stop();
    serial_.close();
}

void InstrumentLink::onData(const QByteArray& bytes) {
    if (probing_ != 0) {
        // A probe that reads the byte 0x00 counts as no answer.
        probeAnswered(!bytes.isEmpty() && bytes.at(0) != 0);
        return;
    }
    const auto* data = reinterpret_cast<const std::uint8_t*>(bytes.constData());
    carryOut(machine_.onData(std::span(data, static_cast<std::size_t>(bytes.size()))));
}

void InstrumentLink::onTimedOut() {
    if (probing_ != 0) {
        probeAnswered(false);
        return;
    }
    const ReceiveStep step = machine_.onTimeout();
    if (step.event == ReceiveEvent::TimedOut) {
        failure_ =
            PortReport{port_, serial_.device().toStdString(), PortOutcome::FrameTimedOut, {}};
        emit failed();
    }
}

void InstrumentLink::onPortError(const QString& description) {
    if (probing_ != 0) {
        probeAnswered(false);
        return;
    }
    machine_.stop();
    failure_ = PortReport{port_, serial_.device().toStdString(), PortOutcome::PortFailed,
                          description.toStdString()};
    emit failed();
}

void InstrumentLink::carryOut(const ReceiveStep& step) {
    if (step.event == ReceiveEvent::Ignored)
        return;
    emit received(step);
    if (step.show)
        emit frameDecoded(machine_.frame());
    // The window may have stopped reception or closed the port while it handled the step.
    if (machine_.pending() != step.next || !serial_.isOpen())
        return;
    if (step.resetInput)
        serial_.resetInput();
    if (step.next.count > 0)
        serial_.read(step.next.count, step.next.timed ? kFrameTimeoutMs : 0);
}

} // namespace zorvik
