// cInifile::SaveFormPosition and LoadFormPosition against a fake form: what is written for
// each window state, the 4-pixel screen margin, the minimum size, and forms that lack a
// property.
#include "IniTestSupport.h"

#include "storage/cInifile.h"

#include <stdexcept>

using namespace zorvik;
using namespace zorvik::testing;

namespace {

// A form on a 1000 x 800 pixel screen with 15 twips per pixel (15000 x 12000 twips).
class FakeForm : public FormGeometry {
public:
    std::int32_t l = 1500, t = 1200, w = 6000, h = 4500;
    WindowState state = WindowState::Normal;
    int moves = 0;
    bool noLeft = false;
    bool noScreen = false;

    std::int32_t left() const override {
        if (noLeft)
            throw std::runtime_error("no Left property");
        return l;
    }
    std::int32_t top() const override { return t; }
    std::int32_t width() const override { return w; }
    std::int32_t height() const override { return h; }
    void move(std::int32_t left, std::int32_t top, std::int32_t width,
              std::int32_t height) override {
        l = left;
        t = top;
        w = width;
        h = height;
        ++moves;
    }
    WindowState windowState() const override { return state; }
    void setWindowState(WindowState s) override { state = s; }
    std::int32_t screenWidth() const override {
        if (noScreen)
            throw std::runtime_error("no screen");
        return 15000;
    }
    std::int32_t screenHeight() const override { return 12000; }
    std::int32_t twipsPerPixelX() const override { return 15; }
    std::int32_t twipsPerPixelY() const override { return 15; }
};

class FormPosition : public ::testing::Test {
protected:
    void SetUp() override {
        path = dir.file("forms.ini");
        ini.setPath(path);
        ini.setSection("frmMain");
        ini.setKey("caller's key");
    }
    void stored(const std::string& left, const std::string& top, const std::string& width,
                const std::string& height, const std::string& maximised = "0") {
        writeBytes(path, "[frmMain]\r\nMaximised=" + maximised + "\r\nLeft=" + left + "\r\nTop=" +
                             top + "\r\nWidth=" + width + "\r\nHeight=" + height + "\r\n");
    }

    TempDir dir;
    std::string path;
    cInifile ini;
    FakeForm form;
};

TEST_F(FormPosition, SaveOfNormalFormWritesStatePositionAndSizeInTwips) {
    ini.SaveFormPosition(form);
    EXPECT_EQ(readBytes(path), "[frmMain]\r\nMaximised=0\r\nLeft=1500\r\nTop=1200\r\n"
                               "Width=6000\r\nHeight=4500\r\n");
    EXPECT_EQ(ini.Key(), "caller's key");
    EXPECT_EQ(ini.Section(), "frmMain");
}

TEST_F(FormPosition, SaveOfMaximisedFormWritesOnlyMaximisedKeepingLastNormalPosition) {
    ini.SaveFormPosition(form);
    form.state = FormGeometry::WindowState::Maximised;
    form.l = 0;
    form.w = 15000;
    ini.SaveFormPosition(form);
    EXPECT_EQ(readBytes(path), "[frmMain]\r\nMaximised=1\r\nLeft=1500\r\nTop=1200\r\n"
                               "Width=6000\r\nHeight=4500\r\n");
}

TEST_F(FormPosition, SaveOfMinimisedFormWritesNothing) {
    form.state = FormGeometry::WindowState::Minimised;
    ini.SaveFormPosition(form);
    EXPECT_FALSE(std::filesystem::exists(path));
    EXPECT_EQ(ini.Key(), "caller's key");
}

TEST_F(FormPosition, SaveOfFormLackingAPropertyEndsQuietlyAndRestoresKey) {
    form.noLeft = true;
    EXPECT_NO_THROW(ini.SaveFormPosition(form));
    EXPECT_EQ(readBytes(path), "[frmMain]\r\nMaximised=0\r\n");
    EXPECT_EQ(ini.Key(), "caller's key");
}

TEST_F(FormPosition, LoadMovesAndSizesTheFormToWhatWasSaved) {
    stored("3000", "2400", "7500", "6000");
    ini.LoadFormPosition(form);
    EXPECT_EQ(form.moves, 1);
    EXPECT_EQ(form.l, 3000);
    EXPECT_EQ(form.t, 2400);
    EXPECT_EQ(form.w, 7500);
    EXPECT_EQ(form.h, 6000);
    EXPECT_EQ(form.state, FormGeometry::WindowState::Normal);
    EXPECT_EQ(ini.Key(), "caller's key");
}

TEST_F(FormPosition, LoadLeavesDefaultAtFail) {
    stored("3000", "2400", "7500", "6000");
    ini.LoadFormPosition(form);
    EXPECT_EQ(ini.Default(), "FAIL");
}

TEST_F(FormPosition, LoadKeepsTheCurrentCoordinateForAMissingOrUnreadableKey) {
    writeBytes(path, "[frmMain]\r\nLeft=3000\r\nTop=junk\r\n");
    ini.LoadFormPosition(form);
    EXPECT_EQ(form.l, 3000);
    EXPECT_EQ(form.t, 1200);
    EXPECT_EQ(form.w, 6000);
    EXPECT_EQ(form.h, 4500);
}

TEST_F(FormPosition, LoadMovesAnEdgeInsideTheMarginOutToFourPixels) {
    stored("0", "-900", "6000", "4500");
    ini.LoadFormPosition(form);
    EXPECT_EQ(form.l, 60);
    EXPECT_EQ(form.t, 60);
    stored("59", "61", "6000", "4500");
    ini.LoadFormPosition(form);
    EXPECT_EQ(form.l, 60);
    EXPECT_EQ(form.t, 61);
}

TEST_F(FormPosition, LoadMovesAFormPassingTheFarEdgeBackToEndAtTheMargin) {
    stored("14000", "11000", "3000", "2000");
    ini.LoadFormPosition(form);
    EXPECT_EQ(form.l, 15000 - 60 - 3000);
    EXPECT_EQ(form.t, 12000 - 60 - 2000);
    EXPECT_EQ(form.w, 3000);
    EXPECT_EQ(form.h, 2000);
    stored("11940", "9940", "3000", "2000"); // ends exactly at the margin: stays
    ini.LoadFormPosition(form);
    EXPECT_EQ(form.l, 11940);
    EXPECT_EQ(form.t, 9940);
}

TEST_F(FormPosition, LoadPlacesAFormLargerThanTheScreenAtTheMarginAndShrinksIt) {
    stored("500", "500", "20000", "13000");
    ini.LoadFormPosition(form);
    EXPECT_EQ(form.l, 60);
    EXPECT_EQ(form.t, 60);
    EXPECT_EQ(form.w, 15000 - 120);
    EXPECT_EQ(form.h, 12000 - 120);
}

TEST_F(FormPosition, LoadRaisesWidthAndHeightBelowTheMinimum) {
    stored("1500", "1500", "1000", "800");
    ini.LoadFormPosition(form, 3000, 2500);
    EXPECT_EQ(form.moves, 1);
    EXPECT_EQ(form.w, 3000);
    EXPECT_EQ(form.h, 2500);
}

TEST_F(FormPosition, LoadLeavesTheFormWhenTheScreenIsTooSmallForTheMinimum) {
    stored("1500", "1500", "6000", "4500");
    ini.LoadFormPosition(form, 16000, 1000);
    EXPECT_EQ(form.moves, 0);
    EXPECT_EQ(form.l, 1500);
    EXPECT_EQ(form.w, 6000);
}

TEST_F(FormPosition, LoadMaximisesForANonZeroMaximised) {
    stored("1500", "1500", "6000", "4500", "1");
    ini.LoadFormPosition(form);
    EXPECT_EQ(form.state, FormGeometry::WindowState::Maximised);
    form.state = FormGeometry::WindowState::Normal;
    stored("1500", "1500", "6000", "4500", "-3");
    ini.LoadFormPosition(form);
    EXPECT_EQ(form.state, FormGeometry::WindowState::Maximised);
}

TEST_F(FormPosition, LoadDoesNotMaximiseForZeroOrAMissingKey) {
    stored("1500", "1500", "6000", "4500", "0");
    ini.LoadFormPosition(form);
    EXPECT_EQ(form.state, FormGeometry::WindowState::Normal);
    writeBytes(path, "[frmMain]\r\nLeft=1500\r\n");
    ini.LoadFormPosition(form);
    EXPECT_EQ(form.state, FormGeometry::WindowState::Normal);
}

TEST_F(FormPosition, LoadOfFormLackingAPropertyEndsQuietlyAndRestoresKey) {
    stored("3000", "2400", "7500", "6000", "1");
    form.noScreen = true;
    EXPECT_NO_THROW(ini.LoadFormPosition(form));
    EXPECT_EQ(form.moves, 0);
    EXPECT_EQ(form.state, FormGeometry::WindowState::Normal);
    EXPECT_EQ(ini.Key(), "caller's key");
}

TEST_F(FormPosition, SavedPositionLoadsBackUnchanged) {
    ini.SaveFormPosition(form);
    FakeForm other;
    other.l = other.t = other.w = other.h = 100;
    ini.LoadFormPosition(other);
    EXPECT_EQ(other.l, 1500);
    EXPECT_EQ(other.t, 1200);
    EXPECT_EQ(other.w, 6000);
    EXPECT_EQ(other.h, 4500);
}

} // namespace
