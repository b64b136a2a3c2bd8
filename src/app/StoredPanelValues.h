// Values a file hands to the front panel (the settings file and the Waveform Data File alike):
// each is checked against the control before it is set, and a value the control cannot take
// throws, so the file's reader skips that key or ends the load.
#pragma once

#include <cstdint>
#include <string>

namespace zorvik {

class Knob;
class Slide;

/// Sets `knob` to `position` without running its handler; std::out_of_range for a position
/// the knob does not have.
void setKnobFromFile(Knob& knob, std::int32_t position);

/// Sets the offset slide to the number `text` holds without running its handler; a text that
/// is not a number (ConversionError) or a value beyond the slide's range (std::out_of_range)
/// throws. Returns the value set.
double setOffsetFromFile(Slide& slide, const std::string& text);

} // namespace zorvik
