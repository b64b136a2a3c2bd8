// A front panel for the settings-file tests: holds the values the writer saves and records,
// in order, every operation the reader performs on it. Keys can be told to refuse a value.
#pragma once

#include "storage/SettingsPanel.h"
#include "storage/VbConvert.h"

#include <array>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace zorvik::testing {

inline const char* colourName(SettingsColour c) {
    static const char* const names[] = {"Cursor1", "Cursor2",      "Cursor3",       "Cursor4",
                                        "Display", "Primarytrace", "Referencetrace"};
    return names[static_cast<int>(c)];
}

inline const char* buttonName(SettingsButton b) {
    static const char* const names[] = {"Hcursors", "Vcursors", "Invert"};
    return names[static_cast<int>(b)];
}

class FakeSettingsPanel : public SettingsPanel {
public:
    double timeRange = 0;
    double chaLevel = 0;
    double chaOffset = 0;
    std::array<std::int32_t, 7> colours{};
    std::array<bool, 3> buttons{};
    /// Names of the keys whose getter or apply throws, as a control refusing a value would.
    std::set<std::string> refuse;
    /// Every apply in the order it happened, e.g. "CWKTimeRange=4", "Cursor2=65280",
    /// "CWBChaInv=True". Only successful applies are recorded.
    std::vector<std::string> log;

    double timeRangeValue() const override { return check("Hscaleindex", timeRange); }
    double chaLevelValue() const override { return check("Vscaleindex", chaLevel); }
    double chaOffsetValue() const override { return check("Chaoffset", chaOffset); }
    std::int32_t colour(SettingsColour which) const override {
        return check(colourName(which), colours[static_cast<int>(which)]);
    }
    bool button(SettingsButton which) const override {
        return check(buttonName(which), buttons[static_cast<int>(which)]);
    }

    void applyTimeRange(std::int32_t value) override {
        timeRange = check("Hscaleindex", value);
        log.push_back("CWKTimeRange=" + std::to_string(value));
    }
    void applyChaLevel(std::int32_t value) override {
        chaLevel = check("Vscaleindex", value);
        log.push_back("CWKChaLvl=" + std::to_string(value));
    }
    void applyChaOffset(const std::string& text) override {
        check("Chaoffset", 0);
        chaOffset = VbConvert::textToDouble(text);
        log.push_back("CWSCHaOffset=" + text);
    }
    void setColour(SettingsColour which, std::int32_t rgb) override {
        colours[static_cast<int>(which)] = check(colourName(which), rgb);
        log.push_back(std::string(colourName(which)) + "=" + std::to_string(rgb));
    }
    void applyButton(SettingsButton which, bool value) override {
        static const char* const controls[] = {"CWBHCursors", "CWBVCursors", "CWBChaInv"};
        buttons[static_cast<int>(which)] = check(buttonName(which), value);
        log.push_back(std::string(controls[static_cast<int>(which)]) + "=" +
                      VbConvert::booleanToText(value));
    }

private:
    template <typename T> T check(const std::string& key, T value) const {
        if (refuse.count(key))
            throw std::out_of_range(key + " refused");
        return value;
    }
};

} // namespace zorvik::testing
