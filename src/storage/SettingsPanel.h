// What the settings file needs of the front panel: the values it saves at shutdown and the
// operations that restore them at start-up. The main window implements it. Any member may
// throw an exception derived from std::exception (a control that refuses a value); the
// settings file then skips just that key.
#pragma once

#include <cstdint>
#include <string>

namespace zorvik {

/// The seven colours of the COLORS section, in file order.
enum class SettingsColour {
    Cursor1,
    Cursor2,
    Cursor3,
    Cursor4,
    Display,
    Primarytrace,
    Referencetrace
};
/// The three buttons of the BUTTONS section, in file order: CWBHCursors, CWBVCursors, CWBChaInv.
enum class SettingsButton { Hcursors, Vcursors, Invert };

class SettingsPanel {
public:
    virtual ~SettingsPanel() = default;

    /// Value of the time-range knob CWKTimeRange.
    virtual double timeRangeValue() const = 0;
    /// Value of the channel A volts-per-division knob CWKChaLvl.
    virtual double chaLevelValue() const = 0;
    /// Value of the channel A offset slide CWSCHaOffset.
    virtual double chaOffsetValue() const = 0;
    /// A colour as the RGB whole number: red in the low byte, then green, then blue.
    virtual std::int32_t colour(SettingsColour which) const = 0;
    virtual bool button(SettingsButton which) const = 0;

    /// Sets CWKTimeRange to `value`, then runs its value-changed handler.
    virtual void applyTimeRange(std::int32_t value) = 0;
    /// Sets CWKChaLvl to `value`, then runs its value-changed handler.
    virtual void applyChaLevel(std::int32_t value) = 0;
    /// Hands the stored text to CWSCHaOffset as its value (the slide converts it, e.g. with
    /// VbConvert::textToDouble), then runs its value-changed handler.
    virtual void applyChaOffset(const std::string& text) = 0;
    /// Sets a colour; no handler runs.
    virtual void setColour(SettingsColour which, std::int32_t rgb) = 0;
    /// Sets a button's value, then runs its value-changed handler with that value.
    virtual void applyButton(SettingsButton which, bool value) = 0;
};

} // namespace zorvik
