// The instrument link: finds the probe on a port and runs the receive cycle on it.
#pragma once

#include "instrument/PortMap.h"
#include "instrument/PortReport.h"
#include "instrument/ReceiveMachine.h"
#include "instrument/SerialLink.h"

#include <QObject>
#include <functional>
#include <vector>

namespace zorvik {

/// Time-out of the one-byte read that asks a port whether the probe is there.
inline constexpr int kProbeTimeoutMs = 1000;
/// The line's only baud rate.
inline constexpr qint32 kBaudRate = 19200;

/// Drives the serial port for the main window. The port search and the reads of the receive
/// cycle are asynchronous waits with the instrument's time-outs, so the window keeps
/// answering while a port is probed or a frame is read. The window reacts to `received`
/// (one per completed read, before the next read is armed), `searchFinished` and `failed`;
/// whatever uses the trace gets `frameDecoded` through the AcquisitionFeed.
class InstrumentLink : public QObject {
    Q_OBJECT
public:
    /// `comPortExists(n)` tells whether COMn exists, without opening it.
    InstrumentLink(SerialLink& serial, const PortMap& ports, std::function<bool(int)> comPortExists,
                   QObject* parent = nullptr);

    SerialLink& serial() { return serial_; }
    ReceiveMachine& machine() { return machine_; }
    const ReceiveMachine& machine() const { return machine_; }
    const PortMap& ports() const { return ports_; }

    /// Probes the ports in turn (only `ComPort` unless `blnAutoPort`): each is opened at
    /// 19200 baud, its input reset, and answers when a one-byte read brings a non-zero byte
    /// within 1000 ms. Ends with `searchFinished`; the answering port stays open.
    void startSearch(bool blnAutoPort, int ComPort);
    /// Abandons a running search quietly (the port is closed, no signal).
    void cancelSearch();
    bool searching() const { return searching_; }
    /// What happened on each port the last search tried, in port order: with the automatic
    /// search COM1 to COM8 (a port whose device does not exist is "not present"), otherwise
    /// the one port.
    const std::vector<PortReport>& lastSearch() const { return searchReport_; }
    /// Why the link failed while receiving (valid after `failed`).
    const PortReport& lastFailure() const { return failure_; }

    /// Opens COMn (its mapped device) at 19200 baud; false when it cannot be opened (then
    /// lastFailure() says why).
    bool openPort(int n);
    /// Starts or resumes the receive cycle: resets the input and arms the two-byte probe.
    void resetAndArm();
    /// Stops reception: the pending read is dropped, the port stays open.
    void stopReception();
    /// Stops the serial control: reception stops and the port closes.
    void close();

signals:
    /// The search ended: `answered` with the port that answered.
    void searchFinished(bool answered, int port);
    /// A read of the receive cycle completed; the link arms `step.next` right after.
    void received(const zorvik::ReceiveStep& step);
    /// Right after `received` for a step that shows the record: the frame to show.
    void frameDecoded(const zorvik::DecodedFrame& frame);
    /// The port failed while receiving, or the rest of a frame did not come in time.
    void failed();

private:
    void probeNext();
    void probeAnswered(bool answered);
    void onData(const QByteArray& bytes);
    void onTimedOut();
    void onPortError(const QString& description);
    PortReport* reportOf(int port);
    void carryOut(const ReceiveStep& step);

    SerialLink& serial_;
    const PortMap& ports_;
    std::function<bool(int)> comPortExists_;
    ReceiveMachine machine_;

    bool searching_ = false;
    std::vector<int> searchPorts_;
    std::size_t searchIndex_ = 0;
    int probing_ = 0;
    int port_ = 0; ///< the port opened last
    std::vector<PortReport> searchReport_;
    PortReport failure_;
};

} // namespace zorvik
