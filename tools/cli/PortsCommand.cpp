// zorvik-cli ports: which serial ports there are, as a table or as JSON.
#include "PortsCommand.h"

#include "ExitStatus.h"
#include "FrameText.h"
#include "OutputSink.h"
#include "PortSettings.h"
#include "instrument/PortInventory.h"

#include <QCoreApplication>

namespace zorvik::cli {

namespace {

constexpr CommandOption kOptions[] = {{"format", true, 'f'}, {"output", true, 'o'}};

constexpr std::string_view kHelp =
    R"(  zorvik-cli ports [-f|--format table|json] [-o|--output OUT]
      Lists COM1 to COM8 with the device each stands for (from the section [PORTS] of
      the settings file, as capture and the window read it, or the defaults), whether
      the device is present and whether you may open it, and what the system knows of
      it: for a USB adapter its description, maker, serial number and VID:PID. Then
      every other serial device present that no COMn names, with the line of the
      section [PORTS] that would name it.
      -f, --format table  (the default) a table to read
      -f, --format json   one JSON object on one line:
        {"settings":"FILE","ports":[{"port":"COM1","device":"/dev/ttyUSB0",
         "mapped":L,"present":L,"access":L,"description":S,"manufacturer":S,
         "serial":S,"vid":"0403","pid":"6001"}, ... eight in all],
         "others":[{"device":"/dev/ttyUSB3", the same keys,"ports_line":"COM2=..."}]}
        L is true or false; S a text, null when the system has none; vid and pid are
        null for a device that is no USB adapter; ports_line is null when every COMn
        names a device that is present.
      -o, --output OUT    write to the file OUT instead of standard output
)";

std::string yesNo(bool value) {
    return value ? "yes" : "no";
}

std::string pad(std::string text, std::size_t width) {
    if (text.size() < width)
        text.resize(width, ' ');
    return text;
}

std::string jsonText(const std::string& text) {
    return text.empty() ? std::string("null") : jsonString(text);
}

void appendJsonEntry(std::string& out, const PortEntry& e) {
    out += '{';
    if (e.port > 0) {
        out += "\"port\":";
        out += jsonString(PortMap::portName(e.port));
        out += ',';
    }
    out += "\"device\":" + jsonString(e.device);
    if (e.port > 0)
        out += ",\"mapped\":" + std::string(e.mapped ? "true" : "false");
    out += ",\"present\":" + std::string(e.present ? "true" : "false");
    out += ",\"access\":" + std::string(e.accessible ? "true" : "false");
    out += ",\"description\":" + jsonText(e.description);
    out += ",\"manufacturer\":" + jsonText(e.manufacturer);
    out += ",\"serial\":" + jsonText(e.serialNumber);
    const std::string ids = usbIds(e);
    out += ",\"vid\":" + (ids.empty() ? std::string("null") : jsonString(ids.substr(0, 4)));
    out += ",\"pid\":" + (ids.empty() ? std::string("null") : jsonString(ids.substr(5, 4)));
    if (e.port == 0)
        out += ",\"ports_line\":" + jsonText(e.portsLine);
    out += '}';
}

std::string portsJson(const std::vector<PortEntry>& entries, const std::string& settings) {
    std::string out = "{\"settings\":" + jsonString(settings) + ",\"ports\":[";
    bool first = true;
    for (const PortEntry& e : entries) {
        if (e.port == 0)
            continue;
        if (!first)
            out += ',';
        first = false;
        appendJsonEntry(out, e);
    }
    out += "],\"others\":[";
    first = true;
    for (const PortEntry& e : entries) {
        if (e.port > 0)
            continue;
        if (!first)
            out += ',';
        first = false;
        appendJsonEntry(out, e);
    }
    out += "]}";
    return out;
}

std::string portsTable(const std::vector<PortEntry>& entries, const std::string& settings) {
    std::size_t width = 12;
    for (const PortEntry& e : entries)
        width = std::max(width, e.device.size() + 2);
    std::string out = "PORT  " + pad("DEVICE", width) + "PRESENT  ACCESS  SYSTEM\n";
    bool others = false;
    for (const PortEntry& e : entries) {
        if (e.port == 0 && !others) {
            others = true;
            out += "\nOther serial devices (to use one, name it in the section [PORTS] of\n" +
                   settings + "):\n";
            out += "      " + pad("DEVICE", width) + "PRESENT  ACCESS  SYSTEM\n";
        }
        out += e.port > 0 ? pad(PortMap::portName(e.port), 6) : std::string(6, ' ');
        out += pad(e.device, width);
        out += pad(yesNo(e.present), 9);
        out += pad(e.present ? yesNo(e.accessible) : std::string("-"), 8);
        std::string system = usbSummary(e);
        if (e.port > 0 && e.mapped)
            system = system.empty() ? std::string("(from [PORTS])") : system + " (from [PORTS])";
        if (e.port == 0 && !e.portsLine.empty())
            system += (system.empty() ? "" : "; ") + std::string("add ") + e.portsLine;
        out += system;
        while (!out.empty() && out.back() == ' ')
            out.pop_back();
        out += '\n';
    }
    if (!others)
        out += "\nNo other serial devices are present.\n";
    return out;
}

} // namespace

const Command& portsCommand() {
    static const Command command{
        "ports",   "ports", "list COM1 to COM8 and the serial devices present", kOptions, kHelp,
        &runPorts, false};
    return command;
}

int runPorts(const ParsedArgs& args) {
    if (!args.positionals.empty())
        return usageError("ports", "unexpected argument " + args.positionals.front());
    bool json = false;
    if (const auto format = args.value("format")) {
        if (*format == "json")
            json = true;
        else if (*format != "table")
            return usageError("ports", "--format must be table or json, not '" + *format + "'");
    }
    const auto output = args.value("output");
    if (output && output->empty())
        return usageError("ports", "--output needs a file name");

    int argc = 1;
    char name[] = "zorvik-cli";
    char* argv[] = {name, nullptr};
    QCoreApplication app(argc, argv);
    // The window's name: the per-user folder of its settings file is named after it.
    QCoreApplication::setApplicationName("zorvik");
    const std::string settings = settingsFilePath();
    PortMap ports;
    applyPortsSection(ports, settings);
    const std::vector<PortEntry> entries = portInventory(ports);

    OutputSink out = output ? OutputSink(*output) : OutputSink();
    if (json)
        out.writeLine(portsJson(entries, settings));
    else
        out.text() += portsTable(entries, settings);
    if (!out.finish()) {
        if (output && !out.closedByReader()) {
            printError(*output + ": " + out.errorText());
            return kExitFailure;
        }
        return outputFailure(out);
    }
    return kExitOk;
}

} // namespace zorvik::cli
