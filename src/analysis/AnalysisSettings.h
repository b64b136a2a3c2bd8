// The choices and places of the analysis windows, kept in a section of their own, [ANALYSIS],
// of the settings file: the panel's own sections and keys are never read or written here, and
// the section appears only once an analysis window was used.
#pragma once

#include "storage/SettingsFile.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace zorvik {

class AnalysisSettings {
public:
    static constexpr const char* kSection = "ANALYSIS";

    /// Settings kept nowhere (nothing is read, nothing written): for windows made without a
    /// settings file, as in tests.
    AnalysisSettings() = default;
    explicit AnalysisSettings(SettingsLocation where) : where_(std::move(where)) {}

    /// The text of `key`, or std::nullopt when it is not there.
    std::optional<std::string> text(const std::string& key) const;
    /// `key` as a whole number from `min` to `max`; `fallback` when it is missing or not one.
    long number(const std::string& key, long min, long max, long fallback) const;
    /// `key` as a number (with '.' as its decimal point); `fallback` when missing or not one.
    double real(const std::string& key, double fallback) const;

    /// Writes the pairs (key, text) at once: the whole file is replaced in one step, the other
    /// sections as they were. A key already holding its text is not written again, and a file
    /// that would not change is not touched. False when the file cannot be written.
    bool write(const std::vector<std::pair<std::string, std::string>>& values);

    bool kept() const { return !where_.file.empty(); }

private:
    SettingsLocation where_;
};

} // namespace zorvik
