// The VOLTS, TIME and FREQUENCY readouts worked out from the positions of the graph's cursors.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace zorvik {

/// What DisplayCursorData reads. A cursor position the graph could not report is
/// std::nullopt; the readouts that need it then keep their text.
struct CursorInputs {
    bool CWBHCursors = false; ///< H-CURS on: the voltage pair Cursor3/Cursor4 is shown
    bool CWBVCursors = false; ///< V-CURS on: the time pair Cursor1/Cursor2 is shown
    std::optional<double> Cursor3Y;
    std::optional<double> Cursor4Y;
    std::optional<double> Cursor1X;
    std::optional<double> Cursor2X;
    float sngChaGain = 0.0f;       ///< divisions per volt
    std::int32_t lngDivPerSec = 0; ///< divisions per second
    std::int16_t intTimeUnit = 0;  ///< 0 ns, 1 us, 2 ms range of the H-SCALE knob
};

/// New captions of the three readout labels; std::nullopt means "leave as it is".
/// An empty text means that no measurement is shown.
struct CursorReadouts {
    std::optional<std::string> lblCVoltage;
    std::optional<std::string> lblCTime;
    std::optional<std::string> lblCFrequency;

    friend bool operator==(const CursorReadouts&, const CursorReadouts&) = default;
};

/// Voltage text of a difference in volts: "0.0" from 100 V, "0.00" from 1 V, "0.000" below,
/// unit " V".
std::optional<std::string> voltageText(double deltaVolts);

/// Time text of a difference in seconds, in the unit family of the knob's range
/// (intTimeUnit 0: nSec/uSec, 1: nSec/uSec/mSec, 2: uSec/mSec/Sec); the nanosecond line has
/// two decimals, every other line three. Another intTimeUnit has no text (std::nullopt).
std::optional<std::string> timeText(double deltaSeconds, std::int16_t intTimeUnit);

/// Frequency text for a period in seconds: Hz ("0.0"), KHz, MHz, GHz ("0.000").
/// A zero period has no frequency: std::nullopt, the label keeps its text.
std::optional<std::string> frequencyText(double deltaSeconds);

/// The three readouts for the present cursors and scales. Never throws: a step that cannot
/// be worked out (zero gain, zero divisions per second, unreadable cursor, a result with no
/// finite value) leaves its label unchanged and the next step carries on.
CursorReadouts DisplayCursorData(const CursorInputs& in) noexcept;

} // namespace zorvik
