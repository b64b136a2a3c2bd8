// QtFormGeometry on an offscreen widget: twips in and out, window state, and a position
// saved and restored through cInifile.
#include "../storage/IniTestSupport.h"

#include "storage/QtFormGeometry.h"
#include "storage/cInifile.h"

#include <QGuiApplication>
#include <QScreen>
#include <QTest>
#include <QWidget>

using namespace zorvik;
using namespace zorvik::testing;

namespace {

class QtFormGeometryTest : public ::testing::Test {
protected:
    void SetUp() override {
        form.setGeometry(40, 30, 320, 200);
        form.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&form));
    }

    QWidget form;
};

TEST_F(QtFormGeometryTest, GeometryIsReportedInTwipsAt15PerPixel) {
    const QtFormGeometry geometry(&form);
    const QRect frame = form.frameGeometry();
    EXPECT_EQ(geometry.left(), frame.x() * 15);
    EXPECT_EQ(geometry.top(), frame.y() * 15);
    EXPECT_EQ(geometry.width(), frame.width() * 15);
    EXPECT_EQ(geometry.height(), frame.height() * 15);
    EXPECT_EQ(geometry.twipsPerPixelX(), 15);
    EXPECT_EQ(geometry.twipsPerPixelY(), 15);
    const QSize screen = form.screen()->geometry().size();
    EXPECT_EQ(geometry.screenWidth(), screen.width() * 15);
    EXPECT_EQ(geometry.screenHeight(), screen.height() * 15);
}

TEST_F(QtFormGeometryTest, MoveTakesTwipsAndSetsTheOuterRectangle) {
    QtFormGeometry geometry(&form);
    geometry.move(1500, 900, 6000, 4500);
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return form.frameGeometry() == QRect(100, 60, 400, 300); }, 5000));
    EXPECT_EQ(geometry.left(), 1500);
    EXPECT_EQ(geometry.width(), 6000);
}

TEST_F(QtFormGeometryTest, WindowStateFollowsTheWidget) {
    QtFormGeometry geometry(&form);
    EXPECT_EQ(geometry.windowState(), FormGeometry::WindowState::Normal);
    geometry.setWindowState(FormGeometry::WindowState::Maximised);
    EXPECT_TRUE(form.isMaximized());
    EXPECT_EQ(geometry.windowState(), FormGeometry::WindowState::Maximised);
    geometry.setWindowState(FormGeometry::WindowState::Minimised);
    EXPECT_EQ(geometry.windowState(), FormGeometry::WindowState::Minimised);
    geometry.setWindowState(FormGeometry::WindowState::Normal);
    EXPECT_EQ(geometry.windowState(), FormGeometry::WindowState::Normal);
}

TEST_F(QtFormGeometryTest, PositionSavedByCInifileIsRestoredOnAnotherWindow) {
    TempDir dir;
    cInifile ini;
    ini.setPath(dir.file("forms.ini"));
    ini.setSection("frmMain");
    QtFormGeometry saved(&form);
    ini.SaveFormPosition(saved);
    EXPECT_EQ(readValue("frmMain", "Left", ini.Path()), std::to_string(saved.left()));
    EXPECT_EQ(readValue("frmMain", "Width", ini.Path()), std::to_string(saved.width()));
    EXPECT_EQ(readValue("frmMain", "Maximised", ini.Path()), "0");

    QWidget other;
    other.setGeometry(200, 200, 100, 100);
    other.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&other));
    QtFormGeometry restored(&other);
    ini.LoadFormPosition(restored);
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return other.frameGeometry() == form.frameGeometry(); }, 5000));
}

} // namespace
