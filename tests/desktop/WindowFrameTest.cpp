// The main window's size on a desktop with a window manager: it starts at its design size of
// 12000 x 9000 twips (800 x 600 pixels) measured by its outer frame, centred on the screen by
// that frame, and the minimum it snaps back to is the same outer size.
#include "DesktopWindowFixture.h"
#include "X11Window.h"

#include <QScreen>

using namespace zorvik;
using namespace zorvik::test;

namespace {

class WindowFrame : public DesktopWindowFixture {
protected:
    /// The placement once the window manager has framed the window and it stopped moving.
    XPlacement settled(const QWidget& w) {
        XPlacement last;
        int same = 0;
        (void)QTest::qWaitFor(
            [&] {
                const XPlacement now = xPlacement(&w);
                same = (now.outer() == last.outer() && !now.frame.isNull()) ? same + 1 : 0;
                last = now;
                return same >= 3;
            },
            10000);
        return last;
    }
};

TEST_F(WindowFrame, TheWindowStartsAtItsDesignSizeByItsOuterFrameCentredOnTheScreen) {
    frmMain& w = start();
    const XPlacement p = settled(w);
    ASSERT_FALSE(p.frame.isNull()) << "the window manager drew no frame";
    EXPECT_EQ(p.outer().size(), QSize(800, 600));
    const QRect screen = w.screen()->geometry();
    EXPECT_EQ(p.outer().left(), screen.left() + (screen.width() - 800) / 2);
    EXPECT_EQ(p.outer().top(), screen.top() + (screen.height() - 600) / 2);
}

TEST_F(WindowFrame, ANarrowerWindowSnapsBackToTheStartUpWidthAndKeepsItsHeight) {
    frmMain& w = start();
    const XPlacement first = settled(w);
    ASSERT_FALSE(first.frame.isNull());
    // The user drags the frame narrower and taller.
    runX("xdotool", {"windowsize", QString::number(w.winId()), "600", "700"});
    XPlacement p;
    ASSERT_TRUE(QTest::qWaitFor(
        [&] {
            p = xPlacement(&w);
            return p.outer().size() == QSize(800, 700 + first.frame.top() + first.frame.bottom());
        },
        10000))
        << p.outer().width() << " x " << p.outer().height();
}

TEST_F(WindowFrame, ATooNarrowAndTooLowWindowReachesTheStartUpSize) {
    frmMain& w = start();
    const XPlacement first = settled(w);
    ASSERT_FALSE(first.frame.isNull());
    runX("xdotool", {"windowsize", QString::number(w.winId()), "500", "300"});
    XPlacement p;
    ASSERT_TRUE(QTest::qWaitFor(
        [&] {
            p = xPlacement(&w);
            return p.outer().size() == first.outer().size();
        },
        10000))
        << p.outer().width() << " x " << p.outer().height();
    EXPECT_EQ(p.outer().size(), QSize(800, 600));
}

} // namespace
