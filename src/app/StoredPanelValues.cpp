// Values a file hands to the front panel, checked against the controls.
#include "app/StoredPanelValues.h"

#include "storage/VbConvert.h"
#include "widgets/Knob.h"
#include "widgets/Slide.h"

#include <stdexcept>

namespace zorvik {

void setKnobFromFile(Knob& knob, std::int32_t position) {
    if (position < 1 || position > knob.positionCount())
        throw std::out_of_range("position the knob does not have");
    knob.setValueSilently(position);
}

double setOffsetFromFile(Slide& slide, const std::string& text) {
    const double value = VbConvert::textToDouble(text);
    if (value < slide.minimum() || value > slide.maximum())
        throw std::out_of_range("offset beyond the slide");
    slide.setValueSilently(value);
    return value;
}

} // namespace zorvik
