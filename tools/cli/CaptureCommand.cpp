// zorvik-cli capture: frames from the probe on a serial port, printed as they arrive.
#include "CaptureCommand.h"

#include "CaptureSession.h"
#include "ExitStatus.h"
#include "PortSettings.h"

#include <QCoreApplication>
#include <QTimer>
#include <cctype>
#include <limits>

namespace zorvik::cli {

namespace {

constexpr CommandOption kOptions[] = {
    {"port", true}, {"frames", true}, {"seconds", true}, {"format", true}, {"raw", true}};

constexpr std::string_view kHelp =
    R"(  zorvik-cli capture [--port COMn|DEVICE] [--frames N] [--seconds S]
                     [--format jsonl|csv] [--raw FILE]
      Opens the port as the POWER button does and prints what the receive cycle makes
      of each read, as decode does.
      --port COMn    only that port (COM1 to COM8), on the device the window uses for
                     it: the one the key COMn of the section [PORTS] of the settings
                     file names, otherwise COM1 /dev/ttyUSB0, COM2 /dev/ttyUSB1,
                     COM3 /dev/ttyACM0, COM4 /dev/ttyACM1, COM5 to COM8 /dev/ttyS0 to
                     /dev/ttyS3. The settings file is the window's ZORVIK.INI: beside
                     the program, or in the per-user configuration folder
                     (~/.config/zorvik) when the program's folder cannot be written.
      --port DEVICE  any other value is a device opened directly (/dev/pts/3)
                     Without --port, COM1 to COM8 (mapped the same way) are probed in
                     turn where their device exists; the first that sends a byte other
                     than 0 within one second is used.
      --frames N     stop after N accepted frames
      --seconds S    stop after S seconds of reception (S may have decimals)
                     With both, whichever comes first; with neither, until Ctrl+C.
      --raw FILE     also record the bytes exactly as the receive cycle took them, so
                     that decode FILE prints the same lines
      When no port answers, the port fails or a frame does not complete within three
      seconds, prints "Unable to Communicate with Instrument - Check Port Connection!"
      on standard error and exits with status 2.
)";

int usage(const std::string& text) {
    printError("capture: " + text + " (see zorvik-cli --help)");
    return kExitUsage;
}

} // namespace

const Command& captureCommand() {
    static const Command command{"capture", kOptions, kHelp, &runCapture, true};
    return command;
}

std::optional<int> comPortNumber(std::string_view text) {
    if (text.size() != 4)
        return std::nullopt;
    for (std::size_t i = 0; i < 3; ++i) {
        if (std::toupper(static_cast<unsigned char>(text[i])) != "COM"[i])
            return std::nullopt;
    }
    const int n = text[3] - '0';
    if (n < kFirstComPort || n > kLastComPort)
        return std::nullopt;
    return n;
}

int runCapture(const ParsedArgs& args) {
    if (!args.positionals.empty())
        return usage("unexpected argument " + args.positionals.front());
    CaptureOptions options;
    if (const auto port = args.value("port")) {
        if (port->empty())
            return usage("--port needs a port name or a device");
        if (const auto n = comPortNumber(*port))
            options.comPort = *n;
        else
            options.device = *port;
    }
    if (const auto text = args.value("frames")) {
        const auto n = parseWholeNumber(*text, 1, std::numeric_limits<std::int64_t>::max());
        if (!n)
            return usage("--frames must be a whole number from 1, not '" + *text + "'");
        options.frames = *n;
    }
    if (const auto text = args.value("seconds")) {
        const auto s = parsePositiveNumber(*text);
        if (!s)
            return usage("--seconds must be a number above 0, not '" + *text + "'");
        options.seconds = *s;
    }
    if (const auto text = args.value("format")) {
        const auto format = parseOutputFormat(*text);
        if (!format)
            return usage("--format must be jsonl or csv, not '" + *text + "'");
        options.format = *format;
    }
    if (const auto raw = args.value("raw")) {
        if (raw->empty())
            return usage("--raw needs a file name");
        options.rawPath = *raw;
    }

    int argc = 1;
    char name[] = "zorvik-cli";
    char* argv[] = {name, nullptr};
    QCoreApplication app(argc, argv);
    // The window's name: the per-user folder of its settings file is named after it.
    QCoreApplication::setApplicationName("zorvik");
    // A device named directly needs no port mapping, so the settings file is not read then.
    PortMap ports = options.device.empty() ? capturePortMap() : PortMap();
    LineOutput out;
    CaptureSession session(std::move(options), std::move(ports), out);
    QObject::connect(&session, &CaptureSession::finished, &app, &QCoreApplication::exit,
                     Qt::QueuedConnection);
    QTimer::singleShot(0, &session, &CaptureSession::start);
    return app.exec();
}

} // namespace zorvik::cli
