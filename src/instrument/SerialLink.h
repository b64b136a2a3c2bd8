// The serial port as the receive cycle and the port search use it.
#pragma once

#include "instrument/PortReport.h"

#include <QByteArray>
#include <QObject>
#include <QString>

namespace zorvik {

/// A receive-only serial port: 8 data bits, no parity, one stop bit, no flow control.
/// Reads are asynchronous: one read of n bytes is armed at a time and completes with exactly
/// n bytes (`dataReceived`), or, when it has a time-out, with `readTimedOut`. Nothing here
/// ever blocks the event loop.
class SerialLink : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;
    ~SerialLink() override = default;

    /// Opens the device at the current baud rate (applies the settings); false on failure.
    virtual bool open(const QString& device) = 0;
    /// Closes the port; a pending read is dropped.
    virtual void close() = 0;
    virtual bool isOpen() const = 0;
    /// Device of the open (or last opened) port.
    virtual QString device() const = 0;

    virtual void setBaudRate(qint32 baud) = 0;
    /// The baud rate as read back from the port.
    virtual qint32 baudRate() const = 0;

    /// Discards buffered input and any pending read.
    virtual void resetInput() = 0;
    /// Arms one read of `count` bytes; `timeoutMs` 0 waits without limit. Replaces a pending
    /// read. Completion is always reported from the event loop, never from inside this call.
    virtual void read(int count, int timeoutMs) = 0;
    /// Drops the pending read (buffered input stays).
    virtual void cancelRead() = 0;
    /// True while a read is armed.
    virtual bool readPending() const = 0;

    /// Text of the last error.
    virtual QString errorString() const = 0;
    /// Why the last open() failed, in terms a user can act on (the port number left 0).
    virtual PortReport openFailure() const {
        PortReport r;
        r.device = device().toStdString();
        r.outcome = PortOutcome::OpenFailed;
        r.detail = errorString().toStdString();
        return r;
    }

signals:
    /// The armed read completed with exactly the bytes it asked for.
    void dataReceived(const QByteArray& bytes);
    /// The armed read ran out of time; the bytes that did arrive stay buffered.
    void readTimedOut();
    /// The port failed while open (device gone, I/O error). Raised once; the port is closed.
    void portError(const QString& description);
};

} // namespace zorvik
