// The serial link on QSerialPort.
#pragma once

#include "instrument/SerialLink.h"

#include <QSerialPort>
#include <QTimer>

namespace zorvik {

class QtSerialLink final : public SerialLink {
    Q_OBJECT
public:
    explicit QtSerialLink(QObject* parent = nullptr);
    ~QtSerialLink() override;

    bool open(const QString& device) override;
    void close() override;
    bool isOpen() const override;
    QString device() const override;
    void setBaudRate(qint32 baud) override;
    qint32 baudRate() const override;
    void resetInput() override;
    void read(int count, int timeoutMs) override;
    void cancelRead() override;
    bool readPending() const override { return pendingCount_ > 0; }
    QString errorString() const override;

    /// Input that waits in the program beyond this many bytes (what the system's own serial
    /// buffer holds, about two seconds of the line) is dropped, oldest first, while no read or
    /// a read without a time-out is armed; such a read may ask for up to this many bytes.
    static constexpr qint64 kMaxBacklog = 4096;
    /// Bytes dropped so far because the program fell behind the line.
    qint64 bytesDiscarded() const { return discarded_; }

private:
    void scheduleDelivery();
    void deliver();
    void dropBacklog();
    void onError(QSerialPort::SerialPortError error);
    void onTimeout();

    QSerialPort port_;
    QTimer timeout_;
    qint32 baud_ = 19200;
    int pendingCount_ = 0;
    qint64 discarded_ = 0;
    bool deliveryQueued_ = false;
    QString lastError_;
    QString device_;
};

} // namespace zorvik
