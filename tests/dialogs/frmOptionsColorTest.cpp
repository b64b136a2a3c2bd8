// Tests of the Options dialog's colour page: the seven colour buttons with the colour chooser
// faked, Cancel in the chooser, Restore Defaults and the swatches on the buttons.
#include "OptionsRig.h"

#include "dialogs/frmOptions.h"

#include <QPushButton>
#include <QTabBar>
#include <gtest/gtest.h>

using namespace zorvik;
using namespace zorvik::test;

namespace {

struct ButtonTarget {
    const char* button;
    const char* target; ///< key of the fake host's colours
};

const ButtonTarget kTargets[] = {
    {"cmdCursor1Color", "Cursor1"},    {"cmdCursor2Color", "Cursor2"},
    {"cmdCursor3Color", "Cursor3"},    {"cmdCursor4Color", "Cursor4"},
    {"cmdDisplayColor", "PlotArea"},   {"cmdPrimaryTraceColor", "CHa"},
    {"cmdReferenceTraceColor", "Ref"},
};

/// Opens the dialog on the "Colors" page.
frmOptions& openColors(OptionsRig& rig) {
    frmOptions& dialog = rig.open();
    control<QTabBar>(dialog, "tbsOptions")->setCurrentIndex(1);
    return dialog;
}

/// The colour in the middle of a button's swatch.
QColor swatchColor(QPushButton* button) {
    const QImage image = button->icon().pixmap(button->iconSize()).toImage();
    return image.pixelColor(image.width() / 2, image.height() / 2);
}

} // namespace

TEST(frmOptionsColor, EachColorButtonPresetsTheChooserAndColoursItsTargetAtOnce) {
    for (const ButtonTarget& t : kTargets) {
        OptionsRig rig;
        frmOptions& dialog = openColors(rig);
        const QColor before = rig.host.colors.at(t.target);
        rig.chooserAnswer = QColor(0x12, 0x34, 0x56);
        control<QPushButton>(dialog, t.button)->click();
        ASSERT_EQ(rig.chooserPresets.size(), 1u) << t.button;
        EXPECT_EQ(rig.chooserPresets[0], before) << t.button;
        EXPECT_EQ(rig.host.colorLog, QStringList({QString::fromLatin1(t.target) + "=#123456"}))
            << t.button;
        EXPECT_EQ(rig.host.colors.at(t.target), QColor(0x12, 0x34, 0x56)) << t.button;
        EXPECT_TRUE(rig.host.log.isEmpty()) << t.button;
    }
}

TEST(frmOptionsColor, CancelInTheChooserLeavesTheColourAndShowsNoMessage) {
    for (const ButtonTarget& t : kTargets) {
        OptionsRig rig;
        frmOptions& dialog = openColors(rig);
        const QColor before = rig.host.colors.at(t.target);
        rig.chooserAnswer = std::nullopt;
        control<QPushButton>(dialog, t.button)->click();
        EXPECT_EQ(rig.chooserPresets.size(), 1u) << t.button;
        EXPECT_EQ(rig.host.colors.at(t.target), before) << t.button;
        EXPECT_TRUE(rig.host.colorLog.isEmpty()) << t.button;
        EXPECT_TRUE(rig.messages.empty()) << t.button;
        EXPECT_TRUE(dialog.isVisible()) << t.button;
    }
}

TEST(frmOptionsColor, ColourButtonsAreOutOfReachWhileTheCommunicationsPageIsInFront) {
    OptionsRig rig;
    frmOptions& dialog = rig.open();
    rig.chooserAnswer = QColor(Qt::red);
    control<QPushButton>(dialog, "cmdCursor1Color")->click();
    EXPECT_TRUE(rig.chooserPresets.empty());
    EXPECT_TRUE(rig.host.colorLog.isEmpty());
}

TEST(frmOptionsColor, RestoreDefaultsPutsBackTheColoursRecordedAtStartUp) {
    OptionsRig rig;
    frmOptions& dialog = openColors(rig);
    control<QPushButton>(dialog, "cmdDefault")->click();
    EXPECT_EQ(rig.host.colorLog,
              QStringList({"Cursor1=#c89664", "Cursor2=#c79563", "Cursor3=#c69462",
                           "Cursor4=#c59361", "PlotArea=#c49260", "CHa=#c3915f", "Ref=#c2905e"}));
    for (const auto& [name, color] : rig.host.defaults)
        EXPECT_EQ(rig.host.colors.at(name), color) << name.toStdString();
    EXPECT_TRUE(rig.chooserPresets.empty());
    EXPECT_TRUE(rig.host.log.isEmpty());
}

TEST(frmOptionsColor, ColourChangesStayWhenTheDialogIsCancelled) {
    OptionsRig rig;
    frmOptions& dialog = openColors(rig);
    rig.chooserAnswer = QColor(0, 255, 0);
    control<QPushButton>(dialog, "cmdPrimaryTraceColor")->click();
    dialog.cmdCancel_Click();
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(rig.host.colors.at("CHa"), QColor(0, 255, 0));
    EXPECT_EQ(rig.host.colorLog, QStringList({"CHa=#00ff00"}));
}

TEST(frmOptionsColor, ButtonsShowTheCurrentColourAsASwatch) {
    OptionsRig rig;
    rig.host.colors["Ref"] = QColor(255, 0, 255);
    frmOptions& dialog = openColors(rig);
    auto* ref = control<QPushButton>(dialog, "cmdReferenceTraceColor");
    EXPECT_EQ(swatchColor(ref), QColor(255, 0, 255));
    EXPECT_EQ(ref->accessibleDescription(), "Color #ff00ff");

    rig.chooserAnswer = QColor(0, 0, 255);
    ref->click();
    EXPECT_EQ(swatchColor(ref), QColor(0, 0, 255));

    control<QPushButton>(dialog, "cmdDefault")->click();
    EXPECT_EQ(swatchColor(ref), rig.host.defaults.at("Ref"));
    EXPECT_EQ(swatchColor(control<QPushButton>(dialog, "cmdDisplayColor")),
              rig.host.defaults.at("PlotArea"));
}

TEST(frmOptionsColor, SwatchesFollowColoursChangedWhileTheDialogWasClosed) {
    OptionsRig rig;
    frmOptions& dialog = rig.open();
    dialog.cmdCancel_Click();
    rig.host.colors["Cursor3"] = QColor(1, 2, 3);
    rig.open();
    EXPECT_EQ(swatchColor(control<QPushButton>(dialog, "cmdCursor3Color")), QColor(1, 2, 3));
}
