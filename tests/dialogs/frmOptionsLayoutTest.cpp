// Tests of the Options dialog's controls: names, captions, tool tips, accessible names, the
// two pages and their places, Ctrl+Tab, the key order, Enter and Escape.
#include "OptionsRig.h"

#include "dialogs/frmOptions.h"
#include "support/Twips.h"

#include <QApplication>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QTabBar>
#include <QTest>
#include <gtest/gtest.h>

using namespace zorvik;
using namespace zorvik::test;

namespace {

struct Caption {
    const char* name;
    const char* text;
    const char* frame;
};

const Caption kButtons[] = {
    {"cmdCursor1Color", "Cursor 1", "fraVcursors"},
    {"cmdCursor2Color", "Cursor 2", "fraVcursors"},
    {"cmdCursor3Color", "Cursor 3", "fraHcursors"},
    {"cmdCursor4Color", "Cursor 4", "fraHcursors"},
    {"cmdDisplayColor", "Plot Area", "fraDisplay"},
    {"cmdPrimaryTraceColor", "Primary Trace", "fraDisplay"},
    {"cmdReferenceTraceColor", "Ref. Trace", "fraDisplay"},
    {"cmdDefault", "Restore Defaults", "fraRestore"},
};

const Caption kFrames[] = {
    {"fraSerialPort", "Serial Port", "picOptions(0)"},
    {"fraVcursors", "V-Cursors", "picOptions(1)"},
    {"fraHcursors", "H-Cursors", "picOptions(1)"},
    {"fraDisplay", "Display", "picOptions(1)"},
    {"fraRestore", "Restore", "picOptions(1)"},
};

/// True when `widget` lies inside the control named `ancestor`.
bool inside(const QWidget* widget, const char* ancestor) {
    for (const QWidget* w = widget; w; w = w->parentWidget()) {
        if (w->objectName() == QLatin1String(ancestor))
            return true;
    }
    return false;
}

} // namespace

TEST(frmOptionsLayout, DialogIsFrmOptionsCaptionedOptions) {
    OptionsRig rig;
    frmOptions& dialog = rig.open();
    EXPECT_EQ(dialog.objectName(), "frmOptions");
    EXPECT_EQ(dialog.windowTitle(), "Options");
    EXPECT_EQ(dialog.parentWidget(), &rig.mainWindow);
}

TEST(frmOptionsLayout, TabStripHasCommunicationsAndColorsWithTheirKeysAndToolTips) {
    OptionsRig rig;
    frmOptions& dialog = rig.open();
    auto* tabs = control<QTabBar>(dialog, "tbsOptions");
    ASSERT_EQ(tabs->count(), 2);
    EXPECT_EQ(tabs->tabText(0), "Communications");
    EXPECT_EQ(tabs->tabData(0).toString(), "tabCommunications");
    EXPECT_EQ(tabs->tabToolTip(0), "Set Options for Com Port");
    EXPECT_EQ(tabs->tabText(1), "Colors");
    EXPECT_EQ(tabs->tabData(1).toString(), "tabColors");
    EXPECT_EQ(tabs->tabToolTip(1), "Set Options for Colors");
    EXPECT_EQ(tabs->accessibleTabName(0), "Communications");
    EXPECT_EQ(tabs->accessibleTabName(1), "Colors");
}

TEST(frmOptionsLayout, FramesCarryTheirCaptionsOnTheirPages) {
    OptionsRig rig;
    frmOptions& dialog = rig.open();
    for (const Caption& c : kFrames) {
        auto* frame = control<QGroupBox>(dialog, c.name);
        ASSERT_NE(frame, nullptr);
        EXPECT_EQ(frame->title(), c.text) << c.name;
        EXPECT_EQ(frame->accessibleName(), c.text) << c.name;
        EXPECT_TRUE(inside(frame, c.frame)) << c.name;
    }
}

TEST(frmOptionsLayout, ColorButtonsCarryTheirCaptionsInTheirFrames) {
    OptionsRig rig;
    frmOptions& dialog = rig.open();
    for (const Caption& c : kButtons) {
        auto* button = control<QPushButton>(dialog, c.name);
        ASSERT_NE(button, nullptr);
        EXPECT_EQ(button->text(), c.text) << c.name;
        EXPECT_EQ(button->accessibleName(), c.text) << c.name;
        EXPECT_TRUE(inside(button, c.frame)) << c.name;
    }
}

TEST(frmOptionsLayout, OkCancelAndApplyLieOutsideThePages) {
    OptionsRig rig;
    frmOptions& dialog = rig.open();
    const Caption buttons[] = {
        {"cmdOK", "OK", ""}, {"cmdCancel", "Cancel", ""}, {"cmdApply", "Apply", ""}};
    for (const Caption& c : buttons) {
        auto* button = control<QPushButton>(dialog, c.name);
        ASSERT_NE(button, nullptr);
        EXPECT_EQ(button->text(), c.text);
        EXPECT_EQ(button->accessibleName(), c.text);
        EXPECT_EQ(button->parentWidget(), &dialog);
        EXPECT_TRUE(button->isEnabled());
    }
    EXPECT_TRUE(control<QPushButton>(dialog, "cmdOK")->isDefault());
}

TEST(frmOptionsLayout, PortListsSitInTheSerialPortFrameWithAccessibleNamesAndLabels) {
    OptionsRig rig;
    frmOptions& dialog = rig.open();
    auto* port = control<QComboBox>(dialog, "cboComPort");
    auto* baud = control<QComboBox>(dialog, "cboBaudRate");
    ASSERT_TRUE(port && baud);
    EXPECT_TRUE(inside(port, "fraSerialPort"));
    EXPECT_TRUE(inside(baud, "fraSerialPort"));
    EXPECT_EQ(port->accessibleName(), "Serial Port");
    EXPECT_EQ(baud->accessibleName(), "Baud Rate");
    QStringList buddiesOf;
    for (const QLabel* label : dialog.findChildren<QLabel*>()) {
        if (label->buddy())
            buddiesOf << label->buddy()->objectName() + QLatin1Char(':') + label->text();
    }
    buddiesOf.sort();
    EXPECT_EQ(buddiesOf, QStringList({"cboBaudRate:&Baud Rate:", "cboComPort:&Port:"}));
}

TEST(frmOptionsLayout, PortListHoldsTheDesignEntriesBeforeTheFirstLoad) {
    FakeOptionsHost host;
    frmOptions dialog(host);
    auto* port = control<QComboBox>(dialog, "cboComPort");
    ASSERT_EQ(port->count(), 4);
    EXPECT_EQ(port->itemText(0), "COM 1");
    EXPECT_EQ(port->itemText(3), "COM 4");
    EXPECT_FALSE(dialog.blnLoaded());
}

TEST(frmOptionsLayout, BaudRateListOffersOnly19200AndSelectsIt) {
    OptionsRig rig;
    frmOptions& dialog = rig.open();
    auto* baud = control<QComboBox>(dialog, "cboBaudRate");
    ASSERT_EQ(baud->count(), 1);
    EXPECT_EQ(baud->itemText(0), "19200");
    EXPECT_EQ(baud->currentIndex(), 0);
}

TEST(frmOptionsLayout, SelectedPageSitsAt210TwipsEnabledAndTheOtherAtMinus20000Disabled) {
    OptionsRig rig;
    frmOptions& dialog = rig.open();
    auto* tabs = control<QTabBar>(dialog, "tbsOptions");
    auto* communications = control<QWidget>(dialog, "picOptions(0)");
    auto* colors = control<QWidget>(dialog, "picOptions(1)");
    EXPECT_EQ(tabs->currentIndex(), 0);
    EXPECT_EQ(communications->x(), 14);
    EXPECT_EQ(communications->x(), twipsToPixels(210));
    EXPECT_TRUE(communications->isEnabled());
    EXPECT_EQ(colors->x(), twipsToPixels(-20000));
    EXPECT_EQ(colors->x(), -1333);
    EXPECT_FALSE(colors->isEnabled());

    tabs->setCurrentIndex(1);
    EXPECT_EQ(colors->x(), 14);
    EXPECT_TRUE(colors->isEnabled());
    EXPECT_EQ(communications->x(), -1333);
    EXPECT_FALSE(communications->isEnabled());
    EXPECT_EQ(colors->y(), communications->y());
    // The page in front lies within the dialog.
    EXPECT_TRUE(dialog.rect().contains(colors->geometry()));
}

TEST(frmOptionsLayout, EachLoadStartsOnTheCommunicationsPage) {
    OptionsRig rig;
    frmOptions& first = rig.open();
    control<QTabBar>(first, "tbsOptions")->setCurrentIndex(1);
    first.cmdCancel_Click();
    frmOptions& again = rig.open();
    EXPECT_EQ(control<QTabBar>(again, "tbsOptions")->currentIndex(), 0);
    EXPECT_TRUE(control<QWidget>(again, "picOptions(0)")->isEnabled());
    EXPECT_EQ(control<QWidget>(again, "picOptions(1)")->x(), -1333);
}

TEST(frmOptionsLayout, CtrlTabSelectsTheNextTab) {
    OptionsRig rig;
    frmOptions& dialog = rig.open();
    auto* tabs = control<QTabBar>(dialog, "tbsOptions");
    QTest::keyClick(control<QComboBox>(dialog, "cboComPort"), Qt::Key_Tab, Qt::ControlModifier);
    EXPECT_EQ(tabs->currentIndex(), 1);
    EXPECT_EQ(control<QWidget>(dialog, "picOptions(1)")->x(), 14);
}

TEST(frmOptionsLayout, CtrlTabOnTheLastTabReturnsToCommunications) {
    OptionsRig rig;
    frmOptions& dialog = rig.open();
    auto* tabs = control<QTabBar>(dialog, "tbsOptions");
    tabs->setCurrentIndex(1);
    QTest::keyClick(control<QPushButton>(dialog, "cmdCursor1Color"), Qt::Key_Tab,
                    Qt::ControlModifier);
    EXPECT_EQ(tabs->currentIndex(), 0);
    EXPECT_EQ(tabs->tabText(tabs->currentIndex()), "Communications");
    EXPECT_TRUE(control<QWidget>(dialog, "picOptions(0)")->isEnabled());
    EXPECT_FALSE(control<QWidget>(dialog, "picOptions(1)")->isEnabled());
}

TEST(frmOptionsLayout, FormKeyDownActsOnlyOnTabWithCtrlAlone) {
    OptionsRig rig;
    frmOptions& dialog = rig.open();
    auto* tabs = control<QTabBar>(dialog, "tbsOptions");
    EXPECT_FALSE(dialog.Form_KeyDown(9, 0));
    EXPECT_FALSE(dialog.Form_KeyDown(9, 3)); // Ctrl+Shift
    EXPECT_FALSE(dialog.Form_KeyDown(65, 2));
    EXPECT_EQ(tabs->currentIndex(), 0);
    EXPECT_TRUE(dialog.Form_KeyDown(9, 2));
    EXPECT_EQ(tabs->currentIndex(), 1);
    EXPECT_TRUE(dialog.Form_KeyDown(9, 2));
    EXPECT_EQ(tabs->currentIndex(), 0);
}

TEST(frmOptionsLayout, FormLoadCentresTheDialogOnTheScreen) {
    OptionsRig rig;
    frmOptions& dialog = rig.open();
    const QRect screen = rig.mainWindow.screen()->geometry();
    EXPECT_EQ(dialog.x(), screen.x() + (screen.width() - dialog.width()) / 2);
    EXPECT_EQ(dialog.y(), screen.y() + (screen.height() - dialog.height()) / 2);
}

TEST(frmOptionsLayout, TabKeyRunsFromTheTabsThroughThePageInFrontToTheButtons) {
    OptionsRig rig;
    frmOptions& dialog = rig.open();
    dialog.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    auto* tabs = control<QTabBar>(dialog, "tbsOptions");
    tabs->setFocus();
    QStringList visited;
    for (int i = 0; i < 6; ++i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        visited << QApplication::focusWidget()->objectName();
    }
    EXPECT_EQ(visited, QStringList({"cboComPort", "cboBaudRate", "cmdOK", "cmdCancel", "cmdApply",
                                    "tbsOptions"}));

    tabs->setCurrentIndex(1);
    tabs->setFocus();
    visited.clear();
    for (int i = 0; i < 9; ++i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        visited << QApplication::focusWidget()->objectName();
    }
    EXPECT_EQ(visited, QStringList({"cmdCursor1Color", "cmdCursor2Color", "cmdCursor3Color",
                                    "cmdCursor4Color", "cmdDisplayColor", "cmdPrimaryTraceColor",
                                    "cmdReferenceTraceColor", "cmdDefault", "cmdOK"}));
}

TEST(frmOptionsLayout, EscapeActsAsCancel) {
    OptionsRig rig;
    rig.host.exists = {false, true, true, true};
    frmOptions& dialog = rig.open();
    auto* port = control<QComboBox>(dialog, "cboComPort");
    port->setCurrentIndex(2);
    QTest::keyClick(port, Qt::Key_Escape);
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(dialog.result(), QDialog::Rejected);
    EXPECT_EQ(rig.host.comPort, 1);
    EXPECT_EQ(rig.host.log, QStringList({"resumeReception"}));
}

TEST(frmOptionsLayout, EnterActsAsOk) {
    OptionsRig rig;
    rig.host.exists = {false, true, true, true};
    frmOptions& dialog = rig.open();
    auto* port = control<QComboBox>(dialog, "cboComPort");
    port->setCurrentIndex(2);
    QTest::keyClick(port, Qt::Key_Return);
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_EQ(rig.host.comPort, 3);
    EXPECT_EQ(rig.host.log, QStringList({"ComPort=3", "blnAutoPort=false", "refreshMainWindow",
                                         "resumeReception"}));
}
