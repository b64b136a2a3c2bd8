// Takes a picture of the whole screen or of the active window by a synthesised Print Screen key.
#pragma once

#include "printing/KeyEventSeam.h"

namespace zorvik {

class cQVXScreenCapture {
public:
    /// The capture works through `keys`, which must outlive this object.
    explicit cQVXScreenCapture(KeyEventSeam& keys) : m_keys(keys) {}

    /// Presses Print Screen (with Alt held when `ActiveWindow` is true) so that the picture lands
    /// in the capture holder. Returns true when the key events were sent, even if no picture
    /// arrived; false when a failing operation stopped the routine part-way (an Alt pressed
    /// before that stays pressed).
    bool CaptureScreen(bool ActiveWindow = false);

private:
    bool sendKeys(bool ActiveWindow);

    KeyEventSeam& m_keys;
};

} // namespace zorvik
