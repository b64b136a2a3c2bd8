// Knob positions to display scales.
#include "display/ScaleTables.h"

namespace zorvik {

std::optional<float> chaGainForPosition(int position) {
    static constexpr float gains[] = {0.05f, 0.1f, 0.2f, 0.5f, 1.0f, 2.0f, 5.0f};
    if (position < 1 || position > 7)
        return std::nullopt;
    return gains[position - 1];
}

std::optional<TimeScale> timeScaleForPosition(int position) {
    static constexpr TimeScale rows[] = {
        {5000000, 0}, // 200 ns
        {2000000, 0}, // 500 ns
        {1000000, 1}, // 1 us
        {500000, 1},  // 2 us
        {200000, 1},  // 5 us
        {100000, 1},  // 10 us
        {50000, 1},   // 20 us
        {20000, 1},   // 50 us
        {10000, 1},   // 100 us
        {5000, 1},    // 200 us
        {2000, 1},    // 500 us
        {1000, 2},    // 1 ms
        {500, 2},     // 2 ms
        {200, 2},     // 5 ms
        {100, 2},     // 10 ms
        {50, 2},      // 20 ms
        {20, 2},      // 50 ms
    };
    if (position < 1 || position > 17)
        return std::nullopt;
    return rows[position - 1];
}

} // namespace zorvik
