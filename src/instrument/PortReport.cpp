// The words for what happened on a port.
#include "instrument/PortReport.h"

namespace zorvik {

namespace {

// "COM1 (/dev/ttyUSB0)", or only the device for one named directly.
std::string portLabel(const PortReport& r) {
    if (r.port <= 0)
        return r.device;
    std::string label = "COM";
    label += std::to_string(r.port);
    if (!r.device.empty()) {
        label += " (";
        label += r.device;
        label += ')';
    }
    return label;
}

} // namespace

std::string describePort(const PortReport& r) {
    std::string line = portLabel(r);
    line += ": ";
    switch (r.outcome) {
    case PortOutcome::NotPresent:
        line += "not present";
        break;
    case PortOutcome::PermissionDenied: {
        const std::string group = r.detail.empty() ? std::string("dialout") : r.detail;
        line += "permission denied. Only members of the group ";
        line += group;
        line += " may open it; add yourself with sudo usermod -aG ";
        line += group;
        line += " $USER, then log out and in again";
        break;
    }
    case PortOutcome::Busy:
        line += "busy: held by ";
        line += r.detail.empty() ? std::string("another program") : r.detail;
        break;
    case PortOutcome::NotASerialDevice:
        line += "not a serial device";
        break;
    case PortOutcome::OpenFailed:
        line += "could not be opened";
        if (!r.detail.empty()) {
            line += ": ";
            line += r.detail;
        }
        break;
    case PortOutcome::NoAnswer:
        line += "no answer within 1 second (is the probe connected and switched on?)";
        break;
    case PortOutcome::Answered:
        line += "the probe answered";
        break;
    case PortOutcome::PortFailed:
        line += "the port failed";
        if (!r.detail.empty()) {
            line += ": ";
            line += r.detail;
        }
        break;
    case PortOutcome::FrameTimedOut:
        line += "the rest of a frame did not come within 3 seconds";
        break;
    }
    return line;
}

std::string describePorts(const std::vector<PortReport>& reports) {
    std::string text;
    for (const PortReport& r : reports) {
        text += describePort(r);
        text += '\n';
    }
    return text;
}

} // namespace zorvik
