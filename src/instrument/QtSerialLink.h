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
    PortReport openFailure() const override { return openFailure_; }

    /// The most bytes the port keeps in the program's memory (what the system's own serial
    /// buffer holds, about two seconds of the line); beyond that the input waits in the system.
    /// A read that asks for more bytes gets room for all of them.
    static constexpr qint64 kMaxBacklog = 4096;
    /// Bytes taken from the system and waiting in the program for a read.
    qint64 bytesWaiting() const { return port_.bytesAvailable(); }

private:
    void scheduleDelivery();
    void deliver();
    void onError(QSerialPort::SerialPortError error);
    void onTimeout();

    QSerialPort port_;
    QTimer timeout_;
    qint32 baud_ = 19200;
    int pendingCount_ = 0;
    bool deliveryQueued_ = false;
    bool portFull_ = false; ///< the port's buffer filled up and it stopped taking bytes
    QString lastError_;
    PortReport openFailure_;
    QString device_;
};

} // namespace zorvik
