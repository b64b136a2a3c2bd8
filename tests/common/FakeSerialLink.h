// A scripted serial link for tests: the test feeds bytes, time-outs and port failures.
#pragma once

#include "instrument/SerialLink.h"

#include <QMap>
#include <QMetaObject>
#include <QSet>
#include <QStringList>
#include <functional>
#include <vector>

namespace zorvik::test {

class FakeSerialLink final : public SerialLink {
public:
    /// Devices that open; every other device fails to open.
    QSet<QString> openable;
    /// Every call, in order ("open /dev/x", "close", "reset", "read 2", "read 137 timed", ...).
    QStringList calls;
    /// Runs when the port is closed (tests check what had happened by then).
    std::function<void()> onClose;

    bool open(const QString& device) override {
        calls << "open " + device;
        device_ = device;
        if (!openable.contains(device))
            return false;
        open_ = true;
        device_ = device;
        buffer_.clear();
        return true;
    }
    void close() override {
        calls << "close";
        if (onClose && open_)
            onClose();
        open_ = false;
        pending_ = 0;
    }
    bool isOpen() const override { return open_; }
    QString device() const override { return device_; }
    void setBaudRate(qint32 baud) override { baud_ = baud; }
    qint32 baudRate() const override { return baud_; }
    void resetInput() override {
        calls << "reset";
        buffer_.clear();
        pending_ = 0;
    }
    void read(int count, int timeoutMs) override {
        calls << QString("read %1%2").arg(count).arg(timeoutMs > 0 ? " timed" : "");
        pending_ = count;
        timed_ = timeoutMs > 0;
        QMetaObject::invokeMethod(
            this, [this] { deliver(); }, Qt::QueuedConnection);
    }
    void cancelRead() override {
        calls << "cancel";
        pending_ = 0;
    }
    bool readPending() const override { return pending_ > 0; }
    QString errorString() const override { return "fake failure"; }
    /// Why an open failed, by device (devices not named here: "could not be opened: fake
    /// failure").
    QMap<QString, PortReport> failures;
    PortReport openFailure() const override {
        if (failures.contains(device_))
            return failures.value(device_);
        return SerialLink::openFailure();
    }

    /// Bytes arrive on the line.
    void feed(const QByteArray& bytes) {
        if (!open_)
            return;
        buffer_.append(bytes);
        deliver();
    }
    void feed(const std::vector<unsigned char>& bytes) {
        feed(QByteArray(reinterpret_cast<const char*>(bytes.data()),
                        static_cast<qsizetype>(bytes.size())));
    }
    /// The armed read runs out of time (only a timed read has a time-out).
    void timeOut() {
        if (pending_ > 0 && timed_) {
            pending_ = 0;
            emit readTimedOut();
        }
    }
    /// The device goes away.
    void fail() {
        if (!open_)
            return;
        open_ = false;
        pending_ = 0;
        emit portError("device gone");
    }
    int pendingCount() const { return pending_; }
    bool pendingTimed() const { return timed_; }
    qsizetype buffered() const { return buffer_.size(); }

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
    bool timed_ = false;
    QByteArray buffer_;
};

} // namespace zorvik::test
