// Tests of the Options dialog's port page: the list filled at load, the user's choice, Apply
// with the port closed or open, OK, Cancel, unloading, and the kept instance.
#include "OptionsRig.h"

#include "dialogs/frmOptions.h"

#include <QComboBox>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

using namespace zorvik;
using namespace zorvik::test;

namespace {

QStringList entries(frmOptions& dialog) {
    auto* port = control<QComboBox>(dialog, "cboComPort");
    QStringList items;
    for (int i = 0; i < port->count(); ++i)
        items << port->itemText(i);
    return items;
}

/// Ports 1 to 4 exist; the dialog is open with COM 1 in use.
struct PortRig : OptionsRig {
    PortRig() { host.exists = {false, true, true, true, true}; }
    /// The user picks "COM n" in the list.
    void choose(frmOptions& dialog, const QString& text) {
        auto* port = control<QComboBox>(dialog, "cboComPort");
        const int index = port->findText(text);
        ASSERT_GE(index, 0) << text.toStdString();
        port->setCurrentIndex(index);
    }
};

} // namespace

TEST(frmOptionsPort, FormLoadListsEveryExistingPortAsComSpaceNumber) {
    OptionsRig rig;
    rig.host.exists = {false, true, true, false, false, true, false, false, true};
    rig.host.comPort = 2;
    frmOptions& dialog = rig.open();
    EXPECT_EQ(entries(dialog), QStringList({"COM 1", "COM 2", "COM 5", "COM 8"}));
    EXPECT_EQ(control<QComboBox>(dialog, "cboComPort")->currentText(), "COM 2");
    EXPECT_FALSE(dialog.blnPortChanged());
    EXPECT_TRUE(dialog.blnLoaded());
    EXPECT_TRUE(rig.host.log.isEmpty());
}

// Each entry keeps its text; its tool tip names the device behind it and what the system
// knows of it.
TEST(frmOptionsPort, EachEntrysToolTipNamesItsDeviceAndDescription) {
    OptionsRig rig;
    rig.host.exists = {false, false, true, false, false, false, false, true, false};
    frmOptions& dialog = rig.open();
    auto* list = control<QComboBox>(dialog, "cboComPort");
    ASSERT_EQ(entries(dialog), QStringList({"COM 2", "COM 7"}));
    EXPECT_EQ(list->itemData(0, Qt::ToolTipRole).toString(),
              "/dev/ttyFAKE2: Fake USB UART, Zorvik, serial Z2, 0403:6001");
    EXPECT_EQ(list->itemData(1, Qt::ToolTipRole).toString(),
              "/dev/ttyFAKE7: Fake USB UART, Zorvik, serial Z7, 0403:6001");
}

TEST(frmOptionsPort, OnlyCom3PresentWithComPort3GivesOneEntryAndSelectsNothing) {
    OptionsRig rig;
    rig.host.exists[3] = true;
    rig.host.comPort = 3;
    frmOptions& dialog = rig.open();
    auto* port = control<QComboBox>(dialog, "cboComPort");
    EXPECT_EQ(entries(dialog), QStringList({"COM 3"}));
    // Entry 2 (ComPort - 1) does not exist in a list of one.
    EXPECT_EQ(port->currentIndex(), -1);
    EXPECT_EQ(port->currentText(), "");
    EXPECT_TRUE(dialog.blnLoaded());
    EXPECT_FALSE(dialog.blnPortChanged());
    EXPECT_TRUE(dialog.isVisible());
}

TEST(frmOptionsPort, MissingLowerPortMakesTheSelectionLandOnALaterPort) {
    OptionsRig rig;
    rig.host.exists = {false, false, true, true};
    rig.host.comPort = 1;
    frmOptions& dialog = rig.open();
    EXPECT_EQ(entries(dialog), QStringList({"COM 2", "COM 3"}));
    EXPECT_EQ(control<QComboBox>(dialog, "cboComPort")->currentText(), "COM 2");
    EXPECT_FALSE(dialog.blnPortChanged());
}

TEST(frmOptionsPort, NoPortAtAllGivesAnEmptyList) {
    OptionsRig rig;
    frmOptions& dialog = rig.open();
    EXPECT_TRUE(entries(dialog).isEmpty());
    EXPECT_EQ(control<QComboBox>(dialog, "cboComPort")->currentIndex(), -1);
    dialog.cmdOK_Click();
    EXPECT_EQ(rig.host.log, QStringList({"refreshMainWindow"}));
}

TEST(frmOptionsPort, ChoosingAPortAfterLoadTakesItsNumberAndMarksThePortChanged) {
    PortRig rig;
    frmOptions& dialog = rig.open();
    rig.choose(dialog, "COM 4");
    EXPECT_TRUE(dialog.blnPortChanged());
    EXPECT_EQ(dialog.intPort(), 4);
    EXPECT_TRUE(rig.host.log.isEmpty()); // nothing is applied yet
    EXPECT_EQ(rig.host.comPort, 1);
}

TEST(frmOptionsPort, ChoosingAPortWithTheArrowKeyCountsAsAChoice) {
    PortRig rig;
    frmOptions& dialog = rig.open();
    QTest::keyClick(control<QComboBox>(dialog, "cboComPort"), Qt::Key_Down);
    EXPECT_TRUE(dialog.blnPortChanged());
    EXPECT_EQ(dialog.intPort(), 2);
}

TEST(frmOptionsPort, ListChangesBeforeLoadAreNotAChoice) {
    FakeOptionsHost host;
    frmOptions dialog(host);
    control<QComboBox>(dialog, "cboComPort")->setCurrentIndex(2);
    EXPECT_FALSE(dialog.blnPortChanged());
    EXPECT_EQ(dialog.intPort(), 0);
}

TEST(frmOptionsPort, ApplyWithThePortClosedSetsComPortAndKeepsThePortChanged) {
    PortRig rig;
    frmOptions& dialog = rig.open();
    rig.choose(dialog, "COM 3");
    control<QPushButton>(dialog, "cmdApply")->click();
    EXPECT_EQ(rig.host.log, QStringList({"ComPort=3", "blnAutoPort=false", "refreshMainWindow"}));
    EXPECT_EQ(rig.host.comPort, 3);
    EXPECT_FALSE(rig.host.autoPort);
    EXPECT_TRUE(dialog.blnPortChanged());
    EXPECT_TRUE(dialog.isVisible());
}

TEST(frmOptionsPort, ApplyWithThePortOpenAndLiveDataMovesTheLinkToTheNewPort) {
    PortRig rig;
    rig.host.open = true;
    rig.host.live = true;
    frmOptions& dialog = rig.open();
    rig.choose(dialog, "COM 3");
    dialog.cmdApply_Click();
    EXPECT_EQ(rig.host.log, QStringList({"closePort", "ComPort=3", "blnAutoPort=false", "openPort",
                                         "refreshMainWindow"}));
    EXPECT_TRUE(rig.host.open);
    EXPECT_FALSE(dialog.blnPortChanged());
}

TEST(frmOptionsPort, ApplyWithThePortOpenButNoLiveDataClosesItAgain) {
    PortRig rig;
    rig.host.open = true;
    rig.host.live = false;
    frmOptions& dialog = rig.open();
    rig.choose(dialog, "COM 3");
    dialog.cmdApply_Click();
    EXPECT_EQ(rig.host.log, QStringList({"closePort", "ComPort=3", "blnAutoPort=false", "openPort",
                                         "closePort", "refreshMainWindow"}));
    EXPECT_FALSE(rig.host.open);
    EXPECT_TRUE(dialog.blnPortChanged());
}

TEST(frmOptionsPort, ApplyTwiceWithoutANewSelectionDoesNothingTheSecondTime) {
    PortRig rig;
    rig.host.open = true;
    rig.host.live = true;
    frmOptions& dialog = rig.open();
    rig.choose(dialog, "COM 2");
    control<QPushButton>(dialog, "cmdApply")->click();
    rig.host.log.clear();
    control<QPushButton>(dialog, "cmdApply")->click();
    // No port is touched the second time; only the window's redraw remains.
    EXPECT_EQ(rig.host.log, QStringList({"refreshMainWindow"}));
    EXPECT_EQ(rig.host.comPort, 2);
}

TEST(frmOptionsPort, ApplyWithoutAChosenPortOnlyRedrawsTheMainWindow) {
    PortRig rig;
    rig.host.open = true;
    rig.host.live = true;
    frmOptions& dialog = rig.open();
    dialog.cmdApply_Click();
    EXPECT_EQ(rig.host.log, QStringList({"refreshMainWindow"}));
    EXPECT_TRUE(rig.host.autoPort);
}

TEST(frmOptionsPort, ApplyToAPortThatVanishedTakesTheLinksFailurePathOnce) {
    PortRig rig;
    rig.host.open = true;
    rig.host.live = true;
    rig.host.openFails = true;
    frmOptions& dialog = rig.open();
    rig.choose(dialog, "COM 4");
    dialog.cmdApply_Click();
    EXPECT_EQ(rig.host.log, QStringList({"closePort", "ComPort=4", "blnAutoPort=false", "openPort",
                                         "closePort", "refreshMainWindow"}));
    ASSERT_EQ(rig.messages.size(), 1u);
    EXPECT_EQ(rig.messages[0].text,
              "Unable to Communicate with Instrument - Check Port Connection!");
    EXPECT_TRUE(dialog.blnPortChanged());
    EXPECT_TRUE(dialog.isVisible());
}

TEST(frmOptionsPort, OkAppliesThenUnloadsAndResumesAfterAPortChange) {
    PortRig rig;
    rig.host.open = true;
    rig.host.live = false;
    frmOptions& dialog = rig.open();
    rig.choose(dialog, "COM 4");
    control<QPushButton>(dialog, "cmdOK")->click();
    EXPECT_EQ(rig.host.log, QStringList({"closePort", "ComPort=4", "blnAutoPort=false", "openPort",
                                         "closePort", "refreshMainWindow", "resumeReception"}));
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
}

TEST(frmOptionsPort, OkAfterAMoveWithLiveDataDoesNotResumeAgain) {
    PortRig rig;
    rig.host.open = true;
    rig.host.live = true;
    frmOptions& dialog = rig.open();
    rig.choose(dialog, "COM 2");
    dialog.cmdOK_Click();
    EXPECT_EQ(rig.host.log, QStringList({"closePort", "ComPort=2", "blnAutoPort=false", "openPort",
                                         "refreshMainWindow"}));
    EXPECT_FALSE(dialog.isVisible());
}

TEST(frmOptionsPort, CancelDropsAnUnappliedPortChoice) {
    PortRig rig;
    frmOptions& dialog = rig.open();
    rig.choose(dialog, "COM 4");
    control<QPushButton>(dialog, "cmdCancel")->click();
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(dialog.result(), QDialog::Rejected);
    EXPECT_EQ(rig.host.comPort, 1);
    EXPECT_TRUE(rig.host.autoPort);
    // The choice still counts as a port change on unloading: reception resumes on COM 1.
    EXPECT_EQ(rig.host.log, QStringList({"resumeReception"}));
}

TEST(frmOptionsPort, CancelWithoutAPortChangeLeavesTheLinkAlone) {
    PortRig rig;
    frmOptions& dialog = rig.open();
    dialog.cmdCancel_Click();
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_TRUE(rig.host.log.isEmpty());
}

TEST(frmOptionsPort, CancelAfterApplyWithThePortClosedResumesReception) {
    PortRig rig;
    frmOptions& dialog = rig.open();
    rig.choose(dialog, "COM 3");
    dialog.cmdApply_Click();
    rig.host.log.clear();
    dialog.cmdCancel_Click();
    EXPECT_EQ(rig.host.log, QStringList({"resumeReception"}));
    EXPECT_EQ(rig.host.comPort, 3); // an applied port stays
}

TEST(frmOptionsPort, ClosingTheWindowUnloadsLikeCancel) {
    PortRig rig;
    frmOptions& dialog = rig.open();
    rig.choose(dialog, "COM 2");
    dialog.cmdApply_Click();
    rig.host.log.clear();
    EXPECT_TRUE(dialog.close());
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(rig.host.log, QStringList({"resumeReception"}));
}

TEST(frmOptionsPort, MenuKeepsOneDialogAndRefillsTheListOnEachLoad) {
    PortRig rig;
    frmOptions& first = rig.open();
    rig.choose(first, "COM 4");
    first.cmdCancel_Click();

    rig.host.exists = {false, false, false, false, false, false, true, true};
    rig.host.comPort = 2;
    rig.host.log.clear();
    frmOptions& second = rig.open();
    EXPECT_EQ(&second, &first);
    EXPECT_EQ(rig.mainWindow.findChildren<frmOptions*>().size(), 1);
    EXPECT_EQ(entries(second), QStringList({"COM 6", "COM 7"}));
    EXPECT_EQ(control<QComboBox>(second, "cboComPort")->currentText(), "COM 7");
    // The choice of the last showing is gone: closing now leaves the link alone.
    EXPECT_FALSE(second.blnPortChanged());
    second.cmdCancel_Click();
    EXPECT_TRUE(rig.host.log.isEmpty());
}

TEST(frmOptionsPort, MenuWithoutAMainWindowShowsNothing) {
    FakeOptionsHost host;
    EXPECT_EQ(showOptions(nullptr, host), nullptr);
}
