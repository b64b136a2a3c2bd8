// The virtual probe's switch byte, scales, trigger decoding, voltmeter reading and the names
// of its settings on the command line.
#include "probe/ProbeSettings.h"

#include "instrument/DecodeTables.h"

#include <cctype>
#include <cmath>

namespace zorvik {

std::uint8_t ProbeSettings::switchSetting() const {
    std::uint8_t bits = 0x00;
    switch (coupling) {
    case Coupling::Gnd:
        bits = 0x00;
        break;
    case Coupling::Ac:
        bits = 0x10;
        break;
    case Coupling::Dc:
        bits = 0x20;
        break;
    }
    return static_cast<std::uint8_t>((range & 0x0C) | bits);
}

float ProbeSettings::voltsPerCount() const {
    return rangeVoltsPerCount(range).value_or(kVoltsPerCount10V);
}

double ProbeSettings::sampleInterval() const {
    const auto tb = timeBase(timebase);
    return tb ? tb->sngSampleInterval : timeBase(6)->sngSampleInterval;
}

double ProbeSettings::triggerVolts() const {
    return triggerLevel(switchSetting(), level).value_or(0.0f);
}

TriggerMode ProbeSettings::triggerMode() const {
    switch (triggerPosition(trigger).value_or(1)) {
    case 2:
        return TriggerMode::InternalRising;
    case 3:
        return TriggerMode::InternalFalling;
    case 4:
        return TriggerMode::ExternalRising;
    case 5:
        return TriggerMode::ExternalFalling;
    default:
        return TriggerMode::FreeRun;
    }
}

std::array<std::uint8_t, 4> voltmeterBytes(double volts, std::uint8_t range) {
    double resolution = 0.1;
    std::uint8_t pointFlag = 0x04;
    switch (range & 0x0C) {
    case 0x00:
        resolution = 0.01;
        pointFlag = 0x02;
        break;
    case 0x08:
        resolution = 1.0;
        pointFlag = 0x00;
        break;
    default:
        break;
    }
    long units = std::lround(std::fabs(volts) / resolution);
    std::uint8_t flags = static_cast<std::uint8_t>(0x40 | pointFlag);
    if (units > 999) {
        units = 999;
        flags |= 0x80;
    }
    if (volts < 0 && units != 0)
        flags |= 0x01;
    return {static_cast<std::uint8_t>('0' + units / 100),
            static_cast<std::uint8_t>('0' + units / 10 % 10),
            static_cast<std::uint8_t>('0' + units % 10), flags};
}

namespace {

constexpr std::string_view kShapeNames[] = {"sine", "square", "triangle", "noise", "dc"};

// Command-line names are the front panel's labels in any letter case ("dc", "DC", "in+").
bool sameName(std::string_view a, std::string_view b) {
    if (a.size() != b.size())
        return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (std::tolower(static_cast<unsigned char>(a[i])) !=
            std::tolower(static_cast<unsigned char>(b[i])))
            return false;
    }
    return true;
}

} // namespace

std::optional<Shape> shapeFromName(std::string_view name) {
    for (int i = 0; i < 5; ++i) {
        if (sameName(kShapeNames[i], name))
            return static_cast<Shape>(i);
    }
    return std::nullopt;
}

std::string_view shapeName(Shape shape) {
    return kShapeNames[static_cast<int>(shape)];
}

std::optional<Coupling> couplingFromName(std::string_view name) {
    // The coupling labels run GND, AC, DC, the order of Coupling.
    for (int i = 0; i < 3; ++i) {
        if (sameName(kCouplingLabels[i], name))
            return static_cast<Coupling>(i);
    }
    return std::nullopt;
}

std::optional<std::uint8_t> triggerByteFromName(std::string_view name) {
    // The byte of each trigger label FR, IN+, IN-, EX+, EX-.
    static constexpr std::uint8_t bytes[] = {0x00, 0x40, 0x20, 0x10, 0x08};
    for (int i = 0; i < 5; ++i) {
        if (sameName(kTriggerLabels[i], name))
            return bytes[i];
    }
    return std::nullopt;
}

} // namespace zorvik
