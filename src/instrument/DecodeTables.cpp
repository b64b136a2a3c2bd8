// Decode tables of the probe's hardware-state bytes.
#include "instrument/DecodeTables.h"

namespace zorvik {

std::optional<float> rangeVoltsPerCount(std::uint8_t bytSwitchSetting) {
    switch (bytSwitchSetting & 0x0C) {
    case 0x00:
        return kVoltsPerCount1V;
    case 0x04:
        return kVoltsPerCount10V;
    case 0x08:
        return kVoltsPerCount100V;
    default:
        return std::nullopt;
    }
}

std::optional<int> rangePosition(std::uint8_t bytSwitchSetting) {
    switch (bytSwitchSetting & 0x0C) {
    case 0x00:
        return 3;
    case 0x04:
        return 2;
    case 0x08:
        return 1;
    default:
        return std::nullopt;
    }
}

std::optional<int> couplingPosition(std::uint8_t bytSwitchSetting) {
    switch (bytSwitchSetting & 0x30) {
    case 0x00:
        return 1;
    case 0x10:
        return 2;
    case 0x20:
        return 3;
    default:
        return std::nullopt;
    }
}

std::optional<TimeBase> timeBase(std::uint8_t bytTimebaseDef) {
    static constexpr TimeBase table[] = {
        {5e-8f, "20Ms/s"},  {1e-7f, "10Ms/s"},  {5e-7f, "2Ms/s"},  {1e-6f, "1Ms/s"},
        {5e-6f, "200Ks/s"}, {1e-5f, "100Ks/s"}, {5e-5f, "20Ks/s"}, {1e-4f, "10Ks/s"},
        {5e-4f, "2Ks/s"},   {1e-3f, "1Ks/s"},   {2e-3f, "500s/s"},
    };
    if (bytTimebaseDef > 10)
        return std::nullopt;
    return table[bytTimebaseDef];
}

std::optional<int> triggerPosition(std::uint8_t bytTriggerDef) {
    switch (bytTriggerDef & 0x7D) {
    case 0:
        return 1;
    case 64:
    case 65:
        return 2;
    case 32:
    case 33:
        return 3;
    case 16:
    case 17:
        return 4;
    case 8:
    case 9:
        return 5;
    default:
        return std::nullopt;
    }
}

std::optional<float> triggerLevel(std::uint8_t bytSwitchSetting, std::uint8_t bytTriggerLvl) {
    // Levels of the 1 V range; the 10 V and 100 V ranges scale them by 10 and 100.
    static constexpr struct {
        std::uint8_t code;
        float level[3]; // range 0x00, 0x04, 0x08
    } table[] = {
        {0, {-0.25f, -2.5f, -25.0f}}, {4, {0.25f, 2.5f, 25.0f}},    {8, {0.15f, 1.5f, 15.0f}},
        {16, {0.05f, 0.5f, 5.0f}},    {32, {-0.05f, -0.5f, -5.0f}}, {64, {-0.15f, -1.5f, -15.0f}},
    };
    const int range = (bytSwitchSetting & 0x0C) >> 2;
    if (range == 3)
        return std::nullopt;
    for (const auto& row : table) {
        if (row.code == bytTriggerLvl)
            return row.level[range];
    }
    return std::nullopt;
}

} // namespace zorvik
