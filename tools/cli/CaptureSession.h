// One run of zorvik-cli capture: the port search, the receive cycle and the printed frames.
#pragma once

#include "FrameReporter.h"
#include "OutputSink.h"
#include "instrument/InstrumentLink.h"
#include "instrument/PortMap.h"
#include "instrument/QtSerialLink.h"

#include <QObject>
#include <QTimer>
#include <cstdint>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

class QSocketNotifier;

namespace zorvik::cli {

struct CaptureOptions {
    /// COMn (1..8) to search only that port; 0 with `device` set, or 0 for the search.
    int comPort = 0;
    /// A device opened directly instead of a mapped port.
    std::string device;
    std::optional<std::int64_t> frames; ///< stop after this many accepted frames
    std::optional<double> seconds;      ///< stop after this long of reception
    OutputFormat format = OutputFormat::Jsonl;
    std::string rawPath;    ///< record the received bytes here when not empty
    std::string outputPath; ///< the output goes to this file when not empty
    bool events = false;    ///< print the reads that bring no frame too
};

/// Opens the port the way the POWER button does (the search over COM1..COM8 with the
/// one-second probe, or only the chosen port), then runs the program's receive cycle on it
/// and prints each outcome as decode does. The bytes the cycle took, in the order it took
/// them, go to the raw recording, so that decoding the recording prints the same lines.
/// Ends with `finished` and the exit status; every failure has printed its line by then.
class CaptureSession : public QObject {
    Q_OBJECT
public:
    CaptureSession(CaptureOptions options, PortMap ports, OutputSink& out,
                   QObject* parent = nullptr);
    ~CaptureSession() override;

    /// Opens the raw recording (if asked) and starts the port search.
    void start();

signals:
    void finished(int status);

private:
    void onSearchFinished(bool answered, int port);
    void onReceived(const zorvik::ReceiveStep& step);
    void onFailed();
    void fail(std::vector<PortReport> reports);
    void onStopSignal();
    void finish(int status);
    void finishWithError(int status, const std::string& text);

    CaptureOptions options_;
    PortMap ports_;
    QtSerialLink serial_;
    InstrumentLink link_;
    OutputSink& out_;
    FrameReporter reporter_;
    std::ofstream raw_;
    QTimer limit_;
    QSocketNotifier* stopNotifier_ = nullptr;
    bool done_ = false;
    bool started_ = false; ///< the probe answered: there is output to keep
};

} // namespace zorvik::cli
