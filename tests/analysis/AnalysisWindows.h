// For tests of the analysis windows on the real main window: a fixture whose feed() lets the
// windows show each frame (they show what changed at most every so many ms), a settings file
// of the test's own for their [ANALYSIS] section, and the square wave most tests feed.
#pragma once

#include "analysis/AnalysisActions.h"
#include "analysis/AnalysisWindow.h"
#include "app/LiveWindowFixture.h"
#include "storage/ProfileFile.h"

#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

namespace zorvik::test {

/// Waits until no analysis window of `main` has a showing to come.
inline void settleAnalysisWindows(QWidget& main) {
    const auto pending = [&main] {
        for (const AnalysisWindow* w : main.findChildren<AnalysisWindow*>())
            if (w->showPending())
                return true;
        return false;
    };
    EXPECT_TRUE(QTest::qWaitFor([&] { return !pending(); }, 2000));
}

/// A square between counts `low` and `high`, 40 samples a period, high for samples 5 to 24,
/// 45 to 64, 85 to 104 and 125 to 127.
inline RawSamples squareCounts(std::uint8_t low, std::uint8_t high) {
    RawSamples r{};
    for (std::size_t i = 0; i < r.size(); ++i)
        r[i] = ((i + 35) % 40) < 20 ? high : low;
    return r;
}

class AnalysisWindowFixture : public LiveWindowFixture {
protected:
    /// Feeds one frame, then lets the analysis windows show it.
    void feed(const HardwareState& s, const RawSamples& samples) {
        LiveWindowFixture::feed(s, samples);
        if (window)
            settleAnalysisWindows(*window);
    }
    /// The analysis actions on `w`, keeping their settings in the test's own ZORVIK.INI.
    AnalysisActions& analysisOn(frmMain& w) {
        return *new AnalysisActions(w, shared.back()->feed, AnalysisSettings(settings()));
    }
    SettingsLocation settings() const {
        return SettingsLocation{dir.filePath("ZORVIK.INI").toStdString(), {}};
    }
    /// The text of `key` in [ANALYSIS], "(none)" when it is not there.
    std::string iniValue(const char* key) const {
        char buffer[255];
        const auto n = ProfileFile::getPrivateProfileString(
            std::string(AnalysisSettings::kSection), std::string(key), std::string("(none)"),
            std::span<char>(buffer), dir.filePath("ZORVIK.INI").toStdString());
        return std::string(buffer, n);
    }
    QTemporaryDir dir;
};

} // namespace zorvik::test
