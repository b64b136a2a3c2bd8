// For tests of the analysis windows: they show what changed at most every kShowInterval ms,
// so a test that reads their labels after a frame first lets every pending showing happen.
#pragma once

#include "analysis/AnalysisWindow.h"

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

} // namespace zorvik::test
