// The serial link on QSerialPort: asynchronous reads of exactly n bytes with a time-out.
#include "instrument/QtSerialLink.h"

#include "instrument/PortDiagnosis.h"

#include <QMetaObject>

#include <algorithm>

namespace zorvik {

QtSerialLink::QtSerialLink(QObject* parent) : SerialLink(parent) {
    timeout_.setSingleShot(true);
    timeout_.setTimerType(Qt::PreciseTimer);
    connect(&timeout_, &QTimer::timeout, this, &QtSerialLink::onTimeout);
    connect(&port_, &QSerialPort::readyRead, this, &QtSerialLink::deliver);
    connect(&port_, &QSerialPort::errorOccurred, this, &QtSerialLink::onError);
    port_.setReadBufferSize(kMaxBacklog);
}

QtSerialLink::~QtSerialLink() {
    close();
}

bool QtSerialLink::open(const QString& device) {
    close();
    lastError_.clear();
    device_ = device;
    portFull_ = false;
    port_.setPortName(device);
    if (!port_.open(QIODevice::ReadOnly)) {
        lastError_ = port_.errorString();
        openFailure_ = diagnoseDevice(0, device.toStdString(), lastError_.toStdString());
        return false;
    }
    const bool configured = port_.setBaudRate(baud_) && port_.setDataBits(QSerialPort::Data8) &&
                            port_.setParity(QSerialPort::NoParity) &&
                            port_.setStopBits(QSerialPort::OneStop) &&
                            port_.setFlowControl(QSerialPort::NoFlowControl);
    if (!configured) {
        lastError_ = port_.errorString();
        port_.close();
        openFailure_ = diagnoseDevice(0, device.toStdString(), lastError_.toStdString());
        return false;
    }
    return true;
}

void QtSerialLink::close() {
    cancelRead();
    if (port_.isOpen())
        port_.close();
}

bool QtSerialLink::isOpen() const {
    return port_.isOpen();
}

QString QtSerialLink::device() const {
    return device_;
}

void QtSerialLink::setBaudRate(qint32 baud) {
    baud_ = baud;
    if (port_.isOpen())
        port_.setBaudRate(baud);
}

qint32 QtSerialLink::baudRate() const {
    return port_.isOpen() ? port_.baudRate() : baud_;
}

void QtSerialLink::resetInput() {
    cancelRead();
    if (port_.isOpen()) {
        // Bytes already taken from the device into the port's own buffer are dropped too.
        port_.clear(QSerialPort::Input);
        port_.readAll();
    }
}

void QtSerialLink::read(int count, int timeoutMs) {
    pendingCount_ = count;
    timeout_.stop();
    if (count <= 0)
        return;
    if (timeoutMs > 0)
        timeout_.start(timeoutMs);
    // The port's own buffer must be able to hold the whole read, and a port that stopped
    // taking bytes because its buffer was full takes them again.
    const qint64 room = std::max<qint64>(kMaxBacklog, count);
    if (portFull_ || port_.readBufferSize() != room) {
        portFull_ = false;
        port_.setReadBufferSize(room);
    }
    scheduleDelivery();
}

void QtSerialLink::cancelRead() {
    pendingCount_ = 0;
    timeout_.stop();
}

QString QtSerialLink::errorString() const {
    return lastError_;
}

void QtSerialLink::scheduleDelivery() {
    // Data may already be buffered; it is delivered from the event loop so that a handler
    // that re-arms never recurses into itself.
    if (deliveryQueued_)
        return;
    deliveryQueued_ = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            deliveryQueued_ = false;
            deliver();
        },
        Qt::QueuedConnection);
}

void QtSerialLink::deliver() {
    if (!port_.isOpen())
        return;
    // The port stops taking bytes from the system once its own buffer is full (a flood faster
    // than the window shows frames, or a hold with no read armed): the bytes then wait in the
    // system and the line slows to the program's pace, so the program's memory stays bounded
    // and nothing that arrived is dropped by the program. The next read lets it go on.
    if (port_.bytesAvailable() >= port_.readBufferSize())
        portFull_ = true;
    if (pendingCount_ <= 0 || port_.bytesAvailable() < pendingCount_)
        return;
    const QByteArray bytes = port_.read(pendingCount_);
    pendingCount_ = 0;
    timeout_.stop();
    emit dataReceived(bytes);
}

void QtSerialLink::onError(QSerialPort::SerialPortError error) {
    if (error == QSerialPort::NoError || error == QSerialPort::TimeoutError)
        return;
    if (!port_.isOpen())
        return; // a failed open reports through open()'s result
    lastError_ = port_.errorString();
    port_.clearError();
    close();
    emit portError(lastError_);
}

void QtSerialLink::onTimeout() {
    if (pendingCount_ <= 0)
        return;
    pendingCount_ = 0;
    emit readTimedOut();
}

} // namespace zorvik
