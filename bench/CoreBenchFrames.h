// Probe frames for the core benchmarks: the bytes of a noise-measuring probe running free, so
// that every frame carries other samples, as on the line.
#pragma once

#include "probe/FrameGenerator.h"

#include <cstdint>
#include <vector>

namespace zorvik::bench {

/// `count` back-to-back frames of 139 bytes each.
inline std::vector<std::uint8_t> noiseFrames(std::size_t count) {
    ProbeSettings settings;
    settings.signal.shape = Shape::Noise;
    settings.trigger = 0x00; // free run: a frame for every frame period
    FrameGenerator generator(settings);
    std::vector<std::uint8_t> bytes;
    bytes.reserve(count * kFrameBytes);
    while (bytes.size() < count * kFrameBytes) {
        const std::vector<std::uint8_t> frame = generator.next();
        bytes.insert(bytes.end(), frame.begin(), frame.end());
    }
    return bytes;
}

} // namespace zorvik::bench
