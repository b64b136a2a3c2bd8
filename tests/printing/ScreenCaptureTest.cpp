// The capture routine's key sequence, and the grabs behind it on this platform.
#include "printing/CaptureHolder.h"
#include "printing/PrintingTestSupport.h"
#include "printing/QtKeyEventSeam.h"
#include "printing/cQVXScreenCapture.h"

#include <QApplication>
#include <QGuiApplication>
#include <QPalette>
#include <QScreen>
#include <QWidget>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace zorvik::test {
namespace {

/// Records every operation; can fail at the n-th one.
class RecordingKeys : public KeyEventSeam {
public:
    std::vector<std::string> log;
    std::uint32_t platform = kPlatformCurrent;
    int failAt = -1;

    bool scanCode(std::uint8_t virtualKey, std::uint16_t& scan) override {
        scan = virtualKey == kVirtualKeyAlt ? 56 : 0;
        return record("scan " + std::to_string(virtualKey));
    }
    bool keyEvent(std::uint8_t virtualKey, std::uint8_t scan, std::uint32_t flags) override {
        return record("key " + std::to_string(virtualKey) + " " + std::to_string(scan) + " " +
                      std::to_string(flags));
    }
    bool platformId(std::uint32_t& id) override {
        id = platform;
        return record("platform");
    }
    bool yield() override { return record("yield"); }

private:
    bool record(std::string entry) {
        if (static_cast<int>(log.size()) == failAt)
            return false;
        log.push_back(std::move(entry));
        return true;
    }
};

using Log = std::vector<std::string>;

TEST(ScreenCapture, OmittedActiveWindowTakesWholeScreenWithoutAltEvents) {
    RecordingKeys keys;
    cQVXScreenCapture capture(keys);
    EXPECT_TRUE(capture.CaptureScreen());
    EXPECT_EQ(keys.log, (Log{"scan 18", "platform", "yield", "key 44 0 0", "yield"}));
}

TEST(ScreenCapture, WholeScreenOnOldConsumerPlatformSendsScanCodeOne) {
    RecordingKeys keys;
    keys.platform = kPlatformConsumer;
    cQVXScreenCapture capture(keys);
    EXPECT_TRUE(capture.CaptureScreen(false));
    EXPECT_EQ(keys.log, (Log{"scan 18", "platform", "yield", "key 44 1 0", "yield"}));
}

TEST(ScreenCapture, ActiveWindowOnEveryPlatformSendsScanZeroBetweenOneAltPressAndOneRelease) {
    for (std::uint32_t platform : {kPlatformConsumer, kPlatformCurrent}) {
        RecordingKeys keys;
        keys.platform = platform;
        cQVXScreenCapture capture(keys);
        EXPECT_TRUE(capture.CaptureScreen(true));
        EXPECT_EQ(keys.log, (Log{"scan 18", "key 18 56 0", "platform", "yield", "key 44 0 0",
                                 "yield", "key 18 56 2"}))
            << "platform " << platform;
    }
}

TEST(ScreenCapture, FailureAfterAltPressReturnsFalseAndLeavesAltPressed) {
    RecordingKeys keys;
    keys.failAt = 4; // the Print Screen key event
    cQVXScreenCapture capture(keys);
    EXPECT_FALSE(capture.CaptureScreen(true));
    EXPECT_EQ(keys.log, (Log{"scan 18", "key 18 56 0", "platform", "yield"}));
}

TEST(ScreenCapture, FailingScanCodeLookupSendsNoKeyAndReturnsFalse) {
    RecordingKeys keys;
    keys.failAt = 0;
    cQVXScreenCapture capture(keys);
    EXPECT_FALSE(capture.CaptureScreen(true));
    EXPECT_TRUE(keys.log.empty());
}

TEST(ScreenCapture, ReturnsTrueEvenWhenNothingWasCaptured) {
    CaptureHolder holder;
    QtKeyEventSeam keys(holder); // no active window and no fallback window: nothing to grab
    cQVXScreenCapture capture(keys);
    ASSERT_EQ(QApplication::activeWindow(), nullptr);
    EXPECT_TRUE(capture.CaptureScreen(true));
    EXPECT_FALSE(holder.hasPicture());
    EXPECT_FALSE(keys.altHeld());
}

TEST(ScreenCapture, AltPrintScreenPutsTheProgramWindowIntoTheHolder) {
    QWidget window;
    window.setAutoFillBackground(true);
    QPalette palette = window.palette();
    palette.setColor(QPalette::Window, QColor(200, 30, 40));
    window.setPalette(palette);
    window.resize(320, 200);
    window.show();

    CaptureHolder holder;
    QtKeyEventSeam keys(holder);
    keys.setFallbackWindow(&window);
    cQVXScreenCapture capture(keys);
    EXPECT_TRUE(capture.CaptureScreen(true));
    ASSERT_TRUE(holder.hasPicture());
    const QImage picture = holder.takePicture();
    EXPECT_FALSE(holder.hasPicture());
    EXPECT_EQ(picture.size(), QSize(320, 200) * window.devicePixelRatio());
    EXPECT_EQ(QColor(picture.pixel(10, 10)), QColor(200, 30, 40));
}

TEST(ScreenCapture, PrintScreenAloneTakesTheWholeScreen) {
    QWidget window;
    window.resize(100, 80);
    window.show();
    CaptureHolder holder;
    QtKeyEventSeam keys(holder);
    cQVXScreenCapture capture(keys);
    EXPECT_TRUE(capture.CaptureScreen());
    ASSERT_TRUE(holder.hasPicture());
    const QScreen* screen = QGuiApplication::primaryScreen();
    EXPECT_EQ(holder.picture().size(), screen->geometry().size() * screen->devicePixelRatio());
}

TEST(CaptureHolderTest, TakePictureHandsTheImageOverOnce) {
    CaptureHolder holder;
    holder.setPicture(solidPicture(4, 3, Qt::blue));
    EXPECT_EQ(holder.takePicture().size(), QSize(4, 3));
    EXPECT_FALSE(holder.hasPicture());
    EXPECT_TRUE(holder.takePicture().isNull());
}

} // namespace
} // namespace zorvik::test
