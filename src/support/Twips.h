// Twips, the unit of the stored window geometry: 15 twips per device-independent pixel.
#pragma once

namespace zorvik {

inline constexpr int kTwipsPerPixel = 15;

constexpr int twipsToPixels(double twips) {
    return static_cast<int>(twips / kTwipsPerPixel + (twips >= 0 ? 0.5 : -0.5));
}
constexpr int pixelsToTwips(int pixels) {
    return pixels * kTwipsPerPixel;
}

} // namespace zorvik
