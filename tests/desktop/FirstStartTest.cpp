// The first minute on a desktop: the window opens with the keyboard focus on POWER, so that a
// user who presses Space (or Enter) switches the probe on.
#include "DesktopWindowFixture.h"
#include "X11Window.h"
#include "widgets/LitButton.h"

#include <QApplication>

using namespace zorvik;
using namespace zorvik::test;

namespace {

class FirstStart : public DesktopWindowFixture {};

TEST_F(FirstStart, TheWindowOpensWithTheFocusOnPowerAndSpaceSwitchesItOn) {
    frmMain& w = start();
    ASSERT_TRUE(QTest::qWaitFor([&] { return w.isActiveWindow(); }, 10000));
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return QApplication::focusWidget() == w.panel().CWBPwr; }, 5000))
        << (QApplication::focusWidget() ? QApplication::focusWidget()->objectName().toStdString()
                                        : std::string("nothing"));
    // The real key, through the X server: no port is there, so the search ends with the
    // message, which is closed here.
    bool message = false;
    whenShown("Communication Error", [&](QWidget* box) {
        message = true;
        box->close();
    });
    runX("xdotool", {"key", "--window", QString::number(w.winId()), "space"});
    ASSERT_TRUE(QTest::qWaitFor([&] { return message; }, 10000));
    EXPECT_FALSE(w.panel().CWBPwr->value()); // back off after the failed search
}

} // namespace
