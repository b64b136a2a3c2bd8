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
    {"port", true, 'p'}, {"frames", true, 'n'}, {"seconds", true, 's'}, {"format", true, 'f'},
    {"raw", true, '\0'}, {"output", true, 'o'}, {"events", false, '\0'}};

constexpr std::string_view kHelp =
    R"(  zorvik-cli capture [-p|--port COMn|DEVICE] [-n|--frames N] [-s|--seconds S]
                     [-f|--format jsonl|csv] [--events] [--raw FILE] [-o|--output OUT]
      Opens the port as the POWER button does and prints the frames the receive cycle
      accepts, as decode does, as they arrive.
      -p, --port COMn    only that port (COM1 to COM8), on the device the window uses
                     for it: the one the key COMn of the section [PORTS] of the settings
                     file names, otherwise COM1 /dev/ttyUSB0, COM2 /dev/ttyUSB1,
                     COM3 /dev/ttyACM0, COM4 /dev/ttyACM1, COM5 to COM8 /dev/ttyS0 to
                     /dev/ttyS3. The settings file is the window's ZORVIK.INI: beside
                     the program, or in the per-user configuration folder
                     (~/.config/zorvik) when the program's folder cannot be written.
                     Another COM number (COM9) is a usage error.
      -p, --port DEVICE  a device opened directly (/dev/pts/3)
                     Without --port, COM1 to COM8 (mapped the same way) are probed in
                     turn where their device exists; the first that sends a byte other
                     than 0 within one second is used.
      -n, --frames N     stop after N accepted frames
      -s, --seconds S    stop after S seconds of reception (S may have decimals)
                     With both, whichever comes first; with neither, until Ctrl+C.
      -f, --format       jsonl (the default) or csv, below
      --events           also every read that brings no frame (JSON lines only)
      --raw FILE         also record the bytes exactly as the receive cycle took them,
                     so that decode FILE prints the same lines
      -o, --output OUT   write to the file OUT instead of standard output; OUT
                     appears, or replaces the file there, when the capture ends
      When no port answers, the port fails or a frame does not complete within three
      seconds, prints "Unable to Communicate with Instrument - Check Port Connection!"
      on standard error, then one line for each port tried saying what happened on it
      (not present; permission denied, with the command that grants it; busy, held by
      another program; not a serial device; no answer within 1 second), and exits with
      status 1.
)";

int usage(const std::string& text) {
    return usageError("capture", text);
}

} // namespace

const Command& captureCommand() {
    static const Command command{
        "capture", "capture", "print the frames the probe sends on a serial port",
        kOptions,  kHelp,     &runCapture,
        true};
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

namespace {

/// "COM" followed by digits, in any letter case: a port name rather than a device path.
bool looksLikePortName(std::string_view text) {
    if (text.size() < 4)
        return false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto c = static_cast<unsigned char>(text[i]);
        if (i < 3 ? std::toupper(c) != "COM"[i] : !std::isdigit(c))
            return false;
    }
    return true;
}

} // namespace

int runCapture(const ParsedArgs& args) {
    if (!args.positionals.empty())
        return usage("unexpected argument " + args.positionals.front());
    CaptureOptions options;
    if (const auto port = args.value("port")) {
        if (port->empty())
            return usage("--port needs a port name or a device");
        if (const auto n = comPortNumber(*port))
            options.comPort = *n;
        else if (looksLikePortName(*port))
            return usage("unknown port " + *port +
                         ": the ports are COM1 to COM8 (or name a "
                         "device, such as /dev/ttyUSB0)");
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
    if (const auto output = args.value("output")) {
        if (output->empty())
            return usage("--output needs a file name");
        options.outputPath = *output;
    }
    options.events = args.has("events");

    int argc = 1;
    char name[] = "zorvik-cli";
    char* argv[] = {name, nullptr};
    QCoreApplication app(argc, argv);
    // The window's name: the per-user folder of its settings file is named after it.
    QCoreApplication::setApplicationName("zorvik");
    // A device named directly needs no port mapping, so the settings file is not read then.
    PortMap ports = options.device.empty() ? capturePortMap() : PortMap();
    OutputSink out = options.outputPath.empty() ? OutputSink() : OutputSink(options.outputPath);
    if (out.failed()) {
        printError(options.outputPath + ": " + out.errorText());
        return kExitFailure;
    }
    CaptureSession session(std::move(options), std::move(ports), out);
    QObject::connect(&session, &CaptureSession::finished, &app, &QCoreApplication::exit,
                     Qt::QueuedConnection);
    QTimer::singleShot(0, &session, &CaptureSession::start);
    return app.exec();
}

} // namespace zorvik::cli
