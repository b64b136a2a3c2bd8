// Every modal window opens above the program's other windows and has the focus, wherever it is
// opened from: from the main window, from the File window above it, and from another modal
// window. A window opened behind another looks as if the program had frozen.
#include "DesktopWindowFixture.h"
#include "X11Window.h"
#include "storage/frmFile.h"
#include "widgets/LitButton.h"

#include <QMenu>
#include <QPushButton>
#include <map>
#include <string>
#include <vector>

using namespace zorvik;
using namespace zorvik::test;

namespace {

class WindowsOnTop : public DesktopWindowFixture {
protected:
    /// Once the window titled `title` shows, records whether it came up on top with the focus,
    /// then runs `next` with it (which must close it).
    void check(const QString& title, std::function<void(QWidget*)> next) {
        whenShown(title, [this, title, next](QWidget* w) {
            const bool up = QTest::qWaitFor([w] { return onTopAndFocused(w); }, 5000);
            onTop[title] = up;
            openings.push_back(title.toStdString() + (up ? ": on top" : ": behind"));
            if (!up) {
                // What the X server had, for the failure message.
                QString stack;
                for (quint64 id : stackingOrder())
                    stack += QString::number(id, 16) + ' ';
                ADD_FAILURE() << title.toStdString() << " is 0x" << std::hex << w->winId()
                              << "; focus 0x" << activeWindowId() << "; stacking (bottom first) "
                              << stack.toStdString();
            }
            next(w);
        });
    }
    std::map<QString, bool> onTop;
    std::vector<std::string> openings; // every window checked, in order
};

TEST_F(WindowsOnTop, TheAboutBoxAndSystemInformationFromTheMainWindow) {
    frmMain& w = start();
    w.activateWindow(); // without a window manager nothing else gives it the focus
    ASSERT_TRUE(QTest::qWaitFor([&] { return onTopAndFocused(&w); }, 5000));
    check("About Zorvik", [this](QWidget* about) {
        check("System Information", [](QWidget* info) { info->close(); });
        about->findChild<QPushButton*>("cmdSysInfo")->click();
        about->close();
    });
    w.About(&w);
    ASSERT_EQ(onTop.size(), 2u);
    EXPECT_TRUE(onTop["About Zorvik"]);
    EXPECT_TRUE(onTop["System Information"]);
}

TEST_F(WindowsOnTop, TheAboutBoxFromTheFileWindowStandsAboveTheFileWindow) {
    frmMain& w = start();
    // As a user finds it: the front panel on the screen, in front, before FILE is pressed.
    w.activateWindow();
    ASSERT_TRUE(QTest::qWaitFor([&] { return onTopAndFocused(&w); }, 5000));
    check("File", [this](QWidget* form) {
        auto* f = static_cast<frmFile*>(form);
        // Twice: the second time the About box is opened again from where it was left.
        for (int round = 0; round < 2; ++round) {
            check("About Zorvik", [](QWidget* about) { about->close(); });
            f->mnuAbout->trigger();
        }
        f->close();
    });
    w.panel().CWBFile->setValue(true);
    ASSERT_TRUE(QTest::qWaitFor([&] { return openings.size() == 3 && !w.panel().CWBFile->value(); },
                                30000));
    const std::vector<std::string> expected = {"File: on top", "About Zorvik: on top",
                                               "About Zorvik: on top"};
    EXPECT_EQ(openings, expected);
}

// The About box was the splash screen first: the window that stood above everything while the
// program loaded still opens above the main window when asked for later.
TEST_F(WindowsOnTop, TheAboutBoxAfterTheSplashScreen) {
    splashMinDisplayMs = 500;
    frmMain& w = start();
    w.activateWindow();
    ASSERT_TRUE(QTest::qWaitFor([&] { return onTopAndFocused(&w); }, 5000));
    for (int round = 0; round < 2; ++round) {
        onTop.clear();
        check("About Zorvik", [](QWidget* about) { about->close(); });
        w.About(&w);
        EXPECT_TRUE(onTop["About Zorvik"]) << "round " << round;
        w.activateWindow();
        ASSERT_TRUE(QTest::qWaitFor([&] { return onTopAndFocused(&w); }, 5000));
    }
}

TEST_F(WindowsOnTop, MessagesFromTheMainWindow) {
    frmMain& w = start();
    w.activateWindow();
    ASSERT_TRUE(QTest::qWaitFor([&] { return onTopAndFocused(&w); }, 5000));
    check("Communication Error", [](QWidget* box) { box->close(); });
    w.panel().CWBPwr->setValue(true); // no port is present: the search fails at once
    ASSERT_TRUE(QTest::qWaitFor([&] { return onTop.count("Communication Error") == 1; }, 10000));
    EXPECT_TRUE(onTop["Communication Error"]);
}

} // namespace
