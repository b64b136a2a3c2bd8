// What the virtual probe measures and how its own switches are set: the input signal, range,
// coupling, time base, trigger and the voltmeter bytes it reports in every frame.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace zorvik {

/// Bytes per second on the probe's line: 19200 baud, 8N1 = 10 bits per byte.
inline constexpr double kLineBytesPerSecond = 1920.0;

enum class Shape { Sine, Square, Triangle, Noise, Dc };
enum class Coupling { Gnd, Ac, Dc };
/// How the probe starts a frame, from the trigger-mode byte it reports.
enum class TriggerMode {
    FreeRun,
    InternalRising,
    InternalFalling,
    ExternalRising,
    ExternalFalling
};

/// The signal at the probe tip. Periodic shapes start a period with a rising edge at phase 0:
/// the sine rises through its centre, the square jumps to +amplitude (and back at half a
/// period), the triangle rises through its centre. Noise is uniform in +-amplitude. A DC
/// signal sits at `offset` and ignores `amplitude`, as the DC function of a signal generator.
struct SignalSettings {
    Shape shape = Shape::Sine;
    double frequency = 1000.0; ///< Hz
    double amplitude = 1.0;    ///< V, peak
    double offset = 0.0;       ///< V
    bool operator==(const SignalSettings&) const = default;
};

/// The probe's complete set-up, by default a 1 kHz sine of 1 V at 20Ks/s on the 10 V range
/// (zorvik-probe without options). `zorvik --demo` plays the tour of DemoTour.h instead.
struct ProbeSettings {
    SignalSettings signal;
    std::uint8_t range = 0x04; ///< 0x00 (1 V), 0x04 (10 V) or 0x08 (100 V)
    Coupling coupling = Coupling::Dc;
    std::uint8_t timebase = 6;   ///< time-base code 0..10
    std::uint8_t trigger = 0x40; ///< raw trigger-mode byte, sent unchanged
    std::uint8_t level = 16;     ///< raw trigger-level code, sent unchanged
    /// Voltmeter bytes to send as they stand (bytDVM100, bytDVM10, bytDVM1, bytDVMflags);
    /// empty: the probe fills them with its reading of the input (see voltmeterBytes).
    std::optional<std::array<std::uint8_t, 4>> dvm;

    bool operator==(const ProbeSettings&) const = default;

    /// The switch byte: range bits OR coupling bits (0x00 GND, 0x10 AC, 0x20 DC).
    std::uint8_t switchSetting() const;
    /// Volts per count of the range; range bits 0x0C (no range) count as the 10 V range.
    float voltsPerCount() const;
    /// Seconds per sample of the time base; a code beyond the table samples at 20Ks/s.
    double sampleInterval() const;
    /// Trigger level in volts for the range; a level code the probe does not know triggers at
    /// 0 V, so that frames keep coming.
    double triggerVolts() const;
    /// The trigger-mode byte decoded as the front panel shows it; a byte that names no mode
    /// (for example 1 or 3) runs free.
    TriggerMode triggerMode() const;
};

/// The voltmeter of the probe shows the mean of the coupled input in three digits with the
/// resolution of the range: 0.01 V on the 1 V range ("x.xx"), 0.1 V on the 10 V range
/// ("xx.x"), 1 V on the 100 V range ("xxx"). bytDVM100, bytDVM10 and bytDVM1 hold the digits
/// as the characters '0'..'9', hundreds first. bytDVMflags: 0x40 always set (a valid
/// reading), 0x01 negative reading, 0x02 decimal point after the first digit, 0x04 decimal
/// point after the second digit, 0x80 over range (digits 9 9 9). No voltmeter byte is ever
/// 0: the program takes a zero byte at power-on for a silent port.
std::array<std::uint8_t, 4> voltmeterBytes(double volts, std::uint8_t range);

/// Names used on the command line, in any letter case: "sine", "square", "triangle", "noise",
/// "dc"; couplings "gnd", "ac", "dc"; trigger modes "fr", "in+", "in-", "ex+", "ex-" (the
/// bytes 0x00, 0x40, 0x20, 0x10, 0x08).
std::optional<Shape> shapeFromName(std::string_view name);
std::string_view shapeName(Shape shape);
std::optional<Coupling> couplingFromName(std::string_view name);
std::optional<std::uint8_t> triggerByteFromName(std::string_view name);

} // namespace zorvik
