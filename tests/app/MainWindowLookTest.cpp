// The look of the main window as it is resized: the type of the status bar grows and shrinks
// with the panel's own.
#include "app/MainWindowFixture.h"

#include <QStatusBar>
#include <QTest>

using namespace zorvik;
using zorvik::test::MainWindowFixture;

using MainWindowLook = MainWindowFixture;

TEST_F(MainWindowLook, StatusBarTypeGrowsAndShrinksWithThePanel) {
    frmMain& w = start();
    const QLabel* pan = w.findChild<QLabel*>("lblPan");
    ASSERT_NE(pan, nullptr);
    const double design = w.panel().sbrSampleRate->font().pointSizeF();
    EXPECT_EQ(design, pan->font().pointSizeF());

    w.resize(1600, 1200);
    ASSERT_TRUE(QTest::qWaitFor([&] { return pan->font().pointSizeF() > design; }, 2000));
    for (QLabel* panel : {w.panel().sbrBaudRate, w.panel().sbrComPort, w.panel().sbrSampleRate})
        EXPECT_EQ(panel->font().pointSizeF(), pan->font().pointSizeF())
            << panel->objectName().toStdString();
    EXPECT_GT(w.statusBar()->height(), 0);
    // The bar keeps its place under the panel's controls.
    EXPECT_EQ(w.statusBar()->geometry().bottom(), w.height() - 1);

    w.resize(800, 600);
    ASSERT_TRUE(QTest::qWaitFor([&] { return pan->font().pointSizeF() <= design; }, 2000));
    EXPECT_EQ(w.panel().sbrSampleRate->font().pointSizeF(), pan->font().pointSizeF());
}
