// Builds probe frames byte by byte for tests of the receive cycle.
#pragma once

#include "instrument/HardwareState.h"

#include <cstdint>
#include <vector>

namespace zorvik::test {

/// One 139-byte frame: sync, four settings bytes, 128 samples, reserved, four DVM bytes,
/// reserved. Sample i is (seed + i) % 63, so frames with different seeds differ.
inline std::vector<std::uint8_t> frameBytes(const HardwareState& s, int seed = 0) {
    std::vector<std::uint8_t> f;
    f.reserve(kFrameBytes);
    f.push_back(kSyncByte);
    f.push_back(s.bytSwitchSetting);
    f.push_back(s.bytTimebaseDef);
    f.push_back(s.bytTriggerDef);
    f.push_back(s.bytTriggerLvl);
    for (int i = 0; i < 128; ++i)
        f.push_back(static_cast<std::uint8_t>((seed + i) % 63));
    f.push_back(0);
    f.push_back(s.bytDVM100);
    f.push_back(s.bytDVM10);
    f.push_back(s.bytDVM1);
    f.push_back(s.bytDVMflags);
    f.push_back(0);
    return f;
}

inline HardwareState sampleState() {
    HardwareState s;
    s.bytSwitchSetting = 0x24;
    s.bytTimebaseDef = 6;
    s.bytTriggerDef = 0x40;
    s.bytTriggerLvl = 16;
    s.bytDVM100 = 1;
    s.bytDVM10 = 2;
    s.bytDVM1 = 3;
    s.bytDVMflags = 4;
    return s;
}

} // namespace zorvik::test
