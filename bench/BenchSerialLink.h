// A serial port for the display benchmark: the benchmark hands it bytes as if they had just
// come off the line, and it completes the armed reads from them.
#pragma once

#include "instrument/SerialLink.h"

#include <QMetaObject>

namespace zorvik::bench {

/// Holds what has arrived and completes the armed read as soon as enough bytes are there:
/// at once when the bytes come in, from the event loop when the read is armed on bytes that
/// are already waiting (a read never completes from inside read()).
class BenchSerialLink final : public SerialLink {
public:
    bool open(const QString& device) override {
        device_ = device;
        open_ = true;
        buffer_.clear();
        return true;
    }
    void close() override {
        open_ = false;
        pending_ = 0;
    }
    bool isOpen() const override { return open_; }
    QString device() const override { return device_; }
    void setBaudRate(qint32 baud) override { baud_ = baud; }
    qint32 baudRate() const override { return baud_; }
    void resetInput() override {
        buffer_.clear();
        pending_ = 0;
    }
    void read(int count, int) override {
        pending_ = count;
        if (buffer_.size() >= count)
            QMetaObject::invokeMethod(
                this, [this] { deliver(); }, Qt::QueuedConnection);
    }
    void cancelRead() override { pending_ = 0; }
    bool readPending() const override { return pending_ > 0; }
    QString errorString() const override { return {}; }

    /// Bytes arrive on the line.
    void arrive(const QByteArray& bytes) {
        if (!open_)
            return;
        buffer_.append(bytes);
        deliver();
    }

private:
    void deliver() {
        if (pending_ <= 0 || buffer_.size() < pending_)
            return;
        const QByteArray bytes = buffer_.left(pending_);
        buffer_.remove(0, pending_);
        pending_ = 0;
        emit dataReceived(bytes);
    }

    bool open_ = false;
    QString device_;
    qint32 baud_ = 19200;
    int pending_ = 0;
    QByteArray buffer_;
};

} // namespace zorvik::bench
